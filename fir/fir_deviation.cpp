#include "fir/fir_deviation.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "numeric/highest_value.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

constexpr double least_frequency = 1e-9;
constexpr int least_steps = 16;    // of a piece, however short
constexpr int points_per_tap = 8;  // over 0 to 0.5: 16 for each extremum amid a band

double level_of(const FirFilter& filter, int function);
template <class Value>
Peak<double> highest_in_piece(double low, double high, const FirFilter& filter, int function, const Value& value);
std::vector<double> piece_ends(const FirTask& task, int band);

}  // namespace

FirDeviation largest_deviation(const FirTask& task, const FirFilter& filter, int function, int band) {
    const bool in_magnitude = filter.FUNCTION(function).symmetry == FirSymmetry::none;
    const double level = level_of(filter, function);
    const auto weighted = [&](double f) {
        const double asked = desired(task, f, band);
        const double off = amplitude(filter, function, f) / level - (in_magnitude ? std::abs(asked) : asked);
        return weight(task, f, band) * std::abs(off);
    };
    const std::vector<double> ends = piece_ends(task, band);
    FirDeviation largest;
    for (std::size_t piece = 1; piece < ends.size(); ++piece) {
        const double low = ends[piece - 1];
        // short of the next piece, where the desired response may be another one
        const double high = piece + 1 < ends.size() ? std::nextafter(ends[piece], low) : ends[piece];
        const Peak<double> found = highest_in_piece(low, high, filter, function, weighted);
        if (found.value > largest.weighted) largest = {found.at, found.value};
    }
    return largest;
}

FirDeviation largest_deviation(const FirTask& task, const FirFilter& filter, int function) {
    FirDeviation largest;
    for (int band = 1; band <= task.BANDS.NBANDS; ++band) {
        const FirDeviation found = largest_deviation(task, filter, function, band);
        if (found.weighted > largest.weighted) largest = found;
    }
    return largest;
}

double largest_outside_gain(const FirTask& task, const FirFilter& filter, int function) {
    const double level = level_of(filter, function);
    const auto gain = [&](double f) { return std::abs(amplitude(filter, function, f)) / level; };
    double largest = -1;
    const auto search = [&](double low, double high) {
        if (!(high > low)) return;
        largest = std::max(largest, highest_in_piece(low, high, filter, function, gain).value);
    };
    double below = 0;
    for (int band = 1; band <= task.BANDS.NBANDS; ++band) {
        search(below, task.BANDS.EDGE(2 * band - 1));
        below = task.BANDS.EDGE(2 * band);
    }
    search(below, 0.5);
    return largest;
}

double amplitude(const FirFilter& filter, int function, double f) {
    const auto stored = stored_coefficients(filter, function);
    const FirSymmetry symmetry = filter.FUNCTION(function).symmetry;
    const bool odd_length = filter.FUNCTION(function).taps % 2 != 0;
    const double w = 2.0 * std::numbers::pi * f;
    // the stored tap i from the innermost one lies i + offset samples off the middle
    const double offset = !odd_length ? 0.5 : symmetry == FirSymmetry::odd ? 1.0 : 0.0;
    const std::complex<double> step = std::polar(1.0, w);
    std::complex<double> turned = std::polar(1.0, w * offset), sum = 0.0;
    for (auto h = stored.rbegin(); h != stored.rend(); ++h) {
        sum += *h * turned;
        turned = {turned.real() * step.real() - turned.imag() * step.imag(),
                  turned.real() * step.imag() + turned.imag() * step.real()};
    }
    if (symmetry == FirSymmetry::none) return std::abs(sum);
    if (symmetry == FirSymmetry::odd) return 2.0 * sum.imag();
    return 2.0 * sum.real() - (odd_length ? stored.back() : 0.0);
}

namespace {

// By which the function was moved from the level that was asked.
double level_of(const FirFilter& filter, int function) { return std::pow(10.0, filter.FUNCTION(function).gain / 20); }

// Of value(f) from `low` to `high`, where the filter alone makes it rise and fall.
template <class Value>
Peak<double> highest_in_piece(double low, double high, const FirFilter& filter, int function, const Value& value) {
    const int taps = filter.FUNCTION(function).taps;
    // ripples crowd at the edges of a band, and so do the places
    const double ripples = (high - low) * std::numbers::pi * points_per_tap * taps;
    const int steps = std::max(least_steps, whole_part(std::ceil(ripples)));
    std::vector<double> places;
    for (int k = 0; k < steps; ++k) {
        places.push_back(low + (high - low) * (1 - std::cos(std::numbers::pi * k / steps)) / 2);
    }
    places.push_back(high);
    return highest_value(places, value);
}

// The edges of the band, the points of its shape between them, and where its weight jumps because the desired response
// passes the least one that it is divided by.
std::vector<double> piece_ends(const FirTask& task, int band) {
    const bool from_zero = task.JTYPE == FirType::differentiator;
    const double high = task.BANDS.EDGE(2 * band);
    std::vector<double> ends{std::max(task.BANDS.EDGE(2 * band - 1), from_zero ? least_frequency : 0.0)};
    const auto go_on_to = [&](double f) {
        const double low = ends.back(), before = desired(task, low, band) - least_shape_weighed;
        const double rise = desired(task, std::nextafter(f, low), band) - least_shape_weighed - before;
        const double jump = low - before * (f - low) / rise;
        if (jump > low && jump < f) ends.push_back(jump);
        ends.push_back(f);
    };
    for (int i = 1; i <= task.SHAPE.count; ++i) {
        const double f = static_cast<double>(task.SHAPE.FIR_FREQ(i));
        if (f > ends.back() && f <= high) go_on_to(f);  // at the edge itself it may jump, too
    }
    go_on_to(high);
    return ends;
}

}  // namespace

}  // namespace kavrel
