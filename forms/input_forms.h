// The forms whose requests are kept in input data files: a row each. No row knows whose request it is.
#pragma once

#include <string>
#include <string_view>

#include "forms/analysis_input_file.h"
#include "forms/delay_input_file.h"
#include "forms/filter_form.h"
#include "forms/filter_input_file.h"
#include "forms/fir_form.h"
#include "forms/fir_input_file.h"

namespace kavrel {

// A kind of input data file, and how its selectors speak of it.
struct InputFileKind {
    std::string_view recall_caption;
    std::string_view description;
    std::string_view filter;
    std::string_view extension;
};
inline constexpr InputFileKind design_files{.recall_caption = "Recall a previous design data set",
                                            .description = "Stored input data files",
                                            .filter = "*.qfi",
                                            .extension = ".qfi"};
inline constexpr InputFileKind analysis_files{.recall_caption = "Select an existing file",
                                              .description = "Stored input data files",
                                              .filter = "*.qai",
                                              .extension = ".qai"};

template <class Request>
struct InputForm {
    const Form& form;
    const InputFileKind& files;
    std::string (*bytes)(const Request& request, const UnitSet& units);
    // False, with request and units as they were, for bytes of another form or of none.
    bool (*take)(std::string_view bytes, Request& request, UnitSet& units);
    std::string_view design_class = {};  // of a design by this form; an analysis leaves that of the last design
};

// clang-format off
inline constexpr InputForm<FilterRequest> filter_input{DESIGN_FILTER_DLG, design_files, filter_input_bytes, read_filter_input, "filter"};
inline constexpr InputForm<DelayRequest> delay_input{DELAY_DESIGN_DLG, design_files, delay_input_bytes, read_delay_input, "delay"};
inline constexpr InputForm<FirRequest> fir_input{FIR_DESIGN_DLG, design_files, fir_input_bytes, read_fir_input, "filter"};
inline constexpr InputForm<FilterAnalysisRequest> analysis_input{ANALYSIS_DLG, analysis_files, analysis_input_bytes, read_analysis_input};
inline constexpr InputForm<FirAnalysisRequest> fir_analysis_input{ANALYSIS_FIR_DLG, analysis_files, fir_analysis_input_bytes, read_fir_analysis_input};
// clang-format on

}  // namespace kavrel
