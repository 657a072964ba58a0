// What the forms of the FIR Segment ask for. A form opens with what was entered last.
#pragma once

#include <type_traits>

#include "fir/fir_filter.h"
#include "segment/program_dialect.h"
#include "shell/fixed_text.h"
#include "shell/form_list.h"
#include "shell/frequency_request.h"
#include "shell/plot_form.h"
#include "shell/print_form.h"
#include "shell/word_length.h"

namespace kavrel {

inline constexpr int fir_serial_limit = 513;  // of a list of factors

struct FirCommandRequest {
    int function_number = 1;  // 1 to 5, of every command on a function

    FrequencyRequest frequency = {};
    PlotChoice frequency_plot = {};
    PlotChoice time_plot = {};

    WordLength truncated_to = {};   // with 0 bits: to the least word
    double stopband_allowance = 0;  // dB that the deviation of a band may grow by; 0: 1 dB
    double gain = 0;                // dB

    double linear = 0;  // of a factor
    double quadratic = 0;
    int serial = 0;
    FormList<fir_serial_limit, 1> SERIAL = {};  // factors to be multiplied

    ProgramDialect dialect = ProgramDialect::classic;
    FixedText<80> title = {};
    PrintTarget printing_to = PrintTarget::none;
};

static_assert(std::is_trivially_copyable_v<FirCommandRequest>);

}  // namespace kavrel
