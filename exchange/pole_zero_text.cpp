#include "exchange/pole_zero_text.h"

#include <algorithm>
#include <numbers>

#include "exchange/text_parts.h"
#include "exchange/transfer_polynomials.h"
#include "shell/edited.h"
#include "shell/fixed_text.h"

namespace kavrel {

namespace {

std::string row(double left, double right);
void add_roots(int count, const Table<double, max_degree>& re, const Table<double, max_degree>& im, double unit,
               std::vector<std::string>& lines);

}  // namespace

std::vector<std::string> pole_zero_lines(const TransferFunction& t, bool warped, std::string_view title) {
    const double unit = warped ? 1 : 2 * std::numbers::pi;
    const std::string of_unit = warped ? "(normalized):" : "(in Hz):";
    const TransferPolynomials polynomials = transfer_polynomials(t, warped);
    std::vector<std::string> lines = {" ! Pole-zero data of:", " ! " + std::string(trim_right(title_words(title))),
                                      " ! Zeros " + of_unit};
    add_roots(t.zeroCount, t.ZEROS_RE, t.ZEROS_IM, unit, lines);
    lines.push_back(" ! Poles " + of_unit);
    add_roots(t.poleCount, t.POLES_RE, t.POLES_IM, unit, lines);
    lines.push_back(edited<"(' ! normalization freq =',1P,E17.9,' hz')">(polynomials.fnorm));
    lines.emplace_back("!     Transfer function polynomials (normalized)");
    lines.emplace_back("!     Numerator          Denominator");
    for (std::size_t i = 0; i < std::max(polynomials.numerator.size(), polynomials.denominator.size()); ++i) {
        lines.push_back(row(coefficient_at(polynomials.numerator, i), coefficient_at(polynomials.denominator, i)));
    }
    for (std::string& line : half_factor_lines(t, "! ")) lines.push_back(std::move(line));
    return lines;
}

namespace {

std::string row(double left, double right) { return edited<"(1P,2(2X,E17.9))">(left, right); }

void add_roots(int count, const Table<double, max_degree>& re, const Table<double, max_degree>& im, double unit,
               std::vector<std::string>& lines) {
    for (int i = 1; i <= count; ++i) {
        // Adding 0 takes the sign of a -0.
        if (im(i) >= 0) lines.push_back(row(re(i) / unit + 0.0, im(i) / unit + 0.0));
    }
}

}  // namespace

}  // namespace kavrel
