#include "workshop/equal_values.h"

#include "tests/workshop/edited_ladders.h"
#include "workshop/norton.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::Ladder;
using testing::Part;
using enum BranchId;

// A chain of like branches, others between some of them, and the numbers of what is to be equal.
Ladder chain(CircuitMaker& maker, unsigned seed, BranchId id, int length, bool ascends) {
    const bool lines = length <= 12 && maker.whole(0, 2) == 0;
    const bool shunt_between = lines || maker.whole(0, 1) == 0;  // a line would not let another one pass
    std::vector<Part> parts;
    std::vector<std::size_t> places;
    for (int i = 1; i <= length; ++i) {
        const bool across = i == (ascends ? 1 : length);
        const int choice = across || length > 12 ? 0 : maker.whole(0, 2);
        if (choice == 1) parts.push_back({id == inductor ? capacitor : inductor, shunt_between});
        const bool line = lines && !across && id == inductor && maker.whole(0, 1) == 1;
        places.push_back(parts.size());
        parts.push_back({line ? unit_element : choice == 2 ? lc : id, across});
    }
    Ladder made = testing::ladder_about(2 * seed, parts);
    std::vector<int> list;
    for (const std::size_t place : places) list.push_back(made.parts[place]);
    if (!ascends) std::ranges::reverse(list);
    return {made.circuit, list};
}

// The computed transformations one after the other, as they are made by hand.
TEST(EqualValues, ComputedTransformationsLeadToThem) {
    for (unsigned seed = 0; seed < 600; ++seed) {
        CircuitMaker maker(seed);
        const BranchId id = maker.whole(0, 1) == 0 ? inductor : capacitor;
        const bool ascends = maker.whole(0, 1) == 0, halved = maker.whole(0, 1) == 0;
        const int length = seed % 9 == 0 ? equalised_limit : maker.whole(2, 12);
        const auto [before, list] = chain(maker, seed, id, length, ascends);
        ComputedRatios ratios;
        ASSERT_EQ(equalise(before, list, halved ? EndValues::halved : EndValues::equal, ratios).text, "") << seed;
        ASSERT_EQ(ratios.count, length - 1);

        std::vector<int> cells;
        for (const int k : list) cells.push_back(unpackBranch(before, k).i1);
        Circuit after = before;
        const auto branch_of = [&](int cell) {
            int k = after.klast;
            while (k != 0 && unpackBranch(after, k).i1 != cell) k = unpackBranch(after, k).kp;
            return k;
        };
        double level = 1;
        std::vector<int> across{cells[0]};
        for (int i = 1; i < length; ++i) {
            NortonSection section;
            const int cell = cells[static_cast<std::size_t>(i)], k1 = branch_of(across.back());
            ASSERT_EQ(nortonSection(after, k1, branch_of(cell), NewElement::own_branch, section).text, "");
            norton(after, section, ratios.t(i));
            level *= ratios.t(i);
            const Branch centre = unpackBranch(after, branch_of(cell));
            int k = ascends ? centre.kn : centre.kp;
            while (unpackBranch(after, k).id != id) k = ascends ? unpackBranch(after, k).kn : unpackBranch(after, k).kp;
            across.push_back(unpackBranch(after, k).i1);
        }
        EXPECT_LT(testing::two_port_deviation(before, after, level), 1e-9) << seed;
        const double inner = after.VALUE(across[1]) * (halved && length == 2 ? 2 : 1);
        for (std::size_t i = 0; i < across.size(); ++i) {
            const bool half = halved && (i == 0 || i + 1 == across.size());
            EXPECT_NEAR(after.VALUE(across[i]) / inner, half ? 0.5 : 1, 1e-9) << seed << ' ' << i;
        }
    }
}

}  // namespace
}  // namespace kavrel
