// Polynomials held by their roots, the usual form of a polynomial in the whole system, and the two forms made from it.
//
// Value at x: multiplier times the product of (x - root). The polynomials are real: complex roots come in conjugate
// pairs next to each other, the one with positive imaginary part first; an exact 0.0 marks a real root.
// Coefficient arrays begin with the highest power.
//
// A design keeps its sets in the wide type between its extractions, each of which magnifies the rounding of the one
// before. Doubles serve the approach to a root, and what is printed or handed on.
#pragma once

#include <type_traits>

#include "numeric/complex.h"
#include "shell/table.h"

namespace kavrel {

inline constexpr int max_degree = 50;                    // of a RootSet
inline constexpr int max_coefficients = max_degree + 1;  // of a Polynomial
inline constexpr int max_pairs = 25;                     // second-order factors, and all that is counted by pairs

template <class Real>
struct RootSetOf {
    Real multiplier = 0;         // leading coefficient k
    int count = 0;               // degree n, 0 to 50
    Table<Real, max_degree> re;  // [i] 1 <= i <= count: real part of root i
    Table<Real, max_degree> im;  // [i] imaginary part; exact 0.0: the root is real

    [[nodiscard]] Complex<Real> root(int i) const { return {re(i), im(i)}; }
    void set_root(int i, Complex<Real> z) { re(i) = z.re, im(i) = z.im; }
    void append(Complex<Real> z) { ++count, set_root(count, z); }
};
using RootSet = RootSetOf<double>;
using WideRootSet = RootSetOf<long double>;

struct Polynomial {
    int degree = 0;
    Table<Wide, max_coefficients> re;  // [i] 1 <= i <= degree + 1: real part of the coefficient of x^(degree + 1 - i)
    Table<Wide, max_coefficients> im;  // [i] imaginary part
};

// Product of second-order factors x^2 + a1 x + a0. A last first-order factor, for odd degree, has a1 = -root, a0 = 0.
struct QuadraticFactor {
    Wide multiplier{};  // of the whole product
    int count = 0;      // factors, the first-order one included
    Table<Wide, max_pairs> a1;
    Table<Wide, max_pairs> a0;
};

static_assert(std::is_trivially_copyable_v<RootSet> && std::is_trivially_copyable_v<WideRootSet>);
static_assert(std::is_trivially_copyable_v<Polynomial> && std::is_trivially_copyable_v<QuadraticFactor>);

// Copies multiplier, count and roots; between widths the numbers are rounded once.
template <class From, class To>
void copyRootSet(const RootSetOf<From>& from, RootSetOf<To>& to) {
    to.multiplier = static_cast<To>(from.multiplier);
    to.count = from.count;
    for (int i = 1; i <= from.count && i <= max_degree; ++i) {
        to.re(i) = static_cast<To>(from.re(i));
        to.im(i) = static_cast<To>(from.im(i));
    }
}

// Coefficients of multiplier times the product of (x - root), by c_k <- c_k - root c_(k-1), k downward, root by root.
[[nodiscard]] Polynomial expandRoots(const WideRootSet& set);

// Second-order factors of the set, in the order that the two sorts of root_order.h leave: by the magnitude of the real
// part, descending, then conjugate pairs by magnitude, ascending, then the real roots, ascending and taken two by
// two. The set itself is left alone. An |a1| up to 1e-10 is written as exact 0. The multiplier is copied.
[[nodiscard]] QuadraticFactor factorsOf(const WideRootSet& set);

}  // namespace kavrel
