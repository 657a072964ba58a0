#include "fir/level_edits.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shell/edited.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

Refusal move_level(FirFilter& filter, int n, double factor, double gain, Lines& lines);

}  // namespace

double largest_output(const FirFilter& filter, int n) {
    double sum = 0;
    for (const double h : full_response(filter, n)) sum += std::fabs(h);
    return sum;
}

Refusal add_flat_gain(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    if (request.gain == 0) {
        lines.emplace_back(" A gain of 0 dB changes nothing");
        return {};
    }
    const double factor = std::pow(10.0, request.gain / 20);
    const Refusal wrong = move_level(filter, request.function_number, factor, request.gain, lines);
    return wrong.empty() ? wrong : Refusal(wrong.text, "gain");
}

Refusal scale_to_one(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    const int n = request.function_number;
    const double output = largest_output(filter, n);
    if (output == 0) return {"All coefficients are 0", "function_number"};
    const double rounding = std::numeric_limits<double>::epsilon() * filter.FUNCTION(n).taps;
    if (std::fabs(output - 1) <= rounding) {
        lines.push_back(edited<"(' Function',I2,': the largest possible output for inputs within 1 is 1')">(n));
        return {};
    }
    const double factor = 1 / output, gain = 20 * std::log10(factor);
    lines.push_back(edited<"(' Function',I2,': the largest possible output for inputs within 1 becomes 1')">(n));
    lines.push_back(edited<"(' Scale factor =',1P,E15.7,' (',0P,F10.4,' dB)')">(factor, gain));
    const Refusal wrong = move_level(filter, n, factor, gain, lines);
    if (wrong.empty()) return wrong;
    lines.clear();
    return {wrong.text, "function_number"};
}

namespace {

// The largest tap stays within the range of numbers that are typed.
Refusal move_level(FirFilter& filter, int n, double factor, double gain, Lines& lines) {
    const std::span<double> coefficients = stored_coefficients(filter, n);
    double before = 0, after = 0;
    for (double& h : coefficients) {
        before = std::fmax(before, std::fabs(h));
        h *= factor;
        after = std::fmax(after, std::fabs(h));
    }
    if (!std::isnormal(factor) || !is_in_range(after) || (after == 0) != (before == 0)) return {"Gain is out of range"};
    FirFunction& function = filter.FUNCTION(n);
    function.gain += gain;
    if (function.word.bits != fir_untruncated) {
        lines.push_back(edited<"(' Function',I2,' is no longer truncated to',I3,' bits')">(n, function.word.bits));
    }
    function.word = {.bits = fir_untruncated};
    if (filter.factors.function == n) {
        filter.factors.multiplier *= factor;
        filter.factors.gain += gain;
    }
    return {};
}

}  // namespace

}  // namespace kavrel
