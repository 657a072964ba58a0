// The frequency response of a function.
//
// About its middle, M = (N - 1)/2 samples from either end, a response is a cosine series of the sums of taps that
// mirror each other and a sine series of their differences:
//
//     H = e^-jM theta (C + jS),   C = sum (h(i) + h(N+1-i)) cos m theta,   S = sum (h(i) - h(N+1-i)) sin m theta
//
// A symmetric function has one of the two, a real amplitude: its zeros are zeros, and its delay is M. The delay of
// another one is M - (C S' - S C')/(C^2 + S^2), a derivative, not a difference. The angles m theta are turned on from
// each other, for 32 samples by theta and then by 32 theta, whose cosine and sine are exact to their last digit: the
// error stays below 1e-14 of the sum of the taps' magnitudes.
#pragma once

#include <span>
#include <vector>

#include "fir/fir_filter.h"
#include "segment/response_rows.h"

namespace kavrel {

// Loss, phase and delay of function n at frequencies in Hz. On a zero the loss is infinite, phase and delay are the
// limits from the side of a quarter of the sampling frequency; where all taps are 0, they are 0 and M.
[[nodiscard]] std::vector<ResponsePoint> fir_frequency_response(const FirFilter& filter, int n,
                                                                std::span<const double> hertz);

}  // namespace kavrel
