// A request carried to Q and F, as the tests of the characteristic functions look at it.
#pragma once

#include <cmath>

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

// |F/Q| at s = jw from the roots alone: each factor times s^2 + 1.
inline XPlane::Real squared_from_roots(const XPlane& xp, XPlane::Real w) {
    const auto square = [&](Complex<XPlane::Real> r) {
        const XPlane::Real re = -(1 - r.re) * w * w + xp.a - r.re, im = r.im * (1 - w * w);
        return re * re + im * im;
    };
    XPlane::Real product = 1;
    for (int i = 1; i <= xp.FS.count; ++i) product *= square(xp.FS.root(i)) / square(xp.QS.root(i));
    return xp.FS.multiplier * std::sqrt(product);
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
