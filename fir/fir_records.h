// An FIR filter as unformatted records (shell/stored_files.h). A stored file (.qff), and the files of undo, redo and
// store, have
//
//   1  COEF                                                                                            2064 bytes
//   2  A1 (273 doubles), serial numbers (256 integers), the places of the factors in A1 and A2 (256, 1 to count),
//      symmetries, lengths in taps, methods and number forms of the functions' words, whether each was asked for
//      (5 integers each), multiplier (8), blank to                                                     4368
//      A2 (273 doubles), title (80), delay, trailing, function, asked, last serial number of the factors (4 each),
//      their gain (8), gains of the functions (40), deviation (8), origin (4), the request: bands (320) and their
//      number (4), lengths, types, choices (4 each), frequencies, slope, parameter (8 each), points of the shape (4),
//      blank to                                                                                        4368
//      X (4144), sampling frequency (8)
//   3  IST (24), stored coefficients of the functions (20), their bits (20), functions, NFCNS, NODD, NEG,
//      factors (4 each)                                                                                  84
//   4  only with a shaped pass band: 501 frequencies, 501 gains in dB (8 each)                         8016
//
// All numbers are binary, logicals 0 or 1 in 4 bytes, so that a filter comes back as it was to the last bit.
#pragma once

#include <string>
#include <string_view>

#include "fir/fir_filter.h"
#include "shell/fixed_text.h"

namespace kavrel {

[[nodiscard]] std::string fir_records(const FirFilter& filter, const FixedText<80>& title);

// False, with filter and title as they were, when the bytes are not such records to their end, or hold what no filter
// could be: functions that do not follow each other in the store, lengths that do not fit their symmetry, unknown
// choices, factors beyond their tables, that are none or two of one serial number, a design's bands or window that no
// form takes, numbers that are not finite.
[[nodiscard]] bool read_fir_records(std::string_view bytes, FirFilter& filter, FixedText<80>& title);

// The same for files of undo, redo and store, which may also hold that there is no filter.
[[nodiscard]] bool read_fir_snapshot(std::string_view bytes, FirFilter& filter, FixedText<80>& title);

}  // namespace kavrel
