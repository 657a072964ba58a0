// The files in which a circuit is handed over to other programs: netlists of Scompact, Touchstone, Spice, SStar and
// PCFilt, and Matlab data. Only the text is made here; who asks writes it.
//
// In all of them node 1 (in Spice, node 2, behind the source's resistor) is the end of branch 1. The classic texts
// drive the circuit there, which by reciprocity has the same transducer loss; the dialects "ngspice" and "S-parameters"
// drive it as the analysis does, from the end of the last branch with branch 1 as the load, so that phase, "in" and
// "out" are those of the table.
//
// Beside "Classic", which is word for word what it always was, Spice has "ngspice" (runs unedited) and Scompact and
// Touchstone have "S-parameters" (a Touchstone .s2p file).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "exchange/transfer_types.h"
#include "shell/frequency_request.h"

namespace kavrel {

inline constexpr std::string_view half_lattice_question = "Lattices are present, do you want half-lattices?";
inline constexpr std::string_view file_not_opened = "File could not be opened";

[[nodiscard]] std::string_view message_of(TransferVerdict verdict);

// Whether `half_lattice_question` is to be asked.
[[nodiscard]] bool has_lattices(const Circuit& circuit);

// What a request is refused for before any question is asked; `written` when nothing speaks against it.
[[nodiscard]] TransferVerdict transfer_refusal(const TransferInput& input, const TransferRequest& request);

// The name of the file: the stem with the extension of the type, ".ckt" or ".m"; S-parameters take ".s2p".
[[nodiscard]] std::string transfer_file_name(std::string_view stem, const TransferRequest& request);

// The frequencies of a grid in Hz.
[[nodiscard]] std::vector<double> frequencies_in_hertz(const FrequencyGrid& grid);

// What is taken for them when there was none: 100 points up to twice the upper edge of the band, in a microwave
// circuit up to the quarter-wave frequency.
[[nodiscard]] std::vector<double> default_frequencies(const Circuit& circuit);

// The text of the file, each line ended by a line feed. `text` is left alone when something is refused.
[[nodiscard]] TransferVerdict write_transfer_file(const TransferInput& input, const TransferRequest& request,
                                                  std::string& text);

}  // namespace kavrel
