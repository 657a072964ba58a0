// Commands that analyse the circuit, and those that tabulate and plot what an analysis left.
//
// "freq", "tabf", "pltf" work on the frequency columns of the results, "time", "tabt", "pltt" on the time columns, and
// "non " and "nonp" on how far the phase is from a straight line.
#pragma once

#include "passive/passive_desk.h"
#include "segment/result_commands.h"

namespace kavrel {

// The events of the plot window's item "&Print".
namespace passive_plot {
inline constexpr int print_analysis = 160;
inline constexpr int print_nonlinearity = 154;
}  // namespace passive_plot

// Frequency analysis of the circuit as it is. Refused: a circuit in wave digital form, a bad request, a circuit
// that cannot be analysed. In a microwave circuit that ends in a line the user is asked how it is driven; the last
// branch then takes the number that records it.
void analyse_frequency(PassiveDesk& desk);

// Impulse and step response of the design, from its natural modes.
void analyse_time(PassiveDesk& desk);

void tabulate_frequency(PassiveDesk& desk);
void tabulate_time(PassiveDesk& desk);

void plot_frequency(PassiveDesk& desk);
void plot_time(PassiveDesk& desk);

// Deviation of the phase from its straight line, as table and plot.
void phase_nonlinearity(PassiveDesk& desk);

// That plot on the printer while it is open, else on the screen.
void print_phase_nonlinearity(PassiveDesk& desk);

}  // namespace kavrel
