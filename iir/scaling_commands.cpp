#include "iir/scaling_commands.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>
#include <thread>

#include "iir/command_tools.h"
#include "iir/edits.h"
#include "iir/iir_forms.h"
#include "iir/noise_gain.h"
#include "iir/peak_scaling.h"
#include "iir/section_order.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::string_view not_scaled = "Scaling could not be performed";
constexpr std::string_view equalized = "Delay equalized filter may not be ordered";

std::optional<PeakChoices> peak_choices(IirDesk& desk);
std::optional<bool> is_yes(IirDesk& desk, ScalingAnswer answer, std::string_view question);
std::optional<double> scaled_noise(CascadeForm& cascade, const ScaleFactors& SC);
Lines scaling_lines(const CascadeForm& cascade, double noise);
void modify_factors(IirDesk& desk, CascadeForm& cascade, double& noise);
void fill_list(const CascadeForm& cascade, IirRequest& request);
Refusal refusal_of_factors(const IirRequest& request, int sections);
ScaleFactors factors_of(const IirRequest& request);
void take_cascade(IirDesk& desk, const CascadeForm& cascade);
std::uint32_t seed_from_clock();

}  // namespace

void scale_sections(IirDesk& desk) {
    if (const auto why = needs_cascade(desk); !why.empty()) return refuse(desk, why);
    const bool l_two = desk.command.scaling_method == ScalingMethod::l_two;
    const auto choices = l_two ? PeakChoices{} : peak_choices(desk);
    if (!choices) return;
    IirFilter filter = desk.filter;
    unscale(filter.cascade);
    const auto factors = l_two ? l_two_factors(filter.cascade) : peakScale(filter, *choices);
    CascadeForm scaled = filter.cascade;
    auto noise = factors ? scaled_noise(scaled, *factors) : std::nullopt;
    const bool leaves_trace = noise || fingerprint(filter) != fingerprint(desk.filter);
    if (leaves_trace && !keep_for_undo(kept(desk))) return;
    if (!noise) {
        if (leaves_trace) take_cascade(desk, filter.cascade);
        return refuse(desk, not_scaled);
    }
    report_lines(desk, scaling_lines(scaled, *noise));
    modify_factors(desk, scaled, *noise);
    take_cascade(desk, scaled);
    desk.state.words.noise_gain = {*noise, fingerprint(desk.filter)};
}

std::string_view cannot_order(const IirDesk& desk) {
    if (const auto why = needs_cascade(desk); !why.empty()) return why;
    return desk.filter.kind == DigitalKind::delay || desk.filter.unequalized_count > 0 ? equalized : "";
}

void order_sections(IirDesk& desk) {
    if (const auto why = cannot_order(desk); !why.empty()) return refuse(desk, why);
    IirFilter filter = desk.filter;
    unscale(filter.cascade);
    if (!is_stable(filter.cascade)) return refuse(desk, "A section is not stable, its noise has no bound");
    const std::uint32_t seed =
        desk.command.seed > 0 ? static_cast<std::uint32_t>(desk.command.seed) : seed_from_clock();
    const auto threads = static_cast<int>(std::thread::hardware_concurrency());
    WindowWatcher watcher(desk.window, "Order search");
    const auto search = orderSections(filter.cascade, seed, threads, watcher);
    if (!search) return desk.reporter.report_line(stopped_line);
    if (!std::isfinite(search->natural)) return refuse(desk, "The noise is out of range");
    const Assignment& best = search->rounds[search->best];
    if (desk.command.apply) apply_order(filter.cascade, best);
    const bool changes = fingerprint(filter) != fingerprint(desk.filter);
    if (changes && !keep_for_undo(kept(desk))) return;
    if (changes) take_cascade(desk, filter.cascade);
    report_lines(desk, order_lines(*search));
    if (changes && desk.command.apply) {
        report_lines(desk, cascade_lines(desk.filter, desk.command.display_format, desk.session.units));
    }
    const Fingerprint of = fingerprint(desk.filter);
    const double noise_gain = decibel_of(best.noise);
    desk.state.words.order = {{seed, best.numerator, best.denominator, noise_gain, decibel_of(search->natural)}, of};
    if (desk.command.apply) desk.state.words.noise_gain = {noise_gain, of};
}

namespace {

// None where one of the questions was cancelled.
std::optional<PeakChoices> peak_choices(IirDesk& desk) {
    const auto separately = is_yes(desk, desk.command.separately, separately_question);
    if (!separately) return std::nullopt;
    const auto denominators_first = is_yes(desk, desk.command.denominators_first, denominators_first_question);
    if (!denominators_first) return std::nullopt;
    return PeakChoices{*separately, *denominators_first};
}

std::optional<bool> is_yes(IirDesk& desk, ScalingAnswer answer, std::string_view question) {
    if (answer != ScalingAnswer::ask) return answer == ScalingAnswer::yes;
    constexpr std::array<std::string_view, 2> yes_or_no = {"Yes", "No"};
    const int chosen = desk.reporter.choose({.text = question, .caption = "Question", .choices = yes_or_no});
    return chosen == 0 ? std::nullopt : std::optional(chosen == 1);
}

// Takes the factors. The noise gain in dB, or none where a section is not stable or a value out of range.
std::optional<double> scaled_noise(CascadeForm& cascade, const ScaleFactors& SC) {
    rescale(cascade, SC);
    bool in_range = std::isnormal(cascade.CK);
    for (int k = 1; k <= section_count(cascade); ++k) {
        in_range = in_range && std::isnormal(cascade.SC(k)) && std::isfinite(cascade.C1N(k) + cascade.C2N(k));
    }
    const auto noise = in_range ? noiseGain(cascade) : std::nullopt;
    return noise && std::isfinite(*noise) ? noise : std::nullopt;
}

Lines scaling_lines(const CascadeForm& cascade, double noise) {
    Lines lines{edited<"(' New multiplier =',1P,E15.6,6X,' noise gain =',0P,F8.2,' db')">(cascade.CK, noise),
                " Scale factors"};
    for (int k = 1; k <= section_count(cascade); ++k) lines.push_back(edited<"(1P,E16.7)">(cascade.SC(k)));
    lines.emplace_back(" The noise is that of the canonical implementation, as 'View/Design' draws it");
    return lines;
}

void modify_factors(IirDesk& desk, CascadeForm& cascade, double& noise) {
    if (desk.reporter.message("Do you wish to modify these?", "Advice", Buttons::yes_no) != Answer::yes) return;
    fill_list(cascade, desk.command);
    run_form(IIR_SCALE_FACTORS_DLG, &desk.command, desk.session.units, desk.reporter, [&] {
        const int sections = section_count(cascade);
        if (const Refusal wrong = refusal_of_factors(desk.command, sections); !wrong.empty()) {
            return refuse(desk, wrong);
        }
        CascadeForm modified = cascade;
        const auto modified_noise = scaled_noise(modified, factors_of(desk.command));
        if (!modified_noise) return refuse(desk, {"Values are out of range", "SCALE_FACTORS"});
        cascade = modified;
        noise = *modified_noise;
        report_lines(desk, scaling_lines(cascade, noise));
    });
}

void fill_list(const CascadeForm& cascade, IirRequest& request) {
    request.SCALE_FACTORS.rows = section_count(cascade);
    for (int k = 1; k <= request.SCALE_FACTORS.rows; ++k) request.SCALE_FACTORS(k, 1) = cascade.SC(k);
}

Refusal refusal_of_factors(const IirRequest& request, int sections) {
    constexpr std::string_view field = "SCALE_FACTORS";
    if (request.SCALE_FACTORS.rows != sections) {
        return {edited<"(I0,' factors are needed, one for each section')">(sections), field};
    }
    for (int k = 1; k <= sections; ++k) {
        const double factor = request.SCALE_FACTORS(k, 1);
        if (factor == 0) return {"Zero value not permitted", field};
        if (!std::isnormal(factor)) return {"Values are out of range", field};
    }
    return {};
}

ScaleFactors factors_of(const IirRequest& request) {
    ScaleFactors SC = ones<iir_section_limit>();
    for (int k = 1; k <= request.SCALE_FACTORS.rows; ++k) SC(k) = request.SCALE_FACTORS(k, 1);
    return SC;
}

void take_cascade(IirDesk& desk, const CascadeForm& cascade) {
    desk.filter.cascade = cascade;
    desk.filter.Modified = true;
}

// One that the form takes, so that the search can be repeated.
std::uint32_t seed_from_clock() {
    const auto ticks = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    return static_cast<std::uint32_t>(ticks % highest_seed + 1);
}

}  // namespace

}  // namespace kavrel
