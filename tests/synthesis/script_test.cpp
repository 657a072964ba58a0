// The interpreter: what each sentence refuses, and that a refused sentence changes nothing.
#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// All digits of what is in use.
std::string shown(const LadderState& s) {
    std::string text = fmt::format("{} {} {} {} {} {} {} {}", s.formed, s.form, s.position, s.finished, s.nz, s.ni,
                                   s.ue, s.chosen_zero);
    const auto add = [&](const WideReal& x) { text += ' ' + x.str(0); };
    for (const ReactanceRoots* roots : {&s.F.ANUMR, &s.F.DENOMR}) {
        add(roots->multiplier);
        for (int i = 1; i <= roots->count; ++i) add(roots->root(i));
    }
    for (const int available : s.IC) text += fmt::format(" {}", available);
    for (int i = 1; i <= s.prepared_count; ++i) text += fmt::format(" {}", s.prepared_zero(i)), add(s.SGZI(i));
    for (int k = 1; k <= s.record_count; ++k) {
        add(s.SVAL1(k)), add(s.SVAL2(k));
        text += fmt::format(" {} {} {}", s.SFR(k), s.MIND(k), s.SIMP(k));
    }
    return text;
}

struct Bench {
    Ladder ladder;
    LadderProblem problem;
    Selection selection;
    Script script;
    LadderState state;

    explicit Bench(const std::string& text) : ladder(run_of(text)), problem(ladder->state.problem) {
        EXPECT_EQ(chooseImmittance(problem, false, false, selection), ChoiceFault::none);
        state = start_state(problem, selection);
    }
    ScriptVerdict run(std::string_view words) {
        script = {};
        script.append(fmt::format("in {} {} {}", word_of(selection.numerator), word_of(selection.denominator), words));
        state = start_state(problem, selection);
        Unwatched unwatched;
        return runScript(problem, script, unwatched, state);
    }
};

const char* const elliptic = "low ripple 7 minima 1 R 50 50";
const char* const band_pass_with_zeros = "band ripple R 50 50 ends 2 2 zeros 1500 1200 3700 4200";

TEST(Script, EveryRefusalIsReached) {
    Bench bench(elliptic);
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
        {"imp s p z 1", ScriptFault::extreme_impossible},
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
    Bench spoilt(elliptic);
    ReactanceRoots& even = spoilt.problem.polynomials.es;
    even.root(2) = even.root(1) * 3;
    EXPECT_EQ(spoilt.run("adm s p i 1 imp s c 1 adm s p i 2 imp s c 2").fault, ScriptFault::roots_missing);
    // A function that has only the pole left that a zero is to be shifted with: it goes as a whole, and no zero comes.
    Bench three("low ripple 3 minima 1");
    three.problem.zero_count = 2;
    three.problem.zero_x(2) = 3;
    EXPECT_EQ(three.run("adm s p i 1 imp s c 1 adm s p i 2").fault, ScriptFault::extreme_zero_missing);
    three.selection.denominator = Part::od;  // does not see the branch at the far end: the first one and the trap alone
    EXPECT_EQ(three.run("adm s p i 1").fault, ScriptFault::extreme_impossible);
    EXPECT_EQ(three.run("imp s p i 1 adm s p 1 2").fault, ScriptFault::zero_missing);
    Bench band(band_pass_with_zeros);
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
    Bench bench("low ripple R 50 50 ends 0 4 complex 1500 1000");
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
    Bench stubs("low ripple quarter 20000 R 50 50 ends 0 1 lines 2");
    EXPECT_EQ(stubs.run("adm s c i ue ue fini").fault, ScriptFault::none);
    stubs.problem.unit_elements = 3;
    EXPECT_EQ(stubs.run("adm s c i ue ue ue").fault, ScriptFault::unit_element_error);
}

TEST(Script, RemovalsRefuseWhatCannotBe) {
    Bench bench(elliptic);
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
    EXPECT_NEAR(static_cast<double>(rounded(value2 / whole2)), 0.75, 1e-15);
    EXPECT_NEAR(static_cast<double>(rounded(value_of(f, -0.3L) / value_of(at_once, -0.3L))), 1, 1e-15);
}

TEST(Script, ARefusedSentenceChangesNothing) {
    Bench bench(elliptic);
    ASSERT_EQ(bench.run("adm s p i 1 end").fault, ScriptFault::none);
    const LadderState before = bench.state;
    bench.script.append("imp s c 2");
    Unwatched unwatched;
    EXPECT_FALSE(runScript(bench.problem, bench.script, unwatched, bench.state).good());
    EXPECT_EQ(shown(before), shown(bench.state));
    EXPECT_EQ(runScript(bench.problem, bench.script, unwatched, bench.state).position, bench.state.position);
}

// Every sentence taken back one by one ends at the start; forward again the same ladder comes out.
TEST(Script, StepsAreTakenBackByRestoring) {
    Bench bench(elliptic);
    const Script script = automatic_script(bench.problem, bench.selection);
    auto history = std::make_unique<LadderHistory>();
    LadderState state = start_state(bench.problem, bench.selection);
    const LadderState start = state;
    Unwatched unwatched;
    ASSERT_TRUE(runScript(bench.problem, script, unwatched, state, history.get()).good());
    EXPECT_TRUE(state.finished);
    const LadderState end = state;
    ASSERT_TRUE(history->restore(4, state));
    ASSERT_TRUE(runScript(bench.problem, script, unwatched, state, history.get()).good());
    EXPECT_EQ(shown(end), shown(state));
    ASSERT_TRUE(history->restore(history->count, state));
    EXPECT_EQ(shown(start), shown(state));
    EXPECT_FALSE(history->restore(1, state));
}

// Forty stages at most, and no more roots than the pools hold; a state that was not kept cannot come back, older ones
// can.
TEST(Script, HistoryHasBounds) {
    struct Case {
        int kept, numerators, denominators;
    };
    auto history = std::make_unique<LadderHistory>();
    for (const Case& c : {Case{stage_limit, 0, 0}, {root_pool / 25, 25, 0}, {root_pool / 25, 0, 25}}) {
        LadderState state;
        state.F.ANUMR.count = c.numerators, state.F.DENOMR.count = c.denominators;
        *history = {};
        for (int i = 1; i <= c.kept + 2; ++i) {
            state.position = i;
            EXPECT_EQ(history->push(state), i <= c.kept) << i;
        }
        EXPECT_FALSE(history->restore(1, state));
        EXPECT_EQ(history->count, c.kept);
        EXPECT_TRUE(history->restore(2, state));
        EXPECT_EQ(state.position, c.kept);
        EXPECT_TRUE(history->push(state));
        EXPECT_FALSE(history->restore(c.kept + 1, state));
        EXPECT_TRUE(history->restore(c.kept, state));
        EXPECT_EQ(state.position, 1);
    }
    // A run reports it, and goes on.
    Bench bench(elliptic);
    ASSERT_TRUE(bench.run("end").good());
    *history = {};
    history->count = stage_limit;
    history->sentences = stage_limit;
    bench.script.append("adm s p i 1");
    Unwatched unwatched;
    const ScriptVerdict verdict = runScript(bench.problem, bench.script, unwatched, bench.state, history.get());
    EXPECT_TRUE(verdict.good());
    EXPECT_TRUE(verdict.stage_lost);
    EXPECT_EQ(bench.state.prepared_count, 1);
}

// The same band-pass by double shifting and by single shifting in two orders.
TEST(Script, OneFilterInSeveralOrders) {
    Bench bench(band_pass_with_zeros);
    const Script automatic = automatic_script(bench.problem, bench.selection);
    std::string words;
    for (int i = 4; i <= automatic.count; ++i) words += automatic.JCONF(i).text() + " ";
    const std::string form = words.substr(0, 3);
    const std::string other = form == "imp" ? "adm" : "imp";
    const auto trap = [&](char side, int n) { return fmt::format("{} s p {} {} {} s c {} ", form, side, n, other, n); };
    const auto pair = [&](int m, int n) {
        return fmt::format("{} d p i z {} {} {} s c {} s c {} ", form, m, n, other, m, n);
    };
    const std::string rest = fmt::format("{} s c z s c i {} s c z s c i fini", form, other);
    for (const std::string& order :
         {words, pair(1, 3) + pair(2, 4) + rest, trap('z', 1) + trap('i', 3) + trap('z', 2) + trap('i', 4) + rest,
          trap('i', 4) + trap('z', 2) + trap('i', 3) + trap('z', 1) + rest}) {
        const ScriptVerdict verdict = bench.run(order);
        ASSERT_TRUE(verdict.good()) << order << messageOf(verdict.fault) << " at " << verdict.position;
        Circuit circuit = circuit_of(*bench.ladder, bench.state);
        const auto loss = [&] { return compare_loss(bench.ladder->design.xp, bench.ladder->design.spec, circuit); };
        EXPECT_LT(loss().passband, 1e-8) << order;
        EXPECT_LT(loss().stopband_relative, 1e-8) << order;
        // A value that is no number, or none of any size, is never taken for the right one.
        for (const double value : {std::nan(""), HUGE_VAL}) {
            circuit.VALUE(2) = value;
            EXPECT_FALSE(loss().largest() < loss_failure_limit);
        }
    }
    // The prepared zero 1 is moved on to 3, and is not realised: this is no complete circuit.
    const std::string moved = fmt::format("{} s p z 1 {} s p 1 3 {} s c 3 ", form, other, form);
    const ScriptVerdict verdict = bench.run(moved + trap('z', 2) + trap('i', 4) + rest);
    EXPECT_FALSE(verdict.good() && bench.state.finished && bench.state.IC(1) == 0);
}

}  // namespace
}  // namespace kavrel::test
