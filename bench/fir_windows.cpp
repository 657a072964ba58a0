// Windows of 512 points, each by its number in the table; bench/peer_fir.py times those that scipy has, too. A symmetric
// window is its half.
#include <string>

#include <benchmark/benchmark.h>

#include "fir/windows.h"

namespace kavrel {

namespace {

void window(benchmark::State& state) {
    const WindowRow& row = fir_windows[state.range(0) - 1];
    const WindowTask task{512, row.window == FirWindow::gaussian ? 2.5 : 60.0};
    WindowCosines retained;
    WindowValues w;
    for (auto _ : state) {
        if (compute_window(static_cast<int>(state.range(0)) - 1, task, retained, w) != WindowVerdict::computed) {
            state.SkipWithError("no window");
            break;
        }
        benchmark::DoNotOptimize(w);
    }
    state.SetLabel(std::string(row.label));
}
BENCHMARK(window)->DenseRange(1, fir_window_count)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
