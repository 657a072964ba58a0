// Ladders from both ends: against those from one end, and the join's own check.
#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "shell/edit.h"
#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

std::unique_ptr<LadderRun> run_of(const FilterSpec& spec, Direction direction) {
    auto run = std::make_unique<LadderRun>();
    run->request.direction = direction;
    run->run(spec);
    EXPECT_TRUE(run->approximated);
    return run;
}

FilterSpec parametric_pass(int nz, int ni, int zeros) {
    FilterSpec s = all_pole(band_pass, equal_ripple, nz + ni + 2 * zeros);
    s.bandpassType = parametric;
    s.loadResistance = 50;
    s.zerosAtZero = nz, s.zerosAtInfinity = ni;
    s.zeroCount = zeros;
    s.FZI(1) = 4000, s.FZI(2) = 1500, s.FZI(3) = 5000, s.FZI(4) = 1100;
    return s;
}

// Largest relative difference of two circuits, cell by cell.
double deviation(const Circuit& p, const Circuit& q) {
    if (p.klast != q.klast || p.ilast != q.ilast) return 1e9;
    double worst = std::fabs(p.R2 / q.R2 - 1);
    for (int i = 1; i <= p.ilast; ++i) worst = std::fmax(worst, std::fabs(p.VALUE(i) / q.VALUE(i) - 1));
    return worst;
}

// What every joined ladder has to be: the filter asked for, each zero made once, its halves agreeing on the level, and
// that level the one that the terminated network asks for.
void expect_joined(const LadderRun& run) {
    SCOPED_TRACE(testing::Message() << "degree " << run.design.xp.ES.count << ": " << run.words());
    ASSERT_TRUE(run.verdict.good()) << static_cast<int>(run.verdict.fault);
    const SynthesisState& state = run.state;
    EXPECT_TRUE(state.two_way);
    EXPECT_EQ(state.direction(), "two-way");
    EXPECT_EQ(state.arithmetic(), "512 bit, two-way");
    EXPECT_LT(state.loss_error, 1e-9);
    EXPECT_GT(state.loss.points, 100);
    EXPECT_EQ(state.join.ratio_count, 4);
    EXPECT_LT(state.join.difference, 1e-60);
    EXPECT_GT(state.join.forward_records, 0);
    EXPECT_LT(state.join.forward_records, state.ladder.record_count);
    std::multiset<double> made, asked;
    for (int k = 1; k <= state.ladder.record_count; ++k) {
        if (state.ladder.SFR(k) != 0) made.insert(state.ladder.SFR(k));
    }
    for (int i = 1; i <= state.problem.zero_count; ++i) asked.insert(state.problem.zero_hz_im(i));
    EXPECT_EQ(made, asked);
    double far = 0;
    ASSERT_TRUE(far_termination(state.problem, state.ladder, state.problem.own_resistance, far));
    EXPECT_NEAR(far / run.circuit.R2, 1, 1e-12);
}

// Complete removals alone: from whichever end, it is the same network. (Of a parallel L and C in one place the one
// comes first that is removed first: band-passes are not compared from the output.)
TEST(TwoWay, AllPoleLaddersAreThoseOfOneWay) {
    double worst = 0;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {2, 3, 4, 7, 12, 15, 26, 31, 50}) {
                if (type == band_pass && n % 2 == 1) continue;
                for (const double load : n < 26 ? std::vector{50.0, 100.0, 20.0} : std::vector{100.0}) {
                    FilterSpec s = all_pole(type, passband, n);
                    s.loadResistance = load;
                    const auto both = run_of(s, Direction::two_way);
                    expect_joined(*both);
                    EXPECT_EQ(both->state.negative_elements, 0);
                    for (const Direction direction : {Direction::forward, Direction::reverse}) {
                        if (direction == Direction::reverse && (n > 12 || type == band_pass)) continue;
                        worst = std::fmax(worst, deviation(both->circuit, run_of(s, direction)->circuit));
                    }
                }
            }
        }
    }
    EXPECT_LT(worst, 1e-12);
    std::printf("worst relative difference %.2g\n", worst);
}

// With the order of zeros that both ends have picked, the run from the input alone gives the same elements: those of
// the reverse run, and of the middle branch, too.
TEST(TwoWay, EllipticLaddersAreThoseOfOneWayInTheSameOrder) {
    for (const int n : {5, 6, 13, 14, 20, 31, 36, 49}) {
        for (const int flag : {1, 0}) {
            for (const double load : {50.0, 100.0}) {
                FilterSpec s = with_minima(low_pass, equal_ripple, n, flag);
                s.loadResistance = load;
                const auto both = run_of(s, Direction::two_way);
                expect_joined(*both);
                if (!both->verdict.good()) continue;
                const SynthesisState& state = both->state;
                // The dual network begins with a series branch.
                const bool series = state.script.JCONF(4) == "imp";
                const auto kind = [&](StepKind of_series, StepKind of_shunt) { return series ? of_series : of_shunt; };
                Script script;
                for (int i = 1; i <= 3; ++i) script.append(state.script.JCONF(i).text());
                for (int k = 1; k <= state.ladder.record_count; ++k) {
                    for (int i = 1; i <= state.problem.zero_count; ++i) {
                        if (state.ladder.SFR(k) != state.problem.zero_hz_im(i)) continue;
                        append_step(script,
                                    kind(StepKind::impedance_shift_infinity, StepKind::admittance_shift_infinity), i);
                    }
                }
                append_step(script, kind(StepKind::impedance_infinity, StepKind::admittance_infinity));
                if (state.problem.zeros_at_infinity == 2) {
                    append_step(script, kind(StepKind::admittance_infinity, StepKind::impedance_infinity));
                }
                script.append("fini");
                LadderState one = start_state(state.problem, state.ladder.selection);
                ASSERT_TRUE(runScript(state.problem, script, one).good()) << both->words();
                ASSERT_EQ(one.record_count, state.ladder.record_count);
                WideReal worst = 0;
                for (int k = 1; k <= one.record_count; ++k) {
                    const WideReal second = one.SVAL2(k) - state.ladder.SVAL2(k);
                    for (const WideReal& off : {abs(state.ladder.SVAL1(k) / one.SVAL1(k) - 1),
                                                one.SVAL2(k).sign() == 0 ? second : abs(second / one.SVAL2(k))}) {
                        if (off > worst) worst = off;
                    }
                }
                EXPECT_LT(worst.rounded(), 1e-12L);
            }
        }
    }
}

// Where the two runs find no order without negative elements, there is none.
TEST(TwoWay, EllipticFiltersOfAllKinds) {
    int joined = 0, none = 0;
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            for (const int n : {13, 14, 22, 25, 32, 49}) {
                if (type == band_pass && n % 2 == 1) continue;
                FilterSpec s = with_minima(type, passband, n, 1);
                s.loadResistance = n % 3 == 1 ? 50 : 150;
                const auto both = run_of(s, Direction::two_way);
                if (both->state.script_verdict.fault == ScriptFault::no_acceptable_zero) {
                    ++none;
                    EXPECT_EQ(run_of(s, Direction::automatic)->state.search, SearchVerdict::none_exists);
                    continue;
                }
                expect_joined(*both);
                EXPECT_EQ(both->state.negative_elements, 0);
                ++joined;
            }
        }
    }
    EXPECT_EQ(joined, 28);
    EXPECT_EQ(none, 2);
}

// Poles at zero and infinity in one form (zeros in pairs), in different forms (by turns, with a whole step of the other
// run between both), and a branch that neither end sees.
TEST(TwoWay, ParametricBandPasses) {
    int joined = 0, mixed = 0, hidden = 0;
    for (int nz = 1; nz <= 4; ++nz) {
        for (int ni = 1; ni <= 4; ++ni) {
            for (int zeros = 0; zeros <= 4; ++zeros) {
                if (nz + ni + 2 * zeros < 5) continue;
                const auto both = run_of(parametric_pass(nz, ni, zeros), Direction::two_way);
                if (both->verdict.fault == SynthesisFault::no_two_way) continue;
                SCOPED_TRACE(testing::Message() << nz << " " << ni << " " << zeros);
                expect_joined(*both);
                ++joined;
                const auto prin = both->words().find("prin");
                mixed += both->words().find(" s c ", prin) != std::string::npos ? 1 : 0;
                hidden += hides_branch(both->state.problem, both->state.ladder.selection) ? 1 : 0;
            }
        }
    }
    std::printf("%d joined, %d with a step between the runs, %d with a hidden branch\n", joined, mixed, hidden);
    EXPECT_GT(joined, 60);
    EXPECT_GE(mixed, 3);
    EXPECT_GT(hidden, 10);
}

TEST(TwoWay, StubsAndMatchingNetworks) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const bool elliptic : {false, true}) {
            FilterSpec s = elliptic ? with_minima(type, equal_ripple, 14, 1) : all_pole(type, equal_ripple, 14);
            s.loadResistance = 50;
            s.medium = microwave;
            s.implementation = 'M';
            s.sampleFrequency = 20000;
            expect_joined(*run_of(s, Direction::two_way));
        }
    }
    for (const double load : {100.0, 400.0}) {
        FilterSpec s = all_pole(low_pass, equal_ripple, 16);
        s.filterType = band_pass;
        s.bandpassType = impedance_matching;
        s.loadResistance = load;
        s.lowerPassEdge = 1000;
        s.bandEdgeLoss = 0.01;
        const auto both = run_of(s, Direction::two_way);
        expect_joined(*both);
        EXPECT_NEAR(both->circuit.R2 / load, 1, 1e-9);
    }
}

// A wrong half is not joined: another filter's, one of the dual network, one whose element is off by 1e-6.
TEST(TwoWay, RunsThatDoNotFitAreNotJoined) {
    FilterSpec s = with_minima(low_pass, equal_ripple, 9, 1);
    s.loadResistance = 50;
    struct Halves {
        LadderProblem problem;
        LadderState forward, reverse;
    };
    const auto halves = [](const FilterSpec& spec, bool dual_output) {
        auto made = std::make_unique<Halves>();
        Design design;
        design.spec = spec;
        design.run();
        EXPECT_TRUE(ladder_problem(design.xp, design.spec, made->problem));
        Selection input, output;
        EXPECT_EQ(chooseImmittance(made->problem, false, false, input), ChoiceFault::none);
        EXPECT_EQ(chooseImmittance(made->problem, true, dual_output, output), ChoiceFault::none);
        TwoWayScripts scripts;
        EXPECT_TRUE(two_way_scripts(made->problem, input, output, scripts));
        made->forward = start_state(made->problem, input);
        made->reverse = start_state(made->problem, output);
        const bool ran = run_two_way(made->problem, scripts, made->forward, made->reverse).good();
        EXPECT_EQ(ran, !dual_output);
        return made;
    };
    LadderState joined;
    Join join;
    const auto good = halves(s, false);
    ASSERT_TRUE(join_runs(good->forward, good->reverse, joined, join));
    EXPECT_EQ(joined.record_count, good->forward.record_count + good->reverse.record_count);

    const auto dual = halves(s, true);
    EXPECT_FALSE(join_runs(good->forward, dual->reverse, joined, join));
    s.bandEdgeLoss = 0.2;
    const auto other = halves(s, false);
    EXPECT_FALSE(join_runs(good->forward, other->reverse, joined, join));
    LadderState off = good->reverse;
    off.SVAL1(2) *= 1.000001L;
    EXPECT_FALSE(join_runs(good->forward, off, joined, join));
    off = good->reverse;
    off.quadruplet_count = 1;
    EXPECT_FALSE(join_runs(good->forward, off, joined, join));
    off = good->reverse;
    off.SVAL2(1) = unit_element_mark;
    EXPECT_FALSE(join_runs(good->forward, off, joined, join));
    off = good->reverse;
    off.record_count = record_limit;
    EXPECT_FALSE(join_runs(good->forward, off, joined, join));
}

// Unasked from degree 12 on, where both ends have resistors and all elements come out positive.
TEST(TwoWay, IsTheAutomaticChoice) {
    const auto direction = [](const FilterSpec& spec) {
        const auto run = run_of(spec, Direction::automatic);
        EXPECT_TRUE(run->verdict.good());
        return std::string(run->state.direction());
    };
    for (const auto type : {low_pass, high_pass, band_pass}) {
        EXPECT_EQ(direction(all_pole(type, maximally_flat, 10)), "forward");
        EXPECT_EQ(direction(all_pole(type, maximally_flat, 12)), "two-way");
        EXPECT_EQ(direction(all_pole(type, equal_ripple, 50)), "two-way");
        FilterSpec s = with_minima(type, equal_ripple, 14, 1);
        s.loadResistance = 50;
        EXPECT_EQ(direction(s), "two-way");
    }
    EXPECT_EQ(direction(all_pole(low_pass, equal_ripple, 11)), "forward");
    EXPECT_EQ(run_of(all_pole(low_pass, equal_ripple, 20), Direction::forward)->state.direction(), "forward");
    EXPECT_EQ(run_of(all_pole(low_pass, equal_ripple, 20), Direction::reverse)->state.direction(), "reverse");

    // One resistor, an immittance chosen by hand, a zero off the axis, lines.
    FilterSpec s = all_pole(low_pass, equal_ripple, 13);
    single_terminated(s);
    EXPECT_EQ(direction(s), "forward");
    auto by_hand = std::make_unique<LadderRun>();
    by_hand->request.manual_selection = true;
    by_hand->run(all_pole(low_pass, equal_ripple, 13));
    EXPECT_EQ(by_hand->state.direction(), "forward");
    s = all_pole(low_pass, equal_ripple, 1);
    s.loadResistance = 50;
    s.zeroCount = 1;
    s.FZR(1) = 1500, s.FZI(1) = 1000;
    s.zerosAtInfinity = 9;
    EXPECT_NE(direction(s), "two-way");
    EXPECT_EQ(run_of(s, Direction::two_way)->verdict.fault, SynthesisFault::no_two_way);
    s = all_pole(low_pass, equal_ripple, 13);
    s.loadResistance = 50;
    s.medium = microwave;
    s.implementation = 'M';
    s.sampleFrequency = 20000;
    s.unitElements = 4;
    s.zerosAtInfinity = 9;
    EXPECT_EQ(direction(s), "forward");

    // Of two ladders with different terminations the one nearer to the request is taken.
    const FilterSpec mixed = parametric_pass(3, 2, 4);
    const auto both = run_of(mixed, Direction::two_way);
    const auto taken = run_of(mixed, Direction::automatic);
    ASSERT_TRUE(both->verdict.good() && taken->verdict.good());
    EXPECT_EQ(both->state.negative_elements, 0);
    EXPECT_EQ(taken->state.direction(), "forward");
    EXPECT_GT(std::fabs(std::log(both->state.available_ratio)), std::fabs(std::log(taken->state.available_ratio)));

    // No ladder of this one is all positive: what is shown is not the joined one.
    const auto negative = run_of(parametric_pass(4, 0, 4), Direction::automatic);
    ASSERT_TRUE(negative->verdict.good());
    EXPECT_GT(negative->state.negative_elements, 0);
    EXPECT_FALSE(negative->state.two_way);
}

// With more zeros at one end of the axis than at the other the order of removals sets the level: of the ladders from
// both ends, from the input and from the output the one with the nearest terminations is taken.
TEST(TwoWay, NearestTerminationsAreTaken) {
    const auto distance = [](const LadderRun& run) {
        return std::fabs(std::log(run.state.available_ratio / run.state.requested_ratio));
    };
    int reverse = 0;
    for (const int zeros : {0, 1, 3}) {
        for (const auto& [nz, ni] : {std::pair{5, 8}, {12, 1}, {2, 11}, {7, 7}}) {
            SCOPED_TRACE(testing::Message() << nz << " " << ni << " " << zeros);
            const auto taken = run_of(parametric_pass(nz, ni, zeros), Direction::automatic);
            ASSERT_TRUE(taken->verdict.good());
            for (const Direction direction : {Direction::forward, Direction::reverse, Direction::two_way}) {
                const auto one = run_of(parametric_pass(nz, ni, zeros), direction);
                if (!one->verdict.good() || one->state.negative_elements > taken->state.negative_elements) continue;
                EXPECT_LE(distance(*taken), distance(*one) + 1e-8) << one->state.direction();
            }
            reverse += taken->state.direction() == "reverse" ? 1 : 0;
        }
    }
    EXPECT_GT(reverse, 0);

    // A complex zero whose place is another from the output.
    FilterSpec complex = parametric_pass(3, 13, 0);
    complex.lowerPassEdge = 900, complex.upperPassEdge = 2500;
    complex.bandEdgeLoss = 1;
    complex.loadResistance = 250;
    complex.zeroCount = 1, complex.FZR(1) = 300, complex.FZI(1) = 6660.82;
    const auto automatic = run_of(complex, Direction::automatic);
    EXPECT_EQ(automatic->state.negative_elements, 0);
    EXPECT_LE(distance(*automatic), distance(*run_of(complex, Direction::reverse)) + 1e-8);

    // Stubs and a line of a high-pass: at the quarter-wave frequency the line passes, but transforms.
    FilterSpec s = all_pole(high_pass, equal_ripple, 32);
    s.bandEdgeLoss = 1;
    s.loadResistance = 250;
    s.medium = microwave;
    s.implementation = 'M';
    s.sampleFrequency = 40000;
    s.zerosAtZero = 31, s.unitElements = 1;
    const auto taken = run_of(s, Direction::automatic);
    EXPECT_EQ(taken->state.negative_elements, 0);
    EXPECT_LE(distance(*taken), distance(*run_of(s, Direction::reverse)) + 1e-8);
    EXPECT_LT(distance(*taken), distance(*run_of(s, Direction::forward)) - 0.1);
}

// In a narrow band the wrong one of two immittances that hide a branch comes within 0.1 dB.
TEST(TwoWay, HiddenBranchInANarrowBand) {
    FilterSpec s = all_pole(band_pass, equal_ripple, 9);
    s.bandpassType = parametric;
    s.lowerPassEdge = 900, s.upperPassEdge = 920;
    s.bandEdgeLoss = 1;
    s.zerosAtZero = 8, s.zerosAtInfinity = 1;
    FilterSpec with_zeros = s;
    with_zeros.bandEdgeLoss = 3.01;
    with_zeros.zerosAtZero = 3, with_zeros.zerosAtInfinity = 5;
    with_zeros.zeroCount = 2, with_zeros.FZI(1) = 394.85, with_zeros.FZI(2) = 393.45;
    for (const FilterSpec& spec : {s, with_zeros}) {
        for (const Direction direction : {Direction::automatic, Direction::forward, Direction::reverse}) {
            const auto run = run_of(spec, direction);
            ASSERT_TRUE(run->verdict.good());
            EXPECT_LT(run->state.loss_error, 1e-9) << run->state.direction();
        }
    }
}

// The search from the input runs out of work; the one from the output finds an order without negative elements.
TEST(TwoWay, SearchBeginsAtTheOutputToo) {
    FilterSpec s = all_pole(band_pass, maximally_flat, 35);
    s.bandpassType = parametric;
    s.bandEdgeLoss = 3.01;
    s.sourceResistance = 600, s.loadResistance = 780;
    s.lowerPassEdge = 900, s.upperPassEdge = 1500;
    s.zerosAtZero = 0, s.zerosAtInfinity = 13;
    for (const double hz : {1599.57, 1890.18, 4292.07, 525.25, 2332.05, 3218.81, 4165.31, 1624.03, 3015.84, 4181.33}) {
        s.FZI(++s.zeroCount) = hz;
    }
    s.FZR(3) = 100;
    const auto run = run_of(s, Direction::automatic);
    ASSERT_TRUE(run->verdict.good());
    EXPECT_EQ(run->state.negative_elements, 0);
    EXPECT_EQ(run->state.search, SearchVerdict::found);
    EXPECT_EQ(run_of(s, Direction::forward)->state.search, SearchVerdict::given_up);
}

// Neither a filter without two-way scripts nor a circuit with another loss replaces the former one.
TEST(TwoWay, FailureLeavesTheFormerCircuit) {
    const auto run = run_of(all_pole(low_pass, equal_ripple, 13), Direction::two_way);
    ASSERT_TRUE(run->verdict.good());
    const Circuit former = run->circuit;
    FilterSpec s = all_pole(low_pass, equal_ripple, 13);
    single_terminated(s);
    run->run(s);
    EXPECT_FALSE(run->verdict.good());
    EXPECT_FALSE(run->state.two_way);
    EXPECT_EQ(run->circuit, former);
}

// Results of both sides, each normalised to its own resistor.
TEST(TwoWay, ResultReportTellsBothSides) {
    FilterSpec s = all_pole(low_pass, equal_ripple, 13);
    s.loadResistance = 100;
    const auto run = run_of(s, Direction::automatic);
    ASSERT_TRUE(run->verdict.good());
    const std::vector<std::string> lines = result_report("a filter", run->state);
    const auto line_of = [&](std::string_view text) {
        return static_cast<std::size_t>(std::find(lines.begin(), lines.end(), text) - lines.begin());
    };
    const std::size_t in = line_of(" Results of the synthesis from the input side");
    const std::size_t out = line_of(" Results of the synthesis from the output side");
    ASSERT_EQ(in, 1U);
    ASSERT_LT(out, lines.size());
    EXPECT_EQ(lines[in + 2], "  1.0000000D+00  ├───r───┤  5.0000000D+01  termination");
    EXPECT_EQ(lines[out + 2], "  1.0000000D+00  ├───r───┤  1.0000000D+02  termination");
    EXPECT_EQ(lines.size(), 13U + 8U);
    EXPECT_EQ(lines.back(), " *** Done ***");
    // The output's first branch is the circuit's last one.
    const Circuit& circuit = run->circuit;
    const Branch last = unpackBranch(circuit, unpackBranch(circuit, circuit.klast).kp);
    EXPECT_EQ(lines[out + 3].substr(lines[out + 3].size() - 13), edit_1pd(circuit.VALUE(last.i1), 13, 7));
    const double w = 2 * std::numbers::pi * run->state.problem.norm_frequency;
    const double scale = last.id == BranchId::inductor ? 100 / w : 1 / (100 * w);
    EXPECT_EQ(lines[out + 3].substr(2, 13), edit_1pd(circuit.VALUE(last.i1) / scale, 13, 7));
}

}  // namespace
}  // namespace kavrel::test
