// Where the console's text goes: the report, and beside it what a person at a terminal would see.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace kavrel {

struct ConsoleOptions {
    std::string argument;     // SCRIPT or STORED_FILE, or blank
    std::string folder;       // -C
    std::string report_file;  // -o
    std::string json_file;    // --json
    std::string date;         // --date
    bool settings = false;    // --settings
    bool keep_going = false;
    bool quiet = false;
};

// What a run has come to; the numbers are those of the exit status.
enum class Failure { none = 0, line = 1, script = 2, file = 3 };

struct Transcript {
    std::ostream& report;  // report lines
    std::ostream& screen;  // boxes, echo, lists of fields
    std::ostream& out;     // what a script sends to the file "-"
    std::ostream& errors;  // FILE:LINE: message
    const ConsoleOptions& options;

    // Before something is written straight to a stream that may be one of these.
    void flush() const {
        for (std::ostream* stream : {&report, &screen, &out}) stream->flush();
    }
};

}  // namespace kavrel
