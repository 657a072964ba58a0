// Dual and flip, against the nodes of what was turned.
#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/workshop/two_port.h"
#include "workshop/dual.h"
#include "workshop/flip.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::nodal_chain;

// Circuits of kinds up to `last`, and of one kind alone in turn; twin T as pairs of zeros make them.
Circuit circuit_of(CircuitMaker& maker, int last, bool source) {
    const bool microwave = maker.whole(0, 3) == 0;
    auto ids = testing::kinds_of(microwave ? CircuitKind::microwave : CircuitKind::lumped);
    std::erase_if(ids, [last](BranchId id) { return static_cast<int>(id) > last; });
    if (maker.whole(0, 2) == 0) ids = {ids[static_cast<std::size_t>(maker.whole(0, static_cast<int>(ids.size()) - 1))]};
    maker.negative_share = maker.whole(0, 1) * 0.2;
    Circuit made = maker.circuit(ids, 4, source);
    made.kind = microwave ? CircuitKind::microwave : CircuitKind::lumped;
    made.fs = 2;
    return made;
}

// Two T of one ratio and one resonance.
void match_twin_ts(Circuit& circuit) {
    for (int k = 1; k != 0; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        const bool trap = branch.id == BranchId::twin_t_trap;
        if (!trap && branch.id != BranchId::twin_t) continue;
        const auto v = branch_values(circuit, branch);
        const double n = v.back() / v[0];
        double& Cb = v[trap ? 5 : 4];
        Cb = v[1] / n;
        const double square = trap ? 1 / (v[3] * (v[1] + Cb)) + 1 / (v[3] * v[4]) : 1 / (v[3] * (v[1] + Cb));
        v[2] = (1 / v[0] + 1 / v.back()) / square;
    }
}

// The largest difference of two chains, the second one's parameters in another order; A, B, C, D.
double worst(const Circuit& a, const Circuit& b, const std::array<std::size_t, 4>& order) {
    long double worst = 0;
    const long double R = a.VALUE(unpackBranch(a, 1).i1), r = b.VALUE(unpackBranch(b, 1).i1);
    for (const long double omega : {0.17L, 0.43L, 0.97L, 1.83L, 2.9L}) {
        const auto x = nodal_chain(a, omega), y = nodal_chain(b, omega);
        const std::array<LongComplex, 4> other{y[0], y[1] * r, y[2] / r, y[3]};
        const long double share = testing::chain_difference(
            {x[0], x[1] * R, x[2] / R, x[3]}, {other[order[0]], other[order[1]], other[order[2]], other[order[3]]});
        worst = std::isnan(worst) || share <= worst ? worst : share;
    }
    return static_cast<double>(worst);
}

TEST(Dual, ExchangesVoltagesAndCurrents) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        CircuitMaker maker(seed);
        Circuit before = circuit_of(maker, 16, seed % 4 != 0);
        match_twin_ts(before);
        Circuit after = before;
        ASSERT_EQ(dual(after).text, "") << seed;
        EXPECT_LT(worst(before, after, {3, 2, 1, 0}), 1e-10) << seed;
        EXPECT_EQ(after.klast, before.klast + 1);
        ASSERT_EQ(dual(after).text, "") << seed;
        EXPECT_LT(testing::two_port_deviation(before, after), 1e-10) << seed << ": that of the dual";
    }
}

TEST(Flip, ReversesTheTwoPortAndTwiceIsNothing) {
    int flipped = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        CircuitMaker maker(seed);
        const Circuit before = circuit_of(maker, 25, true);
        Circuit after = before;
        const Refusal wrong = flip(after);
        if (before.klast % 2 == 0) {
            EXPECT_EQ(wrong.text, "Circuit may not be turned end-for-end");
            EXPECT_TRUE(after == before);
            continue;
        }
        ASSERT_TRUE(wrong.empty()) << seed;
        EXPECT_LT(worst(before, after, {3, 1, 2, 0}), 1e-10) << seed;
        ASSERT_TRUE(flip(after).empty());
        EXPECT_TRUE(after == before) << seed;
        ++flipped;
    }
    EXPECT_GT(flipped, 200);
}

}  // namespace
}  // namespace kavrel
