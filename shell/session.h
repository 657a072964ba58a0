// The state of a run that the shell itself reads and writes.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "shell/commands.h"
#include "shell/fixed_text.h"
#include "shell/units.h"
#include "shell/whole_file.h"

namespace kavrel {

// The work areas. A Segment has its own menu, title and table of commands; one of them is current.
enum class SegmentId { main, passive, active, iir, fir, ladder, lattice };
inline constexpr std::size_t segment_count = 7;

// A file that this session has read or written, as it was then.
struct KnownFile {
    std::string name;
    FileMark mark;
    bool written = false;  // it may be written again
};

struct Session {
    FixedText<128> command_line;       // the one argument; blank again before events come
    FixedText<256> program_directory;  // of the executable, up to and with its last '/'
    UnitSet units;                     // in force with the next event
    bool keeps_settings = true;        // units come from the settings file and go there; a script has its own
    bool guards_unsaved = false;       // a filter that is not saved is given up only after a question; in the window

    // Working copies, refreshed at the head of every event: a change of units takes effect with the next one.
    double frequency_scale = 1.0;
    double inductor_scale = 1.0;
    double capacitor_scale = 1.0;
    double time_scale = 1.0;

    int design_kind = 0;        // of the last design: 1 passive LC, 2 microwave, 3 active RC, 4 IIR digital, 0 none
    FixedText<6> design_class;  // "filter" or "delay": the form that "New" opens again
    bool recall_from_command_line = false;  // the stored filter's name comes from the command line
    FixedText<256> filter_file;             // stored filter
    FixedText<256> input_file;              // design input data
    FixedText<80> TITLE;                    // of the filter
    std::vector<KnownFile> known_files;     // see shell/known_files.h

    SegmentId segment = SegmentId::main;                     // the current one
    std::array<int, segment_count> segment_entry{};          // how a Segment is entered on its next call
    std::array<CommandKeyword, segment_count> command_word;  // its pending command
    bool stopped = false;                                    // the user has ended the program

    [[nodiscard]] int& entry(SegmentId id) { return segment_entry[static_cast<std::size_t>(id)]; }
    [[nodiscard]] CommandKeyword& word(SegmentId id) { return command_word[static_cast<std::size_t>(id)]; }
};

}  // namespace kavrel
