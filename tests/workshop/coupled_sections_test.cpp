#include "workshop/coupled_sections.h"

#include <numbers>

#include "tests/workshop/edited_ladders.h"
#include "workshop/coupled_nodes.h"
#include "workshop/dual.h"
#include "workshop/promise.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::ladder_about;
using testing::nodal_chain;
using testing::two_port_deviation;
using enum BranchId;

constexpr double exact = 1e-10;

BranchId other_of(BranchId kind) { return kind == inductor ? lcl : lcc; }

// How far apart the chains are, and that the chain is in order.
void expect_same(const Circuit& before, const Circuit& after, unsigned seed, double impedance = 1) {
    EXPECT_LT(two_port_deviation(before, after, impedance), exact) << seed;
    EXPECT_TRUE(keeps_promise(before, after, impedance == 1 ? Promise::whole_two_port : Promise::level)) << seed;
    int from = 1;
    for (int k = 1; k != 0; k = unpackBranch(after, k).kn) {
        ASSERT_TRUE(branchExists(after, k) && k >= from) << seed;
        from = k + 1;
    }
}

// The same branches in the same order, in whatever slots.
void expect_branches(const Circuit& expected, const Circuit& circuit, unsigned seed) {
    int k = 1;
    for (int i = 1; i != 0; i = unpackBranch(expected, i).kn, k = unpackBranch(circuit, k).kn) {
        ASSERT_TRUE(branchExists(circuit, k)) << seed;
        const Branch a = unpackBranch(expected, i), b = unpackBranch(circuit, k);
        ASSERT_EQ(a.id, b.id) << seed;
        const auto values = branch_values(circuit, b);
        for (std::size_t cell = 0; cell < values.size(); ++cell)
            EXPECT_NEAR(values[cell], branch_values(expected, a)[cell], 1e-11 * std::fabs(values[cell])) << seed;
    }
    EXPECT_EQ(k, 0) << seed;
}

TEST(CoupledSections, TripletsComeFromLaddersAndGoBack) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        const BranchId kind = seed % 4 < 2 ? inductor : capacitor;
        const BranchId middle = seed % 8 < 4 ? lc : other_of(kind);
        const auto one = ladder_about(seed, {{kind}, {middle, true}, {kind}}, seed % 5 == 0 ? 0.3 : 0);
        int k = one.parts[1];
        Circuit coupled = one.circuit;
        ASSERT_EQ(tripletTransform(coupled, k).text, "") << seed;
        ASSERT_EQ(unpackBranch(coupled, k).id, kind == inductor ? triplet_lll : triplet_ccc) << seed;
        expect_same(one.circuit, coupled, seed);

        Circuit back = coupled;
        int again = k;
        ASSERT_EQ(tripletTransform(back, again).text, "") << seed;
        expect_same(coupled, back, seed);
        expect_branches(one.circuit, back, seed);

        // One coupling of the other kind; both would be too many; and back to the ladder.
        const OtherCoupling other = seed % 16 < 8 ? OtherCoupling::at_load : OtherCoupling::at_source;
        const OtherCoupling second = seed % 16 < 8 ? OtherCoupling::at_source : OtherCoupling::at_load;
        Circuit mixed = coupled;
        again = k;
        const Refusal wrong = tripletTransform(mixed, again, other);
        if (!wrong.empty()) {  // where a branch across the port would change what drives the circuit
            EXPECT_EQ(wrong.text, "Inappropriate circuit");
            EXPECT_TRUE(k == coupled.klast && k % 2 == 0 && mixed == coupled) << seed;
            continue;
        }
        const auto values = branch_values(mixed, unpackBranch(mixed, again));
        if (std::ranges::any_of(values, [](double x) { return x > 100 && x < absent_inductor; }))
            continue;  // cancelled
        expect_same(coupled, mixed, seed);
        EXPECT_GT(values[other == OtherCoupling::at_load ? 0 : 4], 0) << seed;
        EXPECT_EQ(tripletTransform(mixed, again, second).text, "Inappropriate circuit");
        back = mixed;
        ASSERT_EQ(tripletTransform(back, again).text, "") << seed;
        expect_same(coupled, back, seed);
        if (seed % 5 == 0) continue;  // with a negative element a coupling comes back with another sign
        EXPECT_LE(testing::branch_count(back), testing::branch_count(one.circuit))
            << seed;  // nothing is left of rounding
    }
}

TEST(CoupledSections, QuadrupletsKeepTwoPortAndZeros) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        const BranchId kind = seed % 4 < 2 ? inductor : capacitor;
        const BranchId first = seed % 8 < 4 ? lc : other_of(kind), second = seed % 16 < 8 ? lc : other_of(kind);
        const auto one =
            ladder_about(seed, {{kind}, {first, true}, {kind}, {second, true}, {kind}}, seed % 3 == 1 ? 0.3 : 0);
        int k = one.parts[seed % 5];
        Circuit coupled = one.circuit, full = one.circuit;
        full.quadruplet_count = max_quadruplets;
        EXPECT_EQ(quadrupletTransform(full, k).text, "Storage is full");
        ASSERT_EQ(quadrupletTransform(coupled, k).text, "") << seed;
        ASSERT_EQ(unpackBranch(coupled, k).id, quadruplet) << seed;
        EXPECT_EQ(dual(full = coupled).text, "Coupled or unmatched section, no dual");
        EXPECT_TRUE(full == coupled);
        expect_same(one.circuit, coupled, seed);
        Circuit back = coupled;
        int again = k;
        ASSERT_EQ(quadrupletTransform(back, again).text, "") << seed;
        expect_branches(one.circuit, back, seed);
        EXPECT_EQ(quadrupletTransform(back, again).text, "") << seed;  // from its middle
        for (const double f : coupled.QUADRUPLETS(1).FRES) {
            if (f == 0) continue;
            const auto at = [&](long double factor) {
                return std::abs(nodal_chain(coupled, 2 * std::numbers::pi_v<long double> * f * factor)[0]);
            };
            EXPECT_NEAR(static_cast<double>(at(1 + 1e-9L) / at(1 + 1e-7L)), 100, 5) << seed;
        }
    }
}

TEST(CoupledSections, NodesAreScaledToEqualAndToGivenValues) {
    int done = 0;
    for (unsigned seed = 0; seed < 450; ++seed) {
        const BranchId id{17 + static_cast<int>(seed % 9)};
        const bool four = id == quadruplet;
        auto one = ladder_about(2 * seed,
                                {{lc, true},
                                 {seed % 5 < 3 ? inductor : lc, true},
                                 {capacitor, true},
                                 {inductor, true},
                                 {four ? triplet_lll : id},
                                 {capacitor, true},
                                 {seed % 7 < 5 ? inductor : lc, true},
                                 {lc}},
                                seed % 4 == 0 ? 0.1 : 0);
        int k = one.parts[4];
        if (four) {
            CircuitMaker maker(seed);
            int place = k;
            (void)deleteBranch(one.circuit, place);
            ASSERT_EQ(insert_quadruplet(one.circuit, k, maker.quadruplet()), CircuitVerdict::done);
        }
        const BranchId kind = seed % 2 == 0 ? inductor : capacitor;
        const std::vector<double> given{0.7, 1.3, 0.9};
        const auto values = std::span(given).first(seed % 4 < 2 ? 0 : id == quadruplet ? 3 : 2);
        Circuit scaled = one.circuit;
        const Refusal wrong = multipleTransform(scaled, k, kind, values);
        if (!wrong.empty()) {  // an element is missing or negative
            EXPECT_EQ(wrong.text, "Incorrect circuit") << seed;
            EXPECT_TRUE(scaled == one.circuit);
            continue;
        }
        ++done;
        expect_same(one.circuit, scaled, seed, testing::source_level(one.circuit, scaled));
        // The two-port being right, so are the nodes that the section is read as.
        const CoupledNodes nodes = coupled_nodes(scaled, k);
        const NodePairs<Wide>& X = kind == inductor ? nodes.K : nodes.C;
        for (int i = 2; i <= nodes.count; ++i) {
            const Wide value = values.empty() ? 0 : values[static_cast<std::size_t>(i - 2)];
            const Wide wanted = values.empty() ? to_ground(X, 1) : kind == inductor ? 1 / value : value;
            EXPECT_LT(std::fabs(to_ground(X, i) / wanted - 1), 1e-10L) << seed;
        }
        EXPECT_EQ(multipleTransform(scaled, k, kind, values).text, "No change") << seed;
    }
    EXPECT_GT(done, 200);
}

}  // namespace
}  // namespace kavrel
