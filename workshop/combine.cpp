#include "workshop/combine.h"

#include <algorithm>
#include <cmath>

#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr double cancelled = 1e-10;  // sum of two values, of one of them
constexpr double open_inductance = 1e25;
constexpr std::string_view not_alike = "Indicated branches cannot be combined";

bool may_combine(const Circuit& circuit, int k1, int k2);
bool is_open_shunt(const Circuit& circuit, int k);
void take_out(Circuit& circuit, int k) { (void)deleteBranch(circuit, k); }

}  // namespace

Refusal combineBranches(Circuit& circuit, int k1, int k2) {
    if (k1 > k2) std::swap(k1, k2);
    if (!branchExists(circuit, k1) || !branchExists(circuit, k2)) return {nothing_to_combine, "branch1"};
    if (!may_combine(circuit, k1, k2)) return {not_alike, "branch1"};
    const Branch branch = unpackBranch(circuit, k1);
    double& a = circuit.VALUE(branch.i1);
    const double b = circuit.VALUE(unpackBranch(circuit, k2).i1), sum = a + b;
    if (std::fabs(sum) < cancelled * std::fabs(a)) {
        if (k2 == circuit.klast && (k2 - branch.kp) % 2 != 0) return {not_alike, "branch1"};
        take_out(circuit, k2);
        take_out(circuit, k1);
        return {};
    }
    a = values_add_up(branch.id, k1) ? sum : a * b / sum;
    take_out(circuit, k2);
    return {};
}

void squeezeAll(Circuit& circuit) {
    for (int k = unpackBranch(circuit, 1).kn; branchExists(circuit, k);) {
        const Branch branch = unpackBranch(circuit, k);
        if (is_open_shunt(circuit, k) && (k != circuit.klast || (k - branch.kp) % 2 == 0)) {
            take_out(circuit, k);
            k = branch.kp;  // its neighbours have met
        } else if (branch.kn == 0 || !combineBranches(circuit, k, branch.kn).empty()) {
            k = branch.kn;
        } else if (!branchExists(circuit, k)) {
            k = branch.kp;
        }
    }
}

namespace {

bool may_combine(const Circuit& circuit, int k1, int k2) {
    const Branch a = unpackBranch(circuit, k1), b = unpackBranch(circuit, k2);
    return a.kn == k2 && a.id == b.id && is_plain(a.id) && (k2 - k1) % 2 == 0;
}

bool is_open_shunt(const Circuit& circuit, int k) {
    const Branch branch = unpackBranch(circuit, k);
    if (k % 2 == 0) return false;
    return (branch.id == BranchId::inductor && std::fabs(circuit.VALUE(branch.i1)) > open_inductance) ||
           (branch.id == BranchId::capacitor && circuit.VALUE(branch.i1) == 0);
}

}  // namespace

}  // namespace kavrel
