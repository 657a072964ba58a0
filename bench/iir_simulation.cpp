// A filter of 24 sections in time: impulse and step response of 501 samples, which bench/peer_iir.py times by
// scipy.signal.sosfilt; the same in words of 14 bits; and its limit cycles.
#include <benchmark/benchmark.h>

#include "iir/limit_cycles.h"
#include "tests/iir/filters.h"

namespace kavrel {

namespace {

IirFilter filter_of_24_sections() {
    RandomNumbers random(24);
    return random_filter(random, 48);
}

void simulate(benchmark::State& state, const WordLength& word) {
    const IirFilter filter = filter_of_24_sections();
    const SampleGrid grid{.first = 1, .last = 501, .every = 1};
    Unwatched watcher;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            sampled_response(filter, Implementation::cascade, AllpassOutput::filter, word, grid, watcher));
    }
}

void simulate_cascade(benchmark::State& state) { simulate(state, {}); }
void simulate_in_fixed_words(benchmark::State& state) {
    simulate(state, {14, WordMethod::round, NumberForm::fixed_point});
}
void simulate_in_floating_words(benchmark::State& state) {
    simulate(state, {14, WordMethod::round, NumberForm::floating_point});
}
void limit_cycle_bounds(benchmark::State& state) {
    const IirFilter filter = filter_of_24_sections();
    for (auto _ : state) benchmark::DoNotOptimize(limitCycleReport(limit_cycles(filter)));
}

BENCHMARK(simulate_cascade)->Unit(benchmark::kMicrosecond);
BENCHMARK(simulate_in_fixed_words)->Unit(benchmark::kMicrosecond);
BENCHMARK(simulate_in_floating_words)->Unit(benchmark::kMicrosecond);
BENCHMARK(limit_cycle_bounds)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
