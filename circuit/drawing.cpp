#include "circuit/drawing.h"

#include <algorithm>
#include <numbers>

#include "circuit/branch_elements.h"
#include "circuit/element_formulas.h"
#include "shell/edit.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr int drawing_width = 14;

std::vector<std::string> draw_branch(const Circuit& circuit, int k, const UnitSet& units);
std::string draw_row(const DrawingRow& row, const BranchElements& elements);
std::string padded(std::string text, int width);
std::vector<double> transmission_zeros(const Circuit& circuit, const Branch& branch);

}  // namespace

std::vector<std::string> showCircuit(const Circuit& circuit, int firstBranch, const UnitSet& units) {
    std::vector<std::string> lines;
    if (circuit.klast == 0) return lines;
    if (circuit.kind != CircuitKind::lumped) lines.emplace_back(all_values_impedances);
    for (int k = 1; k != 0; k = unpackBranch(circuit, k).kn) {
        if (k < firstBranch) continue;
        for (std::string& line : draw_branch(circuit, k, units)) lines.push_back(std::move(line));
    }
    return lines;
}

namespace {

std::vector<std::string> draw_branch(const Circuit& circuit, int k, const UnitSet& units) {
    const Branch branch = unpackBranch(circuit, k);
    const BranchKind& kind = branch_kinds[branch.id];
    const auto rows = drawing_of(kind, k);
    const auto elements = branch_elements(circuit, branch);
    const bool microwave = circuit.kind != CircuitKind::lumped;
    const std::vector<double> zeros = transmission_zeros(circuit, branch);
    StubSection section;
    if (microwave && kind.slot_element() && kind.cells.size() > 1) {
        section = stub_section(kind, branch_values(circuit, branch), k % 2 == 0);
    }

    std::vector<std::string> lines;
    std::size_t zeros_noted = 0;
    for (const DrawingRow& row : rows) {
        const bool middle = &row == &rows[(rows.size() - 1) / 2];
        const std::string start = middle ? edited<"(I3,1X)">(k) : edit_x(4);
        const auto cell = [&](int i) { return elements.cells[static_cast<std::size_t>(i)]; };

        std::string value;
        if (row.cell >= 0) value = element_text(circuit.kind, units, cell(row.cell).letter, cell(row.cell).value);
        std::string note;
        if (row.note == Note::resonance) {
            const double resonance = resonant_frequency(circuit, cell(row.l).value, cell(row.c).value);
            note = edited<"(A,1X,A)">(unit_value_text(units, resonance, hertz), "res. frequency");
        }
        if (row.note == Note::transmission_zero && zeros_noted < zeros.size()) {
            note = edited<"(A,1X,A)">(unit_value_text(units, zeros[zeros_noted++], hertz),
                                      kind.structure == Structure::quadruplet ? "transm. zeros" : "transm. zero");
        }
        if (microwave && row.z != 0 && section.z1 != 0) {
            const double z = row.z == 1 ? section.z1 : row.z == 2 ? section.z2 : section.z3;
            note += std::string(row.label) + impedance_text(units, z);
        }

        std::string line = start + draw_row(row, elements);
        if (!value.empty() || !note.empty()) line = padded(line, 4 + drawing_width) + edit_x(1) + padded(value, 16);
        if (!note.empty()) line += edit_x(2) + note;
        lines.push_back(std::move(line));
    }
    return lines;
}

// X is the letter of the row's element; where the row has none it is a crossing.
std::string draw_row(const DrawingRow& row, const BranchElements& elements) {
    std::string text(row.text);
    if (row.cell >= 0) {
        std::replace(text.begin(), text.end(), 'X', elements.cells[static_cast<std::size_t>(row.cell)].letter);
    }
    return text;
}

std::string padded(std::string text, int width) {
    const auto characters = std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0u) != 0x80u;  // of UTF-8: the first bytes
    });
    if (characters < width) text.append(static_cast<std::size_t>(width - characters), ' ');
    return text;
}

std::vector<double> transmission_zeros(const Circuit& circuit, const Branch& branch) {
    std::vector<double> noted;
    const BranchKind& kind = branch_kinds[branch.id];
    if (kind.structure == Structure::quadruplet) {
        for (const double zero : circuit.QUADRUPLETS(branch.i1).FRES) {
            if (zero != 0) noted.push_back(zero);
        }
    } else if (kind.structure == Structure::triplet) {
        std::array<double, 2> zeros{};
        const int count = triplet_zeros(kind, branch_values(circuit, branch), zeros);
        for (int i = 0; i < count; ++i) {
            const double omega = 2 * std::numbers::pi * zeros[static_cast<std::size_t>(i)];
            noted.push_back(resonant_frequency(circuit, 1 / omega, 1 / omega));
        }
    }
    return noted;
}

}  // namespace

}  // namespace kavrel
