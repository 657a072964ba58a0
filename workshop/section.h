// Some branches of a ladder that others take the place of.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "circuit/circuit.h"

namespace kavrel {

inline constexpr std::string_view no_branch = "Branch does not exist";

// A branch that is written: one of a single immittance goes across the rails or into series, a two-port anywhere.
struct NewBranch {
    BranchId id{};
    bool shunt = false;
    std::array<double, 3> values = {};  // as the store holds them, as many as the kind has
};

// Takes the branches from `first` to `last` out and puts `branches` in their place, the one nearest to the load first.
// The number of the branch behind them, 0 where there is none; nothing where the store is full: the circuit is then
// neither the one nor the other. Branches behind move up as far as they must, and keep their parity.
[[nodiscard]] std::optional<int> replace_section(Circuit& circuit, int first, int last,
                                                 std::span<const NewBranch> branches);

// Whether a circuit that was edited is driven as before: without a source's resistor, by a voltage behind a series
// branch and by a current behind one across the rails.
[[nodiscard]] bool is_driven_as(const Circuit& former, const Circuit& edited);

// Of an inductor or a capacitor: the factor of s, or 1/s, in its admittance, or in its impedance. The same again gives
// the value back.
[[nodiscard]] constexpr double coefficient(BranchId id, bool of_admittance, double value) {
    return (id == BranchId::capacitor) == of_admittance ? value : 1 / value;
}

// Whether a branch is one of the two.
[[nodiscard]] constexpr bool is_plain(BranchId id) { return id == BranchId::inductor || id == BranchId::capacitor; }

// Whether the values of such branches beside each other in place of branch k add up, else their inverses do: those of
// inductors in series and of capacitors across the rails.
[[nodiscard]] constexpr bool values_add_up(BranchId id, int k) { return (id == BranchId::inductor) == (k % 2 == 0); }

// The other one of inductor and capacitor.
[[nodiscard]] constexpr BranchId opposite(BranchId id) {
    return id == BranchId::inductor ? BranchId::capacitor : BranchId::inductor;
}

}  // namespace kavrel
