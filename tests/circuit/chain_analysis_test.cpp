#include "circuit/chain_analysis.h"

#include <cmath>
#include <memory>
#include <numbers>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/circuit/nodal_reference.h"
#include "tests/circuit/random_circuits.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

using enum BranchId;
using testing::CircuitMaker;
using testing::NodalReference;

constexpr Wide two_pi = 2 * std::numbers::pi_v<Wide>;
const ElementLoss losses[] = {{0, 0},    {80, 0},  {0, 150},  {60, 200}, {-70, -300},
                              {50, -90}, {-40, 0}, {0, -120}, {-80, 90}};

LongComplex from(WideComplex z) { return {z.re, z.im}; }
long double relative(LongComplex got, LongComplex truth) { return std::abs(got - truth) / std::abs(truth); }

ChainPoint point_of(const Circuit& circuit, const ElementLoss& loss, Wide omega) {
    Chain chain;
    ChainPoint point;
    EXPECT_EQ(prepare_chain(circuit, loss, chain), ChainVerdict::done);
    EXPECT_EQ(analyze_point(chain, omega, point), PointVerdict::computed);
    return point;
}

// The largest relative deviation of V, I and H from the nodal solution; -1 where the chain refuses the point.
long double deviation(const Circuit& circuit, const ElementLoss& loss, Wide omega) {
    Chain chain;
    EXPECT_EQ(prepare_chain(circuit, loss, chain), ChainVerdict::done);
    ChainPoint point;
    if (analyze_point(chain, omega, point) != PointVerdict::computed) return -1;
    const auto truth = NodalReference(circuit, loss, omega).solve();
    return std::max(
        {relative(from(point.V.v), truth.V), relative(from(point.I.v), truth.I), relative(from(point.H.v), truth.H)});
}

std::vector<BranchId> all_kinds(bool lines) {
    std::vector<BranchId> kinds;
    for (const BranchKind& kind : branch_kinds) kinds.push_back(kind.id);
    if (!lines) std::erase(kinds, unit_element);
    return kinds;
}

// Every third one with lines: quarter wave at 0.5 Hz, pi rad/sec.
Circuit random_circuit(CircuitMaker& make, int trial, int branches) {
    const bool microwave = trial % 3 == 2;
    Circuit made = make.circuit(all_kinds(microwave), make.whole(1, branches), trial % 4 != 0);
    made.kind = microwave ? CircuitKind::microwave : CircuitKind::lumped;
    made.fs = 1.0;
    return made;
}

// Each kind by itself, in both slots, in every state of losses.
TEST(ChainAnalysis, EachKindAgreesWithNodes) {
    CircuitMaker make(1);
    long double worst = 0;
    for (const BranchKind& kind : branch_kinds) {
        for (int trial = 0; trial < 60; ++trial) {
            Circuit circuit = make.circuit({kind.id}, 2, trial % 3 != 0);
            circuit.kind = kind.id == unit_element || trial % 4 == 3 ? CircuitKind::microwave : CircuitKind::lumped;
            circuit.fs = 1.0;
            const auto& loss = losses[trial % std::size(losses)];
            const long double off = deviation(circuit, loss, make.uniform(0.3, 3));
            ASSERT_GE(off, 0) << kind.cells;
            ASSERT_LT(off, 1e-14L) << kind.cells;  // of the loss: 1e-13 dB
            worst = std::max(worst, off);
        }
    }
    RecordProperty("worst", std::to_string(std::log10(worst)));
}

TEST(ChainAnalysis, RandomCircuitsAgreeWithNodes) {
    CircuitMaker make(2);
    int refused = 0;
    long double worst = 0;
    for (int trial = 0; trial < 1500; ++trial) {
        make.negative_share = trial % 5 == 4 ? 0.1 : 0;
        const Circuit circuit = random_circuit(make, trial, 10);
        const long double off = deviation(circuit, losses[trial % std::size(losses)], make.uniform(0.2, 6));
        refused += off < 0 ? 1 : 0;
        ASSERT_LT(off, 1e-10L) << trial;
        worst = std::max(worst, off);
    }
    EXPECT_EQ(refused, 0);
    RecordProperty("worst", std::to_string(std::log10(worst)));
}

// The chain matrix of a reciprocal two-port has determinant 1, and gives the loss between any terminations.
TEST(ChainAnalysis, ChainMatrixGivesTheSameLoss) {
    CircuitMaker make(3);
    for (int trial = 0; trial < 200; ++trial) {
        const Circuit circuit = make.circuit(all_kinds(false), 6, true);
        Chain chain;
        ASSERT_EQ(prepare_chain(circuit, losses[trial % std::size(losses)], chain), ChainVerdict::done);
        const Wide omega = make.uniform(0.3, 3);
        ChainMatrix m;
        ChainPoint point;
        ASSERT_EQ(chain_matrix(chain, omega, m), PointVerdict::computed);
        ASSERT_EQ(analyze_point(chain, omega, point), PointVerdict::computed);
        const LongComplex A = from(m.A), B = from(m.B), C = from(m.C), D = from(m.D);
        EXPECT_LT(std::abs(A * D - B * C - 1.0L), 1e-12L * (1 + std::abs(A * D)));
        const long double R1 = chain.R1, R2 = chain.R2;
        const LongComplex H = (A + B / R1 + R2 * (C + D / R1)) * std::sqrt(R1 / R2) / 2.0L;
        EXPECT_LT(std::abs(20 * std::log10(std::abs(H)) - point.loss), 1e-12L);
        EXPECT_LT(relative(from(point.immittance), (A + B / R1) / (C + D / R1)), 1e-13L);
    }
}

// Lossless two-ports between matched resistors: loss and return loss share the power.
TEST(ChainAnalysis, LosslessCircuitsKeepThePower) {
    CircuitMaker make(4);
    std::vector<BranchId> kinds = all_kinds(false);
    std::erase_if(kinds, [](BranchId id) { return branch_kinds[id].cells.find('R') != std::string_view::npos; });
    for (int trial = 0; trial < 200; ++trial) {
        const Circuit circuit = make.circuit(kinds, 3, true);
        const ChainPoint point = point_of(circuit, {}, make.uniform(0.3, 3));
        if (point.return_loss == 100) continue;
        EXPECT_NEAR(static_cast<double>(std::pow(10, -point.loss / 10) + std::pow(10, -point.return_loss / 10)), 1,
                    1e-12);
    }
}

// The delay against the slope of the nodal phase, by a difference of fourth order.
TEST(ChainAnalysis, DelayIsTheSlopeOfThePhase) {
    CircuitMaker make(5);
    for (int trial = 0; trial < 600; ++trial) {
        const Circuit circuit = random_circuit(make, trial, 8);
        const auto& loss = losses[trial % std::size(losses)];
        const Wide omega = make.uniform(0.3, 3);
        const ChainPoint point = point_of(circuit, loss, omega);
        const auto H = [&](Wide w) { return NodalReference(circuit, loss, w).solve().H; };
        const LongComplex centre = H(omega);
        const Wide h = 1e-5L * omega;
        const auto angle = [&](Wide w) { return std::arg(H(w) / centre); };
        const Wide slope =
            (8 * (angle(omega + h) - angle(omega - h)) - (angle(omega + 2 * h) - angle(omega - 2 * h))) / (12 * h);
        EXPECT_LT(std::fabs(point.delay - slope), 1e-6L * std::fabs(slope) + 1e-9L / omega) << trial;
        EXPECT_LT(std::fabs(std::remainder(point.phase * std::numbers::pi_v<Wide> / 180 + std::arg(centre), two_pi)),
                  1e-13L);
    }
}

// An LC ladder of normalised values denormalised to 50 ohm and 1 GHz keeps its loss, and the table its units.
TEST(ChainAnalysis, ButterworthAtItsCorner) {
    for (int degree = 1; degree <= 50; ++degree) {
        const double R = 50, fc = 1e9, wc = 2 * std::numbers::pi * fc;
        Circuit ladder = circuit("R 50");
        for (int i = 1; i <= degree; ++i) {
            const double g = 2 * std::sin((2 * i - 1) * std::numbers::pi / (2 * degree));
            append_literal(ladder, i % 2 == 1 ? fmt::format("C{} {}", i + 2, g / (R * wc))
                                              : fmt::format("L{} {}", i + 2, g * R / wc));
        }
        append_literal(ladder, "R 50");

        const double frequencies[] = {0, 0.5 * fc, fc, 2 * fc};
        Performance performance;
        ASSERT_EQ(
            testing::analyse_unwatched(
                ladder, {.frequencies = frequencies, .filter_class = 1, .zeros_at_infinity = degree}, performance),
            ChainVerdict::done);
        ASSERT_EQ(performance.count, 4);
        EXPECT_EQ(performance.rows(1).loss, 0);
        for (int i = 2; i <= 4; ++i) {
            const double loss = 10 * std::log10(1 + std::pow(frequencies[i - 1] / fc, 2 * degree));
            EXPECT_NEAR(performance.rows(i).loss, loss, 1e-10 * (1 + loss));
        }
        double delay = 0;  // at f = 0: the sum of 2 cos of the poles' angles
        for (int i = 1; i <= degree; ++i) delay += std::sin((2 * i - 1) * std::numbers::pi / (2 * degree)) / wc;
        EXPECT_NEAR(performance.rows(1).delay, delay, 1e-9 * delay);
    }
}

TEST(ChainAnalysis, TerminationClasses) {
    Chain chain;
    EXPECT_EQ(prepare_chain(circuit("R 2"), {}, chain), ChainVerdict::no_circuit);
    const Circuit by_voltage = circuit("R 2 | L2 3");
    ASSERT_EQ(prepare_chain(by_voltage, {}, chain), ChainVerdict::done);
    EXPECT_EQ(chain.loss_class, LossClass::voltage);
    EXPECT_TRUE(chain.admittance);
    ChainPoint point = point_of(by_voltage, {}, 2);
    EXPECT_NEAR(static_cast<double>(point.loss), 10 * std::log10(1 + 9), 1e-14);  // |1 + j w L/R|
    EXPECT_LT(relative(from(point.immittance), 1.0L / LongComplex(2, 6)), 1e-18L);

    Circuit by_current = circuit("R 2 | L2 3 | C3 0.25");
    ASSERT_EQ(prepare_chain(by_current, {}, chain), ChainVerdict::done);
    EXPECT_EQ(chain.loss_class, LossClass::current);
    EXPECT_FALSE(chain.admittance);
    point = point_of(by_current, {}, 2);
    EXPECT_LT(relative(from(point.H.v), 1.0L + LongComplex(0, 0.5) * LongComplex(2, 6)), 1e-18L);

    by_current.kind = CircuitKind::wave_digital;
    EXPECT_EQ(prepare_chain(by_current, {}, chain), ChainVerdict::wave_digital);
    packBranch(by_current, 1, {.id = inductor, .i1 = 1, .in = 0, .kp = 0, .kn = 2});
    by_current.kind = CircuitKind::lumped;
    EXPECT_EQ(prepare_chain(by_current, {}, chain), ChainVerdict::not_a_resistor);
}

// A quarter-wave line turns Z into Z0^2/Z, and an attenuated one loses its alpha.
TEST(ChainAnalysis, Lines) {
    Circuit line = circuit("R 100 | UE3 70 | R 49", CircuitKind::microwave);
    line.fs = 2e9;  // quarter wave at 1 GHz
    Chain chain;
    ChainPoint point;
    ASSERT_EQ(prepare_chain(line, {}, chain), ChainVerdict::done);
    EXPECT_EQ(analyze_point(chain, two_pi * 1e9L, point), PointVerdict::on_pole);
    const Circuit blocking = circuit("R 1 | L2 1e20 | C3 1e20 | R 1");  // 794 dB
    ASSERT_EQ(prepare_chain(blocking, {}, chain), ChainVerdict::done);
    EXPECT_EQ(analyze_point(chain, 1, point), PointVerdict::beyond_reach);
    point = point_of(line, {}, two_pi * 0.9999e9L);
    EXPECT_NEAR(static_cast<double>(point.loss), 0, 1e-7);  // 70^2 = 100 x 49: matched
    EXPECT_NEAR(static_cast<double>(point.delay), 0.25e-9, 0.02e-9);

    // Every multiple of the quarter-wave frequency but 0 is left out; between them the loss repeats.
    std::vector<double> comb;
    for (int i = 0; i <= 14; ++i) comb.push_back(i * 0.5e9);
    auto performance = std::make_unique<Performance>();
    ASSERT_EQ(testing::analyse_unwatched(line, {.frequencies = comb}, *performance), ChainVerdict::done);
    ASSERT_EQ(performance->count, 8);
    EXPECT_EQ(performance->rows(1).frequency, 0);
    EXPECT_NEAR(performance->rows(1).loss, 20 * std::log10(149 / 140.0), 1e-14);  // 100 ohm and 49 ohm
    EXPECT_NEAR(performance->rows(1).delay, 0.25e-9 * (70 + 4900 / 70.0) / 149, 1e-17);
    for (int i = 2; i <= 8; ++i) {
        EXPECT_EQ(performance->rows(i).frequency, (i - 1.5) * 1e9);
        EXPECT_NEAR(performance->rows(i).loss, performance->rows(2).loss, 1e-13);
        EXPECT_NEAR(performance->rows(i).delay, performance->rows(2).delay, 1e-20);
    }

    line.VALUE(1) = line.VALUE(2) = line.VALUE(3) = 50;
    point = point_of(line, {.QL = 4.0, .QC = 0}, two_pi * 0.5e9L);
    EXPECT_NEAR(static_cast<double>(point.loss), 1.0, 1e-5);  // 4 dB in four quarter waves
    EXPECT_NEAR(static_cast<double>(point.delay), 0.25e-9, 1e-22);
    EXPECT_NEAR(static_cast<double>(point_of(line, {.QL = -4.0, .QC = 0}, two_pi * 0.5e9L).loss), 0.5, 1e-5);
}

// The loss of a trap climbs to its pole without a step: |H|^2 = 1 + (w/(2 (1 - w^2)))^2.
TEST(ChainAnalysis, NearAPole) {
    const Circuit trap = circuit("R 1 | LC2 1 1 | R 1");
    for (int power = 4; power <= 44; ++power) {
        const Wide off = std::ldexp(1.0L, -power);
        const ChainPoint point = point_of(trap, {}, 1 + off);
        const Wide X = (1 + off) / (2 * off + off * off);
        EXPECT_NEAR(static_cast<double>(point.loss - 10 * std::log10(1 + X * X / 4)), 0, 1e-5) << power;
        // arg H = -atan(X/2), dX/dw = -(1 + w^2)/(1 - w^2)^2
        const Wide slope = (2 + 2 * off + off * off) / (off * off * (2 + off) * (2 + off)) / 2 / (1 + X * X / 4);
        EXPECT_NEAR(static_cast<double>(point.delay / slope), 1, 1e-5) << power;
    }
}

// What has no row: stub poles, resonances that block, and f = 0 where the design or the kind of branch forbids it.
TEST(ChainAnalysis, PointsLeftOut) {
    const Circuit trap = circuit("R 1 | LC2 1 1 | R 1");
    const double radians[] = {0, 0.5, 1, 1.0000001, 2};
    AnalysisRequest request{.frequencies = radians, .radians = true};
    auto performance = std::make_unique<Performance>();
    ASSERT_EQ(testing::analyse_unwatched(trap, request, *performance), ChainVerdict::done);
    ASSERT_EQ(performance->count, 4);  // the trap's own frequency blocks
    EXPECT_EQ(performance->rows(3).frequency, 1.0000001);
    EXPECT_NEAR(performance->rows(3).loss, 20 * std::log10(1 / 2e-7) - 20 * std::log10(2), 1e-5);
    for (const auto& [filter_class, nz, ni, count] :
         {std::tuple{3, 0, 0, 3}, {1, 1, 0, 3}, {2, 0, 2, 3}, {2, 0, 0, 4}, {1, 0, 2, 4}}) {
        request.filter_class = filter_class;
        request.zeros_at_zero = nz;
        request.zeros_at_infinity = ni;
        ASSERT_EQ(testing::analyse_unwatched(trap, request, *performance), ChainVerdict::done);
        EXPECT_EQ(performance->count, count) << filter_class << nz << ni;
    }
    EXPECT_EQ(testing::analyse_unwatched(trap, {}, *performance), ChainVerdict::bad_frequencies);
    const std::vector<double> many(502, 1.5);
    EXPECT_EQ(testing::analyse_unwatched(trap, {.frequencies = many}, *performance), ChainVerdict::bad_frequencies);
    const std::span<const double> most(many.data(), 501);
    EXPECT_EQ(testing::analyse_unwatched(trap, {.frequencies = most}, *performance), ChainVerdict::done);
    for (const double wrong : {-1.0, 0.25, HUGE_VAL, std::nan("")}) {
        const double list[] = {0.5, wrong};
        EXPECT_EQ(testing::analyse_unwatched(trap, {.frequencies = list}, *performance), ChainVerdict::bad_frequencies);
    }

    // A blocked direct current: 250 dB and more are reported as they are and stored as 200.
    const double zero[] = {0, 1};
    ASSERT_EQ(
        testing::analyse_unwatched(circuit("R 1 | C2 1 | R 1"), {.frequencies = zero, .radians = true}, *performance),
        ChainVerdict::done);
    ASSERT_EQ(performance->count, 2);
    EXPECT_GT(performance->rows(1).loss, 250);
    auto result = std::make_unique<AnalysisResult>();
    store_performance(*performance, *result);
    EXPECT_EQ(result->LOSS(1), 200.0f);
    EXPECT_EQ(result->frequency_count, 2);
    EXPECT_TRUE(result->has_return_loss);
}

}  // namespace
}  // namespace kavrel
