// Roots of A(x) + B(x) = 0 where all roots are real: those of A, of B and of the sum. The partial fractions and the
// immittances of ladder synthesis are of this kind.
#pragma once

#include "numeric/root_set.h"
#include "numeric/solve_verdict.h"

namespace kavrel {

inline constexpr int max_real_degree = 25;

// multiplier times the product of (x - root).
template <class Real>
struct RealRootSetOf {
    Real multiplier{};
    int count = 0;                      // 0 to 25
    Table<Real, max_real_degree> root;  // [i] 1 <= i <= count

    void append(Real r) { root(++count) = r; }
};
using RealRootSet = RealRootSetOf<double>;
using WideRealRootSet = RealRootSetOf<long double>;

template <class Work>
struct RealSumWorkspace {
    RealRootSetOf<Work> A;  // the products, less common roots, ascending
    RealRootSetOf<Work> B;
    RealRootSetOf<Work> common;  // their common roots
    RealRootSetOf<Work> R;       // roots found of A + B; multiplier: its leading coefficient
    int degree = 0;              // of A + B
    Work tol{};                  // 10^(1 - precisionDigits)
};

static_assert(std::is_trivially_copyable_v<RealSumWorkspace<double>>);

// Roots of A + B, ascending, with the leading coefficient of the sum as multiplier; R may be one of A and B. Leading
// terms of equal degree that cancel lower the degree by one, to -(kA sum of A's roots + kB sum of B's roots). An A + B
// that vanishes altogether gives count 0 and multiplier 0; a multiplier 0 leaves the other product alone.
// Faults: real_degree_too_high above 25 with the degree, real_no_convergence with the number of the root, as happens
// when the sum has complex roots; R is as before then. Source: Newton's iteration on the value with the found roots
// divided out.
template <class Real, class Work>
SolveVerdict solveRealSum(const RealRootSetOf<Real>& A, const RealRootSetOf<Real>& B, RealRootSetOf<Real>& R,
                          RealSumWorkspace<Work>& ws, const SolveOptions& options = {});

// Makes `point` a root of A + B by scaling A's multiplier with -B(point)/A(point), then finds the other roots: R is the
// sum divided by (x - point). Fault created_root_missing when the root does not come out, or A or B vanishes there.
template <class Real, class Work>
SolveVerdict createRealRoot(RealRootSetOf<Real>& A, const RealRootSetOf<Real>& B, Real point, RealRootSetOf<Real>& R,
                            RealSumWorkspace<Work>& ws, int rootMatchDigits = root_match_digits,
                            const SolveOptions& options = {});

// Value of the product at x.
template <class Real>
[[nodiscard]] Real evalRealRoots(const RealRootSetOf<Real>& set, Real x);

}  // namespace kavrel
