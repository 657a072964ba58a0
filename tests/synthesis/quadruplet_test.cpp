// Complex transmission zeros: compound branches, and orders of removals without negative elements.
#include <algorithm>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// One to three quadruplets, up to two zeros on the axis.
FilterSpec random_request(int turn, std::mt19937& random) {
    std::uniform_real_distribution<double> share(0, 1);
    const FilterType type = turn % 3 == 0 ? low_pass : turn % 3 == 1 ? high_pass : band_pass;
    const int quadruplets = 1 + static_cast<int>(share(random) * 2.5);
    const int real = static_cast<int>(share(random) * 3);
    const double edge = type == high_pass ? 2000 : 3000;
    FilterSpec s = all_pole(type, turn % 2 == 0 ? maximally_flat : equal_ripple, 2);
    s.loadResistance = turn % 5 == 0 ? 100 : 50;
    for (int i = 0; i < quadruplets; ++i) {
        s.FZR(++s.zeroCount) = edge * (0.1 + share(random));
        s.FZI(s.zeroCount) = edge * (0.05 + 1.2 * share(random));
    }
    for (int i = 0; i < real; ++i) {
        const bool below = type == high_pass || (type == band_pass && share(random) < 0.5);
        s.FZI(++s.zeroCount) = below ? 2000 / (1.1 + 2 * share(random)) : 3000 * (1.1 + 2 * share(random));
    }
    s.zerosAtZero = type == low_pass ? 0 : 1 + static_cast<int>(share(random) * 3);
    s.zerosAtInfinity = type == high_pass ? 0 : 1 + static_cast<int>(share(random) * 3);
    if (type == band_pass) s.bandpassType = (s.zerosAtZero + s.zerosAtInfinity) % 2 == 0 ? conventional : parametric;
    s.degree = 4 * quadruplets + 2 * real + s.zerosAtZero + s.zerosAtInfinity;
    s.degreeParity = s.degree % 2;
    return s;
}

// What remains negative has been followed through every order, or told to be too much for that.
TEST(Quadruplets, ComplexZerosBesideRealOnes) {
    std::mt19937 random(11);
    Tally tally;
    std::map<BranchId, int> ids;
    int none_exists = 0;
    for (int turn = 0; turn < 60; ++turn) {
        const FilterSpec s = random_request(turn, random);
        auto run = std::make_unique<LadderRun>();
        run->run(s);
        tally.take(s, "complex", *run);
        if (!run->approximated || !run->verdict.good()) continue;
        const SynthesisState& state = run->state;
        EXPECT_EQ(state.searched && state.search == SearchVerdict::found,
                  state.searched && state.negative_elements == 0);
        EXPECT_TRUE(state.searched || state.negative_elements == 0);
        const std::vector<std::string> lines = result_report("", state);
        const auto told = [&](std::string_view text) {
            return std::find(lines.begin(), lines.end(), text) != lines.end();
        };
        EXPECT_EQ(told(" Negative elements: no order of removals avoids them") ||
                      told(" Negative elements: no order of removals without them was found"),
                  state.negative_elements > 0);
        EXPECT_EQ(told("*** termination is extreme ***"), state.termination_is_extreme());
        none_exists += state.negative_elements > 0 && state.search == SearchVerdict::none_exists ? 1 : 0;
        for (int k = 1; k != 0; k = unpackBranch(run->circuit, k).kn) {
            ++ids[unpackBranch(run->circuit, k).id];
        }
    }
    tally.tell();
    const int positive = tally.requests - tally.with_negative_elements;
    std::printf("%d all positive, %d proved to have a negative element in every order\n", positive, none_exists);
    EXPECT_EQ(tally.requests, 60);
    EXPECT_GE(positive, 15);
    EXPECT_GE(positive + none_exists, 55);
    using enum BranchId;
    for (const BranchId id : {bridged_c_trap, bridged_l_trap, twin_t_trap}) EXPECT_GT(ids[id], 0);
}

// The section is removed at every place of the ladder, on both forms and at either extreme point: whatever the signs,
// each circuit has the loss of the transfer function.
TEST(Quadruplets, EveryPlaceGivesTheSameLoss) {
    FilterSpec low = all_pole(low_pass, equal_ripple, 7);
    low.loadResistance = 50;
    low.zeroCount = 1;
    low.zerosAtInfinity = 3;
    FilterSpec high = all_pole(high_pass, equal_ripple, 7);
    high.loadResistance = 50;
    high.zeroCount = 1;
    high.zerosAtZero = 3;
    FilterSpec band = all_pole(band_pass, equal_ripple, 8);
    band.loadResistance = 50;
    band.zeroCount = 1;
    band.zerosAtZero = band.zerosAtInfinity = 2;
    std::map<BranchId, int> on_impedance;
    int circuits = 0;
    for (FilterSpec s : {low, high, band}) {
        for (const auto& [re, im] :
             {std::pair{2500.0, 1500.0}, {900.0, 3600.0}, {2400.0, 2600.0}, {1500.0, 700.0}, {300.0, 850.0}}) {
            s.FZR(1) = re, s.FZI(1) = im;
            auto run = std::make_unique<LadderRun>();
            run->run(s);
            ASSERT_TRUE(run->approximated);
            const LadderProblem& problem = run->state.problem;
            Selection selection;
            ASSERT_EQ(chooseImmittance(problem, false, false, selection), ChoiceFault::none);
            const std::vector<std::string> steps =
                s.filterType == low_pass    ? std::vector<std::string>{"s c i ", "s c i ", "s c i "}
                : s.filterType == high_pass ? std::vector<std::string>{"s c z ", "s c z ", "s c z "}
                                            : std::vector<std::string>{"s c z ", "s c i ", "s c z ", "s c i "};
            for (std::size_t place = 0; place <= steps.size(); ++place) {
                for (const char* quadruplet :
                     {"adm d c i 1 ", "adm d c z 1 ", "adm d c e 1 ", "imp d c i 1 ", "imp d c z 1 "}) {
                    // A near and a far element at the wrong end would be two more zeros of transmission.
                    if (s.filterType == low_pass && quadruplet[8] != 'i') continue;
                    if (s.filterType == high_pass && quadruplet[8] != 'z') continue;
                    LadderState state = start_state(problem, selection);
                    Script script;
                    script.append("in es os");
                    if (selection.denominator == Part::od) script.JCONF(3) = std::string_view{"od"};
                    if (selection.numerator == Part::ed) script.JCONF(2) = std::string_view{"ed"};
                    ASSERT_TRUE(runScript(problem, script, state).good());
                    bool good = true;
                    for (std::size_t i = 0; i <= steps.size() && good; ++i) {
                        if (i == place) {
                            script.append(quadruplet);
                            good = runScript(problem, script, state).good();
                        }
                        if (i == steps.size() || !good) break;
                        const bool pole =
                            steps[i][4] == 'z' ? has_pole_at_zero(state.F) : has_pole_at_infinity(state.F);
                        script.append(pole == (state.form == impedance) ? "imp" : "adm");
                        script.append(steps[i]);
                        ASSERT_TRUE(runScript(problem, script, state).good()) << i;
                    }
                    if (!good) continue;
                    EXPECT_TRUE(state.F.vanished());
                    Terminations ends{50, 0};
                    ASSERT_TRUE(far_termination(problem, state, 50, ends.far));
                    Circuit circuit;
                    ASSERT_EQ(storeResult(problem, state, ends, circuit), CircuitVerdict::done);
                    circuit.fnorm = problem.norm_frequency;
                    const LossDifference loss = compare_loss(run->design.xp, run->design.spec, circuit);
                    EXPECT_LT(loss.passband, 1e-7) << s.filterType << " " << re << " " << place << quadruplet;
                    EXPECT_LT(loss.stopband_relative, 1e-7) << s.filterType << " " << re << " " << place << quadruplet;
                    ++circuits;
                    if (quadruplet[0] == 'i') ++on_impedance[state.QUADS(1).MSICON];
                }
            }
        }
    }
    std::printf("%d circuits\n", circuits);
    EXPECT_GT(circuits, 120);
    // Both dual networks of a bridged T were among them.
    EXPECT_GT(on_impedance[BranchId::bridged_c_trap], 0);
    EXPECT_GT(on_impedance[BranchId::bridged_l_trap], 0);
}

// With five zeros at infinity a quadruplet finds its place; the near and far capacitor merge, none is negative.
TEST(Quadruplets, AnOrderWithoutNegativeElementsIsFound) {
    int positive = 0;
    int first_road = 0;
    for (const double angle : {30.0, 45.0, 60.0, 75.0}) {
        for (const double radius : {0.7, 1.0, 1.4, 2.0}) {
            FilterSpec s = all_pole(low_pass, equal_ripple, 9);
            s.loadResistance = 50;
            s.zeroCount = 1;
            s.zerosAtInfinity = 5;
            s.FZR(1) = 3000 * radius * std::cos(angle * std::numbers::pi / 180);
            s.FZI(1) = 3000 * radius * std::sin(angle * std::numbers::pi / 180);
            auto run = std::make_unique<LadderRun>();
            run->run(s);
            ASSERT_TRUE(run->approximated && run->verdict.good()) << angle << " " << radius;
            positive += run->state.negative_elements == 0 ? 1 : 0;
            first_road += run->state.searched ? 0 : 1;
            EXPECT_LT(run->state.loss.passband, 1e-6);
        }
    }
    std::printf("%d of 16 all positive, %d without a search\n", positive, first_road);
    EXPECT_GE(positive, 1);
}

}  // namespace
}  // namespace kavrel::test
