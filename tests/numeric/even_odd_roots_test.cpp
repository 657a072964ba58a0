#include "numeric/even_odd_roots.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gtest/gtest.h>

#include "numeric/guarded.h"
#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

constexpr Z one{1, 0};

struct Parts {
    WideRootSet even, odd;
};
Parts parts_of(const WidePseudoPolynomial& p, Wide a, bool reactance = false) {
    Parts parts;
    EvenOddWorkspace ws;
    EXPECT_TRUE(solveEvenOdd(p, a, reactance, parts.even, parts.odd, ws).good());
    return parts;
}

// The product of the factors s^2 + b s + c0.
WidePseudoPolynomial pseudo(Wide multiplier, Wide a, std::initializer_list<std::pair<Wide, Wide>> factors) {
    WidePseudoPolynomial p;
    p.multiplier = multiplier;
    for (const auto& [b, c0] : factors) {
        p.degree += 2;
        p.c(p.pairs()) = (c0 - a) / b;
        p.d(p.pairs()) = (1 - c0) / b;
    }
    return p;
}

WidePseudoPolynomial random_pseudo(RandomNumbers& random, int degree, double a, bool mixed) {
    WidePseudoPolynomial p;
    p.multiplier = std::pow(10.0, random.between(-1, 1));
    while (p.degree + 1 < degree) {
        const double omega = random.between(0.95 * std::sqrt(a) + (a == 0 ? 0.3 : 0), 1.1);
        const double sigma = std::pow(10.0, random.between(-3, 0));
        const double b = (mixed && random.coin() ? -2 : 2) * sigma, c0 = omega * omega + sigma * sigma;
        p.degree += 2;
        p.c(p.pairs()) = (c0 - a) / b;
        p.d(p.pairs()) = (1 - c0) / b;
    }
    if (p.degree < degree) {
        ++p.degree;
        p.c(p.factors()) = (mixed && random.coin() ? -1 : 1) * std::pow(10.0, random.between(-1, 1));
    }
    return p;
}

// P(x) with w of the given sign, by plain products, divided by sqrt(1 - x) for odd degree.
Z value_at(const WidePseudoPolynomial& p, Wide a, Z x, Wide sign) {
    const Z w = sign * csqrt((x - Z{a, 0}) * (one - x));
    Z value{p.multiplier, 0};
    for (int i = 1; i <= p.pairs(); ++i) value *= Z{p.c(i), 0} + p.d(i) * x + w;
    if (p.degree % 2 == 1) value *= Z{p.c(p.factors()), 0} + cdiv(w, one - x);
    return value;
}

Z product_at(const WideRootSet& set, Z x) {
    Z value{set.multiplier, 0};
    for (int i = 1; i <= set.count; ++i) value *= x - set.root(i);
    return value;
}

TEST(SolveEvenOdd, AgreesWithManyDigits) {
    std::ifstream in = golden_file("even_odd_roots.txt");
    std::string word, name;
    int cases = 0;
    while (in >> word) {
        ASSERT_EQ(word, "parts");
        std::getline(in, name);
        SCOPED_TRACE(name);
        WidePseudoPolynomial p;
        double a = 0, multiplier = 0, c = 0, d = 0;  // the roots are those of the doubles
        in >> word >> multiplier >> p.degree >> a;
        p.multiplier = multiplier;
        for (int i = 1; i <= p.factors() && in >> c >> d; ++i) p.c(i) = c, p.d(i) = d;
        const GoldenSet even = read_golden_set(in);
        const GoldenSet odd = read_golden_set(in);
        const Parts parts = parts_of(p, a);
        expect_golden(parts.even, even, 2e-18L);
        expect_golden(parts.odd, odd, 2e-18L);
        ++cases;
    }
    EXPECT_EQ(cases, 32);
}

// P = Ev + w Od (even degree) and P/sqrt(1 - x) = Ev + s Od (odd degree) at points off all roots; and for Hurwitz
// factors all roots are real, those of Ev and Od taking turns on the frequency axis.
TEST(SolveEvenOdd, PartsMakeUpTheWhole) {
    RandomNumbers random(21);
    for (int k = 0; k < 400; ++k) {
        const int degree = 1 + k % 50;
        const double a = k % 3 == 0 ? 0 : random.between(0.01, 0.95);
        const bool mixed = k >= 200;
        const WidePseudoPolynomial p = random_pseudo(random, degree, a, mixed);
        ASSERT_EQ(isHurwitz(p, a) || mixed, true);
        const Parts parts = parts_of(p, a);
        for (int i = 0; i < 3; ++i) {
            const Z x{random.between(-2, 3), random.between(0.1, 1)};
            const Z w = csqrt((x - Z{a, 0}) * (one - x));
            const Z root = degree % 2 == 0 ? w : cdiv(w, one - x);
            const Wide size = std::max(cabs(value_at(p, a, x, 1)), cabs(value_at(p, a, x, -1)));
            for (const Wide sign : {1.0L, -1.0L}) {
                const Z sum = product_at(parts.even, x) + sign * (root * product_at(parts.odd, x));
                EXPECT_LE(cabs(sum - value_at(p, a, x, sign)), 3e-16L * size) << k;
            }
        }
        if (mixed) continue;
        std::vector<std::pair<Wide, int>> angle;  // of s = j tan(angle/2), s^2 = (x - a)/(1 - x)
        for (const WideRootSet* set : {&parts.even, &parts.odd}) {
            for (int i = 1; i <= set->count; ++i) {
                ASSERT_EQ(set->im(i), 0);
                const Wide square = (set->re(i) - a) / (set->re(i) - 1);
                ASSERT_GT(square, 0);
                angle.emplace_back(std::atan(std::sqrt(square)), set == &parts.odd ? 1 : 0);
            }
        }
        std::sort(angle.begin(), angle.end());
        for (std::size_t i = 0; i < angle.size(); ++i) EXPECT_EQ(angle[i].second, static_cast<int>(i % 2)) << k;
    }
}

// A multiplier that takes the products out of the range between 2^-300 and 2^300 is that of the parts, and no more.
TEST(SolveEvenOdd, TheSizeOfTheWholeIsThatOfTheParts) {
    RandomNumbers random(22);
    for (int degree = 1; degree <= 50; ++degree) {
        const Wide a = degree % 3 == 0 ? 0 : 0.4;
        WidePseudoPolynomial p = random_pseudo(random, degree, static_cast<double>(a), degree % 2 == 0);
        const Parts plain = parts_of(p, a);
        p.multiplier = std::ldexp(p.multiplier, degree % 4 < 2 ? 600 : -600);
        const Parts scaled = parts_of(p, a);
        for (const auto part : {&Parts::even, &Parts::odd}) {
            const WideRootSet &want = plain.*part, &got = scaled.*part;
            ASSERT_EQ(got.count, want.count);
            const Wide multiplier = std::ldexp(got.multiplier, degree % 4 < 2 ? -600 : 600);
            EXPECT_LE(std::fabs(multiplier - want.multiplier), 1e-15L * std::fabs(want.multiplier));
            for (int i = 1; i <= want.count; ++i)
                EXPECT_LE(cabs(got.root(i) - want.root(i)), 1e-15L * cabs(want.root(i)));
        }
    }
}

TEST(SolveEvenOdd, DegreesFallWithTheirLeadingTerms) {
    const struct {
        const char* what;
        WidePseudoPolynomial p;
        double a;
        int evens;
        double even;
        int odds;
        double odd;
    } cases[] = {
        {"maximally flat, s^2 + sqrt(2) s + 1: the even root lies at s = j, x infinite",
         pseudo(1, 0, {{std::sqrt(2.0L), 1}}), 0, 0, std::sqrt(0.5), 0, 1},
        {"(s^2 + b s + c0)(s^2 - b s + c0) is even", pseudo(3, 0.2L, {{0.5L, 0.7L}, {-0.5L, 0.7L}}), 0.2, 2, -4.08, 0,
         0},
        {"a constant", pseudo(4, 0, {}), 0, 0, 4, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Parts parts = parts_of(c.p, c.a);
        EXPECT_EQ(parts.even.count, c.evens);
        EXPECT_NEAR(static_cast<double>(parts.even.multiplier), c.even, 1e-15);
        EXPECT_EQ(parts.odd.count, c.odds);
        EXPECT_EQ(parts.odd.multiplier, c.odd);
    }
}

// c1 c2 = a: the even part of two factors vanishes at the origin.
TEST(SolveEvenOdd, ARootAtTheOriginIsExact) {
    for (const Wide c : {0.1L, 0.3L, 1.7L, 5.1L}) {
        WidePseudoPolynomial p = pseudo(1, 0.3L, {{1, 1}, {1, 1}});
        p.c(1) = c, p.c(2) = 0.3L / c;
        p.d(1) = 0.7L, p.d(2) = 0.2L;
        EXPECT_EQ(parts_of(p, 0.3L).even.root(1), Z{}) << c;
    }
}

TEST(SolveEvenOdd, RefusesWhatIsNoReactance) {
    RandomNumbers random(5);
    const WidePseudoPolynomial hurwitz = random_pseudo(random, 11, 0.3, false);
    parts_of(hurwitz, 0.3, true);
    // Even part of (s^2 + s/2 + 1.2)(s^2 - s/4 + 0.6): s^4 + 1.675 s^2 + 0.72, complex in s^2
    const WidePseudoPolynomial mixed = pseudo(1, 0.3L, {{0.5L, 1.2L}, {-0.25L, 0.6L}});
    parts_of(mixed, 0.3, false);

    WidePseudoPolynomial poisoned = hurwitz, large = hurwitz;
    poisoned.c(3) = std::nan("");
    large.degree = 51;
    Parts kept;
    kept.even.multiplier = 7;
    EvenOddWorkspace ws;
    const auto fault = [&](const WidePseudoPolynomial& p, bool reactance) {
        return solveEvenOdd(p, 0.3, reactance, kept.even, kept.odd, ws).fault;
    };
    EXPECT_EQ(fault(mixed, true), SolveFault::root_off_axis);
    EXPECT_EQ(fault(poisoned, false), SolveFault::part_no_convergence);
    EXPECT_EQ(fault(large, false), SolveFault::degree_too_high);
    EXPECT_EQ(kept.even.multiplier, 7);
    EXPECT_EQ(messageOf(SolveFault::root_off_axis).second, " be a reactance");
}

}  // namespace
}  // namespace kavrel
