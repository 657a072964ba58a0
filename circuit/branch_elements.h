// The single elements of a branch, whatever its kind, and how reports show their values.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "circuit/branch_kinds.h"
#include "circuit/circuit.h"
#include "shell/units.h"

namespace kavrel {

inline constexpr std::string_view all_values_impedances = " **** All values are impedances ****";

struct Element {
    char letter = 'R';    // R, L, C, or Z of a unit element
    double value = 0;     // as stored; of a quadruplet the inductance or capacitance
    bool present = true;  // false: the cell holds no element
    int copies = 1;       // how many of it the built circuit has
};

struct BranchElements {
    std::array<Element, max_values_of_branch> cells;
    int count = 0;
};

// In cell order.
[[nodiscard]] BranchElements branch_elements(const Circuit& circuit, const Branch& branch);

// The couplings 1-2, 1-3, 1-4, 2-3, 2-4, 3-4, then L and C of node 2 and of node 3.
[[nodiscard]] BranchElements quadruplet_elements(const Quadruplet& quadruplet);

// What reports show of a value: itself, or in a microwave circuit the impedance of a capacitive cell.
[[nodiscard]] double shown_value(CircuitKind kind, char letter, double value);

// Sixteen characters: the value with its unit, in a microwave circuit an impedance without.
[[nodiscard]] std::string element_text(CircuitKind kind, const UnitSet& units, char letter, double value);

// Sixteen characters: an impedance without its unit.
[[nodiscard]] std::string impedance_text(const UnitSet& units, double value);

}  // namespace kavrel
