#include "approximation/equal_minima.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "approximation/angle_sum.h"
#include "approximation/characteristic.h"
#include "approximation/decibel.h"
#include "approximation/degree_estimate.h"
#include "approximation/elliptic.h"
#include "approximation/frequency_variable.h"
#include "approximation/stopband_floor.h"
#include "numeric/guarded.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real pi = std::numbers::pi_v<Real>;
constexpr Real round_off = 8 * std::numeric_limits<Real>::epsilon();
constexpr int tries = 10;

// What is asked of the low-pass, and its zeros.
struct Prototype {
    bool flat = false;
    int symmetry = 0;         // as FilterSpec::symmetryFlag
    Real omega = 0;           // stop edge, above 1
    Real discrimination = 0;  // (10^(As/10) - 1)/(10^(Ap/10) - 1) asked for
    bool estimate = false;    // of the degree
    int degree = 0;
    int at_infinity = 0;
    int count = 0;
    Table<Real, finite_zero_limit> x;
    Real edge = 0, scale = 1;  // stop edge before the last zero is moved, and by what it is moved
    Real reached = 0;          // discrimination in the stopband
};

Prototype prototype_of(const FilterSpec& spec, const XPlane& xp, double loss, int degree);
FrontVerdict find_zeros(Prototype& p, StopbandFloor wanted, FilterSpec& spec, XPlane& xp, FrontNotes& notes);
void take_zeros(const Prototype& p, FilterSpec& spec, XPlane& xp);
StopbandFloor floor_of(const Prototype& p, const FilterSpec& spec, const XPlane& xp);
void find_prototype(Prototype& p);
void place_zeros(Prototype& p);
Real degree_needed(const Prototype& p, Real omega);
int rounded_up(Real n);
Real original_edge(const Prototype& p);
void elliptic_prototype(Prototype& p);
void flat_prototype(Prototype& p);
Real smallest_zero(const AngleSum& angles, int degree);
bool collect_poles(const WideRootSet& E, Real omega2, Real stretch, AngleSum& angles);
FrontVerdict find_stretch(const WideRootSet& E, Real omega2, FilterSpec& spec, Real& stretch);

}  // namespace

FrontVerdict equalMinimaZeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const bool loss_missing = spec.degree == 0 && !(spec.stopbandLoss > 0);
    if (!(xp.upper_stop > 1) || loss_missing) return refuse(spec, FrontFault::stopband_incorrect);
    Prototype p = prototype_of(spec, xp, spec.stopbandLoss, spec.degree - spec.unitElements);
    p.omega = xp.upper_stop;
    return find_zeros(p, {.upper = spec.stopbandLoss}, spec, xp, notes);
}

FrontVerdict bandpassEqualMinimaZeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const bool edges = xp.lower_stop > 0 && xp.upper_stop > 0 && xp.a > 0;
    const double loss = std::max(spec.stopbandLoss, spec.upperStopLoss);
    if (!edges || (spec.degree == 0 && !(loss > 0))) return refuse(spec, FrontFault::stopband_incorrect);

    // The low-pass frequency of u = f/sqrt(fl fu) is (u - 1/u) sqrt r/(1 - r).
    const Real r = std::sqrt(xp.a);
    Prototype p = prototype_of(spec, xp, loss, (spec.degree - spec.unitElements) / 2);
    p.symmetry = std::min(p.symmetry, 0);
    p.omega = std::min(xp.upper_stop - r / xp.upper_stop, r / xp.lower_stop - xp.lower_stop) / (1 - r);
    if (!(p.omega > 1)) return refuse(spec, FrontFault::bandpass_stopband_incorrect);
    return find_zeros(p, {.lower = spec.stopbandLoss, .upper = spec.upperStopLoss}, spec, xp, notes);
}

FrontVerdict equalMinimaIteration(const WideRootSet& E, FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    if (!(xp.upper_stop > 0) || spec.unitElements > 0) return refuse(spec, FrontFault::stopband_incorrect);
    const Real omega2 = xp.upper_stop * xp.upper_stop;
    const int parity = E.count % 2;
    const bool two_at_infinity = parity == 0 && spec.symmetryFlag >= 0;

    Real stretch = 1;  // 1 + z_1 where z_1 goes to infinity
    if (two_at_infinity && E.count > 2) {
        if (const FrontVerdict verdict = find_stretch(E, omega2, spec, stretch); !verdict.good()) return verdict;
    }
    AngleSum angles;
    if (!collect_poles(E, omega2, stretch, angles)) return refuse(spec, FrontFault::minima_roots_missing);

    // With x' = 1 + z the zeros are at x = omega^2 x'/(stretch + x' (omega^2 - 1)).
    xp.zeroCount = 0;
    Real eta = 0;
    for (int turns = 1 + parity; turns < E.count; turns += 2) {
        eta = root_of_angle(angles, turns, E.count, eta);
        if (two_at_infinity && turns == 1) continue;
        const Real mapped = 1 + eta * eta;
        ++xp.zeroCount;
        xp.ARR(xp.zeroCount) = omega2 * mapped / (stretch + mapped * (omega2 - 1));
        xp.ARI(xp.zeroCount) = 0;
    }
    spec.zerosAtZero = 0;
    spec.zerosAtInfinity = two_at_infinity ? 2 : parity;
    spec.degree = E.count;
    spec.degreeParity = parity;
    fillQ(spec, xp);
    zerosToFrequency(spec, xp);
    xp.equal_minima_due = false;
    notes.zeros_found = true;
    return {};
}

namespace {

Prototype prototype_of(const FilterSpec& spec, const XPlane& xp, double loss, int degree) {
    Prototype p;
    p.flat = spec.passbandType == maximally_flat;
    p.symmetry = spec.symmetryFlag;
    p.discrimination = squared_of(loss) / xp.eps2;
    p.estimate = spec.degree == 0;
    p.degree = degree;
    return p;
}

// The prototype is exact for the zeros alone. Unit elements and a parametric point change the stopband too: the degree
// is raised then until the losses are there.
FrontVerdict find_zeros(Prototype& p, StopbandFloor wanted, FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    constexpr Real loss_tolerance = 1e-9L;
    if (!p.estimate && p.degree < 1) return refuse(spec, FrontFault::stopband_incorrect);
    const int times = spec.filterType == band_pass ? 2 : 1;
    const bool exact = spec.unitElements == 0 && (times == 1 || spec.bandpassType == conventional);
    find_prototype(p);
    for (;; ++p.degree, place_zeros(p)) {
        const int needed = times * p.degree + spec.unitElements;
        if (needed > max_degree) return refuse(spec, FrontFault::degree_too_high, needed);
        take_zeros(p, spec, xp);
        const StopbandFloor floor = floor_of(p, spec, xp);
        notes.lower_loss_reached = static_cast<double>(floor.lower);
        notes.upper_loss_reached = static_cast<double>(floor.upper);
        const Real in_hand = std::min(floor.lower - wanted.lower, floor.upper - wanted.upper);
        if (!p.estimate || exact || in_hand >= -loss_tolerance) break;
    }
    notes.zeros_found = true;
    notes.degree_estimated = p.estimate;
    return {};
}

// Band-pass: a low-pass zero at the frequency w_z, 1 - 1/x = 1/w_z^2, gives u = f/sqrt(fl fu) and 1/u with
// u - 1/u = w_z (1 - r)/sqrt r.
void take_zeros(const Prototype& p, FilterSpec& spec, XPlane& xp) {
    const bool band = spec.filterType == band_pass;
    spec.zerosAtInfinity = p.at_infinity;
    spec.zerosAtZero = band ? p.at_infinity : 0;
    xp.zeroCount = 0;
    xp.ARI = {};
    xp.prototype = {.degree = p.degree, .flat = p.flat, .edge = p.edge, .scale = p.scale};
    const Real r = std::sqrt(xp.a);
    for (int i = 1; i <= p.count; ++i) {
        if (!band) {
            xp.ARR(++xp.zeroCount) = p.x(i);
            continue;
        }
        const Real half = (1 - r) / (2 * std::sqrt(r)) / std::sqrt(1 - 1 / p.x(i));
        const Real u = half + std::sqrt(half * half + 1);
        for (const Real square : {1 / (u * u), u * u}) xp.ARR(++xp.zeroCount) = (r - square) / (1 / r - square);
    }
    zerosToFrequency(spec, xp);
}

// In the low-pass the least loss is that at the stop edge. A band-pass has it on the side of the nearer edge alone: the
// other edge may lie beyond the last minima. Where unit elements add to it besides, it is taken from Q and F.
StopbandFloor floor_of(const Prototype& p, const FilterSpec& spec, const XPlane& xp) {
    if (spec.unitElements == 0 && spec.filterType != band_pass) return {0, loss_of(xp.eps2 * p.reached)};
    FilterSpec trial = spec;
    XPlane plane = xp;
    FrontNotes notes;
    settleBandpass(trial, plane, notes);
    return buildQ(trial, plane, notes).good() ? stopbandFloor(plane) : StopbandFloor{};
}

// A degree that comes out even may need the next one, once two of its zeros have to lie at infinity.
void find_prototype(Prototype& p) {
    if (p.estimate) p.degree = rounded_up(degree_needed(p, p.omega));
    place_zeros(p);
    if (p.estimate && p.degree <= max_degree && rounded_up(degree_needed(p, original_edge(p))) > p.degree) {
        ++p.degree;
        place_zeros(p);
    }
}

void place_zeros(Prototype& p) {
    if (p.degree > max_degree) return;
    p.flat ? flat_prototype(p) : elliptic_prototype(p);
}

// Equal ripple: n = K(k) K'(k1)/(K'(k) K(k1)), k = 1/omega, k1^2 = 1/D. Maximally flat: arcosh sqrt D/arcosh omega.
Real degree_needed(const Prototype& p, Real omega) {
    if (!(p.discrimination > 1)) return 1;
    const Real root = std::sqrt(p.discrimination);
    if (p.flat) return std::acosh(root) / std::acosh(omega);
    const Real k = 1 / omega, k1 = 1 / root;
    const Real kc = std::sqrt((omega - 1) * (omega + 1)) / omega, k1c = std::sqrt((root - 1) * (root + 1)) / root;
    return arithmetic_geometric_mean(1, k) / arithmetic_geometric_mean(1, kc) * arithmetic_geometric_mean(1, k1c) /
           arithmetic_geometric_mean(1, k1);
}

int rounded_up(Real n) { return std::max(1, whole_degree(n + 0.9999L)); }

bool keeps_two_at_infinity(const Prototype& p) { return p.degree % 2 == 0 && p.symmetry >= 0; }

// Stop edge of the function with all its zeros finite from which the one with two zeros at infinity is made.
//   elliptic  x -> z x puts the last zero, 1/z, to infinity, and the stop edge from omega' to omega; with equal
//             terminations the first root of F, at omega'^2 (1 - z), goes to 0 besides:
//             omega'^2 (1 - z) omega + omega' z - omega = 0
//   flat      omega'^2 = omega^2 cos^2 theta + sin^2 theta, theta = pi/(2n)
Real original_edge(const Prototype& p) {
    if (!keeps_two_at_infinity(p)) return p.omega;
    const Real omega = p.omega;
    if (p.flat) {
        const Real theta = pi / (2 * p.degree);
        return std::hypot(omega * std::cos(theta), std::sin(theta));
    }
    Real edge = omega;
    Real before = 0, change_before = 0;
    for (int turn = 1; turn <= 100; ++turn) {
        const EllipticZeros zeros = ellipticZeros(edge, p.degree);
        const Real v = zeros.v(zeros.count), z = v * v;
        const Real wanted = p.symmetry == 1 ? 2 * omega / (z + std::sqrt(z * z + 4 * (1 - z) * omega * omega))
                                            : 1 / std::sqrt(1 - (1 - 1 / (omega * omega)) * z);
        const Real change = wanted - edge;
        Real next = wanted;
        if (turn > 1 && change != change_before) next = edge - change * (edge - before) / (change - change_before);
        if (!(next > 1 && next < omega)) next = wanted;
        if (std::fabs(next - edge) <= round_off * (edge - 1)) break;
        before = edge;
        change_before = change;
        edge = next;
    }
    return edge;
}

void elliptic_prototype(Prototype& p) {
    const Real edge = original_edge(p);
    const EllipticZeros zeros = ellipticZeros(edge, p.degree);
    const bool moved = keeps_two_at_infinity(p);
    const Real last = zeros.count > 0 ? zeros.v(zeros.count) : 1;
    const Real scale = moved ? last * last : 1;
    p.edge = edge, p.scale = scale;
    p.count = moved ? zeros.count - 1 : zeros.count;
    p.at_infinity = p.degree - 2 * p.count;
    for (int i = 1; i <= p.count; ++i) p.x(i) = scale / (zeros.v(i) * zeros.v(i));

    // cosh^2 of half the sum of ln |(y + m)/(y - m)| at the stop edge, before it is moved.
    const Real y = edge / std::sqrt((edge - 1) * (edge + 1));
    Real angle = p.degree % 2 == 1 ? std::log((y + 1) / std::max(y - 1, round_off)) / 2 : 0;
    for (int i = 1; i <= zeros.count; ++i) angle += std::log(std::fabs((y * zeros.v(i) + 1) / (y * zeros.v(i) - 1)));
    p.reached = std::pow(std::cosh(angle), Real{2});
}

void flat_prototype(Prototype& p) {
    const Real edge = original_edge(p);
    const Real theta = pi / (2 * p.degree);
    const bool moved = keeps_two_at_infinity(p);
    const auto reciprocal_square = [&](Real angle) { return std::pow(std::cos(angle) / edge, Real{2}); };
    const Real scale = moved ? 1 - std::pow(std::sin(theta) / edge, Real{2}) : 1;
    p.edge = edge, p.scale = scale;
    p.count = moved ? p.degree / 2 - 1 : p.degree / 2;
    p.at_infinity = p.degree - 2 * p.count;
    for (int i = 1; i <= p.count; ++i) p.x(i) = scale / (1 - reciprocal_square((2 * i - 1) * theta));
    p.reached = std::pow(std::cosh(p.degree * std::acosh(edge)), Real{2});
}

// x' = stretch x/(omega^2 - x (omega^2 - 1)) has the stopband on x' > 1 (stretch 1); m = sqrt(1 - x'). False for a pole
// there.
bool collect_poles(const WideRootSet& E, Real omega2, Real stretch, AngleSum& angles) {
    angles.count = 0;
    for (int i = 1; i <= E.count; ++i) {
        const Complex<Real> x = E.root(i);
        if (x.im < 0) continue;
        const Complex<Real> mapped = cdiv(stretch * x, Complex<Real>{omega2, 0} - (omega2 - 1) * x, solver_decades);
        const Complex<Real> m = csqrt(1 - mapped.re, -mapped.im);
        if (!(m.re > 0)) return false;
        angles.append(m, 1);
    }
    return true;
}

Real smallest_zero(const AngleSum& angles, int degree) {
    const Real eta = root_of_angle(angles, 1, degree, 0);
    return eta * eta;
}

// The stretch for which the first zero comes out at stretch - 1, by secants.
FrontVerdict find_stretch(const WideRootSet& E, Real omega2, FilterSpec& spec, Real& stretch) {
    constexpr Real wide_tolerance = 1e-17L, tolerance = 1e-6L;
    Real before = 0, excess_before = 0, excess = 0;
    for (int turn = 1; turn <= tries; ++turn) {
        AngleSum angles;
        if (!collect_poles(E, omega2, stretch, angles)) return refuse(spec, FrontFault::minima_roots_missing);
        excess = 1 + smallest_zero(angles, E.count) - stretch;
        if (std::fabs(excess) <= wide_tolerance * stretch) return {};
        const bool secant = turn > 1 && excess != excess_before;
        const Real step = secant ? -excess * (stretch - before) / (excess - excess_before) : excess;
        before = stretch;
        excess_before = excess;
        stretch += step;
        if (!(stretch >= 1)) stretch = 1 + (before - 1) / 2;
    }
    return std::fabs(excess) <= tolerance * stretch ? FrontVerdict{} : refuse(spec, FrontFault::minima_not_settled);
}

}  // namespace

}  // namespace kavrel
