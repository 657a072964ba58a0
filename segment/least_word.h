// The least words of a filter, on the report and in the state file.
#pragma once

#include <string>

#include <nlohmann/json_fwd.hpp>

#include "shell/word_length.h"

namespace kavrel {

inline constexpr int longest_word = 47;  // bits, that a search begins with

// A word, 0 bits where none was found, and the losses of the filter with it in dB; NaN where there are none.
struct FoundWord {
    WordLength word;
    double passband_loss = 0;
    double stopband_loss = 0;
};

// The columns of a row, and the heads above them.
inline constexpr std::string_view least_word_heads = "number form       bits    passband loss   stopband loss";
[[nodiscard]] std::string least_word_columns(const FoundWord& found);

// Adds number_form, method, bits, passband_loss, stopband_loss.
void add_least_word(const FoundWord& found, nlohmann::ordered_json& part);

}  // namespace kavrel
