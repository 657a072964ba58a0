// The highest value of a function with many peaks, found from samples that are dense enough to show each of them.
#pragma once

#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "numeric/peak.h"

namespace kavrel {

// Of f at the places, in ascending order, and at the peaks between them: each sample that is as high as its neighbours
// is closed in on, where the climb from them lets it reach beyond the highest sample. A place where f is no number
// counts as not there. value is NaN where f is a number nowhere.
template <class Function>
[[nodiscard]] Peak<double> highest_value(std::span<const double> places, const Function& f) {
    constexpr int refining_steps = 24;  // to 1e-5 of the distance of two samples, so to 1e-10 of the climb
    constexpr double climbs = 2;        // a peak is lower than its sample and so many climbs to it
    std::vector<Peak<double>> samples;
    samples.reserve(places.size());
    Peak<double> highest{0, std::numeric_limits<double>::quiet_NaN()};
    const auto note = [&](const Peak<double>& found) {
        if (!(found.value <= highest.value)) highest = found;
    };
    for (const double at : places) {
        const double value = f(at);
        if (std::isnan(value)) continue;
        samples.push_back({at, value});
        note(samples.back());
    }
    const auto low_if_not_there = [&](double at) {
        const double value = f(at);
        return std::isnan(value) ? -std::numeric_limits<double>::infinity() : value;
    };
    for (std::size_t i = 1; i + 1 < samples.size(); ++i) {
        const double here = samples[i].value;
        const double lower = std::fmin(samples[i - 1].value, samples[i + 1].value);
        if (here < samples[i - 1].value || here < samples[i + 1].value) continue;
        if (here + climbs * (here - lower) < highest.value) continue;
        note(peak_between(samples[i - 1].at, samples[i + 1].at, refining_steps, low_if_not_there));
    }
    return highest;
}

}  // namespace kavrel
