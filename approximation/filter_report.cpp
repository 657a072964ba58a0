#include "approximation/filter_report.h"

#include <cmath>
#include <string>
#include <utility>

#include "approximation/loss_rows.h"
#include "shell/edit.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr int outer_margin = 7;
constexpr int inner_margin = 10;
constexpr std::size_t equals_column = 51;  // characters before the equals sign

constexpr std::string_view type_names[] = {"Low-pass filter", "High-pass filter", "Linear phase low-pass filter",
                                           "Band-pass filter"};
constexpr std::string_view last_zero_labels[] = {"infinity        ", "Nyquist frequen.", "Quarter-wave fr."};

// Lines of the report.
class Sheet {
public:
    explicit Sheet(const UnitSet& units) : units_(units) {}

    void empty() { add(""); }
    void plain(std::string_view text) { add(text); }
    void heading(std::string_view text, int margin = outer_margin) { add(edit_x(margin) + std::string(text)); }
    void frequency(std::string_view label, double hertz_value, int margin = outer_margin) {
        valued(label, unit_value_text(units_, hertz_value, hertz), margin);
    }
    void number(std::string_view label, double value, std::string_view unit, int margin = inner_margin) {
        valued(label, edited<"(EN15.6,A)">(value, unit), margin);
    }
    void count(std::string_view label, int n) { valued(label, edited<"(I5)">(n), inner_margin); }
    void valued(std::string_view label, std::string_view value, int margin) {
        std::string text = edit_x(margin) + std::string(label);
        if (text.size() < equals_column) text.resize(equals_column, ' ');
        add(trim_right(text + '=' + std::string(value)));
    }
    void labelled(std::string_view label, double value, std::string_view unit = {}) {
        heading(edited<"(A,EN15.6,A)">(label, value, unit), inner_margin);
    }
    void root_head() { add(edited<"(2A20)">("real part", "imaginary part")); }
    // 0.0 added: no zero with a sign.
    void root(double re, double im) { add(edited<"(1P,2E20.7)">(re + 0.0, im + 0.0)); }
    [[nodiscard]] const UnitSet& units() const { return units_; }
    [[nodiscard]] std::vector<std::string> lines() && { return std::move(lines_); }

private:
    void add(std::string_view line) { lines_.emplace_back(line); }

    const UnitSet& units_;
    std::vector<std::string> lines_;
};

void report_heading(const FilterSpec& spec, Sheet& sheet);
void report_passband(const DesignFacts& facts, Sheet& sheet);
void report_edges(const DesignFacts& facts, Sheet& sheet);
void report_stopband(const DesignFacts& facts, Sheet& sheet);
void report_counts(const FilterSpec& spec, Sheet& sheet);
void report_transmission_zeros(const DesignFacts& facts, Sheet& sheet);

}  // namespace

std::vector<std::string> filter_design_lines(const DesignFacts& facts, const UnitSet& units) {
    Sheet sheet(units);
    report_heading(facts.found, sheet);
    report_passband(facts, sheet);
    report_edges(facts, sheet);
    report_stopband(facts, sheet);
    report_counts(facts.found, sheet);
    report_transmission_zeros(facts, sheet);
    return std::move(sheet).lines();
}

std::vector<std::string> kept_design_lines(const FilterSpec& found, const DesignBackground& background,
                                           const TransferFunction& transfer, const UnitSet& units) {
    FilterSpec worked;
    worked.lowerPassEdge = background.worked_lower_edge;
    worked.upperPassEdge = background.worked_upper_edge;
    const FilterSpec& request = background.request;
    const PredistortionNotes& predistortion = background.notes.predistortion;
    const DesignFacts facts{.request = request, .found = found, .worked = worked, .notes = background.notes.front};
    std::vector<std::string> lines = filter_design_lines(facts, units);
    for (const auto& more :
         {predistortion_lines(predistortion), predistorted_lines(request, found, transfer, predistortion.used_q)}) {
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}

std::vector<std::string> predistortion_lines(const PredistortionNotes& notes) {
    if (!notes.requested) return {};
    const UnitSet si;
    Sheet sheet(si);
    sheet.heading(predistortion_head);
    sheet.labelled(requested_q_label, notes.requested_q);
    sheet.labelled(minimum_q_label, notes.minimum_q);
    if (notes.not_possible) sheet.plain(predistortion_not_possible);
    return std::move(sheet).lines();
}

std::vector<std::string> predistorted_lines(const FilterSpec& request, const FilterSpec& found,
                                            const TransferFunction& transfer, double used_q) {
    if (used_q == 0) return {};
    const UnitSet si;
    Sheet sheet(si);
    sheet.labelled(used_q_label, used_q);
    sheet.labelled(flat_loss_label, flat_loss_of_predistortion(request, found, transfer, used_q), " dB.");
    return std::move(sheet).lines();
}

std::vector<std::string> transfer_function_lines(const TransferFunction& transfer, Medium medium) {
    const UnitSet si;
    Sheet sheet(si);
    sheet.empty();
    sheet.heading(medium == lumped ? "Transfer function, roots in rad/sec"
                                   : "Transfer function, roots in units of the warped edge");
    const auto report = [&](std::string_view name, int count, const auto& re, const auto& im) {
        sheet.heading(name, inner_margin);
        if (count == 0) return;
        sheet.root_head();
        for (int i = 1; i <= count; ++i) sheet.root(re(i), im(i));
    };
    report(transfer.zeroCount > 0 ? "Zeros" : "No finite zeros", transfer.zeroCount, transfer.ZEROS_RE,
           transfer.ZEROS_IM);
    report("Poles", transfer.poleCount, transfer.POLES_RE, transfer.POLES_IM);
    sheet.number("Gain constant", transfer.gainConstant, " dB.", outer_margin);
    return std::move(sheet).lines();
}

namespace {

bool has_lower_edge(const FilterSpec& spec) { return spec.filterType == high_pass || spec.filterType == band_pass; }
bool has_upper_edge(const FilterSpec& spec) { return spec.filterType != high_pass; }

void report_heading(const FilterSpec& spec, Sheet& sheet) {
    sheet.plain(" *** Kavrel ***  Filter Program");
    sheet.plain(" " + spec.title.text());
    if (const std::string note = units_note(sheet.units()); !note.empty()) sheet.plain(" " + note);
    sheet.empty();
    sheet.heading(type_names[static_cast<std::size_t>(spec.filterType) - 1], inner_margin);
}

// sqrt(10^(L/10) - 1) + sqrt(10^(L/10)), squared: the ratio of terminations whose mismatch loses L dB.
double standing_wave_ratio(double loss) {
    const double ratio = std::pow(10.0, loss / 10.0);
    const double root = std::sqrt(ratio - 1.0) + std::sqrt(ratio);
    return root * root;
}

void report_passband(const DesignFacts& facts, Sheet& sheet) {
    const FilterSpec& spec = facts.found;
    if (spec.passbandType == functional_passband) {
        sheet.heading(facts.request.denominatorDegree > 0 ? "Functional pass band, e(.) specified"
                                                          : "Functional pass band, f(.) specified");
        return;
    }
    sheet.heading(spec.passbandType == maximally_flat ? "Maximally flat pass band" : "Equal ripple pass band");
    if (spec.reflectionInput < 0.0) {
        sheet.number("Specified reflection coefficient", -spec.reflectionInput, " %.");
    } else if (spec.reflectionInput > 0.0) {
        sheet.number("Specified return loss", spec.reflectionInput, " dB.");
    }
    sheet.number("Bandedge loss", facts.request.bandEdgeLoss, " dB.");
    if (facts.request.bandpassType == impedance_matching)
        sheet.number("Bandedge loss reached", spec.bandEdgeLoss, " dB.");
    if (spec.passbandType == sloping_passband) {
        if (spec.bandEdgeLoss > facts.request.bandEdgeLoss)
            sheet.number("Bandedge loss that the zeros can give", spec.bandEdgeLoss, " dB.");
        sheet.number("Bandpass loss slope", spec.stopbandLoss, " dB/octave.");
        sheet.number("Additional flat loss", spec.flatLoss, " dB.");
    }
    if (spec.medium == microwave) {
        sheet.valued("Max. passband vswr", edited<"(F11.2)">(standing_wave_ratio(spec.bandEdgeLoss)), inner_margin);
    }
}

void report_edges(const DesignFacts& facts, Sheet& sheet) {
    const FilterSpec& spec = facts.found;
    const auto report = [&](std::string_view before, std::string_view band, double edge) {
        sheet.frequency(std::string(before) + std::string(band) + " passband edge frequency", edge);
    };
    // Matching lines, worked on as a high-pass, need one edge: their band lies evenly about the quarter-wave frequency.
    const bool lines_alone = spec.filterType == band_pass && facts.worked.filterType == high_pass;
    const auto edge = [&](double own, double other) {
        return lines_alone && own == 0.0 ? spec.sampleFrequency - other : own;
    };
    if (has_lower_edge(spec)) report("", "Lower", edge(spec.lowerPassEdge, spec.upperPassEdge));
    if (has_upper_edge(spec)) report("", "Upper", edge(spec.upperPassEdge, spec.lowerPassEdge));
    if (facts.notes.preshifted) report("Preshifted ", "Lower", facts.worked.lowerPassEdge);
    if (facts.notes.rescaled) {
        sheet.heading(rescaled_line, inner_margin);
        // A high-pass is held by its one edge, whichever its side.
        if (spec.filterType == high_pass) report("new ", "lower", facts.worked.upperPassEdge);
        if (spec.filterType == band_pass) report("new ", "lower", facts.worked.lowerPassEdge);
        if (has_upper_edge(spec)) report("new ", "upper", facts.worked.upperPassEdge);
    }
    if (spec.medium == sampled_data) sheet.frequency("Sampling frequency", spec.sampleFrequency);
    if (spec.medium == microwave) sheet.frequency("Quarter-wave frequency", spec.sampleFrequency / 2.0);
    if (facts.notes.freal_modified && spec.bandpassType == parametric) sheet.frequency(freal_modified_line, spec.freal);
}

void report_stopband(const DesignFacts& facts, Sheet& sheet) {
    const FilterSpec& spec = facts.found;
    // A matching network has no lower stopband, its loss at frequency zero being that of the terminations, and all its
    // zeros at infinity, whichever stopband was asked for.
    const bool matching = facts.request.bandpassType == impedance_matching;
    if (facts.request.stopbandType != monotonic_stopband && facts.request.stopbandType != equal_minima) return;
    const bool equal = facts.request.stopbandType == equal_minima && !matching;
    const auto report = [&](double edge, double asked, double reached) {
        if (edge <= 0.0) return;
        sheet.frequency(
            equal ? "Equal minima stop band with edge frequency" : "Monotonic stop band with edge frequency", edge);
        if (facts.request.degree > 0) {
            sheet.heading("Degree was specified", inner_margin);
        } else if (asked > 0.0) {
            sheet.number("Required stop band loss", asked, " dB.");
        }
        if (reached > 0.0) sheet.number("Stop band loss reached", reached, " dB.");
    };
    const FrontNotes& notes = facts.notes;
    if (spec.filterType == band_pass && !matching)
        report(spec.lowerStopEdge, spec.stopbandLoss, notes.lower_loss_reached);
    if (spec.filterType == high_pass) report(spec.lowerStopEdge, spec.stopbandLoss, notes.upper_loss_reached);
    if (spec.filterType == low_pass) report(spec.upperStopEdge, spec.stopbandLoss, notes.upper_loss_reached);
    if (spec.filterType == band_pass) report(spec.upperStopEdge, spec.upperStopLoss, notes.upper_loss_reached);
}

// A zero off both axes counts for two pairs.
int zero_pairs(const FilterSpec& spec) {
    int pairs = 0;
    for (int i = 1; i <= spec.zeroCount; ++i) pairs += spec.FZR(i) != 0.0 && spec.FZI(i) != 0.0 ? 2 : 1;
    return pairs;
}

void report_counts(const FilterSpec& spec, Sheet& sheet) {
    const std::string at = "Multiplicity of zero at ";
    if (spec.zerosAtZero > 0 || has_lower_edge(spec)) sheet.count(at + "zero", spec.zerosAtZero);
    if (spec.zerosAtInfinity > 0 || has_upper_edge(spec)) {
        sheet.count(at + std::string(last_zero_labels[static_cast<std::size_t>(spec.medium)]), spec.zerosAtInfinity);
    }
    if (spec.medium == microwave) sheet.count("Number of unit elements", spec.unitElements);
    sheet.count("Number of finite transmission zero pairs", zero_pairs(spec));
    sheet.count("Overall filter degree", spec.degree);
}

void report_zeros(const FilterSpec& spec, Sheet& sheet) {
    sheet.root_head();
    const double unit = sheet.units().frequency_multiplier;
    for (int i = 1; i <= spec.zeroCount; ++i) {
        const double re = spec.FZR(i) / unit;
        const double im = spec.FZI(i) / unit;
        sheet.root(re, im);
        if (re != 0.0 && im != 0.0) sheet.root(re, -im);
    }
}

void report_transmission_zeros(const DesignFacts& facts, Sheet& sheet) {
    if (facts.found.zeroCount == 0) return;
    sheet.heading("Transmission zeros" + unit_suffix(sheet.units(), Unit::frequency));
    if (facts.notes.zeros_shifted) {
        if (!facts.notes.zeros_found) report_zeros(facts.request, sheet);
        sheet.heading(zeros_shifted_line);
    }
    report_zeros(facts.found, sheet);
}

}  // namespace

}  // namespace kavrel
