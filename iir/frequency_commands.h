// "freq", "tabf", "pltf": what the filter does over frequency, in any of its forms.
#pragma once

#include "iir/iir_desk.h"

namespace kavrel {

void analyse_frequency(IirDesk& desk);
void tabulate_frequency(IirDesk& desk);
void plot_frequency(IirDesk& desk);

namespace iir_plot {
inline constexpr int print_analysis = 161;  // event of the plot window's item "&Print"
inline constexpr int least_points = 5;      // of a curve
}  // namespace iir_plot

}  // namespace kavrel
