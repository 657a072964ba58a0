// Roots of A(x) + B(x) = 0 where all roots are real: those of A, of B and of the sum. The partial fractions and the
// immittances of ladder synthesis are of this kind.
#pragma once

#include "numeric/root_set.h"
#include "numeric/solve_verdict.h"

namespace kavrel {

inline constexpr int max_real_degree = 25;

// multiplier times the product of (x - root).
struct RealRootSet {
    Wide multiplier{};
    int count = 0;                      // 0 to 25
    Table<Wide, max_real_degree> root;  // [i] 1 <= i <= count

    void append(Wide r) { root(++count) = r; }
};

struct RealSumWorkspace {
    RealRootSet A;  // the products, less common roots, ascending
    RealRootSet B;
    RealRootSet common;  // their common roots
    RealRootSet R;       // roots found of A + B; multiplier: its leading coefficient
    int degree = 0;      // of A + B
    Wide tol{};          // 10^(1 - precisionDigits)
};

static_assert(std::is_trivially_copyable_v<RealSumWorkspace>);

// Roots of A + B, ascending, with the leading coefficient of the sum as multiplier; R may be one of A and B. Leading
// terms of equal degree that cancel lower the degree by one, to -(kA sum of A's roots + kB sum of B's roots). An A + B
// that vanishes altogether gives count 0 and multiplier 0; a multiplier 0 leaves the other product alone.
// Faults: real_degree_too_high above 25 with the degree, real_no_convergence with the number of the root, as happens
// when the sum has complex roots; R is as before then. Source: Newton's iteration on the value with the found roots
// divided out.
SolveVerdict solveRealSum(const RealRootSet& A, const RealRootSet& B, RealRootSet& R, RealSumWorkspace& ws,
                          const SolveOptions& options = {});

}  // namespace kavrel
