// Removal of a complex quadruplet of transmission zeros, +-s0 and their conjugates, as one two-port of degree 4.
//
// On an admittance Y, with t = s^2 and q = 1 + p t + r t^2 vanishing at s0^2, the section has the chain matrix
//   1/q [[A, B], [C, D]],  A and D even of degree 4, B = s (b1 + b3 t), C = s (c1 + c3 t),  A D - B C = q^2,
// and leaves Y2 = (A Y - C)/(D - B Y), both parts of which vanish doubly at s0: that is linear in the coefficients,
// value and derivative of D = B Y and of A Y = C at s0. At one of its extreme points the section is balanced:
//
//   side far (s = 0)       A(0) = D(0) = 1:   shunt C (d4 - r)/b3, compound branch, shunt C (a4 - r)/b3
//   side near (infinity)   a4 = d4 = r:       shunt L b1/(d0 - 1), compound branch, shunt L b1/(a0 - 1)
//
// One of the two shunt elements is not positive; it merges with a neighbour of its kind. With w^2 = b1/b3, k0 = 1/b1,
// kinf = r/b3, rho = (1 - p w^2 + r w^4)/b1 the compound branch is -y12 = k0/s + kinf s - rho s/(s^2 + w^2), its
// residues at j w divided by n = -D(j w)/(b1 rho) on the near side:
//
//   rho < k0               bridged_l_trap (equal: bridged_l)
//   rho < kinf w^2         bridged_c_trap (equal: bridged_c)
//   rho < k0 + kinf w^2    twin_t_trap (equal: twin_t), above it the former with a negative inner C
//
// Source: S. Darlington, "Synthesis of reactance 4-poles" (1939), sections of type D.
#pragma once

#include "circuit/branch_id.h"
#include "numeric/complex.h"
#include "synthesis/removals.h"

namespace kavrel {

// The words z, i and e of the script.
enum class QuadrupletSide {
    zero = -1,     // shunt inductors beside it
    infinity = 1,  // shunt capacitors beside it
    either = 0,    // capacitors, unless the near one is negative and the near inductor is not
};

struct QuadrupletValues {
    BranchId id{};             // of the compound branch
    int count = 0;             // of its values
    Table<WideReal, 7> value;  // normalised, in cell order, the near port first
    bool at_zero = false;      // the near and far elements belong to the pole at s = 0: shunt L; else shunt C
    WideReal near_shunt = 0;   // their values; 0: none
    WideReal far_shunt = 0;
};

// The same section seen from its other port.
[[nodiscard]] QuadrupletValues turned_around(QuadrupletValues section);

// Turns the compound branch into its dual network, as the removal from an impedance asks for: the near and far elements
// lie in series then. False for the twin T, whose dual is no branch.
[[nodiscard]] bool turn_to_dual(QuadrupletValues& section);

// Values of the section alone, the function left as it is. at_zero as in QuadrupletValues. False when it has none.
[[nodiscard]] bool quadruplet_values(const WorkingFunction& f, const Complex<WideReal>& x0, bool at_zero,
                                     QuadrupletValues& section);

// Removes the section from an admittance. x0: the zero, imaginary part not 0.
[[nodiscard]] RemovalFault quadruplet(WorkingFunction& f, const Complex<WideReal>& x0, QuadrupletSide side,
                                      QuadrupletValues& section);

}  // namespace kavrel
