// What a digital filter does over frequency and time, in rows: kept as results, and listed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/analysis_result.h"

namespace kavrel {

struct ResponsePoint {
    double loss = 0;   // dB, infinite on a zero; not finite in any other way where there is no result
    double phase = 0;  // degrees from -180 on, below 180: that of 1/H
    double delay = 0;  // seconds
};

struct FrequencyRow {
    double frequency = 0;  // Hz, or rad/sec
    ResponsePoint filter;
    ResponsePoint complement;
};

struct FrequencyRows {
    FixedText<13> structure;  // which form or function they are of; may be blank
    bool radians = false;
    bool has_delay = false;
    bool has_complement = false;
    bool difference = false;  // of an allpass pair: its filter is the difference, the complement the sum
    int count = 0;
    Table<FrequencyRow, analysis_points> rows;  // [i] 1 <= i <= count
};

// Takes rows over as the frequency results, losses to `largest_loss` dB; false, the results as they were, where single
// precision does not hold one of them.
[[nodiscard]] bool store_frequency(const FrequencyRows& rows, double largest_loss, AnalysisResult& results);
[[nodiscard]] FrequencyRows stored_rows(const AnalysisResult& results);

// A head before every page of rows. A sweep in steps of less than 0.001 of its last frequency takes one more digit of
// frequency.
[[nodiscard]] std::vector<std::string> frequency_lines(const FrequencyRows& rows, std::string_view title);

// The time results under a head of its own, if there is one, else under their title.
[[nodiscard]] std::vector<std::string> time_lines(const AnalysisResult& results);
[[nodiscard]] std::vector<std::string> time_lines(const AnalysisResult& results, std::vector<std::string> head,
                                                  std::string_view impulse);

}  // namespace kavrel
