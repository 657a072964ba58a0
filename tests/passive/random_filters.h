// Filters with something in every field, and their comparison to the last bit.
#pragma once

#include <bit>
#include <cstring>
#include <random>
#include <string>

#include "passive/passive_filter.h"
#include "tests/circuit/random_circuits.h"

namespace kavrel::testing {

// Every field, byte for byte.
struct FieldBytes {
    std::string bytes;

    template <class... Items>
    void operator()(const Items&... items) {
        (add(items), ...);
    }

private:
    template <class T>
    void add(const T& item) {
        if constexpr (Listed<T>) {
            for_each_field(item, [&](const auto& field) { add(field); });
        } else {
            bytes.append(reinterpret_cast<const char*>(&item), sizeof item);
        }
    }
};

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

    // Any finite double: of any exponent, subnormal and negative zero among them.
    double any_double() {
        for (;;) {
            const auto bits = static_cast<std::uint64_t>(engine()) << 32U | engine();
            const auto number = std::bit_cast<double>(bits);
            if (whole(0, 20) == 0) return std::copysign(0.0, number);
            if (std::isfinite(number)) return number;
        }
    }

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
        fill_all(c.R1, c.R2, c.termination_ratio, c.fa, c.fb, c.fnorm, c.fs, c.MODE_RE, c.MODE_IM, made.designed);
        c.mode_count = whole(0, max_natural_modes);
        c.preferred = c.klast < max_branches ? whole(0, 4) : 0;
        made.mod = static_cast<float>(whole(0, 1));
        auto& [request, notes, worked_lower_edge, worked_upper_edge] = made.background;
        fill_all(made.spec, made.transfer, request, notes, worked_lower_edge, worked_upper_edge);
        settle(made.spec);
        settle(request);
        made.transfer.zeroCount = whole(0, max_degree);
        made.transfer.poleCount = whole(0, max_degree);
        return made;
    }

    FixedText<80> title() {
        FixedText<80> made;
        fill(made);
        return made;
    }

private:
    template <class... Items>
    void fill_all(Items&... items) {
        (fill(items), ...);
    }
    template <Listed Record>
    void fill(Record& record) {
        for_each_field(record, [&](auto& field) { fill(field); });
    }
    void fill(double& item) { item = any_double(); }
    void fill(int& item) { item = static_cast<int>(engine()); }
    void fill(bool& item) { item = whole(0, 1) == 1; }
    void fill(char& item) { item = "PMAI"[whole(0, 3)]; }
    template <class Choice>
    requires std::is_enum_v<Choice>
    void fill(Choice&) {}  // settled
    template <std::size_t N>
    void fill(FixedText<N>& item) {
        for (char& c : item.bytes) c = static_cast<char>(whole(' ', '~'));
    }
    template <class T, int N>
    void fill(Table<T, N>& item) {
        for (T& cell : item) fill(cell);
    }

    void settle(FilterSpec& s) {
        s.filterType = FilterType{whole(1, 6)};
        s.passbandType = PassbandType{whole(0, 3)};
        s.bandpassType = BandpassType{whole(1, 3)};
        s.stopbandType = StopbandType{whole(0, 4)};
        s.medium = Medium{whole(0, 2)};
        s.zeroCount = whole(0, finite_zero_limit);
        s.numeratorDegree = whole(0, factor_limit);
        s.denominatorDegree = whole(0, factor_limit);
        s.degree = whole(0, max_degree);
    }
};

}  // namespace kavrel::testing
