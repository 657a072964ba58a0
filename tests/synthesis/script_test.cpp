// The interpreter: what each sentence refuses, and that a refused sentence changes nothing.
#include <algorithm>
#include <cstring>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// An elliptic low-pass of degree 7, and a band-pass with two low, two high and one complex zero.
struct Bench {
    Design design;
    LadderProblem problem;
    Selection selection;
    Script script;
    LadderState state;

    explicit Bench(const FilterSpec& spec) {
        design.spec = spec;
        design.run();
        EXPECT_TRUE(design.verdict.good());
        EXPECT_TRUE(ladder_problem(design.xp, design.spec, problem));
        EXPECT_EQ(chooseImmittance(problem, false, false, selection), ChoiceFault::none);
        state = start_state(problem, selection);
    }
    ScriptVerdict run(std::string_view words) {
        script = {};
        script.append("in");
        script.append(word_of(selection.numerator));
        script.append(word_of(selection.denominator));
        script.append(words);
        state = start_state(problem, selection);
        return runScript(problem, script, state);
    }
};

FilterSpec elliptic() {
    FilterSpec s = with_minima(low_pass, equal_ripple, 7, 1);
    s.loadResistance = 50;
    return s;
}

FilterSpec band_pass_with_zeros() {
    FilterSpec s = all_pole(band_pass, equal_ripple, 12);
    s.loadResistance = 50;
    s.zeroCount = 4;
    s.FZI(1) = 1500, s.FZI(2) = 1200, s.FZI(3) = 3700, s.FZI(4) = 4200;
    s.zerosAtZero = s.zerosAtInfinity = 2;
    return s;
}

TEST(Script, EveryRefusalIsReached) {
    Bench bench(elliptic());
    struct Case {
        const char* words;
        ScriptFault fault;
    };
    const Case cases[] = {
        {"adm x c i", ScriptFault::incorrect_configuration},
        {"adm s q i", ScriptFault::incorrect_configuration},
        {"adm s c", ScriptFault::incorrect_configuration},
        {"adm s p i 9", ScriptFault::incorrect_configuration},
        {"adm s p i one", ScriptFault::incorrect_configuration},
        {"adm s p i 1 imp s c 1 adm s p i 1", ScriptFault::zero_not_available},
        {"adm s c 1", ScriptFault::zero_not_prepared},
        {"adm s p 1 2", ScriptFault::zero_not_prepared},
        {"adm s p i 1 imp s c 2", ScriptFault::incorrect_zero},
        {"adm s p i 1 imp s p 2 3", ScriptFault::incorrect_zero},
        {"adm s p i 1 imp s p 1", ScriptFault::value_missing},
        {"adm s p i 1 imp s p 1 adm s c 2", ScriptFault::value_missing},
        {"adm s p z 1", ScriptFault::extreme_impossible},
        {"imp ue", ScriptFault::no_unit_elements},
        {"imp s c i", ScriptFault::extreme_impossible},
        {"imp s c z", ScriptFault::extreme_impossible},
        {"adm s p i 1 adm s c 1", ScriptFault::pole_missing},
        {"adm s p i 1 adm d p 1 i 2 3", ScriptFault::pole_missing_double},
        {"imp d p z i 2 1", ScriptFault::extreme_impossible},
        {"fini", ScriptFault::incomplete_circuit},
        {"adm s c i end fini", ScriptFault::none},
    };
    for (const Case& c : cases) {
        const ScriptVerdict verdict = bench.run(c.words);
        EXPECT_EQ(verdict.fault, c.fault) << c.words << ": " << messageOf(verdict.fault);
        EXPECT_EQ(messageOf(verdict.fault).empty(), c.fault == ScriptFault::none);
    }
    // With its poles at 0 and infinity gone, no zero can be shifted there.
    EXPECT_EQ(bench.run("adm s c i adm s p i 0").fault, ScriptFault::no_acceptable_zero);
    // A function that is no reactance: two poles in a row.
    Bench spoilt(elliptic());
    ReactanceRoots& even = spoilt.problem.polynomials.es;
    even.root(2) = even.root(1) * 3;
    EXPECT_EQ(spoilt.run("adm s p i 1 imp s c 1 adm s p i 2 imp s c 2").fault, ScriptFault::roots_missing);
    // A function that has only the pole left that a zero is to be shifted with: it goes as a whole, and no zero comes.
    Bench three(with_minima(low_pass, equal_ripple, 3, 1));
    three.problem.zero_count = 2;
    three.problem.zero_x(2) = 3;
    EXPECT_EQ(three.run("adm s p i 1 imp s c 1 adm s p i 2").fault, ScriptFault::extreme_zero_missing);
    three.selection.denominator = Part::od;  // does not see the branch at the far end: the first one and the trap alone
    EXPECT_EQ(three.run("adm s p i 1").fault, ScriptFault::extreme_impossible);
    EXPECT_EQ(three.run("imp s p i 1 adm s p 1 2").fault, ScriptFault::zero_missing);
    Bench band(band_pass_with_zeros());
    // Both numbers the same: one zero, and one branch that makes it.
    const auto twice = [&](const std::string& form) { return band.run(form + " d p z i 1 1 end"); };
    EXPECT_TRUE(twice("imp").good() || twice("adm").good());
    EXPECT_EQ(band.state.record_count, 1);
    EXPECT_EQ(band.run("adm s p z 3 adm d p z i 4 2 adm d p z i 1 1").fault, ScriptFault::records_full);
    // Both zeros are there already.
    ASSERT_TRUE(band.run("end").good());
    const bool as_selected = has_pole_at_zero(band.state.F);
    const std::string both = as_selected == (band.state.form == impedance) ? "imp d p z i 1 3 " : "adm d p z i 1 3 ";
    EXPECT_EQ(band.run(both + both).fault, ScriptFault::double_roots_missing);
    bench.selection.denominator = Part::od;
    bench.problem.polynomials.od = {};
    EXPECT_EQ(bench.run("adm s c i").fault, ScriptFault::function_missing);
}

TEST(Script, ComplexZerosAndLinesAreNotForShifting) {
    FilterSpec s = all_pole(low_pass, equal_ripple, 8);
    s.loadResistance = 50;
    s.zeroCount = 1;
    s.FZR(1) = 1500, s.FZI(1) = 1000;
    s.zerosAtInfinity = 4;
    Bench bench(s);
    EXPECT_EQ(bench.run("adm s p i 1").fault, ScriptFault::complex_zero);
    EXPECT_EQ(bench.run("adm d c i 1 adm d c i 1").fault, ScriptFault::zero_not_available);
    // More of them than the function has.
    bench.problem.zero_count = 3;
    for (const int i : {2, 3}) {
        bench.problem.zero_x(i) = bench.problem.zero_x(1);
        bench.problem.zero_x_im(i) = bench.problem.zero_x_im(1);
    }
    EXPECT_EQ(bench.run("adm d c i 1 adm d c i 2 adm d c i 3").fault, ScriptFault::quadruplet_error);

    // A line that is not there: the reactance has no common factor to lose.
    FilterSpec lines = all_pole(low_pass, equal_ripple, 3);
    lines.loadResistance = 50;
    lines.medium = microwave;
    lines.implementation = 'M';
    lines.sampleFrequency = 20000;
    lines.unitElements = 2;
    lines.zerosAtInfinity = 1;
    Bench stubs(lines);
    EXPECT_EQ(stubs.run("adm s c i ue ue fini").fault, ScriptFault::none);
    stubs.problem.unit_elements = 3;
    EXPECT_EQ(stubs.run("adm s c i ue ue ue").fault, ScriptFault::unit_element_error);
}

TEST(Script, RemovalsRefuseWhatCannotBe) {
    Bench bench(elliptic());
    ASSERT_TRUE(bench.run("adm s p i 1 end").good());
    WorkingFunction f = bench.state.F;
    WideReal value1, value2;
    EXPECT_EQ(extreme(f, RemovalMode::given, ExtremeSide::infinity, 0, value1), RemovalFault::value_missing);
    EXPECT_EQ(finite(f, RemovalMode::complete, 5, 0, value1, value2), RemovalFault::pole_missing);
    invert(f);
    const WideReal pole = bench.problem.zero_x(1);
    EXPECT_EQ(finite(f, RemovalMode::given, pole, 0, value1, value2), RemovalFault::value_missing);

    // A given part of a pole leaves the rest of it: both together are the whole.
    WideReal whole1, whole2;
    WorkingFunction at_once = f;
    ASSERT_EQ(finite(at_once, RemovalMode::complete, pole, 0, whole1, whole2), RemovalFault::none);
    value2 = shifted(whole2, -2);
    ASSERT_EQ(finite(f, RemovalMode::given, pole, 0, value1, value2), RemovalFault::none);
    ASSERT_EQ(finite(f, RemovalMode::complete, pole, 0, value1, value2), RemovalFault::none);
    EXPECT_NEAR(static_cast<double>((value2 / whole2).rounded()), 0.75, 1e-15);
    EXPECT_NEAR(static_cast<double>((value_of(f, -0.3L) / value_of(at_once, -0.3L)).rounded()), 1, 1e-15);
}

TEST(Script, ARefusedSentenceChangesNothing) {
    Bench bench(elliptic());
    ASSERT_EQ(bench.run("adm s p i 1 end").fault, ScriptFault::none);
    const LadderState before = bench.state;
    bench.script.append("imp s c 2");
    EXPECT_FALSE(runScript(bench.problem, bench.script, bench.state).good());
    EXPECT_EQ(std::memcmp(&before, &bench.state, sizeof before), 0);
    EXPECT_EQ(runScript(bench.problem, bench.script, bench.state).position, bench.state.position);
}

// The report of a run: one row a value, both terminations, the zeros that the branches realise.
TEST(Script, ResultReportTellsTheLadder) {
    auto run = std::make_unique<LadderRun>();
    run->run(elliptic());
    ASSERT_TRUE(run->verdict.good());
    const std::vector<std::string> lines = result_report("a filter", run->state);
    EXPECT_EQ(lines[1], " Results of the synthesis from the input side");
    EXPECT_EQ(lines.back(), " *** Done ***");
    EXPECT_EQ(lines[3], "  1.0000000D+00  ├───r───┤  5.0000000D+01  termination");
    const auto count = [&](std::string_view part) {
        return std::count_if(lines.begin(), lines.end(),
                             [&](const std::string& text) { return text.find(part) != std::string::npos; });
    };
    EXPECT_EQ(count("zero frequency"), 3);
    EXPECT_EQ(count("termination"), 2);
    run->state.loss_error = 0.01;
    EXPECT_EQ(result_report("a filter", run->state).size(), lines.size() + 1);
    EXPECT_EQ(polynomial_report("a filter", run->design.xp, run->design.spec)[2].substr(0, 36),
              "   **** Even sum ****  multiplier = ");
    EXPECT_EQ(termination_report(run->state)[3].substr(0, 38), " Nearest available termination ratio =");
}

// Every sentence taken back one by one ends at the start; forward again the same ladder comes out.
TEST(Script, StepsAreTakenBackByRestoring) {
    Bench bench(elliptic());
    int stage = 0;
    const Script script = automatic_script(bench.problem, bench.selection, stage);
    auto history = std::make_unique<LadderHistory>();
    LadderState state = start_state(bench.problem, bench.selection);
    const LadderState start = state;
    ASSERT_TRUE(runScript(bench.problem, script, state, history.get()).good());
    EXPECT_TRUE(state.finished);
    const LadderState end = state;
    ASSERT_TRUE(history->restore(4, state));
    ASSERT_TRUE(runScript(bench.problem, script, state, history.get()).good());
    EXPECT_EQ(std::memcmp(&end, &state, sizeof end), 0);
    ASSERT_TRUE(history->restore(history->count, state));
    EXPECT_EQ(std::memcmp(&start, &state, sizeof start), 0);
    EXPECT_FALSE(history->restore(1, state));
}

// Forty stages at most, and no more roots than the pools hold; a state that was not kept cannot come back, older ones
// can.
TEST(Script, HistoryHasBounds) {
    auto history = std::make_unique<LadderHistory>();
    LadderState state;
    for (int i = 1; i <= stage_limit + 3; ++i) {
        state.position = i;
        EXPECT_EQ(history->push(state), i <= stage_limit) << i;
    }
    EXPECT_FALSE(history->restore(2, state));
    EXPECT_FALSE(history->restore(1, state));
    EXPECT_TRUE(history->restore(1, state));
    EXPECT_EQ(state.position, stage_limit);

    // 25 roots a stage: 18 of them fill a pool of 450. A smaller stage fits again when one was taken back.
    for (const bool in_numerator : {true, false}) {
        *history = {};
        state = {};
        (in_numerator ? state.F.ANUMR : state.F.DENOMR).count = 25;
        for (int i = 1; i <= 20; ++i) {
            state.position = i;
            EXPECT_EQ(history->push(state), i <= 18) << i;
        }
        EXPECT_FALSE(history->restore(1, state));
        EXPECT_EQ(history->count, 18);
        EXPECT_TRUE(history->restore(2, state));
        EXPECT_EQ(state.position, 18);
        EXPECT_TRUE(history->push(state));
        EXPECT_FALSE(history->restore(19, state));
        EXPECT_TRUE(history->restore(18, state));
        EXPECT_EQ(state.position, 1);
    }
    // A run tells of it, and goes on.
    Bench bench(elliptic());
    ASSERT_TRUE(bench.run("end").good());
    *history = {};
    history->count = stage_limit;
    history->sentences = stage_limit;
    bench.script.append("adm s p i 1");
    const ScriptVerdict verdict = runScript(bench.problem, bench.script, bench.state, history.get());
    EXPECT_TRUE(verdict.good());
    EXPECT_TRUE(verdict.stage_lost);
    EXPECT_EQ(bench.state.prepared_count, 1);
}

// The same band-pass by double shifting, by single shifting in two orders, and by shifting between finite poles.
TEST(Script, OneFilterBySeveralRoads) {
    Bench bench(band_pass_with_zeros());
    int stage = 0;
    const Script automatic = automatic_script(bench.problem, bench.selection, stage);
    std::vector<std::string> roads;
    std::string words;
    for (int i = 4; i <= automatic.count; ++i) words += automatic.JCONF(i).text() + " ";
    roads.push_back(words);
    const std::string form = words.substr(0, 3);
    const std::string other = form == "imp" ? "adm" : "imp";
    const auto trap = [&](const char* side, int n) {
        return form + " s p " + side + " " + std::to_string(n) + " " + other + " s c " + std::to_string(n) + " ";
    };
    const std::string rest = form + " s c z s c i " + other + " s c z s c i fini";
    roads.push_back(trap("z", 1) + trap("i", 3) + trap("z", 2) + trap("i", 4) + rest);
    roads.push_back(trap("i", 4) + trap("z", 2) + trap("i", 3) + trap("z", 1) + rest);
    // The prepared zero 1 is moved on to 3 and comes back later.
    roads.push_back(form + " s p z 1 " + other + " s p 1 3 " + form + " s c 3 " + trap("z", 2) + trap("i", 4) + rest);
    for (const std::string& road : roads) {
        const ScriptVerdict verdict = bench.run(road);
        if (road == roads.back()) {
            // One zero was not realised: whatever happens, this is no complete circuit.
            EXPECT_FALSE(verdict.good() && bench.state.finished && bench.state.IC(1) == 0) << road;
            continue;
        }
        ASSERT_TRUE(verdict.good()) << road << messageOf(verdict.fault) << " at " << verdict.position;
        Terminations ends{50, 0};
        ASSERT_TRUE(far_termination(bench.problem, bench.state, 50, ends.far));
        Circuit circuit;
        ASSERT_EQ(storeResult(bench.problem, bench.state, ends, circuit), CircuitVerdict::done);
        circuit.fnorm = 3000;
        const LossDifference loss = compare_loss(bench.design.xp, bench.design.spec, circuit);
        EXPECT_LT(loss.passband, 1e-8) << road;
        EXPECT_LT(loss.stopband_relative, 1e-8) << road;

        // A value that is no number, or none of any size, is never taken for the right one.
        for (const double value : {std::nan(""), HUGE_VAL}) {
            circuit.VALUE(2) = value;
            EXPECT_FALSE(compare_loss(bench.design.xp, bench.design.spec, circuit).largest() < loss_failure_limit);
        }
    }
}

}  // namespace
}  // namespace kavrel::test
