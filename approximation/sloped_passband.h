// Pass bands whose loss rises or falls by a given number of dB an octave between the edges.
//
// E' made equal ripple over Q', which has m zeros more at zero and m fewer at infinity than Q, gives E'/Q = (E'/Q')
// w^(2m): a slope of m times 6.0206 dB an octave for lumped media, exact. Any other slope, and one for which the zeros
// are too few, is found by an exchange (slope_exchange.h). Media with tangents rise evenly over the true frequency.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/x_plane.h"

namespace kavrel {

// dB an octave of the true frequency that one zero moved from infinity to zero makes: 20 log10 2, and for media with
// tangents 20 log10(tan theta_u/tan theta_l)/log2(theta_u/theta_l), theta = pi f/fs. After normaliseEdges.
[[nodiscard]] long double slopeUnit(const FilterSpec& spec, const XPlane& x);

enum class SlopeFault { none, zero_too_low, infinity_too_low, no_function, no_poles, pole_on_axis };

struct [[nodiscard]] SlopeVerdict {
    SlopeFault fault = SlopeFault::none;
    FrontVerdict front{};  // of no_function
    SolveVerdict solve{};  // of no_poles

    [[nodiscard]] bool good() const { return fault == SlopeFault::none; }
};

// E of the slope spec.stopbandLoss and Q with the counts asked for; the level of E is open. FS is left over or empty.
// Where the zeros cannot give the ripple asked for, E has the least one that they can and 1 % of it more, which
// spec.bandEdgeLoss and eps2 become. Faults: zero_too_low, infinity_too_low where that is above 6 dB; no_function for a
// lower edge of 0, a zero of transmission on the pass band, and those of the builders of Q and F.
SlopeVerdict slopedPassband(FilterSpec& spec, XPlane& x, FrontNotes& notes, ExtractionWorkspace& ws);

}  // namespace kavrel
