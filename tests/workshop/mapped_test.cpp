// Band-reject filters and transferred stubs against the loss of what they were made of, at the frequency that maps
// there.
#include <cmath>
#include <numbers>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/circuit/random_circuits.h"
#include "tests/support/circuit_literal.h"
#include "tests/workshop/two_port.h"
#include "workshop/band_reject.h"
#include "workshop/stub_transfer.h"

namespace kavrel {
namespace {

using testing::chain_difference;
using testing::CircuitMaker;
using testing::nodal_chain;
using enum BranchId;

// Of slot elements: of stubs where it is a microwave circuit. L and C of a pair have one sign, as resonances do.
Circuit low_pass_of(CircuitMaker& maker, unsigned seed, int count) {
    const std::vector<std::vector<BranchId>> kinds = {
        {inductor, capacitor, lc, lcc, lcl}, {lc}, {lcc}, {lcl}, {inductor, capacitor}};
    Circuit made = maker.circuit(kinds[seed % kinds.size()], count, seed % 3 != 0);
    made.kind = seed % 4 == 0 ? CircuitKind::microwave : CircuitKind::lumped;
    made.fs = 2;
    return made;
}

TEST(BandReject, HasTheLossOfTheLowPassAtTheMappedFrequencies) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        CircuitMaker maker(seed);
        const Circuit before = low_pass_of(maker, seed, maker.whole(1, 12));
        const double fa = maker.uniform(0.1, 0.4), fb = fa * maker.uniform(1.02, 2);
        Circuit after = before;
        ASSERT_EQ(bandReject(after, seed % 2 == 0 ? fa : fb, seed % 2 == 0 ? fb : fa).text, "") << seed;
        const auto to_variable = [&](long double omega) {
            return before.kind == CircuitKind::lumped ? omega : std::tan(omega / 4);
        };
        const auto from_variable = [&](long double u) {
            return before.kind == CircuitKind::lumped ? u : 4 * std::atan(u);
        };
        const long double turn = 2 * std::numbers::pi_v<long double>;
        const long double ta = to_variable(turn * fa), tb = to_variable(turn * fb);
        for (const long double omega : {0.31L, 0.87L, 1.41L, 2.3L, 2.9L}) {
            const long double u = to_variable(omega);
            const long double p = to_variable(turn * before.fnorm) * (tb - ta) * u / (ta * tb - u * u);
            if (p < 0) continue;  // the chain is that at -p
            EXPECT_LT(chain_difference(nodal_chain(before, from_variable(p)), nodal_chain(after, omega)), 1e-10L)
                << seed << ' ' << omega;
        }
        EXPECT_EQ(after.fa, fa);
        EXPECT_EQ(after.fb, fb);
    }
}

TEST(BandReject, MapsModes) {
    Circuit made = circuit("R 1 | C3 1 | L4 2 | C5 1 | R7 1");
    made.fnorm = 0.5 / std::numbers::pi;
    made.mode_count = 3;
    for (int i = 1; i <= 3; ++i) {
        made.MODE_RE(i) = i == 3 ? -1 : -0.5;
        made.MODE_IM(i) = i == 3 ? 0 : (i == 1 ? 1 : -1) * std::sqrt(0.75);
    }
    ASSERT_TRUE(bandReject(made, 1, 1.1).empty());
    ASSERT_EQ(made.mode_count, 6);
    // In units of the new normalisation frequency, w0, the old modes are roots of (p + 1)(p^2 + p + 1).
    const double kappa = 0.1 / made.fnorm;
    for (int i = 1; i <= 6; ++i) {
        const std::complex<double> s(made.MODE_RE(i), made.MODE_IM(i)), p = kappa * s / (s * s + 1.0);
        EXPECT_LT(std::abs((p + 1.0) * (p * p + p + 1.0)), 1e-9) << i;
        EXPECT_LT(s.real(), 0);
    }
}

TEST(Transfer, TurnsTheBandAround) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        CircuitMaker maker(seed);
        maker.negative_share = 0.1;
        Circuit before = low_pass_of(maker, seed, maker.whole(1, 12));
        before.kind = CircuitKind::microwave;
        before.fb = before.fnorm;
        Circuit after = before;
        ASSERT_EQ(transfer(after).text, "");
        const long double quarter = 2 * std::numbers::pi_v<long double> * before.fs / 2;
        for (const long double omega : {0.7L, 1.9L, 4.1L}) {
            auto turned = nodal_chain(after, quarter - omega);
            for (auto& part : turned) part = std::conj(part);  // 1/(j t) is -j/t
            EXPECT_LT(chain_difference(nodal_chain(before, omega), turned), 1e-10L) << seed << ' ' << omega;
        }
        EXPECT_DOUBLE_EQ(after.fa, 1 - before.fb);
        EXPECT_EQ(after.fb, 0);
        ASSERT_EQ(transfer(after).text, "");
        EXPECT_LT(testing::two_port_deviation(before, after), 1e-12);
    }
}

}  // namespace
}  // namespace kavrel
