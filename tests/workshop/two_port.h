// Two-ports of circuits by their nodes, to compare what an edit has kept.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

#include "circuit/circuit.h"
#include "tests/circuit/nodal_reference.h"

namespace kavrel::testing {

// A, B/R, C R, D between the terminations at omega rad/sec, from the source to the load, R being the load: from the
// solutions with two loads.
inline std::array<LongComplex, 4> nodal_chain(const Circuit& circuit, long double omega) {
    const int cell = unpackBranch(circuit, 1).i1;
    Circuit other = circuit;
    other.VALUE(cell) /= 2;
    const auto one = NodalReference(circuit, {}, omega).solve(), two = NodalReference(other, {}, omega).solve();
    const long double R = circuit.VALUE(cell);
    return {2.0L * one.V - two.V, two.V - one.V, R * (2.0L * one.I - two.I), R * (two.I - one.I)};
}

// The largest difference of two such, relative to the largest of the first.
inline long double chain_difference(const std::array<LongComplex, 4>& a, const std::array<LongComplex, 4>& b) {
    long double largest = 0, difference = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        largest = std::max(largest, std::abs(a[i]));
        difference = std::max(difference, std::abs(a[i] - b[i]));
    }
    return std::isfinite(std::abs(a[0] + b[0])) ? difference / largest : NAN;
}

// The largest difference of the chain parameters relative to the largest of them, over frequencies about 1 rad/sec, for
// circuits with values about 1; `impedance` is the factor by which impedances at the source's port have grown.
inline double two_port_deviation(const Circuit& before, const Circuit& after, double impedance = 1) {
    long double worst = 0;
    const long double n = std::sqrt(static_cast<long double>(impedance));
    for (const long double omega : {0.17L, 0.43L, 0.71L, 0.97L, 1.31L, 1.83L, 2.9L}) {
        const auto b = nodal_chain(after, omega);
        const long double share =
            chain_difference(nodal_chain(before, omega), {b[0] / n, b[1] / n, b[2] * n, b[3] * n});
        worst = std::isnan(worst) || share <= worst ? worst : share;  // also where it is no number
    }
    return static_cast<double>(worst);
}

}  // namespace kavrel::testing
