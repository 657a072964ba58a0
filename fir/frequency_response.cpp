#include "fir/frequency_response.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <type_traits>

#include "numeric/complex.h"
#include "numeric/lanes.h"

namespace kavrel {

namespace {

constexpr std::size_t block = 32;         // samples from one exact turn to the next
constexpr double nothing_left = 0x1p-46;  // of the sum of magnitudes: within the rounding of the terms
constexpr double decibel_of_octave = 6.0205999132796239;

// The terms of both series from the middle outward, over a power of two. Weighted ones are those of the derivatives.
struct Series {
    std::vector<double> even, odd, weighted_even, weighted_odd;  // odd is empty in an even function, even in an odd one
    std::size_t terms = 0;
    double offset = 0;  // m of the first term: 0 or 1/2
    double middle = 0;  // M
    double bound = 0;   // sum of magnitudes
    int exponent = 0;
};
Series series_of(const FirFilter& filter, int n);

// C, S and their derivatives by theta.
template <class Real>
struct Sums {
    Real c{}, s{}, dc{}, ds{};
};
using Amplitude = Sums<double>;

template <std::size_t places>
void respond(const Series& series, const double* turns, Amplitude* answers);
ResponsePoint point_of(const Series& series, const Amplitude& at, double turns);
ResponsePoint on_zero(const Series& series, double turns);

}  // namespace

std::vector<ResponsePoint> fir_frequency_response(const FirFilter& filter, int n, std::span<const double> hertz) {
    const Series series = series_of(filter, n);
    const double fs = filter.sampling_frequency;
    std::vector<ResponsePoint> points;
    constexpr std::size_t places = 2 * LanesOf<double>::count;
    for (std::size_t i = 0; i < hertz.size(); i += places) {
        double turns[places];
        Amplitude answers[places];
        for (std::size_t j = 0; j < places; ++j) {
            turns[j] = std::remainder(hertz[std::min(i + j, hertz.size() - 1)] / fs, 1.0);
        }
        respond<places>(series, turns, answers);
        for (std::size_t j = 0; j < places && i + j < hertz.size(); ++j) {
            const bool is_zero = std::hypot(answers[j].c, answers[j].s) <= nothing_left * series.bound;
            points.push_back(is_zero ? on_zero(series, turns[j]) : point_of(series, answers[j], turns[j]));
            points.back().delay /= fs;
        }
    }
    return points;
}

namespace {

Series series_of(const FirFilter& filter, int n) {
    std::vector<double> taps = full_response(filter, n);
    const FirSymmetry symmetry = filter.FUNCTION(n).symmetry;
    Series series;
    for (const double h : taps) series.bound = std::fmax(series.bound, std::fabs(h));
    std::frexp(series.bound, &series.exponent);
    series.bound = 0;
    for (double& h : taps) {
        h = std::ldexp(h, -series.exponent);
        series.bound += std::fabs(h);
    }
    const std::size_t count = taps.size();
    series.terms = (count + 1) / 2;
    series.offset = count % 2 == 0 ? 0.5 : 0;
    series.middle = 0.5 * static_cast<double>(count - 1);
    for (std::size_t k = 0; k < series.terms; ++k) {
        const std::size_t before = series.terms - 1 - k, after = count - 1 - before;
        const double m = static_cast<double>(k) + series.offset;
        if (symmetry != FirSymmetry::odd) {
            series.even.push_back(before == after ? taps[before] : taps[before] + taps[after]);
            series.weighted_even.push_back(m * series.even.back());
        }
        if (symmetry != FirSymmetry::even) {
            series.odd.push_back(before == after ? 0 : taps[before] - taps[after]);
            series.weighted_odd.push_back(m * series.odd.back());
        }
    }
    return series;
}

// cos and sin of 2 pi `turns`: exact on multiples of a quarter of a turn.
Complex<double> on_circle(double turns) {
    const double x = turns - std::round(turns), quarter = std::round(4 * x);
    const double angle = 2 * std::numbers::pi * (x - quarter / 4);
    const double c = std::cos(angle), s = std::sin(angle);
    if (quarter == 0) return {c, s};
    if (quarter == 1) return {-s, c};
    if (quarter == -1) return {s, -c};
    return {-c, -s};
}

template <class Real>
Complex<Real> turned(const Complex<Real>& z, const Complex<Real>& by) {
    return {z.re * by.re - z.im * by.im, z.re * by.im + z.im * by.re};
}

// The two series at some places at a time, each in a lane.
template <std::size_t places>
void respond(const Series& series, const double* turns, Amplitude* answers) {
    using Lanes = LanesOf<double>::Type;
    constexpr std::size_t width = LanesOf<double>::count, groups = places / width;
    static_assert(width == 2);
    const auto both = [turns](std::size_t g, double times) -> Complex<Lanes> {
        const auto a = on_circle(times * turns[width * g]), b = on_circle(times * turns[width * g + 1]);
        return {Lanes{a.re, b.re}, Lanes{a.im, b.im}};
    };
    Complex<Lanes> start[groups], step[groups], leap[groups];
    Sums<Lanes> sums[groups];
    for (std::size_t g = 0; g < groups; ++g) {
        start[g] = both(g, series.offset);
        step[g] = both(g, 1);
        leap[g] = both(g, static_cast<double>(block));
    }
    const auto add = [&](auto has_even, auto has_odd) {
        for (std::size_t first = 0; first < series.terms; first += block) {
            const std::size_t end = std::min(first + block, series.terms);
            Complex<Lanes> z[groups];
            std::copy_n(start, groups, z);
            for (std::size_t k = first; k < end; ++k) {
                for (std::size_t g = 0; g < groups; ++g) {
                    Sums<Lanes>& sum = sums[g];
                    if constexpr (has_even()) sum.c += series.even[k] * z[g].re;
                    if constexpr (has_odd()) sum.s += series.odd[k] * z[g].im;
                    if constexpr (has_even() && has_odd()) {
                        sum.dc -= series.weighted_even[k] * z[g].im;
                        sum.ds += series.weighted_odd[k] * z[g].re;
                    }
                    z[g] = turned(z[g], step[g]);
                }
            }
            for (std::size_t g = 0; g < groups; ++g) start[g] = turned(start[g], leap[g]);
        }
    };
    if (series.odd.empty()) {
        add(std::true_type(), std::false_type());
    } else if (series.even.empty()) {
        add(std::false_type(), std::true_type());
    } else {
        add(std::true_type(), std::true_type());
    }
    for (std::size_t i = 0; i < places; ++i) {
        const Sums<Lanes>& sum = sums[i / width];
        const std::size_t lane = i % width;
        answers[i] = {sum.c[lane], sum.s[lane], sum.dc[lane], sum.ds[lane]};
    }
}

// Turns are from -1/2 to 1/2, the delay in samples.
ResponsePoint point_of(const Series& series, const Amplitude& at, double turns) {
    const double square = at.c * at.c + at.s * at.s;
    const double linear = 360 * std::remainder(series.middle * turns, 1.0);
    const double phase = std::remainder(linear - std::atan2(at.s, at.c) * (180 / std::numbers::pi), 360.0);
    return {.loss = 0.0 - 10 * std::log10(square) - decibel_of_octave * series.exponent,
            .phase = phase >= 180 ? -180.0 : phase + 0.0,
            .delay = series.middle - (at.c * at.ds - at.s * at.dc) / square};
}

// The derivative of C + jS of this order by M theta, with the sum of the magnitudes of its terms.
struct Derivative {
    Complex<double> value;
    double bound = 0;
};
Derivative derivative(const Series& series, double turns, int order) {
    Derivative sum;
    for (std::size_t k = 0; k < series.terms; ++k) {
        const double m = static_cast<double>(k) + series.offset, power = std::pow(m / series.middle, order);
        const long double angle = static_cast<long double>(turns) * m + 0.25L * (order % 4);  // no digit is lost
        const Complex<double> z = on_circle(static_cast<double>(std::remainder(angle, 1.0L)));
        const double even = series.even.empty() ? 0 : power * series.even[k];
        const double odd = series.odd.empty() ? 0 : power * series.odd[k];
        sum.value += {even * z.re, odd * z.im};
        sum.bound += std::fabs(even) + std::fabs(odd);
    }
    return sum;
}

// Of a zero of order p the first derivative that is none takes the place of C + jS, and 1/(p + 1) of the next one that
// of C' + jS'.
ResponsePoint on_zero(const Series& series, double turns) {
    constexpr double nothing_left_of_derivative = 0x1p-40;
    ResponsePoint point{std::numeric_limits<double>::infinity(), 0, series.middle};
    if (series.bound == 0) return point;
    const bool from_below = (std::fabs(turns) < 0.25) == std::signbit(turns);
    for (int order = 1; order <= 2 * static_cast<int>(series.terms); ++order) {
        const auto [at, bound] = derivative(series, turns, order);
        if (std::hypot(at.re, at.im) <= nothing_left_of_derivative * bound) continue;
        const Complex<double> next = derivative(series, turns, order + 1).value;
        const double side = from_below && order % 2 != 0 ? -1 : 1, level = series.middle / (order + 1);
        const Amplitude beside{side * at.re, side * at.im, level * side * next.re, level * side * next.im};
        point = point_of(series, beside, turns);
        point.loss = std::numeric_limits<double>::infinity();
        return point;
    }
    return point;
}

}  // namespace

}  // namespace kavrel
