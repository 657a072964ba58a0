// What the FIR design form asks for. Frequencies are in the user's frequency unit; the sampling frequency scales them
// all, so that only their ratios matter to the design.
#pragma once

#include "fir/fir_grid.h"
#include "shell/form_list.h"

namespace kavrel {

// The choices of the form. Files hold their numbers, 0 where a group was off and nothing was chosen.
enum class FirMethod : int { equal_ripple = 1, windowed = 2 };
enum class FirSpecification : int { unchosen = 0, ripple_in_db = 1, weights = 2 };
enum class FirFilterType : int { unchosen = 0, low_pass = 1, high_pass = 2, band_pass = 3, band_reject = 4 };
enum class FirWindow : int {
    unchosen = 0,
    rectangular = 1,
    triangular = 2,
    hamming = 3,
    hann = 4,
    cosine = 5,
    cosine_cubed = 6,
    cosine_fourth = 7,
    blackman = 8,
    exact_blackman = 9,
    three_term_b_h = 10,
    three_term_18_db = 11,
    optimal_three_term = 12,
    four_term_b_h = 13,
    four_term_40_db = 14,
    four_term_18_db = 15,
    optimal_four_term = 16,
    kaiser = 17,  // from here on with a parameter
    chebyshev = 18,
    gaussian = 19,
    taylor = 20,
    sampled_kaiser = 21
};

struct FirRequest {
    int filter_length = 0;  // 0 to 512 taps; 0 asks for the estimate
    FirMethod design_method = FirMethod::equal_ripple;
    FirType fir_type = FirType::filter;
    FirSpecification specification_type = FirSpecification::ripple_in_db;
    FirFilterType filter_type = FirFilterType::low_pass;  // of windowed designs
    FirWindow window_type = FirWindow::rectangular;
    double lower_frequency = 0.0;
    double upper_frequency = 0.0;
    double sampling_frequency = 0.0;  // a filter's is twice the last band edge
    double slope = 0.0;               // of a differentiator
    double parameter = 0.0;           // loss in dB or parameter of a window, as far as given: see parameter_of
    bool parameter_given = false;
    bool save_design = false;
    FormList<max_fir_bands, 4> QUADRUPLETS;  // lower edge, upper edge, desired value, ripple (dB) or weight
    FormList<max_shape_points, 2> shape;     // shaped pass band: frequency, gain in dB
};

}  // namespace kavrel
