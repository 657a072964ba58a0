// A frequency analysis of each form at 501 points: loss, phase and delay. bench/peer_iir.py times the same
// filters by scipy.signal. The cascade and the natural modes have 24 sections, the direct form and the lattice degree
// 24, the parallel form 24 blocks, the differential allpass 12 sections a chain.
//   response_of_crowded    a direct form whose poles crowd at z = 1: most points are in wide numbers
#include <cmath>
#include <memory>
#include <span>
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

struct Pair {
    double re, im;
};
// scipy.signal.ellip(24, 0.1, 60, 0.4)
constexpr Pair zeros[] = {{-0.80637376598694244, 0.59140624745435},   {-0.15481685484925697, 0.98794318736179565},
                          {0.14109767618758323, 0.98999567967464586}, {0.24711626450129337, 0.96898583674836392},
                          {0.28581525767160876, 0.9582847376860969},  {0.30024439951615806, 0.95386230691813256},
                          {0.30567800621702834, 0.9521349465885508},  {0.30773230010039893, 0.95147297989744195},
                          {0.30850994093584427, 0.95122111853331026}, {0.30880384695789048, 0.95112574568455854},
                          {0.30891326091091742, 0.95109021508655189}, {0.30894952200066916, 0.95107843675248904}};
constexpr Pair poles[] = {{0.30900636906398954, 0.95104728573794595}, {0.30902048052637804, 0.95100443444879235},
                          {0.30907050524754459, 0.95089809132057268}, {0.3092072781139848, 0.95062011942663638},
                          {0.30956956609760505, 0.94988803106040232}, {0.31052337452853435, 0.94795904278567422},
                          {0.31302145470742182, 0.94288430535436862}, {0.31948498654897817, 0.92959447203444157},
                          {0.33568682581774628, 0.89520998540496544}, {0.3730803777424811, 0.80906279881776366},
                          {0.44291134420796446, 0.61066988590976334}, {0.51860094247506061, 0.23792327101708588}};

// prod(1 - 2 re w + (re^2 + im^2) w^2), the roots moved towards z = 1 by `towards_one`.
void expand(std::span<const Pair> pairs, double towards_one, Table<double, 51>& c, int& count) {
    c(count = 1) = 1;
    for (const Pair& pair : pairs) {
        const double re = pair.re + towards_one * (1 - pair.re), im = pair.im * (1 - towards_one);
        const double c1 = -2 * re, c2 = re * re + im * im;
        count += 2;
        for (int i = count; i >= 2; --i) c(i) += c1 * c(i - 1) + (i > 2 ? c2 * c(i - 2) : 0);
    }
}

std::unique_ptr<IirFilter> degree_24(double towards_one) {
    auto filter = std::make_unique<IirFilter>();
    filter->fs = 48000;
    expand(zeros, 0, filter->direct.ZNUM, filter->direct.JN);
    expand(poles, towards_one, filter->direct.ZDEN, filter->direct.JD);
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

void response_of_cascade(benchmark::State& state) { analyse(state, *many_sections(), Implementation::cascade); }
void response_of_parallel(benchmark::State& state) { analyse(state, *many_sections(), Implementation::parallel); }
void response_of_modes(benchmark::State& state) { analyse(state, *many_sections(), Implementation::natural_modes); }
void response_of_allpass(benchmark::State& state) { analyse(state, *many_sections(), Implementation::allpass); }
void response_of_lattice(benchmark::State& state) { analyse(state, *degree_24(0), Implementation::lattice); }
void response_of_direct(benchmark::State& state) { analyse(state, *degree_24(0), Implementation::direct); }
void response_of_crowded(benchmark::State& state) { analyse(state, *degree_24(0.8), Implementation::direct); }
BENCHMARK(response_of_cascade)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_parallel)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_modes)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_allpass)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_lattice)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_direct)->Unit(benchmark::kMicrosecond);
BENCHMARK(response_of_crowded)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
