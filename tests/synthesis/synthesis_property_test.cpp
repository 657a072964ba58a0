// Requests of all kinds: the loss of the circuit is the loss of the transfer function.
#include <cmath>
#include <complex>
#include <random>
#include <tuple>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

TEST(SynthesisProperty, AllPoleAndEqualMinima) {
    Tally tally;
    for (const char* type : {"low", "high", "band"}) {
        for (const char* passband : {"flat", "ripple"}) {
            for (const int n : {1, 2, 3, 4, 5, 8, 13, 20, 31, 50}) {
                for (const int load : {50, 100, 0}) {
                    if (*type == 'b' && n % 2 == 1) continue;
                    tally.take(fmt::format("{} {} {} R 50 {}", type, passband, n, load));
                }
            }
            for (const int n : {3, 4, 5, 6, 7, 9, 12, 21, 32, 49}) {
                for (const int flag : {1, 0}) {
                    if (*type == 'b' && n % 2 == 1) continue;
                    tally.take(fmt::format("{} {} {} minima {} R 50 50", type, passband, n, flag));
                }
            }
        }
    }
    EXPECT_EQ(tally.requests, 246);
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
        LadderRun run;
        run.run(s);
        tally.take(run, fmt::format("turn {}", turn));
    }
    EXPECT_GT(tally.requests, 140);
}

// Source voltage for 1 A through the load, at a complex s in rad/s, of branches 0 to 3. Its zeros are the natural
// modes.
std::complex<double> source_voltage(const Circuit& circuit, std::complex<double> s) {
    using enum BranchId;
    std::complex<double> v = circuit.VALUE(unpackBranch(circuit, 1).i1), i = 1;
    for (int k = unpackBranch(circuit, 1).kn; k != 0; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        const double first = circuit.VALUE(branch.i1);
        const double second = branch.id == lc ? circuit.VALUE(branch.i1 + 1) : 0;
        if (branch.id == resistor) return v + i * first;
        const std::complex<double> l = s * first, c = s * (branch.id == lc ? second : first);
        if (k % 2 == 0)
            v += i / (branch.id == inductor ? 1.0 / l : branch.id == capacitor ? c : 1.0 / l + c);
        else
            i += v / (branch.id == inductor ? l : branch.id == capacitor ? 1.0 / c : l + 1.0 / c);
    }
    return 0;
}

// Source voltage 0 with voltage at the load: the circuit's own modes are those of the record.
TEST(SynthesisProperty, NaturalModesAreThoseOfTheCircuit) {
    for (const char* text : {"low flat 6", "high flat 6", "band flat 6", "low ripple 7 minima 1 R 50 50",
                             "high ripple 7 minima 1 R 50 50", "band ripple 8 minima 1 R 50 50"}) {
        const Ladder run = run_of(text);
        ASSERT_TRUE(run->verdict.good());
        const Circuit& circuit = run->circuit;
        ASSERT_EQ(circuit.mode_count, run->design.xp.ES.count);
        std::complex<double> sum = 0;
        for (int i = 1; i <= circuit.mode_count; ++i) {
            const std::complex<double> mode{circuit.MODE_RE(i), circuit.MODE_IM(i)};
            sum += mode;
            EXPECT_LT(mode.real(), 0);
            const double scale = 2 * std::numbers::pi * circuit.fnorm;
            const double near = std::abs(source_voltage(circuit, mode * scale * 1.001));
            EXPECT_LT(std::abs(source_voltage(circuit, mode * scale)), 1e-8 * near) << text << " " << i;
        }
        EXPECT_NEAR(sum.imag(), 0, 1e-13) << "a conjugate is missing";
    }
}

// Each immittance that exists, as either form and from either end, leads to a ladder with the loss asked for, though
// some of them do not see the last branch.
TEST(SynthesisProperty, SelectionByHand) {
    Tally tally;
    for (const char* type : {"low", "high"}) {
        for (const int degree : {4, 5, 12, 13}) {
            for (const int load : {50, 100}) {
                for (const int choice : {0, 1, 2, 3, 4, 5, 6, 7}) {
                    SynthesisRequest request;
                    request.manual_selection = true;
                    request.numerator = choice % 2 == 0 ? Part::es : Part::ed;
                    request.denominator = choice / 2 % 2 == 0 ? Part::os : Part::od;
                    request.form = choice / 4 == 0 ? impedance : admittance;
                    request.direction = degree < 10 ? Direction::forward : Direction::reverse;
                    const std::string text = fmt::format("{} ripple {} R 50 {}", type, degree, load);
                    const Ladder run = run_of(text, request);
                    if (run->verdict.fault == SynthesisFault::selection_missing) continue;
                    tally.take(*run, text);
                    EXPECT_EQ(run->state.ladder.selection.form, request.form);
                }
            }
        }
    }
    EXPECT_GE(tally.requests, 80);
}

// An order without negative elements is looked for whoever chose the immittance.
TEST(SynthesisProperty, SelectionByHandIsSearched) {
    for (const int form : {impedance, admittance}) {
        const Ladder run =
            run_of("high flat R 600 0 loss 1 ends 3 0 zeros 1400", {.manual_selection = true, .form = form});
        ASSERT_TRUE(run->verdict.good());
        EXPECT_EQ(run->state.negative_elements, 0) << form;
        EXPECT_TRUE(run->state.searched);
    }
}

// A design that has no ladder, or a circuit that is wrong, leaves the former circuit; the report gives the reason.
TEST(SynthesisProperty, FailureLeavesTheFormerCircuit) {
    const Ladder run = run_of("low ripple 5");
    ASSERT_TRUE(run->verdict.good());
    const Circuit former = run->circuit;
    const auto expect_failure = [&](SynthesisFault fault, std::string_view first_line) {
        EXPECT_EQ(run->verdict.fault, fault);
        const std::vector<std::string> lines = failure_report(run->verdict, run->state);
        EXPECT_EQ(lines.front().substr(0, first_line.size()), first_line);
        EXPECT_EQ(lines.back(), " **** Synthesis failed ****");
        EXPECT_EQ(run->circuit, former);
    };
    struct Case {
        const char* text;
        SynthesisFault fault;
        const char* line;
        SynthesisRequest request = {};
    };
    const SynthesisRequest two_way{.direction = Direction::two_way};
    const SynthesisRequest blind{.manual_selection = true, .numerator = Part::ed};
    const Case cases[] = {
        // A zero on the real axis, one or two, for itself or beside a quadruplet.
        {"low ripple R 50 50 ends 0 2 complex 2500 0", SynthesisFault::real_zero, real_zero_text.data()},
        {"low ripple R 50 50 ends 0 2 complex 2500 0 complex 4000 0", SynthesisFault::real_zero, real_zero_text.data()},
        {"low flat R 50 500 ends 0 3 complex 2500 0 complex 1500 1000", SynthesisFault::real_zero,
         real_zero_text.data()},
        // One quadruplet more than there is room for.
        {"low ripple R 50 50 ends 0 2 complex 2500 100 complex 2500 300 complex 2500 500 complex 2500 700 "
         "complex 2500 900 complex 2500 1100 complex 2500 1300 complex 2500 1500 complex 2500 1700 complex 2500 1900 "
         "complex 2500 2100",
         SynthesisFault::too_many_quadruplets, too_many_quadruplets_text.data()},
        // An immittance chosen by hand that does not see the last two branches.
        {"band ripple 6", SynthesisFault::element_missing, element_missing_text.data(), blind},
        // No transmission zero at 0, infinity or of a line.
        {"low ripple 6 minima -1 R 50 50", SynthesisFault::not_realizable, not_realizable_text.data()},
        // The store has room for 47 lines.
        {"low ripple quarter 20000 R 50 50 ends 0 0 lines 48", SynthesisFault::storage_full, "Storage is full"},
        // One end, whoever chose the immittance, and no scripts for both.
        {"low ripple 4 R 1 0",
         SynthesisFault::immittance_missing,
         immittance_not_found_text.data(),
         {.direction = Direction::reverse, .manual_selection = true}},
        {"low ripple 13 R 1 0", SynthesisFault::immittance_missing, immittance_not_found_text.data(), two_way},
        {"low ripple R 50 50 ends 0 4 complex 1500 1000", SynthesisFault::no_two_way, element_missing_text.data(),
         two_way},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        run->request = c.request;
        run->run(asked(c.text));
        ASSERT_TRUE(run->approximated);
        expect_failure(c.fault, c.line);
        EXPECT_FALSE(run->state.two_way);
    }
    // Polynomials of another filter; with one termination only the circuit shows it.
    for (const auto& [text, fault, line] :
         {std::tuple{"low ripple 5", SynthesisFault::polynomials_missing, polynomials_missing_text},
          std::tuple{"low ripple 5 R 50 0", SynthesisFault::loss_differs, loss_differs_text}}) {
        run->request = {};
        run->run(asked(text));
        for (int i = 1; i <= run->design.xp.QS.count; ++i) run->design.xp.QS.re(i) = 1.2L;
        run->circuit = former;
        run->verdict = synthesise(run->design.xp, run->design.spec, {}, run->state, run->circuit);
        expect_failure(fault, line);
    }
    // A failure that left nothing behind.
    for (int fault = 1; fault <= static_cast<int>(SynthesisFault::loss_differs); ++fault) {
        const std::vector<std::string> lines = failure_report({static_cast<SynthesisFault>(fault)}, {});
        EXPECT_GT(lines.size(), 1U);
        EXPECT_NE(lines.front(), "");
    }
}

}  // namespace
}  // namespace kavrel::test
