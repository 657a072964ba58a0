// The least words with which the forms of a digital filter meet the request that it was designed for.
//
// An optimal design has nothing to spare, so a truncated one is judged with allowances: by the rows of the check, and
// by its least loss in a flat pass band, since its level may have risen beyond what is asked and what the design has. A
// short word may meet a request by luck where a longer one misses it: the least one is that from which on all words up
// to 47 bits meet it.
#pragma once

#include <optional>
#include <vector>

#include "iir/iir_report.h"
#include "iir/word_results.h"
#include "shell/watcher.h"

namespace kavrel {

// dB that losses may miss the request by, in pass bands and in stopbands; 0 stands for a tenth of the ripple, and for 1
// dB.
struct LossAllowances {
    double passband = 0;
    double stopband = 0;
};

// For each form that there is both number forms, floating point first. Losses are those with the word found, counted as
// the check does, of a sloping pass band the width of the strip; NaN where nothing was asked or no word was found.
// Nothing without a request. Asks the watcher once a word; a search that it stopped has no result.
[[nodiscard]] std::vector<LeastWord> least_words(const IirFilter& filter, WordMethod method,
                                                 const LossAllowances& allowances, Watcher& watcher);

// The table of the words.
[[nodiscard]] Lines least_word_lines(const std::vector<LeastWord>& words);

// The forms that have no word of a number form.
[[nodiscard]] std::vector<Implementation> forms_without_word(const std::vector<LeastWord>& words,
                                                             NumberForm number_form);

// The longest of the words of one number form, with which all forms meet the request; none where one of them has no
// word.
[[nodiscard]] std::optional<WordLength> word_for_all_forms(const std::vector<LeastWord>& words, NumberForm number_form);

}  // namespace kavrel
