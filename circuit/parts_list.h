// Every element of a circuit by name: r, l, c or, of a unit element, z with a running number of its class.
#pragma once

#include <string>
#include <vector>

#include "circuit/circuit.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr int max_parts = 150;

struct CircuitPart {
    char letter = 'r';  // r, l, c or z
    int number = 0;     // in its class, from 1
    int branch = 0;     // where it is
    double value = 0;   // as reports show it
    bool of_half_lattice = false;
};

// The parts in chain order, at most 150. Two like arms of a lattice or equalizer are two parts; with `half_lattices` a
// lattice is built with one arm of each kind.
[[nodiscard]] std::vector<CircuitPart> list_parts(const Circuit& circuit, bool half_lattices);

// The list by classes with their totals.
[[nodiscard]] std::vector<std::string> partsList(const Circuit& circuit, bool half_lattices, const UnitSet& units);

}  // namespace kavrel
