#include "exchange/transfer_polynomials.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include "exchange/text_parts.h"
#include "numeric/root_set.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Roots = Table<double, max_degree>;

std::vector<double> coefficients(int count, const Roots& re, const Roots& im, long double unit, long double multiplier);
int turned_factors(const TransferFunction& t);

}  // namespace

TransferPolynomials transfer_polynomials(const TransferFunction& t, bool warped) {
    constexpr long double two_pi = 2 * std::numbers::pi_v<long double>;
    const long double unit = warped ? 1 : t.normFrequency;
    const long double level = std::pow(10.0L, static_cast<long double>(t.lossConstant) / 20);
    const long double sign = warped && turned_factors(t) % 2 != 0 ? -1 : 1;
    const long double multiplier = sign * t.multiplier * level * std::pow(unit, t.zeroCount - t.poleCount);
    return {.numerator = coefficients(t.zeroCount, t.ZEROS_RE, t.ZEROS_IM, unit, multiplier),
            .denominator = coefficients(t.poleCount, t.POLES_RE, t.POLES_IM, unit, 1),
            .fnorm = static_cast<double>(t.normFrequency / two_pi)};
}

std::vector<std::string> polynomial_lines(const TransferPolynomials& polynomials) {
    std::vector<std::string> lines = {"******* Transfer function polynomials *******",
                                      "normalized coefficients in ascending order",
                                      edited<"(2A25)">("numerator", "denominator")};
    const std::size_t rows = std::max(polynomials.numerator.size(), polynomials.denominator.size());
    for (std::size_t i = 0; i < rows; ++i) {
        lines.push_back(edited<"(1X,I2,1P,2E25.13)">(i, coefficient_at(polynomials.numerator, i),
                                                     coefficient_at(polynomials.denominator, i)));
    }
    lines.push_back(edited<"(' normalization frequency =',1P,E25.13,' hz')">(polynomials.fnorm));
    return lines;
}

namespace {

// Of multiplier times the product of (s - root/unit), ascending.
std::vector<double> coefficients(int count, const Roots& re, const Roots& im, long double unit,
                                 long double multiplier) {
    WideRootSet set;
    set.multiplier = multiplier;
    for (int i = 1; i <= count; ++i) set.append({re(i) / unit, im(i) / unit});
    const Polynomial expanded = expandRoots(set);
    std::vector<double> ascending;
    for (int i = expanded.degree + 1; i >= 1; --i) ascending.push_back(static_cast<double>(expanded.re(i)));
    return ascending;
}

// Factors s - a of unit elements are a - s in truth.
int turned_factors(const TransferFunction& t) {
    int count = 0;
    for (int i = 1; i <= t.zeroCount; ++i) count += t.ZEROS_RE(i) > 0 && t.ZEROS_IM(i) == 0 ? 1 : 0;
    return count;
}

}  // namespace

}  // namespace kavrel
