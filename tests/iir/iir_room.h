// An IIR Segment of its own: the desk with all its records, before a fake window, in a folder of its own.
#pragma once

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "iir/iir_segment.h"
#include "iir/stored_iir.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {

struct IirRoom {
    ScratchFolder folder;
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    Session session;
    IirFilter filter;
    IirState state;
    IirRequest command;
    AnalysisResult results;
    PlotWindow plot;
    TemporaryFiles temporaries;
    IirDesk desk{{session, reporter, window, results, plot, temporaries}, filter, state, command};

    // Sends a word; the boxes and lines are those of this command alone.
    void send(std::string_view word) {
        window.boxes.clear();
        window.lines.clear();
        session.word(SegmentId::iir) = CommandKeyword(word);
        iirSegment(desk);
        EXPECT_TRUE(session.word(SegmentId::iir).is_blank()) << word;
    }

    // All that undo has to bring back.
    [[nodiscard]] std::string bytes() const { return iir_keeping.snapshot.bytes(filter, {}); }

    [[nodiscard]] std::string boxes() const { return fmt::format("{}", fmt::join(window.boxes, " | ")); }
    [[nodiscard]] std::string lines() const {
        std::string text;
        for (const std::string& line : window.lines) text += line + '\n';
        return text;
    }
    [[nodiscard]] bool reported(std::string_view text) const { return lines().find(text) != std::string::npos; }
};

}  // namespace kavrel
