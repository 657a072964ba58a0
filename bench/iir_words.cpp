// The least words of an elliptic filter in its five forms, both number forms: the time of the whole search. Goal: 0.2 s
// for degree 7.
#include <benchmark/benchmark.h>

#include "iir/allpass_form.h"
#include "iir/least_words.h"
#include "tests/iir/designed_filters.h"
#include "tests/iir/filters.h"

namespace kavrel {

namespace {

void least_words_of(benchmark::State& state, IirFilter filter) {
    const bool made = makeParallel(filter).empty() && makeDirect(filter).empty() && makeAllpass(filter).empty() &&
                      makeLattice(filter).outcome == LatticeOutcome::made;
    if (!made) state.SkipWithError("a form is missing");
    Unwatched watcher;
    for (auto _ : state) benchmark::DoNotOptimize(least_words(filter, WordMethod::round, {0.01, 1}, watcher));
}

void least_words_of_7(benchmark::State& state) { least_words_of(state, elliptic_low_pass(7, 5151.1705026656)); }
void least_words_of_15(benchmark::State& state) { least_words_of(state, elliptic_low_pass(15, 4021.22)); }

BENCHMARK(least_words_of_7)->Unit(benchmark::kMillisecond);
BENCHMARK(least_words_of_15)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kavrel
