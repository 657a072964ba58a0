// What the filter form asks for. Frequencies are in the user's frequency unit, losses in dB, terminations in ohm.
#pragma once

#include "approximation/filter_kinds.h"
#include "approximation/filter_spec.h"
#include "shell/form_list.h"
#include "shell/units.h"

namespace kavrel {

// The choices of the form. Files hold their numbers, 0 where a group was off and nothing was chosen.
enum class TypeChoice : int { low_pass = 1, high_pass = 2, band_pass = 3 };
enum class PassbandChoice : int { max_flat = 1, equal_ripple = 2, functional = 3, sloping = 4 };
enum class FunctionChoice : int { unchosen = 0, e = 1, f = 2 };
enum class StopbandChoice : int { unchosen = 0, monotonic = 1, equal_min = 2, placer = 3, specified = 4 };
enum class BandpassChoice : int { unchosen = 0, conventional = 1, parametric = 2, matching = 3 };
enum class PredistortionMode : int { passband_only = 1, pass_and_stop_bands = 2 };
enum class ZeroUnitChoice : int { hertz = 1, radians = 2 };

inline constexpr int requirement_limit = 15;
inline constexpr double least_return_loss = 9.5;  // a band-edge value above it is a return loss in dB

struct FilterRequest {
    FilterKind filter_kind = FilterKind::lc;
    double fq_or_fs = 0.0;  // microwave: quarter-wave frequency; IIR digital: sampling frequency
    TypeChoice filter_type = TypeChoice::low_pass;
    double lower_passband = 0.0;
    double upper_passband = 0.0;
    PassbandChoice passband_type = PassbandChoice::max_flat;
    double band_edge_loss = 0.0;  // below 0 a reflection coefficient in percent, above 9.5 a return loss
    double loss_slope = 0.0;      // dB/octave
    double flat_loss = 0.0;
    FunctionChoice function_type = FunctionChoice::e;
    double multiplier = 0.0;  // of the function f
    StopbandChoice stopband_type = StopbandChoice::monotonic;
    double lower_stopband = 0.0;
    double lower_stop_loss = 0.0;
    double upper_stopband = 0.0;
    double upper_stop_loss = 0.0;
    int zeros_at_zero = 0;      // 0 to 50
    int zeros_at_infinity = 0;  // 0 to 50; at the quarter-wave or half the sampling frequency
    int unit_elements = 0;      // -1 to 50
    BandpassChoice bandpass_form = BandpassChoice::conventional;
    double r1 = 50.0;
    double r2 = 50.0;
    int zs_parameter = 0;  // 0 by the terminations; -1, 1 as `FilterSpec::symmetryFlag`
    double q_predistortion = 0.0;
    PredistortionMode predistortion = PredistortionMode::passband_only;
    double center_frequency = 0.0;  // of the band-pass that a low-pass is shifted to
    bool odd_parametric = false;
    bool save_design = false;

    // Lists behind "Detail Parameters". Of a conjugate pair of zeros only one has a row.
    ZeroUnitChoice zero_unit = ZeroUnitChoice::hertz;  // in which TR_ZEROS and DOUBLETS are given
    FormList<finite_zero_limit, 2> TR_ZEROS;           // transmission zeros: real part, imaginary part
    FormList<finite_zero_limit, 2> DOUBLETS;           // function zeros: real part, imaginary part
    FormList<requirement_limit, 2> PLACER_REQS;        // breakpoints of the mask: frequency, loss
    FormList<finite_zero_limit, 2> FIXED_ZEROS;        // frequency, multiplicity
    FormList<finite_zero_limit, 2> MOVABLE_ZEROS;      // frequency to start from, multiplicity
    int lower_movable = 0;                             // in place of such a list: zeros below the pass band, 0 to 15
    int upper_movable = 0;                             // and above it
};

// Zeros in the user's frequency unit as they were entered: times this, they are in hertz.
[[nodiscard]] double zero_scale(const FilterRequest& request, const UnitSet& units);

// The ZS parameter that is handed over: that of active and digital filters is -1, whatever the form holds.
[[nodiscard]] int zs_parameter_of(const FilterRequest& request);

// The request in force as the approximation takes it: frequencies in Hz, a reflection coefficient or return loss turned
// into a loss, the roots of a function as factors of s, s = j at the pass band's edge (its upper one where there are
// two).
[[nodiscard]] FilterSpec spec_of(const FilterRequest& request, const UnitSet& units);

}  // namespace kavrel
