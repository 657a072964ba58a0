// Impedances and chain matrices of reactance networks by their coefficients in p = s^2.
#pragma once

#include <vector>

namespace kavrel {

// Coefficients of p^0, p^1, ...; no trailing zeros are asked for.
using Polynomial = std::vector<long double>;

[[nodiscard]] Polynomial operator+(const Polynomial& a, const Polynomial& b);
[[nodiscard]] Polynomial operator-(const Polynomial& a, const Polynomial& b);
[[nodiscard]] Polynomial operator*(const Polynomial& a, const Polynomial& b);
[[nodiscard]] Polynomial operator*(long double factor, const Polynomial& a);

// s numerator/denominator: an impedance or an admittance.
struct OddFunction {
    Polynomial numerator, denominator{1};

    friend OddFunction operator+(const OddFunction& a, const OddFunction& b);
};
[[nodiscard]] OddFunction reciprocal(const OddFunction& f);
[[nodiscard]] OddFunction parallel(const OddFunction& a, const OddFunction& b);  // impedances

// From the source to the load: A = a/n, B = s b/n, C = s c/n, D = d/n.
struct ReactanceChain {
    Polynomial a{1}, b{}, c{}, d{1}, n{1};

    friend ReactanceChain operator*(const ReactanceChain& source, const ReactanceChain& load);
};
[[nodiscard]] ReactanceChain series_chain(const OddFunction& impedance);
[[nodiscard]] ReactanceChain shunt_chain(const OddFunction& impedance);

// Of a symmetrical lattice with these arms.
[[nodiscard]] ReactanceChain lattice_chain(const OddFunction& Za, const OddFunction& Zb);

// Of admittances m(i, j)/s between nodes, as a node matrix: node 1 is the port at the load, node 2 that at the source,
// all others are inner ones. `m` by rows, `nodes` times `nodes`.
[[nodiscard]] ReactanceChain network_chain(const std::vector<Polynomial>& m, int nodes);

}  // namespace kavrel
