// Stored circuits: files that keep a circuit between runs.
//
// A stored circuit is made of records (passive/circuit_records.h) and has the extension .qfp. Its text twin
// (passive/circuit_text.h) has the extension .trf. A reader knows either by its first bytes, whatever its name is.
#pragma once

#include <string>
#include <string_view>

#include "passive/passive_filter.h"
#include "shell/file_operation.h"

namespace kavrel {

[[nodiscard]] std::string stored_circuit_bytes(const PassiveFilter& filter, const FixedText<80>& title);

// Takes a circuit from the bytes of either form. False, with the filter and the title as they were, when they are
// neither or hold what no circuit could be.
[[nodiscard]] bool read_stored_circuit(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title);

// "save": writes the circuit to the file of this name, as text when that ends in .trf; else .qfp is put in place of
// another extension. A circuit that could not be read again, having numbers that are not finite, is not written:
// `not_written`.
[[nodiscard]] FileStatus save_circuit(std::string_view name, const PassiveFilter& filter, const FixedText<80>& title);

// "read": the circuit of the file of this name, which ends in .trf or is completed to .qfp. `not_found`, `not_opened`
// or `damaged` leave the filter and the title as they were.
[[nodiscard]] FileStatus read_circuit(std::string_view name, PassiveFilter& filter, FixedText<80>& title);

}  // namespace kavrel
