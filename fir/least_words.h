// The least words in which a function keeps the deviations of its design.
//
// A short word may keep them by luck where a longer one does not: the least one is that from which on all words up to
// 47 bits keep the deviation of every band within so many dB of the function's own, 20 log10(d/d0) <= allowance.
#pragma once

#include <vector>

#include "fir/command_tools.h"
#include "shell/watcher.h"

namespace kavrel {

// Both number forms, floating point first. The losses are those with the word: the ripple of a pass band of 1 +- d
// times what it desires, 20 log10((1 + d)/(1 - d)), the highest of all, and the least loss of a stopband; NaN where
// there is no such band or no word was found. Nothing where no bands were asked of the function, or the watcher, who is
// asked once a band, stopped the search.
[[nodiscard]] std::vector<FoundWord> least_words(const FirFilter& filter, int function, WordMethod method,
                                                 double allowance, Watcher& watcher);

// The table of the words.
[[nodiscard]] Lines least_word_lines(const std::vector<FoundWord>& words, int function, double allowance);

}  // namespace kavrel
