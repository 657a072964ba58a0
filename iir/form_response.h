// What a form does over frequency, by the coefficients of the form itself: H and its delay on the unit circle.
//
// A factor of second order is w times a0 w^-1 + a1 + a2 w with w = z^-1 = e^-j theta, that is
//
//     G = (a0 + a2) cos theta + a1 + j (a0 - a2) sin theta
//
// a sum of two numbers that the coefficients give almost exactly where poles crowd at z = 1 or -1. A polynomial of
// higher degree is w^(n/2) times such a sum of cosines and sines. Delays are derivatives, not differences: that of a
// factor is that of w less Im(G'/G), so a pair of zeros on the circle has exactly one sample.
#pragma once

#include <functional>
#include <span>

#include "iir/iir_request.h"
#include "segment/response_rows.h"

namespace kavrel {

struct FormResponse {
    int count = 0;
    bool has_delay = false;                            // not of the parallel form
    bool has_complement = false;                       // of the differential allpass form alone
    Table<ResponsePoint, analysis_points> filter;      // [i] 1 <= i <= count
    Table<ResponsePoint, analysis_points> complement;  // the other output of the differential allpass
};

// The response of a form that there is, or of the roots (natural modes), at 1 to 501 frequencies in Hz.
[[nodiscard]] FormResponse form_response(const IirFilter& filter, Implementation form, std::span<const double> hertz);

// The loss in dB alone, of a form that there is, at a frequency in Hz; infinite on a zero. What all frequencies share
// is worked out once. The filter has to stay as it is while the function is in use.
[[nodiscard]] std::function<double(double hertz)> loss_of_form(const IirFilter& filter, Implementation form);

}  // namespace kavrel
