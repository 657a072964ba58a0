// The columns of numbers that an analysis leaves, and their text as comma-separated values.
//
// Columns are single precision, numbered from 1. A frequency analysis and a time analysis are kept side by side: each
// keeps its rows until the next one of its kind overwrites them, and `kind` says which of the two came last.
// Frequencies are in Hz (rad/sec with `radians`), times and delays in seconds, losses in dB, phases in degrees,
// immittances in ohm (siemens with `admittance`).
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "shell/fingerprint.h"
#include "shell/fixed_text.h"
#include "shell/table.h"

namespace kavrel {

inline constexpr int analysis_points = 501;  // rows of an analysis

using ResultColumn = Table<float, analysis_points>;

struct AnalysisResult {
    enum class Kind { none, frequency, time };

    Kind kind = Kind::none;  // of the last analysis
    FixedText<60> TITLE;     // of the filter that was analysed, the head of a plot

    // The curves last chosen from the columns below.
    ResultColumn X_DATA;     // [i] 1 <= i <= point_count: frequencies or times
    ResultColumn Y1_DATA;    // first curve
    ResultColumn Y2_DATA;    // second curve, with has_y2
    int point_count = 0;     // 0 to 501 valid points
    bool has_y2 = false;     // two curves
    FixedText<36> x_label;   // "Frequency Hz", "Time (sec)"
    FixedText<36> y1_label;  // "Loss (dB)", "Phase (deg)", "Delay (sec)", ...
    FixedText<36> y2_label;

    // Frequency results.
    int frequency_count = 0;       // 0 to 501 valid rows
    Fingerprint frequency_of = 0;  // the filter that was analysed
    bool radians = false;          // FREQ is in rad/sec
    bool has_loss = false;
    bool has_phase = false;
    bool has_delay = false;
    bool has_return_loss = false;
    bool has_immittance = false;  // AREAL and IMAG
    bool admittance = false;      // they are in siemens
    bool has_complement = false;  // the other output of an allpass pair, in the three columns of that name
    bool difference = false;      // of an allpass pair: its filter is the difference, the complement the sum
    FixedText<13> structure;      // that was analysed, of a filter that has several; else blank
    ResultColumn FREQ;
    Table<double, analysis_points> frequency;  // [i] FREQ(i) before it was rounded
    ResultColumn LOSS;
    ResultColumn PHASE;
    ResultColumn DELA;
    ResultColumn RETUR;
    ResultColumn AREAL;
    ResultColumn IMAG;
    ResultColumn LOSS_COMPLEMENT;
    ResultColumn PHASE_COMPLEMENT;
    ResultColumn DELAY_COMPLEMENT;

    // Time results.
    int time_count = 0;  // 0 to 501 valid rows
    Fingerprint time_of = 0;
    bool has_impulse = false;
    bool has_step = false;
    bool sampled = false;  // of a sampled filter: its impulse response is a number, not a density over time
    ResultColumn TIME;
    ResultColumn IMPULSE;
    ResultColumn STEP;
};

static_assert(std::is_trivially_copyable_v<AnalysisResult>);

// The filter that the results of a kind are of.
[[nodiscard]] constexpr Fingerprint analysed_filter(const AnalysisResult& result, AnalysisResult::Kind kind) {
    return kind == AnalysisResult::Kind::time ? result.time_of : result.frequency_of;
}

// Above a table of results that are of another filter than the one that is shown.
inline constexpr std::string_view earlier_results = " *** analysis of an earlier filter ***";

// Why an analysis leaves the former results: of those that it found single precision does not hold some.
inline constexpr std::string_view results_out_of_range = "Results are out of range";

// The rows of a time analysis, in doubles.
struct TimeRows {
    int count = 0;
    Table<double, analysis_points> time;
    Table<double, analysis_points> impulse;
    Table<double, analysis_points> step;
};

// Takes rows over as the time results; false, the results as they were, where single precision does not hold one of
// them.
[[nodiscard]] bool store_time(const TimeRows& rows, bool sampled, AnalysisResult& results);

// A column that an analysis may have. A null `present` means a column that every analysis of the kind has.
struct ColumnRow {
    AnalysisResult::Kind kind;
    std::string_view name;  // in the table and the dump
    std::string_view unit;  // blank where it depends on the result: see column_unit
    ResultColumn AnalysisResult::*column;
    bool AnalysisResult::*present;
    Table<double, analysis_points> AnalysisResult::*exact = nullptr;  // the same in doubles, where it is kept
};

inline constexpr std::array<ColumnRow, 13> result_columns = {{
    {AnalysisResult::Kind::frequency, "frequency", "", &AnalysisResult::FREQ, nullptr, &AnalysisResult::frequency},
    {AnalysisResult::Kind::frequency, "loss", "dB", &AnalysisResult::LOSS, &AnalysisResult::has_loss},
    {AnalysisResult::Kind::frequency, "phase", "deg", &AnalysisResult::PHASE, &AnalysisResult::has_phase},
    {AnalysisResult::Kind::frequency, "delay", "sec", &AnalysisResult::DELA, &AnalysisResult::has_delay},
    {AnalysisResult::Kind::frequency, "return_loss", "dB", &AnalysisResult::RETUR, &AnalysisResult::has_return_loss},
    {AnalysisResult::Kind::frequency, "real", "", &AnalysisResult::AREAL, &AnalysisResult::has_immittance},
    {AnalysisResult::Kind::frequency, "imag", "", &AnalysisResult::IMAG, &AnalysisResult::has_immittance},
    {AnalysisResult::Kind::frequency, "loss_complement", "dB", &AnalysisResult::LOSS_COMPLEMENT,
     &AnalysisResult::has_complement},
    {AnalysisResult::Kind::frequency, "phase_complement", "deg", &AnalysisResult::PHASE_COMPLEMENT,
     &AnalysisResult::has_complement},
    {AnalysisResult::Kind::frequency, "delay_complement", "sec", &AnalysisResult::DELAY_COMPLEMENT,
     &AnalysisResult::has_complement},
    {AnalysisResult::Kind::time, "time", "sec", &AnalysisResult::TIME, nullptr},
    {AnalysisResult::Kind::time, "impulse", "", &AnalysisResult::IMPULSE, &AnalysisResult::has_impulse},
    {AnalysisResult::Kind::time, "step", "1", &AnalysisResult::STEP, &AnalysisResult::has_step},
}};

// Whether a result has this column, with at least one row.
[[nodiscard]] bool has_column(const AnalysisResult& result, const ColumnRow& row);

// The unit of a column of this result: "Hz" or "rad/sec", "ohm" or "S", or the row's own.
[[nodiscard]] std::string_view column_unit(const AnalysisResult& result, const ColumnRow& row);

// The valid rows of a column, in doubles where they are kept so; empty where the result does not have it.
[[nodiscard]] std::vector<double> column_values(const AnalysisResult& result, const ColumnRow& row);

// The results of one kind as comma-separated values: a header such as "frequency (Hz),loss (dB)", then a line for each
// row, each ended by a line feed. Numbers have as many digits as it takes for the value to come back exactly, as kept:
// frequencies in doubles, the others in single precision; a value that is not finite leaves its cell empty. Without
// results of this kind the text is empty.
[[nodiscard]] std::string write_table_csv(const AnalysisResult& result, AnalysisResult::Kind kind);

// The same for the last analysis.
[[nodiscard]] std::string write_table_csv(const AnalysisResult& result);

}  // namespace kavrel
