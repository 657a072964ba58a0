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
// counts as not there. value is NaN where f is a number nowhere. Peaks that cannot reach beyond `floor` are not closed
// in on.
template <class Function>
[[nodiscard]] Peak<double> highest_value(std::span<const double> places, const Function& f,
                                         double floor = -std::numeric_limits<double>::infinity()) {
    constexpr int refining_steps = 24;  // to 1e-5 of the distance of two samples, so to 1e-10 of the climb
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
        const Peak<double>& here = samples[i];
        const double climb = here.value - samples[i - 1].value, fall = here.value - samples[i + 1].value;
        if (climb < 0 || fall < 0) continue;
        // The peak is lower than the climb or the fall would lead to, either of them going on over the whole way.
        const double way = samples[i + 1].at - samples[i - 1].at;
        const double reach =
            std::fmax(climb / (here.at - samples[i - 1].at), fall / (samples[i + 1].at - here.at)) * way;
        if (here.value + reach < std::fmax(highest.value, floor)) continue;
        note(peak_between(samples[i - 1].at, samples[i + 1].at, refining_steps, low_if_not_there));
    }
    return highest;
}

}  // namespace kavrel
