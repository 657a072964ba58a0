// A frequency analysis of each form at 501 points: loss, phase and delay. bench/peer_iir_response.py times the same
// filters by scipy.signal. The cascade and the natural modes have 24 sections, the direct form and the lattice degree
// 24, the parallel form 24 blocks, the differential allpass 12 sections a chain.
//   crowded    a direct form whose poles crowd at z = 1: every point in wide numbers
#include <cmath>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "iir/form_response.h"

namespace kavrel {

namespace {

constexpr int sections = 24;

// Poles on an ellipse about the middle of the pass band, zeros on the circle beyond it.
std::unique_ptr<IirFilter> many_sections() {
    auto filter = std::make_unique<IirFilter>();
    filter->fs = 48000;
    CascadeForm& cascade = filter->cascade;
    ParallelForm& parallel = filter->parallel;
    AllpassForm& allpass = filter->allpass;
    cascade.NNUM = cascade.NDEN = parallel.NPAR = sections;
    for (int k = 1; k <= sections; ++k) {
        const double radius = 0.99 - 0.4 * (k - 1) / sections, angle = 1.2 * std::sqrt(1 - std::pow(1 - radius, 2));
        const double zero = 1.3 + 1.8 * k / sections;
        cascade.C1N(k) = -2 * std::cos(zero), cascade.C2N(k) = 1;
        const double c1 = -2 * radius * std::cos(angle), c2 = radius * radius;
        cascade.C1D(k) = parallel.GA(k) = c1;
        cascade.C2D(k) = parallel.DE(k) = c2;
        parallel.AL(k) = 0.1 * k, parallel.BE(k) = -0.05 * k;
        if (k % 2 != 0) ++allpass.NTA, allpass.TA1(allpass.NTA) = c1, allpass.TA2(allpass.NTA) = c2;
        if (k % 2 == 0) ++allpass.NTB, allpass.TB1(allpass.NTB) = c1, allpass.TB2(allpass.NTB) = c2;
    }
    rootsFromFactors(*filter);
    return filter;
}

// prod(1 - 2 r cos(angle) w + r^2 w^2) of 12 pairs between two angles.
void expand(double radius, double from, double to, Table<double, 51>& c, int& count) {
    c(count = 1) = 1;
    for (int k = 0; k < 12; ++k, count += 2) {
        const double c1 = -2 * radius * std::cos(from + (to - from) * k / 11), c2 = radius * radius;
        for (int i = count + 2; i >= 1; --i) c(i) += (i > 1 ? c1 * c(i - 1) : 0) + (i > 2 ? c2 * c(i - 2) : 0);
    }
}

std::unique_ptr<IirFilter> degree_24(double widest_pole) {
    auto filter = std::make_unique<IirFilter>();
    filter->fs = 48000;
    expand(1, 1.7, 3.1, filter->direct.ZNUM, filter->direct.JN);
    expand(0.8, 0.1, widest_pole, filter->direct.ZDEN, filter->direct.JD);
    LatticeForm& lattice = filter->lattice;
    for (lattice.JM = 0; lattice.JM < 24;) ++lattice.JM, lattice.GMMUL(lattice.JM) = 0.4 * std::cos(lattice.JM);
    for (lattice.JT = 0; lattice.JT < 25;) ++lattice.JT, lattice.GMTAP(lattice.JT) = 0.3 * std::sin(lattice.JT);
    return filter;
}

void analyse(benchmark::State& state, const IirFilter& filter, Implementation form) {
    std::vector<double> hertz;
    for (int i = 0; i < analysis_points; ++i) hertz.push_back(48.0 * i);
    for (auto _ : state) benchmark::DoNotOptimize(form_response(filter, form, hertz));
}

void cascade(benchmark::State& state) { analyse(state, *many_sections(), Implementation::cascade); }
void parallel(benchmark::State& state) { analyse(state, *many_sections(), Implementation::parallel); }
void modes(benchmark::State& state) { analyse(state, *many_sections(), Implementation::natural_modes); }
void allpass(benchmark::State& state) { analyse(state, *many_sections(), Implementation::allpass); }
void lattice(benchmark::State& state) { analyse(state, *degree_24(2.8), Implementation::lattice); }
void direct(benchmark::State& state) { analyse(state, *degree_24(2.8), Implementation::direct); }
void crowded(benchmark::State& state) { analyse(state, *degree_24(0.4), Implementation::direct); }
BENCHMARK(cascade)->Unit(benchmark::kMicrosecond);
BENCHMARK(parallel)->Unit(benchmark::kMicrosecond);
BENCHMARK(modes)->Unit(benchmark::kMicrosecond);
BENCHMARK(allpass)->Unit(benchmark::kMicrosecond);
BENCHMARK(lattice)->Unit(benchmark::kMicrosecond);
BENCHMARK(direct)->Unit(benchmark::kMicrosecond);
BENCHMARK(crowded)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
