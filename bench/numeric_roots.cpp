// Roots of 500 random sums of two products at degrees 5, 10, 20 and 50: time of one sum, the distribution of the times
// (p50, p90, p99 and the slowest, in us), and the worst relative error of a root by a Newton step in long double.
// Beside it the usual way, the eigenvalues of the companion matrix of the expanded sum.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <eigen3/Eigen/Eigenvalues>
#include <vector>

#include <benchmark/benchmark.h>

#include "numeric/guarded.h"
#include "numeric/scaled_value.h"
#include "numeric/sum_roots.h"
#include "tests/numeric/random_sums.h"

namespace kavrel {

namespace {

std::vector<testing::RandomSum> sums_of_degree(int degree) {
    RandomNumbers random(static_cast<unsigned>(degree));
    std::vector<testing::RandomSum> sums;
    for (int i = 0; i < 500; ++i) {
        sums.push_back(testing::random_sum(random, static_cast<testing::SumKind>(i % 4), degree));
    }
    return sums;
}

// |S/(x S')| of the worst root.
double worst_error(const testing::RandomSum& sum, const WideRootSet& roots) {
    Wide worst = 0;
    for (int i = 1; i <= roots.count; ++i) {
        const Complex<Wide> x = roots.root(i);
        const ScaledPair<Wide> a = scaledProductAndDerivative(sum.A, x);
        const ScaledPair<Wide> b = scaledProductAndDerivative(sum.B, x);
        const int shift = b.exponent - a.exponent;
        const Wide value = cabs(a.value + shifted(b.value, shift));
        const Wide slope = cabs(a.derivative + shifted(b.derivative, shift)) * cabs(x);
        if (slope > 0) worst = std::max(worst, value / slope);
    }
    return static_cast<double>(worst);
}

template <class Solve>
void measure(benchmark::State& state, Solve solve) {
    const std::vector<testing::RandomSum> sums = sums_of_degree(static_cast<int>(state.range(0)));
    std::vector<double> times;
    double worst = 0;
    int refused = 0;
    for (const auto& sum : sums) {
        WideRootSet R;
        const auto start = std::chrono::steady_clock::now();
        const bool good = solve(sum, R);
        times.push_back(std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count());
        if (good) worst = std::max(worst, worst_error(sum, R));
        refused += good ? 0 : 1;
    }
    std::sort(times.begin(), times.end());
    const auto share = [&](double p) {
        return times[static_cast<std::size_t>(p * static_cast<double>(times.size() - 1))];
    };
    state.counters["p50"] = share(0.5);
    state.counters["p90"] = share(0.9);
    state.counters["p99"] = share(0.99);
    state.counters["slowest"] = share(1);
    state.counters["error"] = worst;
    state.counters["refused"] = refused;

    std::size_t i = 0;
    for (auto _ : state) {
        WideRootSet R;
        benchmark::DoNotOptimize(solve(sums[i++ % sums.size()], R));
        benchmark::DoNotOptimize(R);
    }
}

void solve_sum(benchmark::State& state) {
    SumWorkspace ws;
    measure(state, [&](const testing::RandomSum& sum, WideRootSet& R) { return solveSum(sum.A, sum.B, R, ws).good(); });
}

void companion_matrix(benchmark::State& state) {
    measure(state, [](const testing::RandomSum& sum, WideRootSet& R) {
        const Polynomial a = expandRoots(sum.A);
        const Polynomial b = expandRoots(sum.B);
        const int n = std::max(a.degree, b.degree);
        std::vector<double> c;  // highest power first
        for (int i = 0; i <= n; ++i) {
            const int ia = i - n + a.degree + 1;
            const int ib = i - n + b.degree + 1;
            c.push_back(static_cast<double>((ia >= 1 ? a.re(ia) : 0) + (ib >= 1 ? b.re(ib) : 0)));
        }
        std::size_t first = 0;
        while (first + 1 < c.size() && c[first] == 0) ++first;
        const auto m = static_cast<Eigen::Index>(c.size() - 1 - first);
        if (m == 0) return true;
        Eigen::MatrixXd companion = Eigen::MatrixXd::Zero(m, m);
        for (Eigen::Index i = 0; i < m; ++i) {
            companion(0, i) = -c[first + 1 + static_cast<std::size_t>(i)] / c[first];
            if (i > 0) companion(i, i - 1) = 1;
        }
        const Eigen::VectorXcd roots = companion.eigenvalues();
        R.multiplier = c[first];
        for (Eigen::Index i = 0; i < m; ++i) R.append({roots(i).real(), roots(i).imag()});
        return true;
    });
}

BENCHMARK(solve_sum)->Arg(5)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMicrosecond);
BENCHMARK(companion_matrix)->Arg(5)->Arg(10)->Arg(20)->Arg(50)->Unit(benchmark::kMicrosecond);

}  // namespace

}  // namespace kavrel
