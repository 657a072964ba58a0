// What an equal ripple FIR design reports.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fir/best_taps.h"
#include "shell/reporter.h"
#include "shell/units.h"

namespace kavrel {

// The figures of a design beside its taps.
struct FirDesignFigures {
    bool length_estimated = false;
    Table<float, max_fir_bands> DEVIAT;     // [j] deviation of the taps in band j, linear
    Table<float, max_fir_bands> DEVIAT_DB;  // [j] the same in dB, of a filter
};

// The whole report: head (with the user's units, unless they are those of the SI), type, length, impulse response,
// bands in groups of four, deviations.
void report_fir_design(const FirTask& task, const FirTaps& taps, const FirDesignFigures& figures,
                       std::string_view title, const UnitSet& units, Reporter& reporter);

// A whole number in three places, or in four where it takes them.
[[nodiscard]] std::string wide_number(int number);

// "even", "odd", "none".
[[nodiscard]] std::string_view name_of(FirSymmetry symmetry);

// The impulse response of a function, a line for each coefficient and its mirror image.
[[nodiscard]] std::vector<std::string> impulse_response_lines(const FirFilter& filter, int function);
void report_impulse_response(const FirFilter& filter, int function, Reporter& reporter);

}  // namespace kavrel
