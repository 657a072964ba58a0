// What a transfer file is asked for, what it is made from, and how that may fail.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "approximation/filter_spec.h"
#include "circuit/circuit.h"
#include "circuit/element_formulas.h"

namespace kavrel {

enum class TransferFileType : int { none, scompact, touchstone, spice, sstar, pcfilt, matlab };

enum class TransferDialect : int { none, classic, ngspice, s_parameters };

struct TransferRequest {
    TransferFileType file_type = TransferFileType::scompact;
    TransferDialect dialect = TransferDialect::classic;  // a type that does not have it writes its classic text
    bool half_lattices = false;   // the answer to `half_lattice_question`, asked when has_lattices
    bool variable_block = false;  // Scompact and Touchstone: list the elements that an optimizer may vary
};

// All of it may be absent but the circuit.
struct TransferInput {
    const Circuit& circuit;
    std::string_view title{};
    const TransferFunction* transfer = nullptr;  // of the design
    std::span<const double> frequencies{};       // Hz, that the last analysis was asked for; empty: default_frequencies
    ElementLoss loss{};  // of the last analysis; S-parameters alone take it, ngspice says that it does not
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

// Writes the lines of one text, the input complete with frequencies: `written`, `too_many_lattices` or
// `internal_error`.
using TransferWriter = TransferVerdict (*)(const TransferInput& input, const TransferRequest& request,
                                           std::vector<std::string>& lines);

}  // namespace kavrel
