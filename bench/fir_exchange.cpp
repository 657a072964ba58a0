// Whole equal ripple designs: grid, exchange and impulse response of a low-pass with the pass band 0 to 0.2 and the
// stop band from 0.2 + 3 / length on, so that every length reaches about the same deviation. bench/peer_fir.py times
// the same.
#include <memory>

#include <benchmark/benchmark.h>

#include "fir/exchange.h"
#include "fir/fir_grid.h"
#include "fir/impulse_response.h"

namespace kavrel {

namespace {

void design(benchmark::State& state) {
    FirTask task;
    task.NFILT = static_cast<int>(state.range(0));
    task.BANDS.NBANDS = 2;
    task.BANDS.EDGE = {0, 0.2, 0.2 + 3.0 / task.NFILT, 0.5};
    task.BANDS.FX = {1, 0};
    task.BANDS.WTX = {1, 1};
    const auto grid = std::make_unique<FirGrid>();
    ExchangeResult result;
    Unwatched unwatched;
    for (auto _ : state) {
        FirPlan plan;
        if (!plan_fir(task.JTYPE, task.NFILT, plan) || !make_grid(task, plan, *grid) ||
            exchange(*grid, plan.NFCNS, unwatched, result) != ExchangeStatus::converged) {
            state.SkipWithError("no convergence");
            break;
        }
        benchmark::DoNotOptimize(impulse_response(plan, result.ALPHA));
    }
    state.counters["passes"] = result.iterations;
    state.counters["deviation"] = result.DEV;
}
BENCHMARK(design)->Arg(32)->Arg(64)->Arg(101)->Arg(128)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
