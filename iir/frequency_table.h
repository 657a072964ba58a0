// The table of a frequency analysis of a digital filter.
#pragma once

#include <string_view>

#include "iir/form_response.h"
#include "iir/iir_report.h"

namespace kavrel {

struct FrequencyRow {
    double frequency = 0;  // Hz, or rad/sec
    ResponsePoint filter;
    ResponsePoint complement;
};

struct FrequencyRows {
    std::string_view structure;
    bool radians = false;
    bool has_delay = false;
    bool has_complement = false;
    bool difference = false;  // of an allpass pair: its filter is the difference, the complement the sum
    int count = 0;
    Table<FrequencyRow, analysis_points> rows;  // [i] 1 <= i <= count
};

// "cascade", "parallel", "lattice", "direct", "diff. allpass", "natural modes".
[[nodiscard]] std::string_view structure_text(Implementation form);

// A head before every page of rows. A sweep in steps of less than 0.001 of its last frequency takes one more digit of
// frequency.
[[nodiscard]] Lines frequency_lines(const FrequencyRows& rows, std::string_view title);

}  // namespace kavrel
