// A request carried to Q and F, as the tests of the characteristic functions look at it.
#pragma once

#include "approximation/characteristic.h"
#include "approximation/front_part.h"
#include "tests/support/choices.h"

namespace kavrel {

struct Built {
    FilterSpec spec;
    XPlane xp;
    FrontNotes notes;
    FrontVerdict verdict;
};

inline Built build(const FilterSpec& request) {
    Built b{.spec = request, .xp = {}, .notes = {}, .verdict = {}};
    b.verdict = runFront(b.spec, b.xp, b.notes);
    if (b.verdict.good()) b.verdict = buildQ(b.spec, b.xp, b.notes);
    return b;
}

}  // namespace kavrel
