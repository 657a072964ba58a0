// What many commands of the passive Segment do.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "passive/passive_desk.h"
#include "shell/stored_files.h"

namespace kavrel {

inline constexpr std::string_view select_file = "Select a file name";  // caption of selectors
inline constexpr std::string_view data_unavailable = "Data is unavailable";

// A refusal: a box with caption "Error".
void refuse(PassiveDesk& desk, std::string_view text);

// "*** done ***": in a box with caption "Success", or, while display is suppressed, on the report.
void tell_done(PassiveDesk& desk);

void report_lines(PassiveDesk& desk, std::span<const std::string> lines);

// Draws the circuit from `state.lastBranch` on, and sets that back to 1.
void show_circuit(PassiveDesk& desk);

// The name of a file to be read or written; none, with the box "CANCEL", when the selector was left empty.
[[nodiscard]] std::optional<std::string> ask_file(PassiveDesk& desk, const FileQuery& query);

// Writes a text file and tells what became of it.
void write_text(PassiveDesk& desk, const std::string& path, std::string_view text);

// The same with lines, into a file whose name the user gives and that gets the extension of the slot.
void write_lines(PassiveDesk& desk, std::span<const std::string> lines, ExtSlot slot);

[[nodiscard]] std::string joined_lines(std::span<const std::string> lines);

// Where the design is told of but the circuit is no longer the designed one: whether the user wishes to go on.
[[nodiscard]] bool wishes_original(PassiveDesk& desk, std::string_view what);

}  // namespace kavrel
