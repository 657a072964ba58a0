#include "approximation/frequency_variable.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "approximation/decibel.h"
#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real pi = std::numbers::pi_v<Real>;

bool is_warped(const FilterSpec& spec) { return spec.medium != lumped; }
bool edges_given_warped(const FilterSpec& spec) { return !is_warped(spec) || spec.runFlag == -1; }
bool wants_band_edge_loss(const FilterSpec& spec);
FrontFault fault_of_request(const FilterSpec& spec);
FrontFault fault_of_polynomials(const FilterSpec& spec);
FrontFault fault_of_edges(const FilterSpec& spec);
Real ratio_to_norm(const FilterSpec& spec, Real hertz, Real norm);
FrontFault normalise_low_pass(FilterSpec& spec, XPlane& xp);
FrontFault normalise_high_pass(FilterSpec& spec, XPlane& xp);
FrontFault normalise_band_pass(FilterSpec& spec, XPlane& xp, FrontNotes& notes);
Real invert_factors(Table<double, factor_limit>& factors, int degree);
bool invert_given_function(FilterSpec& spec);
void set_xreal(const FilterSpec& spec, XPlane& xp);
Complex<Real> normalised_zero(const FilterSpec& spec, const XPlane& xp, Complex<Real> hertz);
Complex<Real> zero_in_hertz(const FilterSpec& spec, const XPlane& xp, Complex<Real> s);
Real largest_squared_root(const Table<double, factor_limit>& factors, int degree);
void rescale_factors(Table<double, factor_limit>& factors, int degree, Real p);

}  // namespace

FrontVerdict normaliseEdges(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    if (const FrontFault fault = fault_of_request(spec); fault != FrontFault::none) return refuse(spec, fault);
    if (spec.medium != microwave || spec.unitElements < 0) spec.unitElements = 0;

    xp.lower_stop = xp.upper_stop = 0;
    const FrontFault fault = spec.filterType == high_pass   ? normalise_high_pass(spec, xp)
                             : spec.filterType == band_pass ? normalise_band_pass(spec, xp, notes)
                                                            : normalise_low_pass(spec, xp);
    if (fault != FrontFault::none) return refuse(spec, fault);

    const Real theta = pi * xp.normFrequency / static_cast<Real>(spec.sampleFrequency);
    xp.warp = is_warped(spec) ? std::tan(theta) / xp.normFrequency : 0;
    // Q has the unit element at S^2 = 1, s^2 = 1/tan^2 theta: x = (1 + a tan^2)/(1 + tan^2).
    const Real c = std::cos(theta), s = std::sin(theta);
    xp.ueX = spec.medium == microwave ? c * c + xp.a * s * s : 0;
    xp.eps2 = wants_band_edge_loss(spec) || spec.bandEdgeLoss > 0 ? squared_of(spec.bandEdgeLoss) : 0;
    set_xreal(spec, xp);
    return {};
}

void zerosToX(const FilterSpec& spec, XPlane& xp) {
    xp.zeroCount = spec.zeroCount;
    for (int i = 1; i <= spec.zeroCount; ++i) {
        const Complex<Real> s = normalised_zero(spec, xp, {spec.FZR(i), spec.FZI(i)});
        const Complex<Real> square{(s.re - s.im) * (s.re + s.im), 2 * s.re * s.im};
        const Complex<Real> one{1, 0}, offset{xp.a, 0};
        const Complex<Real> x = spec.filterType == high_pass ? cdiv(one, one + square, solver_decades)
                                                             : cdiv(square + offset, square + one, solver_decades);
        xp.ARR(i) = x.re;
        xp.ARI(i) = std::fabs(x.im);
    }
}

void zerosToFrequency(FilterSpec& spec, const XPlane& xp) {
    spec.zeroCount = xp.zeroCount;
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> x{xp.ARR(i), xp.ARI(i)};
        const Complex<Real> numerator{x.re - xp.a, x.im}, denominator{1 - x.re, -x.im};
        const Complex<Real> square = spec.filterType == high_pass ? cdiv(denominator, numerator, solver_decades)
                                                                  : cdiv(numerator, denominator, solver_decades);
        const Complex<Real> hertz = zero_in_hertz(spec, xp, csqrt(square));
        spec.FZR(i) = static_cast<double>(std::fabs(hertz.re));
        spec.FZI(i) = static_cast<double>(std::fabs(hertz.im));
    }
}

int overall_degree(const FilterSpec& spec, const XPlane& xp) {
    int n = spec.zerosAtZero + spec.zerosAtInfinity + spec.unitElements;
    for (int i = 1; i <= xp.zeroCount; ++i) n += xp.ARI(i) == 0 ? 2 : 4;
    return n;
}

void settleBandpass(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    spec.degree = overall_degree(spec, xp);
    spec.degreeParity = spec.degree % 2;
    if (spec.filterType != band_pass) return;

    if (spec.bandpassType == conventional && spec.degreeParity == 1) {
        spec.bandpassType = parametric;
        notes.reset_to_parametric = true;
    }
    if (spec.medium == microwave && spec.unitElements % 2 == 1) {
        const Real root = std::sqrt(xp.ueX);
        Real moved = xp.xReal;
        if (spec.zerosAtInfinity % 2 == 0) moved *= root;
        if (spec.zerosAtZero % 2 == 0) moved = root;
        if (moved != xp.xReal && moved > xp.a && moved < 1) {
            xp.xReal = moved;
            const Real ratio = std::sqrt((moved - xp.a) / (1 - moved));
            spec.freal = static_cast<double>(true_frequency(spec, xp, ratio));
            notes.freal_modified = spec.bandpassType == parametric;
        }
    }
    if (spec.freal == 0.0) spec.freal = std::sqrt(spec.lowerPassEdge * spec.upperPassEdge);
}

bool rescaleForPrecision(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    if (spec.medium != lumped || spec.centerFrequency != 0.0) return false;
    const Real v = largest_squared_root(spec.denominatorFactors, spec.denominatorDegree);
    if (v <= 0 || (v > 0.5L && v < 2)) return false;

    const bool inverted = spec.filterType == high_pass;
    const Real p = v * (inverted ? 1.1L : 0.9L);
    const Real step = inverted ? 1 / std::sqrt(p) : std::sqrt(p);
    xp.normFrequency *= step;
    spec.upperPassEdge = static_cast<double>(xp.normFrequency);
    spec.lowerPassEdge = static_cast<double>(spec.lowerPassEdge * step);
    xp.lower_stop /= std::sqrt(p);
    xp.upper_stop /= std::sqrt(p);
    rescale_factors(spec.denominatorFactors, spec.denominatorDegree, p);
    for (int i = 1; i <= xp.zeroCount; ++i) {
        const Complex<Real> x = rescaledRoot({xp.ARR(i), xp.ARI(i)}, p, xp.a);
        xp.ARR(i) = x.re;
        xp.ARI(i) = std::fabs(x.im);
    }
    notes.rescaled = true;
    return true;
}

Complex<Real> rescaledRoot(Complex<Real> x, Real p, Real a) {
    const Complex<Real> numerator = (1 - a * p) * x + Complex<Real>{(p - 1) * a, 0};
    const Complex<Real> denominator = (1 - p) * x + Complex<Real>{p - a, 0};
    return cdiv(numerator, denominator, solver_decades);
}

Real unit_element_root(const FilterSpec& spec, const XPlane& xp) {
    return spec.filterType == high_pass ? 1 - xp.ueX : xp.ueX;
}

Real x_of_frequency(Real w, Real a) {
    if (w == 1) return static_cast<Real>(infinite_part);
    return (a - w * w) / ((1 - w) * (1 + w));
}

Real true_frequency(const FilterSpec& spec, const XPlane& xp, Real w) {
    const Real mapped = xp.normFrequency * (spec.filterType == high_pass ? 1 / w : w);
    if (edges_given_warped(spec)) return mapped;
    return static_cast<Real>(spec.sampleFrequency) * std::atan(xp.warp * mapped) / pi;
}

Real normalised_frequency(const FilterSpec& spec, const XPlane& xp, Real hertz) {
    const Real ratio = ratio_to_norm(spec, hertz, xp.normFrequency);
    return spec.filterType == high_pass ? 1 / ratio : ratio;
}

namespace {

bool wants_band_edge_loss(const FilterSpec& spec) {
    return spec.filterType != linear_phase_low_pass && spec.passbandType != functional_passband;
}

FrontFault fault_of_request(const FilterSpec& spec) {
    if (spec.filterType < low_pass || spec.filterType > band_pass) return FrontFault::filter_type_incorrect;
    if (const FrontFault fault = fault_of_edges(spec); fault != FrontFault::none) return fault;
    if (spec.passbandType < maximally_flat || spec.passbandType > sloping_passband)
        return FrontFault::passband_incorrect;
    if (wants_band_edge_loss(spec) && !(spec.bandEdgeLoss > 0)) return FrontFault::band_edge_loss_missing;
    const bool known_stopband = (spec.stopbandType >= monotonic_stopband && spec.stopbandType <= specified_zeros) ||
                                spec.stopbandType == functional_stopband;
    if (!known_stopband) return FrontFault::stopband_incorrect;
    return fault_of_polynomials(spec);
}

FrontFault fault_of_polynomials(const FilterSpec& spec) {
    if (spec.passbandType != functional_passband || spec.filterType == linear_phase_low_pass) return FrontFault::none;
    const int degree = spec.functionMultiplier != 0 ? spec.numeratorDegree : spec.denominatorDegree;
    return degree > 0 && degree <= factor_limit ? FrontFault::none : FrontFault::polynomial_incomplete;
}

FrontFault fault_of_edges(const FilterSpec& spec) {
    const double edge = spec.filterType == high_pass ? spec.lowerPassEdge : spec.upperPassEdge;
    if (!(edge > 0)) return FrontFault::cutoff_missing;
    if (is_warped(spec) && !(spec.sampleFrequency > 2 * edge)) return FrontFault::cutoff_missing;
    if (spec.filterType != band_pass) return FrontFault::none;
    if (spec.lowerPassEdge == spec.upperPassEdge) return FrontFault::edges_equal;
    return spec.lowerPassEdge >= 0 && spec.lowerPassEdge < spec.upperPassEdge ? FrontFault::none
                                                                              : FrontFault::cutoff_missing;
}

// f/N or tan(pi f/fs)/tan(pi N/fs); 0 for an edge at or beyond half the sampling frequency, which no stopband can have.
Real ratio_to_norm(const FilterSpec& spec, Real hertz, Real norm) {
    if (edges_given_warped(spec)) return hertz / norm;
    const Real fs = spec.sampleFrequency;
    if (!(2 * hertz < fs)) return 0;
    return std::tan(pi * hertz / fs) / std::tan(pi * norm / fs);
}

FrontFault normalise_low_pass(FilterSpec& spec, XPlane& xp) {
    xp.normFrequency = spec.upperPassEdge;
    xp.a = 0;
    spec.zerosAtZero = 0;
    xp.upper_stop = ratio_to_norm(spec, spec.upperStopEdge, xp.normFrequency);
    spec.upperStopEdge = static_cast<double>(xp.normFrequency * xp.upper_stop);
    return FrontFault::none;
}

FrontFault normalise_high_pass(FilterSpec& spec, XPlane& xp) {
    if (spec.passbandType == functional_passband && !invert_given_function(spec))
        return FrontFault::polynomial_incomplete;
    xp.normFrequency = spec.lowerPassEdge;
    xp.a = 0;
    spec.upperPassEdge = spec.lowerPassEdge;
    spec.lowerPassEdge = 0;
    spec.zerosAtInfinity = spec.zerosAtZero;
    spec.zerosAtZero = 0;
    const Real ratio = ratio_to_norm(spec, spec.lowerStopEdge, xp.normFrequency);
    xp.upper_stop = ratio > 0 ? 1 / ratio : 0;
    spec.upperStopEdge = static_cast<double>(xp.normFrequency * xp.upper_stop);
    return FrontFault::none;
}

FrontFault normalise_band_pass(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    xp.normFrequency = spec.upperPassEdge;
    const Real ratio = ratio_to_norm(spec, spec.lowerPassEdge, xp.normFrequency);
    xp.a = ratio * ratio;
    xp.lower_stop = ratio_to_norm(spec, spec.lowerStopEdge, xp.normFrequency);
    xp.upper_stop = ratio_to_norm(spec, spec.upperStopEdge, xp.normFrequency);
    spec.lowerPassEdge = static_cast<double>(ratio * xp.normFrequency);
    spec.lowerStopEdge = static_cast<double>(xp.lower_stop * xp.normFrequency);
    spec.upperStopEdge = static_cast<double>(xp.upper_stop * xp.normFrequency);
    if (!edges_given_warped(spec)) notes.preshifted = true;
    return FrontFault::none;
}

// s^2 + b s + c = (c/s'^2)(s'^2 + (b/c) s' + 1/c) at s = 1/s', s + c = (c/s')(s' + 1/c). Returns the product of the c,
// 0 where one of them is 0: the function has a root at infinity then and its degree would fall.
Real invert_factors(Table<double, factor_limit>& factors, int degree) {
    Real product = 1;
    for (int i = 2; i <= degree; i += 2) {
        const Real b = factors(i - 1), c = factors(i);
        product *= c;
        factors(i - 1) = static_cast<double>(b / c);
        factors(i) = static_cast<double>(1 / c);
    }
    if (degree % 2 == 1) {
        product *= factors(degree);
        factors(degree) = 1 / factors(degree);
    }
    return product;
}

// The zeros too turn over: each pair of q gives s^2 + |z|^2 = (|z|^2/s'^2)(s'^2 + 1/|z|^2).
bool invert_given_function(FilterSpec& spec) {
    const bool numerator_given = spec.functionMultiplier != 0;
    auto& factors = numerator_given ? spec.numeratorFactors : spec.denominatorFactors;
    Real multiplier = spec.functionMultiplier;
    const Real product = invert_factors(factors, numerator_given ? spec.numeratorDegree : spec.denominatorDegree);
    if (product == 0) return false;
    if (!numerator_given) return true;

    XPlane plane;
    plane.normFrequency = spec.lowerPassEdge;
    multiplier *= product;
    for (int i = 1; i <= spec.zeroCount; ++i) {
        const Complex<Real> s = normalised_zero(spec, plane, {spec.FZR(i), spec.FZI(i)});
        const Real square = s.re * s.re + s.im * s.im;
        multiplier /= s.re == 0 || s.im == 0 ? square : square * square;
    }
    spec.functionMultiplier = static_cast<double>(multiplier);
    return true;
}

// Freal lies on the real s axis: s = Freal/N. Without it the middle of the band counts, x = sqrt(a).
void set_xreal(const FilterSpec& spec, XPlane& xp) {
    xp.xReal = 0;
    if (spec.filterType != band_pass) return;
    const Real ratio = ratio_to_norm(spec, spec.freal, xp.normFrequency);
    const Real given = (xp.a + ratio * ratio) / (1 + ratio * ratio);
    const Real middle = xp.a > 0 ? std::sqrt(xp.a) : 0.5L;
    xp.xReal = ratio != 0 && given > 0 ? given : middle;
}

// Warped: tanh(pi (sigma + j omega)/fs) over tan(pi N/fs), with t = tanh(pi sigma/fs) and u = tan(pi omega/fs) equal to
// (t (1 + u^2) + j u (1 - t^2))/(1 + t^2 u^2).
Complex<Real> normalised_zero(const FilterSpec& spec, const XPlane& xp, Complex<Real> hertz) {
    const Real n = xp.normFrequency;
    if (edges_given_warped(spec)) return {hertz.re / n, hertz.im / n};
    const Real fs = spec.sampleFrequency;
    const Real t = std::tanh(pi * hertz.re / fs), u = std::tan(pi * hertz.im / fs);
    const Real d = (1 + t * t * u * u) * std::tan(pi * n / fs);
    return {t * (1 + u * u) / d, u * (1 - t * t) / d};
}

// Warped: fs/pi artanh(s tan(pi N/fs)).
Complex<Real> zero_in_hertz(const FilterSpec& spec, const XPlane& xp, Complex<Real> s) {
    if (edges_given_warped(spec)) return xp.normFrequency * s;
    const Real fs = spec.sampleFrequency;
    const Complex<Real> z = (xp.warp * xp.normFrequency) * s;
    const Real above = (1 + z.re) * (1 + z.re) + z.im * z.im, below = (1 - z.re) * (1 - z.re) + z.im * z.im;
    const Complex<Real> artanh{z.re == 0 ? 0 : std::log(above / below) / 4,
                               std::atan2(2 * z.im, 1 - z.re * z.re - z.im * z.im) / 2};
    return (fs / pi) * artanh;
}

// Of real pairs the larger root counts: r1 r2 = c, r1 + r2 = b.
Real largest_squared_root(const Table<double, factor_limit>& factors, int degree) {
    Real largest = 0;
    for (int i = 2; i <= degree; i += 2) {
        const Real half = static_cast<Real>(factors(i - 1)) / 2, c = factors(i);
        const Real disc = half * half - c;
        const Real root = std::fabs(half) + std::sqrt(std::max<Real>(disc, 0));
        largest = std::max(largest, disc > 0 ? root * root : c);
    }
    if (degree % 2 == 1) largest = std::max(largest, static_cast<Real>(factors(degree)) * factors(degree));
    return largest;
}

void rescale_factors(Table<double, factor_limit>& factors, int degree, Real p) {
    for (int i = 2; i <= degree; i += 2) {
        factors(i - 1) = static_cast<double>(factors(i - 1) / std::sqrt(p));
        factors(i) = static_cast<double>(factors(i) / p);
    }
    if (degree % 2 == 1) factors(degree) = static_cast<double>(factors(degree) / std::sqrt(p));
}

}  // namespace

}  // namespace kavrel
