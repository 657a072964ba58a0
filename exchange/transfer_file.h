// The files in which a circuit is handed over to other programs: netlists of Scompact, Touchstone, Spice, SStar and
// PCFilt, and Matlab data. Only the text is made here; who asks writes it.
//
// In all of them node 1 (in Spice, node 2, behind the source's resistor) is the end of branch 1. The classic texts
// drive the circuit there, which by reciprocity has the same transducer loss; the dialects "ngspice" and "S-parameters"
// drive it as the analysis does, from the end of the last branch with branch 1 as the load, so that phase, "in" and
// "out" are those of the table.
//
// Beside "Classic", which stands word for word as it always was, Spice has "ngspice" (runs unedited) and Scompact and
// Touchstone have "S-parameters" (a Touchstone .s2p file).
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "approximation/filter_spec.h"
#include "circuit/chain_analysis.h"
#include "circuit/circuit.h"
#include "shell/frequency_request.h"
#include "shell/stored_files.h"

namespace kavrel {

struct TransferFileType {
    enum { scompact = 1, touchstone = 2, spice = 3, sstar = 4, pcfilt = 5, matlab = 6 };
};

enum class TransferDialect { classic = 1, modern = 2 };

struct TransferTypeRow {
    int file_type;
    std::string_view label;   // in the form
    std::string_view modern;  // name of the other dialect, blank where there is none
    bool microwave;           // the classic text knows lines
    ExtSlot slot;             // of its file
};

inline constexpr std::array<TransferTypeRow, 6> transfer_types = {{
    {TransferFileType::scompact, "Scompact", "S-parameters", true, ExtSlot::netlist},
    {TransferFileType::touchstone, "Touchstone", "S-parameters", true, ExtSlot::netlist},
    {TransferFileType::spice, "Spice", "ngspice", false, ExtSlot::netlist},
    {TransferFileType::sstar, "SStar", "", false, ExtSlot::netlist},
    {TransferFileType::pcfilt, "PCFilt", "", true, ExtSlot::netlist},
    {TransferFileType::matlab, "Matlab", "", true, ExtSlot::matlab},
}};

struct TransferRequest {
    int file_type = TransferFileType::scompact;
    TransferDialect dialect = TransferDialect::classic;  // a type without a second dialect writes its classic text
    bool half_lattices = false;   // the answer to `half_lattice_question`, asked when has_lattices
    bool variable_block = false;  // Scompact and Touchstone: list the elements that an optimizer may vary
};

// What the texts are made from; all of it may be absent but the circuit.
struct TransferInput {
    const Circuit& circuit;
    std::string_view title{};
    const TransferFunction* transfer = nullptr;  // of the design
    std::span<const double> frequencies{};       // Hz, that the last analysis was asked for; empty: default_frequencies
    ElementLoss loss{};                          // of the last analysis; S-parameters alone take it
};

enum class TransferVerdict {
    written,
    no_such_type,
    microwave_refused,  // the type knows no lines
    no_data,            // no transfer function, or no circuit
    too_many_lattices,
    internal_error,  // a store that is no circuit, or a number that its field does not hold
};

struct TransferMessage {
    TransferVerdict verdict;
    std::string_view text;
};

inline constexpr std::array<TransferMessage, 6> transfer_messages = {{
    {TransferVerdict::written, ""},
    {TransferVerdict::no_such_type, "Internal error, file cannot be written"},
    {TransferVerdict::microwave_refused, "Microwave filter, file type is not available"},
    {TransferVerdict::no_data, "Data is unavailable"},
    {TransferVerdict::too_many_lattices, "Too many lattices, file may not be written"},
    {TransferVerdict::internal_error, "Internal error, file cannot be written"},
}};

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

// What stands in for them when there was none: 100 points up to twice the upper edge of the band, in a microwave
// circuit up to the quarter-wave frequency.
[[nodiscard]] std::vector<double> default_frequencies(const Circuit& circuit);

// The text of the file, each line ended by a line feed. `text` is left alone when something is refused.
[[nodiscard]] TransferVerdict write_transfer_file(const TransferInput& input, const TransferRequest& request,
                                                  std::string& text);

}  // namespace kavrel
