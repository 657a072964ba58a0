// The road from a filter design to its circuit.
#include "workbench/ladder_road.h"

#include <cmath>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "approximation/power_loss.h"
#include "circuit/chain_analysis.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/rooms.h"
#include "workbench/start_up.h"
#include "workbench/state_json.h"

namespace kavrel {
namespace {

constexpr int new_item = 166;

struct LadderRoad : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};
    FilterRequest& request = bench.filter_request;

    LadderRoad() {
        main_program(bench, "", "x");
        request.passband_type = PassbandChoice::equal_ripple;
        request.stopband_type = StopbandChoice::equal_min;
        request.upper_passband = 1000.0;
        request.band_edge_loss = 0.1;
        request.upper_stopband = 1500.0;
        request.upper_stop_loss = 60.0;
        request.r1 = request.r2 = 600.0;
    }

    // Accepts the filter form, then the synthesis form as `settings` has it.
    void design(const SynthesisForm& settings = {}) {
        bench.ladder.form = settings;
        window.lines.clear();
        window.boxes.clear();
        const auto accept = [](FormSheet&) { return true; };
        window.forms = {accept, accept};
        dispatch_event(bench, new_item);
    }
    [[nodiscard]] bool reported(std::string_view text) const {
        return std::ranges::any_of(window.lines, [&](const auto& line) { return line.find(text) != line.npos; });
    }
    [[nodiscard]] double loss(double hz) const {
        Chain chain;
        ChainPoint point;
        EXPECT_EQ(prepare_chain(bench.passive.circuit, {}, chain), ChainVerdict::done);
        EXPECT_EQ(analyze_point(chain, 2.0 * std::acos(-1.0) * hz, point), PointVerdict::computed);
        return static_cast<double>(point.loss);
    }
    [[nodiscard]] double designed_loss(double hz) const {
        return lossAt(bench.filter.design.worked, bench.filter.design.x_plane, hz);
    }
    [[nodiscard]] nlohmann::json state() const { return nlohmann::json::parse(state_json(bench)); }
};

TEST_F(LadderRoad, ADesignEndsInThePassiveSegmentWithItsCircuitDrawn) {
    design();
    EXPECT_TRUE(window.boxes.empty());
    EXPECT_EQ(bench.session.segment, SegmentId::passive);
    EXPECT_EQ(window.titles.back(), "Kavrel - PASSIVE LC/MICROWAVE MENU");
    EXPECT_TRUE(reported(" Results of the synthesis from the input side"));
    EXPECT_TRUE(reported(" *** Done ***"));
    EXPECT_EQ(window.lines.back(), " 10 │       R       600.000000  ohm");
    EXPECT_NEAR(loss(1000.0), 0.1, 1e-9);
    EXPECT_NEAR(loss(1500.0), designed_loss(1500.0), 1e-6);

    const auto now = state();
    EXPECT_EQ(now["segment"], "passive");
    EXPECT_LT(now["synthesis"]["loss_error"], 1e-9);
    EXPECT_EQ(now["synthesis"]["direction"], "forward");
    const auto& branches = now["circuit"]["branches"];
    ASSERT_EQ(branches.size(), 9U);
    EXPECT_EQ(branches[2]["type"], "lc");
    EXPECT_EQ(branches[2]["series"], true);
    EXPECT_EQ(branches[2]["values"].size(), 2U);
    EXPECT_EQ(now["parts"].size(), 12U);
    EXPECT_EQ(now["parts"][2]["name"], "l01");
    EXPECT_EQ(now["parts"][2]["unit"], "H");
    EXPECT_NEAR(now["terminations"]["nearest_ratio"].get<double>(), 1.0, 1e-12);

    request.r2 = 200.0;
    design();
    const auto unequal = state()["terminations"];
    EXPECT_DOUBLE_EQ(unequal["requested_ratio"].get<double>(), 200.0 / 600.0) << "R2/R1, as the nearest one";
    EXPECT_DOUBLE_EQ(unequal["nearest_ratio"].get<double>(),
                     bench.passive.circuit.VALUE(bench.passive.circuit.ilast) / 600.0);
}

TEST_F(LadderRoad, TheFormIsFollowed) {
    SynthesisForm settings;
    settings.direction = DirectionChoice::reverse;
    settings.print_polynomials = true;
    design(settings);
    EXPECT_TRUE(reported(" Results of the synthesis from the output side"));
    EXPECT_TRUE(reported("******* Immittance polynomials *******"));
    EXPECT_EQ(state()["synthesis"]["direction"], "reverse");
    EXPECT_NEAR(loss(1500.0), designed_loss(1500.0), 1e-6);

    // Of degree 7 the even parts are of degree 6, the odd ones of degree 7: es/os by hand is what the program takes.
    settings = {};
    settings.impedance_selection = AutoChoice::manual;
    settings.this_is_an = ImmittanceChoice::z;
    design(settings);
    EXPECT_TRUE(reported(" *** Done ***"));
    EXPECT_NEAR(loss(1500.0), designed_loss(1500.0), 1e-6);
}

TEST_F(LadderRoad, WhatCannotBeBuiltLeavesTheFormerCircuitAndMenu) {
    design();
    const Circuit former = bench.passive.circuit;
    const auto synthesis = state()["synthesis"];
    ASSERT_FALSE(synthesis.is_null());
    const auto keeps = [&](const char* what) {
        EXPECT_TRUE(former == bench.passive.circuit) << what;
        EXPECT_EQ(synthesis, state()["synthesis"]) << what;
        EXPECT_EQ(bench.session.segment, SegmentId::passive) << what;
        EXPECT_EQ(window.menu.data(), room_of(SegmentId::passive).menu.data()) << what;
    };

    SynthesisForm settings;
    settings.configuration = AutoChoice::manual;
    design(settings);
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Default: Command not implemented"});
    keeps("stepping by hand");

    window.forms.clear();
    const auto accept = [](FormSheet&) { return true; };
    window.forms = {accept};
    dispatch_event(bench, new_item);
    keeps("form left");
    EXPECT_EQ(bench.discontinued_designs, 0);

    // Without a zero of transmission at the origin, at infinity or of a line no ladder can end.
    request.stopband_type = StopbandChoice::specified;
    request.TR_ZEROS.rows = 2;
    request.TR_ZEROS(1, 2) = 1600.0;
    request.TR_ZEROS(2, 2) = 2500.0;
    request.zeros_at_infinity = 0;
    request.zs_parameter = -1;
    design();
    EXPECT_TRUE(reported(" **** Passive realization is not possible ****"));
    EXPECT_EQ(window.lines.back(), " **** Synthesis failed ****");
    EXPECT_EQ(bench.discontinued_designs, 1);
    keeps("not realizable");
}

// One with negative elements, and a search for fewer of them.
TEST_F(LadderRoad, TheUserCanStopTheSearch) {
    request.filter_type = TypeChoice::band_pass;
    request.bandpass_form = BandpassChoice::conventional;
    request.passband_type = PassbandChoice::max_flat;
    request.lower_stopband = 949.517, request.lower_passband = 1000.0;
    request.upper_passband = 2295.657, request.upper_stopband = 2411.563;
    request.band_edge_loss = 1.7591437, request.lower_stop_loss = 24.9665, request.upper_stop_loss = 28.6841;
    request.r2 = 0.0;
    window.stop_at = 180;
    design();
    EXPECT_TRUE(reported(stopped_line));
    EXPECT_EQ(bench.session.segment, SegmentId::main);
    EXPECT_EQ(bench.passive.circuit, Circuit{});
    window.stop_at = -1;
    design();
    EXPECT_FALSE(reported(stopped_line));
    EXPECT_TRUE(reported(negative_elements_text));
    EXPECT_NEAR(loss(1000.0) - loss(1500.0), 1.7591437, 1e-6);
}

TEST_F(LadderRoad, APolynomialThatIsNotThereCannotBeChosen) {
    SynthesisForm form;
    form.has_es = form.has_os = true;
    form.impedance_selection = AutoChoice::manual;
    form.numerator = NumeratorChoice::even_difference;
    EXPECT_EQ(SYNTHESIS_DLG.refusal(&form).text, " Specified function does not exist or is incorrect");
    form.numerator = NumeratorChoice::even_sum;
    EXPECT_EQ(SYNTHESIS_DLG.refusal(&form).text, "");
    form.form = FormChoice::lattice;
    form.unit_elements = true;
    EXPECT_EQ(SYNTHESIS_DLG.refusal(&form).text, "Filter with unit elements has no lattice implementation");
}

// Stubs are drawn as impedances; the circuit knows twice its quarter-wave frequency.
TEST_F(LadderRoad, AMicrowaveDesignHasStubsAndLines) {
    request.filter_kind = FilterKind::microwave;
    request.fq_or_fs = 6000.0;
    request.stopband_type = StopbandChoice::monotonic;
    request.upper_stopband = 3000.0;
    request.upper_stop_loss = 30.0;
    request.unit_elements = 2;
    design();
    ASSERT_TRUE(window.boxes.empty()) << window.boxes.front();
    EXPECT_EQ(bench.session.segment, SegmentId::passive);
    EXPECT_TRUE(reported(" **** All values are impedances ****"));
    EXPECT_TRUE(reported("*  u e  *"));
    EXPECT_EQ(state()["circuit"]["kind"], "microwave");
    EXPECT_EQ(state()["circuit"]["fs"], 12000.0);
    EXPECT_NEAR(loss(1000.0), 0.1, 1e-9);
    EXPECT_GT(loss(3000.0), 30.0);
}

}  // namespace
}  // namespace kavrel
