// Each form of random, narrow and odd filters against its roots in long numbers, by the impulse response.
#include <fstream>

#include <gtest/gtest.h>

#include "iir/allpass_form.h"
#include "iir/direct_form.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "tests/iir/form_deviation.h"

namespace kavrel {
namespace {

using enum Implementation;

TEST(Forms, OfRandomFiltersHaveOneImpulseResponse) {
    RandomNumbers random(91);
    for (int n = 0; n < 300; ++n) {
        IirFilter filter = random_filter(random, 1 + n % 30);
        const std::vector<double> truth = direct_impulse(filter.roots, 200);
        const DigitalRoots roots = filter.roots;
        EXPECT_EQ(makeParallel(filter).text, "");
        EXPECT_EQ(makeDirect(filter).text, "");
        EXPECT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
        EXPECT_EQ(filter.roots.QR, roots.QR);
        for (const auto form : {cascade, parallel, lattice, direct}) {
            EXPECT_LT(deviation(filter, form, truth), 1e-12) << n << " " << structure_name(form);
        }
    }
}

// (1 + z^-1)^3/(6 + 2 z^-2): half a band of third order, a pole at exactly 0, all five forms by hand.
TEST(Forms, OfAHalfBandFilter) {
    IirFilter filter = filter_of(1.0 / 6, {{-1, 0}, {-1, 0}, {-1, 0}}, {{0, 0}, {0, std::sqrt(1.0 / 3)}});
    filter.kind = DigitalKind::low_pass;
    filter.allpass.ALLPASS_OK = true;
    filter.allpass.LARR(1) = 1;
    filter.allpass.LARR(3) = 1;  // of the second member of a pair, which nobody reads
    std::vector<double> truth = {1.0 / 6, 1.0 / 2, 4.0 / 9};
    while (truth.size() < 50) truth.push_back(truth.size() == 3 ? 0 : -truth[truth.size() - 2] / 3);
    EXPECT_EQ(makeParallel(filter).text, "");
    EXPECT_EQ(makeDirect(filter).text, "");
    EXPECT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
    EXPECT_EQ(makeAllpass(filter).text, "");
    for (const auto form : {cascade, parallel, lattice, direct, allpass}) {
        EXPECT_LT(deviation(filter, form, truth), 1e-15) << structure_name(form);
    }
    EXPECT_EQ(filter.parallel.NPAR, 2);
    EXPECT_EQ(filter.parallel.BE(2), 0.5) << "the pole at 0 has the block z^-1/2";
    EXPECT_EQ(filter.lattice.GMMUL(3), 0);
    for (const double zero : {filter.parallel.GA(1), filter.allpass.TA1(1), filter.allpass.TB1(1),
                              filter.direct.ZDEN(2), filter.lattice.GMMUL(3)}) {
        EXPECT_FALSE(std::signbit(zero)) << "0 is shown without a sign";
    }
    EXPECT_EQ(filter.allpass.TA2(1), 0);
}

struct Odd {
    const char* name;
    RootList zeros;
    RootList poles;
    double tolerance = 4e-15;
};

TEST(ParallelForm, OfOddRoots) {
    const Complex<double> pair = {0.4, 0.7};
    const Odd cases[] = {
        {"a real pole before a pair", {{-1, 0}}, {{0.5, 0}, pair, {-0.3, 0}, {0.1, 0}}},
        {"a zero at 0", {{0, 0}, {-1, 0}}, {pair, {0.2, 0}}},
        {"as many zeros as poles", {{0.3, 1}, {-1, 0}}, {pair, {0.2, 0}}},
        {"a zero more than poles", {{0.3, 1}, {-1, 0}, {-0.9, 0}}, {pair, {0.2, 0}}},
        {"poles at 0 beside others", {{0.3, 1}}, {{0, 0}, {0, 0}, pair, {0, 0}}},
        {"nothing but poles at 0", {{0.5, 0}}, {{0, 0}, {0, 0}}},
        {"a constant", {{0, 0}}, {{0, 0}}},
        {"equal real poles", {{-1, 0}}, {{0.5, 0}, {0.5, 0}}, 1e-7},
        {"three equal real poles apart in the list", {}, {{0.5, 0}, pair, {0.5, 0}, {-0.2, 0}, {0.5, 0}}, 1e-1},
        {"equal pairs", {{0, 1}, {-1, 0}}, {pair, {0.1, 0}, pair}, 1e-7},
    };
    for (const Odd& c : cases) {
        IirFilter filter = filter_of(0.7, c.zeros, c.poles);
        filter.roots.PMULT = 2;
        const DigitalRoots before = filter.roots;
        ASSERT_EQ(makeParallel(filter).text, "") << c.name;
        EXPECT_GT(filter.parallel.NPAR, 0) << c.name;
        EXPECT_LT(deviation(filter, parallel, direct_impulse(filter.roots, 60)), c.tolerance) << c.name;
        const bool apart = c.tolerance > 1e-10;
        EXPECT_EQ(before.QR != filter.roots.QR, apart) << c.name;
        for (int i = 1; apart && i <= before.NP; ++i) {
            EXPECT_NEAR(filter.roots.QR(i), before.QR(i), 2.1e-8 * std::fabs(before.QR(i))) << c.name;
            EXPECT_EQ(filter.roots.QR(i) / before.QR(i),
                      filter.roots.PI(i) == 0 ? filter.roots.QR(i) / before.QR(i) : filter.roots.PI(i) / before.PI(i));
            for (int j = 1; j < i; ++j) {
                const double gap =
                    std::hypot(filter.roots.QR(i) - filter.roots.QR(j), filter.roots.PI(i) - filter.roots.PI(j));
                EXPECT_GT(gap, 9e-9 * std::fabs(before.QR(i))) << c.name;
            }
        }
    }
    IirFilter filter = filter_of(1, {{0.3, 1}, {-1, 0}}, {{0.5, 0}});
    EXPECT_EQ(makeParallel(filter).text, "More zeros than poles, no parallel form");
    EXPECT_FALSE(is_there(filter.parallel));
}

TEST(DirectForm, LevelAndNoRoots) {
    IirFilter filter = filter_of(3, {{0, 1}}, {{0.5, 0}});
    filter.roots.PMULT = 2;
    EXPECT_EQ(makeDirect(filter).text, "");
    EXPECT_EQ(filter.direct.ZNUM(1), 1.5);
    EXPECT_EQ(filter.direct.ZNUM(3), 1.5);
    EXPECT_EQ(filter.direct.ZDEN(1), 1);
    EXPECT_EQ(filter.direct.ZDEN(2), -0.5);
    EXPECT_EQ(filter.direct.JN, 3);
    EXPECT_EQ(filter.direct.JD, 2);
    IirFilter empty = filter_of(1, {}, {});
    EXPECT_EQ(makeDirect(empty).text, "Natural modes unknown, no direct form");
}

// While it is scaled a numerator factor carries its section's scale factor, and the front end what takes it back.
TEST(CascadeForm, Scaled) {
    RandomNumbers random(93);
    for (int n = 0; n < 20; ++n) {
        IirFilter filter = random_filter(random, 1 + n);
        const std::vector<double> truth = direct_impulse(filter.roots, 100);
        CascadeForm& form = filter.cascade;
        for (int k = 1; k <= section_count(form); ++k) {
            const double scale = random.spread(0.1, 10);
            form.SC(k) = scale, form.C1N(k) *= scale, form.C2N(k) *= scale, form.CK /= scale;
        }
        form.SCALED = true;
        EXPECT_LT(deviation(filter, cascade, truth), 1e-12);
        rootsFromFactors(filter);
        EXPECT_EQ(makeDirect(filter).text, "");
        EXPECT_LT(deviation(filter, direct, truth), 1e-12);
    }
}

struct GoldenLattice {
    std::string name;
    RootList zeros, poles;
    double level = 0;
    std::vector<double> multipliers, taps;
};

std::vector<GoldenLattice> golden_lattices() {
    std::ifstream in(TEST_DATA "/iir/lattice_golden.txt");
    std::string comment;
    while (in.peek() == '#') std::getline(in, comment);
    const auto numbers = [&](int each) {
        std::size_t count = 0;
        in >> count;
        std::vector<double> values(count * static_cast<std::size_t>(each));
        for (double& value : values) in >> value;
        return values;
    };
    const auto roots = [&] {
        RootList list;
        const std::vector<double> parts = numbers(2);
        for (std::size_t i = 0; i < parts.size(); i += 2) list.push_back({parts[i], parts[i + 1]});
        return list;
    };
    std::vector<GoldenLattice> cases;
    for (GoldenLattice c; in >> c.name; cases.push_back(c)) {
        c.zeros = roots(), c.poles = roots();
        in >> c.level;
        c.multipliers = numbers(1), c.taps = numbers(1);
    }
    return cases;
}

TEST(LatticeForm, AgreesWithTheAutocorrelationAndStaysUsableToDegree50) {
    const auto cases = golden_lattices();
    ASSERT_EQ(cases.size(), 7U);
    for (const GoldenLattice& c : cases) {
        IirFilter filter = filter_of(c.level, c.zeros, c.poles);
        ASSERT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made) << c.name;
        EXPECT_EQ(filter.lattice.JM, filter.roots.NP);
        EXPECT_EQ(filter.lattice.JT, filter.roots.NP + 1);
        for (std::size_t i = 0; i < c.multipliers.size(); ++i) {
            EXPECT_NEAR(filter.lattice.GMMUL(static_cast<int>(i) + 1), c.multipliers[i], 1e-15) << c.name << i;
        }
        for (std::size_t i = 0; i < c.taps.size(); ++i) {
            EXPECT_NEAR(filter.lattice.GMTAP(static_cast<int>(i) + 1), c.taps[i], 1e-15) << c.name << i;
        }
        EXPECT_LT(deviation(filter, lattice, direct_impulse(filter.roots, 500)), 2e-12) << c.name;
    }
}

TEST(LatticeForm, WhereThereIsNone) {
    const auto verdict = [](double level, const RootList& zeros, const RootList& poles) {
        IirFilter filter = filter_of(level, zeros, poles);
        const LatticeVerdict found = makeLattice(filter);
        EXPECT_EQ(is_there(filter.lattice), found.outcome == LatticeOutcome::made);
        return found;
    };
    using enum LatticeOutcome;
    EXPECT_TRUE(verdict(1, {{1, 0}}, {}).outcome == no_poles);
    const LatticeVerdict first = verdict(1, {{0, 1}}, {{0.5, 0}, {-0.5, 0}});
    EXPECT_TRUE(first.outcome == unstable) << "the tap is 1";
    EXPECT_EQ(first.stage, -1);
    const LatticeVerdict second = verdict(1, {{2, 0}}, {{0.5, 0}, {-0.5, 0}});
    EXPECT_TRUE(second.outcome == unstable) << "the tap is -2";
    EXPECT_EQ(second.stage, 0);
    EXPECT_TRUE(verdict(0.9, {{0, 1}}, {{0.5, 0}, {-0.5, 0}}).outcome == made);
    EXPECT_TRUE(verdict(0.1, {}, {{1, 0}, {0.5, 0}}).outcome == lost) << "a pole on the circle";
    EXPECT_EQ(verdict(0.1, {}, {{1, 0}, {0.5, 0}}).stage, 0);
    IirFilter long_numerator = filter_of(0.1, {{0, 1}, {0.2, 0.3}, {0, 0}}, {{0, 0}, {0.5, 0}});
    EXPECT_TRUE(makeLattice(long_numerator).outcome == made) << "more zeros than poles, roots at 0";
    EXPECT_LT(deviation(long_numerator, lattice, direct_impulse(long_numerator.roots, 60)), 1e-15);
}

// Poles so small that no push moves them apart: refused, and no endless loop.
TEST(Forms, PolesNextToZeroHaveNoParallelForm) {
    IirFilter filter = filter_of(1, {}, {{0, 8e-320}, {0, 8e-320}});
    const DigitalRoots before = filter.roots;
    EXPECT_NE(makeParallel(filter).text, "");
    EXPECT_EQ(filter.roots.PI, before.PI);
}

}  // namespace
}  // namespace kavrel
