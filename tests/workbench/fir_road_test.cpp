// The road from the menu item to the FIR Segment.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "forms/fir_input_file.h"
#include "shell/settings.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/start_up.h"
#include "workbench/state_json.h"

namespace kavrel {
namespace {

constexpr int new_item = 1031;
constexpr int recall_item = 1032;

struct FirRoad : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};

    FirRoad() { main_program(bench, "", "x"); }

    // Accepts the form as `bench.fir_request` stands.
    void design(int item = new_item) {
        window.forms = {[](FormSheet&) { return true; }};
        dispatch_event(bench, item);
    }
    void ask_for(int length, double pass, double stop, double nyquist) {
        FirRequest& r = bench.fir_request;
        r.filter_length = length;
        r.specification_type = FirSpecification::weights;
        r.QUADRUPLETS = {};
        r.QUADRUPLETS.rows = 2;
        const double rows[2][4] = {{0, pass, 1, 1}, {stop, nyquist, 0, 10}};
        for (int row = 1; row <= 2; ++row) {
            for (int column = 1; column <= 4; ++column) r.QUADRUPLETS(row, column) = rows[row - 1][column - 1];
        }
    }
};

TEST_F(FirRoad, ADesignLeavesFilterResultsTitleAndSegment) {
    bench.session.units.frequency_multiplier = 1000.0;
    ask_for(21, 1.0, 2.0, 5.0);
    design();
    EXPECT_EQ(window.titles.back(), "Kavrel - FIR DIGITAL MENU");
    EXPECT_EQ(bench.design, DesignOutcome::done);
    EXPECT_EQ(bench.session.TITLE, std::string_view("<New Filter>"));
    EXPECT_EQ(bench.session.design_class, std::string_view("filter"));
    EXPECT_EQ(bench.fir.sampling_frequency, 10000.0) << "in hertz";
    EXPECT_EQ(bench.results.time_count, 21);
    EXPECT_FLOAT_EQ(bench.results.TIME(2), 1.0e-4F);
    const auto state = nlohmann::json::parse(state_json(bench));
    EXPECT_EQ(state["fir"]["symmetry"], "even");
    EXPECT_EQ(state["fir"]["impulse"].size(), 21U);
    EXPECT_EQ(state["fir"]["impulse"][0], state["fir"]["impulse"][20]);
    EXPECT_NEAR(state["fir"]["deviation"].get<double>() / (10.0 * bench.fir.deviation), 1.0, 0.01) << "weighted";
    EXPECT_GT(state["fir"]["outside_gain"].get<double>(), 0.5) << "between the bands";
    EXPECT_EQ(state["units"]["frequency"], 1000.0);
}

TEST_F(FirRoad, WhatFailsLeavesTheFormerDesign) {
    ask_for(21, 1.0, 2.0, 5.0);
    design();
    const auto before = nlohmann::json::parse(state_json(bench));
    const auto unchanged = [&] {
        const auto now = nlohmann::json::parse(state_json(bench));
        return now["fir"] == before["fir"] && now["time"] == before["time"] && now["title"] == before["title"];
    };
    const auto refused = [&](auto change, std::string_view box) {
        const FirRequest kept = bench.fir_request;
        change(bench.fir_request);
        window.boxes.clear();
        design();
        bench.fir_request = kept;
        return window.boxes == std::vector<std::string>{std::string(box)} && unchanged();
    };
    EXPECT_TRUE(refused([](FirRequest& r) { r.QUADRUPLETS(2, 1) = 0.5; }, "Error: Error in input data"))
        << "edges fall";
    EXPECT_TRUE(refused([](FirRequest& r) { r.QUADRUPLETS(1, 1) = -0.5; }, "Error: Error in input data"));
    EXPECT_TRUE(refused([](FirRequest& r) { r.QUADRUPLETS(2, 4) = 0.0; }, "Error: Error in input data")) << "weight 0";
    EXPECT_TRUE(refused([](FirRequest& r) { r.QUADRUPLETS(2, 1) = std::nan(""); },
                        "Error: Incorrect frequency band specification"));
    EXPECT_TRUE(refused([](FirRequest& r) { r.QUADRUPLETS(2, 3) = std::nan(""); }, "Error: Error in input data"));
    EXPECT_TRUE(refused([](FirRequest& r) { r.filter_length = 513; }, "Error: Error in input data"));
    EXPECT_TRUE(refused([](FirRequest& r) { r.filter_length = 0; }, "Error: Incomplete specification"));
    EXPECT_TRUE(refused([](FirRequest& r) { r.design_method = FirMethod{7}; }, "Error: Error in specification"));
    for (const FirType type : {FirType::differentiator, FirType::hilbert}) {
        const auto antisymmetric = [type](int length, double upper) {
            return [=](FirRequest& r) {
                r.fir_type = type;
                r.filter_length = length;
                r.lower_frequency = r.slope = 1.0;
                r.upper_frequency = upper;
                r.sampling_frequency = 10.0;
            };
        };
        EXPECT_TRUE(refused(antisymmetric(1, 4.0), "Error: Error in input data"));
        EXPECT_TRUE(refused(antisymmetric(3, 4.0), "Error: Error in input data"));
        EXPECT_TRUE(refused(antisymmetric(20, 6.0), "Error: Error in input data"))
            << "above half the sampling frequency";
    }
    EXPECT_EQ(bench.design, DesignOutcome::discontinued);
}

TEST_F(FirRoad, TheUserCanStopTheExchange) {
    ask_for(101, 1.0, 1.1, 5.0);
    window.stop_at = 3;
    design();
    EXPECT_EQ(window.lines.back(), " **** design discontinued ****");
    EXPECT_EQ(bench.fir.functions, 0);
    EXPECT_EQ(bench.session.segment, SegmentId::main);
    EXPECT_EQ(bench.discontinued_designs, 1);
}

TEST_F(FirRoad, InputDataAreSavedAndRecalled) {
    ask_for(21, 1.0, 2.0, 5.0);
    bench.fir_request.save_design = true;
    window.files = {"input"};
    design();
    EXPECT_EQ(read_text("input.qfi"), fir_input_bytes(bench.fir_request, {}));
    EXPECT_EQ(bench.session.input_file, std::string_view("input.qfi"));

    Workbench other{window};
    window.files = {"input.qfi"};
    window.forms = {[](FormSheet&) { return true; }};
    dispatch_event(other, recall_item);
    EXPECT_EQ(other.design, DesignOutcome::done);
    EXPECT_EQ(other.fir.X, bench.fir.X);

    write_text("short.qfi", read_text("input.qfi").substr(0, 4000));
    Workbench third{window};
    window.files = {"short.qfi"};
    dispatch_event(third, recall_item);
    EXPECT_EQ(window.boxes.back(), "Error: File contains incorrect data");
    EXPECT_EQ(third.fir_request.QUADRUPLETS.rows, 0);
    EXPECT_TRUE(third.session.input_file.is_blank());
    window.files = {"missing.qfi"};
    dispatch_event(third, recall_item);
    EXPECT_EQ(window.boxes.back(), "Error: File was not found");
}

TEST_F(FirRoad, AnotherFormsInputFileIsNotOverwritten) {
    ask_for(21, 1.0, 2.0, 5.0);
    bench.fir_request.save_design = true;
    bench.session.input_file = "filter.qfi";
    write_text("filter.qfi", "data of another form");
    window.files = {"fir.qfi"};
    design();
    EXPECT_EQ(read_text("filter.qfi"), "data of another form");
    EXPECT_EQ(read_text("fir.qfi"), fir_input_bytes(bench.fir_request, {}));
}

TEST_F(FirRoad, InputDataThatCannotBeWrittenStopTheRoad) {
    ask_for(21, 1.0, 2.0, 5.0);
    bench.fir_request.save_design = true;
    window.files = {"missing/input.qfi"};
    design();
    EXPECT_EQ(window.boxes.back(), "Error: File could not be written");
    EXPECT_EQ(bench.design, DesignOutcome::none);
    EXPECT_EQ(bench.fir_request.filter_length, 21);
}

}  // namespace
}  // namespace kavrel
