#include "workshop/scaling.h"

#include <cmath>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

bool has_scale(const BranchKind& kind, std::size_t cell, double value);
void scale_quadruplet(Quadruplet& quadruplet, double inductance, double capacitance, double frequency);

}  // namespace

void scale(Circuit& circuit, double impedance, double frequency, int from) {
    const double inductance = impedance / frequency;
    const double capacitance = 1 / (impedance * frequency);
    for (int k = circuit.klast; k >= from && k != 0; k = unpackBranch(circuit, k).kp) {
        const Branch branch = unpackBranch(circuit, k);
        const BranchKind& kind = branch_kinds[branch.id];
        if (kind.structure == Structure::quadruplet)
            scale_quadruplet(circuit.QUADRUPLETS(branch.i1), inductance, capacitance, frequency);
        const auto values = branch_values(circuit, branch);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!has_scale(kind, i, values[i])) continue;
            const char letter = kind.cells[i];
            values[i] *= letter == 'L' ? inductance : letter == 'C' ? capacitance : impedance;
        }
    }
}

namespace {

// What an arm of a lattice lacks is an open inductor or, of a dual, a capacitor that is a short circuit at every level.
bool has_scale(const BranchKind& kind, std::size_t cell, double value) {
    if (kind.structure == Structure::lattice && std::fabs(value) >= absent_inductor) return false;
    return element_present(kind, static_cast<int>(cell), value);
}

void scale_quadruplet(Quadruplet& quadruplet, double inductance, double capacitance, double frequency) {
    for (double& inverse : quadruplet.XK.cells) inverse /= inductance;
    for (double& value : quadruplet.XC.cells) value *= capacitance;
    for (int i = 2; i <= 3; ++i) {
        quadruplet.YK(i) /= inductance;
        quadruplet.YC(i) *= capacitance;
    }
    for (int i = 1; i <= 2; ++i) quadruplet.FRES(i) *= frequency;
}

}  // namespace

}  // namespace kavrel
