// What an equal ripple FIR design reports.
#pragma once

#include <string_view>

#include "fir/fir_filter.h"
#include "fir/fir_grid.h"
#include "shell/reporter.h"
#include "shell/units.h"

namespace kavrel {

// The figures of a design beside its impulse response.
struct FirDesignFigures {
    int taps = 0;
    int taps_used = 0;        // without zeros around them
    bool bounded = false;     // in its gain outside the bands
    double outside_gain = 0;  // if bounded
    double deviation = 0;     // the largest weighted one
    bool length_estimated = false;
    Table<float, max_fir_bands> DEVIAT;     // [j] deviation of the taps in band j, linear
    Table<float, max_fir_bands> DEVIAT_DB;  // [j] the same in dB, of a filter
};

// The whole report: head (with the user's units, unless they are those of the SI), type, length, impulse response,
// bands in groups of four, deviations.
void report_fir_design(const FirTask& task, const FirDesignFigures& figures, const FirFilter& filter,
                       std::string_view title, const UnitSet& units, Reporter& reporter);

// The impulse response of a function, a line for each coefficient and its mirror image.
void report_impulse_response(const FirFilter& filter, int function, Reporter& reporter);

}  // namespace kavrel
