// The delay design form: filters, delay lines and equalizers that are designed for delay, not for loss.
#pragma once

#include <type_traits>

#include "approximation/filter_spec.h"
#include "shell/form.h"
#include "shell/form_list.h"

namespace kavrel {

// The choices of the form. Files hold their numbers, 0 where a group was off and nothing was chosen.
enum class DelayType : int { max_flat = 1, equal_ripple = 2, equalizer = 3 };
enum class DelayImplementation : int { lc = 1, active_rc = 2, microwave = 3, iir_digital = 4 };
enum class DelayNetwork : int { unchosen = 0, filter = 1, delay_line = 2 };
enum class DelayStopband : int { unchosen = 0, equal_min = 1, specified = 2 };
enum class HurwitzType : int { unchosen = 0, hurwitz = 1, non_hurwitz = 2 };
enum class SignSelection : int { unchosen = 0, automatic = 1, manual = 2 };

inline constexpr int delay_row_limit = 501;
inline constexpr int sign_limit = 25;
inline constexpr int least_delay_degree = 2;
inline constexpr int delay_degree_limit = 40;
inline constexpr int least_delay_rows = 4;  // of an equalizer's table

// Frequencies are in the user's frequency unit, delays in the time unit, terminations in ohm.
struct DelayRequest {
    DelayType delay_type = DelayType::max_flat;
    DelayImplementation implementation = DelayImplementation::lc;
    FormList<delay_row_limit, 2> DELAY_DATA;  // what an equalizer is to level: FREQUENCY, DELAY
    double fq_or_fs = 0.0;                    // microwave: quarter-wave frequency; IIR digital: sampling frequency
    double normalization_freq = 0.0;          // of an equalizer
    DelayNetwork network_type = DelayNetwork::filter;
    double delay = 0.0;  // of a filter or line
    DelayStopband stopband = DelayStopband::equal_min;
    double end_of_passband = 0.0;  // equal ripple: where the ripple ends
    double start_of_stopband = 0.0;
    int degree = 0;                           // 2 to 40, 0 while none was given
    int zeros_at_infinity = 0;                // the same
    FormList<finite_zero_limit, 2> TR_ZEROS;  // transmission zeros: real part, imaginary part, a row for a pair
    double r1 = 50.0;
    double r2 = 50.0;
    double q_value = 0.0;  // of the elements, 0 lossless
    HurwitzType hurwitz = HurwitzType::hurwitz;
    SignSelection selection = SignSelection::automatic;  // of the signs, where not Hurwitz
    FormList<sign_limit, 1> PLUS_MIN;  // a sign for each factor of f: below 1 its zeros lie to the right
    double center_frequency = 0.0;     // of the band-pass that it is shifted to, 0 where it stays
    bool odd_parametric = false;
    bool save_design = false;
};

static_assert(std::is_trivially_copyable_v<DelayRequest>);

extern const Form DELAY_DESIGN_DLG;
extern const Form ZEROS_DLG;       // "Input data": the table of an equalizer
extern const Form POLES_DLG;       // transmission zeros
extern const Form INDICATORS_DLG;  // signs

}  // namespace kavrel
