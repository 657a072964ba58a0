#include "iir/least_words.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include <fmt/format.h>

#include "iir/form_poles.h"
#include "iir/form_response.h"
#include "iir/iir_request_check.h"
#include "iir/roots_loss.h"
#include "iir/truncation.h"

namespace kavrel {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();
constexpr std::string_view stopband_row = "stopband", stability_row = "stability";

// How far the losses of a truncated filter may go.
struct LossLimits {
    LossAllowances allowed;
    double least_passband_loss;  // dB, without the allowance
};
LossAllowances resolved(const LossAllowances& allowances, const IirAsked& asked);
double least_passband_loss(const IirFilter& filter, Watcher& watcher);
LeastWord least_word(const IirFilter& filter, Implementation form, WordLength word, const LossLimits& limits,
                     Watcher& watcher);

}  // namespace

std::vector<LeastWord> least_words(const IirFilter& filter, WordMethod method, const LossAllowances& allowances,
                                   Watcher& watcher) {
    std::vector<LeastWord> words;
    if (filter.asked.count == 0) return words;
    const LossLimits limits{resolved(allowances, filter.asked), least_passband_loss(filter, watcher)};
    for (const Implementation form : forms_with_coefficients) {
        if (!is_available(filter, form)) continue;
        for (const NumberForm number_form : {NumberForm::floating_point, NumberForm::fixed_point}) {
            words.push_back(least_word(filter, form, {0, method, number_form}, limits, watcher));
        }
    }
    return words;
}

Lines least_word_lines(const std::vector<LeastWord>& words) {
    Lines lines = {"", " Least words that meet the request", fmt::format("    {:<12}{}", "form", least_word_heads)};
    for (const LeastWord& least : words) {
        lines.push_back(fmt::format("    {:<12}{}", form_name(least.form), least_word_columns(least)));
    }
    return lines;
}

std::vector<Implementation> forms_without_word(const std::vector<LeastWord>& words, NumberForm number_form) {
    std::vector<Implementation> forms;
    for (const LeastWord& least : words) {
        if (least.word.number_form == number_form && least.word.bits == 0) forms.push_back(least.form);
    }
    return forms;
}

std::optional<WordLength> word_for_all_forms(const std::vector<LeastWord>& words, NumberForm number_form) {
    if (!forms_without_word(words, number_form).empty()) return std::nullopt;
    std::optional<WordLength> longest;
    for (const LeastWord& least : words) {
        if (least.word.number_form != number_form) continue;
        if (!longest || least.word.bits > longest->bits) longest = least.word;
    }
    return longest;
}

namespace {

// Pass bands come first, and have one ripple.
LossAllowances resolved(const LossAllowances& allowances, const IirAsked& asked) {
    const IirRequestRow& first = asked.rows(1);
    const double tenth = first.stopband ? 0 : first.loss / 10;
    return {.passband = allowances.passband > 0 ? allowances.passband : tenth,
            .stopband = allowances.stopband > 0 ? allowances.stopband : 1};
}

// What is asked; less where the filter itself has a higher level, as that of a matched z transform may be.
double least_passband_loss(const IirFilter& filter, Watcher& watcher) {
    const IirAsked& asked = filter.asked;
    double least = asked.flat_loss;
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        if (row.stopband) continue;
        const DigitalBand band(filter, {row.from, row.to}, watcher);
        least = std::fmin(least, band.least([&](double hertz) { return loss_of_roots(filter, hertz); }).value);
    }
    return least;
}

bool meets(const CheckRow& row, const LossAllowances& allowed) {
    if (row.what == stability_row) return row.met;
    const double allowance = row.what == stopband_row ? allowed.stopband : allowed.passband;
    return row.margin + allowance >= -tolerance_in_decibel(row.asked);
}
bool meets(const std::vector<CheckRow>& rows, const LossAllowances& allowed) {
    return std::ranges::all_of(rows, [&](const CheckRow& row) { return meets(row, allowed); });
}

// The same for a form, but as quickly as can be: extremes that cannot pass a limit are not closed in on.
bool meets(const IirFilter& filter, Implementation form, const LossLimits& limits) {
    const auto& [allowed, least_loss] = limits;
    const IirAsked& asked = filter.asked;
    Unwatched watcher;
    if (!is_stable(filter, form)) return false;
    const DigitalRoots roots = roots_near_form(filter, form);
    if (asked.sloping) return meets(rows_of_form(filter, form, roots, watcher), allowed);
    const auto loss = loss_of_form(filter, form);
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        const DigitalBand band(roots, filter.fs, {row.from, row.to}, watcher);
        const double allowance = row.stopband ? allowed.stopband : allowed.passband;
        const double bound = row.loss + asked.flat_loss, tolerance = tolerance_in_decibel(row.loss) + allowance;
        const double floor = least_loss - tolerance_in_decibel(least_loss) - allowance;
        const auto beyond = [&](double hertz) {
            const double value = loss(hertz);
            return row.stopband ? bound - tolerance - value : std::fmax(value - bound - tolerance, floor - value);
        };
        if (band.rises_above(0, beyond)) return false;
    }
    return true;
}

IirFilter with_word(const IirFilter& filter, Implementation form, const WordLength& word) {
    IirFilter work = filter;
    quantise_form(work, form, word);
    return work;
}

// From the longest word down to the first that fails. What is reported of the word found is of the rows of the check,
// which have the last say.
LeastWord least_word(const IirFilter& filter, Implementation form, WordLength word, const LossLimits& limits,
                     Watcher& watcher) {
    LeastWord found{{.word = word, .passband_loss = none, .stopband_loss = none}, form};
    int bits = longest_word;
    for (; bits >= 1 && watcher.go_on(); --bits) {
        word.bits = bits;
        const IirFilter work = with_word(filter, form, word);
        const bool has_scale = std::ranges::count(work.cascade.SC, 0) == 0;
        if (!has_scale || !meets(work, form, limits)) break;
    }
    while (++bits <= longest_word && watcher.go_on()) {
        word.bits = bits;
        const IirFilter work = with_word(filter, form, word);
        const std::vector<CheckRow> rows = rows_of_form(work, form, roots_of_form(work, form), watcher);
        if (!meets(rows, limits.allowed)) continue;
        found.word = word;
        for (const CheckRow& row : rows) {
            if (row.what == stopband_row) found.stopband_loss = std::fmin(found.stopband_loss, row.reached);
            if (row.what == "pass band" || row.what == "slope") {
                found.passband_loss = std::fmax(found.passband_loss, row.reached);
            }
        }
        break;
    }
    return found;
}

}  // namespace

}  // namespace kavrel
