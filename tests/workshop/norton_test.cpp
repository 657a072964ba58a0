#include "workshop/norton.h"

#include "tests/workshop/edited_ladders.h"
#include "workshop/promise.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::Part;
using enum BranchId;

// Sections from their first to their last branch.
const std::vector<Part> shapes[] = {
    {{inductor, true}, {inductor}},
    {{inductor}, {inductor, true}},
    {{capacitor, true}, {capacitor}},
    {{capacitor}, {capacitor, true}},
    {{inductor, true}, {capacitor, true}, {inductor}},
    {{inductor}, {capacitor}, {capacitor, true}, {inductor, true}},
    {{capacitor, true}, {inductor}, {capacitor}},
    {{capacitor}, {lc, true}, {inductor, true}, {capacitor, true}},
    {{inductor, true}, {lc}},
    {{lc}, {capacitor, true}},
    {{capacitor, true}, {inductor, true}, {lc}},
    {{lc, true}, {inductor}},
    {{inductor}, {lc, true}},
    {{lc, true}, {capacitor}},
    {{capacitor}, {lc, true}},
    {{inductor}, {capacitor}, {lc, true}},
    {{inductor, true}, {unit_element}},
    {{unit_element}, {inductor, true}},
    {{capacitor}, {unit_element}},
    {{unit_element}, {capacitor}},
};

// All shapes, beside other branches, with values of either sign. The largest ratio of positive elements is where one is
// gone, and beyond it one is negative.
TEST(Norton, KeepsTheTwoPortUpToItsLevel) {
    for (unsigned seed = 0; seed < 120 * std::size(shapes); ++seed) {
        CircuitMaker maker(seed);
        const unsigned shape = seed / 6 % std::size(shapes);
        const bool positive = seed % 4 < 2, driven = seed % 2 == 1;
        const auto ladder = testing::ladder_about(seed, shapes[shape], positive ? 0 : 0.3);
        Circuit after = ladder.circuit;
        NortonSection section;
        const auto element = maker.whole(0, 1) == 1 ? NewElement::joins : NewElement::own_branch;
        auto ends = std::pair(ladder.parts.front(), ladder.parts.back());
        if (maker.whole(0, 1) == 1) std::swap(ends.first, ends.second);
        ASSERT_EQ(nortonSection(after, ends.first, ends.second, element, section).text, "") << shape << ' ' << seed;
        Circuit prepared = after;
        compactValues(prepared);
        const double largest = largestRatio(after, section), share = maker.whole(1, 3) / 2.0;
        const bool limited = std::fabs(largest - 1) > 1e-6;  // not so beside a resonant branch without one of the kinds
        const double ratio = limited ? std::pow(largest, share) : maker.uniform(0.1, 10);
        norton(after, section, ratio);
        if (!driven) {
            EXPECT_LT(testing::two_port_deviation(ladder.circuit, after, ratio), 1e-11) << shape << ' ' << seed;
        }
        EXPECT_TRUE(keeps_promise(ladder.circuit, after, Promise::level)) << shape << ' ' << seed;
        if (!positive || !limited || driven) continue;
        compactValues(after);
        EXPECT_EQ(after.ilast < prepared.ilast, share == 1) << shape << ' ' << seed;
        EXPECT_EQ(std::ranges::any_of(after.VALUE, [](double value) { return value < 0; }), share > 1) << seed;
    }
}

}  // namespace
}  // namespace kavrel
