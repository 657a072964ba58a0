// The analysis form of a FIR filter from outside.
#pragma once

#include <type_traits>

#include "shell/form.h"
#include "shell/form_list.h"

namespace kavrel {

enum class FirData : int { coefficients = 1, quadratics = 2 };
enum class FirSymmetryChoice : int { unchosen = 0, even = 1, odd = 2, none = 3 };

inline constexpr int fir_coefficient_limit = 1026;
inline constexpr int fir_quadratic_limit = 512;

struct FirAnalysisRequest {
    double sampling_freq = 0.0;  // in the user's frequency unit
    FirData filter_data = FirData::coefficients;
    FirSymmetryChoice filter_symmetry = FirSymmetryChoice::even;
    int filter_length = 0;
    FormList<fir_coefficient_limit, 1> COEFFICIENTS;
    FormList<fir_quadratic_limit, 2> FIR_ZEROS;  // factors 1 + linear z^-1 + quadratic z^-2
    bool save_analysis_data = false;
};

static_assert(std::is_trivially_copyable_v<FirAnalysisRequest>);

extern const Form ANALYSIS_FIR_DLG;
extern const Form COEFFICIENTS_DLG;
extern const Form FIR_ZEROS_DLG;

}  // namespace kavrel
