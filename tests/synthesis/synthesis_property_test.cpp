// Requests of all kinds: the loss of the circuit is the loss of the transfer function.
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

TEST(SynthesisProperty, AllPole) {
    Tally tally;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {1, 2, 3, 4, 5, 8, 13, 20, 31, 50}) {
                if (type == band_pass && n % 2 == 1) continue;
                for (const double load : {50.0, 100.0, 0.0}) {
                    FilterSpec s = all_pole(type, passband, n);
                    s.loadResistance = load;
                    tally.take(s, "all-pole");
                }
            }
        }
    }
    tally.tell();
    EXPECT_GT(tally.requests, 120);
}

TEST(SynthesisProperty, EqualMinima) {
    Tally tally;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int flag : {1, 0}) {
                for (const int n : {3, 4, 5, 6, 7, 9, 12, 21, 32, 49}) {
                    if (type == band_pass && n % 2 == 1) continue;
                    FilterSpec s = with_minima(type, passband, n, flag);
                    s.loadResistance = 50;
                    tally.take(s, "equal minima");
                }
            }
        }
    }
    tally.tell();
    EXPECT_GT(tally.requests, 80);
}

// Zeros anywhere in the stop bands, conventional and parametric, with any share of the extreme points.
TEST(SynthesisProperty, SpecifiedZeros) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> share(0, 1);
    Tally tally;
    for (int turn = 0; turn < 160; ++turn) {
        const FilterType type = turn % 4 < 2 ? band_pass : turn % 4 == 2 ? low_pass : high_pass;
        const int zeros = static_cast<int>(share(random) * 6);
        FilterSpec s = all_pole(type, turn % 3 == 0 ? maximally_flat : equal_ripple, 2);
        s.loadResistance = turn % 5 == 0 ? 100 : 50;
        s.zeroCount = zeros;
        for (int i = 1; i <= zeros; ++i) {
            const bool below = type == high_pass || (type == band_pass && share(random) < 0.5);
            s.FZI(i) = below ? 2000 / (1.1 + 2 * share(random)) : 3000 * (1.1 + 2 * share(random));
        }
        s.zerosAtZero = type == low_pass ? 0 : 1 + static_cast<int>(share(random) * 4);
        s.zerosAtInfinity = type == high_pass ? 0 : 1 + static_cast<int>(share(random) * 4);
        if (type == band_pass) {
            s.bandpassType = (s.zerosAtZero + s.zerosAtInfinity) % 2 == 0 ? conventional : parametric;
        }
        s.degree = 2 * zeros + s.zerosAtZero + s.zerosAtInfinity;
        s.degreeParity = s.degree % 2;
        tally.take(s, "specified");
    }
    tally.tell();
    EXPECT_GT(tally.requests, 140);
}

// Zeros on the real axis, one or two, have no ladder without transformers: the design is refused, not forced.
TEST(SynthesisProperty, ZeroOnTheRealAxisIsRefused) {
    for (const int zeros : {1, 2}) {
        FilterSpec s = all_pole(low_pass, equal_ripple, 4);
        s.loadResistance = 50;
        s.zeroCount = zeros;
        s.FZR(1) = 2500;
        s.FZR(2) = 4000;
        s.zerosAtInfinity = 2;
        auto run = std::make_unique<LadderRun>();
        run->run(s);
        ASSERT_TRUE(run->approximated);
        EXPECT_EQ(run->verdict.fault, SynthesisFault::real_zero);
        const std::vector<std::string> lines = failure_report(run->verdict, run->state);
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[0], " **** A zero on the real axis has no ladder without transformers ****");
        EXPECT_EQ(lines[1], " **** Synthesis failed ****");
    }
}

// Source voltage 0 with voltage at the load: the circuit's own modes are those that the record tells.
TEST(SynthesisProperty, NaturalModesAreThoseOfTheCircuit) {
    const auto expect_modes = [](const FilterSpec& spec) {
        auto run = std::make_unique<LadderRun>();
        run->run(spec);
        ASSERT_TRUE(run->verdict.good());
        const Circuit& circuit = run->circuit;
        ASSERT_EQ(circuit.mode_count, run->design.xp.ES.count);
        std::complex<double> sum = 0;
        for (int i = 1; i <= circuit.mode_count; ++i) {
            const std::complex<double> mode{circuit.MODE_RE(i), circuit.MODE_IM(i)};
            sum += mode;
            EXPECT_LT(mode.real(), 0);
            const double scale = 2 * std::numbers::pi * circuit.fnorm;
            const double near = std::abs(chain_characteristic(circuit, mode * scale * 1.001));
            EXPECT_LT(std::abs(chain_characteristic(circuit, mode * scale)), 1e-8 * near)
                << spec.filterType << " " << i;
        }
        EXPECT_NEAR(sum.imag(), 0, 1e-13) << "a conjugate is missing";
    };
    for (const auto type : {low_pass, high_pass, band_pass}) {
        expect_modes(all_pole(type, maximally_flat, 6));
        FilterSpec s = with_minima(type, equal_ripple, type == band_pass ? 8 : 7, 1);
        s.loadResistance = 50;
        expect_modes(s);
    }
}

// Each immittance that exists, as either form and from either end, leads to a ladder with the loss asked for, though
// some of them do not see the last branch.
TEST(SynthesisProperty, SelectionByHand) {
    Tally tally;
    for (const auto type : {low_pass, high_pass}) {
        for (const int degree : {4, 5, 12, 13}) {
            for (const double load : {50.0, 100.0}) {
                for (const int choice : {0, 1, 2, 3, 4, 5, 6, 7}) {
                    auto run = std::make_unique<LadderRun>();
                    run->request.manual_selection = true;
                    run->request.numerator = choice % 2 == 0 ? Part::es : Part::ed;
                    run->request.denominator = choice / 2 % 2 == 0 ? Part::os : Part::od;
                    run->request.form = choice / 4 == 0 ? impedance : admittance;
                    run->request.direction = degree < 10 ? Direction::forward : Direction::reverse;
                    FilterSpec s = all_pole(type, equal_ripple, degree);
                    s.loadResistance = load;
                    run->run(s);
                    ASSERT_TRUE(run->approximated);
                    if (run->verdict.fault == SynthesisFault::selection_missing) continue;
                    tally.take(s, "by hand", *run);
                    EXPECT_EQ(run->state.ladder.selection.form, run->request.form);
                }
            }
        }
    }
    tally.tell();
    EXPECT_GE(tally.requests, 80);
}

// An order without negative elements is looked for whoever chose the immittance.
TEST(SynthesisProperty, SelectionByHandIsSearched) {
    FilterSpec s = all_pole(high_pass, maximally_flat, 5);
    s.bandEdgeLoss = 1;
    s.sourceResistance = 600, s.loadResistance = 0;
    s.zerosAtZero = 3, s.zeroCount = 1, s.FZI(1) = 1400;
    for (const int form : {impedance, admittance}) {
        auto run = std::make_unique<LadderRun>();
        run->request.manual_selection = true;
        run->request.form = form;
        run->run(s);
        ASSERT_TRUE(run->approximated && run->verdict.good());
        EXPECT_EQ(run->state.negative_elements, 0) << form;
        EXPECT_TRUE(run->state.searched);
    }
}

// A circuit that is wrong is not shown: the former one stays. An element spread of 1e40 is more than doubles hold.
TEST(SynthesisProperty, WrongCircuitLeavesTheFormerOne) {
    auto run = std::make_unique<LadderRun>();
    run->run(all_pole(low_pass, equal_ripple, 5));
    ASSERT_TRUE(run->verdict.good());
    const Circuit former = run->circuit;
    FilterSpec s = all_pole(band_pass, equal_ripple, 26);
    s.bandpassType = parametric;
    s.lowerPassEdge = 900, s.upperPassEdge = 920;
    s.bandEdgeLoss = 0.01;
    s.loadResistance = 50;
    s.zerosAtZero = 1, s.zerosAtInfinity = 5;
    for (const double hz : {306.85, 300.39, 1344.05, 1314.45, 333.23, 343.6, 316.95, 455.45, 534.11, 496.78}) {
        s.FZI(++s.zeroCount) = hz;
    }
    run->run(s);
    ASSERT_EQ(run->verdict.fault, SynthesisFault::loss_differs);
    EXPECT_EQ(run->circuit, former);
    const std::vector<std::string> lines = failure_report(run->verdict, run->state);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].find(" Largest difference of loss ="), 0U);
    // Polynomials of another filter.
    run->run(all_pole(low_pass, equal_ripple, 5));
    XPlane xp = run->design.xp;
    for (int i = 1; i <= xp.QS.count; ++i) xp.QS.re(i) = 1.2L;
    EXPECT_FALSE(synthesise(xp, run->design.spec, {}, run->state, run->circuit).good());
    EXPECT_EQ(run->circuit, former);
    // An immittance chosen by hand that does not see the last two branches.
    run->request.manual_selection = true;
    run->request.numerator = Part::ed;
    run->run(all_pole(band_pass, equal_ripple, 6));
    EXPECT_EQ(run->verdict.fault, SynthesisFault::element_missing);
    EXPECT_EQ(failure_report(run->verdict, run->state)[0], " **** Element(s) missing ****");
    EXPECT_EQ(failure_report(run->verdict, run->state)[1], "parity = 0");
    EXPECT_EQ(run->circuit, former);
    run->request = {};
    // No transmission zero at 0, infinity or of a line.
    s = with_minima(low_pass, equal_ripple, 6, -1);
    s.loadResistance = 50;
    run->run(s);
    ASSERT_TRUE(run->approximated);
    EXPECT_EQ(run->verdict.fault, SynthesisFault::not_realizable);
    EXPECT_EQ(run->circuit, former);
}

}  // namespace
}  // namespace kavrel::test
