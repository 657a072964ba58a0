// A Hurwitz-like polynomial of s, written in the variable x = (s^2 + a)/(s^2 + 1), 0 <= a < 1:
//
//   P(x) = multiplier * product over pairs of (c_i + d_i x + w) * (sqrt(x - a) + c_n sqrt(1 - x)),
//   w = sqrt((x - a)(1 - x)),  s = w/(1 - x),
//
// the last factor for odd degree only, with d_n = 0. A factor s^2 + b s + c0 gives c = (c0 - a)/b and d = (1 - c0)/b.
//
// Its even part Ev and odd part Od are polynomials in x: P = Ev + w Od for even degree,
// P = sqrt(1 - x) Ev + sqrt(x - a) Od for odd degree. With u = int((n + 1)/2) factors Ev has degree n - u and Od u - 1.
#pragma once

#include "numeric/root_set.h"

namespace kavrel {

template <class Real>
struct PseudoPolynomialOf {
    Real multiplier = 0;
    int degree = 0;            // n, 0 to 50
    Table<Real, max_pairs> c;  // [i] 1 <= i <= factors(); the last one of odd degree is c_n
    Table<Real, max_pairs> d;  // [i] 0 in the last factor of odd degree

    [[nodiscard]] int pairs() const { return degree / 2; }
    [[nodiscard]] int factors() const { return (degree + 1) / 2; }
    [[nodiscard]] int even_degree() const { return degree - factors(); }
    [[nodiscard]] int odd_degree() const { return factors() > 0 ? factors() - 1 : 0; }
};
using PseudoPolynomial = PseudoPolynomialOf<double>;
using WidePseudoPolynomial = PseudoPolynomialOf<long double>;

static_assert(std::is_trivially_copyable_v<PseudoPolynomial>);

inline constexpr int max_part_coefficients = 26;

// Coefficients of the two parts, constant term first: CE(j + 1) and CO(j + 1) belong to x^j.
template <class Real>
struct PartCoefficientsOf {
    Table<Real, max_part_coefficients> CE;
    Table<Real, max_part_coefficients> CO;
};
using PartCoefficients = PartCoefficientsOf<Wide>;

// Factor by factor, from Ev + w Od times (c + d x + w) with w^2 = -a + (1 + a) x - x^2:
//   Ev' = (c + d x) Ev + w^2 Od,  Od' = (c + d x) Od + Ev,
// and for the last factor of odd degree Ev' = c Ev + (x - a) Od, Od' = Ev + c (1 - x) Od.
template <class Real>
[[nodiscard]] PartCoefficientsOf<Real> evenOddCoefficients(const PseudoPolynomialOf<Real>& p, const Real& a);

// Whether all zeros in s lie left of the imaginary axis: every b = (1 - a)/(c + d), c0 = (c + a d)/(c + d) and c_n
// above 0. The zeros in x of both parts are real and simple then (Hermite-Biehler).
[[nodiscard]] bool isHurwitz(const WidePseudoPolynomial& p, Wide a);

// Places spread over the pass band x < 0: at one of them at least neither part is near one of its zeros, so that its
// level can be read off there.
inline constexpr double pass_band_places[] = {-0.05, -0.4, -3.0};

// P with w and s as they are (plus) and with both reversed (minus), each divided by sqrt(x - a) -> s, sqrt(1 - x) ->
// 1 for odd degree, from which Ev = (plus + minus)/2 and Od = (plus - minus)/(2 root), root being w for even and s for
// odd degree. All with their derivatives and on one scale.
template <class Real>
struct PseudoValue {
    Complex<Real> plus, minus, root;
    Complex<Real> plus_derivative, minus_derivative, root_derivative;
    int exponent = 0;
};
template <class Real>
[[nodiscard]] PseudoValue<Real> evalPseudo(const PseudoPolynomialOf<Real>& p, Real a, Complex<Real> x);

// ---------------------------------------------------------------------------------------------------------------------

template <class Real>
PartCoefficientsOf<Real> evenOddCoefficients(const PseudoPolynomialOf<Real>& p, const Real& a) {
    PartCoefficientsOf<Real> t;
    t.CE.fill(0);
    t.CO.fill(0);
    t.CE(1) = p.multiplier;
    const auto cell = [](const Table<Real, max_part_coefficients>& table, int i) {
        return i >= 1 ? table(i) : Real{0};
    };

    for (int i = 1; i <= p.pairs(); ++i) {
        const Real c = p.c(i);
        const Real d = p.d(i);
        const PartCoefficientsOf<Real> old = t;
        for (int j = 1; j <= i + 1; ++j) {
            t.CE(j) = c * old.CE(j) + d * cell(old.CE, j - 1) - cell(old.CO, j - 2) - a * old.CO(j) +
                      (1 + a) * cell(old.CO, j - 1);
            t.CO(j) = c * old.CO(j) + old.CE(j) + d * cell(old.CO, j - 1);
        }
    }
    if (p.degree % 2 == 1) {
        const Real c = p.c(p.factors());
        const PartCoefficientsOf<Real> old = t;
        for (int j = 1; j <= p.factors(); ++j) {
            t.CE(j) = c * old.CE(j) - a * old.CO(j) + cell(old.CO, j - 1);
            t.CO(j) = (old.CO(j) - cell(old.CO, j - 1)) * c + old.CE(j);
        }
    }
    return t;
}

}  // namespace kavrel
