#include "fir/factor_text.h"

#include <fmt/format.h>

#include "shell/edited.h"

namespace kavrel {

std::vector<std::string> factor_table(const FirFactors& factors) {
    std::vector<std::string> lines = {" **** Factored form ****"};
    for (int k = 1; k <= factors.count; ++k) {
        lines.push_back(edited<"(1X,I3,1P,3(2X,E15.8))">(factors.ISER(k), 1.0, factors.A1(k), factors.A2(k)));
    }
    if (factors.delay > 0) lines.push_back(edited<"(' taps of 0 in front = ',I3)">(factors.delay));
    if (factors.trailing > 0) lines.push_back(edited<"(' taps of 0 behind = ',I3)">(factors.trailing));
    lines.push_back(edited<"(' multiplier = ',1P,E15.8)">(factors.multiplier));
    return lines;
}

std::vector<std::string> factor_rows(const FirFactors& factors, std::string_view title) {
    std::vector<std::string> lines = {
        fmt::format("! Factored form of: {}", title),
        fmt::format("! H(z) = multiplier z^-{} product of (1 + linear z^-1 + quadratic z^-2)", factors.delay),
        fmt::format("! multiplier = {:.16e}", factors.multiplier)};
    if (factors.trailing > 0) lines.push_back(fmt::format("! taps of 0 behind = {}", factors.trailing));
    lines.emplace_back("!              linear               quadratic");
    for (int k = 1; k <= factors.count; ++k) {
        lines.push_back(fmt::format("{:24.16e}{:24.16e}", factors.A1(k), factors.A2(k)));
    }
    return lines;
}

}  // namespace kavrel
