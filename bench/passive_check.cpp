// The request check of a ladder, by degree: what an edit costs beside its drawing. The bar is 1 ms at degree 15.
#include <memory>

#include <benchmark/benchmark.h>

#include "approximation/s_plane.h"
#include "passive/circuit_request_check.h"
#include "synthesis/synthesise.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {

namespace {

void check(benchmark::State& state) {
    auto design = std::make_unique<test::Design>();
    design->spec = test::with_minima(low_pass, equal_ripple, static_cast<int>(state.range(0)), 1);
    design->spec.loadResistance = design->spec.sourceResistance;
    design->spec.stopbandLoss = 60;
    const FilterSpec request = design->spec;
    design->run();
    auto left = std::make_unique<SynthesisState>();
    auto filter = std::make_unique<PassiveFilter>();
    if (!synthesise(design->xp, design->spec, {}, *left, filter->circuit).good()) {
        state.SkipWithError("synthesis failed");
        return;
    }
    filter->designed = true;
    filter->mod = state.range(1) != 0 ? 1.0F : 0.0F;
    filter->background.request = filter->spec = request;
    filter->transfer = xToFrequencyPlane(design->spec, design->xp);
    std::size_t rows = 0;
    Unwatched unwatched;
    for (auto _ : state) rows = check_circuit(*filter, unwatched).rows.size();
    state.counters["rows"] = static_cast<double>(rows);
}
BENCHMARK(check)->ArgNames({"degree", "edited"})->ArgsProduct({{5, 9, 15, 25}, {0, 1}})->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
