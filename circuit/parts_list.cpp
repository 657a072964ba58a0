#include "circuit/parts_list.h"

#include <algorithm>

#include "circuit/branch_elements.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

struct PartClass {
    char letter;
    char element;
    std::string_view heading;
    std::string_view total;
};

constexpr PartClass part_classes[] = {
    {'r', 'R', "resistors", " total number of resistors:  "},
    {'l', 'L', "inductors", "inductors:  "},
    {'c', 'C', "capacitors", "capacitors:  "},
    {'z', 'Z', "unit elements", "unit elements:  "},
};

std::string part_text(CircuitKind kind, const UnitSet& units, const CircuitPart& part);

}  // namespace

std::vector<CircuitPart> list_parts(const Circuit& circuit, bool half_lattices) {
    std::vector<CircuitPart> parts;
    std::array<int, std::size(part_classes)> numbers{};
    for (int k = circuit.klast == 0 ? 0 : 1; k != 0;) {
        const Branch branch = unpackBranch(circuit, k);
        const bool half = half_lattices && branch_kinds[branch.id].structure == Structure::lattice;
        const BranchElements elements = branch_elements(circuit, branch);
        for (int cell = 0; cell < elements.count; ++cell) {
            const Element& element = elements.cells[static_cast<std::size_t>(cell)];
            for (std::size_t row = 0; row < std::size(part_classes); ++row) {
                if (!element.present || element.letter != part_classes[row].element) continue;
                for (int copy = 0; copy < (half ? 1 : element.copies); ++copy) {
                    if (parts.size() == max_parts) return parts;
                    parts.push_back({part_classes[row].letter, ++numbers[row], k,
                                     shown_value(circuit.kind, element.letter, element.value), half});
                }
            }
        }
        k = branch.kn;
    }
    return parts;
}

std::vector<std::string> partsList(const Circuit& circuit, bool half_lattices, const UnitSet& units) {
    const std::vector<CircuitPart> parts = list_parts(circuit, half_lattices);
    std::vector<std::string> lines = {"*** Parts list ***"};
    if (circuit.kind != CircuitKind::lumped) lines.emplace_back(all_values_impedances);
    const auto count = [&](char letter) {
        return std::count_if(parts.begin(), parts.end(),
                             [&](const CircuitPart& part) { return part.letter == letter; });
    };
    for (const PartClass& row : part_classes) {
        if (count(row.letter) == 0) continue;
        lines.emplace_back(row.heading);
        for (const CircuitPart& part : parts) {
            if (part.letter != row.letter) continue;
            lines.push_back(edited<"(2X,A,I2.2,1X,2A)">(part.letter, part.number, part_text(circuit.kind, units, part),
                                                        part.of_half_lattice ? "*" : ""));
        }
    }
    for (const PartClass& row : part_classes) {
        if (row.element == 'Z' && circuit.kind == CircuitKind::lumped) continue;
        lines.push_back(edited<"(A29,I2)">(row.total, count(row.letter)));
    }
    if (std::any_of(parts.begin(), parts.end(), [](const CircuitPart& part) { return part.of_half_lattice; })) {
        lines.emplace_back(" * \"half-lattice\" branches");
    }
    return lines;
}

namespace {

// As `element_text` of the class, from a value already turned into an impedance.
std::string part_text(CircuitKind kind, const UnitSet& units, const CircuitPart& part) {
    if (kind != CircuitKind::lumped) return impedance_text(units, part.value);
    return unit_value_text(units, part.value, part.letter == 'l' ? henry : part.letter == 'c' ? farad : ohm);
}

}  // namespace

}  // namespace kavrel
