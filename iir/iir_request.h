// What the forms of the IIR Segment, and those of the z step, ask for. A form opens with what was entered last.
#pragma once

#include <array>
#include <string_view>
#include <type_traits>

#include "iir/iir_filter.h"
#include "segment/program_dialect.h"
#include "shell/fixed_text.h"
#include "shell/form_list.h"
#include "shell/frequency_request.h"
#include "shell/plot_form.h"
#include "shell/print_form.h"
#include "shell/time_request.h"
#include "shell/word_length.h"

namespace kavrel {

enum class ZTransformChoice : int { impulse_invariant = 1, matched = 2, bilinear = 3 };
enum class SpectralChoice : int { none = 1, to_lowpass = 2, to_highpass = 3, to_bandpass = 4, to_bandreject = 5 };
enum class Implementation : int { cascade = 1, parallel = 2, lattice = 3, direct = 4, allpass = 5, natural_modes = 6 };
enum class FactorPlace : int { numerator = 1, denominator = 2, both = 3 };
enum class DiagramChoice : int { multiple_input = 1, summed_output = 2 };
enum class ScalingMethod : int { l_two = 1, l_infinity = 2 };
enum class ScalingAnswer : int { no = 1, yes = 2, ask = 3 };
enum class DisplayFormat : int { decimal = 1, hexadecimal = 2 };

// Those that have coefficients of their own; natural modes are the roots.
inline constexpr std::array<Implementation, 5> forms_with_coefficients = {
    Implementation::cascade, Implementation::parallel, Implementation::lattice, Implementation::direct,
    Implementation::allpass};

// Whether the filter has a form; its natural modes are none.
[[nodiscard]] constexpr bool is_available(const IirFilter& filter, Implementation form) {
    switch (form) {
        case Implementation::cascade: return has_filter(filter);
        case Implementation::parallel: return is_there(filter.parallel);
        case Implementation::lattice: return is_there(filter.lattice);
        case Implementation::direct: return is_there(filter.direct);
        case Implementation::allpass: return is_there(filter.allpass);
        case Implementation::natural_modes: break;
    }
    return false;
}

// "cascade", "parallel", ...: in lists and state files.
[[nodiscard]] constexpr std::string_view form_name(Implementation form) {
    constexpr std::array<std::string_view, 6> names = {"cascade", "parallel", "lattice",
                                                       "direct",  "allpass",  "natural modes"};
    return names[static_cast<std::size_t>(form) - 1];
}

inline constexpr int highest_seed = 99'999'999;  // of a search

struct IirRequest {
    // Of the z step.
    ZTransformChoice z_transform_type = ZTransformChoice::bilinear;
    double sampling = 0;  // above 1 a frequency in Hz, else a time in seconds
    SpectralChoice frequency_transformation = SpectralChoice::none;
    double lower_passband = 0;  // in the user's unit of frequency
    double upper_passband = 0;

    FrequencyRequest frequency = {};
    Implementation analysed = Implementation::cascade;
    TimeRequest time = {};  // a step of 0 is one sample
    Implementation simulated = Implementation::cascade;
    AllpassOutput output = AllpassOutput::filter;
    WordLength simulated_word = {};
    PlotChoice frequency_plot = {};
    PlotChoice time_plot = {};

    double loss = 0;  // dB
    double c1 = 0;
    double c2 = 0;
    FactorPlace added_to = FactorPlace::numerator;
    int deleted = 0;
    FactorPlace deleted_from = FactorPlace::numerator;
    FactorPlace permuted = FactorPlace::numerator;
    FixedText<80> sequence = {};  // serial numbers, parted by blanks or commas

    WordLength truncated_to = {};   // with 0 bits: to the least word that meets the request
    double passband_allowance = 0;  // dB that a truncated filter may miss its request by; 0: a tenth of the ripple
    double stopband_allowance = 0;  // 0: 1 dB
    ScalingMethod scaling_method = ScalingMethod::l_two;
    ScalingAnswer separately = ScalingAnswer::no;
    ScalingAnswer denominators_first = ScalingAnswer::no;
    FormList<iir_section_limit, 1> SCALE_FACTORS = {};
    int seed = 0;  // of the search for an order, 0: from the clock
    bool apply = false;

    Implementation programmed = Implementation::cascade;
    AllpassOutput program_output = AllpassOutput::filter;
    ProgramDialect dialect = ProgramDialect::classic;

    int section = 0;
    DiagramChoice diagram = DiagramChoice::multiple_input;
    DisplayFormat display_format = DisplayFormat::decimal;  // of every table since
    double sampling_frequency = 0;                          // in the user's unit
    FixedText<80> title = {};
    PrintTarget printing_to = PrintTarget::none;
};

static_assert(std::is_trivially_copyable_v<IirRequest>);

}  // namespace kavrel
