// Kinds of filter whose ladders are hard to find, by random requests: every circuit, analysed by its nodes, has the
// loss of its function.
#include <gtest/gtest.h>

#include "tests/circuit/nodal_reference.h"
#include "tests/support/numbers.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// Up to a constant where there is one termination alone.
void expect_nodal_loss(const LadderRun& run) {
    ASSERT_TRUE(run.verdict.good());
    const XPlane& xp = run.design.xp;
    const auto log_size = [](const WideRootSet& set, Wide x) {
        Wide sum = std::log(std::fabs(set.multiplier));
        for (int i = 1; i <= set.count; ++i) sum += std::log(std::hypot(x - set.re(i), set.im(i)));
        return sum;
    };
    Wide offset = 0;
    for (int i = 1; i <= 40; ++i) {
        const Wide w = i <= 30 ? std::sqrt(xp.a) + (1 - std::sqrt(xp.a)) * i / 30.7L : 1 + 0.02L * (i - 30);
        const Wide x = (xp.a - w * w) / (1 - w * w);
        const Wide loss = 10 / std::log(10.0L) * (log_size(xp.ES, x) - log_size(xp.QS, x));
        const Wide true_w = run.design.spec.filterType == high_pass ? 1 / w : w;
        const Wide tangent = edge_tangent(xp, run.design.spec) * true_w;
        const Wide omega = run.design.spec.medium == microwave
                               ? 2 * run.design.spec.sampleFrequency * std::atan(tangent)
                               : 2 * std::numbers::pi_v<Wide> * xp.normFrequency * true_w;
        kavrel::testing::NodalReference nodes(run.circuit, {}, omega);
        const Wide found = 20 * std::log10(std::abs(nodes.solve().H));
        if (i == 1 && run.design.spec.loadResistance == 0) offset = found - loss;
        if (loss > 80) continue;
        EXPECT_NEAR(static_cast<double>(found - offset), static_cast<double>(loss), 1e-7) << i;
    }
}

// Two poles beside the double zero of f on the real s axis, which are one to 18 digits and more.
TEST(RefusedLadders, NarrowParametricBands) {
    RandomNumbers draw(31);
    for (int turn = 0; turn < 16; ++turn) {
        const int at_zero = 2 * draw.integer(2, 6) + turn / 4 % 2;  // even: they are conjugate
        const std::string text = fmt::format("band {} parametric edges 1000 {} R 50 {} ends {} {}",
                                             turn % 2 == 0 ? "flat" : "ripple", 1000 + draw.spread(2, 320),
                                             turn % 3 == 0 ? 100 : 50, at_zero, at_zero + 2 * draw.integer(-1, 1));
        SCOPED_TRACE(text);
        const Ladder run = run_of(text);
        expect_nodal_loss(*run);
        EXPECT_EQ(run->state.negative_elements, 0);
    }
}

// A given Butterworth function: a part of e has a root at s = j, for even degree, and only rounding there.
TEST(RefusedLadders, GivenButterworthFunctions) {
    for (const int n : {2, 7, 8, 10, 14, 15, 16, 18, 20, 22, 24}) {
        for (const int load : {50, 100, 0}) {
            SCOPED_TRACE(fmt::format("degree {}, {} ohm", n, load));
            FilterSpec s = asked(fmt::format("low flat {} R 50 {}", n, load));
            s.passbandType = functional_passband;
            s.bandEdgeLoss = 0;
            s.denominatorDegree = n;
            const double edge = 2 * std::numbers::pi * s.upperPassEdge;
            for (int i = 1; i <= n / 2; ++i) {
                const std::complex<double> pole = std::polar(edge, std::numbers::pi * (0.5 + (2 * i - 1) / (2.0 * n)));
                s.denominatorFactors(2 * i - 1) = -2 * pole.real();
                s.denominatorFactors(2 * i) = std::norm(pole);
            }
            if (n % 2 == 1) s.denominatorFactors(n) = edge;
            expect_nodal_loss(*run_of(s));
        }
    }
}

// A maximally flat band-pass with equal minima, from which most orders of removals lead nowhere.
FilterSpec flat_with_minima(RandomNumbers& draw, bool parametric, int load) {
    FilterSpec s = asked(fmt::format("band flat {} minima {}{} R 50 {}", 2 * draw.integer(5, 12), draw.integer(0, 1),
                                     parametric ? " parametric" : "", load));
    s.upperPassEdge = s.lowerPassEdge * draw.spread(1.05, 2.5);
    s.lowerStopEdge = s.lowerPassEdge / draw.spread(1.01, 1.4);
    s.upperStopEdge = s.upperPassEdge * draw.spread(1.01, 1.4);
    return s;
}

// Each has a ladder, and some of them none without negative elements: few are used.
TEST(RefusedLadders, MaximallyFlatWithEqualMinima) {
    struct Kind {
        const char* name;
        bool parametric;
        int load, most_negative;  // of all turns
    };
    for (const Kind& kind :
         {Kind{"conventional", false, 0, 7}, Kind{"parametric", true, 0, 13}, Kind{"two resistors", true, 100, 6}}) {
        RandomNumbers draw(32);
        int negative = 0;
        for (int turn = 0; turn < 10; ++turn) {
            SCOPED_TRACE(fmt::format("{} {}", kind.name, turn));
            const Ladder run = run_of(flat_with_minima(draw, kind.parametric, kind.load));
            expect_nodal_loss(*run);
            negative += run->state.negative_elements;
        }
        EXPECT_LE(negative, kind.most_negative) << kind.name;
    }
}

// Bands of three decades, whose lower zeros are nearer to each other than the reach of a root that is looked for.
TEST(RefusedLadders, WideBands) {
    for (const char* text : {"band flat 16 minima 0 R 50 50 loss 0.264", "band ripple 16 minima 0 R 50 50 loss 0.0115",
                             "band flat 36 minima 0 R 50 120 loss 0.353"}) {
        SCOPED_TRACE(text);
        FilterSpec s = asked(text);
        s.lowerPassEdge = 1000, s.upperPassEdge = 1.4e6;
        s.lowerStopEdge = 870, s.upperStopEdge = 1.61e6;
        expect_nodal_loss(*run_of(s));
    }
}

// Lines and finite zeros without one at zero or infinity: the pole to shift from is made by a negative element.
TEST(RefusedLadders, LinesAndFiniteZeros) {
    RandomNumbers draw(34);
    for (int turn = 0; turn < 24; ++turn) {
        const bool high = turn % 2 == 1;
        std::string text = fmt::format("{} {} quarter {} R 50 {} ends 0 0 lines {} zeros", high ? "high" : "low",
                                       turn % 3 == 0 ? "flat" : "ripple", draw.spread(16000, 30000),
                                       turn % 4 == 0 ? 0 : 50, draw.integer(1, 5));
        for (int zeros = draw.integer(1, 3); zeros > 0; --zeros) {
            text += fmt::format(" {:.1f}", high ? 2000 / draw.spread(1.05, 2) : 3000 * draw.spread(1.05, 2));
        }
        SCOPED_TRACE(text);
        const Ladder run = run_of(text);
        expect_nodal_loss(*run);
        EXPECT_LE(run->state.negative_elements, 2);
    }
}

// Stopped at whatever removal, a search leaves the best ladder that there was, or else the former circuit.
TEST(RefusedLadders, StoppedSearch) {
    class StopAt final : public Watcher {
    public:
        explicit StopAt(int turns) : left_(turns) {}

    private:
        bool asked() override { return left_-- > 0; }
        int left_;
    };
    RandomNumbers draw(33);
    const Circuit former = run_of("low ripple 5")->circuit;
    for (const Ladder& run : {run_of("low flat R 50 50 ends 0 1 complex 1500 1000 complex 900 900"),
                              run_of(flat_with_minima(draw, false, 0))}) {
        for (const int turns : {1000000, 3000, 800, 300, 100, 40, 5, 0}) {
            SCOPED_TRACE(turns);
            StopAt watcher(turns);
            run->circuit = former;
            run->verdict = synthesise(run->design.xp, run->design.spec, {}, watcher, run->state, run->circuit);
            EXPECT_EQ(run->verdict.good(), !watcher.stopped());
            EXPECT_EQ(run->verdict.fault == SynthesisFault::stopped, watcher.stopped());
            EXPECT_EQ(run->circuit == former, watcher.stopped());
            EXPECT_TRUE(turns > 0 || watcher.stopped());
        }
    }
}

}  // namespace
}  // namespace kavrel::test
