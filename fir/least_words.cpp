#include "fir/least_words.h"

#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "fir/fir_deviation.h"
#include "fir/fir_rows.h"
#include "fir/fir_task.h"
#include "fir/truncation.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// How far a function may deviate, band by band: weighted, of the task.
struct DeviationLimits {
    const FirTask& task;
    std::vector<double> limits;
};
FoundWord least_word(const FirFilter& filter, int function, WordLength word, const DeviationLimits& kept,
                     Watcher& watcher);

}  // namespace

std::vector<FoundWord> least_words(const FirFilter& filter, int function, WordMethod method, double allowance,
                                   Watcher& watcher) {
    FirTask task;
    if (!has_bands(filter, function) || take_task(filter.request, task) != nullptr) return {};
    DeviationLimits kept{task, {}};
    for (int band = 1; band <= task.BANDS.NBANDS && watcher.go_on(); ++band) {
        const double own = largest_deviation(task, filter, function, band).weighted;
        kept.limits.push_back(own * std::pow(10.0, allowance / 20));
    }
    std::vector<FoundWord> words;
    for (const NumberForm number_form : {NumberForm::floating_point, NumberForm::fixed_point}) {
        words.push_back(least_word(filter, function, {0, method, number_form}, kept, watcher));
    }
    return watcher.stopped() ? std::vector<FoundWord>() : words;
}

Lines least_word_lines(const std::vector<FoundWord>& words, int function, double allowance) {
    Lines lines = {
        "",
        edited<"(' Least words that keep the deviations of function',I2,' within',F9.4,' dB')">(function, allowance),
        fmt::format("    {}", least_word_heads)};
    for (const FoundWord& found : words) lines.push_back(fmt::format("    {}", least_word_columns(found)));
    return lines;
}

namespace {

// Whether the function in a word keeps within the limits; `found` gets its losses.
bool keeps(const FirFilter& filter, int function, const DeviationLimits& kept, Watcher& watcher, FoundWord& found) {
    const BandTable& bands = kept.task.BANDS;
    found.passband_loss = found.stopband_loss = none;
    for (int band = 1; band <= bands.NBANDS && watcher.go_on(); ++band) {
        const double weighted = largest_deviation(kept.task, filter, function, band).weighted;
        if (!(weighted <= kept.limits[static_cast<std::size_t>(band) - 1])) return false;
        const double deviation = weighted / bands.WTX(band), desired = std::fabs(bands.FX(band));
        if (desired == 0) {
            found.stopband_loss = std::fmin(found.stopband_loss, -20 * std::log10(deviation));
        } else {
            // the weight of a shape is over what it desires
            const double relative = kept.task.SHAPE.count > 0 ? deviation : deviation / desired;
            found.passband_loss = std::fmax(found.passband_loss, ripple_of(relative));
        }
    }
    return !watcher.stopped();
}

// From the longest word down to the first that does not.
FoundWord least_word(const FirFilter& filter, int function, WordLength word, const DeviationLimits& kept,
                     Watcher& watcher) {
    FoundWord least{.word = word, .passband_loss = none, .stopband_loss = none};
    for (word.bits = longest_word; word.bits >= 1; --word.bits) {
        FirFilter work = filter;
        quantise_function(work, function, word);
        FoundWord found{.word = word};
        if (!keeps(work, function, kept, watcher, found)) break;
        least = found;
    }
    return least;
}

}  // namespace

}  // namespace kavrel
