// The report of a design, line by line, and the boxes between its lines.
#include "approximation/filter_report.h"

#include <memory>

#include <gtest/gtest.h>

#include "approximation/filter_driver.h"
#include "tests/approximation/request.h"
#include "tests/support/fake_window.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

// Puts boxes between the lines where they came up.
struct ReportWindow : FakeWindow {
    int choice = 0;

    Answer message(std::string_view text, std::string_view caption, Buttons) override {
        lines.push_back("[" + std::string(caption) + "] " + std::string(text));
        return Answer::ok;
    }
    int choose(const ChoiceBox& box) override {
        lines.push_back("[" + std::string(box.caption) + "] " + std::string(box.text));
        for (const auto label : box.choices) lines.push_back("    " + std::string(label));
        return choice;
    }
};

constexpr const char* low =
    "upperPassEdge 1000 upperStopEdge 1500 bandEdgeLoss 0.1 stopbandLoss 40 sourceResistance 50 loadResistance 50 ";
constexpr const char* band =
    "band_pass lowerPassEdge 60e3 upperPassEdge 68e3 bandEdgeLoss 0.1 sourceResistance 50 loadResistance 50 ";

struct Case {
    const char* name;
    FilterKind kind;
    const char* base;
    const char* change;
    int frequency_index = 1;
    int choice = 0;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

constexpr Case cases[] = {
    {"butterworth_lowpass", FilterKind::lc, low, "bandEdgeLoss 3 upperStopEdge 3000"},
    {"chebyshev_highpass_return_loss", FilterKind::lc, "high_pass equal_ripple lowerPassEdge 1e6 lowerStopEdge 5e5",
     "reflectionInput 20 bandEdgeLoss 0.0436480540245 stopbandLoss 50 sourceResistance 50 loadResistance 50", 3},
    {"elliptic_lowpass_even", FilterKind::lc, low,
     "equal_ripple equal_minima reflectionInput -15 bandEdgeLoss 0.0988196 stopbandLoss 50"},
    {"zeros_shifted_lowpass", FilterKind::lc, low,
     "equal_ripple specified_zeros zerosAtInfinity 2 FZR 0 700 500 FZI 1600 0 1200"},
    {"elliptic_bandpass", FilterKind::lc, band,
     "equal_ripple equal_minima lowerStopEdge 58e3 upperStopEdge 71e3 stopbandLoss 60 upperStopLoss 50", 2},
    {"odd_bandpass_reset", FilterKind::active_rc, band, "specified_zeros zerosAtZero 2 zerosAtInfinity 3", 2},
    {"digital_bandpass", FilterKind::iir_digital, band,
     "equal_ripple lowerStopEdge 50e3 upperStopEdge 80e3 stopbandLoss 30 upperStopLoss 40 sampleFrequency 200e3"},
    {"microwave_lowpass", FilterKind::microwave, low,
     "equal_ripple specified_zeros upperPassEdge 1e9 sampleFrequency 3e9 zerosAtInfinity 2 unitElements 3", 4},
    {"microwave_bandpass_freal", FilterKind::microwave, band,
     "specified_zeros parametric lowerPassEdge 1e9 upperPassEdge 2e9 sampleFrequency 4e9 zerosAtZero 3 "
     "zerosAtInfinity 2 unitElements 1",
     4},
    {"functional_e_rescaled", FilterKind::active_rc, "functional_passband functional_stopband upperPassEdge 1000",
     "zerosAtInfinity 3 denominatorFactors 3 9 3"},
    {"functional_f_highpass", FilterKind::lc, "high_pass functional_passband functional_stopband lowerPassEdge 1000",
     "zerosAtZero 3 functionMultiplier 2 numeratorFactors 0 2 sourceResistance 50 loadResistance 50"},
    {"sloped_bandpass", FilterKind::lc, band,
     "sloping_passband specified_zeros stopbandLoss -4 flatLoss 0.5 zerosAtZero 4 zerosAtInfinity 2", 2},
    {"matching_bandpass", FilterKind::lc, band,
     "equal_ripple impedance_matching lowerPassEdge 40e6 upperPassEdge 80e6 loadResistance 300", 3},
    {"predistortion_question", FilterKind::lc, low, "equal_ripple predistortionQ 3 upperStopEdge 2000", 1, 2},
    {"shifted_bandpass", FilterKind::active_rc, low,
     "equal_minima upperStopEdge 3000 centerFrequency 20e3 odd_parametric 1"},
    {"degree_specified", FilterKind::lc, low, "equal_ripple equal_minima degree 5"},
    {"degree_too_high", FilterKind::lc, low, "upperStopEdge 1100"},
};

class FilterReport : public testing::TestWithParam<Case> {};

TEST_P(FilterReport, ReadsAsItWasReadThroughOnce) {
    const Case& c = GetParam();
    ReportWindow window;
    window.choice = c.choice;
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    UnitSet units;
    units.frequency_index = c.frequency_index;
    settle_units(units);
    FilterSpec spec = request(c.change, request(c.base));
    spec.title = "<New Filter> 2026-01-01";
    const auto design = std::make_unique<FilterDesign>();
    static_cast<void>(designFilter(c.kind, spec, *design, units, reporter));

    // The head of a golden file, lines that begin with '#', is no part of the report.
    const std::string file = TEST_DATA "/approximation/reports/" + std::string(c.name) + ".txt";
    std::istringstream golden(read_text(file));
    std::string text;
    for (std::string line; std::getline(golden, line) && line.starts_with('#');) text += line + '\n';
    for (const std::string& line : window.lines) text += line + '\n';
    expect_golden(file, text);
}

INSTANTIATE_TEST_SUITE_P(Reports, FilterReport, testing::ValuesIn(cases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kavrel
