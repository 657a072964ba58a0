// A request carried to Q and F, as the tests of the characteristic functions look at it.
#pragma once

#include "approximation/characteristic.h"
#include "approximation/front_part.h"
#include "tests/approximation/request.h"
#include "tests/support/choices.h"
#include "tests/support/numbers.h"

namespace kavrel {

struct Built {
    FilterSpec spec;
    XPlane xp;
    FrontNotes notes;
    FrontVerdict verdict;
};

inline Built build(const FilterSpec& spec) {
    Built b{.spec = spec, .xp = {}, .notes = {}, .verdict = {}};
    b.verdict = runFront(b.spec, b.xp, b.notes);
    if (b.verdict.good()) b.verdict = buildQ(b.spec, b.xp, b.notes);
    return b;
}

// Of requests that are refused: what is changed in `from`, and the fault.
struct Refusal {
    const char* change;
    FrontFault fault;
    int number = 0;  // the one in the line, where it is looked at
};
template <std::size_t N>
void expect_refusals(const FilterSpec& from, const Refusal (&rows)[N]) {
    for (const Refusal& row : rows) {
        const Built b = build(request(row.change, from));
        EXPECT_EQ(b.verdict.fault, row.fault) << row.change;
        if (row.number != 0) {
            EXPECT_EQ(b.verdict.number, row.number) << row.change;
        }
    }
}

}  // namespace kavrel
