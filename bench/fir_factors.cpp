// Factors of equal ripple low-passes, from the taps to the list; bench/peer_fir.py times numpy.roots on the same taps.
//   factors          of the symmetric response, half the degree
//   maximum_phase    of the same filter without symmetry, as "flip" makes it
#include <benchmark/benchmark.h>

#include "fir/best_taps.h"
#include "fir/factor_extraction.h"

namespace kavrel {

namespace {

std::vector<double> low_pass(int length) {
    FirTask task;
    task.NFILT = length;
    task.BANDS.NBANDS = 2;
    task.BANDS.EDGE = {0, 0.2, 0.2 + 3.0 / length, 0.5};
    task.BANDS.FX = {1, 0};
    task.BANDS.WTX = {1, 1};
    Unwatched unwatched;
    FirTaps taps;
    return best_taps(task, unwatched, taps) == FirTapsVerdict::made ? full_response(taps.filter, 1)
                                                                    : std::vector<double>();
}

void extract(benchmark::State& state, const std::vector<double>& taps) {
    Unwatched unwatched;
    FirFactors factors;
    for (auto _ : state) {
        if (extract_factors(taps, unwatched, factors) != ExtractionVerdict::extracted) {
            state.SkipWithError("not extracted");
            break;
        }
    }
    double peak = 0, missed = 0;
    const std::vector<double> product = product_of(factors);
    for (std::size_t i = 0; i < taps.size(); ++i) {
        peak = std::max(peak, std::abs(taps[i]));
        missed = std::max(missed, std::abs(product[i] - taps[i]));
    }
    state.counters["missed"] = missed / peak;
}

void factors(benchmark::State& state) { extract(state, low_pass(static_cast<int>(state.range(0)))); }
BENCHMARK(factors)->Arg(101)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond);

void maximum_phase(benchmark::State& state) {
    Unwatched unwatched;
    FirFactors factors;
    static_cast<void>(extract_factors(low_pass(static_cast<int>(state.range(0))), unwatched, factors));
    reflect_zeros(factors, CircleSide::inside);
    extract(state, product_of(factors));
}
BENCHMARK(maximum_phase)->Arg(101)->Arg(256)->Arg(512)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
