#include "approximation/factor_signs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "approximation/frequency_variable.h"
#include "approximation/hurwitz_factors.h"
#include "numeric/guarded.h"
#include "numeric/scaled_value.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

Complex<Real> value_of_psi(const FilterSpec& spec, const XPlane& xp, bool band_pass, Complex<Real> x);
Real value_at(const WideRootSet& set, Real x);

}  // namespace

void signRoots(XPlane& x, bool high_pass, int left_alone) {
    const int factors = x.fFactors.factors();
    std::array<int, max_pairs> order{};
    std::array<Real, max_pairs + 1> depth{};
    std::iota(order.begin(), order.begin() + factors, 1);
    for (int i = 1; i <= factors; ++i)
        depth[static_cast<std::size_t>(i)] = depthOfFactor(x.fFactors, x.a, high_pass, i);
    std::stable_sort(order.begin(), order.begin() + factors, [&](int i, int j) {
        return depth[static_cast<std::size_t>(i)] < depth[static_cast<std::size_t>(j)];
    });

    // The sign that keeps the running sum of signs between 0 and 1.
    int sum = 0;
    x.factor_sign.fill(0);
    for (int place = 0; place < factors; ++place) {
        const int factor = order[static_cast<std::size_t>(place)];
        x.factor_sign(factor) = factor == left_alone || sum <= 0 ? 1 : -1;
        if (factor != left_alone) sum += x.factor_sign(factor);
    }
    applySigns(x);
}

void applySigns(XPlane& x) {
    for (int i = 1; i <= x.fFactors.factors(); ++i) {
        if (x.factor_sign(i) >= 1) continue;
        x.fFactors.c(i) = -x.fFactors.c(i);
        x.fFactors.d(i) = -x.fFactors.d(i);
        if (i <= x.fFactors.pairs()) x.fFactors.multiplier = -x.fFactors.multiplier;
    }
}

long double depthOfFactor(const WidePseudoPolynomial& p, long double a, bool high_pass, int i) {
    const Real c = p.c(i);
    const Real d = p.d(i);
    if (i > p.pairs()) return high_pass ? -1 / c : -c;
    // s^2 + b s + c0 with b = (1 - a)/(c + d), c0 = (c + ad)/(c + d); high-pass: 1 + b s + c0 s^2
    const Real disc = (1 - a) * (1 - a) - 4 * (c + d) * (c + d * a);
    const Real root = disc > 0 ? std::sqrt(disc) : Real{0};
    return (a - 1 + root) / (2 * (high_pass ? c : c + d));
}

int mirrorRealZero(XPlane& x) {
    const Real a = x.a;
    for (int i = 1; i <= x.fFactors.pairs(); ++i) {
        const Real c = x.fFactors.c(i);
        const Real d = x.fFactors.d(i);
        const Real disc = (1 - a) * (1 - a) - 4 * (c + d) * (c + d * a);
        if (!(disc > 0)) continue;
        const Real root = std::sqrt(disc);
        x.fFactors.c(i) = (2 * a * d + (1 + a) * c) / root;
        x.fFactors.d(i) = -(2 * c + (1 + a) * d) / root;
        x.fFactors.multiplier *= -root / (1 - a);
        return i;
    }
    return 0;
}

bool assignPoleChains(const FilterSpec& spec, XPlane& xp) {
    xp.LARR.fill(0);
    const bool band_pass = spec.filterType == FilterType::band_pass;
    const bool odd_f = spec.filterType == low_pass || spec.filterType == high_pass
                           ? xp.ES.count % 2 == 1 && xp.fEven.multiplier == 0
                           : band_pass && xp.ES.count % 2 == 0 && spec.zerosAtZero % 2 == 1 && xp.fOdd.multiplier == 0;
    if (!odd_f || spec.unitElements > 0) return false;

    constexpr Real tolerance = 1e-6L;  // psi is exact to some 1e-14: beyond, f and e do not belong together
    for (int i = 1; i <= xp.ES.count; ++i) {
        const Complex<Real> psi = value_of_psi(spec, xp, band_pass, xp.ES.root(i));
        if (!(std::fabs(std::fabs(psi.re) - 1) < tolerance && std::fabs(psi.im) < tolerance)) {
            xp.LARR.fill(0);
            return false;
        }
        xp.LARR(i) = psi.re > 0 ? 1 : -1;
    }
    return true;
}

WideRootSet evenPartOfQ(const FilterSpec& spec, const XPlane& xp) {
    WideRootSet q;
    q.multiplier = 1;
    for (int i = 1; i <= (spec.zerosAtInfinity - 1) / 2; ++i) {
        q.multiplier = -q.multiplier;
        q.append({1, 0});
    }
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> zero{xp.ARR(i), xp.ARI(i)};
        q.append(zero);
        if (zero.im != 0) {
            q.append(conjugate(zero));
        } else if (zero.re > 1) {
            q.multiplier = -q.multiplier;
        }
    }
    const Real unit_root = unit_element_root(spec, xp);
    for (int i = 1; i <= spec.unitElements / 2; ++i) {
        q.append({unit_root, 0});
        if (unit_root > 1) q.multiplier = -q.multiplier;
    }
    return q;
}

bool superposeParts(const WideRootSet& even_q, const WideRootSet& odd_f0, long double raised, XPlane& xp) {
    WideRootSet even = even_q;
    WideRootSet odd = odd_f0;
    even.multiplier *= std::sqrt(raised - 1);
    odd.multiplier *= std::sqrt(raised);

    constexpr Real agreement = 1e-9L;
    Real best = 0;
    bool found = false;
    constexpr double places[] = {-0.2, -0.7, -2.3, -20.0, -200.0};  // over the whole pass band x < 0
    for (const double place : places) {
        const Real x = static_cast<Real>(place);
        const PseudoValue<Real> p = evalPseudo(xp.fFactors, xp.a, Complex<Real>{x, 0});
        const Complex<Real> f = shifted(p.plus, p.exponent);
        const Real ev = value_at(even, x);
        const Real od = value_at(odd, x) * p.root.im;
        const Real share = std::fmin(std::fabs(ev), std::fabs(od)) / std::hypot(ev, od);
        if (!(share > best)) continue;
        best = share;
        found = std::fabs(std::fabs(ev) - std::fabs(f.re)) <= agreement * std::fabs(f.re) &&
                std::fabs(std::fabs(od) - std::fabs(f.im)) <= agreement * std::fabs(f.im);
        if (ev * f.re < 0) even.multiplier = -even.multiplier;
        if (od * f.im < 0) odd.multiplier = -odd.multiplier;
    }
    if (!found) return false;
    xp.fEven = even;
    xp.fOdd = odd;
    return true;
}

long double deviationOfParts(const XPlane& xp) {
    Real largest = 0;
    const auto take = [&](Real x) {
        const Real ev = value_at(xp.fEven, x);
        const Real od = value_at(xp.fOdd, x);
        const Real f =
            xp.ES.count % 2 == 0 ? ev * ev - (x - xp.a) * (1 - x) * od * od : (x - xp.a) * od * od - (1 - x) * ev * ev;
        const Real deviation = std::fabs((value_at(xp.FS, x) - f) / value_at(xp.ES, x));
        if (!(deviation <= largest)) largest = deviation;
    };
    constexpr double distances[] = {0.02, 0.15, 0.5, 1.1,
                                    2.4,  7.0,  40.0};  // from the edges of the bands x < 0 and x > 1
    for (const double distance : distances) {
        take(-static_cast<Real>(distance));
        take(1 + static_cast<Real>(distance));
    }
    if (xp.a > 0) take(xp.a / 2), take(xp.a / 8);
    return largest;
}

namespace {

Real value_at(const WideRootSet& set, Real x) {
    const ScaledValue<Real> product = scaledProduct(set, {x, 0});
    return shifted(product.value, product.exponent).re;
}

// Low-pass, high-pass: psi = s fOdd/((1 - x)^((nzi - 1)/2) prod sigma (x - xz)); band-pass:
// psi = fEven/(s (x - a)^((nz0 - 1)/2) (1 - x)^((nzi + 1)/2) prod sigma (x - xz)), sigma = sign(1 - xz).
Complex<Real> value_of_psi(const FilterSpec& spec, const XPlane& xp, bool band_pass, Complex<Real> x) {
    const Complex<Real> s = hurwitzRoot(x, xp.a);
    const Complex<Real> from_a{x.re - xp.a, x.im};
    const Complex<Real> to_one{1 - x.re, -x.im};

    // Factor against factor, so that neither product leaves the range.
    Complex<Real> psi = band_pass ? cinv(s.re, s.im) : s;
    const WideRootSet& part = band_pass ? xp.fEven : xp.fOdd;
    psi = part.multiplier * psi;
    int next = 0;
    const auto divide = [&](Complex<Real> divisor) {
        if (next < part.count) ++next, psi *= x - part.root(next);
        psi = cdiv(psi, divisor, solver_decades);
    };
    if (band_pass) {
        for (int i = 1; i <= (spec.zerosAtZero - 1) / 2; ++i) divide(from_a);
    }
    for (int i = 1; i <= (spec.zerosAtInfinity + (band_pass ? 1 : -1)) / 2; ++i) divide(to_one);
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> zero{xp.ARR(i), xp.ARI(i)};
        if (zero.im == 0) {
            divide(zero.re > 1 ? zero - x : x - zero);
        } else {
            divide(x - zero);
            divide(x - conjugate(zero));
        }
    }
    while (next < part.count) ++next, psi *= x - part.root(next);
    return psi;
}

}  // namespace

}  // namespace kavrel
