// A frequency analysis at 501 points: loss, phase and delay, of functions with and without symmetry. bench/peer_fir.py
// times scipy.signal.freqz on as many taps.
#include <cmath>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "fir/frequency_response.h"

namespace kavrel {

namespace {

void response(benchmark::State& state, FirSymmetry symmetry) {
    const int taps = static_cast<int>(state.range(0));
    std::vector<double> cells;
    for (int i = 0; i < stored_cells(taps, symmetry); ++i) cells.push_back(std::sin(0.3 * i) / (1 + i));
    const auto filter = std::make_unique<FirFilter>();
    filter->sampling_frequency = 48e3;
    if (!add_function(*filter, {.taps = taps, .symmetry = symmetry}, cells)) state.SkipWithError("no place");
    std::vector<double> hertz;
    for (int i = 0; i < analysis_points; ++i) hertz.push_back(47.9 * i);
    for (auto _ : state) benchmark::DoNotOptimize(fir_frequency_response(*filter, 1, hertz));
}

void symmetric_response(benchmark::State& state) { response(state, FirSymmetry::even); }
void general_response(benchmark::State& state) { response(state, FirSymmetry::none); }
BENCHMARK(symmetric_response)->Arg(64)->Arg(512)->Unit(benchmark::kMicrosecond);
BENCHMARK(general_response)->Arg(64)->Arg(512)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
