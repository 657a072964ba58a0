// Ladders from both ends: against those from one end, and the join's own check; and which of them is taken.
#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

std::string parametric_pass(int nz, int ni, int zeros) {
    constexpr const char* lists[] = {"", "zeros 4000", "zeros 4000 1500", "zeros 4000 1500 5000",
                                     "zeros 4000 1500 5000 1100"};
    return fmt::format("band ripple parametric R 50 50 ends {} {} {}", nz, ni, lists[zeros]);
}

// Largest relative difference of two circuits, cell by cell.
double deviation(const Circuit& p, const Circuit& q) {
    if (p.klast != q.klast || p.ilast != q.ilast) return 1e9;
    double worst = std::fabs(p.R2 / q.R2 - 1);
    for (int i = 1; i <= p.ilast; ++i) worst = std::fmax(worst, std::fabs(p.VALUE(i) / q.VALUE(i) - 1));
    return worst;
}

// How far the terminations are from those asked for.
double distance(const LadderRun& run) {
    return std::fabs(std::log(run.state.available_ratio / run.state.requested_ratio));
}

// What every joined ladder has to be: the filter asked for, each zero made once, its halves agreeing on the level, and
// that level the one that the terminated network asks for.
void expect_joined(const LadderRun& run) {
    SCOPED_TRACE(run.words());
    ASSERT_TRUE(run.verdict.good()) << static_cast<int>(run.verdict.fault);
    const SynthesisState& state = run.state;
    EXPECT_TRUE(state.two_way);
    EXPECT_LT(state.loss_error, 1e-9);
    EXPECT_GT(state.loss.points, 100);
    EXPECT_EQ(state.join.ratio_count, 4);
    EXPECT_LT(state.join.difference, 1e-60);
    EXPECT_GT(state.join.forward_records, 0);
    EXPECT_LT(state.join.forward_records, state.ladder.record_count);
    std::multiset<double> made, asked_for;
    for (int k = 1; k <= state.ladder.record_count; ++k) {
        if (state.ladder.SFR(k) != 0) made.insert(state.ladder.SFR(k));
    }
    for (int i = 1; i <= state.problem.zero_count; ++i) asked_for.insert(state.problem.zero_hz_im(i));
    EXPECT_EQ(made, asked_for);
    double far = 0;
    ASSERT_TRUE(far_termination(state.problem, state.ladder, state.problem.own_resistance, far));
    EXPECT_NEAR(far / run.circuit.R2, 1, 1e-12);
}
Ladder joined(const std::string& text) {
    SCOPED_TRACE(text);
    Ladder run = run_of(text, Direction::two_way);
    expect_joined(*run);
    return run;
}

// Complete removals alone: from whichever end, it is the same network. (Of a parallel L and C in one place the one
// comes first that is removed first: band-passes are not compared from the output.)
TEST(TwoWay, AllPoleLaddersAreThoseOfOneWay) {
    for (const char* type : {"low", "high", "band"}) {
        for (const char* passband : {"flat", "ripple"}) {
            for (const int n : {2, 3, 4, 7, 12, 15, 26, 31, 50}) {
                if (*type == 'b' && n % 2 == 1) continue;
                for (const int load : n < 26 ? std::vector{50, 100, 20} : std::vector{100}) {
                    const std::string text = fmt::format("{} {} {} R 50 {}", type, passband, n, load);
                    const Ladder both = joined(text);
                    EXPECT_EQ(both->state.negative_elements, 0);
                    EXPECT_LT(deviation(both->circuit, run_of(text, Direction::forward)->circuit), 1e-12) << text;
                    if (*type == 'b') continue;
                    EXPECT_LT(deviation(both->circuit, run_of(text, Direction::reverse)->circuit), 1e-12) << text;
                }
            }
        }
    }
}

// The removals of an elliptic low-pass that was joined, all from the input in the order in which both ends took them.
Script one_way_script(const SynthesisState& state) {
    // The dual network begins with a series branch.
    const bool series = state.script.JCONF(4) == "imp";
    Script script;
    for (int i = 1; i <= 3; ++i) script.append(state.script.JCONF(i).text());
    for (int k = 1; k <= state.ladder.record_count; ++k) {
        for (int i = 1; i <= state.problem.zero_count; ++i) {
            if (state.ladder.SFR(k) != state.problem.zero_hz_im(i)) continue;
            append_step(script, series ? StepKind::impedance_shift_infinity : StepKind::admittance_shift_infinity, i);
        }
    }
    append_step(script, series ? StepKind::impedance_infinity : StepKind::admittance_infinity);
    if (state.problem.zeros_at_infinity == 2) {
        append_step(script, series ? StepKind::admittance_infinity : StepKind::impedance_infinity);
    }
    script.append("fini");
    return script;
}

// The run from the input alone gives the same elements: those of the reverse run, and of the middle branch, too.
TEST(TwoWay, EllipticLaddersAreThoseOfOneWayInTheSameOrder) {
    for (const int n : {5, 6, 13, 14, 20, 31, 36, 49}) {
        for (const char* rest : {"1 R 50 50", "0 R 50 50", "1 R 50 100", "0 R 50 100"}) {
            const Ladder both = joined(fmt::format("low ripple {} minima {}", n, rest));
            const LadderProblem& problem = both->state.problem;
            const LadderState& ladder = both->state.ladder;
            LadderState one = start_state(problem, ladder.selection);
            Unwatched unwatched;
            ASSERT_TRUE(runScript(problem, one_way_script(both->state), unwatched, one).good()) << both->words();
            ASSERT_EQ(one.record_count, ladder.record_count);
            for (int k = 1; k <= one.record_count; ++k) {
                const WideReal second = one.SVAL2(k) - ladder.SVAL2(k);
                EXPECT_LT(rounded(abs(ladder.SVAL1(k) / one.SVAL1(k) - 1)), 1e-12L) << n << rest;
                EXPECT_LT(rounded(abs(one.SVAL2(k).sign() == 0 ? second : second / one.SVAL2(k))), 1e-12L) << n << rest;
            }
        }
    }
}

// Where the two runs find no order without negative elements, there is none.
TEST(TwoWay, EllipticFiltersOfAllKinds) {
    int none = 0;
    for (const char* type : {"low", "high", "band"}) {
        for (const char* passband : {"flat", "ripple"}) {
            for (const int n : {13, 14, 22, 25, 32, 49}) {
                if (*type == 'b' && n % 2 == 1) continue;
                const std::string text =
                    fmt::format("{} {} {} minima 1 R 50 {}", type, passband, n, n % 3 == 1 ? 50 : 150);
                const Ladder both = run_of(text, Direction::two_way);
                if (both->state.script_verdict.fault == ScriptFault::no_acceptable_zero) {
                    ++none;
                    EXPECT_EQ(run_of(text)->state.search, SearchVerdict::none_exists);
                    continue;
                }
                SCOPED_TRACE(text);
                expect_joined(*both);
                EXPECT_EQ(both->state.negative_elements, 0);
            }
        }
    }
    EXPECT_EQ(none, 2);
}

// Poles at zero and infinity in one form (zeros in pairs), in different forms (by turns, with a whole step of the other
// run between both), and a branch that neither end sees.
TEST(TwoWay, ParametricBandPasses) {
    int filters = 0, mixed = 0, hidden = 0;
    for (int nz = 1; nz <= 4; ++nz) {
        for (int ni = 1; ni <= 4; ++ni) {
            for (int zeros = 0; zeros <= 4; ++zeros) {
                if (nz + ni + 2 * zeros < 5) continue;
                const Ladder both = run_of(parametric_pass(nz, ni, zeros), Direction::two_way);
                if (both->verdict.fault == SynthesisFault::no_two_way) continue;
                SCOPED_TRACE(parametric_pass(nz, ni, zeros));
                expect_joined(*both);
                ++filters;
                const auto prin = both->words().find("prin");
                mixed += both->words().find(" s c ", prin) != std::string::npos ? 1 : 0;
                hidden += hides_branch(both->state.problem, both->state.ladder.selection) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(filters, 60);
    EXPECT_GE(mixed, 3);
    EXPECT_GT(hidden, 10);
}

TEST(TwoWay, StubsAndMatchingNetworks) {
    for (const char* type : {"low", "high", "band"}) {
        joined(fmt::format("{} ripple 14 minima 1 quarter 20000 R 50 50", type));
        joined(fmt::format("{} ripple 14 quarter 20000 R 50 50", type));
    }
    for (const double load : {100.0, 400.0}) {
        const Ladder both = joined(fmt::format("matching ripple 16 edges 1000 3000 loss 0.01 R 50 {}", load));
        EXPECT_NEAR(both->circuit.R2 / load, 1, 1e-9);
    }
}

struct Halves {
    LadderState forward, reverse;
};
std::unique_ptr<Halves> halves(const std::string& text, bool dual_output) {
    auto made = std::make_unique<Halves>();
    const auto problem = std::make_unique<LadderProblem>(run_of(text)->state.problem);
    Selection input, output;
    EXPECT_EQ(chooseImmittance(*problem, false, false, input), ChoiceFault::none);
    EXPECT_EQ(chooseImmittance(*problem, true, dual_output, output), ChoiceFault::none);
    TwoWayScripts scripts;
    EXPECT_TRUE(two_way_scripts(*problem, input, output, scripts));
    made->forward = start_state(*problem, input);
    made->reverse = start_state(*problem, output);
    Unwatched unwatched;
    EXPECT_EQ(run_two_way(*problem, scripts, unwatched, made->forward, made->reverse).good(), !dual_output);
    return made;
}

// A wrong half is not joined: another filter's, one of the dual network, one whose element is off by 1e-6, one with a
// compound branch or a line, one that is too long.
TEST(TwoWay, RunsThatDoNotFitAreNotJoined) {
    const auto good = halves("low ripple 9 minima 1 R 50 50", false);
    LadderState ladder;
    Join join;
    ASSERT_TRUE(join_runs(good->forward, good->reverse, ladder, join));
    EXPECT_EQ(ladder.record_count, good->forward.record_count + good->reverse.record_count);

    std::vector<LadderState> wrong(4, good->reverse);
    wrong[0].SVAL1(2) *= 1.000001L;
    wrong[1].quadruplet_count = 1;
    wrong[2].SVAL2(1) = unit_element_mark;
    wrong[3].record_count = record_limit;
    wrong.push_back(halves("low ripple 9 minima 1 R 50 50", true)->reverse);
    wrong.push_back(halves("low ripple 9 minima 1 R 50 50 loss 0.2", false)->reverse);
    for (const LadderState& reverse : wrong) EXPECT_FALSE(join_runs(good->forward, reverse, ladder, join));
}

// Unasked from degree 12 on, where both ends have resistors and all elements come out positive: not with one resistor,
// a zero off the axis, lines, or an immittance chosen by hand.
TEST(TwoWay, IsTheAutomaticChoice) {
    struct Case {
        const char* text;
        std::string_view direction;
        SynthesisRequest request = {};
    };
    const Case cases[] = {
        {"low flat 10", "forward"},
        {"high flat 10", "forward"},
        {"band flat 10", "forward"},
        {"low ripple 11", "forward"},
        {"low flat 12", "two-way"},
        {"high flat 12", "two-way"},
        {"band flat 12", "two-way"},
        {"low ripple 50", "two-way"},
        {"high ripple 14 minima 1 R 50 50", "two-way"},
        {"band ripple 14 minima 1 R 50 50", "two-way"},
        {"low ripple 20", "forward", {.direction = Direction::forward}},
        {"low ripple 20", "reverse", {.direction = Direction::reverse}},
        {"low ripple 13 R 1 0", "forward"},
        {"low ripple 13", "forward", {.manual_selection = true}},
        {"low ripple quarter 20000 R 50 50 ends 0 9 lines 4", "forward"},
        {"low ripple R 50 50 ends 0 9 complex 1500 1000", "forward"},
        // Its quadruplet is refused as the first removal; a later order comes off.
        {"low ripple quarter 20000 loss 2 R 50 50 ends 0 4 complex 2700 2700 lines 4", "forward"},
        // No ladder of this one is all positive: what is taken is not the joined one.
        {"band ripple parametric R 50 50 ends 4 0 zeros 4000 1500 5000 1100", "forward"},
    };
    for (const Case& c : cases) {
        const Ladder run = run_of(c.text, c.request);
        EXPECT_TRUE(run->verdict.good()) << c.text;
        EXPECT_EQ(run->state.direction(), c.direction) << c.text;
    }
}

// With more zeros at one end of the axis than at the other the order of removals sets the level: of the ladders from
// both ends, from the input and from the output the one with the nearest terminations is taken. So with a complex zero
// whose place is another from the output, and with stubs and a line of a high-pass: at the quarter-wave frequency the
// line passes, but transforms.
TEST(TwoWay, NearestTerminationsAreTaken) {
    std::vector<std::string> requests = {
        "band ripple parametric edges 900 2500 loss 1 R 50 250 ends 3 13 complex 300 6660.82",
        "high ripple quarter 40000 loss 1 R 50 250 ends 31 0 lines 1", parametric_pass(3, 2, 4)};
    for (const int zeros : {0, 1, 3}) {
        for (const auto& [nz, ni] : {std::pair{5, 8}, {12, 1}, {2, 11}, {7, 7}}) {
            requests.push_back(parametric_pass(nz, ni, zeros));
        }
    }
    std::set<std::string_view> directions;
    for (const std::string& text : requests) {
        SCOPED_TRACE(text);
        const Ladder taken = run_of(text);
        ASSERT_TRUE(taken->verdict.good());
        directions.insert(taken->state.direction());
        for (const Direction direction : {Direction::forward, Direction::reverse, Direction::two_way}) {
            const Ladder one = run_of(text, direction);
            if (!one->verdict.good() || one->state.negative_elements > taken->state.negative_elements) continue;
            EXPECT_LE(distance(*taken), distance(*one) + 1e-8) << one->state.direction();
        }
    }
    EXPECT_EQ(directions.size(), 3U);
}

// In a narrow band the wrong one of two immittances that hide a branch comes within 0.1 dB.
TEST(TwoWay, HiddenBranchInANarrowBand) {
    for (const char* text : {"band ripple parametric edges 900 920 loss 1 ends 8 1",
                             "band ripple parametric edges 900 920 loss 3.01 ends 3 5 zeros 394.85 393.45"}) {
        for (const Direction direction : {Direction::automatic, Direction::forward, Direction::reverse}) {
            const Ladder run = run_of(text, direction);
            ASSERT_TRUE(run->verdict.good());
            EXPECT_LT(run->state.loss_error, 1e-9) << run->state.direction();
        }
    }
}

// The search from the input runs out of work; the one from the output finds an order without negative elements.
TEST(TwoWay, SearchBeginsAtTheOutputToo) {
    const std::string text =
        "band flat parametric edges 900 1500 loss 3.01 R 600 780 ends 0 13 zeros 1599.57 1890.18 complex 100 4292.07 "
        "zeros 525.25 2332.05 3218.81 4165.31 1624.03 3015.84 4181.33";
    const Ladder run = run_of(text);
    ASSERT_TRUE(run->verdict.good());
    EXPECT_EQ(run->state.negative_elements, 0);
    EXPECT_EQ(run->state.search, SearchVerdict::found);
    EXPECT_EQ(run_of(text, Direction::forward)->state.search, SearchVerdict::given_up);
}

}  // namespace
}  // namespace kavrel::test
