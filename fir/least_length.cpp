#include "fir/least_length.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "shell/whole_part.h"

namespace kavrel {

namespace {

constexpr int least_taps = 3;

// Designs of one task, each made once.
class Lengths {
public:
    Lengths(const FirTask& asked, Watcher& watched) : task(asked), watcher(watched) {}

    // Of the taps of that length; infinite where there are none.
    [[nodiscard]] double deviation(int length) {
        const auto [at, is_new] = designs.try_emplace(length);
        Design& design = at->second;
        if (is_new && !stopped) {
            task.NFILT = length;
            design.verdict = best_taps(task, watcher, design.taps);
            stopped = design.verdict == FirTapsVerdict::stopped;
        }
        return design.verdict == FirTapsVerdict::made ? design.taps.deviation : std::numeric_limits<double>::infinity();
    }
    [[nodiscard]] bool meets(int length) { return length >= least_taps && deviation(length) <= 1; }
    [[nodiscard]] const FirTaps& taps(int length) { return designs.at(length).taps; }
    [[nodiscard]] bool is_stopped() const { return stopped; }

private:
    struct Design {
        FirTapsVerdict verdict = FirTapsVerdict::impossible;
        FirTaps taps;
    };
    FirTask task;
    Watcher& watcher;
    std::map<int, Design> designs;
    bool stopped = false;
};

int longer(const FirTask& task, double deviation);

}  // namespace

FirTapsVerdict least_length(const FirTask& task, Watcher& watcher, LeastLength& least) {
    const int step = task.BANDS.FX(2) != 0 ? 2 : 1;
    const int longest = step == 2 ? max_fir_taps - 1 : max_fir_taps;
    const auto possible = [&](int length) { return std::clamp(step == 2 ? length | 1 : length, least_taps, longest); };
    Lengths lengths(task, watcher);

    int length = possible(task.NFILT);
    if (const double deviation = lengths.deviation(length); std::isfinite(deviation)) {
        length = possible(length + longer(task, deviation));
    }
    while (!lengths.is_stopped() && !lengths.meets(length) && length < longest) {
        const double deviation = lengths.deviation(length);
        length = possible(length + std::max(step, std::isfinite(deviation) ? longer(task, deviation) : step));
    }
    if (!lengths.meets(length) && lengths.meets(length - step)) length -= step;
    while (!lengths.is_stopped() && lengths.meets(length)) {
        if (lengths.meets(length - step)) {
            length -= step;
        } else if (step == 1 && lengths.meets(length - 2)) {
            length -= 2;
        } else {
            break;
        }
    }
    if (lengths.is_stopped()) return FirTapsVerdict::stopped;
    if (!std::isfinite(lengths.deviation(length))) return FirTapsVerdict::impossible;
    least = {.length = length, .met = lengths.meets(length), .taps = lengths.taps(length)};
    return FirTapsVerdict::made;
}

namespace {

// By how many taps a filter is too short, or too long.
int longer(const FirTask& task, double deviation) {
    const double transition = task.BANDS.EDGE(3) - task.BANDS.EDGE(2);
    const double taps = std::ceil(20 * std::log10(deviation) / (db_per_tap * transition));
    return std::clamp(whole_part(taps), -max_fir_taps, max_fir_taps);
}

}  // namespace

}  // namespace kavrel
