// Commands on factors, and their way through menu, form and file.
#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "fir/factors.h"
#include "fir/fir_rows.h"
#include "fir/fir_segment.h"
#include "fir/stored_fir.h"
#include "forms/fir_analysis_form.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/rooms.h"
#include "workbench/start_up.h"

namespace kavrel {
namespace {

using Texts = std::vector<std::string>;
const Texts done = {"Success: *** Done ***"}, none = {"Warning: No factored form"};
const Texts no_room = {"Warning: No space available"}, not_there = {"Warning: Indicated factor not present"};
const Texts no_coefficient = {"Error: A factor needs a coefficient that is not 0"};

struct FirFactorCommands : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};
    FirFilter& filter = bench.fir;
    FirCommandRequest& command = bench.fir_command;

    FirFactorCommands() { main_program(bench, "", "x"); }
    void design(int length) {
        bench.fir_request.filter_length = length;
        bench.fir_request.specification_type = FirSpecification::weights;
        bench.fir_request.QUADRUPLETS = {.rows = 2, .cells = {0, 8, 1, 1, 8 + 93.0 / length, 24, 0, 10}};
        send_item(1031);
    }
    void take(const std::vector<double>& taps) {
        filter = {};
        filter.sampling_frequency = 1;
        const FirResponse response = response_of(taps);
        ASSERT_TRUE(add_function(filter, response.function, response.coefficients));
    }
    // The boxes of an item, its form taken as it is, or of a word with these numbers in its form.
    Texts send_item(int item) {
        window.forms = {[](FormSheet&) { return true; }};
        window.boxes.clear();
        dispatch_event(bench, item);
        return window.boxes;
    }
    Texts send(std::string_view word, int serial = 0, double linear = 0, double quadratic = 0) {
        command.serial = serial, command.linear = linear, command.quadratic = quadratic;
        window.boxes.clear(), window.lines.clear();
        bench.session.word(SegmentId::fir) = word;
        FirDesk desk = fir_desk(bench);
        firSegment(desk);
        return window.boxes;
    }
    Texts select(const FormList<fir_serial_limit, 1>& serials) {
        command.SERIAL = serials;
        return send_item(1150);
    }
};

TEST_F(FirFactorCommands, AFilterIsFactoredMadeMinimumPhaseAndMultiplied) {
    design(31);
    EXPECT_EQ(send("fac "), Texts());
    const auto table = window.lines;
    ASSERT_EQ(table.size(), static_cast<std::size_t>(filter.factors.count) + 2);
    EXPECT_EQ(table.front(), " **** Factored form ****");
    EXPECT_EQ(table[1].substr(0, 21), "   1   1.00000000E+00");
    EXPECT_EQ(table.back().substr(0, 14), " multiplier = ");
    send("prf ");
    EXPECT_EQ(window.lines, table);
    EXPECT_EQ(send("min "), done);
    EXPECT_EQ(send("min "), Texts());
    EXPECT_EQ(window.lines, Texts{" There are no zeros outside the unit circle"});
    send("mult");
    EXPECT_EQ(window.lines, Texts{" Function number  2, length 31"});
    Unwatched unwatched;
    const auto stopband = [&](int n) { return check_fir(filter, n, unwatched).rows.at(1).reached; };
    EXPECT_NEAR(stopband(2) / stopband(1), 1, 1e-8);
    EXPECT_EQ(send("flip"), done);
    send("mult");
    const auto least = full_response(filter, 2), greatest = full_response(filter, 3);
    for (std::size_t i = 0; i < 31; ++i) EXPECT_NEAR(greatest[i], least[30 - i], 1e-12) << "the mirror image";
    send("sqr ");
    EXPECT_EQ(stored_coefficients(filter, 4).size(), 31U) << "half of 61";
    send("mult");
    const auto full = fingerprint(filter);
    EXPECT_EQ(send("mult"), no_room);
    EXPECT_EQ(window.lines, Texts{" Functions: 5 of 5, cells free: 378 of 518, needed: 31"});
    EXPECT_EQ(fingerprint(filter), full);
}

TEST_F(FirFactorCommands, ASquareHasItsPairsOnTheCircleTwice) {
    for (const int length : {31, 101, 201}) {
        design(length);
        int& n = command.function_number = 1;
        send("sqr ");
        std::ptrdiff_t pairs[3] = {};
        for (; n <= 2; ++n) {
            send("fac ");
            pairs[n] = std::ranges::count(filter.factors.A2, 1.0);
        }
        EXPECT_EQ(pairs[2], 2 * pairs[1]) << length;
    }
}

TEST_F(FirFactorCommands, AFactorKeepsItsSerialNumber) {
    take({2, 0, 1, 0, 0.125});
    filter.FUNCTION(1).asked = true;
    send("fac ");
    EXPECT_TRUE(filter.factors.asked);
    EXPECT_EQ(send("add ", 0, 0.5), done);
    EXPECT_FALSE(filter.factors.asked);
    EXPECT_EQ(send("del ", 2), done);
    EXPECT_EQ(send("add ", 0, 1, 0.5), done);
    EXPECT_EQ(send("ch  ", 3, -0.5), done);
    EXPECT_EQ(select({.rows = 2, .cells = {4, 3}}), Texts());
    EXPECT_EQ(full_response(filter, 2), (std::vector<double>{1, 0.5, 0, -0.25})) << "its first tap is 1";
    filter.factors.last_serial = filter.factors.ISER(1) = fir_serial_limit;
    send("add ", 0, 0, 1);
    for (const int serial : {fir_serial_limit, 3, 4}) EXPECT_EQ(send("del ", serial), done);
    EXPECT_EQ(send("del ", 1), done) << "the least number that was free";
    EXPECT_EQ(send("prf "), none);
}

TEST_F(FirFactorCommands, WhatIsRefusedLeavesTheFilterAsItWas) {
    take({1, 0.5, 0.25});
    for (const auto* word : {"prf ", "flip", "min ", "mult", "add ", "del ", "ch  ", "ffac"}) {
        EXPECT_EQ(send(word), none) << word;
    }
    send("fac ");
    const auto before = fingerprint(filter);
    EXPECT_EQ(send("add "), no_coefficient);
    EXPECT_EQ(send("add ", 0, HUGE_VAL), Texts{"Error: Values of the filter are out of range"});
    EXPECT_EQ(send("ch  ", 1), no_coefficient);
    EXPECT_EQ(send("ch  ", 2, 1), not_there);
    EXPECT_EQ(send("del "), not_there);
    EXPECT_EQ(select({}), Texts{"Error: No factors are listed"});
    EXPECT_EQ(select({.rows = 2, .cells = {1, 1}}), Texts{"Error: A factor is listed twice"});
    EXPECT_EQ(select({.rows = 1, .cells = {1.5}}), not_there);
    EXPECT_EQ(fingerprint(filter), before);
    const std::pair<std::vector<double>, Texts> responses[] = {
        {{0, 0, 0}, {"Error: All taps are 0: there are no factors"}},
        {{0, 5}, {"Warning: One tap only is not 0: there are no factors"}},
        {std::vector<double>(515, 1.0), no_room},
        {{1e-300, 1, 1e300}, {"Error: Root extraction did not converge", none.front()}}};  // b = 1e600
    for (const auto& [taps, boxes] : responses) {
        take(taps);
        EXPECT_EQ(send("fac "), boxes);
        EXPECT_EQ(filter.factors.count, 0);
    }
    design(101);
    window.stop_at = 20;
    send("fac ");
    EXPECT_EQ(window.lines, Texts{" **** Stopped ****"});
    EXPECT_EQ(filter.factors.count, 0);
}

TEST_F(FirFactorCommands, AFactoredFileIsReadAsAListOfQuadratics) {
    design(24);
    bench.session.TITLE = "Quadratic terms";
    send("fac ");
    window.files = {"out.dat", "out.dat"};
    EXPECT_EQ(send("ffac"), done);
    FirAnalysisRequest r;
    FormSheet(FIR_ZEROS_DLG, &r, bench.session.units, bench.reporter).read_rows(0);
    ASSERT_EQ(r.FIR_ZEROS.rows, filter.factors.count);
    for (int k = 1; k <= filter.factors.count; ++k) {
        EXPECT_EQ(std::pair(r.FIR_ZEROS(k, 1), r.FIR_ZEROS(k, 2)),
                  std::pair(filter.factors.A1(k), filter.factors.A2(k)));
    }
}

}  // namespace
}  // namespace kavrel
