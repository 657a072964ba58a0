// The forms of a random digital filter of degree 12 and 24: the time to make each one, and, to run it, the time of a
// sample (items per second).
#include <benchmark/benchmark.h>

#include "iir/allpass_form.h"
#include "iir/direct_form.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "iir/steppers.h"
#include "tests/iir/filters.h"

namespace kavrel {

namespace {

// The chains of the allpass form are those of every second pair.
IirFilter filter_of_degree(int degree) {
    RandomNumbers random(static_cast<unsigned>(degree));
    IirFilter filter = random_filter(random, degree);
    filter.allpass.ALLPASS_OK = true;
    for (int i = 1; i <= degree; ++i) filter.allpass.LARR(i) = i % 4 < 2 ? 1 : 2;
    return filter;
}

template <class Make>
void make(benchmark::State& state, Make form_of) {
    const IirFilter filter = filter_of_degree(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        IirFilter work = filter;
        benchmark::DoNotOptimize(form_of(work));
    }
}

void copy_alone(benchmark::State& state) {
    make(state, [](IirFilter& filter) { return filter.fs; });
}
void make_parallel(benchmark::State& state) { make(state, makeParallel); }
void make_direct(benchmark::State& state) { make(state, makeDirect); }
void make_lattice(benchmark::State& state) {
    make(state, [](IirFilter& filter) { return makeLattice(filter).stage; });
}
void make_allpass(benchmark::State& state) { make(state, makeAllpass); }

template <class Stepper>
void run(benchmark::State& state, Stepper stepper) {
    for (auto _ : state) benchmark::DoNotOptimize(stepper.step(1));
    state.SetItemsProcessed(state.iterations());
}

IirFilter with_forms(benchmark::State& state) {
    IirFilter filter = filter_of_degree(static_cast<int>(state.range(0)));
    const bool made = makeParallel(filter).empty() && makeDirect(filter).empty() && makeAllpass(filter).empty() &&
                      makeLattice(filter).outcome == LatticeOutcome::made;
    if (!made) state.SkipWithError("a form is missing");
    return filter;
}

void step_cascade(benchmark::State& state) {
    const IirFilter filter = with_forms(state);
    run(state, CascadeStepper<>(filter.cascade));
}
void step_parallel(benchmark::State& state) {
    const IirFilter filter = with_forms(state);
    run(state, ParallelStepper<>(filter.parallel));
}
void step_direct(benchmark::State& state) {
    const IirFilter filter = with_forms(state);
    run(state, DirectStepper<>(filter.direct));
}
void step_lattice(benchmark::State& state) {
    const IirFilter filter = with_forms(state);
    run(state, LatticeStepper<>(filter.lattice));
}
void step_allpass(benchmark::State& state) {
    const IirFilter filter = with_forms(state);
    run(state, AllpassStepper<>(filter.allpass, AllpassOutput::sum));
}

BENCHMARK(copy_alone)->Arg(12)->Arg(24);
BENCHMARK(make_parallel)->Arg(12)->Arg(24)->Arg(50);
BENCHMARK(make_direct)->Arg(12)->Arg(24)->Arg(50);
BENCHMARK(make_lattice)->Arg(12)->Arg(24)->Arg(50);
BENCHMARK(make_allpass)->Arg(12)->Arg(24);
BENCHMARK(step_cascade)->Arg(12)->Arg(24);
BENCHMARK(step_parallel)->Arg(12)->Arg(24);
BENCHMARK(step_direct)->Arg(12)->Arg(24);
BENCHMARK(step_lattice)->Arg(12)->Arg(24);
BENCHMARK(step_allpass)->Arg(12)->Arg(24);

}  // namespace

}  // namespace kavrel
