#include "approximation/filter_driver.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include <gtest/gtest.h>

#include "approximation/band_shift.h"
#include "approximation/frequency_variable.h"
#include "approximation/front_verdict.h"
#include "approximation/power_loss.h"
#include "approximation/s_plane.h"
#include "tests/approximation/request.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

struct FilterDriver : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    std::unique_ptr<FilterDesign> design = std::make_unique<FilterDesign>();

    // A low-pass, as far as it is not changed.
    static FilterSpec asked(const std::string& change) {
        return request(
            "upperPassEdge 1000 upperStopEdge 2000 bandEdgeLoss 3 stopbandLoss 40 sourceResistance 50 "
            "loadResistance 50 " +
            change);
    }
    FilterDesignVerdict run(FilterSpec& spec, FilterKind kind = FilterKind::lc) {
        window.lines.clear();
        window.boxes.clear();
        return designFilter(kind, spec, *design, {}, reporter);
    }
    FilterSpec designed(const std::string& change, FilterKind kind = FilterKind::lc) {
        FilterSpec spec = asked(change);
        EXPECT_EQ(run(spec, kind), FilterDesignVerdict::designed) << change;
        return spec;
    }
    [[nodiscard]] bool reports(std::string_view text) const {
        std::string report;
        for (const std::string& line : window.lines) report += line + '\n';
        const auto holds = [&](const std::string& box) { return box.find(text) != std::string::npos; };
        return holds(report) || std::ranges::any_of(window.boxes, holds);
    }
};

TEST_F(FilterDriver, TerminationsAndSymmetryFollowTheImplementation) {
    const struct {
        FilterKind kind;
        const char* change;
        double R1, R2;
        int symmetry;
        char letter;
    } rows[] = {
        {FilterKind::lc, "", 50, 50, 1, 'P'},
        {FilterKind::lc, "symmetryFlag -1", 50, 50, -1, 'P'},
        {FilterKind::lc, "loadResistance 75", 50, 75, 0, 'P'},
        {FilterKind::lc, "sourceResistance 0 loadResistance 0", 50, 0, 0, 'P'},
        {FilterKind::lc, "sourceResistance 0 loadResistance 75", 75, 0, 0, 'P'},
        {FilterKind::lc, "sourceResistance 75 loadResistance 0", 75, 0, 0, 'P'},
        {FilterKind::lc, "predistortionQ 100", 50, 50.05, 0, 'P'},
        {FilterKind::active_rc, "", 1, 0, -1, 'A'},
        {FilterKind::iir_digital, "sourceResistance 0 loadResistance 0", 1, 0, -1, 'I'},
        {FilterKind::microwave, "", 50, 50, 1, 'M'},
    };
    for (const auto& row : rows) {
        const FilterSpec spec =
            designed(std::string("specified_zeros zerosAtInfinity 3 sampleFrequency 8000 ") + row.change, row.kind);
        EXPECT_EQ(spec.sourceResistance, row.R1) << row.letter << row.change;
        EXPECT_DOUBLE_EQ(spec.loadResistance, row.R2) << row.letter << row.change;
        EXPECT_EQ(spec.symmetryFlag, row.symmetry) << row.letter << row.change;
        EXPECT_EQ(spec.implementation, row.letter);
    }
}

// What ends a design, what it says, and that the former one stays.
TEST_F(FilterDriver, EveryRefusalIsReportedAndLeavesTheFormerDesign) {
    designed("specified_zeros zerosAtInfinity 4");
    const double pole = design->transfer.POLES_RE(1);
    const std::string low = "specified_zeros zerosAtInfinity 4 ";
    const std::string band = low + "band_pass lowerPassEdge 900 zerosAtZero 2 ";
    const std::string given = "functional_passband specified_zeros bandEdgeLoss 0 upperPassEdge 3000 ";
    const std::string unequal = "specified_zeros bandEdgeLoss 0.1 upperPassEdge 3000 loadResistance 100 ";
    const std::string inadequate = "Fatal error: Incorrect or inadequate specification";
    const std::string no_ripple_roots =
        " Roots of equal ripple characteristic function numerator have not been found\n **** design discontinued ****";
    const std::string stopband = "Error: Incorrect stop band specification,\ndesign discontinued";
    const std::string no_root = " **** No convergence ****\n";
    const std::string low_at_zero = "Error: Multiplicity at zero too low for given slope";
    const std::string low_at_infinity = "Error: Multiplicity at infinity too low for given slope";
    const struct {
        std::string text, change;
        FilterKind kind = FilterKind::lc;
        std::string solver = {};  // its line before that of the design
    } rows[] = {
        // the driver
        {"Error: Implementation is unknown", low, static_cast<FilterKind>(7)},
        {inadequate, low + "bandEdgeLoss 0"},
        {inadequate, low + "monotonic_stopband stopbandLoss 0"},
        {inadequate, low + "monotonic_stopband upperStopEdge 1000"},
        {inadequate, low + "high_pass equal_minima lowerPassEdge 1000 lowerStopEdge 1001"},
        {"Error: Sampling frequency too low", low + "sampleFrequency 5000 FZI 1500 2500", FilterKind::iir_digital},
        {"Error: Quarter-wave frequency too low", low + "sampleFrequency 2500 FZI -2500", FilterKind::microwave},
        {low_at_zero, band + "sloping_passband stopbandLoss -1e300"},
        {low_at_infinity, band + "sloping_passband stopbandLoss 1e12"},
        // the check of the request
        {"Error: Cut-off frequency(ies) not specified,\ndesign discontinued", low + "upperPassEdge 0"},
        {"Cut-off frequency(ies) not specified,", low + "sampleFrequency 2000", FilterKind::iir_digital},
        {"Cut-off frequency(ies) not specified,", band + "lowerPassEdge 1001"},
        {"Passband edge frequencies equal,", band + "lowerPassEdge 1000"},
        {"Error: Filter type is incorrect,\ndesign discontinued", low + "filterType 5"},
        {"Error: Band-edge loss is not specified,\ndesign discontinued", low + "bandEdgeLoss -1"},
        {"Error: Pass-band specification incorrect,\ndesign discontinued", low + "passbandType 4"},
        {stopband, low + "zerosAtInfinity 0"},
        {stopband, low + "stopbandType 3"},
        {"Incomplete polynomial specification,", low + "functional_passband"},
        // counts and zeros
        {" **** Required degree 51 is too high, design discontinued ****", low + "zerosAtInfinity 51"},
        {"Terminations may not be equal or zero", band + "impedance_matching"},
        {"Fatal error: Matching network is not needed\nor is incorrectly specified",
         band + "equal_ripple impedance_matching loadResistance 51 monotonic_stopband upperStopEdge 0"},
        {"Incorrect stopband specification", band + "equal_minima lowerStopEdge 950"},
        {no_ripple_roots, low + "equal_ripple FZI 500"},
        {no_ripple_roots, low + "equal_ripple FZI 1000"},
        {" **** Parametric function root is out of range ****\n **** design discontinued ****",
         band + "zerosAtZero 1 zerosAtInfinity 0"},
        {" Root extraction did not converge in finding zeros for\n equal minima stop band\n"  // a reflection zero there
         " **** design discontinued ****",
         "functional_passband equal_minima functionMultiplier 1 numeratorFactors 0 9 0"},
        {" **** Iteration for equal minima stop band did not converge in 10 tries ****\n **** design discontinued ****",
         // poles so near to the stopband that its minima hardly move with the zero that is to go to infinity
         "functional_passband equal_minima upperStopEdge 1002.8748 denominatorFactors 0.23231519909278353 "
         "15.252843576176708 0.005333649549683516 0.06947848662908276"},
        // from Q and F to the immittances
        {low_at_zero, band + "sloping_passband lowerPassEdge 50 zerosAtZero 1 zerosAtInfinity 2 stopbandLoss -19"},
        {low_at_infinity, band + "sloping_passband lowerPassEdge 50 zerosAtZero 2 zerosAtInfinity 0 stopbandLoss 31"},
        {"Cut-off frequency(ies) not specified,", band + "sloping_passband lowerPassEdge 0 stopbandLoss 3"},
        {no_ripple_roots, band + "sloping_passband FZI 900 stopbandLoss 3"},
        {"Error: Inconsistency in specifying e(.),\ndesign discontinued",
         given + "denominatorFactors 1 zerosAtInfinity 4"},
        {"Inconsistency in specifying e(.),", given + "denominatorFactors 0.4 0.9 0.3 0.5 zerosAtInfinity 3"},
        {"Inconsistency in specifying e(.),",  // a zero in the right half plane
         given + "denominatorFactors 0.4 0.9 -0.3 0.5 zerosAtInfinity 4"},
        {"Error: Inconsistency in specifying f(.),\ndesign discontinued",
         given + "numeratorFactors 0.5 functionMultiplier 1 zerosAtInfinity 3"},
        {" **** Zeros of the even and odd parts of the specified\n e(.) or f(.) have not been found ****\n"
         "design discontinued",  // qualities up to 1e9, at frequencies seven decades apart
         given +
             "numeratorFactors 1e-5 1e-6 1e-5 1e8 1e-5 1e4 1e-5 1e8 1e-5 1e4 functionMultiplier 1 zerosAtInfinity 10",
         FilterKind::lc, " Pseudo-polynomial root extraction did not converge\n **** design discontinued ****\n"},
        {"Error: Transfer function pole on imaginary axis,\ndesign discontinued",
         low + "FZI 0"},                                                    // where f is zero too
        {"Transfer function poles could not be found,design discontinued",  // ripples that no number can hold
         unequal +
             "band_pass parametric equal_ripple lowerPassEdge 2000 zerosAtZero 1 zerosAtInfinity 5 bandEdgeLoss 1e-100",
         FilterKind::lc, no_root},
        {"Transfer function pole on imaginary axis,",
         unequal + "equal_ripple equal_minima degree 22 upperStopEdge 4500 stopbandLoss 40 bandEdgeLoss 5e-62"},
        {"Error: Even and odd parts of denominator were not found,\ndesign discontinued",
         unequal + "band_pass lowerPassEdge 2000 zerosAtZero 1 zerosAtInfinity 1 bandEdgeLoss 1.8e-53"},
        {"Error: Even and odd parts of f(.) were not found,\ndesign discontinued",  // a loss of 10^258 at the edge
         unequal + "zerosAtInfinity 24 bandEdgeLoss 2577.4088772334208 loadResistance 2304.1593732535857"},
        {"Error: Characteristic function numerator has wrong zeros,\ndesign discontinued",  // no pair of real ones
         given + "band_pass parametric lowerPassEdge 2000 denominatorFactors 0.2 0.9 0.25 0.5 zerosAtZero 3 "
                 "zerosAtInfinity 1"},
        {"Error: Zeros of new characteristic polynomial\nwere not found, design discontinued",
         unequal + "band_pass sloping_passband lowerPassEdge 2000 zerosAtZero 3 zerosAtInfinity 3 stopbandLoss 3 "
                   "flatLoss 1e5",
         FilterKind::lc, no_root},
        {" **** design discontinued ****", low + "predistortionQ 1"},  // by the answer
        // the shift to a centre
        {"Band center frequency is too low", low + "centerFrequency 3000 FZI 3000", FilterKind::active_rc},
        {"Center frequency too low, no shifted bandpass", low + "centerFrequency 2000", FilterKind::active_rc},
        {"Degree too high, no shifted bandpass", low + "centerFrequency 1e5 zerosAtInfinity 26", FilterKind::active_rc},
        {"Degree too high, no shifted bandpass", low + "centerFrequency 1e5 zerosAtInfinity 25 odd_parametric 1",
         FilterKind::active_rc},
    };
    for (const auto& row : rows) {
        FilterSpec spec = asked(row.change);
        EXPECT_EQ(run(spec, row.kind), FilterDesignVerdict::discontinued) << row.change;
        EXPECT_TRUE(reports(row.text)) << row.change;
        EXPECT_TRUE(reports(row.solver)) << row.change;
        EXPECT_NE(spec.designError, 0) << row.change;
        EXPECT_TRUE(reports("discontinued")) << row.change;
        EXPECT_LE(std::ranges::count(window.lines, report_discontinued), 1) << row.change;
        EXPECT_EQ(design->transfer.POLES_RE(1), pole);
    }
}

// No request of a filter asks for it, only one of a delay.
TEST(FrontMessages, RequirementsAreUnrealistic) {
    const FrontMessage& message = messageOf(FrontFault::unrealistic);
    EXPECT_EQ(message.place, MessagePlace::box);
    EXPECT_EQ(message.first, "Requirements are unrealistic,");
    EXPECT_EQ(message.second, "design discontinued");
}

// A ladder with one termination needs zeros at its ends as one with two does; an active filter takes them all finite.
TEST_F(FilterDriver, EqualMinimaOfALadderLeaveZerosAtItsEnds) {
    const struct {
        FilterType type;
        const char* edges;
    } rows[] = {{low_pass, "low_pass upperStopEdge 1500"},
                {high_pass, "high_pass lowerPassEdge 800 lowerStopEdge 600 upperStopEdge 1500"},
                {band_pass, "band_pass lowerPassEdge 800 lowerStopEdge 600 upperStopEdge 1300"}};
    for (const auto& [type, edges] : rows) {
        for (const std::string passband : {" maximally_flat", " equal_ripple"}) {
            const std::string change =
                edges + passband + " equal_minima bandEdgeLoss 0.1 upperStopLoss 40 loadResistance 0";
            const FilterSpec active = designed(change, FilterKind::active_rc), ladder = designed(change);
            const int prototype = type == band_pass ? ladder.degree / 2 : ladder.degree;
            const int at_each_end = prototype % 2 == 0 ? 2 : 1;
            EXPECT_EQ(ladder.zerosAtZero, type == low_pass ? 0 : at_each_end);
            EXPECT_EQ(ladder.zerosAtInfinity, type == high_pass ? 0 : at_each_end);
            EXPECT_GE(design->notes.front.upper_loss_reached, 40.0);
            EXPECT_GE(ladder.degree, active.degree);
            EXPECT_LE(active.zerosAtInfinity, 1);
        }
    }
}

// All zeros of a matching network lie at infinity.
TEST_F(FilterDriver, AMatchingNetworkHasAMonotonicStopband) {
    for (const std::string stopband : {"monotonic_stopband", "equal_minima"}) {
        const FilterSpec spec =
            designed(stopband +
                     " band_pass equal_ripple impedance_matching lowerPassEdge 500 upperStopEdge 2500 "
                     "bandEdgeLoss 0.1 upperStopLoss 40 loadResistance 200");
        EXPECT_EQ(spec.zeroCount, 0);
        for (const char* text :
             {"Monotonic stop band with edge frequency", "Required stop band loss", "Stop band loss reached"}) {
            EXPECT_TRUE(reports(text)) << text;
        }
        EXPECT_FALSE(reports("Equal minima"));
    }
}

TEST_F(FilterDriver, FiftyIsTheHighestDegree) {
    designed("specified_zeros zerosAtInfinity 50");
    EXPECT_EQ(design->transfer.poleCount, 50);
}

TEST_F(FilterDriver, TheUserMayStop) {
    FilterSpec spec = asked("specified_zeros zerosAtInfinity 4");
    window.stop_at = 2;
    EXPECT_EQ(run(spec), FilterDesignVerdict::discontinued);
    EXPECT_TRUE(reports(" **** design discontinued ****"));
}

// A shifted low-pass has each of its poles at plus the centre, and the conjugates; its loss at the centre is the least.
TEST_F(FilterDriver, AShiftedBandHasThePolesOfTheLowPassAroundItsCentre) {
    const double centre = 2.0 * std::numbers::pi * 20e3;
    const FilterSpec low = designed("equal_minima", FilterKind::active_rc);
    const TransferFunction prototype = design->transfer;
    for (const bool odd : {false, true}) {
        const FilterSpec band =
            designed(std::string("equal_minima centerFrequency 20e3 odd_parametric ") + (odd ? "1" : "0"),
                     FilterKind::active_rc);
        const TransferFunction& shifted = design->transfer;
        EXPECT_EQ(band.filterType, band_pass);
        EXPECT_EQ(band.degree, 2 * low.degree + (odd ? 1 : 0));
        EXPECT_EQ(band.zerosAtZero + band.zerosAtInfinity + 2 * band.zeroCount, band.degree);
        EXPECT_EQ(band.centerFrequency, 20e3);
        for (int i = 1; i <= prototype.poleCount; ++i) {
            double nearest = centre;
            for (int j = 1; j <= shifted.poleCount; ++j) {
                nearest = std::min(nearest, std::hypot(shifted.POLES_RE(j) - prototype.POLES_RE(i),
                                                       shifted.POLES_IM(j) - prototype.POLES_IM(i) - centre));
            }
            EXPECT_LT(nearest, 1e-12 * centre) << "pole " << i;
        }
    }
}

// 10^(-loss/20) = |level prod(s - zero)/prod(s - pole)| at s = jw, of every kind of request.
TEST_F(FilterDriver, TheLevelGivesTheLoss) {
    using enum FilterKind;
    const std::string minima = "equal_ripple bandEdgeLoss 0.1 equal_minima ", given = "equal_ripple specified_zeros ";
    const std::string high = "high_pass lowerPassEdge 1000 lowerStopEdge 600 ", low = "zerosAtInfinity ";
    const std::string band = "band_pass lowerPassEdge 800 lowerStopEdge 600 upperStopLoss 50 conventional ";
    const std::string ends = "specified_zeros zerosAtZero 4 zerosAtInfinity 4 ";
    const struct {
        FilterKind kind;
        std::string change;
    } requests[] = {
        {lc, ""},
        {lc, "maximally_flat equal_minima loadResistance 0"},
        {lc, given + low + "50"},
        {lc, given + low + "3 FZR 500 FZI 1500"},
        {lc, given + low + "3 FZR 3000 FZI 0"},
        {lc, minima + "predistortionQ 60 loadResistance 75"},
        {active_rc, minima + "centerFrequency 20e3"},
        {active_rc, minima + "centerFrequency 20e3 odd_parametric 1 predistortionQ 300"},
        {iir_digital, minima + "sampleFrequency 8000"},
        {microwave, given + low + "3 unitElements 3 sampleFrequency 3000"},
        {lc, high},
        {active_rc, high + minima},
        {iir_digital, high + minima + "sampleFrequency 8000"},
        {microwave, high + given + "zerosAtZero 2 unitElements 2 sampleFrequency 3000"},
        {lc, high + given + "zerosAtZero 3 zerosAtInfinity 1 FZI 400"},
        {lc, band + "upperStopEdge 1300"},
        {lc, band + minima + "upperStopEdge 1300"},
        {iir_digital, band + minima + "upperStopEdge 1300 sampleFrequency 8000"},
        {microwave, band + ends + "unitElements 2 sampleFrequency 3000"},
        {lc, band + given + "parametric zerosAtZero 2 zerosAtInfinity 3 FZI 1500"},
        {lc, band + ends + "sloping_passband parametric stopbandLoss 3"},
        {lc, band + ends + "sloping_passband impedance_matching stopbandLoss -7.5 flatLoss 1 loadResistance 0"},
        {iir_digital, band + ends + "sloping_passband stopbandLoss 3 sampleFrequency 8000"},
        {lc, band + ends + "impedance_matching equal_ripple zerosAtZero 0 loadResistance 150"},
        {lc, low + "3 functional_passband specified_zeros functionMultiplier 2 numeratorFactors 0 0.5 0"},
        {lc, low + "3 functional_passband specified_zeros denominatorFactors 1 1.1 0.9"},
    };
    for (const auto& [kind, change] : requests) {
        designed(change, kind);
        const TransferFunction& t = design->transfer;
        const FilterSpec& worked = design->worked;
        const double edge = worked.medium == lumped ? t.normFrequency : 1;
        for (const double times : {0.31, 0.77, 0.81, 0.93, 0.999, 1.01, 1.2, 1.44}) {
            const double hertz = times * static_cast<double>(design->x_plane.normFrequency);
            auto w = static_cast<double>(normalised_frequency(worked, design->x_plane, hertz));
            if (worked.filterType == high_pass) w = 1 / w;
            double gain = std::fabs(t.level), gain_of_roots = std::fabs(level_of_roots(worked.medium, t));
            const auto factor = [&](double re, double im) { return std::hypot(re / edge, w - im / edge); };
            for (int i = 1; i <= t.zeroCount; ++i) gain *= factor(t.ZEROS_RE(i), t.ZEROS_IM(i));
            for (int i = 1; i <= t.poleCount; ++i) gain /= factor(t.POLES_RE(i), t.POLES_IM(i));
            EXPECT_NEAR(-20 * std::log10(gain), lossAt(worked, design->x_plane, hertz), 1e-9) << change << hertz;
            gain_of_roots *= std::pow(edge, t.zeroCount - t.poleCount);
            EXPECT_NEAR(gain_of_roots / std::fabs(t.level), 1, 1e-12);
        }
    }
}

}  // namespace
}  // namespace kavrel
