#include "numeric/sum_roots.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numeric/guarded.h"
#include "numeric/root_hunt.h"
#include "numeric/root_order.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

void take_out_common_roots(SumWorkspace& ws);
[[nodiscard]] bool find_leading_term(SumWorkspace& ws);
[[nodiscard]] Wide count_roots_at_zero(SumWorkspace& ws);
void rescale(SumWorkspace& ws, Wide trailing);
[[nodiscard]] bool find_other_roots(SumWorkspace& ws, const SolveOptions& options);
void collect(SumWorkspace& ws);
void average_clusters(WideRootSet& R);

}  // namespace

SolveVerdict solveSum(const WideRootSet& A, const WideRootSet& B, WideRootSet& R, SumWorkspace& ws,
                      const SolveOptions& options) {
    if (std::max(A.count, B.count) > max_degree) return {SolveFault::degree_too_high};
    ws.tol = toleranceOf<Wide>(options);
    copyRootSet(A, ws.A);
    copyRootSet(B, ws.B);
    sortByMagnitude(ws.A);
    sortByMagnitude(ws.B);

    if (ws.A.multiplier == 0 || ws.B.multiplier == 0) {
        ws.R = ws.A.multiplier == 0 ? ws.B : ws.A;
        if (ws.R.multiplier == 0) ws.R.count = 0;
        copyRootSet(ws.R, R);
        return {};
    }

    take_out_common_roots(ws);
    if (!find_leading_term(ws)) {
        R.multiplier = 0;
        R.count = 0;
        return {};
    }
    const Wide trailing = count_roots_at_zero(ws);
    if (!std::isfinite(trailing / ws.R.multiplier)) return {SolveFault::no_convergence};
    rescale(ws, trailing);
    if (!find_other_roots(ws, options)) return {SolveFault::no_convergence};
    collect(ws);
    if (options.symmetrize) average_clusters(ws.R);
    copyRootSet(ws.R, R);
    return {};
}

namespace {

// Roots of A and B that agree to tol, zeros among them, are roots of the sum as they are: A = G A', B = G B', and all
// further work is done on A' + B'.
void take_out_common_roots(SumWorkspace& ws) {
    ws.common.count = 0;
    for (int i = 1; i <= ws.A.count;) {
        const Complex<Wide> a = ws.A.root(i);
        int j = 1;
        while (j <= ws.B.count && !(sum_of_parts(a - ws.B.root(j)) <= sum_of_parts(a) * ws.tol)) ++j;
        if (j > ws.B.count) {
            ++i;
            continue;
        }
        ws.common.append(a);
        for (int k = i; k < ws.A.count; ++k) ws.A.set_root(k, ws.A.root(k + 1));
        for (int k = j; k < ws.B.count; ++k) ws.B.set_root(k, ws.B.root(k + 1));
        --ws.A.count;
        --ws.B.count;
    }
}

// |k| times the coefficients of the product of (x + |root|).
void bound_coefficients(const WideRootSet& set, Table<Wide, max_coefficients>& bound) {
    bound.fill(0);
    bound(1) = std::fabs(set.multiplier);
    for (int i = 1; i <= set.count; ++i) {
        const Wide r = cabs(set.root(i));
        for (int k = i + 1; k >= 2; --k) bound(k) += r * bound(k - 1);
    }
}

// A sum of two terms counts as 0 within `factor` tol of the terms, as the larger bound of their rounding demands.
bool vanishes(Wide sum, Wide term, Wide bound, int factor, Wide tol) {
    return std::fabs(sum) <= std::fmax(static_cast<Wide>(factor) * tol * std::fabs(term), 2 * tol * bound);
}

// Degree and leading coefficient kR of the sum. False when the whole sum vanishes.
bool find_leading_term(SumWorkspace& ws) {
    ws.coefA = expandRoots(ws.A);
    ws.coefB = expandRoots(ws.B);
    bound_coefficients(ws.A, ws.boundA);
    bound_coefficients(ws.B, ws.boundB);

    const int n = std::max(ws.A.count, ws.B.count);
    ws.degree = n;
    ws.R.count = 0;
    ws.R.multiplier = ws.A.count > ws.B.count ? ws.A.multiplier : ws.B.multiplier;
    if (ws.A.count != ws.B.count) return true;

    for (int i = 1; i <= n + 1; ++i) {
        ws.degree = n + 1 - i;
        ws.R.multiplier = ws.coefA.re(i) + ws.coefB.re(i);
        const Wide bound = std::fmax(ws.boundA(i), ws.boundB(i));
        if (!vanishes(ws.R.multiplier, ws.coefA.re(i), bound, 10, ws.tol)) return true;
    }
    return false;
}

// Trailing terms of the sum that vanish are roots at the origin. Returns the first that does not.
Wide count_roots_at_zero(SumWorkspace& ws) {
    const auto cell = [](const Table<Wide, max_coefficients>& t, int i) { return i >= 1 ? t(i) : 0.0L; };
    Wide sum = ws.R.multiplier;
    for (; ws.R.count < ws.degree; ws.R.append({})) {
        const int i = ws.A.count + 1 - ws.R.count;
        const int j = ws.B.count + 1 - ws.R.count;
        const Wide a = cell(ws.coefA.re, i);
        sum = a + cell(ws.coefB.re, j);
        const Wide bound = std::fmax(cell(ws.boundA, i), cell(ws.boundB, j));
        if (!vanishes(sum, a, bound, 16, ws.tol)) return sum;
    }
    return ws.R.multiplier;
}

constexpr Wide ln_16 = 4 * std::numbers::ln2_v<Wide>;

// The geometric mean of the roots to come, |trailing/kR|^(1/number), is brought near 1 by dividing all roots by a power
// of 16, which rounds nothing: A(s y) = s^nA kA product (y - a/s), and B likewise.
void rescale(SumWorkspace& ws, Wide trailing) {
    ws.scalePower = ws.exponentA = ws.exponentB = 0;
    const int remaining = ws.degree - ws.R.count;
    if (remaining == 0) return;
    const Wide decades = std::log(std::fabs(trailing / ws.R.multiplier)) / ln_16;
    ws.scalePower = whole_part(decades + 0.5L) / remaining;
    if (ws.scalePower == 0) return;

    const int bits = 4 * ws.scalePower;
    const auto divide_roots = [&](WideRootSet& set) {
        for (int i = 1; i <= set.count; ++i) {
            set.set_root(i, {std::ldexp(set.re(i), -bits), std::ldexp(set.im(i), -bits)});
        }
    };
    divide_roots(ws.A);
    divide_roots(ws.B);
    ws.exponentA = bits * (ws.A.count - ws.degree);
    ws.exponentB = bits * (ws.B.count - ws.degree);
}

// Samples of A 2^exponentA + B 2^exponentB.
template <class Real>
struct SumFunction {
    const RootSetOf<Real>& A;
    const RootSetOf<Real>& B;
    int exponentA;
    int exponentB;

    FunctionSample<Real> operator()(Complex<Real> x, bool with_derivative) const {
        if (!with_derivative) {
            const ScaledValue<Real> a = scaledProduct(A, x);
            const ScaledValue<Real> b = scaledProduct(B, x);
            return sum({a.value, {}, a.exponent}, {b.value, {}, b.exponent});
        }
        return sum(scaledProductAndDerivative(A, x), scaledProductAndDerivative(B, x));
    }

    // Both terms are shifted to the larger of their exponents.
    FunctionSample<Real> sum(ScaledPair<Real> a, ScaledPair<Real> b) const {
        a.exponent += exponentA;
        b.exponent += exponentB;
        const int e = std::max(a.exponent, b.exponent);
        const Complex<Real> va = shifted(a.value, a.exponent - e);
        const Complex<Real> vb = shifted(b.value, b.exponent - e);
        return {va + vb, shifted(a.derivative, a.exponent - e) + shifted(b.derivative, b.exponent - e),
                std::max(cabs(va), cabs(vb)), e};
    }
};

// Starting points for the next root: a root of A, the like root of B, and the point between them, off the real axis.
hunt::Points startingPoints(const RootSet& A, const RootSet& B, int index, double tol) {
    const auto zeros = [](const RootSet& set) {
        int n = 0;
        while (n < set.count && set.root(n + 1) == Complex<double>{}) ++n;
        return n;
    };
    // One start at a zero root is worth while.
    const auto skipped = [&](const RootSet& set) { return std::max(zeros(set) - 1, 0); };
    const auto pick = [&](const RootSet& set) {
        if (set.count == 0) return Complex<double>{0.5, 0};
        const Complex<double> r = set.root(std::min(index + skipped(set), set.count));
        return Complex<double>{r.re, std::fabs(r.im)};
    };
    Complex<double> x1 = pick(A);
    Complex<double> x2 = pick(B);

    if (sum_of_parts(x1) <= 0) x1.re = 0.1;
    if (sum_of_parts(x2) <= 0) x2.re = 0.2;
    if (sum_of_parts(x1 - x2) <= 1000 * tol * sum_of_parts(x1)) x2 = 2.0 * x1;
    // The point between is formed before x2 is mirrored: for A(y) +- A(-y) it would be 0 otherwise.
    Complex<double> x3 = 0.5 * (x1 + x2);
    if (x1.im == 0 && x2.im == 0) x3.im = 0.1;
    if (std::fabs(x1.re + x2.re) + std::fabs(x1.im - x2.im) < 10 * tol * sum_of_parts(x1)) x2.im = -x2.im;
    return {{{x1, x2, x3}}};
}

bool find_other_roots(SumWorkspace& ws, const SolveOptions& options) {
    copyRootSet(ws.A, ws.roughA);
    copyRootSet(ws.B, ws.roughB);
    const SumFunction<double> rough{ws.roughA, ws.roughB, ws.exponentA, ws.exponentB};
    const SumFunction<Wide> fine{ws.A, ws.B, ws.exponentA, ws.exponentB};
    const double tol = toleranceOf<double>(options);
    ws.startIndex = 1;
    return huntRoots(
        rough, fine, [&] { return startingPoints(ws.roughA, ws.roughB, ws.startIndex++, tol); },
        huntRules(options, ws.degree, 50), ws.R);
}

// Found and common roots together, in the scale of the caller.
void collect(SumWorkspace& ws) {
    const int bits = 4 * ws.scalePower;
    for (int i = 1; i <= ws.R.count; ++i)
        ws.R.set_root(i, {std::ldexp(ws.R.re(i), bits), std::ldexp(ws.R.im(i), bits)});
    for (int i = 1; i <= ws.common.count; ++i) ws.R.append(ws.common.root(i));
    sortByMagnitude(ws.R);
}

// Two conjugate pairs within 0.0003 of each other become a double pair at their mean.
void average_clusters(WideRootSet& R) {
    constexpr auto near = static_cast<Wide>(0.0003);
    for (int i = 1; i <= R.count - 3;) {
        const Complex<Wide> r = R.root(i);
        if (r.im == 0) {
            ++i;
            continue;
        }
        const auto within = [&](int j) { return cabs(r - R.root(j)) <= near * cabs(r); };
        const int partner = within(i + 2) ? i + 2 : within(i + 3) ? i + 3 : 0;
        if (partner == 0) {
            i += 2;
            continue;
        }
        const Complex<Wide> mean = 0.5L * (r + R.root(partner));
        const Complex<Wide> upper{mean.re, std::fabs(mean.im)};
        for (int j = 0; j <= 3; ++j) R.set_root(i + j, j % 2 == 0 ? upper : conjugate(upper));
        i += 4;
    }
}

}  // namespace

}  // namespace kavrel
