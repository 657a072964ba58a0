#include "approximation/power_loss.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "approximation/frequency_variable.h"
#include "approximation/hurwitz_factors.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real right_angle = std::numbers::pi_v<Real> / 2;
constexpr double infinite_loss = 1e38;

struct AxisSamples {
    static constexpr int even_steps = 64;
    static constexpr int shares = 4;  // of the way from one sample to the next
    std::array<Real, shares*(7 * max_degree + even_steps + 1)> phi{};
    int count = 0;

    void add(Real value) { phi[static_cast<std::size_t>(count++)] = value; }
};
AxisSamples sample_axis(const XPlane& x);
AxisSamples finer(const AxisSamples& samples);
Real highest_summit(const XPlane& x, const AxisSamples& samples);
Real summit(const XPlane& x, Real left, Real middle, Real right, Real value);

}  // namespace

AxisPoint axisPoint(long double phi) {
    const Real sine = std::sin(phi);
    const Real cosine = phi == right_angle ? Real{0} : std::cos(phi);
    return {-sine * sine, cosine * cosine};
}

Complex<long double> homogeneousProduct(const WideRootSet& set, long double a, AxisPoint at, int degree) {
    Complex<Real> product{set.multiplier, 0};
    for (int i = 1; i <= set.count; ++i) {
        product *= Complex<Real>{(1 - set.re(i)) * at.S + (a - set.re(i)) * at.T, -set.im(i) * (at.S + at.T)};
    }
    for (int i = set.count + 1; i <= degree; ++i) product = (at.S + at.T) * product;
    return product;
}

long double transmission(const XPlane& x, AxisPoint at) {
    const int degree = std::max(x.ES.count, x.QS.count);
    const Real q = homogeneousProduct(x.QS, x.a, at, degree).re;
    const Real e = homogeneousProduct(x.ES, x.a, at, degree).re;
    return q == 0 ? Real{0} : std::fabs(q / e);
}

long double lossOfE(const XPlane& x, long double w) {
    const AxisPoint at = w <= 1 ? AxisPoint{-w * w, 1} : AxisPoint{-1, 1 / (w * w)};
    const Real passed = transmission(x, at);
    return passed > 0 ? -10 * std::log10(passed) : static_cast<Real>(infinite_loss);
}

double lossAt(const FilterSpec& spec, const XPlane& x, double hertz) {
    return static_cast<double>(lossOfE(x, normalised_frequency(spec, x, hertz)));
}

long double largestTransmission(const XPlane& x) {
    const AxisSamples samples = sample_axis(x);
    const Real largest = highest_summit(x, samples);
    // Where poles crowd at an edge of the pass band a summit may have risen and fallen between two samples.
    const Real missed = highest_summit(x, finer(samples));
    constexpr Real rounding = 1e-9L;
    return missed > (1 + rounding) * largest ? missed : largest;
}

namespace {

Real highest_summit(const XPlane& x, const AxisSamples& samples) {
    decltype(samples.phi) value{};
    const auto count = static_cast<std::size_t>(samples.count);
    for (std::size_t i = 0; i < count; ++i) value[i] = transmission(x, axisPoint(samples.phi[i]));
    Real largest = *std::max_element(value.begin(), value.begin() + samples.count);

    // A summit between samples this close rises above them by less than half of its height.
    const Real promising = largest / 2;
    for (std::size_t i = 1; i + 1 < count; ++i) {
        if (value[i] < promising || value[i] < value[i - 1] || value[i] < value[i + 1]) continue;
        largest = std::fmax(largest, summit(x, samples.phi[i - 1], samples.phi[i], samples.phi[i + 1], value[i]));
    }
    return largest;
}

// Even steps, and for each zero s = sigma + j omega of e the frequencies omega + k sigma.
AxisSamples sample_axis(const XPlane& x) {
    AxisSamples samples;
    for (int i = 0; i <= AxisSamples::even_steps; ++i) {
        samples.add(i == AxisSamples::even_steps ? right_angle : right_angle * i / AxisSamples::even_steps);
    }
    for (int i = 1; i <= x.ES.count; ++i) {
        if (x.ES.im(i) < 0) continue;
        const Complex<Real> s = hurwitzRoot(x.ES.root(i), x.a);
        for (const double k : {-3.0, -1.5, -0.6, 0.0, 0.6, 1.5, 3.0}) {
            const Real w = std::fabs(s.im) + static_cast<Real>(k) * s.re;
            if (w > 0) samples.add(std::atan(w));
        }
    }
    std::sort(samples.phi.begin(), samples.phi.begin() + samples.count);
    return samples;
}

AxisSamples finer(const AxisSamples& samples) {
    AxisSamples all;
    for (int i = 0; i + 1 < samples.count; ++i) {
        const Real from = samples.phi[static_cast<std::size_t>(i)], to = samples.phi[static_cast<std::size_t>(i) + 1];
        for (int share = 0; share < AxisSamples::shares; ++share)
            all.add(from + (to - from) * share / AxisSamples::shares);
    }
    all.add(right_angle);
    return all;
}

// Maximum between left and right: parabolic steps through the three best points, golden steps where those do not serve.
Real summit(const XPlane& x, Real left, Real middle, Real right, Real value) {
    constexpr Real golden = 0.3819659948348999L;  // (3 - sqrt 5)/2 to 7 digits: a share of the interval
    constexpr Real relative = 1e-14L;
    constexpr Real absolute = 1e-16L;
    constexpr int turns = 50;

    Real best = middle, second = middle, third = middle;
    Real f_best = value, f_second = value, f_third = value;
    Real step = 0, step_before = 0;
    for (int turn = 1; turn <= turns; ++turn) {
        const Real centre = (left + right) / 2;
        const Real tolerance = relative * std::fabs(best) + absolute;
        if (std::fabs(best - centre) <= 2 * tolerance - (right - left) / 2) break;

        bool parabolic = false;
        if (std::fabs(step_before) > tolerance) {
            const Real r = (best - second) * (f_third - f_best);
            const Real s = (best - third) * (f_second - f_best);
            Real p = (best - third) * s - (best - second) * r;
            Real q = 2 * (s - r);
            if (q > 0) p = -p;
            q = std::fabs(q);
            parabolic =
                std::fabs(p) < std::fabs(q * step_before / 2) && p > q * (left - best) && p < q * (right - best);
            step_before = step;
            if (parabolic) step = p / q;
        }
        if (!parabolic) {
            step_before = best < centre ? right - best : left - best;
            step = golden * step_before;
        }
        const Real trial = best + (std::fabs(step) >= tolerance ? step : std::copysign(tolerance, step));
        const Real f = transmission(x, axisPoint(trial));
        if (f >= f_best) {
            (trial < best ? right : left) = best;
            third = second, f_third = f_second;
            second = best, f_second = f_best;
            best = trial, f_best = f;
        } else {
            (trial < best ? left : right) = trial;
            if (f >= f_second || second == best) {
                third = second, f_third = f_second;
                second = trial, f_second = f;
            } else if (f >= f_third || third == best || third == second) {
                third = trial, f_third = f;
            }
        }
    }
    return f_best;
}

}  // namespace

}  // namespace kavrel
