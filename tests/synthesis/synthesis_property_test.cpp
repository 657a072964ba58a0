// Requests of all kinds: the loss of the circuit is the loss of the transfer function.
#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "synthesis/synthesis_report.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

struct Tally {
    int requests = 0;
    int with_negative_elements = 0;
    double passband = 0;
    double stopband_relative = 0;

    void take(const FilterSpec& spec, const char* what) {
        auto run = std::make_unique<LadderRun>();
        run->run(spec);
        if (!run->approximated) return;
        SCOPED_TRACE(testing::Message() << what << " type " << spec.filterType << " pass band " << spec.passbandType
                                        << " degree " << run->design.xp.ES.count << " nz " << spec.zerosAtZero << " ni "
                                        << spec.zerosAtInfinity << " ue " << spec.unitElements << " zeros "
                                        << run->design.xp.zeroCount << " R2 " << spec.loadResistance << ": "
                                        << run->words());
        ++requests;
        EXPECT_TRUE(run->verdict.good()) << static_cast<int>(run->verdict.fault) << " script fault "
                                         << static_cast<int>(run->state.script_verdict.fault);
        if (!run->verdict.good()) return;
        EXPECT_LT(run->state.loss.passband, 1e-6);
        EXPECT_LT(run->state.loss.stopband_relative, 1e-4);
        EXPECT_GT(run->state.loss.points, 100);
        passband = std::fmax(passband, run->state.loss.passband);
        stopband_relative = std::fmax(stopband_relative, run->state.loss.stopband_relative);
        with_negative_elements += run->state.negative_elements > 0 ? 1 : 0;
    }
    void tell() const {
        std::printf("%d requests, pass band %.2g dB, stop band %.2g relative, %d with negative elements\n", requests,
                    passband, stopband_relative, with_negative_elements);
    }
};

TEST(SynthesisProperty, AllPole) {
    Tally tally;
    for (const int type : {low_pass, high_pass, band_pass}) {
        for (const int passband : {maximally_flat, equal_ripple}) {
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
    for (const int type : {low_pass, high_pass, band_pass}) {
        for (const int passband : {maximally_flat, equal_ripple}) {
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
        const int type = turn % 4 < 2 ? band_pass : turn % 4 == 2 ? low_pass : high_pass;
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

// Complex zeros beside real ones, and what compound branches they come to.
TEST(SynthesisProperty, ComplexZeros) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> share(0, 1);
    Tally tally;
    std::array<int, 10> ids{};
    for (int turn = 0; turn < 120; ++turn) {
        const int type = turn % 3 == 0 ? low_pass : turn % 3 == 1 ? high_pass : band_pass;
        const int quadruplets = 1 + static_cast<int>(share(random) * 2.5);
        const int real = static_cast<int>(share(random) * 3);
        const double edge = type == high_pass ? 2000 : 3000;
        FilterSpec s = all_pole(type, turn % 2, 2);
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
        if (type == band_pass)
            s.bandpassType = (s.zerosAtZero + s.zerosAtInfinity) % 2 == 0 ? conventional : parametric;
        s.degree = 4 * quadruplets + 2 * real + s.zerosAtZero + s.zerosAtInfinity;
        s.degreeParity = s.degree % 2;
        tally.take(s, "complex");

        for (const Direction direction : {Direction::forward, Direction::reverse}) {
            auto run = std::make_unique<LadderRun>();
            run->request.direction = direction;
            run->run(s);
            if (!run->approximated || !run->verdict.good()) continue;
            for (int k = 1; k != 0; k = unpackBranch(run->circuit, k).kn) {
                const Branch branch = unpackBranch(run->circuit, k);
                if (branch.id < static_cast<int>(ids.size())) ++ids[static_cast<std::size_t>(branch.id)];
            }
        }
    }
    tally.tell();
    EXPECT_GT(tally.requests, 100);
    for (const std::size_t id : {6u, 7u, 9u}) EXPECT_GT(ids[id], 0) << id;
}

// A zero on the real axis has no branch: the design is refused, not forced.
TEST(SynthesisProperty, ZeroOnTheRealAxisIsRefused) {
    FilterSpec s = all_pole(low_pass, equal_ripple, 4);
    s.loadResistance = 50;
    s.zeroCount = 1;
    s.FZR(1) = 2500;
    s.zerosAtInfinity = 2;
    auto run = std::make_unique<LadderRun>();
    run->run(s);
    ASSERT_TRUE(run->approximated);
    EXPECT_EQ(run->verdict.fault, SynthesisFault::script_refused);
    EXPECT_EQ(run->state.script_verdict.fault, ScriptFault::quadruplet_error);
    const std::vector<std::string> lines = failure_report(run->verdict, run->state);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], " **** Synthesis failed ****");
}

// Stubs and lines, analysed as lines.
TEST(SynthesisProperty, Microwave) {
    Tally tally;
    for (const int type : {low_pass, high_pass, band_pass}) {
        for (const int passband : {maximally_flat, equal_ripple}) {
            for (const int lines : {0, 1, 2, 5, 8, 25}) {
                for (const int stubs : {0, 1, 3}) {
                    FilterSpec s = all_pole(type, passband, 1);
                    s.medium = microwave;
                    s.implementation = 'M';
                    s.sampleFrequency = 20000;
                    s.loadResistance = 50;
                    s.unitElements = lines;
                    s.zerosAtInfinity = type == high_pass ? 0 : stubs;
                    s.zerosAtZero = type == low_pass ? 0 : stubs;
                    s.degree = s.zerosAtZero + s.zerosAtInfinity + lines;
                    s.degreeParity = s.degree % 2;
                    if (s.degree == 0) continue;
                    tally.take(s, "microwave");

                    auto run = std::make_unique<LadderRun>();
                    run->run(s);
                    if (!run->approximated || !run->verdict.good()) continue;
                    // The loss of the approximation at its own w, by an analysis that shares nothing with the check.
                    const double t = std::tan(std::numbers::pi * static_cast<double>(run->design.xp.normFrequency) /
                                              s.sampleFrequency);
                    for (const double w : {0.7, 0.9, 1.3, 2.0}) {
                        const double true_w = type == high_pass ? t / w : t * w;
                        const double hz = std::atan(true_w) * s.sampleFrequency / std::numbers::pi;
                        const auto wanted = static_cast<double>(design_loss(run->design.xp, w));
                        EXPECT_NEAR(chain_loss(run->circuit, hz), wanted, 1e-8 * std::fmax(1.0, wanted))
                            << type << " " << lines << " " << stubs << " " << w;
                    }
                }
            }
        }
    }
    tally.tell();
    EXPECT_GT(tally.requests, 90);
}

// A circuit that is wrong is not shown: the former one stays.
TEST(SynthesisProperty, WrongCircuitLeavesTheFormerOne) {
    auto run = std::make_unique<LadderRun>();
    run->run(all_pole(low_pass, equal_ripple, 5));
    ASSERT_TRUE(run->verdict.good());
    const Circuit former = run->circuit;
    XPlane xp = run->design.xp;
    for (int i = 1; i <= xp.QS.count; ++i) xp.QS.re(i) = 1.2L;  // another filter's loss
    EXPECT_FALSE(synthesise(xp, run->design.spec, {}, run->state, run->circuit).good());
    EXPECT_EQ(run->circuit, former);
    // No transmission zero at 0, infinity or of a line.
    FilterSpec s = with_minima(low_pass, equal_ripple, 6, -1);
    s.loadResistance = 50;
    run->run(s);
    ASSERT_TRUE(run->approximated);
    EXPECT_EQ(run->verdict.fault, SynthesisFault::not_realizable);
    EXPECT_EQ(run->circuit, former);
}

}  // namespace
}  // namespace kavrel::test
