#include "circuit/branch_elements.h"

#include <cstddef>

namespace kavrel {

namespace {

int copies_of(const BranchKind& kind, int cell);

}  // namespace

BranchElements branch_elements(const Circuit& circuit, const Branch& branch) {
    const BranchKind& kind = branch_kinds[branch.id];
    if (kind.structure == Structure::quadruplet) return quadruplet_elements(circuit.QUADRUPLETS(branch.i1));
    BranchElements elements;
    for (const double value : branch_values(circuit, branch)) {
        const int cell = elements.count++;
        elements.cells[static_cast<std::size_t>(cell)] = {kind.cells[static_cast<std::size_t>(cell)], value,
                                                          element_present(kind, cell, value), copies_of(kind, cell)};
    }
    return elements;
}

BranchElements quadruplet_elements(const Quadruplet& quadruplet) {
    BranchElements elements;
    const auto inductor = [&](double inverse) {
        const bool present = inverse != 0;
        elements.cells[static_cast<std::size_t>(elements.count++)] = {'L', present ? 1 / inverse : 2 * absent_inductor,
                                                                      present};
    };
    const auto capacitor = [&](double value) {
        elements.cells[static_cast<std::size_t>(elements.count++)] = {'C', value, value != 0};
    };
    for (int i = 1; i <= 3; ++i) {
        for (int j = i + 1; j <= 4; ++j) {
            if (quadruplet.M(i, j) == 1) {
                inductor(quadruplet.XK(i, j));
            } else {
                capacitor(quadruplet.XC(i, j));
            }
        }
    }
    for (int i = 2; i <= 3; ++i) {
        inductor(quadruplet.YK(i));
        capacitor(quadruplet.YC(i));
    }
    return elements;
}

double shown_value(CircuitKind kind, char letter, double value) {
    return kind != CircuitKind::lumped && letter == 'C' ? 1 / value : value;
}

std::string element_text(CircuitKind kind, const UnitSet& units, char letter, double value) {
    if (kind != CircuitKind::lumped) return impedance_text(units, shown_value(kind, letter, value));
    return unit_value_text(units, value, letter == 'L' ? henry : letter == 'C' ? farad : ohm);
}

std::string impedance_text(const UnitSet& units, double value) {
    constexpr std::string_view unit = "ohm";
    std::string text = unit_value_text(units, value, ohm);
    if (const auto place = text.find(unit); place != std::string::npos) text.replace(place, unit.size(), "   ");
    return text;
}

namespace {

int copies_of(const BranchKind& kind, int cell) {
    if (kind.structure == Structure::lattice) return 2;
    if (kind.structure != Structure::network) return 1;
    int copies = 0;
    for (const Connection& connection : kind.connections) copies += connection.cell == cell ? 1 : 0;
    return copies;
}

}  // namespace

}  // namespace kavrel
