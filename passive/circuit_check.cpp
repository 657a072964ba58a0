#include "passive/circuit_check.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cmath>
#include <string_view>

#include "approximation/design_check.h"
#include "circuit/branch_kinds.h"
#include "shell/fields.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

using Cells = std::bitset<max_values + 1>;  // those that a branch has taken
using Slots = std::bitset<max_quadruplets + 1>;

template <class T>
bool within(T value, T low, T high) {
    return value >= low && value <= high;
}
bool canonical(std::int32_t word);
bool take_cells(const Circuit& circuit, const Branch& branch, Cells& taken);
bool take_quadruplet(const Circuit& circuit, const Branch& branch, Slots& taken);

}  // namespace

bool sound_store(const Circuit& circuit) {
    const bool counts = within(circuit.klast, 0, max_branches) && within(circuit.ilast, 0, max_values) &&
                        within(circuit.quadruplet_count, 0, max_quadruplets) &&
                        within(circuit.mode_count, 0, max_natural_modes) &&
                        within(static_cast<int>(circuit.kind), 0, static_cast<int>(CircuitKind::microwave));
    if (!counts) return false;

    Cells cells;
    Slots slots;
    int before = 0;
    int linked = 0;
    for (int k = circuit.klast == 0 ? 0 : 1; k != 0; ++linked) {
        if (!canonical(circuit.INDX1(k))) return false;
        const Branch branch = unpackBranch(circuit, k);
        const bool in_order = branch.kp == before && (branch.kn == 0 ? k == circuit.klast : branch.kn > k);
        if (!in_order || branch.kn > circuit.klast || (k == 1 && branch.id != BranchId::resistor)) return false;
        const bool taken = branch_kinds[branch.id].structure == Structure::quadruplet
                               ? take_quadruplet(circuit, branch, slots)
                               : take_cells(circuit, branch, cells);
        if (!taken) return false;
        before = k;
        k = branch.kn;
    }
    return std::ranges::count_if(circuit.INDX1, [](std::int32_t word) { return word != 0; }) == linked;
}

Table<std::int32_t, max_branches> marked_words(const Circuit& circuit) {
    Table words = circuit.INDX1;
    if (words(max_branches) == 0) words(max_branches) = circuit.preferred;
    return words;
}

void take_marked_words(const Table<std::int32_t, max_branches>& words, Circuit& circuit) {
    constexpr int finest_series = 4;
    circuit.INDX1 = words;
    std::int32_t& top = circuit.INDX1(max_branches);
    const bool marked = within(top, 1, finest_series);
    circuit.preferred = marked ? top : 0;
    if (marked) top = 0;
}

bool sound_design(const PassiveFilter& filter) {
    return sound_spec(filter.spec) && sound_spec(filter.background.request) && counts_fit(filter.transfer);
}

bool all_finite(const PassiveFilter& filter) {
    return is_finite(filter.circuit) && all_finite(filter.mod, filter.spec, filter.transfer, filter.background);
}

namespace {

// Whether the word is what its fields are packed into: not negative, the topmost field within its range.
bool canonical(std::int32_t word) {
    return word > 0 && branch_of_word(word).kn <= max_branches && branch_kinds.has(branch_of_word(word).id);
}

bool take_cells(const Circuit& circuit, const Branch& branch, Cells& taken) {
    const auto count = static_cast<int>(branch_kinds[branch.id].cells.size());
    if (branch.in != count - 1 || branch.i1 < 1 || branch.i1 + branch.in > circuit.ilast) return false;
    for (int i = branch.i1; i <= branch.i1 + branch.in; ++i) {
        if (taken.test(static_cast<std::size_t>(i))) return false;
        taken.set(static_cast<std::size_t>(i));
    }
    return true;
}

bool take_quadruplet(const Circuit& circuit, const Branch& branch, Slots& taken) {
    if (!within(branch.i1, 1, circuit.quadruplet_count) || taken.test(static_cast<std::size_t>(branch.i1))) {
        return false;
    }
    taken.set(static_cast<std::size_t>(branch.i1));
    return true;
}

}  // namespace

}  // namespace kavrel
