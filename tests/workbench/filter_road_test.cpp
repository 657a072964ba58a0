// The road from the menu item to the transfer function.
#include "workbench/filter_road.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "exchange/pole_zero_text.h"
#include "forms/filter_form.h"
#include "forms/filter_input_file.h"
#include "forms/fir_input_file.h"
#include "shell/stored_files.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/start_up.h"
#include "workbench/state_json.h"

namespace kavrel {
namespace {

constexpr int new_item = 166;
constexpr int recall_item = 167;

struct FilterRoad : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};
    FilterRequest& request = bench.filter_request;

    FilterRoad() { main_program(bench, "", "x"); }

    // Accepts the form as the request stands.
    void design(int item = new_item) {
        window.forms = {[](FormSheet&) { return true; }};
        dispatch_event(bench, item);
    }
    void ask_for_elliptic_low_pass() {
        request.passband_type = PassbandChoice::equal_ripple;
        request.stopband_type = StopbandChoice::equal_min;
        request.upper_passband = 1.0;
        request.band_edge_loss = 0.1;
        request.upper_stopband = 1.5;
        request.upper_stop_loss = 40.0;
    }
    [[nodiscard]] nlohmann::json state() const { return nlohmann::json::parse(state_json(bench)); }
};

TEST_F(FilterRoad, ADesignLeavesItsPartsInTheState) {
    bench.session.units.frequency_index = 2;
    settle_units(bench.session.units);
    EXPECT_FALSE(state().contains("spec"));
    ask_for_elliptic_low_pass();
    request.filter_type = TypeChoice::high_pass;
    request.lower_passband = 1.5;
    request.lower_stopband = 1.0;
    request.lower_stop_loss = 40.0;
    design();
    EXPECT_TRUE(window.boxes.empty());
    const auto now = state();
    EXPECT_EQ(now["design"], "done");
    EXPECT_EQ(now["title"], "<New Filter>");
    EXPECT_EQ(now["segment"], "main");
    EXPECT_EQ(now["spec"]["title"], "<New Filter> 2026-01-01");
    EXPECT_EQ(now["spec"]["lowerPassEdge"], 1500.0);
    EXPECT_EQ(now["spec"]["upperPassEdge"], 0.0);
    EXPECT_EQ(now["spec"]["lowerStopEdge"], 1000.0);
    EXPECT_EQ(now["spec"]["degree"], 5);
    EXPECT_EQ(now["spec"]["zerosAtZero"], 1);
    EXPECT_EQ(now["spec"]["zeroCount"], 2);
    EXPECT_EQ(now["spec"]["FZI"].size(), 2U);
    EXPECT_LT(now["spec"]["FZI"][0].get<double>(), 1000.0) << "zeros lie in the stopband";
    EXPECT_EQ(now["transfer"]["degree"], 5);
    EXPECT_EQ(now["transfer"]["poles"].size(), 5U);
    EXPECT_EQ(now["transfer"]["zeros"].size(), 5U);
    EXPECT_DOUBLE_EQ(now["transfer"]["norm_frequency"].get<double>(), 2.0 * std::acos(-1.0) * 1500.0);
    for (const char* set : {"E", "F", "Q"}) EXPECT_EQ(now["x_plane"][set]["roots"].size(), 5U) << set;
    // Degree 5: es + ed make the even parts of e of degree 2, os and od the odd ones.
    EXPECT_EQ(now["immittance"].size(), 4U);
    EXPECT_EQ(now["immittance"]["es"]["roots"].size(), 2U);
    EXPECT_EQ(now["x_plane"]["type"], "high_pass");
    EXPECT_EQ(now["terminations"]["requested_ratio"], 1.0);
    EXPECT_EQ(now["terminations"]["nearest_ratio"], 1.0);
    EXPECT_EQ(bench.session.design_kind, 1);
    EXPECT_EQ(bench.session.design_class, std::string_view("filter"));
}

void ask_for_band_pass(FilterRequest& request) {
    request.filter_type = TypeChoice::band_pass;
    request.passband_type = PassbandChoice::equal_ripple;
    request.band_edge_loss = 0.1;
    request.lower_passband = 1000.0;
    request.upper_passband = 1300.0;
    request.lower_stopband = 700.0;
    request.upper_stopband = 1800.0;
    request.lower_stop_loss = request.upper_stop_loss = 40.0;
    request.fq_or_fs = 8000.0;
}

// The file tells every zero of the upper half plane, those at the origin too, the list a row for a pair or a quadruple.
TEST_F(FilterRoad, AListOfZerosReadFromAPoleZeroFileIsTheDesignAgain) {
    ask_for_band_pass(request);
    request.stopband_type = StopbandChoice::specified;
    request.zeros_at_zero = 3;
    request.zeros_at_infinity = 1;
    request.TR_ZEROS.rows = 4;
    request.TR_ZEROS(1, 2) = 700.0;
    request.TR_ZEROS(2, 1) = 300.0, request.TR_ZEROS(2, 2) = 1150.0;
    request.TR_ZEROS(4, 1) = 900.0;  // behind a blank row
    design();
    ASSERT_EQ(bench.design, DesignOutcome::done);
    EXPECT_EQ(bench.filter.found.zeroCount, 3);
    EXPECT_EQ(bench.filter.found.degree, 12);
    const auto poles = state()["transfer"]["poles"];

    std::string text;
    for (const std::string& line : pole_zero_lines(bench.filter.design.transfer, false, "")) text += line + '\n';
    write_text("band.pz", text);
    FormSheet sheet(SPECIFIED_ZEROS_DLG, &request, bench.session.units, bench.reporter);
    window.files = {"band.pz"};
    sheet.read_rows(1);
    EXPECT_EQ(window.boxes.back(), "Success:  *** Done ***");
    EXPECT_EQ(request.TR_ZEROS.rows, 3);
    design();
    const auto again = state()["transfer"]["poles"];
    ASSERT_EQ(again.size(), poles.size());
    for (std::size_t i = 0; i < poles.size(); ++i) {
        EXPECT_NEAR(again[i][0].get<double>(), poles[i][0].get<double>(), 1e-6 * 8e3) << "of ten digits in the file";
        EXPECT_NEAR(again[i][1].get<double>(), poles[i][1].get<double>(), 1e-6 * 8e3);
    }
}

// Whether the count is odd or not the estimate tells, not the counts of the form, which are off.
TEST_F(FilterRoad, ParametricBandPassesOfEachKindHaveTheirDegreeEstimated) {
    ask_for_band_pass(request);
    request.bandpass_form = BandpassChoice::parametric;
    for (int kind = 1; kind <= 4; ++kind) {
        for (const StopbandChoice stopband : {StopbandChoice::monotonic, StopbandChoice::equal_min}) {
            request.filter_kind = static_cast<FilterKind>(kind);
            request.stopband_type = stopband;
            window.boxes.clear();
            design();
            EXPECT_TRUE(window.boxes.empty());
            ASSERT_EQ(bench.design, DesignOutcome::done) << kind;
            EXPECT_EQ(state()["spec"]["bandpassType"], parametric);
            if (stopband == StopbandChoice::monotonic) {
                EXPECT_EQ(state()["spec"]["degreeParity"], 1);
            }
        }
    }
}

TEST_F(FilterRoad, TheStateTellsTheVariableAndWhatBoundsTheTerminations) {
    ask_for_band_pass(request);
    request.r2 = 100.0;
    design();
    EXPECT_EQ(state()["x_plane"]["type"], "band_pass");
    EXPECT_EQ(state()["terminations"], (nlohmann::json{{"requested_ratio", 2.0}})) << "nothing bounds it";

    // A matching network of lines alone is worked on as a high-pass.
    request.filter_kind = FilterKind::microwave;
    request.bandpass_form = BandpassChoice::matching;
    request.lower_stopband = request.lower_stop_loss = request.upper_stopband = request.upper_stop_loss = 0.0;
    request.lower_passband = 6000.0;
    request.upper_passband = 9000.0;
    request.fq_or_fs = 10000.0;
    request.unit_elements = -1;
    design();
    ASSERT_EQ(bench.design, DesignOutcome::done) << window.boxes.back();
    EXPECT_EQ(state()["spec"]["filterType"], 4);
    EXPECT_EQ(state()["x_plane"]["type"], "high_pass");
    EXPECT_EQ(state()["x_plane"]["a"], 0.0);
    EXPECT_FALSE(state()["terminations"].contains("nearest_ratio"));
    ask_for_elliptic_low_pass();
    request.filter_kind = FilterKind::lc;
    request.filter_type = TypeChoice::low_pass;
    request.upper_stopband = 2.0;
    design();
    EXPECT_EQ(state()["x_plane"]["type"], "low_pass");
}

// The form leaves zeros in rad/sec to the driver, which knows the unit.
TEST_F(FilterRoad, ZerosInRadiansLieBelowHalfTheSamplingFrequency) {
    bench.session.units.frequency_index = 2;
    settle_units(bench.session.units);
    ask_for_elliptic_low_pass();
    request.filter_kind = FilterKind::iir_digital;
    request.fq_or_fs = 5.0;
    request.stopband_type = StopbandChoice::specified;
    request.zeros_at_infinity = 2;
    request.zero_unit = ZeroUnitChoice::radians;
    for (const auto& [hertz, box] : {std::pair{2490.0, ""}, {2510.0, "Error: Sampling frequency too low"}}) {
        request.TR_ZEROS = {.rows = 1, .cells = {0.0, 2.0 * std::acos(-1.0) * hertz}};
        window.boxes.clear();
        design();
        EXPECT_EQ(window.boxes.empty() ? "" : window.boxes.back(), box) << hertz;
    }
}

TEST_F(FilterRoad, WhatFailsLeavesTheFormerResults) {
    ask_for_elliptic_low_pass();
    design();
    const auto before = state();
    const auto same_results = [&](const nlohmann::json& now) {
        for (const char* part : {"spec", "transfer", "x_plane", "immittance", "title"}) {
            if (now[part] != before[part]) return false;
        }
        return true;
    };
    // Left with cancel.
    window.forms = {[](FormSheet& sheet) { return !sheet.enter(4, "7").empty(); }};
    dispatch_event(bench, new_item);
    EXPECT_EQ(state(), before);

    request.upper_stopband = 1.00001;
    request.stopband_type = StopbandChoice::monotonic;
    request.upper_stop_loss = 100.0;
    design();
    EXPECT_EQ(state()["design"], "discontinued");
    EXPECT_EQ(state()["request"]["upperStopEdge"], 1.00001);
    EXPECT_EQ(state()["request"]["designError"], 1);
    EXPECT_TRUE(same_results(state()));
    EXPECT_EQ(bench.discontinued_designs, 1);
    EXPECT_NE(window.lines.back().find("Required degree"), std::string::npos);
}

TEST_F(FilterRoad, PlacedZerosAreNotBuiltYet) {
    ask_for_elliptic_low_pass();
    design();
    const auto before = state();
    request.stopband_type = StopbandChoice::placer;
    request.PLACER_REQS = {.rows = 1, .cells = {2.0, 60.0}};
    design();
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Default: Command not implemented"});
    auto now = state();
    now["boxes"] = before["boxes"];
    EXPECT_EQ(now, before);
}

TEST_F(FilterRoad, SavedInputIsRecalledWithItsUnits) {
    bench.session.units.frequency_index = 2;
    settle_units(bench.session.units);
    ask_for_elliptic_low_pass();
    request.save_design = true;
    window.files = {"lowpass"};
    design();
    EXPECT_EQ(read_text("lowpass.qfi"), filter_input_bytes(request, bench.session.units));
    request.upper_stop_loss = 50.0;
    design();
    EXPECT_EQ(read_text("lowpass.qfi"), filter_input_bytes(request, bench.session.units))
        << "no name is asked for again";

    bench.session.units = {};
    request = {};
    window.files = {"lowpass.qfi"};
    design(recall_item);
    EXPECT_EQ(request.upper_stop_loss, 50.0);
    EXPECT_EQ(bench.session.units.frequency_multiplier, 1000.0);
    EXPECT_EQ(state()["spec"]["upperPassEdge"], 1000.0) << "with this very design";
}

TEST_F(FilterRoad, FilesThatDoNotFitAreRefused) {
    write_text("fir.qfi", fir_input_bytes({}, {}));
    write_text("short.qfi", filter_input_bytes({}, {}).substr(0, 500));
    const struct {
        const char* name;
        const char* box;
    } rows[] = {{"fir.qfi", "Error: File contains incorrect data"},
                {"short.qfi", "Error: File contains incorrect data"},
                {"none.qfi", "Error: File was not found"}};
    for (const auto& row : rows) {
        window.files = {row.name};
        window.boxes.clear();
        design(recall_item);
        EXPECT_EQ(window.boxes, std::vector<std::string>{row.box});
        EXPECT_EQ(window.forms.size(), 1U) << "the form does not open";
    }
    ask_for_elliptic_low_pass();
    request.save_design = true;
    request.FIXED_ZEROS.rows = 11;
    window.boxes.clear();
    design();
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: A file has room for 10 fixed zeros"});
    request.FIXED_ZEROS.rows = 10;
    window.files = {"no/such/folder.qfi"};
    window.boxes.clear();
    design();
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: File could not be written"});
    EXPECT_EQ(bench.design, DesignOutcome::none);
}

TEST_F(FilterRoad, KindsSettleWhatTheyCannotChoose) {
    ask_for_elliptic_low_pass();
    request.filter_kind = FilterKind::active_rc;
    request.zs_parameter = 1;
    design();
    EXPECT_EQ(request.zs_parameter, 1) << "the form keeps what it held";
    EXPECT_EQ(state()["spec"]["symmetryFlag"], -1);
    EXPECT_EQ(state()["spec"]["implementation"], "A");
    EXPECT_EQ(state()["spec"]["sourceResistance"], 1.0);
    EXPECT_EQ(state()["spec"]["loadResistance"], 0.0);

    UnitSet& units = bench.session.units;
    units.frequency_index = 4;
    units.inductor_index = units.capacitor_index = 4;
    settle_units(units);
    ASSERT_EQ(units.fixed_units, 3);
    request.filter_kind = FilterKind::microwave;
    request.fq_or_fs = 4.0;
    design();
    EXPECT_EQ(units.fixed_units, 0);
    EXPECT_EQ(units.frequency_index, 4);
    EXPECT_EQ(bench.session.inductor_scale, 1.0);
    EXPECT_EQ(state()["spec"]["sampleFrequency"], 8e9) << "twice the quarter-wave frequency";
}

}  // namespace
}  // namespace kavrel
