#include "fir/interpolant.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kavrel {

// DES + alternating level / WT is a polynomial of degree nodes - 2: its divided difference over all nodes is zero. The
// weights ad alternate, too, so that the terms of all levels have one sign.
template <class Real>
bool Interpolant<Real>::fit(std::span<const FirPoint> extremal, FreeLevel free) {
    const std::size_t n = extremal.size();
    nodes = static_cast<int>(n);
    padded = (n + Lanes::count - 1) / Lanes::count * Lanes::count;
    level = free;
    for (std::size_t j = 0; j < n; ++j) x_node[j] = extremal[j].X;
    for (std::size_t j = n; j < padded; ++j) x_node[j] = 4, ad[j] = 0, y[j] = 0;
    lagrange_weights();

    Real dnum = 0, dden = 0, dfree = 0, sign = 1;
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        dnum += ad[j] * static_cast<Real>(extremal[j].DES);
        (extremal[j].free() ? dfree : dden) += sign * ad[j] / static_cast<Real>(extremal[j].WT);
    }
    const auto bound = static_cast<Real>(free.bound), ratio = static_cast<Real>(free.ratio);
    nu = dnum / dden > 0 ? -1 : 1;
    dev = (std::abs(dnum) - bound * std::abs(dfree)) / std::abs(dden);
    free_dev = bound;
    if (dfree != 0 && !(dev > 0)) {
        dev = std::abs(dnum) / (std::abs(dden) + ratio * std::abs(dfree));
        free_dev = ratio * dev;
    }
    sign = static_cast<Real>(nu);
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        const Real error = extremal[j].free() ? free_dev : dev;
        y[j] = static_cast<Real>(extremal[j].DES) + sign * error / static_cast<Real>(extremal[j].WT);
    }
    return dden != 0 && std::isfinite(dev);
}

// ad(k) = 1 / prod 2 (x(k) - x(j)), j not k. The factors are taken in strides, so that near and far ones mix and no
// partial product runs out of range; the factor 2 balances the capacity 1/2 of the interval -1 to 1.
template <class Real>
void Interpolant<Real>::lagrange_weights() {
    const auto n = static_cast<std::size_t>(nodes);
    const std::size_t jet = (n - 2) / 15 + 1;
    std::fill_n(ad.begin(), n, Real{1});
    for (std::size_t first = 0; first < jet; ++first) {
        for (std::size_t j = first; j < n; j += jet) {
            const Real xj = x_node[j];
            for (std::size_t k = 0; k < j; ++k) ad[k] *= 2 * (x_node[k] - xj);
            for (std::size_t k = j + 1; k < n; ++k) ad[k] *= 2 * (x_node[k] - xj);
        }
    }
    for (std::size_t k = 0; k < n; ++k) ad[k] = 1 / ad[k];
}

// A(x) = sum (ad y / (x - x_node)) / sum (ad / (x - x_node))
template <class Real>
Real Interpolant<Real>::operator()(Real x) const {
    typename Lanes::Type num{}, den{};
    for (std::size_t j = 0; j < padded; j += Lanes::count) {
        const auto term = Lanes::load(&ad[j]) / (x - Lanes::load(&x_node[j]));
        den += term;
        num += term * Lanes::load(&y[j]);
    }
    const Real a = Lanes::sum(num) / Lanes::sum(den);
    return std::isfinite(a) ? a : at_node(x);
}

template <class Real>
Real Interpolant<Real>::at_node(Real x) const {
    const auto end = x_node.begin() + nodes;
    const auto node = std::find(x_node.begin(), end, x);
    return node == end ? std::numeric_limits<Real>::quiet_NaN() : y[static_cast<std::size_t>(node - x_node.begin())];
}

template class Interpolant<double>;
template class Interpolant<long double>;

}  // namespace kavrel
