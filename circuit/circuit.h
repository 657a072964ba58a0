// The store of a passive two-port: a ladder of numbered branches between two terminations.
//
// Branches form a doubly linked chain over 100 slots, in increasing number, from branch 1, the load, to `klast`, where
// the source is. Even branches lie in series, odd ones across the rails; a branch that is a two-port of its own
// (no slot element) may have any number, and keeps a distance of at least 2 from both neighbours,
// so that parity can be kept on either side of it. An equalizer alone may come right behind a resistor. Numbers may
// have gaps.
//
// Values are in ohm, henry and farad. In a microwave circuit cells of inductors hold the impedance of short-circuited
// stubs, those of capacitors the admittance of open stubs, those of unit elements an impedance.
//
// The record is one block: a snapshot is a copy of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

#include "circuit/branch_id.h"
#include "shell/table.h"

namespace kavrel {

inline constexpr int max_values = 150;           // cells of VALUE
inline constexpr int max_branches = 100;         // slots of INDX1
inline constexpr int last_insert_slot = 98;      // no edit makes a branch beyond it
inline constexpr int max_values_of_branch = 11;  // what the field `in` of a branch word can hold
inline constexpr int max_quadruplets = 8;
inline constexpr int max_natural_modes = 50;

enum class CircuitKind { lumped = 0, wave_digital = 1, microwave = 2 };

// The fields of a branch word.
struct Branch {
    BranchId id{};  // 0 to 50: row of the table of branch kinds
    int i1 = 0;     // 0 to 150: first VALUE cell; of a coupled quadruplet the slot of its table
    int in = 0;     // 0 to 10: number of values minus 1
    int kp = 0;     // 0 to 100: previous branch, 0 at the first
    int kn = 0;     // 0 to 100: next branch, 0 at the last

    friend bool operator==(const Branch&, const Branch&) = default;
};

// A quantity between the nodes i and j of a four-node network.
template <class T>
struct NodePairs {
    std::array<T, 16> cells{};

    [[nodiscard]] constexpr T& operator()(int i, int j) { return cells[place(i, j)]; }
    [[nodiscard]] constexpr const T& operator()(int i, int j) const { return cells[place(i, j)]; }

    friend constexpr bool operator==(const NodePairs&, const NodePairs&) = default;

private:
    // By columns, the smaller index first: both orders of a pair are one cell.
    static constexpr std::size_t place(int i, int j) {
        return static_cast<std::size_t>(i < j ? (i - 1) + 4 * (j - 1) : (j - 1) + 4 * (i - 1));
    }
};

// A coupled quadruplet: nodes 1 (towards the load) and 4 are its ports, 2 and 3 the inner nodes. Elements are held as
// they add up in a node matrix, 0 where there is none.
struct Quadruplet {
    NodePairs<double> XK;   // (i, j) inverse inductance of the coupling between i and j, where M(i, j) is 1
    NodePairs<double> XC;   // (i, j) capacitance of the coupling, where M(i, j) is not 1
    Table<double, 4> YK;    // [i] i = 2, 3: inverse of the inductance from node i to ground
    Table<double, 4> YC;    // [i] i = 2, 3: capacitance from node i to ground
    Table<double, 2> FRES;  // frequencies of the transmission zeros
    NodePairs<int> M;       // (i, j) 1: the coupling is inductive, otherwise capacitive

    friend bool operator==(const Quadruplet&, const Quadruplet&) = default;
};

struct Circuit {
    // The store.
    Table<double, max_values> VALUE;          // [i] 1 <= i <= ilast: values of the elements
    Table<std::int32_t, max_branches> INDX1;  // [k] packed branch word, 0: no branch
    int klast = 0;                            // largest branch number in use, 0: empty
    int ilast = 0;                            // VALUE cells in use
    Table<Quadruplet, max_quadruplets> QUADRUPLETS;
    int quadruplet_count = 0;  // slots of QUADRUPLETS in use

    // How values are to be read, and where they come from. Frequencies are in Hz.
    CircuitKind kind = CircuitKind::lumped;
    double R1 = 0;  // load: value of branch 1
    double R2 = 0;  // source: value of the last branch
    double termination_ratio = 1;
    double fa = 0;     // lower edge of the band
    double fb = 0;     // upper edge of the band
    double fnorm = 0;  // normalisation
    double fs = 0;     // twice the quarter-wave frequency of a microwave circuit

    // Natural modes, conjugates repeated, as s/(2 pi fnorm).
    int mode_count = 0;
    Table<double, max_natural_modes> MODE_RE;
    Table<double, max_natural_modes> MODE_IM;

    int preferred = 0;  // series that all values were rounded to, 1 the coarsest to 4, 0 none: workshop/preferred.h

    friend bool operator==(const Circuit&, const Circuit&) = default;
};

static_assert(std::is_trivially_copyable_v<Circuit>);

// Of values (and their inverse), frequencies, modes; the ratio of the terminations may be infinite, without a load.
[[nodiscard]] bool is_finite(const Circuit& circuit);

enum class CircuitVerdict {
    done,
    storage_full,    // values or slots are used up
    out_of_range,    // a branch number that no slot has
    not_a_resistor,  // branch 1 must be one
    no_branch,       // the slot is empty, or its branch must stay
    unfit_kind,      // a kind of branch that this routine does not insert
};

struct CircuitMessage {
    CircuitVerdict verdict;
    std::string_view text;
};

inline constexpr std::array<CircuitMessage, 6> circuit_messages = {{
    {CircuitVerdict::done, ""},
    {CircuitVerdict::storage_full, "Storage is full"},
    {CircuitVerdict::out_of_range, "Branch number is out of range"},
    {CircuitVerdict::not_a_resistor, "First branch must be a resistor"},
    {CircuitVerdict::no_branch, "Incorrect or nonexistent branch"},
    {CircuitVerdict::unfit_kind, "Incorrect or inappropriate branch(es)"},
}};

// What a command says instead of the bare "Storage is full" when it has to stop in the middle of its work.
inline constexpr std::string_view storage_full_operations = "Storage is full, operations discontinued";

[[nodiscard]] constexpr std::string_view message_of(CircuitVerdict verdict) {
    for (const CircuitMessage& row : circuit_messages) {
        if (row.verdict == verdict) return row.text;
    }
    return {};
}

// The word and its fields: word = id + 51 (i1 + 151 (in + 11 (kp + 101 kn))). 1 <= k <= 100.
[[nodiscard]] constexpr std::int32_t branch_word(const Branch& branch) {
    return static_cast<int>(branch.id) + 51 * (branch.i1 + 151 * (branch.in + 11 * (branch.kp + 101 * branch.kn)));
}
[[nodiscard]] constexpr Branch branch_of_word(std::int32_t word) {
    Branch branch;
    branch.id = BranchId{word % 51};
    word /= 51;
    branch.i1 = word % 151;
    word /= 151;
    branch.in = word % 11;
    word /= 11;
    branch.kp = word % 101;
    branch.kn = word / 101;
    return branch;
}
[[nodiscard]] inline Branch unpackBranch(const Circuit& circuit, int k) { return branch_of_word(circuit.INDX1(k)); }
inline void packBranch(Circuit& circuit, int k, const Branch& branch) { circuit.INDX1(k) = branch_word(branch); }

// True only for a k from 1 to 100 whose slot holds a branch.
[[nodiscard]] bool branchExists(const Circuit& circuit, int k);

// The values of a branch; none of a coupled quadruplet, whose elements are in its table.
[[nodiscard]] std::span<const double> branch_values(const Circuit& circuit, const Branch& branch);
[[nodiscard]] std::span<double> branch_values(Circuit& circuit, const Branch& branch);

// Empties the store: no branches, no values, no quadruplets. What was said of the design stays.
void clear_circuit(Circuit& circuit);

// Inserts a branch of any kind but the quadruplet with its values (1 to 11) in cell order. Beyond `klast` it is
// appended and k keeps its parity; else it takes slot k, the branches at and above moving up as far as their parity and
// the distances ask; k becomes the slot that it really got. Into an empty circuit only branch 1 goes, a resistor. A
// failure changes nothing.
[[nodiscard]] CircuitVerdict insert_values(Circuit& circuit, int& k, BranchId id, std::span<const double> values);

// The same for simple kinds, of one value (value2 is unused) or of two.
[[nodiscard]] CircuitVerdict insertBranch(Circuit& circuit, int& k, double value1, double value2, BranchId id);

// The same for lcc (X a capacitor) and lcl (X an inductor). For a microwave circuit all three are given as impedances.
[[nodiscard]] CircuitVerdict insertThreeElement(Circuit& circuit, int& k, double L, double C, double X, BranchId id,
                                                CircuitKind kind);

// Inserts an equalizer as branch 2, right behind the load R = R1 of the circuit: the dual arm is
// L' = C R^2, R2 = R^2/R1, C' = L/R^2.
[[nodiscard]] CircuitVerdict insertEqualizer(Circuit& circuit, double L, double R1, double C, BranchId id);

// Inserts a coupled quadruplet into the next free slot of its table. k as above.
[[nodiscard]] CircuitVerdict insert_quadruplet(Circuit& circuit, int& k, const Quadruplet& quadruplet);

// Takes a branch out of the chain; k becomes the number of the next one, 0 at the end. Its values stay behind until the
// next compaction. Branch 1 goes last.
[[nodiscard]] CircuitVerdict deleteBranch(Circuit& circuit, int& k);

// Moves all branches at or above `from` up by `by` slots; nothing is to be done when by < 1 or klast < from. Refused
// when the last branch has no slot to go to.
[[nodiscard]] CircuitVerdict shiftBranches(Circuit& circuit, int from, int by);

// Packs VALUE in the order of the chain, so that the cells of deleted branches are free again. A quadruplet has no
// cells there, and keeps its slot.
void compactValues(Circuit& circuit);

}  // namespace kavrel
