// Complex transmission zeros: compound branches, and orders of removals without negative elements.
#include <algorithm>
#include <complex>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// One to three quadruplets, up to two zeros on the axis.
std::string random_request(int turn, std::mt19937& random) {
    std::uniform_real_distribution<double> share(0, 1);
    const bool low = turn % 3 == 0, high = turn % 3 == 1;
    const int quadruplets = 1 + static_cast<int>(share(random) * 2.5);
    const int real = static_cast<int>(share(random) * 3);
    const double edge = high ? 2000 : 3000;
    std::string zeros;
    for (int i = 0; i < quadruplets; ++i) {
        const double re = edge * (0.1 + share(random));
        zeros += fmt::format(" complex {} {}", re, edge * (0.05 + 1.2 * share(random)));
    }
    for (int i = 0; i < real; ++i) {
        const bool below = high || (!low && share(random) < 0.5);
        zeros += fmt::format(" zeros {}", below ? 2000 / (1.1 + 2 * share(random)) : 3000 * (1.1 + 2 * share(random)));
    }
    const int nz = low ? 0 : 1 + static_cast<int>(share(random) * 3);
    const int ni = high ? 0 : 1 + static_cast<int>(share(random) * 3);
    const bool odd = !low && !high && (nz + ni) % 2 == 1;
    return fmt::format("{} {} R 50 {} {} ends {} {}{}",
                       low    ? "low"
                       : high ? "high"
                              : "band",
                       turn % 2 == 0 ? "flat" : "ripple", turn % 5 == 0 ? 100 : 50, odd ? "parametric" : "", nz, ni,
                       zeros);
}

// What remains negative has been followed through every order, or is said to be too much for that.
TEST(Quadruplets, ComplexZerosBesideRealOnes) {
    std::mt19937 random(11);
    Tally tally;
    std::map<BranchId, int> ids;
    int none_exists = 0;
    for (int turn = 0; turn < 60; ++turn) {
        const std::string text = random_request(turn, random);
        const Ladder run = run_of(text);
        tally.take(*run, text);
        if (!run->verdict.good()) continue;
        const SynthesisState& state = run->state;
        const bool negative = state.negative_elements > 0;
        EXPECT_EQ(state.searched && state.search == SearchVerdict::found, state.searched && !negative);
        EXPECT_TRUE(state.searched || !negative);
        const std::vector<std::string> lines = result_report("", state);
        const auto reported = [&](std::string_view line) {
            return std::find(lines.begin(), lines.end(), line) != lines.end();
        };
        EXPECT_EQ(reported(negative_elements_text) || reported(search_given_up_text), negative);
        EXPECT_EQ(reported("*** termination is extreme ***"), state.termination_is_extreme());
        none_exists += negative && state.search == SearchVerdict::none_exists ? 1 : 0;
        for (int k = 1; k != 0; k = unpackBranch(run->circuit, k).kn) {
            ++ids[unpackBranch(run->circuit, k).id];
        }
    }
    const int positive = tally.requests - tally.with_negative_elements;
    EXPECT_EQ(tally.requests, 60);
    EXPECT_GE(positive, 15);
    EXPECT_GE(positive + none_exists, 55);
    using enum BranchId;
    for (const BranchId id : {bridged_c_trap, bridged_l_trap, twin_t_trap}) EXPECT_GT(ids[id], 0);
}

// The ladder of `steps`, such as "s c i", with `quadruplet` behind `place` of them, on whichever form has the pole.
// False where the quadruplet cannot be removed there.
bool run_steps(const LadderProblem& problem, const std::vector<std::string>& steps, std::size_t place,
               const char* quadruplet, LadderState& state) {
    Selection selection;
    EXPECT_EQ(chooseImmittance(problem, false, false, selection), ChoiceFault::none);
    state = start_state(problem, selection);
    Script script;
    const auto removed = [&](std::string_view words) {
        script.append(words);
        Unwatched unwatched;
        return runScript(problem, script, unwatched, state).good();
    };
    EXPECT_TRUE(removed(fmt::format("in {} {}", word_of(selection.numerator), word_of(selection.denominator))));
    for (std::size_t i = 0; i <= steps.size(); ++i) {
        if (i == place && !removed(quadruplet)) return false;
        if (i == steps.size()) break;
        const bool pole = steps[i].back() == 'z' ? has_pole_at_zero(state.F) : has_pole_at_infinity(state.F);
        EXPECT_TRUE(removed((pole == (state.form == impedance) ? "imp " : "adm ") + steps[i])) << i;
    }
    return true;
}

// The section is removed at every place of the ladder, on both forms and at either extreme point: whatever the signs,
// each circuit has the loss of the transfer function.
TEST(Quadruplets, EveryPlaceGivesTheSameLoss) {
    std::map<BranchId, int> on_impedance;
    int circuits = 0;
    const auto try_every_place = [&](const std::string& text, const std::vector<std::string>& steps,
                                     std::initializer_list<const char*> quadruplets) {
        const Ladder run = run_of(text);
        const LadderProblem& problem = run->state.problem;
        for (std::size_t place = 0; place <= steps.size(); ++place) {
            for (const char* quadruplet : quadruplets) {
                SCOPED_TRACE(fmt::format("{}: {} behind {}", text, quadruplet, place));
                LadderState state;
                if (!run_steps(problem, steps, place, quadruplet, state)) continue;
                EXPECT_TRUE(state.F.vanished());
                const LossDifference loss = compare_loss(run->design.xp, run->design.spec, circuit_of(*run, state));
                EXPECT_LT(loss.passband, 1e-7);
                EXPECT_LT(loss.stopband_relative, 1e-7);
                ++circuits;
                if (*quadruplet == 'i') ++on_impedance[state.QUADS(1).MSICON];
            }
        }
    };
    for (const char* zero : {"2500 1500", "900 3600", "2400 2600", "1500 700", "300 850"}) {
        // A near and a far element at the wrong end would be two more zeros of transmission.
        try_every_place(fmt::format("low ripple R 50 50 ends 0 3 complex {}", zero), {"s c i", "s c i", "s c i"},
                        {"adm d c i 1", "imp d c i 1"});
        try_every_place(fmt::format("high ripple R 50 50 ends 3 0 complex {}", zero), {"s c z", "s c z", "s c z"},
                        {"adm d c z 1", "imp d c z 1"});
        try_every_place(fmt::format("band ripple R 50 50 ends 2 2 complex {}", zero),
                        {"s c z", "s c i", "s c z", "s c i"},
                        {"adm d c i 1", "adm d c z 1", "adm d c e 1", "imp d c i 1", "imp d c z 1"});
    }
    EXPECT_GT(circuits, 120);
    // Both dual networks of a bridged T were among them.
    EXPECT_GT(on_impedance[BranchId::bridged_c_trap], 0);
    EXPECT_GT(on_impedance[BranchId::bridged_l_trap], 0);
}

// With five zeros at infinity a quadruplet finds its place; the near and far capacitor merge, none is negative.
TEST(Quadruplets, AnOrderWithoutNegativeElementsIsFound) {
    Tally tally;
    int unsearched = 0;
    for (const double angle : {30.0, 45.0, 60.0, 75.0}) {
        for (const double radius : {0.7, 1.0, 1.4, 2.0}) {
            const std::complex<double> zero = std::polar(3000 * radius, angle * std::numbers::pi / 180);
            const std::string text = fmt::format("low ripple R 50 50 ends 0 5 complex {} {}", zero.real(), zero.imag());
            const Ladder run = run_of(text);
            tally.take(*run, text);
            unsearched += run->state.searched ? 0 : 1;
        }
    }
    EXPECT_EQ(tally.with_negative_elements, 4);
    EXPECT_EQ(unsearched, 12);
}

}  // namespace
}  // namespace kavrel::test
