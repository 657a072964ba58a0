// A passive Segment of its own: the desk with all its records, before a fake window, in a folder of its own.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "passive/passive_segment.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {

using Entries = std::initializer_list<std::pair<std::string_view, std::string_view>>;

struct PassiveRoom {
    ScratchFolder folder;
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    Session session;
    PassiveFilter filter;
    PassiveState state;
    PassiveRequest command;
    AnalysisResult results;
    PlotWindow plot;
    TemporaryFiles temporaries;
    PassiveDesk desk{{session, reporter, window, results, plot, temporaries}, filter, state, command};

    PassiveRoom() { command.circuit = &filter.circuit; }

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
        session.word(SegmentId::passive) = CommandKeyword(word);
        passiveSegment(desk);
        EXPECT_TRUE(session.word(SegmentId::passive).is_blank()) << word;
    }
    void send(std::string_view word, const Form& form, Entries entries) {
        if (fill(form, entries)) send(word);
    }

    void insert(std::string_view element, int branch, double value1, double value2 = 0, double value3 = 0) {
        const std::string number = fmt::format("{}", branch);
        const std::string values[] = {fmt::format("{}", value1), fmt::format("{}", value2), fmt::format("{}", value3)};
        send("ins ", PASSIVE_INSERT_DLG,
             {{"element", element},
              {"branch", number},
              {"value1", values[0]},
              {"value2", values[1]},
              {"value3", values[2]}});
    }

    // Load and source of 1 ohm around C = 1, L = 2, C = 1: 10 log10(1 + w^6) dB.
    void butterworth() {
        insert("r", 1, 1);
        insert("c", 3, 1);
        insert("l", 4, 2);
        insert("c", 5, 1);
        insert("r", 7, 1);
        filter.mod = 0.0F;
        state = {};
    }

    [[nodiscard]] std::string boxes() const {
        std::string text;
        for (const std::string& box : window.boxes) text += (text.empty() ? "" : " | ") + box;
        return text;
    }
    [[nodiscard]] bool reported(std::string_view text) const {
        for (const std::string& line : window.lines) {
            if (line.find(text) != std::string::npos) return true;
        }
        return false;
    }
};

}  // namespace kavrel
