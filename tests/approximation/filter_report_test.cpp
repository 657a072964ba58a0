// The report of a design, line by line, and the boxes between its lines.
#include "approximation/filter_report.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include <gtest/gtest.h>

#include "approximation/filter_driver.h"
#include "tests/support/fake_window.h"

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

struct Case {
    const char* name;
    int entry;
    void (*ask)(FilterSpec& spec);
    int frequency_index = 1;
    int choice = 0;
};

void PrintTo(const Case& c, std::ostream* out) { *out << c.name; }

void equal_terminations(FilterSpec& s) { s.sourceResistance = s.loadResistance = 50.0; }

void low_pass_request(FilterSpec& s) {
    s.filterType = low_pass;
    s.upperPassEdge = 1000.0;
    s.upperStopEdge = 1500.0;
    s.bandEdgeLoss = 0.1;
    s.stopbandLoss = 40.0;
    equal_terminations(s);
}

void band_pass_request(FilterSpec& s) {
    s.filterType = band_pass;
    s.lowerPassEdge = 60e3;
    s.upperPassEdge = 68e3;
    s.bandEdgeLoss = 0.1;
    equal_terminations(s);
}

void zeros_of(FilterSpec& s, std::initializer_list<std::pair<double, double>> zeros) {
    s.stopbandType = specified_zeros;
    for (const auto& [re, im] : zeros) {
        ++s.zeroCount;
        s.FZR(s.zeroCount) = re;
        s.FZI(s.zeroCount) = im;
    }
}

constexpr Case cases[] = {
    {"butterworth_lowpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.bandEdgeLoss = 3.0;
         s.upperStopEdge = 3000.0;
     }},
    {"chebyshev_highpass_return_loss", EntryCode::passive_lc,
     [](FilterSpec& s) {
         s.filterType = high_pass;
         s.passbandType = equal_ripple;
         s.lowerPassEdge = 1e6;
         s.lowerStopEdge = 5e5;
         s.reflectionInput = 20.0;
         s.bandEdgeLoss = 0.0436480540245;
         s.stopbandLoss = 50.0;
         equal_terminations(s);
     },
     3},
    {"elliptic_lowpass_even", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.passbandType = equal_ripple;
         s.stopbandType = equal_minima;
         s.reflectionInput = -15.0;
         s.bandEdgeLoss = 0.0988196;
         s.stopbandLoss = 50.0;
     }},
    {"zeros_shifted_lowpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.passbandType = equal_ripple;
         s.zerosAtInfinity = 2;
         zeros_of(s, {{0.0, 1600.0}, {700.0, 0.0}, {500.0, 1200.0}});
     }},
    {"elliptic_bandpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.passbandType = equal_ripple;
         s.stopbandType = equal_minima;
         s.lowerStopEdge = 58e3;
         s.upperStopEdge = 71e3;
         s.stopbandLoss = 60.0;
         s.upperStopLoss = 50.0;
     },
     2},
    {"odd_bandpass_reset", EntryCode::active_rc,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.stopbandType = specified_zeros;
         s.zerosAtZero = 2;
         s.zerosAtInfinity = 3;
     },
     2},
    {"digital_bandpass", EntryCode::iir_digital,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.passbandType = equal_ripple;
         s.lowerStopEdge = 50e3;
         s.upperStopEdge = 80e3;
         s.stopbandLoss = 30.0;
         s.upperStopLoss = 40.0;
         s.sampleFrequency = 200e3;
     }},
    {"microwave_lowpass", EntryCode::microwave,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.passbandType = equal_ripple;
         s.stopbandType = specified_zeros;
         s.upperPassEdge = 1e9;
         s.sampleFrequency = 3e9;
         s.zerosAtInfinity = 2;
         s.unitElements = 3;
     },
     4},
    {"microwave_bandpass_freal", EntryCode::microwave,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.stopbandType = specified_zeros;
         s.bandpassType = parametric;
         s.lowerPassEdge = 1e9;
         s.upperPassEdge = 2e9;
         s.sampleFrequency = 4e9;
         s.zerosAtZero = 3;
         s.zerosAtInfinity = 2;
         s.unitElements = 1;
     },
     4},
    {"functional_e_rescaled", EntryCode::active_rc,
     [](FilterSpec& s) {
         s.filterType = low_pass;
         s.passbandType = functional_passband;
         s.stopbandType = functional_stopband;
         s.upperPassEdge = 1000.0;
         s.zerosAtInfinity = 3;
         s.denominatorDegree = 3;
         s.denominatorFactors(1) = 3.0;
         s.denominatorFactors(2) = 9.0;
         s.denominatorFactors(3) = 3.0;
     }},
    {"functional_f_highpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         s.filterType = high_pass;
         s.passbandType = functional_passband;
         s.stopbandType = functional_stopband;
         s.lowerPassEdge = 1000.0;
         s.zerosAtZero = 3;
         s.functionMultiplier = 2.0;
         s.numeratorDegree = 2;
         s.numeratorFactors(1) = 0.0;
         s.numeratorFactors(2) = 2.0;
         equal_terminations(s);
     }},
    {"sloped_bandpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.passbandType = sloping_passband;
         s.stopbandType = specified_zeros;
         s.stopbandLoss = -4.0;
         s.flatLoss = 0.5;
         s.zerosAtZero = 4;
         s.zerosAtInfinity = 2;
     },
     2},
    {"matching_bandpass", EntryCode::passive_lc,
     [](FilterSpec& s) {
         band_pass_request(s);
         s.passbandType = equal_ripple;
         s.bandpassType = impedance_matching;
         s.lowerPassEdge = 40e6;
         s.upperPassEdge = 80e6;
         s.loadResistance = 300.0;
     },
     3},
    {"predistortion_question", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.passbandType = equal_ripple;
         s.predistortionQ = 3.0;
         s.upperStopEdge = 2000.0;
     },
     1, 2},
    {"shifted_bandpass", EntryCode::active_rc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.stopbandType = equal_minima;
         s.upperStopEdge = 3000.0;
         s.centerFrequency = 20e3;
         s.odd_parametric = true;
     }},
    {"degree_specified", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.passbandType = equal_ripple;
         s.stopbandType = equal_minima;
         s.degree = 5;
     }},
    {"degree_too_high", EntryCode::passive_lc,
     [](FilterSpec& s) {
         low_pass_request(s);
         s.upperStopEdge = 1100.0;
     }},
};

// The golden file without its head of lines that begin with '#'.
std::vector<std::string> golden_lines(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) lines.push_back(line);
    }
    return lines;
}

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
    FilterSpec spec;
    spec.title = "<New Filter> 2026-01-01";
    c.ask(spec);
    const auto design = std::make_unique<FilterDesign>();
    static_cast<void>(designFilter(c.entry, spec, *design, units, reporter));

    std::vector<std::string> told;
    for (const std::string& text : window.lines) {
        for (std::size_t at = 0;;) {
            const auto end = text.find('\n', at);
            told.push_back(text.substr(at, end - at));
            if (end == std::string::npos) break;
            at = end + 1;
        }
    }
    const std::string name = std::string(c.name) + ".txt";
    const bool same = told == golden_lines(TEST_DATA "/approximation/reports/" + name);
    EXPECT_TRUE(same) << "the report as it is now: " << testing::TempDir() + name;
    if (same) return;
    std::ofstream file(testing::TempDir() + name);
    for (const std::string& line : told) file << line << '\n';
}

INSTANTIATE_TEST_SUITE_P(Reports, FilterReport, testing::ValuesIn(cases),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace kavrel
