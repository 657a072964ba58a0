#include "approximation/filter_driver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>

#include "approximation/approximate.h"
#include "approximation/band_shift.h"
#include "approximation/filter_report.h"
#include "approximation/frequency_variable.h"
#include "approximation/immittance.h"
#include "approximation/s_plane.h"
#include "approximation/sloped_passband.h"
#include "shell/finite.h"
#include "shell/watcher.h"

namespace kavrel {

namespace {

constexpr double lossy_ratio = 1.001;  // of the terminations of a lossy filter that were equal
constexpr double default_resistance = 50.0;
constexpr double equal_within = 1e-6;

void take_kind(const FilterKindRow& kind, FilterSpec& spec);
void settle_terminations(const FilterKindRow& kind, FilterSpec& spec);
void settle_symmetry(const FilterKindRow& kind, FilterSpec& spec);
bool is_specified(const FilterSpec& spec);
bool a_zero_is_beyond_the_medium(const FilterSpec& spec);
ApproximationFault fault_of_steep_slope(const FilterSpec& spec);
FilterSpec findings(const FilterSpec& request, const FilterSpec& worked, const XPlane& x, const FrontNotes& notes);

// One design on its way: a request, what becomes of it, and the questions that the calculation asks.
class Way final : public ApproximationQuestions {
public:
    Way(const FilterSpec& request, FilterDesign& design, const UnitSet& units, Reporter& reporter)
        : request_(request),
          design_(design),
          units_(units),
          reporter_(reporter),
          watcher_(reporter.window(), "Approximation") {}

    // The approximation and its report; false when it was discontinued, after its message.
    [[nodiscard]] bool run();
    // The request with what was found for it.
    [[nodiscard]] const FilterSpec& found() const { return found_; }

    // The box or lines of a fault, and that the design is discontinued.
    void refuse(FrontVerdict verdict);
    void refuse(const ApproximationVerdict& verdict);

    PredistortionChoice predistortion_choice(const PredistortionNotes& notes) override;
    bool go_on() override { return watcher_.go_on(); }

private:
    void report();

    const FilterSpec& request_;
    FilterDesign& design_;
    const UnitSet& units_;
    Reporter& reporter_;
    ApproximationNotes notes_;
    FilterSpec found_;
    bool reported_ = false;
    WindowWatcher watcher_;
};

bool has_doubles(const XPlane& plane);
void discontinue(Reporter& reporter, std::string_view text, std::string_view caption = "Error");
void report_solver(SolveVerdict verdict, Reporter& reporter);
bool design_shifted(FilterSpec& spec, FilterDesign& design, const UnitSet& units, Reporter& reporter);
std::string lines_of(std::string_view first, std::string_view second, std::string_view third);
std::string with_number(std::string text, int number);

}  // namespace

FilterDesignVerdict designFilter(FilterKind kind, FilterSpec& spec, FilterDesign& design, const UnitSet& units,
                                 Reporter& reporter) {
    spec.designError = 1;
    const FilterKindRow* row = find_kind(kind);
    if (row == nullptr) {
        discontinue(reporter, "Implementation is unknown");
        return FilterDesignVerdict::discontinued;
    }
    take_kind(*row, spec);
    settle_terminations(*row, spec);
    settle_symmetry(*row, spec);
    if (spec.passbandType == sloping_passband) spec.bandpassType = conventional;  // parametric where the degree is odd
    if (!is_specified(spec)) {
        discontinue(reporter, "Incorrect or inadequate specification", "Fatal error");
        return FilterDesignVerdict::discontinued;
    }
    if (a_zero_is_beyond_the_medium(spec)) {
        discontinue(reporter, spec.medium == microwave ? quarter_wave_too_low : sampling_too_low);
        return FilterDesignVerdict::discontinued;
    }
    if (const ApproximationFault fault = fault_of_steep_slope(spec); fault != ApproximationFault::none) {
        discontinue(reporter, messageOf(fault).first);
        return FilterDesignVerdict::discontinued;
    }
    const auto draft = std::make_unique<FilterDesign>();
    Way way(spec, *draft, units, reporter);
    if (!way.run()) {
        spec.designError = draft->worked.designError;
        return FilterDesignVerdict::discontinued;
    }
    FilterSpec found = way.found();
    draft->transfer = xToFrequencyPlane(draft->worked, draft->x_plane);
    const bool to_be_shifted = found.filterType == low_pass && found.centerFrequency > 0.0;
    if (to_be_shifted && !design_shifted(found, *draft, units, reporter)) return FilterDesignVerdict::discontinued;
    XPlane& plane = draft->x_plane;
    if (row->terminated && draft->worked.loadResistance == 0 && !immittanceOfDenominator(plane)) {
        way.refuse({.fault = ApproximationFault::e_parts_missing, .front = {}, .solve = {}});
        return FilterDesignVerdict::discontinued;
    }
    if (!all_finite(found, draft->transfer) || !has_doubles(plane)) {
        way.refuse({FrontFault::out_of_range});
        return FilterDesignVerdict::discontinued;
    }
    const double used_q = draft->notes.predistortion.used_q;
    reporter.report_lines(predistorted_lines(draft->request, found, draft->transfer, used_q));
    reporter.report_lines(transfer_function_lines(draft->transfer, found.medium));
    spec = found;
    design = *draft;
    return FilterDesignVerdict::designed;
}

namespace {

void take_kind(const FilterKindRow& kind, FilterSpec& spec) {
    spec.implementation = kind.letter;
    spec.medium = kind.medium;
    if (spec.medium == microwave) spec.sampleFrequency *= 2.0;
    if (spec.medium == lumped) spec.sampleFrequency = 0.0;
}

// Losses and equal terminations exclude each other; without R1 the filter is driven from R2 as its single termination.
void settle_terminations(const FilterKindRow& kind, FilterSpec& spec) {
    double& R1 = spec.sourceResistance;
    double& R2 = spec.loadResistance;
    if (spec.predistortionQ != 0.0 && R1 == R2) R2 = lossy_ratio * R1;
    if (!kind.terminated) {
        R1 = 1.0;
        R2 = 0.0;
    } else if (R1 == 0.0) {
        R1 = R2 == 0.0 ? default_resistance : R2;
        R2 = 0.0;
    }
}

// A ladder ends in a branch for a zero at infinity, at zero or of a unit element; cascades and digital filters do not
// ask for one.
void settle_symmetry(const FilterKindRow& kind, FilterSpec& spec) {
    if (spec.symmetryFlag != 0) return;
    if (!kind.terminated) {
        spec.symmetryFlag = -1;
        return;
    }
    const bool tested = spec.filterType == low_pass ||
                        (spec.filterType == high_pass && (spec.medium != microwave || spec.unitElements == 0));
    const double ratio = spec.loadResistance / spec.sourceResistance;
    spec.symmetryFlag = tested && std::abs(ratio - 1.0) < equal_within ? 1 : 0;
}

// Edges and losses that the estimates of the degree and of the zeros start from. Band-passes are looked at by the form.
bool is_specified(const FilterSpec& spec) {
    const bool estimated = spec.stopbandType == monotonic_stopband || spec.stopbandType == equal_minima;
    const bool functional = spec.passbandType == functional_passband;
    const auto low = [&] { return spec.upperPassEdge > 0.0 && spec.upperStopEdge > spec.upperPassEdge; };
    const auto high = [&] { return spec.lowerPassEdge > 0.0 && spec.lowerPassEdge > spec.lowerStopEdge; };
    if (estimated && !functional && spec.passbandType != sloping_passband && spec.filterType != band_pass) {
        if (!(spec.stopbandLoss > 0.0)) return false;
        if (spec.filterType != high_pass && !low()) return false;
        if (spec.filterType != low_pass && !high()) return false;
    }
    return functional || spec.bandEdgeLoss != 0.0;
}

// The tangent takes such a zero to one within the range of the medium.
bool a_zero_is_beyond_the_medium(const FilterSpec& spec) {
    if (spec.medium == lumped || spec.stopbandType < specified_zeros) return false;
    for (int i = 1; i <= spec.zeroCount; ++i) {
        if (2.0 * std::abs(spec.FZI(i)) >= spec.sampleFrequency) return true;
    }
    return false;
}

// A slope asks for as many zeros as it has units; more than the highest degree there cannot be.
ApproximationFault fault_of_steep_slope(const FilterSpec& spec) {
    if (spec.passbandType != sloping_passband) return ApproximationFault::none;
    FilterSpec trial = spec;
    const auto plane = std::make_unique<XPlane>();
    FrontNotes notes;
    if (!normaliseEdges(trial, *plane, notes).good()) return ApproximationFault::none;
    if (std::abs(spec.stopbandLoss) <= max_degree * slopeUnit(trial, *plane)) return ApproximationFault::none;
    return spec.stopbandLoss < 0.0 ? ApproximationFault::slope_zero_too_low
                                   : ApproximationFault::slope_infinity_too_low;
}

// A high-pass was worked on turned over; edges and functions stay as typed.
FilterSpec findings(const FilterSpec& request, const FilterSpec& worked, const XPlane& x, const FrontNotes& notes) {
    FilterSpec found = request;
    const bool turned = worked.filterType == high_pass;
    found.zerosAtZero = turned ? worked.zerosAtInfinity : worked.zerosAtZero;
    found.zerosAtInfinity = turned ? worked.zerosAtZero : worked.zerosAtInfinity;
    found.unitElements = worked.unitElements;
    found.degree = worked.degree;
    found.degreeParity = worked.degreeParity;
    found.bandEdgeLoss = worked.bandEdgeLoss;
    found.freal = worked.freal;
    if (notes.reset_to_parametric) found.bandpassType = parametric;
    if (notes.zeros_found || notes.zeros_shifted) {
        FilterSpec zeros = worked;
        zerosToFrequency(zeros, x);
        found.zeroCount = zeros.zeroCount;
        found.FZR = zeros.FZR;
        found.FZI = zeros.FZI;
    }
    found.designError = 0;
    return found;
}

bool Way::run() {
    design_.worked = request_;
    const ApproximationVerdict verdict = approximate(design_.worked, design_.x_plane, notes_, *this);
    if (!verdict.good()) {
        refuse(verdict);
        return false;
    }
    report();
    design_.request = request_;
    design_.notes = notes_;
    return true;
}

PredistortionChoice Way::predistortion_choice(const PredistortionNotes&) {
    report();
    const int chosen =
        reporter_.choose({.text = predistortion_choice_head, .caption = "Question", .choices = predistortion_choices});
    return chosen == 0 ? PredistortionChoice::cancel : static_cast<PredistortionChoice>(chosen - 1);
}

// Once, as soon as the counts and zeros are known: before a question or a fault of the later steps, or at the end.
void Way::report() {
    found_ = findings(request_, design_.worked, design_.x_plane, notes_.front);
    if (reported_) return;
    reported_ = true;
    if (notes_.front.reset_to_parametric) {
        reporter_.message(std::string(reset_to_parametric_box[0]) + '\n' + std::string(reset_to_parametric_box[1]),
                          "Warning");
    }
    reporter_.report_lines(filter_design_lines({request_, found_, design_.worked, notes_.front}, units_));
    reporter_.report_lines(predistortion_lines(notes_.predistortion));
}

void Way::refuse(const ApproximationVerdict& verdict) {
    switch (verdict.fault) {
        case ApproximationFault::front: refuse(verdict.front); return;
        case ApproximationFault::slope_zero_too_low:
        case ApproximationFault::slope_infinity_too_low: break;
        case ApproximationFault::cancelled:
        case ApproximationFault::stopped: reporter_.report_line(report_discontinued); return;
        default: report();
    }
    const ApproximationMessage message = messageOf(verdict.fault);
    report_solver(verdict.solve, reporter_);
    discontinue(reporter_, lines_of(message.first, message.second, message.third));
}

// " **** text ****"
std::string_view without_stars(std::string_view text) {
    constexpr std::string_view stars = " *";
    text.remove_prefix(std::min(text.find_first_not_of(stars), text.size()));
    return text.substr(0, text.find_last_not_of(stars) + 1);
}

void Way::refuse(FrontVerdict verdict) {
    const FrontMessage& message = messageOf(verdict.fault);
    const std::string text = with_number(lines_of(message.first, message.second, message.third), verdict.number);
    if (message.place == MessagePlace::box) {
        discontinue(reporter_, text);
    } else {
        reporter_.report_line(text);
        reporter_.fail(without_stars(text));
        if (text.find("discontinued") == std::string::npos) reporter_.report_line(report_discontinued);
    }
    if (verdict.fault == FrontFault::matching_not_needed) reporter_.message(text, "Fatal error");
}

// Whether all polynomials are in the range of double, in which they are reported.
bool has_doubles(const XPlane& plane) {
    return std::ranges::all_of(std::array{&plane.ES, &plane.FS, &plane.QS, &plane.es, &plane.os, &plane.ed, &plane.od},
                               [](const WideRootSet* wide) {
                                   RootSet set;
                                   copyRootSet(*wide, set);
                                   return all_finite(set.multiplier, set.re, set.im);
                               });
}

// A box, and the end of the design on the report where the box does not say it.
void discontinue(Reporter& reporter, std::string_view text, std::string_view caption) {
    reporter.message(text, caption);
    if (text.find(box_discontinued) == std::string_view::npos) reporter.report_line(report_discontinued);
}

void report_solver(SolveVerdict verdict, Reporter& reporter) {
    if (verdict.good()) return;
    const SolveMessage& message = messageOf(verdict.fault);
    std::string text(message.first);
    if (message.has_number) text += std::to_string(verdict.number) + std::string(message.after_number);
    reporter.report_line(text);
    if (!message.second.empty()) reporter.report_line(message.second);
}

// The low-pass in `design`, moved to its centre and designed once more by its poles. Its gain is that at the centre.
bool design_shifted(FilterSpec& spec, FilterDesign& design, const UnitSet& units, Reporter& reporter) {
    if (const auto complaint = shiftComplaint(spec); !complaint.empty()) {
        discontinue(reporter, complaint);
        return false;
    }
    const double centre = spec.centerFrequency;
    const FilterSpec request = shiftedBandpass(spec, design.transfer);
    reporter.report_line("");
    Way way(request, design, units, reporter);
    if (!way.run()) return false;
    spec = way.found();
    design.worked.centerFrequency = spec.centerFrequency = centre;
    design.transfer = xToFrequencyPlane(design.worked, design.x_plane);
    return true;
}

std::string lines_of(std::string_view first, std::string_view second, std::string_view third) {
    std::string text(first);
    for (const auto line : {second, third}) {
        if (!line.empty()) text += '\n' + std::string(line);
    }
    return text;
}

std::string with_number(std::string text, int number) {
    if (const auto at = text.find("{}"); at != std::string::npos) text.replace(at, 2, std::to_string(number));
    return text;
}

}  // namespace

}  // namespace kavrel
