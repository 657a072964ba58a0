// A digital low-pass made another filter by an allpass in place of z^-1: its roots, and where its frequencies go.
//
// With th half the angle of the low-pass edge, w1 and w2 those of the lower and the upper edge wanted, Z the
// low-pass's:
//
//   low-pass     Z = (z - alpha)/(1 - alpha z), alpha = sin(th - w2)/sin(th + w2)
//   high-pass    Z = -(z + alpha)/(1 + alpha z), alpha = -cos(th + w1)/cos(th - w1)
//   band-pass    a Z gives the z of (k + 1 + Z (k - 1)) z^2 - 2 alpha k (1 + Z) z + k - 1 + Z (k + 1) = 0,
//                k = tan th/tan(w2 - w1), alpha = cos(w2 + w1)/cos(w2 - w1)
//   band-reject  (k + 1 + Z (k - 1)) z^2 - 2 alpha (1 - Z) z + 1 - k - Z (k + 1) = 0, k = tan th tan(w2 - w1)
//
// H is a ratio in z^-1: zeros that are fewer than the poles are zeros at Z = 0 as well, and have their images.
// Source: A. G. Constantinides, "Spectral transformations for digital filters", Proc. IEE 117 (1970).
#pragma once

#include "approximation/digital_function.h"

namespace kavrel {

// Frequencies in Hz, between 0 and fs/2.
struct SpectralRequest {
    SpectralKind kind = SpectralKind::none;
    double fs = 0;
    double edge = 0;   // of the low-pass
    double lower = 0;  // pass band edges wanted; low-pass has the upper one alone, high-pass the lower one
    double upper = 0;
};

// The roots of a band-pass and of a band-reject filter are twice those of the low-pass, which may be 25 then. Each
// pole's chain is that of its images; the difference of the chains is the filter for high-pass and band-pass.
[[nodiscard]] DigitalFunction spectralTransform(const SpectralRequest& request, const DigitalFunction& low_pass);

// Where a frequency of the low-pass comes to lie, in Hz: two places for band-pass and band-reject, else both the same.
struct FrequencyImages {
    double lower = 0;
    double upper = 0;
};
[[nodiscard]] FrequencyImages images_of(const SpectralRequest& request, double low_pass_frequency);

}  // namespace kavrel
