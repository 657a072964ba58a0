#include "iir/frequency_table.h"

#include <cmath>

#include "shell/edited.h"
#include "shell/reporter.h"

namespace kavrel {

namespace {

constexpr double fine_step = 0.001;

void add_head(const FrequencyRows& rows, std::string_view title, Lines& lines);
bool is_fine(const FrequencyRows& rows);
std::string point_text(const ResponsePoint& point, bool has_delay);

}  // namespace

std::string_view structure_text(Implementation form) {
    switch (form) {
        case Implementation::cascade: return "cascade";
        case Implementation::parallel: return "parallel";
        case Implementation::lattice: return "lattice";
        case Implementation::direct: return "direct";
        case Implementation::allpass: return "diff. allpass";
        case Implementation::natural_modes: return "natural modes";
    }
    return {};
}

Lines frequency_lines(const FrequencyRows& rows, std::string_view title) {
    Lines lines;
    const bool fine = is_fine(rows);
    for (int i = 1; i <= rows.count; ++i) {
        const FrequencyRow& row = rows.rows(i);
        if ((i - 1) % static_cast<int>(Reporter::page_full) == 0) add_head(rows, title, lines);
        std::string line = fine ? edited<"(1X,1P,E13.6,1X)">(row.frequency) : edited<"(1X,1P,E12.5,2X)">(row.frequency);
        line += point_text(row.filter, rows.has_delay);
        if (rows.has_complement) line += "  " + point_text(row.complement, rows.has_delay);
        lines.push_back(line);
    }
    return lines;
}

namespace {

// Columns end at 13 (frequency), 24 (loss), 33 (phase), 45 (delay), and 32 further on those of the other output.
void add_head(const FrequencyRows& rows, std::string_view title, Lines& lines) {
    lines.insert(lines.end(), {"", std::string(title), "", "******* Computed performance *******"});
    if (!rows.structure.empty()) lines.emplace_back(rows.structure);
    lines.emplace_back("");
    const auto columns = [&](std::string& line, std::string_view loss, std::string_view phase, std::string_view delay) {
        line += edited<"(A11,A9)">(loss, phase);
        if (rows.has_delay) line += edited<"(A12)">(delay);
    };
    std::string words = edited<"(A13)">("Frequency"), units = edited<"(A13)">(rows.radians ? "rad/sec" : "in Hz");
    for (int output = 0; output < (rows.has_complement ? 2 : 1); ++output) {
        columns(words, "Loss", "Phase", "Delay");
        columns(units, "in db", "in deg", "in sec");
    }
    if (rows.has_complement) {
        const std::string_view filter = rows.difference ? "difference" : "sum";
        lines.push_back(edited<"(A45,A32)">(filter, rows.difference ? "sum" : "difference"));
    }
    lines.push_back(words);
    lines.push_back(units);
}

bool is_fine(const FrequencyRows& rows) {
    if (rows.count == 0) return false;
    const double first = rows.rows(1).frequency, last = rows.rows(rows.count).frequency;
    return (last - first) / rows.count < fine_step * last;
}

// No zero with a sign.
std::string point_text(const ResponsePoint& point, bool has_delay) {
    const auto shown = [](double x, double half_of_last_digit) { return std::fabs(x) < half_of_last_digit ? 0.0 : x; };
    std::string text = edited<"(F9.4,2X,F7.2)">(shown(point.loss, 5e-5), shown(point.phase, 5e-3));
    if (has_delay) text += edited<"(1P,E12.4)">(point.delay);
    return text;
}

}  // namespace

}  // namespace kavrel
