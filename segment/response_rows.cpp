#include "segment/response_rows.h"

#include <algorithm>
#include <cmath>

#include "shell/edited.h"
#include "shell/finite.h"
#include "shell/reporter.h"

namespace kavrel {

using Lines = std::vector<std::string>;

namespace {

constexpr double fine_step = 0.001;

bool fits_results(const FrequencyRows& rows);
void add_head(const FrequencyRows& rows, std::string_view title, Lines& lines);
bool is_fine(const FrequencyRows& rows);
std::string point_text(const ResponsePoint& point, bool has_delay);

}  // namespace

bool store_frequency(const FrequencyRows& rows, double largest_loss, AnalysisResult& results) {
    if (!fits_results(rows)) return false;
    results.kind = AnalysisResult::Kind::frequency;
    results.frequency_count = rows.count;
    results.radians = rows.radians;
    results.structure = rows.structure;
    results.has_loss = results.has_phase = true;
    results.has_delay = rows.has_delay;
    results.has_complement = rows.has_complement;
    results.difference = rows.difference;
    results.has_return_loss = results.has_immittance = false;
    const auto stored_loss = [&](double loss) { return static_cast<float>(std::min(loss, largest_loss)); };
    for (int i = 1; i <= rows.count; ++i) {
        const auto& [frequency, filter, complement] = rows.rows(i);
        results.FREQ(i) = static_cast<float>(frequency);
        results.frequency(i) = frequency;
        results.LOSS(i) = stored_loss(filter.loss);
        results.PHASE(i) = static_cast<float>(filter.phase);
        results.DELA(i) = static_cast<float>(filter.delay);
        results.LOSS_COMPLEMENT(i) = stored_loss(complement.loss);
        results.PHASE_COMPLEMENT(i) = static_cast<float>(complement.phase);
        results.DELAY_COMPLEMENT(i) = static_cast<float>(complement.delay);
    }
    return true;
}

FrequencyRows stored_rows(const AnalysisResult& results) {
    FrequencyRows rows{.structure = results.structure,
                       .radians = results.radians,
                       .has_delay = results.has_delay,
                       .has_complement = results.has_complement,
                       .difference = results.difference,
                       .count = results.frequency_count,
                       .rows = {}};
    const auto point = [](float loss, float phase, float delay) -> ResponsePoint {
        return {static_cast<double>(loss), static_cast<double>(phase), static_cast<double>(delay)};
    };
    for (int i = 1; i <= rows.count; ++i) {
        rows.rows(i) = {results.frequency(i), point(results.LOSS(i), results.PHASE(i), results.DELA(i)),
                        point(results.LOSS_COMPLEMENT(i), results.PHASE_COMPLEMENT(i), results.DELAY_COMPLEMENT(i))};
    }
    return rows;
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

Lines time_lines(const AnalysisResult& results) {
    return time_lines(results, {"", std::string(results.TITLE.trimmed()), "", "===== Time-domain response ====="},
                      "Impulse resp.");
}

Lines time_lines(const AnalysisResult& results, Lines head, std::string_view impulse) {
    Lines lines = std::move(head);
    lines.emplace_back("");
    lines.push_back(edited<"(1X,3A15)">("Time in sec.", impulse, "Step resp."));
    for (int i = 1; i <= results.time_count; ++i) {
        lines.push_back(edited<"(1X,1P,3E15.5)">(results.TIME(i), results.IMPULSE(i), results.STEP(i)));
    }
    return lines;
}

namespace {

bool fits_results(const FrequencyRows& rows) {
    for (int i = 1; i <= rows.count; ++i) {
        const FrequencyRow& row = rows.rows(i);
        const auto fits = [](auto... values) { return all_finite(static_cast<float>(values)...); };
        if (!fits(row.frequency, row.filter.delay, row.complement.delay)) return false;
    }
    return true;
}

// Columns end at 13 (frequency), 24 (loss), 33 (phase), 45 (delay), and 32 further on those of the other output.
void add_head(const FrequencyRows& rows, std::string_view title, Lines& lines) {
    lines.insert(lines.end(), {"", std::string(title), "", "******* Computed performance *******"});
    if (!rows.structure.is_blank()) lines.emplace_back(rows.structure.trimmed());
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
