#include "shell/analysis_result.h"

#include <charconv>
#include <cmath>

#include <fmt/format.h>

#include "shell/finite.h"

namespace kavrel {

namespace {

int row_count(const AnalysisResult& result, AnalysisResult::Kind kind);
template <class Real>
void add_number(Real value, std::string& text);

}  // namespace

bool store_time(const TimeRows& rows, bool sampled, AnalysisResult& results) {
    for (int i = 1; i <= rows.count; ++i) {
        if (!all_finite(static_cast<float>(rows.impulse(i)), static_cast<float>(rows.step(i)))) return false;
    }
    results.kind = AnalysisResult::Kind::time;
    results.time_count = rows.count;
    results.has_impulse = results.has_step = true;
    results.sampled = sampled;
    for (int i = 1; i <= rows.count; ++i) {
        results.TIME(i) = static_cast<float>(rows.time(i));
        results.IMPULSE(i) = static_cast<float>(rows.impulse(i));
        results.STEP(i) = static_cast<float>(rows.step(i));
    }
    return true;
}

bool has_column(const AnalysisResult& result, const ColumnRow& row) {
    return row_count(result, row.kind) > 0 && (row.present == nullptr || result.*row.present);
}

std::string_view column_unit(const AnalysisResult& result, const ColumnRow& row) {
    if (!row.unit.empty()) return row.unit;
    if (row.column == &AnalysisResult::FREQ) return result.radians ? "rad/sec" : "Hz";
    if (row.column == &AnalysisResult::IMPULSE) return result.sampled ? "1" : "1/sec";
    return result.admittance ? "S" : "ohm";
}

std::vector<double> column_values(const AnalysisResult& result, const ColumnRow& row) {
    std::vector<double> values;
    if (!has_column(result, row)) return values;
    for (int i = 1; i <= row_count(result, row.kind); ++i) {
        values.push_back(row.exact != nullptr ? (result.*row.exact)(i) : static_cast<double>((result.*row.column)(i)));
    }
    return values;
}

std::string write_table_csv(const AnalysisResult& result) { return write_table_csv(result, result.kind); }

std::string write_table_csv(const AnalysisResult& result, AnalysisResult::Kind kind) {
    std::string csv;
    std::string_view separator;
    for (const ColumnRow& row : result_columns) {
        if (row.kind != kind || !has_column(result, row)) continue;
        csv += fmt::format("{}{} ({})", separator, row.name, column_unit(result, row));
        separator = ",";
    }
    if (csv.empty()) return csv;
    csv += '\n';

    for (int i = 1; i <= row_count(result, kind); ++i) {
        separator = "";
        for (const ColumnRow& row : result_columns) {
            if (row.kind != kind || !has_column(result, row)) continue;
            csv += separator;
            row.exact != nullptr ? add_number((result.*row.exact)(i), csv) : add_number((result.*row.column)(i), csv);
            separator = ",";
        }
        csv += '\n';
    }
    return csv;
}

namespace {

int row_count(const AnalysisResult& result, AnalysisResult::Kind kind) {
    switch (kind) {
        case AnalysisResult::Kind::frequency: return result.frequency_count;
        case AnalysisResult::Kind::time: return result.time_count;
        case AnalysisResult::Kind::none: break;
    }
    return 0;
}

template <class Real>
void add_number(Real value, std::string& text) {
    if (!std::isfinite(value)) return;
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(digits.data(), end);
}

}  // namespace

}  // namespace kavrel
