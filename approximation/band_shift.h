// A low-pass moved unchanged to a centre frequency: a pole at sigma + j omega goes to sigma + j (omega + centre),
// and a conjugate comes along. The loss is symmetrical about the centre on a linear scale of frequency, as far as the
// band at minus the centre does not reach into the one at plus the centre.
#pragma once

#include <string_view>

#include "approximation/filter_spec.h"

namespace kavrel {

// What prevents the shift, or blank. `low` is the low-pass as designed, FZR and FZI its finite zeros.
[[nodiscard]] std::string_view shiftComplaint(const FilterSpec& low);

// The band-pass that `low` with these poles (rad/s) is moved to, as a functional request with e(s) given by its
// factors, twice the degree: edges centre -+ edge; a zero at f twice, at centre - f and centre + f; of the 2 nzi zeros
// that were at infinity int((nzi + 1)/2) at zero; factors s^2 + b s + c0 with b = -2 re/wu, c0 = b^2/4 + ((wc +
// im)/wu)^2, wu the new upper edge. odd_parametric adds a zero at infinity and a factor s + 1. No centre is left.
[[nodiscard]] FilterSpec shiftedBandpass(const FilterSpec& low, const TransferFunction& poles);

}  // namespace kavrel
