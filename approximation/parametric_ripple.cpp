#include "approximation/parametric_ripple.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <Eigen/LU>

#include "numeric/peak.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real near_enough = 1e-6L;  // of ln G above 0: such a function stays as it is
constexpr Real settled = 1e-11L;     // of ln G: one step more ends in rounding
constexpr int most_zeros = max_degree / 2;
constexpr Real infinity = std::numeric_limits<Real>::infinity();

// [i] eta_i^2, ascending, and d.
struct Zeros {
    int k = 0;
    Table<Real, most_zeros> square;
    Real d = 0;
};

// d is held, or takes the bound of an edge.
enum class Loose { held, bound_at_zero, bound_at_infinity };
struct Problem {
    const WideRootSet& Q;
    int weight = 0;
    Loose loose = Loose::held;
};

// [j + 1] place and value of the largest ln G between eta_j and eta_(j+1): j = 0 from t = 0 on, j = k up to infinity.
struct Maxima {
    Table<Real, most_zeros + 1> t;
    Table<Real, most_zeros + 1> ln_g;
};

Maxima maxima_of(const Problem& problem, const Zeros& zeros);
Real largest_of(const Maxima& maxima, int k);
bool settle(const Problem& problem, Zeros& zeros);
Loose looseness(const Problem& problem, const Zeros& zeros);

}  // namespace

EdgeSums edge_sums(const WideRootSet& Q) {
    EdgeSums sums;
    for (int i = 1; i <= Q.count; ++i) {
        const Real re = Q.re(i), im = Q.im(i);
        sums.reciprocal += re / (re * re + im * im);
        sums.direct += re;
    }
    return sums;
}

bool equaliseRipple(const WideRootSet& Q, Real a, int weight, WideRootSet& zeros, Real& d) {
    Zeros found{.k = zeros.count, .square = {}, .d = d};
    for (int i = 1; i <= found.k; ++i) found.square(i) = -zeros.re(i);
    Problem problem{Q, weight};
    if (largest_of(maxima_of(problem, found), found.k) <= near_enough) return true;

    if (!settle(problem, found)) return false;
    problem.loose = looseness(problem, found);
    if (problem.loose != Loose::held && !settle(problem, found)) return false;
    if (largest_of(maxima_of(problem, found), found.k) > settled || !(found.d > a && found.d < 1)) return false;

    for (int i = 1; i <= found.k; ++i) zeros.re(i) = -found.square(i);
    d = found.d;
    return true;
}

namespace {

using Matrix = Eigen::Matrix<Real, Eigen::Dynamic, Eigen::Dynamic, Eigen::ColMajor, most_zeros + 1, most_zeros + 1>;
using Vector = Eigen::Matrix<Real, Eigen::Dynamic, 1, Eigen::ColMajor, most_zeros + 1, 1>;

// The divisors are taken in turns with the factors, so that nothing overflows.
Real ln_g(const Problem& problem, const Zeros& zeros, Real t) {
    if (t == infinity) return 0;
    Real g_squared = 1;
    for (int j = 1; j <= problem.weight; ++j) g_squared *= (t + zeros.d) * (t + zeros.d);
    for (int i = 1; i <= problem.Q.count; ++i) {
        const Real re = t + problem.Q.re(i), im = problem.Q.im(i);
        g_squared /= re * re + im * im;
        if (i > zeros.k) continue;
        const Real off = (t - zeros.square(i)) * (t - zeros.square(i));
        g_squared *= off * off;
    }
    return std::log(g_squared) / 2;
}

// A quadruplet of Q near the band makes two maxima between two zeros: hence the samples.
Maxima maxima_of(const Problem& problem, const Zeros& zeros) {
    constexpr int samples = 24, golden_steps = 36;
    Maxima maxima;
    for (int j = 0; j <= zeros.k; ++j) {
        // s from 0 to 1 is the way from the edge to its zero, or from one zero to the next.
        const auto place = [&](Real s) {
            if (j == 0) return s * s * zeros.square(1);
            if (j == zeros.k) return s > 0 ? zeros.square(j) / (s * s) : infinity;
            return zeros.square(j) * std::pow(zeros.square(j + 1) / zeros.square(j), s);
        };
        const auto value = [&](Real s) { return ln_g(problem, zeros, place(s)); };
        Peak<Real> highest{0, -infinity};
        for (int i = j == 0 || j == zeros.k ? 0 : 1; i < samples; ++i) {
            const Real s = static_cast<Real>(i) / samples;
            if (const Real here = value(s); here > highest.value) highest = {s, here};
        }
        constexpr Real apart = Real{1} / samples;
        const Real from = std::max<Real>(0, highest.at - apart), to = std::min<Real>(1, highest.at + apart);
        const Peak<Real> inner = peak_between(from, to, golden_steps, value);
        if (inner.value > highest.value) highest = inner;
        maxima.t(j + 1) = place(highest.at);
        maxima.ln_g(j + 1) = highest.value;
    }
    return maxima;
}

Real largest_of(const Maxima& maxima, int k) {
    return *std::max_element(maxima.ln_g.begin(), maxima.ln_g.begin() + k + 1);
}

// d times the one, over w, is at least 1 where t = 0 is a maximum; d w over the other at most 1 where infinity is one.
EdgeSums edge_sums(const Problem& problem, const Zeros& zeros) {
    EdgeSums sums = edge_sums(problem.Q);
    for (int i = 1; i <= zeros.k; ++i) {
        sums.reciprocal += 2 / zeros.square(i);
        sums.direct += 2 * zeros.square(i);
    }
    return sums;
}

Loose looseness(const Problem& problem, const Zeros& zeros) {
    const EdgeSums sums = edge_sums(problem, zeros);
    if (zeros.d * sums.reciprocal < problem.weight) return Loose::bound_at_zero;
    if (zeros.d * problem.weight > sums.direct) return Loose::bound_at_infinity;
    return Loose::held;
}

// The equations at given places, linear in ln eta_i^2 and in one unknown more. d held: ln G = ln h at all of them, h
// being that unknown. Otherwise it is ln d: ln G = 0 at all but infinity, where it always is, and the bound in the last
// row.
struct Equations {
    Matrix slopes;
    Vector wanted;
    Real miss = 0;  // how far they are from being kept
};
Equations equations_at(const Maxima& at, const Problem& problem, const Zeros& zeros) {
    const int k = zeros.k;
    const bool held = problem.loose == Loose::held;
    Equations e{Matrix(k + 1, k + 1), Vector(k + 1)};
    for (int j = 0; j <= k; ++j) {
        const Real t = at.t(j + 1);
        for (int i = 1; i <= k; ++i) e.slopes(j, i - 1) = 2 * zeros.square(i) / (zeros.square(i) - t);
        e.slopes(j, k) = held ? -1 : problem.weight * zeros.d / (zeros.d + t);
        e.wanted(j) = -ln_g(problem, zeros, t);
    }
    if (held) {
        e.miss = e.wanted.maxCoeff() - e.wanted.minCoeff();
        return e;
    }
    const EdgeSums sums = edge_sums(problem, zeros);
    const bool low = problem.loose == Loose::bound_at_zero;
    for (int i = 1; i <= k; ++i) {
        e.slopes(k, i - 1) = low ? -2 / zeros.square(i) / sums.reciprocal : -2 * zeros.square(i) / sums.direct;
    }
    e.slopes(k, k) = 1;
    e.wanted(k) = -std::log(low ? zeros.d * sums.reciprocal / problem.weight : zeros.d * problem.weight / sums.direct);
    e.miss = e.wanted.cwiseAbs().maxCoeff();
    return e;
}

// The part of a step in which no zero goes farther than 0.4 of the way to the place between it and its neighbour.
Real part_of(const Vector& step, const Maxima& at, const Zeros& zeros) {
    constexpr Real farthest = 0.4L;
    Real part = 1;
    for (int i = 1; i <= zeros.k; ++i) {
        const Real asked = step(i - 1);
        const Real way = asked > 0 ? std::log(at.t(i + 1) / zeros.square(i)) : std::log(zeros.square(i) / at.t(i));
        if (std::fabs(asked) * part > farthest * way) part = farthest * way / std::fabs(asked);
    }
    return part;
}

Zeros moved(const Zeros& zeros, const Vector& step, bool held) {
    Zeros next = zeros;
    for (int i = 1; i <= zeros.k; ++i) next.square(i) *= std::exp(step(i - 1));
    if (!held) next.d *= std::exp(step(zeros.k));
    return next;
}

// Newton's steps at given places, each halved until it is one forward.
void solve_at(const Maxima& at, const Problem& problem, Zeros& zeros) {
    constexpr int turns = 50, halvings = 30;
    constexpr Real rounding = 1e-17L;
    Equations e = equations_at(at, problem, zeros);
    for (int turn = 1; turn <= turns && e.miss > rounding; ++turn) {
        Vector step = e.slopes.partialPivLu().solve(e.wanted);
        step *= part_of(step, at, zeros);
        bool forward = false;
        for (int halving = 0; halving <= halvings && !forward; ++halving, step /= 2) {
            const Zeros next = moved(zeros, step, problem.loose == Loose::held);
            const Equations there = equations_at(at, problem, next);
            forward = there.miss < e.miss;
            if (forward) zeros = next, e = there;
        }
        if (!forward) return;
    }
}

// One exchange more than it takes to settle ends in rounding. With d free the first places are those of d held,
// settled.
bool settle(const Problem& problem, Zeros& zeros) {
    constexpr int turns = 40;
    for (int turn = 1; turn <= turns; ++turn) {
        Maxima at = maxima_of(problem, zeros);
        const auto [least, most] = std::minmax_element(at.ln_g.begin(), at.ln_g.begin() + zeros.k + 1);
        const bool last = turn > 1 && *most - *least <= settled;
        if (problem.loose != Loose::held) at.t(1) = 0;
        solve_at(at, problem, zeros);
        if (last) return true;
    }
    return false;
}

}  // namespace

}  // namespace kavrel
