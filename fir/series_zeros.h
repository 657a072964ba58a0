// The zeros of a polynomial, or of the series of cosines that a symmetric response has about its middle.
//
//     powers     sum over k = 0..n of c(k) z^k
//     cosines    c(0) + sum over k = 1..n of c(k) (w^k + w^-k), a polynomial of degree n in x = w + 1/w: zeros on the
//                unit circle, w = e^jt, are the real x = 2 cos t
//
// All zeros are approached at once in 80 bits; those that rounding leaves uncertain go on in 121.
// Source: O. Aberth, "Iteration methods for finding all zeros of a polynomial simultaneously", Math. Comp. 27 (1973);
// starts by D. A. Bini, Numer. Algorithms 13 (1996); the series and its slope by C. W. Clenshaw, MTAC 9 (1955).
#pragma once

#include <vector>

#include "numeric/long_real.h"
#include "shell/watcher.h"

namespace kavrel {

using TapReal = LongRealOf<36>;

enum class SeriesKind { powers, cosines };

struct TapSeries {
    SeriesKind kind = SeriesKind::powers;
    std::vector<TapReal> terms;  // [k] c(k); the first (of powers) and the last are not 0
};

// n zeros in z or x, in no order, close to conjugate pairs. They are as far as the search came: what its product is
// says whether they are good. Empty where a number is not finite, or the watcher stopped it.
struct SeriesZeros {
    std::vector<Complex<Wide>> at;
    std::vector<Wide> uncertain;  // relative; of an m-fold zero the m-th part of the digits is known
};
[[nodiscard]] SeriesZeros zeros_of(const TapSeries& series, Watcher& watcher);

// The same with each cluster of m uncertain zeros of powers as one m-fold zero, that of the derivative of order m - 1,
// which is a simple one there.
[[nodiscard]] SeriesZeros as_multiple_zeros(const TapSeries& powers, const SeriesZeros& zeros);

// The magnitude of a series of cosines at a real x from -2 to 2, over the sum of those of its terms.
[[nodiscard]] Wide level_at(const TapSeries& cosines, Wide x);

}  // namespace kavrel
