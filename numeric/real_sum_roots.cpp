#include "numeric/real_sum_roots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/root_hunt.h"

namespace kavrel {
namespace {

template <class Work>
void take_out_common_roots(RealSumWorkspace<Work>& ws);
template <class Work>
[[nodiscard]] bool find_leading_term(RealSumWorkspace<Work>& ws);
template <class Work>
[[nodiscard]] bool vanishes_at_zero(const RealSumWorkspace<Work>& ws);
template <class Work>
[[nodiscard]] bool find_root(const RealSumWorkspace<Work>& ws, const SolveOptions& options, Work& x);
template <class From, class To>
void copy_roots(const RealRootSetOf<From>& from, RealRootSetOf<To>& to);
template <class Work>
void sort_roots(RealRootSetOf<Work>& set);
template <class Work>
void delete_root(RealRootSetOf<Work>& set, int i);

}  // namespace

template <class Real, class Work>
SolveVerdict solveRealSum(const RealRootSetOf<Real>& A, const RealRootSetOf<Real>& B, RealRootSetOf<Real>& R,
                          RealSumWorkspace<Work>& ws, const SolveOptions& options) {
    const int n = std::max(A.count, B.count);
    if (n > max_real_degree) return {SolveFault::real_degree_too_high, n};
    ws.tol = toleranceOf<Work>(options);
    copy_roots(A, ws.A);
    copy_roots(B, ws.B);
    sort_roots(ws.A);
    sort_roots(ws.B);

    if (ws.A.multiplier == 0 || ws.B.multiplier == 0) {
        ws.R = ws.A.multiplier == 0 ? ws.B : ws.A;
        if (ws.R.multiplier == 0) ws.R.count = 0;
        copy_roots(ws.R, R);
        return {};
    }

    take_out_common_roots(ws);
    ws.R.count = 0;
    if (!find_leading_term(ws)) {
        R.multiplier = 0;
        R.count = 0;
        return {};
    }
    if (!std::isfinite(evalRealRoots(ws.A, Work{0}) + evalRealRoots(ws.B, Work{0}))) {
        return {SolveFault::real_no_convergence, ws.common.count + 1};
    }
    if (ws.degree > 0 && vanishes_at_zero(ws)) ws.R.append(0);
    while (ws.R.count < ws.degree) {
        Work x = 0;
        if (!find_root(ws, options, x)) return {SolveFault::real_no_convergence, ws.common.count + ws.R.count + 1};
        ws.R.append(x);
    }
    for (int i = 1; i <= ws.common.count; ++i) ws.R.append(ws.common.root(i));
    sort_roots(ws.R);
    copy_roots(ws.R, R);
    return {};
}

template <class Real, class Work>
SolveVerdict createRealRoot(RealRootSetOf<Real>& A, const RealRootSetOf<Real>& B, Real point, RealRootSetOf<Real>& R,
                            RealSumWorkspace<Work>& ws, int rootMatchDigits, const SolveOptions& options) {
    const Real at_a = evalRealRoots(A, point);
    const Real at_b = evalRealRoots(B, point);
    if (at_a == 0 || at_b == 0) return {SolveFault::created_root_missing};
    A.multiplier *= -at_b / at_a;

    RealRootSetOf<Real> roots;
    if (const SolveVerdict verdict = solveRealSum(A, B, roots, ws, options); !verdict.good()) return verdict;
    const Real relative = std::pow(Real{10}, static_cast<Real>(-rootMatchDigits)) * std::fabs(point);
    const Real reach = std::fmax(static_cast<Real>(1e-8), relative);
    for (int i = 1; i <= roots.count; ++i) {
        if (std::fabs(roots.root(i) - point) > reach) continue;
        delete_root(roots, i);
        R = roots;
        return {};
    }
    return {SolveFault::created_root_missing};
}

template <class Real>
Real evalRealRoots(const RealRootSetOf<Real>& set, Real x) {
    Real product = set.multiplier;
    for (int i = 1; i <= set.count; ++i) product *= x - set.root(i);
    return product;
}

namespace {

// Roots within 10 tol of each other are one root of the sum, at their mean.
template <class Work>
void take_out_common_roots(RealSumWorkspace<Work>& ws) {
    ws.common.count = 0;
    for (int i = 1; i <= ws.A.count;) {
        const Work a = ws.A.root(i);
        int j = 1;
        while (j <= ws.B.count && !(std::fabs(a - ws.B.root(j)) <= 10 * ws.tol * std::fabs(a))) ++j;
        if (j > ws.B.count) {
            ++i;
            continue;
        }
        ws.common.append((a + ws.B.root(j)) / 2);
        delete_root(ws.A, i);
        delete_root(ws.B, j);
    }
}

// Degree and leading coefficient. False when the whole sum vanishes.
template <class Work>
bool find_leading_term(RealSumWorkspace<Work>& ws) {
    ws.degree = std::max(ws.A.count, ws.B.count);
    ws.R.multiplier = ws.A.count > ws.B.count ? ws.A.multiplier : ws.B.multiplier;
    if (ws.A.count != ws.B.count) return true;

    ws.R.multiplier = ws.A.multiplier + ws.B.multiplier;
    if (std::fabs(ws.R.multiplier) > 10 * ws.tol * std::fabs(ws.A.multiplier)) return true;
    if (ws.degree == 0) return false;
    // k product (x - r) = k x^n - k (sum of r) x^(n-1) + ...
    Work sum_a = 0;
    Work sum_b = 0;
    for (int i = 1; i <= ws.degree; ++i) sum_a += ws.A.root(i), sum_b += ws.B.root(i);
    ws.R.multiplier = -(ws.A.multiplier * sum_a + ws.B.multiplier * sum_b);
    --ws.degree;
    return ws.R.multiplier != 0;
}

template <class Work>
bool vanishes_at_zero(const RealSumWorkspace<Work>& ws) {
    const Work a = evalRealRoots(ws.A, Work{0});
    return std::fabs(a + evalRealRoots(ws.B, Work{0})) <= 10 * ws.tol * std::fabs(a);
}

// A + B and its derivative at x, and the size of the larger term.
template <class Work>
struct RealSample {
    Work value, derivative, size;
};
template <class Work>
RealSample<Work> sample(const RealSumWorkspace<Work>& ws, Work x) {
    const auto with_derivative = [&](const RealRootSetOf<Work>& set, Work& derivative) {
        Work p = set.multiplier;
        derivative = 0;
        for (int i = 1; i <= set.count; ++i) {
            derivative = derivative * (x - set.root(i)) + p;
            p *= x - set.root(i);
        }
        return p;
    };
    Work da = 0;
    Work db = 0;
    const Work a = with_derivative(ws.A, da);
    const Work b = with_derivative(ws.B, db);
    return {a + b, da + db, std::fmax(std::fabs(a), std::fabs(b))};
}

// The mean of the next roots of A and B, moved off the roots found. Newton's iteration may run in circles between real
// roots: later attempts start nearer to the one or the other set.
constexpr double start_shares[] = {0.5, 0.9, 0.1, 1.5, -0.5};

template <class Work>
Work starting_point(const RealSumWorkspace<Work>& ws, double share) {
    const int next = ws.R.count + 1;
    const auto pick = [&](const RealRootSetOf<Work>& set, const RealRootSetOf<Work>& other) {
        const RealRootSetOf<Work>& from = set.count > 0 ? set : other;
        return from.root(std::min(next, from.count));
    };
    const Work a = pick(ws.A, ws.B);
    const Work b = pick(ws.B, ws.A);
    Work x = a + static_cast<Work>(share) * (b - a);
    if (x == 0) x = static_cast<Work>(0.1);
    const auto on_found_root = [&] {
        for (int i = 1; i <= ws.R.count; ++i) {
            if (std::fabs(x - ws.R.root(i)) <= ws.tol * std::fabs(x)) return true;
        }
        return false;
    };
    for (int turn = 0; turn < 2 * max_real_degree && on_found_root(); ++turn) x *= static_cast<Work>(1.125);
    return x;
}

template <class Work>
bool lands_on_found_root(const RealSumWorkspace<Work>& ws, Work x) {
    for (int i = 1; i <= ws.R.count; ++i) {
        if (std::fabs(x - ws.R.root(i)) < 10 * ws.tol * std::fabs(ws.R.root(i))) return true;
    }
    return false;
}

// Newton's iteration for the next root: delta = 1/(S'/S - sum of 1/(x - r) over the roots found). At the target it
// goes on while the corrections shrink.
template <class Work>
bool newton(const RealSumWorkspace<Work>& ws, const SolveOptions& options, Work& x) {
    const int target = targetDigits<Work>(options, ws.degree);
    Work last = std::numeric_limits<Work>::infinity();
    int digits = 0;
    for (int turn = 1; turn <= 50; ++turn) {
        const RealSample<Work> s = sample(ws, x);
        if (s.value == 0) return true;
        Work poles = 0;
        for (int i = 1; i <= ws.R.count; ++i) poles += 1 / (x - ws.R.root(i));
        Work delta = s.value / (s.derivative - s.value * poles);
        if (!std::isfinite(delta)) return false;
        if (lands_on_found_root(ws, x - delta)) delta /= 2;
        const Work step = std::fabs(delta);
        digits = correctDigits(FunctionSample<Work>{{s.value, 0}, {s.derivative, 0}, s.size, 0}, Complex<Work>{x, 0});
        if (digits >= target && !(step < last / 2)) return true;
        x -= delta;
        last = step;
        digits = std::max(digits, wholeDigits(-std::log10(step / std::fabs(x) + static_cast<Work>(1e-25))));
    }
    return digits >= target;
}

template <class Work>
bool find_root(const RealSumWorkspace<Work>& ws, const SolveOptions& options, Work& x) {
    for (const double share : start_shares) {
        x = starting_point(ws, share);
        if (newton(ws, options, x)) return true;
    }
    return false;
}

template <class From, class To>
void copy_roots(const RealRootSetOf<From>& from, RealRootSetOf<To>& to) {
    to.multiplier = static_cast<To>(from.multiplier);
    to.count = from.count;
    for (int i = 1; i <= from.count; ++i) to.root(i) = static_cast<To>(from.root(i));
}

template <class Work>
void sort_roots(RealRootSetOf<Work>& set) {
    std::sort(set.root.begin(), set.root.begin() + set.count);
}

template <class Work>
void delete_root(RealRootSetOf<Work>& set, int i) {
    for (; i < set.count; ++i) set.root(i) = set.root(i + 1);
    --set.count;
}

}  // namespace

#define KAVREL_SOLVE_REAL_SUM(Real, Work)                                                                              \
    template SolveVerdict solveRealSum(const RealRootSetOf<Real>&, const RealRootSetOf<Real>&, RealRootSetOf<Real>&,   \
                                       RealSumWorkspace<Work>&, const SolveOptions&);                                  \
    template SolveVerdict createRealRoot(RealRootSetOf<Real>&, const RealRootSetOf<Real>&, Real, RealRootSetOf<Real>&, \
                                         RealSumWorkspace<Work>&, int, const SolveOptions&);
KAVREL_SOLVE_REAL_SUM(double, double)
KAVREL_SOLVE_REAL_SUM(double, long double)
KAVREL_SOLVE_REAL_SUM(long double, long double)
#undef KAVREL_SOLVE_REAL_SUM

template double evalRealRoots(const RealRootSetOf<double>&, double);
template long double evalRealRoots(const RealRootSetOf<long double>&, long double);

}  // namespace kavrel
