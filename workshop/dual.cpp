#include "workshop/dual.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

#include "circuit/branch_kinds.h"

namespace kavrel {

namespace {

constexpr double equal_parts = 1e-6;  // relative difference of what must be equal in a twin T

using Values = std::array<double, max_values_of_branch>;

bool dual_values(const BranchKind& kind, std::span<const double> old, Values& values);

}  // namespace

Refusal dual(Circuit& circuit) {
    if (circuit.klast == 0) return no_dual;
    Circuit turned = circuit;
    for (int k = turned.klast; k != 0; k = unpackBranch(turned, k).kp) {
        const Branch branch = unpackBranch(turned, k);
        const BranchKind& kind = branch_kinds[branch.id];
        const auto cells = branch_values(turned, branch);
        Values values{};
        if (!dual_values(kind, cells, values)) return "Coupled or unmatched section, no dual";
        const auto count = static_cast<std::ptrdiff_t>(cells.size());
        std::copy(values.begin(), values.begin() + count, cells.begin());
        Branch exchanged = branch;
        exchanged.id = kind.dual;
        packBranch(turned, k, exchanged);
    }
    const int second = unpackBranch(turned, 1).kn;
    if (second != 0 && shiftBranches(turned, second, 1) != CircuitVerdict::done) return "Not enough storage, no dual";
    circuit = turned;
    return {};
}

namespace {

void dual_lattice(const BranchKind& kind, std::span<const double> old, Values& values);
bool dual_twin_t(const BranchKind& kind, std::span<const double> old, Values& values);

bool dual_values(const BranchKind& kind, std::span<const double> old, Values& values) {
    if (kind.structure == Structure::lattice) {
        dual_lattice(kind, old, values);
        return true;
    }
    if (kind.id == BranchId::twin_t || kind.id == BranchId::twin_t_trap) return dual_twin_t(kind, old, values);
    for (std::size_t i = 0; i < kind.dual_order.size(); ++i) {
        const auto from = static_cast<std::size_t>(kind.dual_order[i] - '0');
        const bool reactance = kind.cells[from] == 'L' || kind.cells[from] == 'C';
        values[i] = reactance ? old[from] : 1 / old[from];
    }
    return !kind.dual_order.empty();
}

// The arms of the dual are 1/Zb and 1/Za. That of an arm is L and C in parallel, in series with the dual of X, which is
// brought back to its form: of L, C and a capacitor X
//     L C in parallel, in series with L = X:  X (X + C)/C, L (C/(X + C))^2, X + C as L, C, X
// and of an inductor X  C ((X + L)/X)^2 as L, X^2/(X + L) as C, X L/(X + L) as X.
void dual_lattice(const BranchKind& kind, std::span<const double> old, Values& values) {
    for (std::size_t arm = 0; arm < 2; ++arm) {
        const double L = old[3 - 3 * arm], C = old[4 - 3 * arm], X = old[5 - 3 * arm];
        double* const cells = &values[3 * arm];
        if (C == 0) {
            cells[2] = X;  // the arm is X alone
        } else if (kind.cells[2] == 'C') {
            const double sum = X + C;
            cells[0] = X * sum / C, cells[1] = L * (C / sum) * (C / sum), cells[2] = sum;
        } else {
            const double sum = X + L;
            cells[0] = C * (sum / X) * (sum / X), cells[1] = X * X / sum, cells[2] = X * L / sum;
        }
    }
}

// Its admittances, with u = (1, -1) and d = (n, 1)/(n + 1), n the ratio of the arms, 1/w^2 = C sum L = L sum C:
//     Y = (K/s + s C) u u' + s G/(s^2 + w^2) d d',
// K from end to end at low frequencies, C at high ones, G = 1/La + 1/Lb + 1/L of the shunt arm. Those of the dual are
//     w^2/G, 1/G, 1/C for K, C, G; K/C for w^2; 1/n for n.
bool dual_twin_t(const BranchKind& kind, std::span<const double> old, Values& values) {
    const bool trap = kind.id == BranchId::twin_t_trap;
    const double La = old[0], Ca = old[1], shunt_C = old[2], shunt_L = old[3];
    const double Cb = old[trap ? 5 : 4], Lb = old[trap ? 6 : 5];
    const auto equal = [](double a, double b) { return std::fabs(a - b) <= equal_parts * std::fabs(a); };
    const double n = Lb / La;
    const double inner = 1 / La + 1 / Lb, square = inner / shunt_C;
    const double other_square = 1 / (shunt_L * (Ca + Cb)) + (trap ? 1 / (shunt_L * old[4]) : 0);
    if (!equal(n, Ca / Cb) || !equal(square, other_square)) return false;

    const double K = 1 / (La + Lb), C = 1 / (1 / Ca + 1 / Cb), G = inner + 1 / shunt_L;
    const double new_K = square / G, new_C = 1 / G, new_square = K / C, m = 1 / n;
    const double new_La = 1 / (new_K * (m + 1)), new_Lb = m * new_La, new_inner = 1 / new_La + 1 / new_Lb;
    const double new_Ca = new_C * (m + 1), new_Cb = new_Ca / m;
    const double new_shunt_L = 1 / (1 / C - new_inner);
    const double rest = new_square - 1 / (new_shunt_L * (new_Ca + new_Cb));
    values = {new_La, new_Ca, new_inner / new_square, new_shunt_L, new_Cb, new_Lb};
    if (trap) values = {new_La, new_Ca, new_inner / new_square, new_shunt_L, 1 / (new_shunt_L * rest), new_Cb, new_Lb};
    return true;
}

}  // namespace

}  // namespace kavrel
