// Removal of the elements of a lossless ladder from its remainder: poles at s = 0 and infinity, finite poles, and
// partial removals that make wanted zeros (zero shifting).
//
// Every routine takes the immittance as it is: on an impedance it removes series branches, on an admittance shunt
// branches. With I/s = G(x) the residues are
//
//   at infinity    I = v s + ...                          G - v
//   at s = 0       I = k/s + ...                          G - k (1 - x)/(x - a), v = 1/k
//   at x = p       I = s/(e1 (s^2 + w^2)) + ...           G - h (1 - x)/(x - p),
//                  u = (1 - a) h, e1 = (1 - p)/u, e2 = u/(a - p), e1 e2 w^2 = 1:
//                  on an impedance e1 is the C and e2 the L of a parallel circuit, on an admittance e1 is the L and e2
//                  the C of a series circuit.
//
// A refused removal leaves the function alone. Source: Cauer's and Guillemin's zero shifting, in the transformed
// variable.
#pragma once

#include "synthesis/working_function.h"

namespace kavrel {

enum class RemovalFault {
    none,
    extreme_impossible,    // no pole at the extreme point
    extreme_zero_missing,  // the zero to be created did not come out
    pole_missing,          // a finite pole is not there
    value_missing,         // mode 3 without a value
    zero_missing,          // the zero created by a finite pole did not come out
    roots_missing,         // the remainder has roots off the axis
    double_roots_missing,  // the same after double zero shifting
    unit_element,          // Richards' step failed
    quadruplet,            // zeros of a complex quadruplet did not come out
};

enum class RemovalMode {
    complete = 1,
    shifting = 2,
    given = 3,
    made = 4,  // shifting from an extreme pole that is not there: a negative element puts it there
};
enum class ExtremeSide { zero = 0, infinity = 1 };

// Removal at an extreme point: complete; as far as `point` becomes a zero of I, from a pole that is there or is made;
// or with the given value. `value` is the element of the branch: v above at both sides. evalOnly leaves the function as
// it is.
[[nodiscard]] RemovalFault extreme(WorkingFunction& f, RemovalMode mode, ExtremeSide side, WideReal point,
                                   WideReal& value, bool evalOnly = false);

// Removal of the finite pole at `pole`: complete; as far as `zero` becomes a zero of I; or with the given e2 in value2
// (0: not specified). value1 and value2 are e1 and e2.
[[nodiscard]] RemovalFault finite(WorkingFunction& f, RemovalMode mode, WideReal pole, WideReal zero, WideReal& value1,
                                  WideReal& value2);

// A pole that takes part in double zero shifting.
struct ShiftPole {
    enum class Place { zero, infinity, finite } place = Place::finite;
    WideReal x = 0;  // of a finite pole
};

// What one of the two poles lost.
struct ShiftValues {
    WideReal value1 = 0;   // finite: e1; otherwise unused
    WideReal value2 = 0;   // finite: e2; otherwise v
    bool removed = false;  // false: the pole was not touched
};

// Partial removal of two poles so that two zeros are created at the same time: the two residues solve
//   r1 i1(z) + r2 i2(z) = G(z) at both zeros, i = 1, (1 - x)/(x - a) or (1 - x)/(x - p).
// Zeros closer than 1e-10 are one: the first pole alone creates it. A zero within 1e-10 of one of the poles leaves that
// pole whole: the other one creates the other zero.
[[nodiscard]] RemovalFault doubleShift(WorkingFunction& f, const ShiftPole& x1, const ShiftPole& x2, WideReal zero1,
                                       WideReal zero2, ShiftValues& out1, ShiftValues& out2);

// The same from both extreme points: values of 1/k at s = 0 and of v at infinity. evalOnly finds these alone, whether
// or not the remainder has real roots.
[[nodiscard]] RemovalFault doubleSame(WorkingFunction& f, WideReal zero1, WideReal zero2, WideReal& at_zero,
                                      WideReal& at_infinity, bool evalOnly = false);

// Richards' extraction of a unit element, whose zero of transmission lies at x = u, s0^2 = (u - a)/(1 - u) > 0. `value`
// is I(s0): the characteristic impedance on an impedance, its inverse on an admittance.
[[nodiscard]] RemovalFault unitElement(WorkingFunction& f, WideReal u, WideReal& value);

}  // namespace kavrel
