#include "iir/pole_zero_text.h"

#include <algorithm>
#include <string>

#include "iir/truncation.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Roots = Table<double, 51>;
enum class RootsShown { upper_half, all };

std::string title_line(std::string_view title);
void add_roots(const Roots& re, const Roots& im, int count, RootsShown shown, Lines& lines);

}  // namespace

Lines pole_zero_lines(const IirFilter& filter, std::string_view title) {
    const DigitalRoots& roots = filter.roots;
    Lines lines = {" ! Pole-zero data of:", title_line(title), " ! Zeros (normalized):"};
    add_roots(roots.ZR, roots.ZI, roots.NZ, RootsShown::upper_half, lines);
    lines.emplace_back(" ! Poles (normalized):");
    add_roots(roots.QR, roots.PI, roots.NP, RootsShown::upper_half, lines);
    return lines;
}

Lines root_lines(const IirFilter& filter) {
    constexpr std::string_view columns = "          real part     imaginary part";
    const DigitalRoots roots = is_truncated(filter) ? roots_of_factors(filter) : filter.roots;
    Lines lines = {"      Numerator roots normalized", std::string(columns)};
    add_roots(roots.ZR, roots.ZI, roots.NZ, RootsShown::all, lines);
    lines.emplace_back("      Denominator roots normalized");
    lines.emplace_back(columns);
    if (filter.unequalized_count > 0 && !is_truncated(filter)) {
        add_roots(filter.UNEQUALIZED_RE, filter.UNEQUALIZED_IM, filter.unequalized_count, RootsShown::all, lines);
    } else {
        add_roots(roots.QR, roots.PI, roots.NP, RootsShown::all, lines);
    }
    return lines;
}

Lines switched_capacitor_lines(const IirFilter& filter, std::string_view title) {
    const auto row = [](double leading, double c1, double c2) {
        return edited<"(1P,3(3X,E14.6))">(leading, c1 + 0.0, c2 + 0.0);
    };
    const CascadeForm& c = filter.cascade;
    Lines lines = {" ! pole-zero data for switched-capacitor filter", title_line(title),
                   " ! numerator quadratic factors"};
    for (int k = 1; k <= std::max(1, c.NNUM); ++k) {  // the front-end multiplier is there without numerators, too
        const double front = k == 1 ? c.CK : 1;
        lines.push_back(row(front * c.SC(k), front * c.C1N(k), front * c.C2N(k)));
    }
    lines.emplace_back(" ! denominator quadratic factors");
    for (int k = 1; k <= c.NDEN; ++k) lines.push_back(row(1, c.C1D(k), c.C2D(k)));
    return lines;
}

namespace {

std::string title_line(std::string_view title) { return " ! " + std::string(trim_right(title)); }

void add_roots(const Roots& re, const Roots& im, int count, RootsShown shown, Lines& lines) {
    for (int i = 1; i <= count; ++i) {
        if (shown == RootsShown::upper_half && im(i) < 0) continue;
        // Taken from 0, a 0 has no sign.
        lines.push_back(edited<"(1P,2(2X,E17.9))">(0.0 - re(i), im(i)));
    }
}

}  // namespace

}  // namespace kavrel
