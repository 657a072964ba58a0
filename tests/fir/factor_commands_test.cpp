// Commands on the factors of a designed filter.
#include "fir/factor_commands.h"

#include <cmath>

#include <gtest/gtest.h>

#include "fir/factors.h"
#include "fir/fir_design.h"
#include "fir/fir_rows.h"
#include "fir/fir_segment.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

struct FactorCommands : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    Session session;
    FirRequest request;
    FirFilter filter;
    AnalysisResult results;
    FirState state;
    FirCommandRequest command;
    PlotWindow plot;
    TemporaryFiles temporaries;
    FirDesk desk{{session, reporter, window, results, plot, temporaries}, request, filter, state, command};

    void design(int length) {
        request.filter_length = length;
        request.specification_type = FirSpecification::weights;
        request.QUADRUPLETS = {};
        for (const auto& band : {std::array{0.0, 8.0, 1.0, 1.0}, {11.0, 24.0, 0.0, 10.0}}) {
            const int row = ++request.QUADRUPLETS.rows;
            for (int column = 1; column <= 4; ++column) request.QUADRUPLETS(row, column) = band[column - 1U];
        }
        FirFilter made;
        ASSERT_EQ(remez_design(desk, made), FirDesignVerdict::designed);
        filter = made;
    }
    // A filter of these taps and nothing asked.
    void take(const std::vector<double>& taps) {
        filter = {};
        filter.sampling_frequency = 1;
        const FirResponse response = response_of(taps);
        ASSERT_TRUE(add_function(filter, response.function, response.coefficients));
    }
    // The boxes of a command.
    std::vector<std::string> send(std::string_view word) {
        window.boxes.clear();
        window.lines.clear();
        session.word(SegmentId::fir) = word;
        firSegment(desk);
        return window.boxes;
    }
    std::vector<std::string> send_factor(std::string_view word, int serial, double linear, double quadratic) {
        command.serial = serial;
        command.linear = linear;
        command.quadratic = quadratic;
        return send(word);
    }
    [[nodiscard]] double deviation(int function) {
        Unwatched unwatched;
        return check_fir(filter, function, unwatched).rows.at(1).reached;
    }
};

using Boxes = std::vector<std::string>;
const Boxes done = {"Success: *** Done ***"}, none = {"Warning: No factored form"},
            no_room = {"Warning: No space available"}, not_there = {"Warning: Indicated factor not present"};

TEST_F(FactorCommands, AFilterIsFactoredMadeMinimumPhaseAndMultiplied) {
    design(31);
    EXPECT_EQ(send("fac "), Boxes());
    ASSERT_EQ(window.lines.size(), static_cast<std::size_t>(filter.factors.count) + 2);
    EXPECT_EQ(window.lines.front(), " **** Factored form ****");
    EXPECT_EQ(window.lines[1].substr(0, 21), "   1   1.00000000E+00");
    EXPECT_EQ(window.lines.back().substr(0, 14), " multiplier = ");
    const auto table = window.lines;
    send("prf ");
    EXPECT_EQ(window.lines, table);
    EXPECT_EQ(filter.factors.function, 1);
    EXPECT_EQ(send("min "), done);
    EXPECT_EQ(filter.factors.function, 0);
    EXPECT_EQ(send("min "), Boxes());
    EXPECT_EQ(window.lines, Boxes{" There are no zeros outside the unit circle"});
    EXPECT_EQ(send("mult"), Boxes());
    EXPECT_EQ(window.lines, Boxes{" Function number  2, length 31"});
    EXPECT_EQ(filter.FUNCTION(2).symmetry, FirSymmetry::none);
    EXPECT_TRUE(filter.FUNCTION(2).asked);
    EXPECT_NEAR(deviation(2) / deviation(1), 1, 1e-8) << "the same magnitude";
    double early = 0, before = 0;
    for (int i = 1; i <= 10; ++i) {
        early += std::pow(stored_coefficients(filter, 2)[static_cast<std::size_t>(i) - 1], 2);
        before += std::pow(stored_coefficients(filter, 1)[static_cast<std::size_t>(i) - 1], 2);
    }
    EXPECT_GT(early, 10 * before) << "no phase has its energy sooner";
    EXPECT_EQ(send("flip"), done);
    EXPECT_EQ(send("mult"), Boxes());
    const auto least = full_response(filter, 2), greatest = full_response(filter, 3);
    for (std::size_t i = 0; i < 31; ++i) EXPECT_NEAR(greatest[i], least[30 - i], 1e-12) << "the mirror image";
    EXPECT_EQ(send("sqr "), Boxes());
    EXPECT_EQ(filter.FUNCTION(4).taps, 61);
    EXPECT_EQ(filter.FUNCTION(4).symmetry, FirSymmetry::even);
    send("mult");
    const FirFilter full = filter;
    EXPECT_EQ(send("mult"), no_room);
    EXPECT_EQ(window.lines, Boxes{" Functions: 5 of 5, cells free: 378 of 518, needed: 31"});
    EXPECT_EQ(fingerprint(filter), fingerprint(full));
}

TEST_F(FactorCommands, AFactorKeepsItsSerialNumber) {
    take({2, 0, 1, 0, 0.125});
    filter.FUNCTION(1).asked = true;
    send("fac ");
    ASSERT_EQ(filter.factors.count, 2);
    EXPECT_TRUE(filter.factors.asked);
    EXPECT_EQ(send_factor("add ", 0, 0.5, 0), done);
    EXPECT_FALSE(filter.factors.asked);
    EXPECT_EQ(send_factor("del ", 2, 0, 0), done);
    EXPECT_EQ(send_factor("add ", 0, 1, 0.5), done);
    EXPECT_EQ(send_factor("ch  ", 3, -0.5, 0), done);
    const int serials[] = {1, 3, 4};
    for (int k = 1; k <= 3; ++k) EXPECT_EQ(filter.factors.ISER(k), serials[k - 1]);
    EXPECT_EQ(filter.factors.A1(2), -0.5);
    command.SERIAL = {.rows = 2, .cells = {4, 3}};
    window.lines.clear();
    multiply_selected(desk);
    EXPECT_EQ(full_response(filter, 2), (std::vector<double>{1, 0.5, 0, -0.25})) << "its first tap is 1";
    filter.factors.last_serial = filter.factors.ISER(1) = fir_serial_limit;
    send_factor("add ", 0, 0, 1);
    EXPECT_EQ(filter.factors.ISER(4), 1) << "the least number that is free";
    for (const int serial : {fir_serial_limit, 3, 4}) send_factor("del ", serial, 0, 0);
    EXPECT_EQ(send_factor("del ", 1, 0, 0), done);
    EXPECT_EQ(send("prf "), none);
}

TEST_F(FactorCommands, WhatIsRefusedLeavesTheFilterAsItWas) {
    for (const auto* word : {"fac ", "sqr "}) EXPECT_EQ(send(word), Boxes{"Error: Data is unavailable"}) << word;
    take({1, 0.5, 0.25});
    for (const auto* word : {"prf ", "flip", "min ", "mult", "add ", "del ", "ch  ", "ffac"}) {
        EXPECT_EQ(send(word), none) << word;
    }
    command.function_number = 2;
    for (const auto* word : {"fac ", "sqr "}) EXPECT_EQ(send(word), Boxes{"Error: Function does not exist"}) << word;
    command.function_number = 1;
    send("fac ");
    const auto unchanged = [&, before = fingerprint(filter)] { return fingerprint(filter) == before; };
    const struct {
        const char* word;
        int serial;
        double linear, quadratic;
        Boxes boxes;
        std::string field;
    } rows[] = {{"add ", 0, 0, 0, {"Error: A factor needs a coefficient that is not 0"}, "linear"},
                {"add ", 0, HUGE_VAL, 0, {"Error: Values of the filter are out of range"}, ""},
                {"ch  ", 1, 0, 0, {"Error: A factor needs a coefficient that is not 0"}, "linear"},
                {"ch  ", 2, 1, 1, not_there, "serial"},
                {"del ", 0, 0, 0, not_there, "serial"}};
    for (const auto& row : rows) {
        EXPECT_EQ(send_factor(row.word, row.serial, row.linear, row.quadratic), row.boxes) << row.word;
        EXPECT_TRUE(unchanged()) << row.word;
    }
    const FormList<fir_serial_limit, 1> lists[] = {
        {}, {.rows = 1, .cells = {2}}, {.rows = 2, .cells = {1, 1}}, {.rows = 1, .cells = {1.5}}};
    const Boxes said[] = {{"Error: No factors are listed"}, not_there, {"Error: A factor is listed twice"}, not_there};
    for (std::size_t i = 0; i < std::size(lists); ++i) {
        command.SERIAL = lists[i];
        window.boxes.clear();
        multiply_selected(desk);
        EXPECT_EQ(window.boxes, said[i]);
        EXPECT_TRUE(unchanged());
    }
    const struct {
        std::vector<double> taps;
        Boxes boxes;
    } responses[] = {{{0, 0, 0}, {"Error: All taps are 0: there are no factors"}},
                     {{0, 5}, {"Warning: The function has one tap only: there are no factors"}},
                     {std::vector<double>(515, 1.0), no_room},
                     {{1e-300, 1, 1e300}, {"Error: Root extraction did not converge", none.front()}}};
    for (const auto& row : responses) {
        take(row.taps);
        EXPECT_EQ(send("fac "), row.boxes);
        EXPECT_EQ(filter.factors.count, 0);
    }
    design(101);
    window.stop_at = 20;
    EXPECT_EQ(send("fac "), Boxes());
    EXPECT_EQ(window.lines, Boxes{" **** Stopped ****"});
    EXPECT_EQ(filter.factors.count, 0);
}

}  // namespace
}  // namespace kavrel
