// Whole designs, from the request to poles and zeros: the low-pass functions that bench/peer_approximation.py times
// with scipy.signal, 1 dB ripple, single termination, elliptic from 1.2 times the edge on; band-passes without a peer.
#include <memory>

#include <benchmark/benchmark.h>

#include "approximation/approximate.h"
#include "approximation/s_plane.h"

namespace kavrel {

namespace {

struct NoAnswers final : ApproximationQuestions {
    PredistortionChoice predistortion_choice(const PredistortionNotes&) override { return PredistortionChoice::cancel; }
};

FilterSpec request(PassbandType passband, int n, double R2) {
    FilterSpec s;
    s.passbandType = passband;
    s.stopbandType = specified_zeros;
    s.bandEdgeLoss = 1;
    s.upperPassEdge = 1000;
    s.sourceResistance = 1;
    s.loadResistance = R2;
    s.zerosAtInfinity = s.degree = n;
    s.degreeParity = n % 2;
    s.symmetryFlag = R2 == 0 ? -1 : 0;
    return s;
}

FilterSpec elliptic(int n, double R2) {
    FilterSpec s = request(equal_ripple, n, R2);
    s.stopbandType = equal_minima;
    s.zerosAtInfinity = 0;
    s.upperStopEdge = 1200;
    s.stopbandLoss = 60;
    return s;
}

// Over three decades, where the function is finished by an exchange.
FilterSpec parametric_band_pass(int n) {
    FilterSpec s = request(equal_ripple, n, 2);
    s.filterType = band_pass;
    s.bandpassType = parametric;
    s.lowerPassEdge = 1;
    s.zerosAtZero = n / 4 * 2 + 1;
    s.zerosAtInfinity = n - s.zerosAtZero;
    return s;
}

void design(benchmark::State& state, const FilterSpec& asked) {
    const auto xp = std::make_unique<XPlane>();
    ApproximationNotes notes;
    NoAnswers answers;
    for (auto _ : state) {
        FilterSpec spec = asked;
        if (!approximate(spec, *xp, notes, answers).good()) {
            state.SkipWithError("given up");
            break;
        }
        benchmark::DoNotOptimize(xToFrequencyPlane(spec, *xp));
    }
}

void ellip(benchmark::State& state) { design(state, elliptic(static_cast<int>(state.range(0)), 0)); }
void cheby1(benchmark::State& state) { design(state, request(equal_ripple, static_cast<int>(state.range(0)), 0)); }
void butter(benchmark::State& state) { design(state, request(maximally_flat, static_cast<int>(state.range(0)), 0)); }
// With the immittance polynomials of a ladder, which have no counterpart there.
void ellip_ladder(benchmark::State& state) { design(state, elliptic(static_cast<int>(state.range(0)), 2)); }
void parametric_ladder(benchmark::State& state) {
    design(state, parametric_band_pass(static_cast<int>(state.range(0))));
}

// A loss that rises by 4.5 dB an octave over two octaves, found by an exchange; 1e-5 dB makes it look for the least
// ripple.
FilterSpec sloping(int n, double ripple) {
    FilterSpec s = request(sloping_passband, n, 0);
    s.filterType = band_pass;
    s.lowerPassEdge = 250;
    s.zerosAtZero = s.zerosAtInfinity = n / 2;
    s.bandEdgeLoss = ripple;
    s.stopbandLoss = 4.5;
    return s;
}
void slope(benchmark::State& state) { design(state, sloping(static_cast<int>(state.range(0)), 0.05)); }
void least_slope_ripple(benchmark::State& state) { design(state, sloping(static_cast<int>(state.range(0)), 1e-5)); }

#define DEGREES Arg(5)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMicrosecond)
BENCHMARK(ellip)->DEGREES;
BENCHMARK(cheby1)->DEGREES;
BENCHMARK(butter)->DEGREES;
BENCHMARK(ellip_ladder)->DEGREES;
BENCHMARK(parametric_ladder)->DEGREES;
#undef DEGREES
BENCHMARK(slope)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(least_slope_ripple)->Arg(10)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
