// An FIR Segment of its own: the desk with all its records, before a fake window, in a folder of its own.
#pragma once

#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fir/fir_design.h"
#include "fir/fir_segment.h"
#include "fir/stored_fir.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {

struct FirRoom {
    ScratchFolder folder;
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    Session session;
    FirRequest request;
    FirFilter filter;
    FirState state;
    FirCommandRequest command;
    AnalysisResult results;
    PlotWindow plot;
    TemporaryFiles temporaries;
    FirDesk desk{{session, reporter, window, results, plot, temporaries}, request, filter, state, command};

    void ask(int length, FirSpecification specification, const std::vector<std::array<double, 4>>& bands) {
        request.filter_length = length;
        request.specification_type = specification;
        request.QUADRUPLETS = {};
        for (const auto& band : bands) {
            const int row = ++request.QUADRUPLETS.rows;
            for (int i = 1; i <= 4; ++i) request.QUADRUPLETS(row, i) = band[static_cast<std::size_t>(i) - 1];
        }
    }
    // An equal ripple filter of bands in weights.
    void design(int length, const std::vector<std::array<double, 4>>& bands) {
        ask(length, FirSpecification::weights, bands);
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    }

    // Sends a word, and answers the boxes and lines of this command alone.
    std::string send(std::string_view word) {
        window.boxes.clear();
        window.lines.clear();
        session.entry(SegmentId::fir) = fir_entry::ordinary_command;
        session.word(SegmentId::fir) = CommandKeyword(word);
        firSegment(desk);
        EXPECT_TRUE(session.word(SegmentId::fir).is_blank()) << word;
        return fmt::format("{}{}", boxes(), fmt::join(window.lines, "\n"));
    }

    [[nodiscard]] std::string boxes() const { return fmt::format("{}", fmt::join(window.boxes, " | ")); }
    [[nodiscard]] std::string lines() const {
        std::string text;
        for (const std::string& line : window.lines) text += line + '\n';
        return text;
    }
    [[nodiscard]] bool reported(std::string_view text) const { return lines().find(text) != std::string::npos; }
};

// A filter with a function of these taps.
inline FirFilter filter_of(const std::vector<double>& taps) {
    FirFilter filter;
    filter.sampling_frequency = 48000;
    const FirResponse response = response_of(taps);
    EXPECT_TRUE(add_function(filter, response.function, response.coefficients));
    return filter;
}

}  // namespace kavrel
