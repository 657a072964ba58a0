// The desk of a Segment that analyses, and what every command does at one: it refuses, reports, asks for a file.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "segment/temporary_files.h"
#include "shell/analysis_result.h"
#include "shell/known_files.h"
#include "shell/plot.h"
#include "shell/print_form.h"
#include "shell/reporter.h"
#include "shell/session.h"
#include "shell/stored_files.h"
#include "shell/window_layer.h"

namespace kavrel {

// What all of them work on. A Segment's desk adds its own records:
//
//     struct FirDesk : Desk { FirFilter& filter; FirCommandRequest& command; };
//     FirDesk desk{{.session = ...}, bench.fir, bench.fir_command};
struct Desk {
    Session& session;
    Reporter& reporter;
    WindowLayer& window;
    AnalysisResult& results;
    PlotWindow& plot;
    TemporaryFiles& temporaries;
};

inline constexpr std::string_view select_file = "Select a file name";  // caption of selectors
inline constexpr std::string_view data_unavailable = "Data is unavailable";
inline constexpr std::string_view command_done = "*** done ***";

// A refusal: a box with caption "Error", and the field of the command's form that it is about.
void refuse(Desk& desk, const Refusal& refusal);

// "*** done ***" in a box with caption "Success".
void report_done(Desk& desk);

void report_lines(Desk& desk, std::span<const std::string> lines);

// Whether the user wishes to go on with the data of the original filter, not the one it was made into; `what` is what
// there is of it, "Data" or "Analysis".
[[nodiscard]] bool wishes_original(Desk& desk, std::string_view what);

// Whether an analysis is to be tabulated on the report.
[[nodiscard]] bool wants_table(Desk& desk);

// The name of a file to be read or written; none, with the box "CANCEL", when the selector was left empty.
[[nodiscard]] std::optional<std::string> ask_file(Desk& desk, const FileQuery& query);

// Writes a text file under the name that was made from the one typed; false, after its box, where that failed.
[[nodiscard]] bool write_text(Desk& desk, std::string_view typed, const std::string& name, std::string_view text,
                              std::string_view failure = "File could not be written");

// The same with lines, into a file whose name the user gives and that gets the extension of the slot. False also when
// the user gives none.
[[nodiscard]] bool write_lines(Desk& desk, std::span<const std::string> lines, ExtSlot slot);

[[nodiscard]] std::string joined_lines(std::span<const std::string> lines);

}  // namespace kavrel
