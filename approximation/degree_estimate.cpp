#include "approximation/degree_estimate.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "approximation/characteristic.h"
#include "approximation/decibel.h"
#include "approximation/frequency_variable.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real round_off = std::numeric_limits<Real>::epsilon();
constexpr Real loss_tolerance = 1e-9L;  // dB: rounding of a loss that a degree reaches exactly
constexpr int search_limit = 2000;      // of the degree of a matching network, for the message

struct Counts {
    int at_zero = 0;
    int at_infinity = 0;
    int unit_elements = 0;
    [[nodiscard]] int degree() const { return at_zero + at_infinity + unit_elements; }
};
struct StopLosses {
    Real lower = 0;
    Real upper = 0;
};

bool is_flat(const FilterSpec& spec) { return spec.passbandType == maximally_flat; }

Real unit_function(const FilterSpec& spec, const XPlane& xp, const Counts& counts, Real x);
StopLosses stop_losses(const FilterSpec& spec, const XPlane& xp, const Counts& counts);
int prototype_estimate(const FilterSpec& spec, const XPlane& xp);
FrontVerdict estimate_low_pass(FilterSpec& spec, const XPlane& xp, Counts& counts);
Counts bandpass_estimate(const FilterSpec& spec, const XPlane& xp);
bool part_evenly(const FilterSpec& spec, const XPlane& xp, int degree, Counts& counts);
FrontVerdict estimate_band_pass(FilterSpec& spec, const XPlane& xp, Counts& counts);
bool unit_elements_alone(const FilterSpec& spec);
FrontVerdict count_sections(FilterSpec& spec, const XPlane& xp, Real mismatch);
FrontVerdict count_matching_zeros(FilterSpec& spec, const XPlane& xp, Real mismatch);

}  // namespace

FrontVerdict estimateMonotonicDegree(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const bool band = spec.filterType == band_pass;
    xp.zeroCount = 0;
    Counts counts{0, 0, spec.unitElements};
    if (spec.degree > 0) {
        const int left = std::max(0, spec.degree - spec.unitElements);
        counts.at_zero = band ? left / 2 : 0;
        counts.at_infinity = left - counts.at_zero;
    } else {
        const bool edges = xp.upper_stop > 1 && (!band || (xp.lower_stop > 0 && xp.lower_stop * xp.lower_stop < xp.a));
        const bool losses = spec.stopbandLoss > 0 && (!band || spec.upperStopLoss > 0);
        if (!edges || !losses) return refuse(spec, FrontFault::stopband_incorrect);
        const FrontVerdict verdict = band ? estimate_band_pass(spec, xp, counts) : estimate_low_pass(spec, xp, counts);
        if (!verdict.good()) return verdict;
        notes.degree_estimated = true;
    }
    spec.zerosAtZero = counts.at_zero;
    spec.zerosAtInfinity = counts.at_infinity;
    if (counts.degree() > max_degree) return refuse(spec, FrontFault::degree_too_high, counts.degree());

    const StopLosses reached = stop_losses(spec, xp, counts);
    notes.lower_loss_reached = static_cast<double>(reached.lower);
    notes.upper_loss_reached = static_cast<double>(reached.upper);
    return {};
}

int whole_degree(long double estimate) {
    constexpr int limit = std::numeric_limits<int>::max() / 4;
    return estimate < limit ? std::max(whole_part(estimate), -limit) : limit;
}

FrontVerdict estimateMatching(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const Real r1 = spec.sourceResistance, r2 = spec.loadResistance;
    if (!(r1 > 0 && r2 > 0) || r1 == r2) return refuse(spec, FrontFault::terminations_unfit);
    const Real mismatch = (r2 - r1) * (r2 - r1) / (4 * r1 * r2);  // c^2

    const bool alone = unit_elements_alone(spec);
    if (alone) {
        // The band lies evenly about the quarter-wave frequency: as high-pass it reaches from its lower edge to there.
        const double mirrored = spec.sampleFrequency - spec.upperPassEdge;
        const bool beyond = 2 * spec.upperPassEdge > spec.sampleFrequency;
        if (!(spec.lowerPassEdge > 0) || (beyond && mirrored < spec.lowerPassEdge)) spec.lowerPassEdge = mirrored;
        spec.filterType = high_pass;
    }
    spec.zerosAtZero = 0;
    if (const FrontVerdict verdict = normaliseEdges(spec, xp, notes); !verdict.good()) return verdict;

    xp.zeroCount = 0;
    if (spec.stopbandType == specified_zeros) {
        zerosToX(spec, xp);
    } else {
        if (mismatch <= xp.eps2) return refuse(spec, FrontFault::matching_not_needed);
        const FrontVerdict verdict =
            alone ? count_sections(spec, xp, mismatch) : count_matching_zeros(spec, xp, mismatch);
        if (!verdict.good()) return verdict;
        notes.degree_estimated = true;
    }
    spec.bandpassType = conventional;
    spec.stopbandType = specified_zeros;
    settleBandpass(spec, xp, notes);

    // F/Q is eps2 times a function that the counts and the zeros fix; at s = 0 it has to be c^2.
    xp.matched = true;
    xp.eps2 = 1;
    if (const FrontVerdict verdict = buildQ(spec, xp, notes); !verdict.good()) return verdict;
    xp.eps2 = mismatch / squared_characteristic(xp, alone ? 1.0L : xp.a);
    spec.bandEdgeLoss = static_cast<double>(loss_of(xp.eps2));
    if (const FrontVerdict verdict = buildQ(spec, xp, notes); !verdict.good()) return verdict;
    if (xp.upper_stop > 1) notes.upper_loss_reached = static_cast<double>(loss_at(xp, xp.upper_stop));
    return {};
}

namespace {

// F/Q of eps2 = 1 at x > 0 for zeros at a and at 1 and unit elements, without a parametric point.
//   flat          (x + g)^n/prod |x - x_i|, g^n = prod x_i for band-pass, 0 otherwise
//   equal ripple  cosh^2 of half the sum of ln |(sqrt x + m_i)/(sqrt x - m_i)|
// An x that rounding puts on a zero is as far from it as rounding is.
Real unit_function(const FilterSpec& spec, const XPlane& xp, const Counts& counts, Real x) {
    const Real ue = unit_element_root(spec, xp);
    const auto sum = [&](auto&& term) {
        Real total = 0;
        if (counts.at_zero > 0) total += counts.at_zero * term(xp.a);
        if (counts.at_infinity > 0) total += counts.at_infinity * term(Real{1});
        if (counts.unit_elements > 0) total += counts.unit_elements * term(ue);
        return total;
    };
    const auto distance = [](Real from, Real to) { return from == to ? round_off * from : from - to; };
    if (!is_flat(spec)) {
        const Real y = std::sqrt(x);
        const Real angle =
            sum([&](Real xi) { return std::log(std::fabs((y + std::sqrt(xi)) / distance(y, std::sqrt(xi)))); });
        const Real c = std::cosh(angle / 2);
        return c * c;
    }
    const int n = counts.degree();
    const bool band = spec.filterType == band_pass;
    const Real g = band ? std::exp(sum([](Real xi) { return std::log(xi); }) / static_cast<Real>(n)) : 0;
    return std::exp(n * std::log(x + g) - sum([&](Real xi) { return std::log(std::fabs(distance(x, xi))); }));
}

// Losses at the stop edges. A parametric point and the shift of an even equal ripple function ask for its roots.
StopLosses stop_losses(const FilterSpec& spec, const XPlane& xp, const Counts& counts) {
    const bool band = spec.filterType == band_pass;
    const bool parametric_point = band && spec.bandpassType != conventional;
    const bool shift = !band && !is_flat(spec) && spec.symmetryFlag == 1 && counts.degree() % 2 == 0 && !xp.matched;
    if (!parametric_point && !shift) {
        const auto loss = [&](Real w) {
            return w > 0 ? loss_of(xp.eps2 * unit_function(spec, xp, counts, x_of_frequency(w, xp.a))) : 0;
        };
        return {band ? loss(xp.lower_stop) : 0, loss(xp.upper_stop)};
    }
    FilterSpec trial = spec;
    XPlane plane = xp;
    FrontNotes notes;
    trial.zerosAtZero = counts.at_zero;
    trial.zerosAtInfinity = counts.at_infinity;
    trial.unitElements = counts.unit_elements;
    settleBandpass(trial, plane, notes);
    if (!buildQ(trial, plane, notes).good()) return {};
    const auto loss = [&](Real w) { return w > 0 ? loss_at(plane, w) : 0; };
    return {band ? loss(xp.lower_stop) : 0, loss(xp.upper_stop)};
}

FrontVerdict estimate_low_pass(FilterSpec& spec, const XPlane& xp, Counts& counts) {
    const int least = spec.unitElements > 0 ? 0 : 1;
    counts.at_infinity = std::max(least, prototype_estimate(spec, xp));
    const auto meets = [&](int n) {
        return stop_losses(spec, xp, {0, n, counts.unit_elements}).upper >= spec.stopbandLoss - loss_tolerance;
    };
    while (counts.degree() <= max_degree && !meets(counts.at_infinity)) ++counts.at_infinity;
    if (counts.degree() > max_degree) return refuse(spec, FrontFault::degree_too_high, counts.degree());
    return {};
}

// Rounded down at most, so that the least degree is found by going up. Equal ripple: the sum of the angles of all
// factors is arcosh sqrt L, each zero at infinity giving arcosh omega.
int prototype_estimate(const FilterSpec& spec, const XPlane& xp) {
    const Real omega = xp.upper_stop, ue = unit_element_root(spec, xp);
    const Real ratio = std::max<Real>(1, squared_of(spec.stopbandLoss) / xp.eps2);  // L
    const Real nue = spec.unitElements;
    Real n = 0;
    if (is_flat(spec)) {
        const Real t = nue > 0 ? nue * std::log(1 - (1 - 1 / (omega * omega)) * ue) : 0;
        n = (t + std::log(ratio)) / 2 / std::log(omega);
    } else {
        const Real t = std::sqrt(ue * (omega - 1) * (omega + 1)) / omega;
        const Real u = nue > 0 ? nue / 2 * std::log(std::fabs(1 - t) / (1 + t)) : 0;
        n = (std::acosh(std::sqrt(ratio)) + u) / std::acosh(omega);
    }
    return whole_degree(n + 0.99L);
}

FrontVerdict estimate_band_pass(FilterSpec& spec, const XPlane& xp, Counts& counts) {
    const int parity = spec.bandpassType == conventional ? 0 : 1;
    const int rough = bandpass_estimate(spec, xp).degree();
    const int estimate = std::max(rough + (rough + parity) % 2, 2 + parity);  // a parametric one has a root more
    const int highest = max_degree - (max_degree + parity) % 2;
    int degree = std::min(estimate, highest);
    bool found = part_evenly(spec, xp, degree, counts);
    while (!found && degree < highest) found = part_evenly(spec, xp, degree += 2, counts);
    if (!found) return refuse(spec, FrontFault::degree_too_high, std::max(estimate, highest + 2));
    while (degree >= 4 + parity && part_evenly(spec, xp, degree - 2, counts)) degree -= 2;
    return {};
}

// Of the partings of a degree with both losses the one whose counts at zero and at infinity differ least, and of two
// such the one with more in hand: with even counts the filter is a low-pass mapped to the band, and has its
// terminations. A zero that goes from infinity to zero raises the lower loss and lowers the upper one, so a parting
// that misses one of them rules out those beyond it. A parametric point depends on the parity of the counts besides, if
// the number of unit elements is odd.
bool part_evenly(const FilterSpec& spec, const XPlane& xp, int degree, Counts& counts) {
    struct Range {
        int least, most;  // of the count at zero
    };
    const int zeros = degree - counts.unit_elements;
    if (zeros < 0) return false;
    std::array<Range, 2> open{Range{0, zeros}, Range{0, zeros}};
    const bool by_parity = spec.bandpassType != conventional && counts.unit_elements % 2 == 1;
    Real in_hand = -2 * loss_tolerance;
    bool found = false;
    for (int excess = zeros % 2; excess <= zeros && !found; excess += 2) {
        for (const int difference : {-excess, excess}) {
            const Counts here{(zeros + difference) / 2, (zeros - difference) / 2, counts.unit_elements};
            Range& range = open[by_parity ? static_cast<std::size_t>(here.at_zero % 2) : 0];
            if (here.at_zero < range.least || here.at_zero > range.most) continue;
            const StopLosses losses = stop_losses(spec, xp, here);
            const Real lower = losses.lower - spec.stopbandLoss, upper = losses.upper - spec.upperStopLoss;
            if (lower < -loss_tolerance) range.least = here.at_zero + 1;
            if (upper < -loss_tolerance) range.most = here.at_zero - 1;
            const Real least = std::min(lower, upper);
            if (least <= in_hand + loss_tolerance) continue;
            in_hand = least;
            counts = here;
            found = true;
        }
    }
    return found;
}

// Two linear equations for the counts: far in a stopband the squared function is the product of the factors alone,
// equal ripple with a quarter of it.
Counts bandpass_estimate(const FilterSpec& spec, const XPlane& xp) {
    const Real log_eps = std::log(xp.eps2);
    const Real ripple = is_flat(spec) ? 0 : 2 * std::numbers::ln2_v<Real>;
    const Real b_lower = std::log(squared_of(spec.stopbandLoss)) - log_eps + ripple;
    const Real b_upper = std::log(squared_of(spec.upperStopLoss)) - log_eps + ripple;
    const Real x_lower = x_of_frequency(xp.lower_stop, xp.a), x_upper = x_of_frequency(xp.upper_stop, xp.a);
    const Real nue = spec.unitElements;
    Real flat_point = std::sqrt(xp.a);

    Real n0 = 0, ni = 0;
    for (int turn = 1; turn <= (is_flat(spec) ? 2 : 1); ++turn) {
        const auto term = [&](Real x, Real root) {
            if (is_flat(spec)) return std::log((flat_point + x) / std::fabs(x - root));
            return std::log((std::sqrt(root) + std::sqrt(x)) / std::fabs(std::sqrt(x) - std::sqrt(root)));
        };
        const auto rest = [&](Real b, Real x) { return nue > 0 ? b - nue * term(x, xp.ueX) : b; };
        const Real l0 = term(x_lower, xp.a), li = term(x_lower, 1), u0 = term(x_upper, xp.a), ui = term(x_upper, 1);
        const Real bl = rest(b_lower, x_lower), bu = rest(b_upper, x_upper);
        const Real determinant = l0 * ui - li * u0;
        n0 = (bl * ui - li * bu) / determinant;
        ni = (l0 * bu - bl * u0) / determinant;
        if (n0 < 0) n0 = 0, ni = std::max({Real{0}, bl / li, bu / ui});
        if (ni < 0) ni = 0, n0 = std::max({Real{0}, bl / l0, bu / u0});
        const Real n = n0 + ni + nue;
        if (n > 0) flat_point = std::pow(xp.a, n0 / n) * (nue > 0 ? std::pow(xp.ueX, nue / n) : 1);
    }
    return {whole_degree(n0 + 0.99L), whole_degree(ni + 0.99L), spec.unitElements};
}

bool unit_elements_alone(const FilterSpec& spec) {
    if (spec.medium != microwave) return false;
    if (spec.stopbandType != specified_zeros) return !(spec.upperStopEdge > 0);
    return spec.zerosAtInfinity == 0 && spec.zeroCount == 0 && spec.unitElements > 0;
}

// Stepped transmission line: F/Q at s = 0, x = 1 of the high-pass, is eps2 T_n^2(b) or eps2 b^(2n), b = 1/cos theta.
FrontVerdict count_sections(FilterSpec& spec, const XPlane& xp, Real mismatch) {
    const Real b = 1 / std::sqrt(xp.ueX);
    const Real asked = std::sqrt(mismatch / xp.eps2);
    const Real n = is_flat(spec) ? std::log(asked) / std::log(b) : std::acosh(asked) / std::acosh(b);
    spec.unitElements = std::max(1, whole_degree(n + 0.9999L));
    spec.zerosAtInfinity = 0;
    if (spec.unitElements > max_degree) return refuse(spec, FrontFault::degree_too_high, spec.unitElements);
    return {};
}

// The least even number of zeros at infinity and unit elements (microwave alone) for which the terminations enforce no
// more than the band-edge loss, and the stopband loss is reached; of equal numbers the one with most in hand.
FrontVerdict count_matching_zeros(FilterSpec& spec, const XPlane& xp, Real mismatch) {
    const bool stop = xp.upper_stop > 0;
    if (spec.upperStopEdge > 0 && !(xp.upper_stop > 1 && spec.upperStopLoss > 0)) {
        return refuse(spec, FrontFault::stopband_incorrect);
    }
    const Real wanted = stop ? squared_of(spec.upperStopLoss) : 0;
    const Real x_stop = stop ? x_of_frequency(xp.upper_stop, xp.a) : 0;
    const auto part = [&](int n) {
        Real best = -1e-12L;  // logarithm of what is in hand, less rounding
        bool found = false;
        for (int nue = 0; nue <= (spec.medium == microwave ? n : 0); ++nue) {
            const Counts counts{0, n - nue, nue};
            const Real eps2 = mismatch / unit_function(spec, xp, counts, xp.a);
            Real in_hand = std::log(xp.eps2 / eps2);
            if (stop) in_hand = std::min(in_hand, std::log(eps2 * unit_function(spec, xp, counts, x_stop) / wanted));
            if (in_hand < best) continue;
            best = in_hand;
            found = true;
            spec.zerosAtInfinity = counts.at_infinity;
            spec.unitElements = nue;
        }
        return found;
    };
    for (int n = 2; n <= max_degree; n += 2) {
        if (part(n)) return {};
    }
    if (!part(search_limit)) return refuse(spec, FrontFault::matching_not_needed);
    int low = max_degree, high = search_limit;
    while (high - low > 2) {
        const int middle = (low + high) / 4 * 2;
        (part(middle) ? high : low) = middle;
    }
    return refuse(spec, FrontFault::degree_too_high, high);
}

}  // namespace

}  // namespace kavrel
