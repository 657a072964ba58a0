// The quadratic factors of a response.
//
// Zeros at -1 and 1 are divided out in 121 bits. What is left of a symmetric response is a series of cosines, a
// polynomial of half the degree in x = z + 1/z (fir/series_zeros.h): its real zeros from -2 to 2 are pairs on the unit
// circle, factors with b = 1 exactly; any other one is a zero together with its inverse. Double zeros on the circle,
// which rounding of the taps parts by half their digits, are put together again where the slope is 0, and zeros within
// 1e-9 of the circle go onto it, as long as the product allows it.
#pragma once

#include <span>

#include "fir/factors.h"
#include "shell/watcher.h"

namespace kavrel {

inline constexpr int fir_factor_taps = 513;        // longest response with factors
inline constexpr double product_tolerance = 1e-8;  // of the peak, that a product may miss the taps by

enum class ExtractionVerdict {
    extracted,
    all_zero,   // or a tap that is not finite
    too_long,   // of more than fir_factor_taps without the zeros at its ends
    not_found,  // the product misses the taps
    stopped,    // by the watcher
};

// Factors in the order of the angles of their zeros, serial numbers from 1, multiplier, delay and trailing; the rest of
// `factors` is as new. Only where they are extracted.
[[nodiscard]] ExtractionVerdict extract_factors(std::span<const double> taps, Watcher& watcher, FirFactors& factors);

}  // namespace kavrel
