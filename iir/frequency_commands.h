// "freq", "tabf", "pltf": what the filter does over frequency, in any of its forms.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

// Refused: a form that there is not, a bad request. What is infinite, but for the loss at a zero, is no result.
void analyse_frequency(IirDesk& desk);
void tabulate_frequency(IirDesk& desk);
// Of an allpass pair the user is asked which output; the parallel form has no delay.
void plot_frequency(IirDesk& desk);

namespace iir_plot {
inline constexpr int print_analysis = 161;  // event of the plot window's item "&Print"
inline constexpr int least_points = 5;      // of a curve
}  // namespace iir_plot

}  // namespace kavrel
