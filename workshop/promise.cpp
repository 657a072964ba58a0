#include "workshop/promise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <optional>
#include <vector>

#include "circuit/branch_kinds.h"
#include "circuit/chain_analysis.h"

namespace kavrel {

namespace {

constexpr int points_of_band = 20;
constexpr Wide worst_difference = 1e-9L;  // of the largest loss, that of 1 dB at least
constexpr Wide largest_loss = 200;        // dB, that is compared

using Frequencies = std::array<Wide, 2 * points_of_band>;  // rad/sec

Frequencies compared_frequencies(const Circuit& circuit);
std::optional<Wide> loss_at(const Chain& chain, Wide omega);

}  // namespace

bool keeps_promise(const Circuit& before, const Circuit& after, Promise promise) {
    Chain former, edited;
    if (promise == Promise::nothing || prepare_chain(before, {}, former) != ChainVerdict::done) return true;
    if (prepare_chain(after, {}, edited) != ChainVerdict::done) return false;
    std::vector<Wide> differences;
    Wide largest = 1;
    for (const Wide omega : compared_frequencies(before)) {
        const auto a = loss_at(former, omega), b = loss_at(edited, omega);
        if (!a || !b || std::max(std::fabs(*a), std::fabs(*b)) > largest_loss) continue;
        largest = std::max(largest, std::fabs(*a));
        differences.push_back(*b - *a);
    }
    const bool level_free = promise == Promise::level && former.R2 == 0;
    const Wide level = level_free && !differences.empty() ? differences.front() : 0;
    return std::ranges::all_of(differences, [&](Wide difference) {
        return std::fabs(difference - level) <= worst_difference * largest;  // false for what is no number
    });
}

namespace {

// The band that the frequencies are laid about, in Hz: an open end is 0 or infinite. Without edges it is about the
// normalisation frequency, or about the mean frequency of the elements at the load's level.
struct Band {
    Wide low = 0, high = 0;
};
Band band_of(const Circuit& circuit);
Wide mean_frequency(const Circuit& circuit);

Frequencies compared_frequencies(const Circuit& circuit) {
    const auto [low, high] = band_of(circuit);
    const bool open = high == 0;  // a high-pass
    const Wide top = open ? 4 * low : high;
    const Wide width = top - low;
    Frequencies frequencies{};
    for (int i = 0; i < points_of_band; ++i) {
        // In the band evenly, but for a little that keeps them off its middle; beside it ever farther away.
        const auto place = static_cast<std::size_t>(2 * i);
        frequencies[place] = low + width * (i + 0.4413L) / points_of_band;
        const Wide away = 0.0723L * std::pow(1.37L, i / 2);
        const bool above = low == 0 || (!open && i % 2 == 0);
        frequencies[place + 1] = above ? top * (1 + away * width / top) : low / (1 + away * width / low);
        if (low == 0 && i % 2 != 0) frequencies[place + 1] *= 1.0311L;
        if (open && i % 2 != 0) frequencies[place + 1] /= 1.0311L;
    }
    const Wide turn = 2 * std::numbers::pi_v<Wide>;
    const Wide quarter_wave = static_cast<Wide>(circuit.fs) / 2;
    for (Wide& frequency : frequencies) {
        // Beyond the quarter wave all repeats itself.
        if (circuit.kind == CircuitKind::microwave && quarter_wave > 0 && frequency >= quarter_wave)
            frequency = quarter_wave * (1 - std::fmod(frequency / quarter_wave, 1.0L) / 2 - 0.0173L);
        frequency *= turn;
    }
    return frequencies;
}

Band band_of(const Circuit& circuit) {
    const Wide fa = circuit.fa, fb = circuit.fb;
    if (fa > 0 && fb > fa) return {fa, fb};
    if (fa > 0) return {fa, 0};
    if (fb > 0) return {0, fb};
    return {0, circuit.fnorm > 0 ? static_cast<Wide>(circuit.fnorm) : mean_frequency(circuit)};
}

Wide mean_frequency(const Circuit& circuit) {
    if (circuit.kind == CircuitKind::microwave) return static_cast<Wide>(circuit.fs) / 4;
    const Wide R = circuit.R1 != 0 ? std::fabs(static_cast<Wide>(circuit.R1)) : 1;
    Wide sum = 0;
    int count = 0;
    for (int k = circuit.klast; k != 0; k = unpackBranch(circuit, k).kp) {
        const Branch branch = unpackBranch(circuit, k);
        const auto values = branch_values(circuit, branch);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const char letter = branch_kinds[branch.id].cells[i];
            const Wide value = std::fabs(static_cast<Wide>(values[i]));
            if ((letter != 'L' && letter != 'C') || value == 0) continue;
            sum += std::log(letter == 'L' ? R / value : 1 / (R * value));
            ++count;
        }
    }
    return std::exp(count == 0 ? 0 : sum / count) / (2 * std::numbers::pi_v<Wide>);
}

std::optional<Wide> loss_at(const Chain& chain, Wide omega) {
    ChainPoint point;
    if (analyze_point(chain, omega, point) != PointVerdict::computed) return std::nullopt;
    return point.loss;
}

}  // namespace

}  // namespace kavrel
