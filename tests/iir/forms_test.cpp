// Each form of random and odd filters against its roots in long numbers, by the impulse response.
#include <fstream>

#include <gtest/gtest.h>

#include "iir/allpass_form.h"
#include "tests/iir/filters.h"

namespace kavrel {
namespace {

using enum Implementation;

// Scaled or not: the forms are made of the roots, and those of the factors.
TEST(Forms, OfRandomFiltersHaveOneImpulseResponse) {
    RandomNumbers random(91);
    for (int n = 0; n < 300; ++n) {
        IirFilter filter = random_filter(random, 1 + n % 30);
        const std::vector<double> truth = direct_impulse(filter.roots, 200);
        if (n % 2 == 1) scale(filter, random), rootsFromFactors(filter);
        const DigitalRoots roots = filter.roots;
        make_forms(filter);
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
    filter.allpass.LARR(1) = filter.allpass.LARR(3) = 1;  // 3: the second member of a pair, which nobody reads
    std::vector<double> truth = {1.0 / 6, 1.0 / 2, 4.0 / 9};
    while (truth.size() < 50) truth.push_back(truth.size() == 3 ? 0 : -truth[truth.size() - 2] / 3);
    make_forms(filter);
    EXPECT_TRUE(makeAllpass(filter).empty());
    for (const auto form : {cascade, parallel, lattice, direct, allpass}) {
        EXPECT_LT(deviation(filter, form, truth), 1e-15) << structure_name(form);
    }
    EXPECT_EQ(filter.parallel.BE(2), 0.5) << "the pole at 0 has the block z^-1/2";
    for (const double zero : {filter.parallel.GA(1), filter.allpass.TA1(1), filter.allpass.TB1(1),
                              filter.direct.ZDEN(2), filter.lattice.GMMUL(3)}) {
        EXPECT_TRUE(zero == 0 && !std::signbit(zero)) << "0 is shown without a sign";
    }
}

TEST(ParallelForm, OfOddRoots) {
    const Complex<double> pair = {0.4, 0.7};
    const struct {
        const char* name;
        RootList zeros, poles;
        double tolerance = 4e-15;
    } cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        IirFilter filter = filter_of(0.7, c.zeros, c.poles);
        filter.roots.PMULT = 2;
        EXPECT_TRUE(makeDirect(filter).empty());
        EXPECT_LT(deviation(filter, direct, direct_impulse(filter.roots, 60)), 4e-15);
        const DigitalRoots before = filter.roots, &after = filter.roots;
        ASSERT_TRUE(makeParallel(filter).empty());
        EXPECT_LT(deviation(filter, parallel, direct_impulse(filter.roots, 60)), c.tolerance);
        const bool pushed = c.tolerance > 1e-10;
        EXPECT_EQ(before.QR != after.QR, pushed);
        for (int i = 1; pushed && i <= before.NP; ++i) {
            const std::complex<double> was(before.QR(i), before.PI(i)), is(after.QR(i), after.PI(i));
            EXPECT_LT(std::abs(is - was), 2.1e-8 * std::abs(was));
            EXPECT_LT(std::abs((is / was).imag()), 1e-15) << "along its radius";
            for (int j = 1; j < i; ++j) EXPECT_GT(std::abs(is - std::complex(after.QR(j), after.PI(j))), 4e-9);
        }
    }
    // Poles so small that no push moves them apart: refused, and no endless loop.
    IirFilter filter = filter_of(1, {}, {{0, 8e-320}, {0, 8e-320}});
    const DigitalRoots before = filter.roots;
    EXPECT_NE(makeParallel(filter).text, "");
    EXPECT_EQ(filter.roots.PI, before.PI);
}

// The golden file has names, zeros, poles, levels, multipliers and taps, each list behind its length.
TEST(LatticeForm, AgreesWithTheAutocorrelationAndStaysUsableToDegree50) {
    std::ifstream in(TEST_DATA "/iir/lattice_golden.txt");
    std::string name;
    while (in.peek() == '#') std::getline(in, name);
    std::size_t count = 0;
    const auto numbers = [&] {
        in >> count;
        std::vector<double> values(count);
        for (double& value : values) in >> value;
        return values;
    };
    const auto roots = [&] {
        in >> count;
        RootList list(count);
        for (auto& root : list) in >> root.re >> root.im;
        return list;
    };
    double level = 0;
    int cases = 0;
    for (; in >> name; ++cases) {
        const RootList zeros = roots(), poles = roots();
        in >> level;
        IirFilter filter = filter_of(level, zeros, poles);
        ASSERT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made) << name;
        const LatticeForm& form = filter.lattice;
        int i = 0;
        for (const double multiplier : numbers()) EXPECT_NEAR(form.GMMUL(++i), multiplier, 1e-15) << name << i;
        EXPECT_TRUE(i == form.JM || i == 0) << "some are too long to list";
        i = 0;
        for (const double tap : numbers()) EXPECT_NEAR(form.GMTAP(++i), tap, 1e-15) << name << i;
        EXPECT_LT(deviation(filter, lattice, direct_impulse(filter.roots, 500)), 2e-12) << name;
    }
    EXPECT_EQ(cases, 7);
    IirFilter filter = filter_of(0.1, {{0, 1}, {0.2, 0.3}, {0, 0}}, {{0, 0}, {0.5, 0}});
    EXPECT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made) << "more zeros than poles, roots at 0";
    EXPECT_LT(deviation(filter, lattice, direct_impulse(filter.roots, 60)), 1e-15);
    filter = filter_of(0.1, {}, {{1, 0}, {0.5, 0}});
    EXPECT_TRUE(makeLattice(filter).outcome != LatticeOutcome::made && !is_there(filter.lattice)) << "a pole at 1";
}

}  // namespace
}  // namespace kavrel
