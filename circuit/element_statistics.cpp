#include "circuit/element_statistics.h"

#include <algorithm>
#include <cmath>

#include "circuit/branch_elements.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

struct StatisticsRow {
    char letter;
    std::string_view label;
    ClassStatistics ElementStatistics::*members;
};

constexpr StatisticsRow statistics_rows[] = {
    {'L', " Inductors: ", &ElementStatistics::inductors},
    {'C', " Capacitors:", &ElementStatistics::capacitors},
    {'Z', " Unit elem.:", &ElementStatistics::unit_elements},
};

bool is_lacking(const Element& element);
void add(ClassStatistics& members, double value);

}  // namespace

bool elementStatistics(const Circuit& circuit, ElementStatistics& statistics) {
    statistics = {};
    if (circuit.klast == 0) return false;
    for (int k = 1; k != 0;) {
        const Branch branch = unpackBranch(circuit, k);
        const BranchElements elements = branch_elements(circuit, branch);
        const bool lattice = branch_kinds[branch.id].structure == Structure::lattice;
        for (int cell = 0; cell < elements.count; ++cell) {
            const Element& element = elements.cells[static_cast<std::size_t>(cell)];
            if (!element.present || (lattice && is_lacking(element))) continue;
            for (const StatisticsRow& row : statistics_rows) {
                if (row.letter != element.letter) continue;
                add(statistics.*row.members, shown_value(circuit.kind, element.letter, element.value));
            }
        }
        k = branch.kn;
    }
    return true;
}

std::vector<std::string> statistics_lines(const ElementStatistics& statistics, CircuitKind kind, const UnitSet& units) {
    std::vector<std::string> lines;
    if (kind != CircuitKind::lumped) lines.emplace_back(all_values_impedances);
    // Labels have 12 characters, values 11 of number and 5 of unit, the spread 12; a word ends where its number ends.
    lines.push_back(edited<"(12X,3(A11,5X),A12)">("minimum", "maximum", "average", "spread"));
    for (const StatisticsRow& row : statistics_rows) {
        const ClassStatistics& members = statistics.*row.members;
        if (members.count == 0) continue;
        const auto text = [&](double value) {
            if (kind != CircuitKind::lumped) return impedance_text(units, value);
            return element_text(kind, units, row.letter, value);
        };
        lines.push_back(edited<"(4A,1P,D12.4)">(row.label, text(members.minimum), text(members.maximum),
                                                text(members.average()), members.spread()));
    }
    return lines;
}

namespace {

// What an arm of a lattice lacks is an open or a short circuit.
bool is_lacking(const Element& element) { return element.value == 0 || std::fabs(element.value) >= absent_inductor; }

void add(ClassStatistics& members, double value) {
    const double magnitude = std::fabs(value);
    members.minimum = std::min(members.minimum, magnitude);
    members.maximum = std::max(members.maximum, magnitude);
    members.sum += magnitude;
    ++members.count;
}

}  // namespace

}  // namespace kavrel
