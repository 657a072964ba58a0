#include "fir/fir_report.h"

#include <algorithm>

#include "fir/fir_request.h"
#include "shell/edit.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr int columns_of_a_group = 4;
constexpr std::size_t label_width = 17;

std::string stars();
std::string_view type_text(const FirTask& task, bool length_estimated);
std::string labelled(std::string_view label);
template <class Value>
std::string band_row(std::string_view label, int first, int last, Value value);

}  // namespace

void report_fir_design(const FirTask& task, const FirTaps& taps, const FirDesignFigures& figures,
                       std::string_view title, const UnitSet& units, Reporter& reporter) {
    const auto indented = [&](std::string_view text) { reporter.report_line(edited<"(20X,A)">(text)); };
    reporter.report_line(stars());
    indented("Finite impulse response (FIR)");
    indented("Linear phase digital filter design");
    indented(title);
    if (const std::string note = units_note(units); !note.empty()) indented(note);
    indented("Remez exchange algorithm");
    reporter.report_line(stars());
    indented(type_text(task, figures.length_estimated));
    indented(edited<"('Filter length = ',I3)">(task.NFILT));
    if (figures.length_estimated) indented("Filter length determined by approximation");
    if (taps.taps_used < task.NFILT) indented(edited<"('Taps without zeros at both ends = ',I3)">(taps.taps_used));
    if (taps.bounded) {
        indented(edited<"('Gain outside the bands limited:',F7.3,', deviation',1P,E12.4)">(taps.outside_gain,
                                                                                           taps.deviation));
    }

    report_impulse_response(taps.filter, 1, reporter);

    const BandTable& bands = task.BANDS;
    const bool slope = task.JTYPE == FirType::differentiator;
    for (int first = 1; first <= bands.NBANDS; first += columns_of_a_group) {
        const int last = std::min(first + columns_of_a_group - 1, bands.NBANDS);
        std::string head = edit_x(label_width);
        for (int j = first; j <= last; ++j) head += edited<"(8X,'band',I3)">(j);
        reporter.report_line("");
        reporter.report_line(head);
        const auto row = [&](std::string_view label, auto value) {
            reporter.report_line(band_row(label, first, last, value));
        };
        row("Lower band edge", [&](int j) { return bands.EDGE(2 * j - 1); });
        row("Upper band edge", [&](int j) { return bands.EDGE(2 * j); });
        row(slope ? "Desired slope" : "Desired value", [&](int j) { return bands.FX(j); });
        row("Weighting", [&](int j) { return bands.WTX(j); });
        row("Deviation", [&](int j) { return static_cast<double>(figures.DEVIAT(j)); });
        if (task.JTYPE == FirType::filter) {
            row("Deviation in db", [&](int j) { return static_cast<double>(figures.DEVIAT_DB(j)); });
        }
    }
    reporter.report_line(stars());
}

std::string_view name_of(FirSymmetry symmetry) {
    constexpr std::string_view names[] = {"even", "odd", "none"};
    return names[static_cast<int>(symmetry)];
}

std::string wide_number(int number) {
    const std::string text = edited<"(I4)">(number);
    return text.starts_with(' ') ? text.substr(1) : text;
}

std::vector<std::string> impulse_response_lines(const FirFilter& filter, int function) {
    const auto stored = stored_coefficients(filter, function);
    const auto [taps, symmetry, word, gain, asked] = filter.FUNCTION(function);
    const auto tap = [](int i) { return "H(" + wide_number(i) + ")"; };
    const std::string mirrored = symmetry == FirSymmetry::odd ? " = -" : " = ";
    std::vector<std::string> lines{"", edited<"(18X,'***** Impulse response *****')">()};
    const auto add = [&, taps = taps, symmetry = symmetry](int i, double value) {
        std::string text = edited<"(13X,A,' = ',1P,E17.9)">(tap(i), value);
        if (symmetry != FirSymmetry::none && taps + 1 - i != i) text += mirrored + tap(taps + 1 - i);
        lines.push_back(text);
    };
    int i = 0;
    for (const double h : stored) add(++i, h);
    if (symmetry == FirSymmetry::odd && taps % 2 == 1) add(++i, 0.0);
    return lines;
}

void report_impulse_response(const FirFilter& filter, int function, Reporter& reporter) {
    reporter.report_lines(impulse_response_lines(filter, function));
}

namespace {

std::string stars() { return " " + std::string(70, '*'); }

std::string_view type_text(const FirTask& task, bool length_estimated) {
    if (task.JTYPE == FirType::differentiator) return "Differentiator";
    if (task.JTYPE == FirType::hilbert) return "Hilbert transformer";
    return length_estimated ? "Lowpass filter" : "Bandpass filter";
}

std::string labelled(std::string_view label) {
    std::string text = "  " + std::string(label);
    text.resize(std::max(text.size(), label_width), ' ');
    return text;
}

// A row of the band table: the label and value(j) of the bands first to last; with exponents what is too large for
// fixed decimals.
template <class Value>
std::string band_row(std::string_view label, int first, int last, Value value) {
    std::string text = labelled(label);
    for (int j = first; j <= last; ++j) {
        const std::string fixed = edited<"(F15.9)">(value(j));
        text += fixed.starts_with('*') ? edited<"(1P,E15.7)">(value(j)) : fixed;
    }
    return text;
}

}  // namespace

}  // namespace kavrel
