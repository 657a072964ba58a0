#include "numeric/polynomial_roots.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

using Number = Complex<LongReal>;

constexpr int sweeps = 400;
constexpr long double settled = 1e-60L;  // relative correction at which a root is found
constexpr long double is_real = 1e-25L;  // relative imaginary part that a real root may be left with
constexpr double turned_by = 0.7;        // rad, so that no start is on the axis of symmetry

std::vector<Number> starting_points(const std::vector<LongReal>& coefficients);
Number newton_step(const std::vector<LongReal>& coefficients, const Number& z);
Number inverse(const Number& z);
LongReal square(const Number& z) { return z.re * z.re + z.im * z.im; }

}  // namespace

bool polynomial_roots(const std::vector<LongReal>& coefficients, std::vector<Number>& roots) {
    roots.clear();
    if (coefficients.size() < 2) return true;
    std::vector<Number> z = starting_points(coefficients);
    std::vector<bool> found(z.size(), false);
    for (int sweep = 1; std::ranges::find(found, false) != found.end(); ++sweep) {
        if (sweep > sweeps) return false;
        for (std::size_t i = 0; i < z.size(); ++i) {
            if (found[i]) continue;
            // z - N/(1 - N sum 1/(z - others)), N = P/P'
            const Number step = newton_step(coefficients, z[i]);
            Number others{0, 0};
            for (std::size_t j = 0; j < z.size(); ++j) {
                if (j != i) others += inverse(z[i] - z[j]);
            }
            const Number correction = step * inverse(Number{1, 0} - step * others);
            if (!is_finite(correction.re) || !is_finite(correction.im)) return false;
            z[i] -= correction;
            found[i] = square(correction) <= LongReal(settled) * LongReal(settled) * square(z[i]);
        }
    }
    std::vector<Number> pairs;
    for (const Number& root : z) {
        if (abs(root.im) <= LongReal(is_real) * abs(root.re)) {
            roots.push_back({root.re, 0});
        } else if (root.im > 0) {
            pairs.push_back(root);
        }
    }
    std::ranges::sort(roots, [](const Number& a, const Number& b) { return a.re < b.re; });
    std::ranges::sort(pairs, [](const Number& a, const Number& b) { return square(a) < square(b); });
    const bool complete = roots.size() + 2 * pairs.size() == z.size();
    roots.insert(roots.end(), pairs.begin(), pairs.end());
    return complete;
}

namespace {

// For each edge of the upper convex hull of (i, log |coefficient of z^i|) as many points as it is wide, on the circle
// of its slope.
std::vector<Number> starting_points(const std::vector<LongReal>& coefficients) {
    const auto degree = coefficients.size() - 1;
    const auto magnitude = [&](std::size_t power) {
        const LongReal& value = coefficients[degree - power];
        return value == 0 ? -HUGE_VAL : static_cast<double>(log(abs(value)));
    };
    std::vector<std::size_t> hull;
    const auto slope = [&](std::size_t from, std::size_t to) {
        return (magnitude(to) - magnitude(from)) / static_cast<double>(to - from);
    };
    for (std::size_t power = 0; power <= degree; ++power) {
        if (magnitude(power) == -HUGE_VAL) continue;
        while (hull.size() >= 2 && slope(hull[hull.size() - 2], hull.back()) <= slope(hull.back(), power)) {
            hull.pop_back();
        }
        hull.push_back(power);
    }
    std::vector<Number> points;
    for (std::size_t edge = 1; edge < hull.size(); ++edge) {
        const LongReal radius = exp(LongReal(-slope(hull[edge - 1], hull[edge])));
        const std::size_t width = hull[edge] - hull[edge - 1];
        for (std::size_t k = 0; k < width; ++k) {
            const double angle = 2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(width) +
                                 turned_by + static_cast<double>(edge);
            points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        }
    }
    return points;
}

// P/P' by Horner's rule.
Number newton_step(const std::vector<LongReal>& coefficients, const Number& z) {
    Number value{0, 0}, derivative{0, 0};
    for (const LongReal& coefficient : coefficients) {
        derivative = derivative * z + value;
        value = value * z + Number{coefficient, 0};
    }
    if (square(value) == 0) return {0, 0};
    return value * inverse(derivative);
}

Number inverse(const Number& z) {
    const LongReal divisor = square(z);
    return {z.re / divisor, -z.im / divisor};
}

}  // namespace

}  // namespace kavrel
