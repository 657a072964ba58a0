// The scaling of a cascade, the noise within it, and the search for the order of its sections: of a narrow band-pass
// with 12 sections, and of one with the most that there can be, 25 (54,180 orders). The search runs on one core and on
// two; the time is that of the clock.
#include <cmath>
#include <numbers>

#include <benchmark/benchmark.h>

#include "iir/noise_gain.h"
#include "iir/peak_scaling.h"
#include "iir/section_order.h"

namespace kavrel {

namespace {

// Poles within 1 % of a quarter of the sampling frequency, zeros beside them.
IirFilter band_pass(int sections) {
    IirFilter filter;
    filter.fs = filter.T = 1, filter.FLO = 0.2475, filter.FHI = 0.2525;
    CascadeForm& c = filter.cascade;
    for (int k = 1; k <= sections; ++k) {
        const double place = (2.0 * k - sections - 1) / sections;  // -1 to 1
        const double radius = 1 - 0.01 * std::sqrt(1.05 - place * place);
        const double pole = std::numbers::pi * (0.5 + 0.01 * place);
        const double zero = std::numbers::pi * (0.5 + (place < 0 ? -0.012 : 0.012) - 0.02 * place);
        c.C1N(k) = -2 * std::cos(zero), c.C2N(k) = 1;
        c.C1D(k) = -2 * radius * std::cos(pole), c.C2D(k) = radius * radius;
    }
    c.NNUM = c.NDEN = sections;
    c.CK = std::pow(0.1, sections);
    rootsFromFactors(filter);
    return filter;
}

void noise(benchmark::State& state) {
    IirFilter filter = band_pass(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(noiseGain(filter.cascade));
}

// With the noise gain, as the command does it.
template <class Factors>
void scale(benchmark::State& state, const Factors& factors) {
    const IirFilter filter = band_pass(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CascadeForm scaled = filter.cascade;
        rescale(scaled, factors(filter));
        benchmark::DoNotOptimize(noiseGain(scaled));
    }
}
void scale_l_two(benchmark::State& state) {
    scale(state, [](const IirFilter& filter) { return *l_two_factors(filter.cascade); });
}
void scale_l_infinity(benchmark::State& state) {
    scale(state, [](const IirFilter& filter) { return peakScale(filter, {}); });
}

void search_order(benchmark::State& state) {
    const IirFilter filter = band_pass(static_cast<int>(state.range(0)));
    Unwatched watcher;
    for (auto _ : state) {
        benchmark::DoNotOptimize(orderSections(filter.cascade, 1, static_cast<int>(state.range(1)), watcher));
    }
}

BENCHMARK(noise)->Arg(12)->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(scale_l_two)->Arg(12)->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(scale_l_infinity)->Arg(12)->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(search_order)
    ->ArgNames({"sections", "threads"})
    ->ArgsProduct({{12, 25}, {1, 2}})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kavrel
