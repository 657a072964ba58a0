#include "numeric/pseudo_polynomial.h"

#include <algorithm>

#include "numeric/guarded.h"
#include "numeric/scaled_value.h"

namespace kavrel {

bool isHurwitz(const WidePseudoPolynomial& p, Wide a) {
    for (int i = 1; i <= p.pairs(); ++i) {
        if (!(p.c(i) + p.d(i) > 0 && p.c(i) + a * p.d(i) > 0)) return false;
    }
    return p.degree % 2 == 0 || p.c(p.factors()) > 0;
}

template <class Real>
PseudoValue<Real> evalPseudo(const PseudoPolynomialOf<Real>& p, Real a, Complex<Real> x) {
    const Complex<Real> one{1, 0};
    // At a branch point the parts are finite but their formulas are not: x is moved beside it.
    constexpr Real aside = static_cast<Real>(1e-17);
    if (x == Complex<Real>{a, 0}) x.re -= std::fmax(a, Real{1}) * aside * (sizeof(Real) == sizeof(double) ? 100 : 1);
    if (x == one) x.re += aside * (sizeof(Real) == sizeof(double) ? 100 : 1);

    const Complex<Real> from_a = x - Complex<Real>{a, 0};
    const Complex<Real> to_one = one - x;
    const Complex<Real> w = csqrt(from_a * to_one);
    // w' = (1 + a - 2 x)/(2 w)
    const Complex<Real> dw = cdiv(to_one - from_a, Real{2} * w, solver_decades);

    ScaledPair<Real> plus{{p.multiplier, 0}, {}, 0};
    ScaledPair<Real> minus = plus;
    for (int i = 1; i <= p.pairs(); ++i) {
        const Complex<Real> base = p.d(i) * x + Complex<Real>{p.c(i), 0};
        const Complex<Real> slope{p.d(i), 0};
        plus.multiply(base + w, slope + dw);
        minus.multiply(base - w, slope - dw);
    }

    Complex<Real> root = w;
    Complex<Real> droot = dw;
    if (p.degree % 2 == 1) {
        // s = w/(1 - x), s' = (1 - a)/(2 s (1 - x)^2)
        root = cdiv(w, to_one, solver_decades);
        droot = cdiv(Complex<Real>{(1 - a) / 2, 0}, w * to_one, solver_decades);
        const Complex<Real> c{p.c(p.factors()), 0};
        plus.multiply(c + root, droot);
        minus.multiply(c - root, -droot);
    }

    const int e = std::max(plus.exponent, minus.exponent);
    return {shifted(plus.value, plus.exponent - e),
            shifted(minus.value, minus.exponent - e),
            root,
            shifted(plus.derivative, plus.exponent - e),
            shifted(minus.derivative, minus.exponent - e),
            droot,
            e};
}

template PseudoValue<double> evalPseudo(const PseudoPolynomial&, double, Complex<double>);
template PseudoValue<Wide> evalPseudo(const WidePseudoPolynomial&, Wide, Complex<Wide>);

}  // namespace kavrel
