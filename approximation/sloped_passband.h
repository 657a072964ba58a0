// Pass bands whose loss rises or falls by a given number of dB an octave between the edges.
//
// E' made flat over Q', which has m zeros more at zero and m fewer at infinity than Q, gives E'/Q = (E'/Q') w^(2m): a
// slope of m units, 6.0206 dB an octave for lumped media. Between two such slopes the weighted sum of both E is exact
// at the edges.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/x_plane.h"

namespace kavrel {

// dB an octave of the true frequency that one zero moved from infinity to zero makes: 20 log10 2, and for media with
// tangents 20 log10(tan theta_u/tan theta_l)/log2(theta_u/theta_l), theta = pi f/fs. After normaliseEdges.
[[nodiscard]] long double slopeUnit(const FilterSpec& spec, const XPlane& x);

struct SlopeSteps {
    int m = 0;          // whole units
    int m2 = 0;         // m, or the next one in the direction of the fraction
    long double f = 0;  // fraction, of the sign of the slope; taken as 0 within 0.01
};
[[nodiscard]] SlopeSteps slopeSteps(long double slope, long double unit);

enum class SlopeFault { none, zero_too_low, infinity_too_low, no_function, no_poles, pole_on_axis };

// zero_too_low or infinity_too_low when moving the zeros would leave fewer than none.
[[nodiscard]] SlopeFault checkMultiplicities(const FilterSpec& spec, SlopeSteps steps);

struct [[nodiscard]] SlopeVerdict {
    SlopeFault fault = SlopeFault::none;
    FrontVerdict front{};  // of no_function
    SolveVerdict solve{};  // of no_poles

    [[nodiscard]] bool good() const { return fault == SlopeFault::none; }
};

// E of the slope spec.stopbandLoss and Q with the counts asked for; the level of E is open. With E1 of m and E2 of m2
// units: E = g E2 + (1 - g) E1, g = (1 - a^|f|)/(1 - a), E2 times a when f < 0. FS is left over from the last E.
SlopeVerdict slopedPassband(const FilterSpec& spec, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws);

}  // namespace kavrel
