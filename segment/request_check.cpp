#include "segment/request_check.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace kavrel {

namespace {

constexpr std::size_t line_width = 80;  // of a report line; a longer one goes on in the next

bool within_tolerance(const CheckRow& row);
CheckRow settled(CheckRow row);
std::string title_of(const CheckRow& row);
std::string missed_by(const RequestCheck& check);
std::string band_text(const CheckBand& band);
int telling_decimals(const CheckRow& row, int least);
std::string number_text(const CheckRow& row, double value, int decimals);

}  // namespace

CheckRow at_most(std::string_view what, CheckBand band, double asked, double reached) {
    return settled({.what = what, .band = band, .asked = asked, .reached = reached, .margin = asked - reached});
}

CheckRow at_least(std::string_view what, CheckBand band, double asked, double reached) {
    return settled(
        {.what = what, .band = band, .asked = asked, .reached = reached, .margin = reached - asked, .spare = true});
}

CheckRow equal_to(std::string_view what, double asked, double reached) {
    return settled(
        {.what = what, .asked = asked, .reached = reached, .margin = 0.0 - std::fabs(reached - asked), .unit = ""});
}

CheckRow shown_value(std::string_view what, CheckBand band, double reached) {
    return {.what = what,
            .band = band,
            .asked = std::numeric_limits<double>::quiet_NaN(),
            .reached = reached,
            .unit = "",
            .met = true};
}

int RequestCheck::missed() const {
    return static_cast<int>(std::ranges::count_if(rows, [](const CheckRow& row) { return !row.met; }));
}

std::string check_summary(const RequestCheck& check) {
    if (check.stopped) return std::string(check_stopped);
    if (!check.has_request()) return std::string(no_request);
    if (const int missed = check.missed(); missed > 0)
        return fmt::format("{} of {} not met{}", missed, check.rows.size(), missed_by(check));
    double least = std::numeric_limits<double>::infinity();
    for (const CheckRow& row : check.rows) {
        if (row.spare) least = std::min(least, row.margin);
    }
    return std::isfinite(least) ? fmt::format("meets the request (+{:.1f} dB)", std::max(least, 0.0))
                                : std::string("meets the request");
}

std::vector<std::string> missed_lines(const RequestCheck& check) {
    std::vector<std::string> lines;
    if (check.stopped) lines.push_back(fmt::format("  *** {} ***", check_stopped));
    for (const CheckRow& row : check.rows) {
        if (row.met) continue;
        const std::string unit = row.unit.empty() ? "" : " " + std::string(row.unit);
        const std::string band = band_text(row.band);
        const int decimals = telling_decimals(row, row.unit.empty() ? 4 : 2);
        const std::string reached =
            std::isnan(row.reached) ? "no value found" : number_text(row, row.reached, decimals) + unit + " reached";
        const std::string what = fmt::format("  *** {}{}{}:", title_of(row), band.empty() ? "" : " ", band);
        const std::string values =
            fmt::format("{} asked, {} ***", number_text(row, row.asked, decimals) + unit, reached);
        const bool fits = what.size() + 1 + values.size() <= line_width;
        lines.push_back(fits ? what + ' ' + values : what);
        if (!fits) lines.push_back("      " + values);
    }
    return lines;
}

std::vector<std::string> check_table(const RequestCheck& check) {
    std::vector<std::string> lines;
    std::size_t title_width = 14;
    for (const CheckRow& row : check.rows) {
        if (!row.of.empty()) title_width = std::max(title_width, title_of(row).size() + 2);
    }
    if (check.has_request()) {
        lines.push_back(fmt::format("{:<{}}{:>11}{:>14}{:>15}", "", title_width + 34, "asked", "reached", "margin"));
    }
    for (const CheckRow& row : check.rows) {
        const int decimals = telling_decimals(row, 4);
        const auto value = [&](double v) {
            return std::isnan(v) ? std::string(14, ' ')
                                 : fmt::format("{:>11} {:<2}", number_text(row, v, decimals), row.unit);
        };
        const double least = std::pow(10, -decimals) / 2;  // below it a margin is none
        const std::string margin =
            std::isnan(row.margin) || std::isnan(row.asked)
                ? ""
                : fmt::format("{:+.{}f}", std::fabs(row.margin) < least ? 0.0 : row.margin, decimals);
        lines.push_back(fmt::format("{:<{}}{:<34}{}{}{:>12}{}", title_of(row), title_width, band_text(row.band),
                                    value(row.asked), value(row.reached), margin, row.met ? "" : "  not met"));
    }
    lines.push_back(check_summary(check));
    return lines;
}

double tolerance_in_decibel(double asked) { return check_tolerance * std::max(1.0, std::fabs(asked)); }

namespace {

bool within_tolerance(const CheckRow& row) {
    return row.margin >= -(row.unit == "dB" ? tolerance_in_decibel(row.asked) : check_tolerance * std::fabs(row.asked));
}

CheckRow settled(CheckRow row) {
    row.met = within_tolerance(row);
    return row;
}

// Large frequencies with a prefix, so that a line of two fits the report.
std::string frequency_text(double hertz) {
    if (hertz >= 1e9) return fmt::format("{:.3f} GHz", hertz / 1e9);
    if (hertz >= 1e6) return fmt::format("{:.3f} MHz", hertz / 1e6);
    return fmt::format("{:.3f} Hz", hertz);
}

// "stopband", or "cascade: stopband".
std::string title_of(const CheckRow& row) {
    return row.of.empty() ? std::string(row.what) : fmt::format("{}: {}", row.of, row.what);
}

// " (cascade, direct)".
std::string missed_by(const RequestCheck& check) {
    std::vector<std::string_view> names;
    for (const CheckRow& row : check.rows) {
        if (!row.met && !row.of.empty() && (names.empty() || names.back() != row.of)) names.push_back(row.of);
    }
    return names.empty() ? "" : fmt::format(" ({})", fmt::join(names, ", "));
}

std::string band_text(const CheckBand& band) {
    if (!band.is_given()) return {};
    if (std::isinf(band.to)) return frequency_text(band.from) + " up";
    if (band.from == 0) return "up to " + frequency_text(band.to);
    return frequency_text(band.from) + " to " + frequency_text(band.to);
}

// As many as show that a missed value is not the one asked for.
int telling_decimals(const CheckRow& row, int least) {
    constexpr int most = 9;
    int decimals = least;
    while (!row.met && decimals < most &&
           number_text(row, row.asked, decimals) == number_text(row, row.reached, decimals)) {
        ++decimals;
    }
    return decimals;
}

// What decimals cannot show comes with an exponent; a few billionths of a dB are none.
std::string number_text(const CheckRow& row, double value, int decimals) {
    constexpr double widest = 1e6, least = 1e-3;
    const double size = std::fabs(value);
    const bool tiny = row.unit.empty() && size != 0 && size < least;
    return size < widest && !tiny ? fmt::format("{:.{}f}", value, decimals) : fmt::format("{:.4e}", value);
}

}  // namespace

}  // namespace kavrel
