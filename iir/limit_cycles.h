// Limit cycles: what a section of the cascade may go on with by itself, when its input has ended.
//
// Without input a canonical section is v = q(-C1D v z^-1) + q(-C2D v z^-2), in both diagrams of "View/Design": the
// words that its delays hold, or their sum. Each product is brought to a whole number of steps by itself, so v answers
// to errors of half a step at most, one step a sample. It is therefore at most the sum of the magnitudes of the impulse
// response of 1/(1 + C1D z^-1 + C2D z^-2), and in the mean square at most the peak of its frequency response. Words
// that are cut off have larger errors, but towards 0: exhaustive runs stay below the same bounds.
//
// With a = |C1D|, b = C2D, r = sqrt b, and poles at r exp(+-j theta) where they are complex, that sum is
//     1/(1 - a + b)                                                          for real poles,
//     at most 1/(1 - r)^2, and at most (1 + r)/den, den = (1 - b) sin theta  for complex ones,
// and the peak is 1/(1 - a + b), at 0 or at half the sampling frequency, where the poles are real or 4 b <= a (1 + b),
// else 1/den.
#pragma once

#include <vector>

#include "iir/iir_filter.h"
#include "iir/iir_report.h"
#include "iir/word_results.h"

namespace kavrel {

// Of the denominators of a cascade, as they are: bounds are cut to whole steps. A pole that is not inside the unit
// circle leaves no bound: all three are infinite. The frequency is that of complex poles, or the end of the band where
// the peak is; the rms at the output is that of a wave of this frequency and the bound of the rms, behind the
// numerator. Method: J. L. Long and T. N. Trick, An absolute bound on limit cycles due to roundoff errors in digital
// filters, IEEE Transactions on Audio and Electroacoustics, 1973.
[[nodiscard]] std::vector<LimitCycle> limit_cycles(const IirFilter& filter);

[[nodiscard]] Lines limitCycleReport(const std::vector<LimitCycle>& cycles);

}  // namespace kavrel
