// Digital filters, from the request to the cascade: the elliptic low-passes that bench/peer_iir.py times with
// scipy.signal.ellip, 1 dB ripple, from 1.2 times the edge on, and the steps that have no counterpart there.
#include <memory>

#include <benchmark/benchmark.h>

#include "approximation/approximate.h"
#include "approximation/s_plane.h"
#include "approximation/spectral_transform.h"
#include "approximation/z_transform.h"
#include "iir/cascade_pairing.h"
#include "iir/direct_form.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"

namespace kavrel {

namespace {

struct NoAnswers final : ApproximationQuestions {
    PredistortionChoice predistortion_choice(const PredistortionNotes&) override { return PredistortionChoice::cancel; }
};

constexpr double sampling = 8000;

FilterSpec elliptic(int n, ZTransform transform) {
    FilterSpec s;
    s.passbandType = equal_ripple;
    s.stopbandType = equal_minima;
    s.medium = transform == ZTransform::bilinear ? sampled_data : lumped;
    s.sampleFrequency = s.medium == lumped ? 0 : sampling;
    s.bandEdgeLoss = 1;
    s.upperPassEdge = 1000;
    s.upperStopEdge = 1200;
    s.stopbandLoss = 60;
    s.sourceResistance = 1;
    s.degree = n;
    s.degreeParity = n % 2;
    s.symmetryFlag = -1;
    return s;
}

enum class Forms { none, quick, all };

// The approximation, the z step, its spectral transformation and the pairing of its sections; then other forms, the
// quick ones or the lattice, too.
void design(benchmark::State& state, ZTransform transform, SpectralKind kind, Forms forms = Forms::none) {
    const auto xp = std::make_unique<XPlane>();
    const auto filter = std::make_unique<IirFilter>();
    const SpectralRequest target{.kind = kind, .fs = sampling, .edge = 1000, .lower = 1500, .upper = 1600};
    ApproximationNotes notes;
    NoAnswers answers;
    for (auto _ : state) {
        FilterSpec spec = elliptic(static_cast<int>(state.range(0)), transform);
        DigitalFunction function;
        if (!approximate(spec, *xp, notes, answers).good() ||
            !zTransform(transform, spec, xToFrequencyPlane(spec, *xp), sampling, function)) {
            state.SkipWithError("given up");
            break;
        }
        if (notes.has_pole_chains) takePoleChains(spec, *xp, sampling, function);
        *filter = {};
        take_function(spectralTransform(target, function), *filter);
        bool made = forms == Forms::none || (makeParallel(*filter).empty() && makeDirect(*filter).empty());
        if (forms == Forms::all) made = made && makeLattice(*filter).outcome == LatticeOutcome::made;
        if (!made) state.SkipWithError("a form is missing");
        benchmark::DoNotOptimize(*filter);
    }
}

void ellip(benchmark::State& state) { design(state, ZTransform::bilinear, SpectralKind::none); }
void ellip_quick_forms(benchmark::State& state) {
    design(state, ZTransform::bilinear, SpectralKind::none, Forms::quick);
}
void ellip_all_forms(benchmark::State& state) { design(state, ZTransform::bilinear, SpectralKind::none, Forms::all); }
void ellip_band_reject(benchmark::State& state) { design(state, ZTransform::bilinear, SpectralKind::to_bandreject); }
void matched(benchmark::State& state) { design(state, ZTransform::matched, SpectralKind::none); }
void impulse_invariant(benchmark::State& state) { design(state, ZTransform::impulse_invariant, SpectralKind::none); }

BENCHMARK(ellip)->Arg(5)->Arg(12)->Arg(24)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(ellip_quick_forms)->Arg(12)->Unit(benchmark::kMicrosecond);
BENCHMARK(ellip_all_forms)->Arg(12)->Unit(benchmark::kMicrosecond);
BENCHMARK(ellip_band_reject)->Arg(12)->Arg(25)->Unit(benchmark::kMicrosecond);
BENCHMARK(matched)->Arg(12)->Unit(benchmark::kMicrosecond);
BENCHMARK(impulse_invariant)->Arg(5)->Arg(12)->Arg(30)->Arg(50)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
