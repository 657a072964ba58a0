#include "exchange/transfer_polynomials.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "exchange/text_parts.h"
#include "numeric/root_set.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Roots = Table<double, max_degree>;

std::vector<double> coefficients(int count, const Roots& re, const Roots& im, long double unit, double level);

}  // namespace

TransferPolynomials transfer_polynomials(const TransferFunction& t, bool warped) {
    constexpr long double two_pi = 2 * std::numbers::pi_v<long double>;
    const long double unit = warped ? 1 : t.normFrequency;
    return {.numerator = coefficients(t.zeroCount, t.ZEROS_RE, t.ZEROS_IM, unit, t.level),
            .denominator = coefficients(t.poleCount, t.POLES_RE, t.POLES_IM, unit, 1),
            .fnorm = static_cast<double>(t.normFrequency / two_pi)};
}

std::vector<std::string> half_factor_lines(const TransferFunction& t, std::string_view mark) {
    double a = 0;  // real zeros come in pairs but that of an odd unit element
    for (int i = 1; i <= t.zeroCount; ++i) a += t.ZEROS_IM(i) == 0 ? t.ZEROS_RE(i) : 0;
    if (a == 0) return {};
    return {std::string(mark) + edited<"('the factor a - s of the numerator, a =',1P,E23.13,',')">(a),
            std::string(mark) + "stands for sqrt(a^2 - s^2) of the odd unit element: loss as it is, phase without it"};
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

// Of level times the product of (s - root/unit), ascending. What rounding leaves of a sum that vanishes is 0.
std::vector<double> coefficients(int count, const Roots& re, const Roots& im, long double unit, double level) {
    constexpr long double rounding = 64 * std::numeric_limits<long double>::epsilon();
    WideRootSet set, magnitudes;
    set.multiplier = magnitudes.multiplier = 1;
    for (int i = 1; i <= count; ++i) {
        set.append({re(i) / unit, im(i) / unit});
        magnitudes.append({-std::hypot(re(i), im(i)) / unit, 0});
    }
    const Polynomial expanded = expandRoots(set), terms = expandRoots(magnitudes);
    std::vector<double> ascending;
    for (int i = expanded.degree + 1; i >= 1; --i) {
        const bool vanishes = std::fabs(expanded.re(i)) <= rounding * terms.re(i);
        ascending.push_back(vanishes ? 0.0 : static_cast<double>(level * expanded.re(i)));
    }
    return ascending;
}

}  // namespace

}  // namespace kavrel
