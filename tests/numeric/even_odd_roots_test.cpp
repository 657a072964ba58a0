#include "numeric/even_odd_roots.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "numeric/root_order.h"
#include "numeric/scaled_value.h"
#include "tests/numeric/golden_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {
namespace {

using namespace testing;

struct Parts {
    RootSet even;
    RootSet odd;
};

template <class Work = long double>
Parts parts_of(const PseudoPolynomial& p, double a, SolveFault fault = SolveFault::none, bool reactance = false) {
    Parts parts;
    EvenOddWorkspace<Work> ws;
    EXPECT_EQ(solveEvenOdd(p, a, reactance, parts.even, parts.odd, ws).fault, fault);
    return parts;
}

// Factor of s^2 + b s + c0.
void append_pair(PseudoPolynomial& p, double b, double c0, double a) {
    p.degree += 2;
    p.c(p.pairs()) = (c0 - a) / b;
    p.d(p.pairs()) = (1 - c0) / b;
}

PseudoPolynomial random_pseudo(RandomNumbers& random, int degree, double a, bool mixed) {
    PseudoPolynomial p;
    p.multiplier = std::pow(10.0, random.between(-1, 1));
    while (p.degree + 1 < degree) {
        const double omega = random.between(0.95 * std::sqrt(a) + (a == 0 ? 0.3 : 0), 1.1);
        const double sigma = std::pow(10.0, random.between(-3, 0));
        const double sign = mixed && random.coin() ? -1 : 1;
        append_pair(p, 2 * sign * sigma, omega * omega + sigma * sigma, a);
    }
    if (p.degree < degree) {
        ++p.degree;
        p.c(p.factors()) = (mixed && random.coin() ? -1 : 1) * std::pow(10.0, random.between(-1, 1));
        p.d(p.factors()) = 0;
    }
    return p;
}

// P(x) with w of the sign told, by plain products in long double, divided by sqrt(1 - x) for odd degree.
Complex<long double> value_at(const PseudoPolynomial& p, double a, Complex<long double> x, long double sign) {
    const Complex<long double> to_one = Complex<long double>{1, 0} - x;
    const Complex<long double> w = sign * csqrt((x - Complex<long double>{a, 0}) * to_one);
    Complex<long double> value{p.multiplier, 0};
    for (int i = 1; i <= p.pairs(); ++i) {
        value *= Complex<long double>{p.c(i), 0} + static_cast<long double>(p.d(i)) * x + w;
    }
    if (p.degree % 2 == 1) value *= Complex<long double>{p.c(p.factors()), 0} + cdiv(w, to_one);
    return value;
}

Complex<long double> product_at(const RootSet& set, Complex<long double> x) {
    Complex<long double> value{set.multiplier, 0};
    for (int i = 1; i <= set.count; ++i) value *= x - Complex<long double>{set.re(i), set.im(i)};
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
        PseudoPolynomial p;
        double a = 0;
        in >> word >> p.multiplier >> p.degree >> a;
        for (int i = 1; i <= p.factors(); ++i) in >> p.c(i) >> p.d(i);
        const GoldenSet even = read_golden_set(in);
        const GoldenSet odd = read_golden_set(in);
        const Parts wide = parts_of<long double>(p, a);
        expect_golden(wide.even, even, 2e-18L);
        expect_golden(wide.odd, odd, 2e-18L);
        const Parts narrow = parts_of<double>(p, a);
        expect_golden(narrow.even, even, 1e-14L);
        expect_golden(narrow.odd, odd, 1e-14L);
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
        const PseudoPolynomial p = random_pseudo(random, degree, a, mixed);
        ASSERT_EQ(isHurwitz(p, a) || mixed, true);
        const Parts parts = parts_of(p, a);
        for (int i = 0; i < 3; ++i) {
            const Complex<long double> x{random.between(-2, 3), random.between(0.1, 1)};
            const Complex<long double> w = csqrt((x - Complex<long double>{a, 0}) * (Complex<long double>{1, 0} - x));
            const Complex<long double> root = degree % 2 == 0 ? w : cdiv(w, Complex<long double>{1, 0} - x);
            for (const long double sign : {1.0L, -1.0L}) {
                const Complex<long double> whole = value_at(p, a, x, sign);
                const Complex<long double> sum = product_at(parts.even, x) + sign * (root * product_at(parts.odd, x));
                const long double size = std::max(cabs(value_at(p, a, x, 1)), cabs(value_at(p, a, x, -1)));
                EXPECT_LE(cabs(sum - whole), 3e-14L * size) << k;
            }
        }
        if (mixed) continue;
        std::vector<std::pair<double, int>> angle;  // of s = j tan(angle/2), s^2 = (x - a)/(1 - x)
        for (const RootSet* set : {&parts.even, &parts.odd}) {
            for (int i = 1; i <= set->count; ++i) {
                ASSERT_EQ(set->im(i), 0);
                const double square = (set->re(i) - a) / (set->re(i) - 1);
                ASSERT_GT(square, 0);
                angle.emplace_back(std::atan(std::sqrt(square)), set == &parts.odd ? 1 : 0);
            }
        }
        std::sort(angle.begin(), angle.end());
        for (std::size_t i = 0; i < angle.size(); ++i) EXPECT_EQ(angle[i].second, static_cast<int>(i % 2)) << k;
    }
}

TEST(SolveEvenOdd, DegreesFallWithTheirLeadingTerms) {
    // Maximally flat at 10 log10(2) dB, degree 2: s^2 + sqrt(2) s + 1 has its even root at s = j, x infinite.
    PseudoPolynomial p;
    p.multiplier = 1;
    append_pair(p, std::sqrt(2.0), 1, 0);
    Parts parts = parts_of(p, 0);
    EXPECT_EQ(parts.even.count, 0);
    EXPECT_NEAR(parts.even.multiplier, std::sqrt(0.5), 1e-15);
    EXPECT_EQ(parts.odd.count, 0);
    EXPECT_EQ(parts.odd.multiplier, 1);

    // (s^2 + b s + c0)(s^2 - b s + c0) is even: the odd part vanishes.
    p = {};
    p.multiplier = 3;
    append_pair(p, 0.5, 0.7, 0.2);
    append_pair(p, -0.5, 0.7, 0.2);
    parts = parts_of(p, 0.2);
    EXPECT_EQ(parts.even.count, 2);
    EXPECT_EQ(parts.odd.count, 0);
    EXPECT_EQ(parts.odd.multiplier, 0);

    p = {};
    p.multiplier = 4;
    parts = parts_of(p, 0);
    EXPECT_EQ(parts.even.multiplier, 4);
    EXPECT_EQ(parts.odd.multiplier, 0);
}

TEST(SolveEvenOdd, RefusesWhatIsNoReactance) {
    RandomNumbers random(5);
    PseudoPolynomial hurwitz = random_pseudo(random, 11, 0.3, false);
    parts_of(hurwitz, 0.3, SolveFault::none, true);

    // Even part of (s^2 + s/2 + 1.2)(s^2 - s/4 + 0.6): s^4 + 1.675 s^2 + 0.72, complex in s^2
    PseudoPolynomial mixed;
    mixed.multiplier = 1;
    append_pair(mixed, 0.5, 1.2, 0.3);
    append_pair(mixed, -0.25, 0.6, 0.3);
    parts_of(mixed, 0.3, SolveFault::none, false);
    Parts kept;
    kept.even.multiplier = 7;
    EvenOddWorkspace<double> ws;
    EXPECT_EQ(solveEvenOdd(mixed, 0.3, true, kept.even, kept.odd, ws).fault, SolveFault::root_off_axis);
    EXPECT_EQ(messageOf(SolveFault::root_off_axis).second, " be a reactance");

    hurwitz.c(3) = std::nan("");
    EXPECT_EQ(solveEvenOdd(hurwitz, 0.3, false, kept.even, kept.odd, ws).fault, SolveFault::part_no_convergence);
    hurwitz.degree = 51;
    EXPECT_EQ(solveEvenOdd(hurwitz, 0.3, false, kept.even, kept.odd, ws).fault, SolveFault::degree_too_high);
    EXPECT_EQ(kept.even.multiplier, 7);
}

}  // namespace
}  // namespace kavrel
