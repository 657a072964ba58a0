#include "approximation/filter_driver.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <memory>
#include <numbers>

#include <gtest/gtest.h>

#include "approximation/band_shift.h"
#include "approximation/front_verdict.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

struct FilterDriver : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    std::unique_ptr<FilterDesign> design = std::make_unique<FilterDesign>();

    FilterDesignVerdict run(FilterSpec& spec, int entry = EntryCode::passive_lc) {
        window.lines.clear();
        window.boxes.clear();
        return designFilter(entry, spec, *design, {}, reporter);
    }
    [[nodiscard]] bool told(std::string_view text) const {
        std::string report;
        for (const std::string& line : window.lines) report += line + '\n';
        const auto holds = [&](const std::string& box) { return box.find(text) != std::string::npos; };
        return holds(report) || std::ranges::any_of(window.boxes, holds);
    }
};

FilterSpec low_pass_request(int degree = 0) {
    FilterSpec spec;
    spec.upperPassEdge = 1000.0;
    spec.upperStopEdge = 2000.0;
    spec.bandEdgeLoss = 3.0;
    spec.stopbandLoss = 40.0;
    spec.sourceResistance = spec.loadResistance = 50.0;
    if (degree > 0) {
        spec.stopbandType = specified_zeros;
        spec.zerosAtInfinity = degree;
    }
    return spec;
}

TEST_F(FilterDriver, TerminationsAndSymmetryFollowTheImplementation) {
    const struct {
        int entry;
        double r1, r2, q;
        FilterType filter_type;
        double R1, R2;
        int symmetry;
        char letter;
    } rows[] = {
        {EntryCode::passive_lc, 50, 50, 0, low_pass, 50, 50, 1, 'P'},
        {EntryCode::passive_lc, 50, 75, 0, low_pass, 50, 75, 0, 'P'},
        {EntryCode::passive_lc, 0, 0, 0, low_pass, 50, 0, 0, 'P'},
        {EntryCode::passive_lc, 0, 75, 0, low_pass, 75, 0, 0, 'P'},
        {EntryCode::passive_lc, 75, 0, 0, low_pass, 75, 0, 0, 'P'},
        {EntryCode::passive_lc, 50, 50, 100, low_pass, 50, 50.05, 0, 'P'},
        {EntryCode::active_rc, 50, 50, 0, low_pass, 1, 0, -1, 'A'},
        {EntryCode::iir_digital, 0, 0, 0, low_pass, 1, 0, -1, 'I'},
        {EntryCode::microwave, 50, 50, 0, low_pass, 50, 50, 1, 'M'},
    };
    for (const auto& row : rows) {
        FilterSpec spec = low_pass_request(3);
        spec.sourceResistance = row.r1;
        spec.loadResistance = row.r2;
        spec.predistortionQ = row.q;
        spec.filterType = row.filter_type;
        spec.sampleFrequency = 8000.0;
        ASSERT_EQ(run(spec, row.entry), FilterDesignVerdict::designed);
        EXPECT_EQ(spec.sourceResistance, row.R1);
        EXPECT_DOUBLE_EQ(spec.loadResistance, row.R2);
        EXPECT_EQ(spec.symmetryFlag, row.symmetry) << row.letter << row.r1 << ' ' << row.r2;
        EXPECT_EQ(spec.implementation, row.letter);
    }
    FilterSpec forced = low_pass_request(3);
    forced.symmetryFlag = -1;
    ASSERT_EQ(run(forced), FilterDesignVerdict::designed);
    EXPECT_EQ(forced.symmetryFlag, -1);
}

constexpr const char* ripple_roots_missing =
    " Roots of equal ripple characteristic function numerator have not been found\n **** design discontinued ****";

// Poles so near to the stopband that its minima hardly move with the zero that is to go to infinity.
void poles_beside_the_stopband(FilterSpec& s) {
    s.passbandType = functional_passband;
    s.stopbandType = equal_minima;
    s.zerosAtInfinity = 0;
    s.upperStopEdge = 1002.8748;
    for (const std::complex<double> x : {std::complex{1.07001, 4.46316e-3}, std::complex{-0.0746473, 1.62353e-3}}) {
        const std::complex<double> pole = std::sqrt(x / (1.0 - x));
        s.denominatorFactors(++s.denominatorDegree) = 2.0 * pole.real();
        s.denominatorFactors(++s.denominatorDegree) = std::norm(pole);
    }
}

// What ends a design, what it says, and that the former one stays.
TEST_F(FilterDriver, EveryRefusalIsToldAndLeavesTheFormerDesign) {
    FilterSpec former = low_pass_request(4);
    ASSERT_EQ(run(former), FilterDesignVerdict::designed);
    const double pole = design->transfer.POLES_RE(1);

    const auto band = [](FilterSpec& s) {
        s.filterType = band_pass;
        s.lowerPassEdge = 900.0;
        s.zerosAtZero = 2;
    };
    const struct {
        const char* told;
        int entry;
        void (*change)(FilterSpec& s);
    } rows[] = {
        {"Error: Implementation is unknown", 7, [](FilterSpec&) {}},
        {"Fatal error: Incorrect or inadequate specification", 1, [](FilterSpec& s) { s.bandEdgeLoss = 0.0; }},
        {"Fatal error: Incorrect or inadequate specification", 1,
         [](FilterSpec& s) { s.stopbandType = monotonic_stopband, s.stopbandLoss = 0.0; }},
        {"Fatal error: Incorrect or inadequate specification", 1,
         [](FilterSpec& s) { s.stopbandType = monotonic_stopband, s.upperStopEdge = 1000.0; }},
        {"Fatal error: Incorrect or inadequate specification", 1,
         [](FilterSpec& s) {
             s.filterType = high_pass, s.stopbandType = equal_minima, s.lowerPassEdge = 1000.0,
             s.lowerStopEdge = 1001.0;
         }},
        {"Cut-off frequency(ies) not specified,\ndesign discontinued", 1, [](FilterSpec& s) { s.upperPassEdge = 0.0; }},
        {"Cut-off frequency(ies) not specified,", 4, [](FilterSpec& s) { s.sampleFrequency = 2000.0; }},
        {"Required degree 51 is too high", 1, [](FilterSpec& s) { s.zerosAtInfinity = 51; }},
        {"Band center frequency is too low", 3,
         [](FilterSpec& s) { s.centerFrequency = 3000.0, s.zeroCount = 1, s.FZI(1) = 3000.0; }},
        {"Center frequency too low, no shifted bandpass", 3, [](FilterSpec& s) { s.centerFrequency = 2000.0; }},
        {"Degree too high, no shifted bandpass", 3,
         [](FilterSpec& s) { s.centerFrequency = 1e5, s.zerosAtInfinity = 26; }},
        {"Degree too high, no shifted bandpass", 3,
         [](FilterSpec& s) { s.centerFrequency = 1e5, s.zerosAtInfinity = 25, s.odd_parametric = true; }},
        {" **** design discontinued ****", 1, [](FilterSpec& s) { s.predistortionQ = 1.0; }},
        {"Incomplete polynomial specification,", 1, [](FilterSpec& s) { s.passbandType = functional_passband; }},
        {"Inconsistency in specifying e(.),", 1,
         [](FilterSpec& s) {
             s.passbandType = functional_passband, s.stopbandType = functional_stopband;
             s.denominatorDegree = 1, s.denominatorFactors(1) = 1.0;
         }},
        {"Transfer function pole on imaginary axis,", 1,
         [](FilterSpec& s) { s.zeroCount = 1, s.FZI(1) = 0.0; }},  // where f is zero too
        {"Error: Filter type is incorrect,\ndesign discontinued", 1,
         [](FilterSpec& s) { s.filterType = FilterType{5}; }},
        {"Error: Band-edge loss is not specified,\ndesign discontinued", 1,
         [](FilterSpec& s) { s.bandEdgeLoss = -1.0; }},
        {"Error: Pass-band specification incorrect,\ndesign discontinued", 1,
         [](FilterSpec& s) { s.passbandType = PassbandType{4}; }},
        {"Error: Incorrect stop band specification,\ndesign discontinued", 1,
         [](FilterSpec& s) { s.zerosAtInfinity = 0; }},
        {"Error: Incorrect stop band specification,\ndesign discontinued", 1,
         [](FilterSpec& s) { s.stopbandType = StopbandType{3}; }},
        {ripple_roots_missing, 1,
         [](FilterSpec& s) { s.passbandType = equal_ripple, s.zeroCount = 1, s.FZI(1) = 500.0; }},
        {ripple_roots_missing, 1,
         [](FilterSpec& s) { s.passbandType = equal_ripple, s.zeroCount = 1, s.FZI(1) = 1000.0; }},
        {" Root extraction did not converge in finding zeros for\n equal minima stop band\n"
         " **** design discontinued ****",
         1,
         [](FilterSpec& s) {
             s.passbandType = functional_passband, s.stopbandType = equal_minima, s.zerosAtInfinity = 0;
             s.functionMultiplier = 1.0, s.numeratorDegree = 3;
             s.numeratorFactors(2) = 9.0;  // a reflection zero in the stopband
         }},
        {" **** Iteration for equal minima stop band did not converge in 10 tries ****\n"
         " **** design discontinued ****",
         1, poles_beside_the_stopband},
        {"Error: Sampling frequency too low", 4,
         [](FilterSpec& s) { s.sampleFrequency = 5000.0, s.zeroCount = 2, s.FZI(1) = 1500.0, s.FZI(2) = 2500.0; }},
        {"Error: Quarter-wave frequency too low", 2,
         [](FilterSpec& s) { s.sampleFrequency = 2500.0, s.zeroCount = 1, s.FZI(1) = -2500.0; }},
    };
    for (const auto& row : rows) {
        FilterSpec spec = low_pass_request(4);
        row.change(spec);
        EXPECT_EQ(run(spec, row.entry), FilterDesignVerdict::discontinued) << row.told;
        EXPECT_TRUE(told(row.told)) << row.told;
        EXPECT_EQ(spec.designError, 1) << row.told;
        EXPECT_EQ(design->transfer.POLES_RE(1), pole);
    }
    const struct {
        const char* told;
        void (*change)(FilterSpec& s);
    } band_rows[] = {
        {"Passband edge frequencies equal,", [](FilterSpec& s) { s.lowerPassEdge = 1000.0; }},
        {"Cut-off frequency(ies) not specified,", [](FilterSpec& s) { s.lowerPassEdge = 1001.0; }},
        {"Multiplicity at zero too low for given slope",
         [](FilterSpec& s) { s.passbandType = sloping_passband, s.stopbandLoss = -19.0; }},
        {"Multiplicity at infinity too low for given slope",
         [](FilterSpec& s) { s.passbandType = sloping_passband, s.stopbandLoss = 31.0; }},
        {"Error: Multiplicity at zero too low for given slope",
         [](FilterSpec& s) { s.passbandType = sloping_passband, s.stopbandLoss = -1e300; }},
        {"Error: Multiplicity at infinity too low for given slope",
         [](FilterSpec& s) { s.passbandType = sloping_passband, s.stopbandLoss = 1e12; }},
        {" **** Parametric function root is out of range ****\n **** design discontinued ****",
         [](FilterSpec& s) { s.zerosAtZero = 1, s.zerosAtInfinity = 0; }},
        {"Incorrect stopband specification",
         [](FilterSpec& s) { s.stopbandType = equal_minima, s.lowerStopEdge = 950.0; }},
        {"Fatal error: Program terminating",
         [](FilterSpec& s) {
             s.passbandType = equal_ripple, s.bandpassType = impedance_matching, s.loadResistance = 51.0;
             s.stopbandType = monotonic_stopband, s.upperStopEdge = 0.0;
         }},
        {"Terminations may not be equal or zero", [](FilterSpec& s) { s.bandpassType = impedance_matching; }},
    };
    for (const auto& row : band_rows) {
        FilterSpec spec = low_pass_request(4);
        band(spec);
        row.change(spec);
        EXPECT_EQ(run(spec), FilterDesignVerdict::discontinued) << row.told;
        EXPECT_TRUE(told(row.told)) << row.told;
        EXPECT_NE(spec.designError, 0) << row.told;
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
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            const auto request = [&] {
                FilterSpec spec = low_pass_request();
                spec.filterType = type;
                spec.passbandType = passband;
                spec.stopbandType = equal_minima;
                spec.bandEdgeLoss = 0.1;
                spec.lowerPassEdge = type == low_pass ? 0.0 : 800.0;
                spec.lowerStopEdge = type == low_pass ? 0.0 : 600.0;
                spec.upperStopEdge = type == band_pass ? 1300.0 : 1500.0;
                spec.stopbandLoss = spec.upperStopLoss = 40.0;
                spec.loadResistance = 0.0;
                return spec;
            };
            FilterSpec active = request(), ladder = request();
            ASSERT_EQ(run(active, EntryCode::active_rc), FilterDesignVerdict::designed);
            ASSERT_EQ(run(ladder), FilterDesignVerdict::designed);
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
    for (const auto stopband : {monotonic_stopband, equal_minima}) {
        FilterSpec spec = low_pass_request();
        spec.filterType = band_pass;
        spec.passbandType = equal_ripple;
        spec.bandpassType = impedance_matching;
        spec.stopbandType = stopband;
        spec.lowerPassEdge = 500.0;
        spec.upperStopEdge = 2500.0;
        spec.bandEdgeLoss = 0.1;
        spec.upperStopLoss = 40.0;
        spec.loadResistance = 200.0;
        ASSERT_EQ(run(spec), FilterDesignVerdict::designed);
        EXPECT_EQ(spec.zeroCount, 0);
        EXPECT_TRUE(told("Monotonic stop band with edge frequency"));
        EXPECT_TRUE(told("Required stop band loss"));
        EXPECT_TRUE(told("Stop band loss reached"));
        EXPECT_FALSE(told("Equal minima"));
    }
}

TEST_F(FilterDriver, FiftyIsTheHighestDegree) {
    FilterSpec spec = low_pass_request(50);
    EXPECT_EQ(run(spec), FilterDesignVerdict::designed);
    EXPECT_EQ(design->transfer.poleCount, 50);
}

TEST_F(FilterDriver, TheUserMayStop) {
    FilterSpec spec = low_pass_request(4);
    window.stop_at = 2;
    EXPECT_EQ(run(spec), FilterDesignVerdict::discontinued);
    EXPECT_TRUE(told(" **** design discontinued ****"));
}

// A shifted low-pass has each of its poles at plus the centre, and the conjugates; its loss at the centre is the least.
TEST_F(FilterDriver, AShiftedBandHasThePolesOfTheLowPassAroundItsCentre) {
    const double centre = 2.0 * std::numbers::pi * 20e3;
    for (const bool odd : {false, true}) {
        FilterSpec low = low_pass_request();
        low.stopbandType = equal_minima;
        ASSERT_EQ(run(low, EntryCode::active_rc), FilterDesignVerdict::designed);
        const TransferFunction prototype = design->transfer;
        FilterSpec band = low_pass_request();
        band.stopbandType = equal_minima;
        band.centerFrequency = 20e3;
        band.odd_parametric = odd;
        ASSERT_EQ(run(band, EntryCode::active_rc), FilterDesignVerdict::designed);
        const TransferFunction& shifted = design->transfer;
        EXPECT_EQ(band.filterType, band_pass);
        EXPECT_EQ(band.degree, 2 * low.degree + (odd ? 1 : 0));
        EXPECT_EQ(band.zerosAtZero + band.zerosAtInfinity + 2 * band.zeroCount, band.degree);
        EXPECT_EQ(band.centerFrequency, 20e3);
        for (int i = 1; i <= prototype.poleCount; ++i) {
            double nearest = 1.0;
            for (int j = 1; j <= shifted.poleCount; ++j) {
                nearest = std::min(nearest, std::hypot(shifted.POLES_RE(j) - prototype.POLES_RE(i),
                                                       shifted.POLES_IM(j) - prototype.POLES_IM(i) - centre) /
                                                centre);
            }
            EXPECT_LT(nearest, 1e-12) << "pole " << i;
        }
    }
}

}  // namespace
}  // namespace kavrel
