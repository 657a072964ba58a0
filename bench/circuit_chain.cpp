// Frequency analysis of ladders at 501 points, loss and delay with all else: the whole command, and
// beside it the same ladder by the plain recursion in complex doubles, which knows neither delay nor losses. The
// counter gives the time of one branch at one point. bench/peer_circuit.py runs ngspice on the same ladder.
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <vector>

#include <benchmark/benchmark.h>

#include "circuit/chain_analysis.h"

namespace kavrel {

namespace {

enum class Ladder { polynomial, traps, compounds };

// Between two resistors of 50 ohm, corner 1 MHz: shunt capacitors with series inductors, series traps, or a bridged
// section in each place.
Circuit ladder(Ladder form, int branches) {
    Circuit circuit;
    const double L = 50 / (2 * std::numbers::pi * 1e6);
    const double C = 1 / (50 * 2 * std::numbers::pi * 1e6);
    int k = 1;
    (void)insertBranch(circuit, k, 50, 0, BranchId::resistor);
    for (int i = 0; i < branches; ++i) {
        const bool shunt = i % 2 == 0;
        k = circuit.klast + (i == 0 ? 2 : 1);
        if (form == Ladder::compounds) {
            const double values[] = {L, 0.05 * C, C, L};
            (void)insert_values(circuit, k, BranchId::bridged_l, values);
        } else if (shunt) {
            (void)insertBranch(circuit, k, 2 * C, 0, BranchId::capacitor);
        } else if (form == Ladder::traps) {
            (void)insertBranch(circuit, k, L, 0.1 * C, BranchId::lc);
        } else {
            (void)insertBranch(circuit, k, 2 * L, 0, BranchId::inductor);
        }
    }
    k = circuit.klast + 1;
    (void)insertBranch(circuit, k, 50, 0, BranchId::resistor);
    return circuit;
}

std::vector<double> points() {
    std::vector<double> frequencies;
    for (int i = 1; i <= analysis_points; ++i) frequencies.push_back(4e3 * i);
    return frequencies;
}

void count_branches(benchmark::State& state, int branches) {
    const double visits = static_cast<double>(state.iterations()) * branches * analysis_points;
    state.counters["branch"] = benchmark::Counter(visits, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void analysis(benchmark::State& state, Ladder form, ElementLoss loss) {
    const Circuit circuit = ladder(form, static_cast<int>(state.range(0)));
    const auto frequencies = points();
    const auto performance = std::make_unique<Performance>();
    const AnalysisRequest request{.frequencies = frequencies, .loss = loss};
    Unwatched unwatched;
    for (auto _ : state) {
        if (analyzeCircuit(circuit, request, unwatched, *performance) != ChainVerdict::done)
            state.SkipWithError("refused");
        benchmark::DoNotOptimize(*performance);
    }
    count_branches(state, static_cast<int>(state.range(0)));
}
BENCHMARK_CAPTURE(analysis, ladder, Ladder::polynomial, ElementLoss{})->Arg(30)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(analysis, lossy_ladder, Ladder::polynomial, ElementLoss{100, -500})
    ->Arg(50)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(analysis, traps, Ladder::traps, ElementLoss{})->Arg(30)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(analysis, compounds, Ladder::compounds, ElementLoss{})->Arg(20)->Unit(benchmark::kMicrosecond);

void plain_recursion(benchmark::State& state) {
    const int branches = static_cast<int>(state.range(0));
    const Circuit circuit = ladder(Ladder::polynomial, branches);
    const auto frequencies = points();
    for (auto _ : state) {
        for (const double f : frequencies) {
            std::complex<double> V = 1, I = 1.0 / 50;
            for (int i = 2; i < circuit.ilast; ++i) {
                const std::complex<double> x(0, 2 * std::numbers::pi * f * circuit.VALUE(i));
                if (i % 2 == 0) {
                    I += V * x;
                } else {
                    V += I * x;
                }
            }
            benchmark::DoNotOptimize(20 * std::log10(std::abs(V + 50.0 * I) / 2));
        }
    }
    count_branches(state, branches);
}
BENCHMARK(plain_recursion)->Arg(30)->Arg(50)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
