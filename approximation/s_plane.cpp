#include "approximation/s_plane.h"

#include <cmath>
#include <numbers>

#include "approximation/frequency_variable.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/power_loss.h"
#include "approximation/predistortion.h"
#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real two_pi = 2 * std::numbers::pi_v<Real>;

void place_poles(const XPlane& x, bool inverted, Real unit, TransferFunction& t);
void place_zeros(const FilterSpec& spec, const XPlane& x, bool inverted, Real unit, TransferFunction& t);
double level_at(const TransferFunction& t, double w);
double edge_of_roots(Medium medium, const TransferFunction& t);

}  // namespace

TransferFunction xToFrequencyPlane(const FilterSpec& spec, const XPlane& x) {
    const bool inverted = spec.filterType == high_pass;
    const bool lumped_medium = spec.medium == Medium::lumped;
    TransferFunction t;
    t.normFrequency = static_cast<double>(two_pi * x.normFrequency);
    t.zerosAtZero = inverted ? spec.zerosAtInfinity : spec.zerosAtZero;
    t.zerosAtInfinity = inverted ? spec.zerosAtZero : spec.zerosAtInfinity;
    const Real unit = lumped_medium ? two_pi * x.normFrequency : Real{1};
    place_poles(x, inverted, unit, t);
    place_zeros(spec, x, inverted, unit, t);

    const auto edge = static_cast<double>(unit);
    if (spec.centerFrequency > 0) {
        t.gainConstant = level_at(t, spec.centerFrequency * static_cast<double>(unit / x.normFrequency));
    } else if (inverted) {
        t.gainConstant = 1;
    } else {
        t.gainConstant = level_at(t, spec.filterType == band_pass ? edge : 0.0);
    }
    constexpr double least_constant = 1e-8;
    const double constant = level_at(t, spec.filterType == linear_phase_low_pass ? 0.0 : edge) - spec.bandEdgeLoss;
    t.lossConstant = std::fabs(constant) > least_constant ? constant : 0.0;
    t.level = level_by_edge_loss(spec, t, lossOfE(x, 1));
    return t;
}

double level_by_edge_loss(const FilterSpec& spec, const TransferFunction& t, long double loss) {
    const Real edge = edge_of_roots(spec.medium, t);
    Real level = std::pow(Real{10}, -loss / 20);
    for (int i = 1; i <= t.poleCount; ++i) level *= std::hypot(t.POLES_RE(i) / edge, 1 - t.POLES_IM(i) / edge);
    for (int i = 1; i <= t.zeroCount; ++i) level /= std::hypot(t.ZEROS_RE(i) / edge, 1 - t.ZEROS_IM(i) / edge);
    const int turned = (spec.unitElements + 1) / 2;  // of two unit elements one has its zero on the right
    return static_cast<double>(turned % 2 == 0 ? level : -level);
}

double level_of_roots(Medium medium, const TransferFunction& t) {
    const Real edge = edge_of_roots(medium, t);
    return static_cast<double>(t.level * std::pow(edge, t.poleCount - t.zeroCount));
}

double loss_of_function(const FilterSpec& spec, const TransferFunction& t, double hertz, double q) {
    // s in units of the band edge
    const double edge = edge_of_roots(spec.medium, t);
    const double w = spec.medium == Medium::lumped
                         ? 2 * std::numbers::pi * hertz / edge
                         : std::tan(std::numbers::pi * hertz / spec.sampleFrequency) / edge_tangent(spec, t);
    const LossyPlane plane{.tan_edge = spec.medium == microwave ? edge_tangent(spec, t) : 0, .high_pass = false};
    const Complex<Real> moved = q > 0 ? with_losses({0, w}, q, plane) : Complex<Real>{0, w};
    const Complex<double> s{static_cast<double>(moved.re), static_cast<double>(moved.im)};
    // A product of 50 squared distances is beyond a double.
    const auto distances = [&](const auto& re, const auto& im, int count) {
        Real product = 1;
        for (int i = 1; i <= count; ++i) {
            const double x = s.re - re(i) / edge, y = s.im - im(i) / edge;
            product *= static_cast<Real>(x * x + y * y);
        }
        return product;
    };
    const Real poles = distances(t.POLES_RE, t.POLES_IM, t.poleCount);
    const Real zeros = distances(t.ZEROS_RE, t.ZEROS_IM, t.zeroCount);
    return static_cast<double>(10 * std::log10(poles / zeros)) - 20 * std::log10(std::fabs(t.level));
}

double frequency_of_root(const FilterSpec& spec, const TransferFunction& t, double omega) {
    if (spec.medium == Medium::lumped) return omega / (2 * std::numbers::pi);
    return spec.sampleFrequency / std::numbers::pi * std::atan(omega * edge_tangent(spec, t));
}

void scale_transfer(Medium medium, double factor, TransferFunction& transfer) {
    transfer.normFrequency *= factor;
    if (medium != lumped) return;
    for (int i = 1; i <= transfer.zeroCount; ++i) transfer.ZEROS_RE(i) *= factor, transfer.ZEROS_IM(i) *= factor;
    for (int i = 1; i <= transfer.poleCount; ++i) transfer.POLES_RE(i) *= factor, transfer.POLES_IM(i) *= factor;
    const double level = 20 * (transfer.poleCount - transfer.zeroCount) * std::log10(factor);
    transfer.gainConstant += level;
    transfer.lossConstant += level;
}

double edge_tangent(const FilterSpec& spec, const TransferFunction& t) {
    return std::tan(t.normFrequency / 2 / spec.sampleFrequency);
}

namespace {

void place_poles(const XPlane& x, bool inverted, Real unit, TransferFunction& t) {
    t.poleCount = x.ES.count;
    for (int i = 1; i <= x.ES.count; ++i) {
        if (x.ES.im(i) < 0) {
            t.POLES_RE(i) = t.POLES_RE(i - 1), t.POLES_IM(i) = -t.POLES_IM(i - 1);
            continue;
        }
        Complex<Real> s = hurwitzRoot(x.ES.root(i), x.a);
        if (inverted) s = cinv(s.re, s.im);
        t.POLES_RE(i) = static_cast<double>(-std::fabs(s.re) * unit);
        t.POLES_IM(i) = static_cast<double>(std::fabs(s.im) * unit);
    }
}

void place_zeros(const FilterSpec& spec, const XPlane& x, bool inverted, Real unit, TransferFunction& t) {
    const auto add = [&](Complex<Real> s) {
        ++t.zeroCount;
        t.ZEROS_RE(t.zeroCount) = static_cast<double>(s.re * unit);
        t.ZEROS_IM(t.zeroCount) = static_cast<double>(s.im * unit);
    };
    const auto zero_of_x = [&](Complex<Real> root) {
        Complex<Real> square = squareOfS(root, x.a);
        if (inverted) square = cinv(square.re, square.im);
        return csqrt(square);
    };

    for (int i = 1; i <= t.zerosAtZero; ++i) add({0, 0});
    for (int i = 1; i <= spec.unitElements; ++i) {
        const Complex<Real> s = zero_of_x({unit_element_root(spec, x), 0});
        add(i % 2 == 1 ? s : Complex<Real>{-s.re, -s.im});
    }
    for (int i = 1; i <= x.zeroCount; ++i) {
        const Complex<Real> s = zero_of_x({x.ARR(i), x.ARI(i)});
        const Complex<Real> opposite{s.re == 0 ? s.re : -s.re, s.im == 0 ? s.im : -s.im};
        add(s);
        if (x.ARI(i) == 0) {
            add(opposite);
            continue;
        }
        add(conjugate(s));
        add(conjugate(opposite));
        add(opposite);
    }
}

// 10 log10 of |jw - root|^2, poles minus zeros.
double level_at(const TransferFunction& t, double w) {
    double level = 0;
    for (int i = 1; i <= t.poleCount; ++i) level += 20 * std::log10(std::hypot(t.POLES_RE(i), w - t.POLES_IM(i)));
    for (int i = 1; i <= t.zeroCount; ++i) level -= 20 * std::log10(std::hypot(t.ZEROS_RE(i), w - t.ZEROS_IM(i)));
    return level;
}

// What the roots have at the band edge: rad/s where the medium is lumped.
double edge_of_roots(Medium medium, const TransferFunction& t) {
    return medium == Medium::lumped ? t.normFrequency : 1;
}

}  // namespace

}  // namespace kavrel
