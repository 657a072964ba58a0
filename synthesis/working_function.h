// The remainder of ladder synthesis and the arithmetic that all removals share.
//
// Everything runs in the variable x = (s^2 + a)/(s^2 + 1) of the approximation, s^2 = (x - a)/(1 - x): s = 0 is x = a
// (`x0`), infinity is x = 1, the upper band edge s = j is x = infinity. The remainder is a reactance
//
//   I(s) = s F(x)  when Fn = 1,    I(s) = F(x)/s  when Fn = 0,
//   F(x) = Kn product (x - ANUMR(i)) / (Kd product (x - DENOMR(j))),
//
// and Fd = 1 - Fn. Any reactance has both forms; s^2 = (x - a)/(1 - x) leads from one to the other. A root at
// x = infinity (s = j) is one that the shorter list lacks. Roots at a and 1 are exact copies of these numbers, so that
// they cancel exactly.
//
// Roots and multipliers are long numbers: the rounding of one removal is magnified by those that follow it.
#pragma once

#include "numeric/complex.h"
#include "numeric/long_real.h"
#include "shell/table.h"

namespace kavrel {

using WideReal = LongReal;

inline constexpr int immittance_root_limit = 30;  // 25 of a polynomial, and what a step appends before it cancels

// Real roots of one of the two lists; the multiplier is Kn or Kd.
struct ReactanceRoots {
    WideReal multiplier = 0;
    int count = 0;
    Table<WideReal, immittance_root_limit> root;  // [i] 1 <= i <= count

    void append(WideReal r) { root(++count) = r; }
    void erase(int i);
};

struct WorkingFunction {
    ReactanceRoots ANUMR;   // multiplier Kn
    ReactanceRoots DENOMR;  // multiplier Kd
    int Fn = 0;             // 1: I = s F, 0: I = F/s
    int Fd = 1;             // 1 - Fn
    WideReal x0 = 0;        // a: the point of s = 0
    int digits = 10;        // of root matching

    // Nothing is left: I = 0 or infinite.
    [[nodiscard]] bool vanished() const { return ANUMR.multiplier.sign() == 0 || DENOMR.multiplier.sign() == 0; }
};

// How far a root may be from a value that it is taken for: max(1e-8, 10^-digits |value|).
[[nodiscard]] WideReal reach_of(const WideReal& value, int digits);

// The number of the root nearest to value within reach_of(value, digits): in a wide band many lie there. 0: none.
[[nodiscard]] int nearest_root(const ReactanceRoots& roots, const WideReal& value, int digits);

// Deletes that root. False when there is none.
[[nodiscard]] bool removeRoot(ReactanceRoots& roots, WideReal value, int digits);

// Deletes a root that is `value` exactly. False when there is none.
[[nodiscard]] bool cancel_root(ReactanceRoots& roots, WideReal value);

// Replaces every root r by 1 - r, keeping the multiplier.
void complementRoots(ReactanceRoots& roots);

// One of the four immittance polynomials as numerator or denominator. False for a function that does not exist.
[[nodiscard]] bool copyFunction(const ReactanceRoots& polynomial, ReactanceRoots& roots);

// I -> 1/I.
void invert(WorkingFunction& f);

// The same reactance with Fn = 1 (F = I/s), or Fn = 0 (F = I s).
void hold_as_quotient(WorkingFunction& f);
void hold_as_product(WorkingFunction& f);

// F(x), and the value of one list.
[[nodiscard]] WideReal value_of(const WorkingFunction& f, WideReal x);
[[nodiscard]] WideReal value_of(const ReactanceRoots& roots, WideReal x);

// I/s at x.
[[nodiscard]] WideReal quotient_at(const WorkingFunction& f, WideReal x);

// Roots of A + B. Common roots are divided out first; so the removals cost no accuracy where a factor only passes
// through. False when a root of the sum is not real; `sum` is as before then.
[[nodiscard]] bool sumOfProducts(const ReactanceRoots& A, const ReactanceRoots& B, ReactanceRoots& sum);

// Divides both lists by the roots that they share exactly.
void cancel_common_roots(WorkingFunction& f);

// Whether I has a pole at s = 0, at infinity.
[[nodiscard]] bool has_pole_at_zero(const WorkingFunction& f);
[[nodiscard]] bool has_pole_at_infinity(const WorkingFunction& f);

// Number of poles of I, those at 0 and infinity included: the elements that are left at least.
[[nodiscard]] int reactance_degree(const WorkingFunction& f);

// n/d of complex numbers of any real type. Nothing is guarded: overflow and a division by 0 show in the result.
template <class Real>
[[nodiscard]] Complex<Real> quotient(const Complex<Real>& n, const Complex<Real>& d) {
    const Real size = d.re * d.re + d.im * d.im;
    const Complex<Real> product = n * conjugate(d);
    return {product.re / size, product.im / size};
}

}  // namespace kavrel
