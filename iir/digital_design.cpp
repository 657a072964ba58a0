#include "iir/digital_design.h"

#include <cmath>
#include <memory>
#include <numbers>

#include <fmt/format.h>

#include "approximation/z_transform.h"
#include "iir/cascade_pairing.h"
#include "iir/iir_asked.h"
#include "iir/iir_forms.h"
#include "iir/iir_report.h"

namespace kavrel {

namespace {

constexpr std::string_view sampling_unacceptable = " Unacceptable, sampling rate must be greater than";
constexpr std::string_view degree_too_high = " The resulting filter degree would be too high";
constexpr std::string_view report_discontinued = " **** design discontinued ****";
constexpr std::string_view out_of_range = "The digital filter has numbers out of range";
constexpr int doubled_degree = max_degree / 2;  // the highest that can be

// A digital design on its way: a copy of the analog one, what the forms said, and what became of it.
class Way {
public:
    Way(const FilterSpec& found, const FilterDesign& design, const UnitSet& units, Reporter& reporter);

    [[nodiscard]] bool asks_z_transform() const { return transform_ != ZTransform::bilinear_of_function; }
    [[nodiscard]] bool asks_spectral() const {
        return found_.filterType == low_pass || found_.filterType == linear_phase_low_pass;
    }

    // What the forms are filled in for; where it cannot be done, a box says why.
    void take_z_transform(const IirRequest& request);
    void take_spectral(const IirRequest& request);
    void make();

    [[nodiscard]] bool made() const { return has_filter(*filter_); }
    void hand_over(FilterSpec& found, FilterDesign& design, IirFilter& filter) const;

private:
    [[nodiscard]] bool design_again();

    const FilterSpec& original_found_;
    const FilterDesign& original_;
    const UnitSet& units_;
    Reporter& reporter_;
    FilterSpec found_;
    std::unique_ptr<FilterDesign> design_;
    ZTransform transform_ = ZTransform::bilinear;
    double fs_ = 0;
    SpectralRequest spectral_;
    std::unique_ptr<IirFilter> filter_ = std::make_unique<IirFilter>();
};

double band_edge(const TransferFunction& transfer) { return transfer.normFrequency / (2 * std::numbers::pi); }
void set_kind(const FilterSpec& found, const SpectralRequest& spectral, IirFilter& filter);
void report(const IirFilter& filter, DisplayFormat format, Reporter& reporter);

}  // namespace

DigitalDesignOutcome digitalDesign(FilterSpec& found, FilterDesign& design, IirRequest& request, const UnitSet& units,
                                   Reporter& reporter, IirFilter& filter) {
    Way way(found, design, units, reporter);
    const auto ask = [&](const Form& form, const FormWork& work) {
        return run_form(form, &request, units, reporter, work);
    };
    request.sampling = found.sampleFrequency;
    if (way.asks_z_transform() && !ask(Z_TRANSFORM_DLG, [&] { way.take_z_transform(request); })) {
        return DigitalDesignOutcome::cancelled;
    }
    if (way.asks_spectral() && !ask(SPECTRAL_DLG, [&] { way.take_spectral(request); })) {
        return DigitalDesignOutcome::cancelled;
    }
    if (!way.asks_z_transform() && !way.asks_spectral()) way.make();
    if (!way.made()) return DigitalDesignOutcome::failed;
    way.hand_over(found, design, filter);
    report(filter, request.display_format, reporter);
    return DigitalDesignOutcome::done;
}

double sampling_frequency_of(double typed, double opened_with) {
    return typed > 1 || typed == opened_with ? typed : 1 / typed;
}

Refusal refusal_of_sampling(const TransferFunction& transfer, double fs, const UnitSet& units) {
    const double least = 2 * band_edge(transfer);
    if (fs > least && std::isfinite(fs)) return {};
    const std::string value = unit_value_text(units, least, hertz);
    return {fmt::format("{} {}", sampling_unacceptable, trim(value)), "sampling"};
}

Refusal refusal_of_spectral(const SpectralRequest& request, int degree) {
    const SpectralKind kind = request.kind;
    if (kind == SpectralKind::none) return {};
    const bool doubles = kind == SpectralKind::to_bandpass || kind == SpectralKind::to_bandreject;
    const auto incorrect = [&](double edge) { return !(edge > 0 && edge < request.fs / 2); };
    if (kind != SpectralKind::to_lowpass && incorrect(request.lower)) {
        return {"Incorrect lower passband edge", "lower_passband"};
    }
    if (kind != SpectralKind::to_highpass &&
        (incorrect(request.upper) || (doubles && request.upper <= request.lower))) {
        return {"Incorrect upper passband edge", "upper_passband"};
    }
    if (doubles && degree > doubled_degree) return {degree_too_high, "frequency_transformation"};
    return {};
}

Refusal make_digital(const FilterSpec& found, const FilterDesign& design, ZTransform transform,
                     const SpectralRequest& spectral, IirFilter& filter) {
    DigitalFunction function;
    if (!zTransform(transform, found, design.transfer, spectral.fs, function)) return out_of_range;
    if (transform == ZTransform::bilinear && design.notes.has_pole_chains) {
        takePoleChains(found, design.x_plane, spectral.fs, function);
    }
    function = spectralTransform(spectral, function);
    if (!is_usable(function)) return out_of_range;

    filter = {};
    filter.fs = spectral.fs;
    filter.T = 1 / spectral.fs;
    filter.z_transform = transform;
    filter.spectral = spectral.kind;
    set_kind(found, spectral, filter);
    take_function(function, filter);
    filter.designed = true;
    filter.spec = found;
    filter.transfer = design.transfer;
    filter.background = {.request = design.request,
                         .notes = design.notes,
                         .worked_lower_edge = design.worked.lowerPassEdge,
                         .worked_upper_edge = design.worked.upperPassEdge};
    filter.asked = asked_of_digital(found, design, spectral);
    return {};
}

namespace {

Way::Way(const FilterSpec& found, const FilterDesign& design, const UnitSet& units, Reporter& reporter)
    : original_found_(found),
      original_(design),
      units_(units),
      reporter_(reporter),
      found_(found),
      design_(std::make_unique<FilterDesign>(design)),
      fs_(found.sampleFrequency) {
    if (found.passbandType == functional_passband) transform_ = ZTransform::bilinear_of_function;
}

void Way::take_z_transform(const IirRequest& request) {
    transform_ = static_cast<ZTransform>(request.z_transform_type);
    fs_ = sampling_frequency_of(request.sampling, original_found_.sampleFrequency);
    found_ = original_found_;
    *design_ = original_;
    if (const Refusal refusal = refusal_of_sampling(original_.transfer, fs_, units_); !refusal.empty()) {
        return reporter_.refuse(refusal);
    }
    const bool is_of_design = transform_ == ZTransform::bilinear && fs_ == original_found_.sampleFrequency;
    if (!is_of_design && !design_again()) return reporter_.fail("Design discontinued: the report says why");
    if (!asks_spectral()) make();
}

// The bilinear transform warps frequencies, which the edges of a sampled medium allow for; the others leave them as
// they are in a lumped one.
bool Way::design_again() {
    FilterSpec request = original_.request;
    FilterKind kind = FilterKind::active_rc;  // lumped, without terminations
    reporter_.report_line("");
    if (transform_ == ZTransform::bilinear) {
        kind = FilterKind::iir_digital;
        request.sampleFrequency = fs_;
        reporter_.report_line(
            fmt::format(" Approximation for the sampling frequency {}", unit_value_text(units_, fs_, hertz)));
    } else {
        reporter_.report_line(
            fmt::format(" Approximation with the edges as asked, for the {} transform", z_transform_text(transform_)));
    }
    found_ = request;
    if (designFilter(kind, found_, *design_, units_, reporter_) != FilterDesignVerdict::designed) return false;
    found_.implementation = original_found_.implementation;
    return true;
}

void Way::take_spectral(const IirRequest& request) {
    const SpectralChoice choice = request.frequency_transformation;
    spectral_ = {.kind = static_cast<SpectralKind>(static_cast<int>(choice) - 1),
                 .fs = fs_,
                 .edge = band_edge(design_->transfer),
                 .lower = request.lower_passband * units_.frequency_multiplier,
                 .upper = request.upper_passband * units_.frequency_multiplier};
    if (choice == SpectralChoice::to_lowpass) spectral_.lower = 0;
    if (choice == SpectralChoice::to_highpass) spectral_.upper = 0;
    const Refusal refusal = refusal_of_spectral(spectral_, design_->transfer.poleCount);
    if (refusal.empty()) return make();
    reporter_.refuse(refusal);
    if (refusal.text == degree_too_high) reporter_.report_line(report_discontinued);
}

void Way::make() {
    spectral_.fs = fs_;
    if (const Refusal refusal = make_digital(found_, *design_, transform_, spectral_, *filter_); !refusal.empty()) {
        reporter_.refuse(refusal);
    }
}

void Way::hand_over(FilterSpec& found, FilterDesign& design, IirFilter& filter) const {
    found = found_;
    design = *design_;
    filter = *filter_;
}

// Kind and edges, after the spectral transformation.
void set_kind(const FilterSpec& found, const SpectralRequest& spectral, IirFilter& filter) {
    const auto set = [&](DigitalKind kind, std::string_view text, double lower, double upper) {
        filter.kind = kind;
        filter.FilterTypeText = text;
        filter.FLO = lower;
        filter.FHI = upper;
    };
    switch (spectral.kind) {
        case SpectralKind::none: break;
        case SpectralKind::to_lowpass: return set(DigitalKind::low_pass, "lowpass", 0, spectral.upper);
        case SpectralKind::to_highpass: return set(DigitalKind::high_pass, "highpass", spectral.lower, 0);
        case SpectralKind::to_bandpass: return set(DigitalKind::band_pass, "bandpass", spectral.lower, spectral.upper);
        case SpectralKind::to_bandreject:
            return set(DigitalKind::band_reject, "band reject", spectral.lower, spectral.upper);
    }
    switch (found.filterType) {
        case high_pass: return set(DigitalKind::high_pass, "highpass", found.lowerPassEdge, 0);
        case band_pass: return set(DigitalKind::band_pass, "bandpass", found.lowerPassEdge, found.upperPassEdge);
        case linear_phase_low_pass: return set(DigitalKind::low_pass, "linear phase lowpass", 0, found.upperPassEdge);
        default: return set(DigitalKind::low_pass, "lowpass", 0, found.upperPassEdge);
    }
}

void report(const IirFilter& filter, DisplayFormat format, Reporter& reporter) {
    if (filter.spectral != SpectralKind::none) {
        reporter.report_line(fmt::format(" Frequency transformation: {}, now a {} filter",
                                         spectral_name(filter.spectral), filter.FilterTypeText.trimmed()));
    }
    for (const std::string& line : factored_lines(filter, format)) reporter.report_line(line);
}

}  // namespace

}  // namespace kavrel
