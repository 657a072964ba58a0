#include "fir/series_zeros.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "numeric/polynomial_roots.h"

namespace kavrel {

namespace {

constexpr Wide settled = 1e-12L;       // relative correction after which the next one is below all rounding
constexpr Wide certain = 1e-15L;       // relative uncertainty that a zero may be left with
constexpr int most_sweeps = 200;       // in 80 bits
constexpr int most_long_sweeps = 100;  // in 121
constexpr int most_newton_steps = 20;
constexpr Wide cluster_width = 10;    // distance of neighbours in a cluster over their uncertainty
constexpr Wide least_radius = 1.02L;  // of the starts of x: on the unit circle all would be real

using Point = Complex<Wide>;

Wide rounded_to_wide(Wide x) { return x; }
Wide rounded_to_wide(const TapReal& x) { return static_cast<Wide>(x); }
template <class Real>
Point rounded_to_wide(const Complex<Real>& z) {
    return {rounded_to_wide(z.re), rounded_to_wide(z.im)};
}
template <class Real>
constexpr Wide rounding = std::is_same_v<Real, Wide> ? 0x1p-64L : 0x1p-121L;

template <class Real>
Complex<Real> inverse(const Complex<Real>& z) {
    const Real divisor = z.re * z.re + z.im * z.im;
    return {z.re / divisor, -z.im / divisor};
}
Wide magnitude(const Point& z) { return std::hypot(z.re, z.im); }

// The series at a point: value and slope, both over the same number, and how far rounding may have moved the value.
template <class Real>
struct SeriesValue {
    Complex<Real> value, slope;
    Wide rounding_error = 0;
};

// The terms of a series in the numbers of one search.
template <class Real>
struct Terms {
    SeriesKind kind = SeriesKind::powers;
    std::vector<Real> terms;
    std::vector<Wide> magnitudes;

    explicit Terms(const TapSeries& series) : kind(series.kind) {
        for (const TapReal& term : series.terms) {
            if constexpr (std::is_same_v<Real, Wide>) {
                terms.push_back(rounded_to_wide(term));
            } else {
                terms.push_back(term);
            }
            magnitudes.push_back(std::fabs(rounded_to_wide(term)));
        }
    }
    [[nodiscard]] SeriesValue<Real> at(const Point& z) const {
        return kind == SeriesKind::powers ? powers_at(z) : cosines_at(z);
    }

private:
    // Horner's rule; outside the unit circle of z^-n times the polynomial.
    [[nodiscard]] SeriesValue<Real> powers_at(const Point& point) const {
        const bool outside = magnitude(point) > 1;
        const Complex<Real> z{Real(point.re), Real(point.im)};
        const Complex<Real> u = outside ? inverse(z) : z;
        const Wide r = outside ? 1 / magnitude(point) : magnitude(point);
        const std::size_t n = terms.size() - 1;
        SeriesValue<Real> sum{};
        for (std::size_t i = 0; i <= n; ++i) {
            const std::size_t k = outside ? i : n - i;
            sum.slope = sum.slope * u + sum.value;
            sum.value = sum.value * u;
            sum.value.re += terms[k];
            sum.rounding_error = sum.rounding_error * r + magnitudes[k];
        }
        if (outside) sum.slope = (Real(static_cast<double>(n)) * sum.value - u * sum.slope) * u;
        sum.rounding_error *=
            4 * rounding<Real> * std::sqrt(static_cast<Wide>(n + 1));  // the rounding of steps is random
        return sum;
    }
    [[nodiscard]] SeriesValue<Real> cosines_at(const Point& point) const {
        const Complex<Real> x{Real(point.re), Real(point.im)};
        const Point two{2, 0};
        const Wide axis = std::max(Wide{1}, (magnitude(point - two) + magnitude(point + two)) / 4);
        const Wide r = axis + std::sqrt(axis * axis - 1);  // |w|, of an ellipse around -2 and 2
        Complex<Real> b{}, b_before{}, slope{}, slope_before{};
        Wide sum = 0;
        for (std::size_t k = terms.size() - 1; k >= 1; --k) {
            const Complex<Real> slope_next = b + x * slope - slope_before;
            Complex<Real> b_next = x * b - b_before;
            b_next.re += terms[k];
            b_before = b, b = b_next, slope_before = slope, slope = slope_next;
            sum = sum * r + magnitudes[k];
        }
        SeriesValue<Real> all;
        all.value = x * b - b_before - b_before;
        all.value.re += terms[0];
        all.slope = b + x * slope - slope_before - slope_before;
        all.rounding_error = 8 * rounding<Real> * static_cast<Wide>(terms.size()) * (sum * r + magnitudes[0]);
        return all;
    }
};

std::vector<Point> starts_of(const TapSeries& series);
template <class Real>
void approach(const TapSeries& series, int sweeps, Watcher& watcher, std::vector<bool> found, SeriesZeros& all);
std::vector<std::size_t> take_cluster(const SeriesZeros& zeros, std::vector<std::size_t>& left);
Point zero_of_derivative(const TapSeries& powers, const SeriesZeros& zeros, const std::vector<std::size_t>& members);
bool is_finite(const std::vector<Point>& points);

}  // namespace

SeriesZeros zeros_of(const TapSeries& series, Watcher& watcher) {
    SeriesZeros zeros{starts_of(series), {}};
    zeros.uncertain.resize(zeros.at.size());
    approach<Wide>(series, most_sweeps, watcher, std::vector<bool>(zeros.at.size(), false), zeros);
    std::vector<bool> found;
    for (const Wide doubt : zeros.uncertain) found.push_back(doubt <= certain);
    approach<TapReal>(series, most_long_sweeps, watcher, found, zeros);
    return watcher.stopped() || !is_finite(zeros.at) ? SeriesZeros() : zeros;
}

SeriesZeros as_multiple_zeros(const TapSeries& powers, const SeriesZeros& zeros) {
    SeriesZeros all = zeros;
    std::vector<std::size_t> left;
    for (std::size_t i = 0; i < zeros.at.size(); ++i) {
        if (zeros.uncertain[i] > certain) left.push_back(i);
    }
    while (!left.empty()) {
        const std::vector<std::size_t> members = take_cluster(zeros, left);
        const Point zero = zero_of_derivative(powers, zeros, members);
        for (const std::size_t i : members) all.at[i] = zero;
    }
    return all;
}

Wide level_at(const TapSeries& cosines, Wide x) {
    Wide sum = 0;
    for (const TapReal& term : cosines.terms) sum += 2 * std::fabs(static_cast<Wide>(term));
    return std::fabs(static_cast<Wide>(Terms<TapReal>(cosines).at({x, 0}).value.re)) / sum;
}

namespace {

std::vector<Point> starts_of(const TapSeries& series) {
    std::vector<double> logs;
    for (const TapReal& term : series.terms) {
        const Wide value = std::fabs(rounded_to_wide(term));
        logs.push_back(value == 0 ? -HUGE_VAL : static_cast<double>(std::log(value)));
    }
    // Of w^n sum c(k) (w^k + w^-k) the zeros outside the circle.
    if (series.kind == SeriesKind::cosines) logs.insert(logs.begin(), logs.rbegin(), logs.rend() - 1);
    std::vector<Point> starts = root_starts(logs);
    if (series.kind == SeriesKind::powers) return starts;
    std::ranges::stable_sort(starts, std::ranges::greater{}, magnitude);
    starts.resize(series.terms.size() - 1);
    for (Point& w : starts) {
        w = std::max(Wide{1}, least_radius / magnitude(w)) * w;
        w += inverse(w);
    }
    return starts;
}

// z - 1/(P'/P - sum 1/(z - others)) for each z that is not found, until it settles or its value is rounding.
template <class Real>
void approach(const TapSeries& series, int sweeps, Watcher& watcher, std::vector<bool> found, SeriesZeros& all) {
    auto& [zeros, uncertain] = all;
    const Terms<Real> terms(series);
    for (int sweep = 1; sweep <= sweeps && std::ranges::find(found, false) != found.end(); ++sweep) {
        for (std::size_t i = 0; i < zeros.size(); ++i) {
            if (found[i]) continue;
            if (!watcher.go_on()) return;
            Point& z = zeros[i];
            const SeriesValue<Real> p = terms.at(z);
            const Point value = rounded_to_wide(p.value), slope = rounded_to_wide(p.slope);
            uncertain[i] = p.rounding_error / magnitude(slope) / magnitude(z);
            found[i] = magnitude(value) <= p.rounding_error;
            if (found[i]) continue;
            Point others{};
            for (std::size_t j = 0; j < zeros.size(); ++j) {
                if (j != i) others += inverse(z - zeros[j]);
            }
            const Point correction = inverse(rounded_to_wide(p.slope * inverse(p.value)) - others);
            z -= correction;
            found[i] = !(magnitude(correction) > settled * magnitude(z));
        }
    }
}

// The first one of those that are left, with all that are near to one of its cluster.
std::vector<std::size_t> take_cluster(const SeriesZeros& zeros, std::vector<std::size_t>& left) {
    std::vector<std::size_t> members = {left.front()};
    left.erase(left.begin());
    for (std::size_t m = 0; m < members.size(); ++m) {
        const auto is_near = [&, i = members[m]](std::size_t j) {
            const Wide doubt = std::max(zeros.uncertain[i], zeros.uncertain[j]);
            return magnitude(zeros.at[i] - zeros.at[j]) <= cluster_width * doubt * magnitude(zeros.at[i]);
        };
        const auto far = std::stable_partition(left.begin(), left.end(), is_near);
        members.insert(members.end(), left.begin(), far);
        left.erase(left.begin(), far);
    }
    return members;
}

// By Newton's method from the mean of the m members, of the sum over k of c(k) binomial(k, m - 1) z^(k - m + 1).
Point zero_of_derivative(const TapSeries& powers, const SeriesZeros& zeros, const std::vector<std::size_t>& members) {
    const std::size_t order = members.size() - 1;
    TapSeries derivative{SeriesKind::powers,
                         {powers.terms.begin() + static_cast<std::ptrdiff_t>(order), powers.terms.end()}};
    TapReal binomial = 1;
    for (std::size_t k = 0; k < derivative.terms.size(); ++k) {
        derivative.terms[k] *= binomial;
        binomial *= TapReal(k + order + 1) / TapReal(k + 1);
    }
    Point mean{};
    for (const std::size_t i : members) mean += zeros.at[i];
    mean = Wide{1} / static_cast<Wide>(members.size()) * mean;
    SeriesZeros one{{mean}, {0}};
    Unwatched unwatched;
    approach<TapReal>(derivative, most_newton_steps, unwatched, {false}, one);
    return one.at.front();
}

bool is_finite(const std::vector<Point>& points) {
    return std::ranges::all_of(points, [](const Point& z) { return std::isfinite(z.re) && std::isfinite(z.im); });
}

}  // namespace

}  // namespace kavrel
