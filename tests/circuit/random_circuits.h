// Random circuits of given kinds of branches.
#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "circuit/branch_kinds.h"
#include "circuit/chain_analysis.h"
#include "circuit/circuit.h"

namespace kavrel::testing {

inline ChainVerdict analyse_unwatched(const Circuit& circuit, const AnalysisRequest& request, Performance& result) {
    Unwatched unwatched;
    return analyzeCircuit(circuit, request, unwatched, result);
}

// All kinds of branches that a circuit may have, but resistors.
inline std::vector<BranchId> kinds_of(CircuitKind circuit_kind) {
    const bool microwave = circuit_kind == CircuitKind::microwave;
    std::vector<BranchId> ids;
    for (const BranchKind& kind : branch_kinds) {
        const bool fits = microwave ? !kind.equalizer() : kind.structure != Structure::line;
        if (fits && kind.id != BranchId::resistor) ids.push_back(kind.id);
    }
    return ids;
}

struct CircuitMaker {
    std::mt19937 engine;
    double negative_share = 0;  // of elements

    explicit CircuitMaker(unsigned seed) : engine(seed) {}

    double uniform(double from, double to) { return std::uniform_real_distribution<double>(from, to)(engine); }
    int whole(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine); }
    double value() {
        const double magnitude = std::exp(uniform(std::log(0.2), std::log(5.0)));
        return uniform(0, 1) < negative_share ? -magnitude : magnitude;
    }

    std::vector<double> values(BranchId id) {
        std::vector<double> v(branch_kinds[id].cells.size());
        std::generate(v.begin(), v.end(), [&] { return value(); });
        const bool triplet = branch_kinds[id].structure == Structure::triplet;
        if (triplet && whole(0, 3) == 0) v[2] = absent_inductor;
        if (triplet && whole(0, 3) == 0) v[3] = 0;
        return v;
    }
    Quadruplet quadruplet() {
        Quadruplet q;
        for (int i = 1; i <= 4; ++i) {
            for (int j = i + 1; j <= 4; ++j) {
                const bool there = j == i + 1 || whole(0, 1) == 1;
                q.M(i, j) = whole(0, 1);
                (q.M(i, j) == 1 ? q.XK(i, j) : q.XC(i, j)) = there ? value() : 0;
            }
        }
        for (int i = 2; i <= 3; ++i) {
            q.YK(i) = value();
            q.YC(i) = value();
        }
        return q;
    }

    // Appends a branch; false when the store is full.
    bool append(Circuit& circuit, BranchId id) {
        int k = circuit.klast + whole(1, 2);
        if (id == BranchId::quadruplet) return insert_quadruplet(circuit, k, quadruplet()) == CircuitVerdict::done;
        return insert_values(circuit, k, id, values(id)) == CircuitVerdict::done;
    }

    // `count` branches of the given kinds behind a load; with `source` a second termination.
    Circuit circuit(const std::vector<BranchId>& kinds, int count, bool source) {
        Circuit made;
        made.fnorm = 0.2;
        int k = 1;
        (void)insertBranch(made, k, uniform(0.5, 2), 0, BranchId::resistor);
        for (int i = 0; i < count; ++i)
            (void)append(made, kinds[static_cast<std::size_t>(whole(0, static_cast<int>(kinds.size()) - 1))]);
        k = made.klast + 1;
        if (source) (void)insertBranch(made, k, uniform(0.5, 2), 0, BranchId::resistor);
        return made;
    }
};

}  // namespace kavrel::testing
