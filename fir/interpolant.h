// A(x) by its values at NFCNS + 1 abscissae x = cos(2 pi f), in barycentric Lagrange form:
//
//     A(x) = sum of ad(j) y(j) / (x - x(j)) over sum of ad(j) / (x - x(j)),   ad(j) = 1 / prod 2 (x(j) - x(k)), k not j
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "fir/fir_grid.h"
#include "numeric/lanes.h"

namespace kavrel {

inline constexpr int max_fir_extrema = max_fir_functions + 1;

// Weighted error of A at points of free regions, where the bands have the deviation.
struct FreeLevel {
    double bound = 0;  // the error there, as long as it leaves the bands a deviation above 0
    double ratio = 0;  // else the error there over that in the bands
};

// For Real = double and long double.
template <class Real>
class Interpolant {
public:
    // The A whose weighted error on the points `extremal`, ascending, has alternating signs and is the deviation, or
    // the level of free regions. False when points coincide or none lies in a band.
    [[nodiscard]] bool fit(std::span<const FirPoint> extremal, FreeLevel free = {});
    [[nodiscard]] Real operator()(Real x) const;

    [[nodiscard]] Real deviation() const { return dev; }  // 0 or above
    [[nodiscard]] Real free_error() const { return free_dev; }
    [[nodiscard]] FreeLevel free_level() const { return level; }
    [[nodiscard]] int first_sign() const { return nu; }  // sign of the error A - DES at the first point
    [[nodiscard]] int count() const { return nodes; }    // of the extremal points: NFCNS + 1
    [[nodiscard]] Real abscissa(int j) const { return x_node[static_cast<std::size_t>(j - 1)]; }
    [[nodiscard]] Real ordinate(int j) const { return y[static_cast<std::size_t>(j - 1)]; }

private:
    using Lanes = LanesOf<Real>;
    using Row = std::array<Real, (max_fir_extrema + Lanes::count - 1) / Lanes::count * Lanes::count>;

    void lagrange_weights();
    [[nodiscard]] Real at_node(Real x) const;

    int nodes = 0, nu = 1;
    std::size_t padded = 0;
    Real dev = 0, free_dev = 0;
    FreeLevel level;
    alignas(16) Row x_node{}, ad{}, y{};  // abscissae, Lagrange weights, ordinates; the padding has weight 0
};

extern template class Interpolant<double>;
extern template class Interpolant<long double>;

}  // namespace kavrel
