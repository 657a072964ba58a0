// The noise that rounding makes in a cascade of canonical sections, denominators first:
//
//     w_k = u_k - C1D(k) w_k z^-1 - C2D(k) w_k z^-2,   u_(k+1) = SC(k) w_k + C1N(k) w_k z^-1 + C2N(k) w_k z^-2
//
// In the first section three products are rounded before its delays, in each later one five (two of them the products
// of the numerator before), and two at the output; each rounding is white noise of power 1.
#pragma once

#include <optional>
#include <vector>

#include "iir/circle_mean.h"
#include "iir/iir_filter.h"

namespace kavrel {

// 3 `first` + 5 `others` + 2, of F(1)^2 G(1)^2 and the sum of the other F(k)^2 G(k)^2 (see CascadeNoise).
[[nodiscard]] constexpr double noise_power(double first, double others) { return 3 * first + 5 * others + 2; }
[[nodiscard]] double decibel_of(double power);

// |N_k|^2 and 1/|D_k|^2 of the sections over the unit circle, each over its mean there: so products of many of them
// stay in range. Factors that are not there are 1. The sections are to be stable.
struct SectionPowers {
    explicit SectionPowers(const CascadeForm& cascade);

    int count = 0;                                // sections
    std::vector<double> weights;                  // of the nodes
    std::vector<std::vector<double>> numerators;  // [k - 1] |N_k|^2 at the nodes, over its mean
    std::vector<std::vector<double>> inverses;    // 1/|D_k|^2
    std::vector<double> numerator_means;          // [k - 1]
    std::vector<double> inverse_means;            // [k - 1]
};

// Root mean squares that white noise of power 1 leaves; the input is that of the first section, behind CK.
struct CascadeNoise {
    Table<double, iir_section_limit> F;  // [k] of w_k, with the noise at the input
    Table<double, iir_section_limit> G;  // [k] of the output, with the noise at the input of section k
};

// The poles of each denominator are inside the unit circle.
[[nodiscard]] bool is_stable(const CascadeForm& cascade);

// None where a section is not stable.
[[nodiscard]] std::optional<CascadeNoise> noiseCore(const CascadeForm& cascade);

// The noise at the output in dB over that of one rounding, with the scale factors in force: signals are taken to have
// power 1 at each w_k, as scaling makes them. None where a section is not stable.
[[nodiscard]] std::optional<double> noiseGain(const CascadeForm& cascade);

// The scale factors that give each w_k power 1 for white noise of power 1 at the input; H stays with them. None where a
// section is not stable. The cascade is not scaled.
[[nodiscard]] std::optional<ScaleFactors> l_two_factors(const CascadeForm& cascade);

}  // namespace kavrel
