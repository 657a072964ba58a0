// Filters with something in every field, and their comparison to the last bit.
#pragma once

#include <string>

#include "passive/passive_filter.h"
#include "tests/circuit/random_circuits.h"
#include "tests/support/random_fields.h"

namespace kavrel::testing {

inline std::string bytes_of(const PassiveFilter& filter) {
    FieldBytes all;
    const auto& [circuit, designed, spec, transfer, background, mod] = filter;
    const auto& [VALUE, INDX1, klast, ilast, QUADRUPLETS, quadruplet_count, kind, R1, R2, termination_ratio, fa, fb,
                 fnorm, fs, mode_count, MODE_RE, MODE_IM, preferred] = circuit;
    all(VALUE, INDX1, klast, ilast, QUADRUPLETS, quadruplet_count, kind, R1, R2, termination_ratio, fa, fb, fnorm, fs,
        mode_count, MODE_RE, MODE_IM, preferred, designed, mod, spec, transfer, background.request, background.notes,
        background.worked_lower_edge, background.worked_upper_edge);
    return all.bytes;
}

struct FilterMaker : CircuitMaker {
    using CircuitMaker::CircuitMaker;

    PassiveFilter filter() {
        static const std::vector<BranchId> kinds = [] {
            std::vector<BranchId> all;
            for (const BranchKind& row : branch_kinds) all.push_back(row.id);
            return all;
        }();
        PassiveFilter made;
        Circuit& c = made.circuit;
        c = circuit(kinds, whole(0, 30), whole(0, 1) == 1);
        for (int deleted = whole(0, 3); deleted > 0; --deleted) {
            int k = whole(2, max_branches);
            (void)deleteBranch(c, k);
        }
        if (whole(0, 1) == 1) compactValues(c);
        c.kind = static_cast<CircuitKind>(whole(0, 2));
        RandomFields fields{engine};
        fields.fill_all(c.R1, c.R2, c.termination_ratio, c.fa, c.fb, c.fnorm, c.fs, c.MODE_RE, c.MODE_IM,
                        made.designed);
        c.mode_count = whole(0, max_natural_modes);
        c.preferred = c.klast < max_branches ? whole(0, 4) : 0;
        made.mod = static_cast<float>(whole(0, 1));
        auto& [request, notes, worked_lower_edge, worked_upper_edge] = made.background;
        fields.fill_all(made.spec, made.transfer, request, notes, worked_lower_edge, worked_upper_edge);
        fields.settle(made.spec);
        fields.settle(request);
        fields.settle(made.transfer);
        return made;
    }

    FixedText<80> title() {
        FixedText<80> made;
        RandomFields{engine}.fill(made);
        return made;
    }
};

}  // namespace kavrel::testing
