// An IIR Segment of its own: the desk with all its records, before a fake window, in a folder of its own.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "iir/iir_forms.h"
#include "iir/iir_segment.h"
#include "iir/stored_iir.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {

using Entries = std::initializer_list<std::pair<std::string_view, std::string_view>>;

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

    // Fills a form in and presses OK; false when it was refused or a value does not fit.
    bool fill(const Form& form, Entries entries) {
        bool fits = true;
        window.forms.push_back([&](FormSheet& sheet) {
            for (const auto& [name, value] : entries) {
                const int field = find_field(sheet, name);
                const bool named = field >= 0 && sheet.field(static_cast<std::size_t>(field)).name == name;
                const std::string wrong = named ? sheet.enter(static_cast<std::size_t>(field), value) : "no field";
                EXPECT_EQ(wrong, "") << name;
                fits = fits && wrong.empty();
            }
            return true;
        });
        return run_form(form, &command, session.units, reporter) && fits;
    }

    // Sends a word; the boxes and lines are those of this command alone.
    void send(std::string_view word) {
        window.boxes.clear();
        window.lines.clear();
        session.word(SegmentId::iir) = CommandKeyword(word);
        iirSegment(desk);
        EXPECT_TRUE(session.word(SegmentId::iir).is_blank()) << word;
    }

    void send(std::string_view word, const Form& form, Entries entries) {
        if (fill(form, entries)) send(word);
    }

    // All that undo has to bring back.
    [[nodiscard]] std::string bytes() const { return iir_keeping.snapshot.bytes(filter, {}); }

    [[nodiscard]] std::string boxes() const {
        std::string text;
        for (const std::string& box : window.boxes) text += (text.empty() ? "" : " | ") + box;
        return text;
    }
    [[nodiscard]] std::string lines() const {
        std::string text;
        for (const std::string& line : window.lines) text += line + '\n';
        return text;
    }
    [[nodiscard]] bool reported(std::string_view text) const { return lines().find(text) != std::string::npos; }
};

}  // namespace kavrel
