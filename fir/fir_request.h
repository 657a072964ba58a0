// What the FIR design form asks for. Frequencies are in the user's frequency unit; the sampling frequency scales them
// all, so that only their ratios matter to the design.
#pragma once

#include "fir/fir_grid.h"
#include "shell/form_list.h"

namespace kavrel {

enum class FirMethod { equal_ripple = 1, windowed = 2 };
enum class FirSpecification { ripple_in_db = 1, weights = 2 };

struct FirRequest {
    int filter_length = 0;        // 0 to 512 taps; 0 asks for the estimate
    int design_method = 1;        // FirMethod
    int fir_type = jtype_filter;  // jtype_filter, jtype_differentiator, jtype_hilbert
    int specification_type = 1;   // FirSpecification
    int filter_type = 1;          // windowed designs: 1 low pass, 2 high pass, 3 band pass, 4 band reject
    int window_type = 1;          // 1 to 21
    double lower_frequency = 0.0;
    double upper_frequency = 0.0;
    double sampling_frequency = 0.0;  // a filter's is twice the last band edge
    double slope = 0.0;               // of a differentiator
    double parameter = 0.0;           // loss in dB or parameter of a window
    bool save_design = false;
    FormList<max_fir_bands, 4> QUADRUPLETS;  // lower edge, upper edge, desired value, ripple (dB) or weight
    FormList<max_shape_points, 2> shape;     // shaped pass band: frequency, gain in dB
};

}  // namespace kavrel
