#include "numeric/real_sum_roots.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numeric/root_hunt.h"

namespace kavrel {

namespace {

void take_out_common_roots(RealSumWorkspace& ws);
[[nodiscard]] bool find_leading_term(RealSumWorkspace& ws);
[[nodiscard]] bool vanishes_at_zero(const RealSumWorkspace& ws);
[[nodiscard]] bool find_root(const RealSumWorkspace& ws, const SolveOptions& options, Wide& x);
[[nodiscard]] Wide value_at(const RealRootSet& set, Wide x);
void sort_roots(RealRootSet& set);
void delete_root(RealRootSet& set, int i);

}  // namespace

SolveVerdict solveRealSum(const RealRootSet& A, const RealRootSet& B, RealRootSet& R, RealSumWorkspace& ws,
                          const SolveOptions& options) {
    const int n = std::max(A.count, B.count);
    if (n > max_real_degree) return {SolveFault::real_degree_too_high, n};
    ws.tol = toleranceOf<Wide>(options);
    ws.A = A;
    ws.B = B;
    sort_roots(ws.A);
    sort_roots(ws.B);

    if (ws.A.multiplier == 0 || ws.B.multiplier == 0) {
        ws.R = ws.A.multiplier == 0 ? ws.B : ws.A;
        if (ws.R.multiplier == 0) ws.R.count = 0;
        R = ws.R;
        return {};
    }

    take_out_common_roots(ws);
    ws.R.count = 0;
    if (!find_leading_term(ws)) {
        R.multiplier = 0;
        R.count = 0;
        return {};
    }
    if (!std::isfinite(value_at(ws.A, 0) + value_at(ws.B, 0))) {
        return {SolveFault::real_no_convergence, ws.common.count + 1};
    }
    if (ws.degree > 0 && vanishes_at_zero(ws)) ws.R.append(0);
    while (ws.R.count < ws.degree) {
        Wide x = 0;
        if (!find_root(ws, options, x)) return {SolveFault::real_no_convergence, ws.common.count + ws.R.count + 1};
        ws.R.append(x);
    }
    for (int i = 1; i <= ws.common.count; ++i) ws.R.append(ws.common.root(i));
    sort_roots(ws.R);
    R = ws.R;
    return {};
}

namespace {

// Roots within 10 tol of each other are one root of the sum, at their mean.
void take_out_common_roots(RealSumWorkspace& ws) {
    ws.common.count = 0;
    for (int i = 1; i <= ws.A.count;) {
        const Wide a = ws.A.root(i);
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
bool find_leading_term(RealSumWorkspace& ws) {
    ws.degree = std::max(ws.A.count, ws.B.count);
    ws.R.multiplier = ws.A.count > ws.B.count ? ws.A.multiplier : ws.B.multiplier;
    if (ws.A.count != ws.B.count) return true;

    ws.R.multiplier = ws.A.multiplier + ws.B.multiplier;
    if (std::fabs(ws.R.multiplier) > 10 * ws.tol * std::fabs(ws.A.multiplier)) return true;
    if (ws.degree == 0) return false;
    // k product (x - r) = k x^n - k (sum of r) x^(n-1) + ...
    Wide sum_a = 0;
    Wide sum_b = 0;
    for (int i = 1; i <= ws.degree; ++i) sum_a += ws.A.root(i), sum_b += ws.B.root(i);
    ws.R.multiplier = -(ws.A.multiplier * sum_a + ws.B.multiplier * sum_b);
    --ws.degree;
    return ws.R.multiplier != 0;
}

bool vanishes_at_zero(const RealSumWorkspace& ws) {
    const Wide a = value_at(ws.A, 0);
    return std::fabs(a + value_at(ws.B, 0)) <= 10 * ws.tol * std::fabs(a);
}

Wide value_at(const RealRootSet& set, Wide x) {
    Wide product = set.multiplier;
    for (int i = 1; i <= set.count; ++i) product *= x - set.root(i);
    return product;
}

// A + B and its derivative at x, and the size of the larger term.
struct RealSample {
    Wide value, derivative, size;
};
RealSample sample(const RealSumWorkspace& ws, Wide x) {
    const auto with_derivative = [&](const RealRootSet& set, Wide& derivative) {
        Wide p = set.multiplier;
        derivative = 0;
        for (int i = 1; i <= set.count; ++i) {
            derivative = derivative * (x - set.root(i)) + p;
            p *= x - set.root(i);
        }
        return p;
    };
    Wide da = 0;
    Wide db = 0;
    const Wide a = with_derivative(ws.A, da);
    const Wide b = with_derivative(ws.B, db);
    return {a + b, da + db, std::fmax(std::fabs(a), std::fabs(b))};
}

// The mean of the next roots of A and B, moved off the roots found. Newton's iteration may run in circles between real
// roots: later attempts start nearer to the one or the other set.
constexpr double start_shares[] = {0.5, 0.9, 0.1, 1.5, -0.5};

Wide starting_point(const RealSumWorkspace& ws, double share) {
    const int next = ws.R.count + 1;
    const auto pick = [&](const RealRootSet& set, const RealRootSet& other) {
        const RealRootSet& from = set.count > 0 ? set : other;
        return from.root(std::min(next, from.count));
    };
    const Wide a = pick(ws.A, ws.B);
    const Wide b = pick(ws.B, ws.A);
    Wide x = a + static_cast<Wide>(share) * (b - a);
    if (x == 0) x = static_cast<Wide>(0.1);
    const auto on_found_root = [&] {
        for (int i = 1; i <= ws.R.count; ++i) {
            if (std::fabs(x - ws.R.root(i)) <= ws.tol * std::fabs(x)) return true;
        }
        return false;
    };
    for (int turn = 0; turn < 2 * max_real_degree && on_found_root(); ++turn) x *= static_cast<Wide>(1.125);
    return x;
}

bool lands_on_found_root(const RealSumWorkspace& ws, Wide x) {
    for (int i = 1; i <= ws.R.count; ++i) {
        if (std::fabs(x - ws.R.root(i)) < 10 * ws.tol * std::fabs(ws.R.root(i))) return true;
    }
    return false;
}

// Newton's iteration for the next root: delta = 1/(S'/S - sum of 1/(x - r) over the roots found). At the target it
// goes on while the corrections shrink.
bool newton(const RealSumWorkspace& ws, const SolveOptions& options, Wide& x) {
    const int target = targetDigits<Wide>(options, ws.degree);
    Wide last = std::numeric_limits<Wide>::infinity();
    int digits = 0;
    for (int turn = 1; turn <= 50; ++turn) {
        const RealSample s = sample(ws, x);
        if (s.value == 0) return true;
        Wide poles = 0;
        for (int i = 1; i <= ws.R.count; ++i) poles += 1 / (x - ws.R.root(i));
        Wide delta = s.value / (s.derivative - s.value * poles);
        if (!std::isfinite(delta)) return false;
        if (lands_on_found_root(ws, x - delta)) delta /= 2;
        const Wide step = std::fabs(delta);
        digits = correctDigits(FunctionSample<Wide>{{s.value, 0}, {s.derivative, 0}, s.size, 0}, Complex<Wide>{x, 0});
        if (digits >= target && !(step < last / 2)) return true;
        x -= delta;
        last = step;
        digits = std::max(digits, wholeDigits(-std::log10(step / std::fabs(x) + static_cast<Wide>(1e-25))));
    }
    return digits >= target;
}

bool find_root(const RealSumWorkspace& ws, const SolveOptions& options, Wide& x) {
    for (const double share : start_shares) {
        x = starting_point(ws, share);
        if (newton(ws, options, x)) return true;
    }
    return false;
}

void sort_roots(RealRootSet& set) { std::sort(set.root.begin(), set.root.begin() + set.count); }

void delete_root(RealRootSet& set, int i) {
    for (; i < set.count; ++i) set.root(i) = set.root(i + 1);
    --set.count;
}

}  // namespace

}  // namespace kavrel
