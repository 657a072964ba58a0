#include "workshop/norton.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/support/circuit_literal.h"
#include "tests/workshop/two_port.h"
#include "workshop/promise.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::two_port_deviation;

// Branches by number and kind. A section is that of the two with a mark.
struct Shape {
    std::string_view branches;
    CircuitKind kind = CircuitKind::lumped;
};
constexpr auto lines = CircuitKind::microwave;
const Shape shapes[] = {
    {"3l! 4l!"},         {"4l! 5l!"},         {"3c! 4c!"},         {"4c! 5c!"},
    {"3l! 5c 6l!"},      {"4l! 6c 7c 9l!"},   {"3c! 4l 6c!"},      {"4c! 5lc 7l 9c!"},
    {"3l! 4lc!"},        {"3c 5l! 6lc!"},     {"4lc! 5c! 7l 8l"},  {"3c! 5l 6lc! 7l 9c"},
    {"3lc! 4l!"},        {"4c 6l! 7lc!"},     {"3lc! 4c! 6l 9c"},  {"4l! 6c 7lc! 8c 10l"},
    {"3l! 4l!", lines},  {"4c! 5c!", lines},  {"3l! 5ue!", lines}, {"6ue! 9l!", lines},
    {"4c! 6ue!", lines}, {"5ue! 8c!", lines}, {"3l! 4lc!", lines}, {"4l 6c! 7lc!", lines},
};

struct Made {
    Circuit circuit;
    int k1 = 0, k2 = 0;
};

Made made(const Shape& shape, CircuitMaker& maker) {
    Made m;
    m.circuit.kind = shape.kind;
    m.circuit.fs = 2;
    m.circuit.fnorm = 0.2;
    const auto add = [&](int k, BranchId id) {
        EXPECT_EQ(insert_values(m.circuit, k, id, maker.values(id)), CircuitVerdict::done);
        return k;
    };
    add(1, BranchId::resistor);
    if (maker.whole(0, 1) == 1) add(3, BranchId::lcl);
    const int shift = m.circuit.klast == 3 ? 2 * maker.whole(0, 2) + 2 : 0;
    std::istringstream words{std::string(shape.branches)};
    for (std::string word; words >> word;) {
        const auto letters = word.find_first_not_of("0123456789");
        const bool named = word.ends_with('!');
        const int k = add(std::stoi(word) + shift,
                          kind_of_literal(word.substr(letters, word.size() - letters - (named ? 1 : 0)))->id);
        if (named) (m.k1 == 0 ? m.k1 : m.k2) = k;
    }
    if (maker.whole(0, 5) == 0) return m;  // an ideal source right behind
    add(m.circuit.klast + maker.whole(2, 3), BranchId::lcc);
    add(m.circuit.klast + maker.whole(2, 3), BranchId::triplet_llc);
    add(m.circuit.klast + 3, BranchId::resistor);
    return m;
}

// All shapes, beside other branches, with values of either sign. The largest ratio of positive elements is where one is
// gone, and beyond it one is negative.
TEST(Norton, KeepsTheTwoPortUpToItsLevel) {
    for (unsigned seed = 0; seed < 50 * std::size(shapes); ++seed) {
        CircuitMaker maker(seed);
        maker.negative_share = seed % 2 == 0 ? 0 : 0.3;
        const Shape& shape = shapes[seed / 2 % std::size(shapes)];
        const Made m = made(shape, maker);
        Circuit after = m.circuit;
        NortonSection section;
        const auto element = maker.whole(0, 1) == 1 ? NewElement::joins : NewElement::own_branch;
        const bool swapped = maker.whole(0, 1) == 1;
        ASSERT_EQ(nortonSection(after, swapped ? m.k2 : m.k1, swapped ? m.k1 : m.k2, element, section).text, "")
            << shape.branches;
        Circuit prepared = after;
        compactValues(prepared);
        const double largest = largestRatio(after, section), share = maker.whole(1, 3) / 2.0;
        const bool limited = std::fabs(largest - 1) > 1e-6;  // not so beside a resonant branch without one of the kinds
        const double ratio = limited ? std::pow(largest, share) : maker.uniform(0.1, 10);
        norton(after, section, ratio);
        const auto what = fmt::format("{} {} {}", shape.branches, seed, ratio);
        const bool driven = unpackBranch(m.circuit, m.circuit.klast).id != BranchId::resistor;
        if (!driven) {
            EXPECT_LT(two_port_deviation(m.circuit, after, ratio), 1e-11) << what;
        }
        EXPECT_TRUE(keeps_promise(m.circuit, after, Promise::level)) << what;
        if (maker.negative_share != 0 || !limited || driven) continue;
        compactValues(after);
        EXPECT_EQ(after.ilast < prepared.ilast, share == 1) << what;
        EXPECT_EQ(std::ranges::any_of(after.VALUE, [](double value) { return value < 0; }), share > 1) << what;
    }
}

}  // namespace
}  // namespace kavrel
