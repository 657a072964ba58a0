#include "numeric/polynomial_roots.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

using Number = Complex<LongReal>;

constexpr double turned_by = 0.7;        // rad, so that no start is on the axis of symmetry
constexpr long double is_real = 1e-25L;  // relative imaginary part that a real root may be left with

// Relative correction at which a root is found, and how often all are corrected.
struct Patience {
    long double settled;
    int sweeps;
};
constexpr Patience rough = {1e-12L, 40};
constexpr Patience full = {1e-60L, 400};

std::vector<Complex<Wide>> starting_points(const std::vector<LongReal>& coefficients);
template <class Real>
bool approach(const std::vector<Real>& coefficients, Patience patience, std::vector<Complex<Real>>& z);

}  // namespace

bool polynomial_roots(const std::vector<LongReal>& coefficients, std::vector<Number>& roots) {
    roots.clear();
    if (coefficients.size() < 2) return true;
    const auto start = starting_points(coefficients);
    auto near = start;
    std::vector<Wide> short_coefficients;
    for (const LongReal& c : coefficients) short_coefficients.push_back(rounded(LongReal(c / coefficients.front())));
    approach(short_coefficients, rough, near);
    // Settled or not, the long numbers have but a few steps to go from there.
    const auto is_number = [](const Complex<Wide>& point) {
        return std::isfinite(point.re) && std::isfinite(point.im);
    };
    std::vector<Number> z;
    for (const auto& point : std::ranges::all_of(near, is_number) ? near : start) {
        z.push_back({LongReal(point.re), LongReal(point.im)});
    }
    if (!approach(coefficients, full, z)) return false;

    std::vector<Number> pairs;
    for (const Number& root : z) {
        if (abs(root.im) <= LongReal(is_real) * abs(root.re)) {
            roots.push_back({root.re, 0});
        } else if (root.im > 0) {
            pairs.push_back(root);
        }
    }
    const auto square = [](const Number& number) -> LongReal { return number.re * number.re + number.im * number.im; };
    std::ranges::sort(roots, [](const Number& a, const Number& b) { return a.re < b.re; });
    std::ranges::sort(pairs, [&](const Number& a, const Number& b) { return square(a) < square(b); });
    const bool complete = roots.size() + 2 * pairs.size() == z.size();
    roots.insert(roots.end(), pairs.begin(), pairs.end());
    return complete;
}

std::vector<Complex<Wide>> root_starts(const std::vector<double>& logs) {
    std::vector<std::size_t> hull;
    const auto slope = [&](std::size_t from, std::size_t to) {
        return (logs[to] - logs[from]) / static_cast<double>(to - from);
    };
    for (std::size_t power = 0; power < logs.size(); ++power) {
        if (logs[power] == -HUGE_VAL) continue;
        while (hull.size() >= 2 && slope(hull[hull.size() - 2], hull.back()) <= slope(hull.back(), power)) {
            hull.pop_back();
        }
        hull.push_back(power);
    }
    std::vector<Complex<Wide>> points;
    for (std::size_t edge = 1; edge < hull.size(); ++edge) {
        const Wide radius = std::exp(Wide{-slope(hull[edge - 1], hull[edge])});
        const std::size_t width = hull[edge] - hull[edge - 1];
        for (std::size_t k = 0; k < width; ++k) {
            const Wide angle = 2 * std::numbers::pi_v<Wide> * static_cast<Wide>(k) / static_cast<Wide>(width) +
                               turned_by + static_cast<Wide>(edge);
            points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        }
    }
    return points;
}

namespace {

std::vector<Complex<Wide>> starting_points(const std::vector<LongReal>& coefficients) {
    std::vector<double> logs;
    for (auto c = coefficients.rbegin(); c != coefficients.rend(); ++c) {
        logs.push_back(*c == 0 ? -HUGE_VAL : static_cast<double>(log(abs(*c))));
    }
    return root_starts(logs);
}

template <class Real>
Complex<Real> inverse(const Complex<Real>& z) {
    const Real divisor = z.re * z.re + z.im * z.im;
    return {z.re / divisor, -z.im / divisor};
}

// P/P' by Horner's rule.
template <class Real>
Complex<Real> newton_step(const std::vector<Real>& coefficients, const Complex<Real>& z) {
    Complex<Real> value{0, 0}, derivative{0, 0};
    for (const Real& coefficient : coefficients) {
        derivative = derivative * z + value;
        value = value * z + Complex<Real>{coefficient, 0};
    }
    if (value.re == 0 && value.im == 0) return {0, 0};
    return value * inverse(derivative);
}

// z - N/(1 - N sum 1/(z - others)), N = P/P', for each z until it settles.
template <class Real>
bool approach(const std::vector<Real>& coefficients, Patience patience, std::vector<Complex<Real>>& z) {
    const auto square = [](const Complex<Real>& number) -> Real {
        return number.re * number.re + number.im * number.im;
    };
    const Real close = Real(patience.settled) * Real(patience.settled);
    std::vector<bool> found(z.size(), false);
    for (int sweep = 1; std::ranges::find(found, false) != found.end(); ++sweep) {
        if (sweep > patience.sweeps) return false;
        for (std::size_t i = 0; i < z.size(); ++i) {
            if (found[i]) continue;
            const Complex<Real> step = newton_step(coefficients, z[i]);
            Complex<Real> others{0, 0};
            for (std::size_t j = 0; j < z.size(); ++j) {
                if (j != i) others += inverse(z[i] - z[j]);
            }
            const Complex<Real> correction = step * inverse(Complex<Real>{1, 0} - step * others);
            const Real moved = square(correction);
            if (!(moved == moved)) return false;
            z[i] -= correction;
            found[i] = moved <= close * square(z[i]);
        }
    }
    return true;
}

}  // namespace

}  // namespace kavrel
