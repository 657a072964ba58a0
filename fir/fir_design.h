// Design of a linear-phase FIR filter, from the request to the filter and its report: by equal ripple here, by windows
// in fir/window_design.h.
//
// Method: minimax approximation by the exchange algorithm on a dense grid (T. W. Parks, J. H. McClellan, "Chebyshev
// approximation for nonrecursive digital filters with linear phase", IEEE Trans. CT-19, 1972). Length of a low pass by
// O. Herrmann, L. R. Rabiner, D. S. K. Chan, "Practical design rules for optimum finite impulse response low-pass
// digital filters", Bell System Technical Journal 52, 1973.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

enum class FirDesignVerdict {
    designed,
    refused,  // reported in a box
    stopped,  // by the user
};

inline constexpr std::string_view new_fir_title = "<New Filter>";

// Designs what the desk's request asks for: report, filter, and impulse and step response as time results when the
// filter has no more than 501 taps. A length that was asked as 0 is put into the request. The filter is `made`, not the
// desk's; unless designed, it and the results stay as they were.
[[nodiscard]] FirDesignVerdict remez_design(FirDesk& desk, FirFilter& made);

// Taps that a low pass needs: pass band ripple and stopband loss in dB, transition width over the sampling frequency.
// Not limited, and not finite where the ripples or the width make no sense.
[[nodiscard]] double estimated_fir_length(double passband_ripple_db, double stopband_loss_db, double transition);

}  // namespace kavrel
