// "freq", "tabf", "pltf": what a function does over frequency.
#pragma once

#include "fir/fir_desk.h"

namespace kavrel {

void analyse_frequency(FirDesk& desk);   // "freq": refused without a function or with a bad grid
void tabulate_frequency(FirDesk& desk);  // "tabf"
void plot_frequency(FirDesk& desk);      // "pltf"

inline constexpr int fir_print_analysis = 162;  // event of the plot window's item "&Print"

}  // namespace kavrel
