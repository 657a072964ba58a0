// The analysis form: a filter from outside, given by what is known of it.
#pragma once

#include <type_traits>

#include "approximation/filter_spec.h"
#include "shell/form.h"
#include "shell/form_list.h"

namespace kavrel {

// The choices of the form. Files hold their numbers, 0 where a group was off and nothing was chosen.
enum class AnalysisKind : int { passive_lc = 1, active_rc = 2, iir_digital = 3, microwave = 4, switched_capacitor = 5 };
enum class AnalysisType : int { low_pass = 1, high_pass = 2, band_pass = 4, band_reject = 5, delay_equalizer = 6 };
enum class AnalysisStructure : int { unchosen = 0, cascade = 1, follow_the_leader = 2, leapfrog = 3 };
enum class AnalysisForm : int { unchosen = 0, roots = 1, factors = 2 };

inline constexpr int section_limit = 25;

// Frequencies are in the user's frequency unit; roots are in hertz.
struct FilterAnalysisRequest {
    AnalysisKind analysis_kind = AnalysisKind::passive_lc;
    AnalysisType analysis_type = AnalysisType::low_pass;
    AnalysisStructure structure = AnalysisStructure::cascade;
    AnalysisForm form = AnalysisForm::roots;
    double lower_passband = 0.0;
    double upper_passband = 0.0;              // the edge of a low-pass; the normalisation where there is none
    double sampling_or_qw = 0.0;              // sampling frequency, microwave: quarter-wave frequency
    FormList<finite_zero_limit, 2> TR_POLES;  // real part, imaginary part, a row for a conjugate pair; digital: of z
    FormList<finite_zero_limit, 2> TR_ZEROS;
    FormList<section_limit, 3> NUMER;  // of each section: quadratic, linear, constant coefficient
    FormList<section_limit, 3> DENOM;
    FormList<section_limit, 1> FEED;  // coefficient of the feedback from each section
    int zeros_at_infinity = 0;        // 0 to 50
    bool save_analysis = false;
};

static_assert(std::is_trivially_copyable_v<FilterAnalysisRequest>);

extern const Form ANALYSIS_DLG;
extern const Form ANALYSIS_POLES_DLG;
extern const Form ANALYSIS_ZEROS_DLG;
extern const Form DIGITAL_POLES_DLG;  // the same lists of a digital filter, in the z plane
extern const Form DIGITAL_ZEROS_DLG;
extern const Form NUMER_DLG;
extern const Form DENOM_DLG;
extern const Form FEED_DLG;

}  // namespace kavrel
