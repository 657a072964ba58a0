#include "circuit/circuit.h"

#include <algorithm>
#include <cmath>

#include "circuit/branch_kinds.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

struct Place {
    int slot = 0;   // of the new branch
    int above = 0;  // branch that follows it, 0 at the end
    int shift = 0;  // by which that one and all above it move up
};

bool in_table(BranchId id) { return branch_kinds.has(id) && branch_kinds[id].structure == Structure::quadruplet; }
bool plain(const Circuit& circuit, int k) { return branch_kinds[unpackBranch(circuit, k).id].slot_element(); }
CircuitVerdict check_request(const Circuit& circuit, int k, BranchId id);
Place place_behind(const Circuit& circuit, int k, BranchId id);
Place place_inside(const Circuit& circuit, int k, BranchId id);
CircuitVerdict link(Circuit& circuit, const Place& place, Branch branch);
int parity(int n) { return n & 1; }

}  // namespace

bool is_finite(const Circuit& c) {
    const bool quadruplets = std::ranges::all_of(
        c.QUADRUPLETS, [](const Quadruplet& q) { return all_finite(q.XK, q.XC, q.YK, q.YC, q.FRES); });
    const bool invertible =  // microwave circuits are shown with the impedances of their admittances
        std::ranges::all_of(c.VALUE, [](double value) { return value == 0 || std::isfinite(1 / value); });
    return quadruplets && invertible &&
           all_finite(c.VALUE, c.R1, c.R2, c.fa, c.fb, c.fnorm, c.fs, c.MODE_RE, c.MODE_IM) &&
           !std::isnan(c.termination_ratio);
}

bool branchExists(const Circuit& circuit, int k) { return k >= 1 && k <= max_branches && circuit.INDX1(k) != 0; }

std::span<const double> branch_values(const Circuit& circuit, const Branch& branch) {
    if (in_table(branch.id)) return {};
    return {circuit.VALUE.data() + branch.i1 - 1, static_cast<std::size_t>(branch.in + 1)};
}

std::span<double> branch_values(Circuit& circuit, const Branch& branch) {
    if (in_table(branch.id)) return {};
    return {circuit.VALUE.data() + branch.i1 - 1, static_cast<std::size_t>(branch.in + 1)};
}

void clear_circuit(Circuit& circuit) {
    circuit.VALUE.fill(0.0);
    circuit.INDX1.fill(0);
    circuit.klast = 0;
    circuit.ilast = 0;
    circuit.QUADRUPLETS.fill({});
    circuit.quadruplet_count = 0;
    circuit.preferred = 0;
}

CircuitVerdict insert_values(Circuit& circuit, int& k, BranchId id, std::span<const double> values) {
    const int count = static_cast<int>(values.size());
    if (!branch_kinds.has(id) || in_table(id) || count < 1 || count > max_values_of_branch) {
        return CircuitVerdict::unfit_kind;
    }
    if (const auto verdict = check_request(circuit, k, id); verdict != CircuitVerdict::done) return verdict;
    if (circuit.ilast + count > max_values) return CircuitVerdict::storage_full;

    const Place place = k > circuit.klast ? place_behind(circuit, k, id) : place_inside(circuit, k, id);
    const Branch branch{.id = id, .i1 = circuit.ilast + 1, .in = count - 1};
    if (const auto verdict = link(circuit, place, branch); verdict != CircuitVerdict::done) return verdict;
    for (const double value : values) circuit.VALUE(++circuit.ilast) = value;
    k = place.slot;
    return CircuitVerdict::done;
}

CircuitVerdict insertBranch(Circuit& circuit, int& k, double value1, double value2, BranchId id) {
    if (!branch_kinds.has(id) || !branch_kinds[id].simple()) return CircuitVerdict::unfit_kind;
    const double values[] = {value1, value2};
    return insert_values(circuit, k, id, std::span(values).first(branch_kinds[id].cells.size()));
}

CircuitVerdict insertThreeElement(Circuit& circuit, int& k, double L, double C, double X, BranchId id,
                                  CircuitKind kind) {
    if (id != BranchId::lcc && id != BranchId::lcl) return CircuitVerdict::unfit_kind;
    const bool microwave = kind != CircuitKind::lumped;
    const double values[] = {L, microwave ? 1 / C : C, microwave && id == BranchId::lcc ? 1 / X : X};
    return insert_values(circuit, k, id, values);
}

CircuitVerdict insertEqualizer(Circuit& circuit, double L, double R1, double C, BranchId id) {
    if (!branch_kinds.has(id) || !branch_kinds[id].equalizer()) return CircuitVerdict::unfit_kind;
    if (!branchExists(circuit, 1)) return CircuitVerdict::not_a_resistor;
    if (circuit.ilast + 7 > max_values) return CircuitVerdict::storage_full;

    const double R = circuit.VALUE(unpackBranch(circuit, 1).i1);
    const double values[] = {R, L, R1, C, C * (R * R), R * R / R1, L / (R * R)};
    Place place{.slot = 2};
    if (const int above = unpackBranch(circuit, 1).kn; above != 0) {
        // The branch behind keeps its parity and comes to 4 or 5.
        place.above = above;
        place.shift = std::max(0, 4 + parity(above) - above);
    }
    const Branch branch{.id = id, .i1 = circuit.ilast + 1, .in = 6};
    if (const auto verdict = link(circuit, place, branch); verdict != CircuitVerdict::done) return verdict;
    for (const double value : values) circuit.VALUE(++circuit.ilast) = value;
    return CircuitVerdict::done;
}

CircuitVerdict insert_quadruplet(Circuit& circuit, int& k, const Quadruplet& quadruplet) {
    if (const auto verdict = check_request(circuit, k, BranchId::quadruplet); verdict != CircuitVerdict::done)
        return verdict;
    if (circuit.quadruplet_count >= max_quadruplets) return CircuitVerdict::storage_full;

    const Place place = k > circuit.klast ? place_behind(circuit, k, BranchId::quadruplet)
                                          : place_inside(circuit, k, BranchId::quadruplet);
    const Branch branch{.id = BranchId::quadruplet, .i1 = circuit.quadruplet_count + 1};
    if (const auto verdict = link(circuit, place, branch); verdict != CircuitVerdict::done) return verdict;
    circuit.QUADRUPLETS(++circuit.quadruplet_count) = quadruplet;
    k = place.slot;
    return CircuitVerdict::done;
}

CircuitVerdict deleteBranch(Circuit& circuit, int& k) {
    if (!branchExists(circuit, k) || k > circuit.klast) return CircuitVerdict::no_branch;
    const Branch gone = unpackBranch(circuit, k);
    if (gone.kp == 0 && gone.kn != 0) return CircuitVerdict::no_branch;
    circuit.INDX1(k) = 0;
    if (gone.kp != 0) {
        Branch before = unpackBranch(circuit, gone.kp);
        before.kn = gone.kn;
        packBranch(circuit, gone.kp, before);
    }
    if (gone.kn != 0) {
        Branch behind = unpackBranch(circuit, gone.kn);
        behind.kp = gone.kp;
        packBranch(circuit, gone.kn, behind);
    } else {
        circuit.klast = gone.kp;
    }
    k = gone.kn;
    return CircuitVerdict::done;
}

CircuitVerdict shiftBranches(Circuit& circuit, int from, int by) {
    if (circuit.klast < from || by < 1) return CircuitVerdict::done;
    if (circuit.klast + by > last_insert_slot) return CircuitVerdict::storage_full;
    int k = circuit.klast;
    while (k >= from) {
        Branch branch = unpackBranch(circuit, k);
        const int before = branch.kp;
        if (before >= from) branch.kp += by;
        if (branch.kn != 0) branch.kn += by;
        circuit.INDX1(k) = 0;
        packBranch(circuit, k + by, branch);
        if (before == 0) break;
        if (before < from) {
            Branch stays = unpackBranch(circuit, before);
            stays.kn = k + by;
            packBranch(circuit, before, stays);
        }
        k = before;
    }
    circuit.klast += by;
    return CircuitVerdict::done;
}

void compactValues(Circuit& circuit) {
    Table<double, max_values> packed;
    int used = 0;
    for (int k = circuit.klast == 0 ? 0 : 1; k != 0;) {
        Branch branch = unpackBranch(circuit, k);
        if (!in_table(branch.id)) {
            const int first = used + 1;
            for (int i = 0; i <= branch.in; ++i) packed(++used) = circuit.VALUE(branch.i1 + i);
            branch.i1 = first;
            packBranch(circuit, k, branch);
        }
        k = branch.kn;
    }
    circuit.VALUE = packed;
    circuit.ilast = used;
}

namespace {

CircuitVerdict check_request(const Circuit& circuit, int k, BranchId id) {
    if (k < 1 || k > max_branches) return CircuitVerdict::out_of_range;
    const bool becomes_first = circuit.klast == 0 || k == 1;
    if (becomes_first && (id != BranchId::resistor || k != 1)) return CircuitVerdict::not_a_resistor;
    return CircuitVerdict::done;
}

// Two-ports ask for a free slot on either side; a unit element has no parity to keep, all others have.
Place place_behind(const Circuit& circuit, int k, BranchId id) {
    if (circuit.klast == 0) return {.slot = 1};
    int distance = parity(k - circuit.klast) == 1 ? 1 : 2;
    const bool wide = !branch_kinds[id].slot_element() || !plain(circuit, circuit.klast);
    if (wide && distance < 2) distance = branch_kinds[id].structure == Structure::line ? 2 : 3;
    return {.slot = circuit.klast + distance};
}

Place place_inside(const Circuit& circuit, int k, BranchId id) {
    int above = k;
    while (circuit.INDX1(above) == 0) ++above;
    const int before = unpackBranch(circuit, above).kp;
    const bool new_is_plain = branch_kinds[id].slot_element();
    if (before != 0 && k - before < 2 && !(new_is_plain && plain(circuit, before))) k += 2;

    // The branch above keeps its parity: it comes to k + 2 where that is even with it, else to k + 1 or k + 3.
    int slot = k + 2 - parity(above - k);
    if (slot == k + 1 && !(new_is_plain && plain(circuit, above))) slot += 2;
    return {.slot = k, .above = above, .shift = std::max(0, slot - above)};
}

CircuitVerdict link(Circuit& circuit, const Place& place, Branch branch) {
    if (place.slot > last_insert_slot) return CircuitVerdict::storage_full;
    const int before = place.above != 0 ? unpackBranch(circuit, place.above).kp : circuit.klast;
    const int above = place.above != 0 ? place.above + place.shift : 0;
    if (place.above != 0) {
        const auto verdict = shiftBranches(circuit, place.above, place.shift);
        if (verdict != CircuitVerdict::done) return verdict;
    }
    branch.kp = before;
    branch.kn = above;
    packBranch(circuit, place.slot, branch);
    if (before != 0) {
        Branch neighbour = unpackBranch(circuit, before);
        neighbour.kn = place.slot;
        packBranch(circuit, before, neighbour);
    }
    if (above != 0) {
        Branch neighbour = unpackBranch(circuit, above);
        neighbour.kp = place.slot;
        packBranch(circuit, above, neighbour);
    } else {
        circuit.klast = place.slot;
    }
    return CircuitVerdict::done;
}

}  // namespace

}  // namespace kavrel
