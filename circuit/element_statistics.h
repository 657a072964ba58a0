// Smallest, largest and average element of each class, and their spread: what a circuit asks of its parts.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "circuit/circuit.h"
#include "shell/units.h"

namespace kavrel {

// Of magnitudes as reports show them.
struct ClassStatistics {
    double minimum = std::numeric_limits<double>::infinity();
    double maximum = 0;
    double sum = 0;
    int count = 0;

    [[nodiscard]] double average() const { return sum / count; }
    [[nodiscard]] double spread() const { return maximum == minimum ? 1 : maximum / minimum; }
};

struct ElementStatistics {
    ClassStatistics inductors;
    ClassStatistics capacitors;
    ClassStatistics unit_elements;
};

inline constexpr std::string_view no_circuit_to_analyze = "No circuit to analyze";

// False for an empty circuit.
[[nodiscard]] bool elementStatistics(const Circuit& circuit, ElementStatistics& statistics);

// The heading, and a row for each class that has members.
[[nodiscard]] std::vector<std::string> statistics_lines(const ElementStatistics& statistics, CircuitKind kind,
                                                        const UnitSet& units);

}  // namespace kavrel
