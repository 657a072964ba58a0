// Exchanges of equal ripple designs, grid and impulse response among them; bench/peer_fir.py times the first two, too.
//   design    low-passes with the pass band 0 to 0.2 and the stopband from 0.2 + 3 / length on, so that every length
//             reaches about the same deviation; with the look between the points of the grid
//   refined   with a band narrower than 1/length, for which the exchange goes on off the grid
//   bounded   Hilbert transformers with a free upper end and a bounded gain there
#include <memory>

#include <benchmark/benchmark.h>

#include "fir/exchange.h"
#include "fir/fir_grid.h"
#include "fir/impulse_response.h"
#include "fir/off_grid.h"

namespace kavrel {

namespace {

void design(benchmark::State& state, const FirTask& task, double gain = 0) {
    const auto grid = std::make_unique<FirGrid>();
    ExchangeResult result;
    Unwatched unwatched;
    for (auto _ : state) {
        FirPlan plan;
        bool good = plan_fir(task.JTYPE, task.NFILT, plan) && make_grid(task, plan, *grid);
        good = good && exchange(*grid, plan.NFCNS, unwatched, result) != ExchangeStatus::degenerate;
        good = good && refine(task, plan, *grid, unwatched, result);
        if (gain > 0) {
            good = good && bounded_exchange(task, plan, *grid, gain, result.DEV, unwatched, result) ==
                               ExchangeStatus::converged;
        }
        if (!good || result.status != ExchangeStatus::converged) {
            state.SkipWithError("no convergence");
            break;
        }
        benchmark::DoNotOptimize(impulse_response(plan, result.ALPHA));
    }
    state.counters["passes"] = result.iterations;
    state.counters["deviation"] = result.DEV;
}

void design(benchmark::State& state) {
    FirTask task;
    task.NFILT = static_cast<int>(state.range(0));
    task.BANDS.NBANDS = 2;
    task.BANDS.EDGE = {0, 0.2, 0.2 + 3.0 / task.NFILT, 0.5};
    task.BANDS.FX = {1, 0};
    task.BANDS.WTX = {1, 1};
    design(state, task);
}
BENCHMARK(design)->Arg(32)->Arg(64)->Arg(101)->Arg(128)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond);

void refined(benchmark::State& state) {
    FirTask task;
    task.NFILT = static_cast<int>(state.range(0));
    const double tap = 1.0 / task.NFILT;
    task.BANDS.NBANDS = 3;
    task.BANDS.EDGE = {0, 0.2, 0.2 + 3 * tap, 0.2 + 3.4 * tap, 0.2 + 5 * tap, 0.5};
    task.BANDS.FX = {1, 0, 0};
    task.BANDS.WTX = {1, 10, 1};
    design(state, task);
}
BENCHMARK(refined)->Arg(32)->Arg(64)->Arg(101)->Arg(128)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond);

// state.range(0) taps, from state.range(1) to state.range(2) thousandths of the sampling frequency.
void bounded(benchmark::State& state) {
    FirTask task;
    task.JTYPE = FirType::hilbert;
    task.NFILT = static_cast<int>(state.range(0));
    task.BANDS.NBANDS = 1;
    task.BANDS.EDGE = {static_cast<double>(state.range(1)) / 1000, static_cast<double>(state.range(2)) / 1000};
    task.BANDS.FX = {1};
    task.BANDS.WTX = {1};
    design(state, task, 10);
}
BENCHMARK(bounded)->Args({100, 11, 286})->Args({100, 20, 200})->Args({100, 40, 400})->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
