// The Gray-Markel lattice: reflection coefficients of the denominator, tap weights of the numerator.
#pragma once

#include <string_view>

#include "iir/iir_filter.h"

namespace kavrel {

inline constexpr std::string_view no_lattice_of_delay = "Delay line or equalizer\nNo lattice implementation";

enum class LatticeOutcome {
    made,
    no_poles,
    unstable,  // a tap weight of magnitude 1 or more
    lost,      // a reflection coefficient of 1, or so near to it that no digits are left
};
struct LatticeVerdict {
    LatticeOutcome outcome = LatticeOutcome::made;
    int stage = 0;  // where it ended: NP - n of the stage that makes tap n + 1
};

// With A and B the denominator and numerator in z^-1, both of degree m = max(NP, NZ) at first, for m down to 1:
//     GMMUL(m) = k = A's coefficient of z^-m, GMTAP(m + 1) = v = B's,
//     B <- B - v A~, A <- (A - k A~)/(1 - k^2), A~ being A with its coefficients in reversed order,
// and GMTAP(1) is the B that is left. Other than `made` leaves the filter as it was.
//
// A step down magnifies the rounding of A by up to 1/(1 - |k|), about the root of that on the average: a narrow filter
// of degree 50 loses 150 digits. So the chain runs in numbers of 60 digits, and again in longer ones where the product
// of all steps comes near to their length. Rounded to doubles the multipliers and taps give a response as good as the
// cascade's: the signals at the taps are orthogonal, and no large ones cancel.
// Source: A. H. Gray and J. D. Markel, "Digital lattice and ladder filter synthesis", IEEE Trans. AU-21 (1973).
[[nodiscard]] LatticeVerdict makeLattice(IirFilter& filter);

}  // namespace kavrel
