#include "approximation/slope_exchange.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

#include "numeric/guarded.h"
#include "numeric/highest_value.h"
#include "numeric/peak.h"

namespace kavrel {

namespace {

using Real = SlopeTask::Real;
using Z = Complex<Real>;

constexpr Real pi = std::numbers::pi_v<Real>;
constexpr Real endless = std::numeric_limits<Real>::infinity();
constexpr int max_places = max_degree + 1;

// What E has to be: E/T high, 1 + eps2, and low, 1, by turns at so many places, and perhaps a value beside the pass
// band.
struct Alternation {
    int places = 0;
    bool high_first = true;
    bool has_value = false;
    Real value = 0;  // of E at xReal
};

// A polynomial by its values.
struct Interpolant {
    int count = 0;                     // of finite places
    Table<Real, max_places> x;         // [i] place
    Table<Real, max_places> weighted;  // [i] value there over prod (x(i) - x(k))
    Real k = 0;                        // leading coefficient, where it is given
    Real leading = 0;                  // leading coefficient

    void weigh();
    [[nodiscard]] Real at(Real place) const;
    struct Newton {
        Z value, slope;  // over prod (z - x(i))
    };
    [[nodiscard]] Newton near(Z place) const;
};

// Places of the pass band are angles phi from 0 to pi, xi = scale tan(phi/2).
class Exchange {
public:
    Exchange(const SlopeTask& task, const Alternation& wanted) : task_(task), wanted_(wanted), n_(task.Q.count) {}

    // False where places change their order or do not settle.
    [[nodiscard]] bool settle();
    [[nodiscard]] const Interpolant& result() const { return E_; }
    // E by its roots, and whether these have no pole on the frequency axis and make the strip.
    [[nodiscard]] bool find_roots(WideRootSet& roots) const;
    [[nodiscard]] bool is_realised(const WideRootSet& roots) const;

private:
    void start();
    [[nodiscard]] Real start_angle(Real phi) const;
    void interpolate();
    [[nodiscard]] Peak<Real> extreme(int j) const;
    [[nodiscard]] bool in_order() const;
    [[nodiscard]] WideRootSet start_roots() const;
    [[nodiscard]] bool improve_roots(WideRootSet& roots) const;

    [[nodiscard]] bool is_high(int j) const { return (j % 2 == 1) == wanted_.high_first; }
    [[nodiscard]] Real level(int j) const { return is_high(j) ? 1 + task_.eps2 : Real{1}; }
    [[nodiscard]] Real x_of(Real phi) const {
        const Real xi = scale_ * std::tan(phi / 2);
        return -xi * xi;
    }

    const SlopeTask& task_;
    Alternation wanted_;
    int n_;
    Real scale_ = 1;
    Table<Real, max_places> phi_;  // [j] place j, ascending
    Interpolant E_;
};

bool exchange_odd(const SlopeTask& task, WideRootSet& E);
Real value_beside(const SlopeTask& task);
Real curve(const SlopeTask& task, Real x);
Real product_of(const WideRootSet& set, Real x);
bool separate_reals(WideRootSet& roots);
bool has_real_root(const WideRootSet& roots, Real from, Real to);

}  // namespace

bool exchange_slope(const SlopeTask& task, WideRootSet& E) {
    const int n = task.Q.count;
    if (n % 2 == 1) return exchange_odd(task, E);
    Exchange exchange(task, {.places = n + 1});
    return exchange.settle() && exchange.find_roots(E) && exchange.is_realised(E);
}

namespace {

// The value beside the pass band by bisection, until no real root is on the frequency axis: E is below 0 in the lower
// stopband, as in the pass band, and above it in the upper one.
bool exchange_odd(const SlopeTask& task, WideRootSet& E) {
    const int n = task.Q.count;
    constexpr int halvings = 20;
    int spare_values = 4;
    Real bound[2];
    for (const bool high_first : {false, true}) {
        Exchange exchange(task, {.places = n + 1, .high_first = high_first});
        if (!exchange.settle()) return false;
        bound[high_first] = exchange.result().at(task.xReal);
    }
    Real least = std::fmin(bound[0], bound[1]), most = std::fmax(bound[0], bound[1]);
    Real value = value_beside(task);
    for (int halving = 0; halving <= halvings; ++halving) {
        if (!(value > least && value < most)) value = (least + most) / 2;
        Exchange exchange(task, {.places = n, .has_value = true, .value = value});
        const bool found = exchange.settle() && exchange.find_roots(E);
        const bool too_high = found && has_real_root(E, 0, task.a), too_low = found && has_real_root(E, 1, endless);
        if (too_high && too_low) return false;
        if (too_high || too_low) {
            (too_high ? most : least) = value;
            value = (least + most) / 2;
        } else if (found && exchange.is_realised(E)) {
            return true;
        } else if (--spare_values < 0) {
            return false;
        } else {
            value = (value + most) / 2;  // E/T has one extreme more, which another value may keep in the strip
        }
    }
    return false;
}

bool Exchange::settle() {
    constexpr int passes = 20;
    constexpr Real settled = 1e-9L, rounding = 1e-16L;
    start();
    for (int pass = 1; pass <= passes && in_order(); ++pass) {
        interpolate();
        Real off = 0;
        Table<Real, max_places> next;
        for (int j = 1; j <= wanted_.places; ++j) {
            const Peak<Real> found = extreme(j);
            off = std::fmax(off, std::fabs(found.value - level(j)));
            next(j) = found.at;
        }
        if (off <= settled * task_.eps2 + rounding) return true;
        phi_ = next;
    }
    return false;
}

void Exchange::start() {
    const int last = wanted_.places;
    scale_ = std::sqrt(std::sqrt(task_.a));
    phi_(last) = pi;
    phi_(1) = 0;
    for (int j = 2; j < last; ++j) {
        Real low = phi_(j - 1), high = pi;
        for (int halving = 1; halving <= 60; ++halving) {
            const Real middle = (low + high) / 2;
            (start_angle(middle) < pi / 2 * (j - 1) ? low : high) = middle;
        }
        phi_(j) = (low + high) / 2;
    }
    // The middle place in the middle.
    const Real shift = std::tan(phi_((last + 1) / 2) / 2);
    if (!(shift > 0)) return;
    for (int j = 2; j < last; ++j) phi_(j) = 2 * std::atan(std::tan(phi_(j) / 2) / shift);
    scale_ *= shift;
}

Real Exchange::start_angle(Real phi) const {
    const Real xi = scale_ * std::tan(phi / 2);
    Real theta = task_.units * (std::atan(xi / std::sqrt(task_.a)) - std::atan(xi));
    for (int i = 1; i <= n_; ++i) {
        const Z m = csqrt(task_.Q.re(i), task_.Q.im(i));
        theta += std::atan2(xi + m.im, m.re);
    }
    return wanted_.has_value ? theta - std::atan(xi / std::sqrt(task_.xReal)) : theta;
}

bool Exchange::in_order() const {
    for (int j = 2; j <= wanted_.places; ++j) {
        if (!(phi_(j) > phi_(j - 1))) return false;
    }
    return true;
}

void Exchange::interpolate() {
    E_ = {};
    for (int j = 1; j <= wanted_.places; ++j) {
        if (phi_(j) == pi) {
            E_.k = level(j);
            continue;
        }
        E_.x(++E_.count) = x_of(phi_(j));
        E_.weighted(E_.count) = level(j) * curve(task_, E_.x(E_.count));
    }
    if (wanted_.has_value) {
        E_.x(++E_.count) = task_.xReal;
        E_.weighted(E_.count) = wanted_.value;
    }
    E_.weigh();
}

// Of E/T, the highest or lowest one that is nearer to place j than to its neighbours.
Peak<Real> Exchange::extreme(int j) const {
    constexpr int samples = 8, sections = 20;
    const Real from = j == 1 ? Real{0} : (phi_(j - 1) + phi_(j)) / 2;
    const Real to = j == wanted_.places ? pi : (phi_(j) + phi_(j + 1)) / 2;
    const Real sign = is_high(j) ? 1 : -1;
    const auto ratio = [&](Real phi) {
        if (phi == pi) return sign * E_.leading;
        if (phi == phi_(j)) return sign * level(j);
        const Real x = x_of(phi);
        return sign * E_.at(x) / curve(task_, x);
    };
    Peak<Real> best{from, ratio(from)};
    int place = 0;
    const auto sample = [&](int i) { return i == samples ? to : from + (to - from) * i / samples; };
    for (int i = 1; i <= samples; ++i) {
        if (const Real value = ratio(sample(i)); value > best.value) best = {sample(i), value}, place = i;
    }
    const auto inner =
        peak_between(sample(std::max(place - 1, 0)), sample(std::min(place + 1, samples)), sections, ratio);
    if (inner.value > best.value) best = inner;
    return {best.at, sign * best.value};
}

bool Exchange::find_roots(WideRootSet& roots) const {
    roots = start_roots();
    return improve_roots(roots) && separate_reals(roots);
}

// 1 + eps2 cos^2 theta = 0 at theta = j pi/2 +- j arsinh(1/eps) about each low place.
WideRootSet Exchange::start_roots() const {
    constexpr Real farthest = 3;
    WideRootSet roots;
    roots.multiplier = E_.leading;
    const Real height = std::asinh(1 / std::sqrt(task_.eps2));
    for (int j = 2; j < wanted_.places; j += 2) {
        const Real v = std::fmin(height * (phi_(j + 1) - phi_(j - 1)) / pi, farthest);
        const Z cosine{std::cos(phi_(j)) * std::cosh(v), -std::sin(phi_(j)) * std::sinh(v)};
        const Z x = (-scale_ * scale_) * cdiv(Z{1, 0} - cosine, Z{1, 0} + cosine);
        roots.append(x);
        roots.append(conjugate(x));
    }
    if (n_ % 2 == 1) roots.append({task_.xReal, 0});
    return roots;
}

// Source: O. Aberth, "Iteration methods for finding all zeros of a polynomial simultaneously", Math. Comp. 27 (1973).
bool Exchange::improve_roots(WideRootSet& roots) const {
    constexpr int turns = 200;
    constexpr Real small = 1e-9L, no_less = 0.25L, rounding = 1e-17L;
    Real before = 1;
    for (int turn = 1; turn <= turns; ++turn) {
        Real largest = 0;
        for (int i = 1; i <= n_; ++i) {
            const Z x = roots.root(i);
            const auto e = E_.near(x);
            if (e.value == Z{}) continue;
            const Z newton = cdiv(e.value, e.slope);
            Z others{};
            for (int k = 1; k <= n_; ++k) {
                const Z apart = x - roots.root(k);
                if (k != i && apart != Z{}) others += cinv(apart.re, apart.im);
            }
            const Z step = cdiv(newton, Z{1, 0} - newton * others);
            roots.set_root(i, x - step);
            largest = std::fmax(largest, largest_part(step) / largest_part(x));
        }
        if (largest <= rounding || (largest <= small && largest > no_less * before)) return true;
        before = largest;
    }
    return false;
}

bool Exchange::is_realised(const WideRootSet& roots) const {
    if (has_real_root(roots, -endless, task_.a) || has_real_root(roots, 1, endless)) return false;
    constexpr int steps = 12;  // from place to place
    std::vector<double> samples;
    for (int j = 0; j <= wanted_.places; ++j) {
        const Real from = j == 0 ? Real{0} : phi_(j), to = j == wanted_.places ? pi : phi_(j + 1);
        for (int i = 0; i < steps && from < to; ++i)
            samples.push_back(static_cast<double>(from + (to - from) * i / steps));
    }
    // E/T - 1; pi as a double lies below pi.
    samples.push_back(static_cast<double>(pi));
    const auto above = [&](double phi) {
        return static_cast<double>(product_of(roots, x_of(phi)) / curve(task_, x_of(phi)) - 1);
    };
    const double eps2 = static_cast<double>(task_.eps2), tolerance = 1e-6 * eps2 + 1e-13;
    return highest_value(samples, above).value <= eps2 + tolerance &&
           highest_value(samples, [&](double phi) { return -above(phi); }).value <= tolerance;
}

void Interpolant::weigh() {
    leading = k;
    for (int i = 1; i <= count; ++i) {
        Real apart = 1;
        for (int other = 1; other <= count; ++other) {
            if (other != i) apart *= x(i) - x(other);
        }
        weighted(i) /= apart;
        if (k == 0) leading += weighted(i);
    }
}

Real Interpolant::at(Real place) const {
    Real l = 1, S = k;
    for (int i = 1; i <= count; ++i) {
        l *= place - x(i);
        S += weighted(i) / (place - x(i));
    }
    return l * S;
}

Interpolant::Newton Interpolant::near(Z place) const {
    Z logarithmic{}, S{k, 0}, dS{};
    for (int i = 1; i <= count; ++i) {
        const Z inverse = cinv(place.re - x(i), place.im);
        const Z term = weighted(i) * inverse;
        logarithmic += inverse;
        S += term;
        dS -= term * inverse;
    }
    return {S, logarithmic * S + dS};
}

// w^2 is negative there: of w^(2 u) the real part.
Real value_beside(const SlopeTask& task) {
    const Real w2 = (task.xReal - task.a) / (1 - task.xReal);
    return product_of(task.Q, task.xReal) * std::pow(w2, task.units) * std::cos(pi * task.units);
}

// T.
Real curve(const SlopeTask& task, Real x) {
    const Real w2 = (task.a - x) / (1 - x);
    const Real f2 = task.tan_edge == 0
                        ? w2
                        : std::pow(std::atan(std::sqrt(w2) * task.tan_edge) / std::atan(task.tan_edge), Real{2});
    return product_of(task.Q, x) * std::pow(f2, task.power);
}

Real product_of(const WideRootSet& set, Real x) {
    Real product = set.multiplier;
    for (int i = 1; i <= set.count; ++i) {
        const Real apart = x - set.re(i);
        if (set.im(i) == 0) product *= apart;
        if (set.im(i) > 0) product *= apart * apart + set.im(i) * set.im(i);
    }
    return product;
}

// Roots next to the real axis are put on it, others made conjugate. False where these do not pair.
bool separate_reals(WideRootSet& roots) {
    constexpr Real next_to_axis = 1e-11L;
    WideRootSet found;
    found.multiplier = roots.multiplier;
    int unpaired = 0;
    for (int i = 1; i <= roots.count; ++i) {
        const Z x = roots.root(i);
        if (std::fabs(x.im) <= next_to_axis * std::fabs(x.re)) {
            found.append({x.re, 0});
        } else if (x.im > 0) {
            found.append(x);
            found.append(conjugate(x));
            ++unpaired;
        } else {
            --unpaired;
        }
    }
    roots = found;
    return unpaired == 0;
}

bool has_real_root(const WideRootSet& roots, Real from, Real to) {
    for (int i = 1; i <= roots.count; ++i) {
        if (roots.im(i) == 0 && roots.re(i) >= from && roots.re(i) <= to) return true;
    }
    return false;
}

}  // namespace

}  // namespace kavrel
