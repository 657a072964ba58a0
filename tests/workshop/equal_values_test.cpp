#include "workshop/equal_values.h"

#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/support/circuit_literal.h"
#include "tests/workshop/two_port.h"
#include "workshop/norton.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;

// A chain of like branches, others between some of them.
Circuit chain(CircuitMaker& maker, BranchId id, int length, bool ascends, bool lines, std::vector<int>& list) {
    Circuit made;
    made.kind = lines ? CircuitKind::microwave : CircuitKind::lumped;
    made.fs = 2;
    const auto add = [&](BranchId kind, int k) {
        EXPECT_EQ(insert_values(made, k, kind, maker.values(kind)), CircuitVerdict::done);
        return k;
    };
    const auto behind = [&](bool series) { return made.klast + ((made.klast % 2 == 0) == series ? 2 : 1); };
    const BranchId other = id == BranchId::inductor ? BranchId::capacitor : BranchId::inductor;
    const bool series_between = !lines && maker.whole(0, 1) == 1;  // a line would not let it pass
    add(BranchId::resistor, 1);
    for (int i = 1; i <= length; ++i) {
        const bool across = i == (ascends ? 1 : length);
        const int choice = across || length > 12 ? 0 : maker.whole(0, 2);
        if (choice == 1) add(other, behind(series_between));
        const bool line = lines && !across && id == BranchId::inductor && maker.whole(0, 1) == 1;
        list.push_back(add(line ? BranchId::unit_element : choice == 2 ? BranchId::lc : id, behind(!across)));
    }
    add(BranchId::resistor, behind(false) + 2);
    if (!ascends) std::ranges::reverse(list);
    return made;
}

// The computed transformations one after the other, as they are made by hand.
TEST(EqualValues, ComputedTransformationsLeadToThem) {
    for (unsigned seed = 0; seed < 600; ++seed) {
        CircuitMaker maker(seed);
        const BranchId id = maker.whole(0, 1) == 0 ? BranchId::inductor : BranchId::capacitor;
        const bool ascends = maker.whole(0, 1) == 0, halved = maker.whole(0, 1) == 0, lines = maker.whole(0, 2) == 0;
        const int length = seed % 9 == 0 && !lines ? equalised_limit : maker.whole(2, 12);
        std::vector<int> list;
        const Circuit before = chain(maker, id, length, ascends, lines, list);
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
            const auto place = static_cast<std::size_t>(i);
            ASSERT_EQ(
                nortonSection(after, branch_of(across.back()), branch_of(cells[place]), NewElement::own_branch, section)
                    .text,
                "");
            norton(after, section, ratios.t(i));
            level *= ratios.t(i);
            const Branch centre = unpackBranch(after, branch_of(cells[place]));
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
