// Designs whose e(s) or f(s) is given by its factors.
//
// The factors are in FilterSpec as pairs (b, c0) of s^2 + b s + c0 and, for odd degree, a last single c of s + c, s
// in units of the pass band edge. For high-pass they have been inverted, as normaliseEdges leaves them; under a sampled
// medium the routines here put s -> tanh(theta s)/tan(theta), theta = pi fu/fs, in place of each zero.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/x_plane.h"

namespace kavrel {

enum class FunctionGiven { none, denominator, numerator };

// Which of the two a functional pass band gives: f when it comes with a multiplier, e otherwise.
[[nodiscard]] FunctionGiven functionGiven(const FilterSpec& spec);

enum class FunctionalFault { none, inconsistent, parts_missing };

struct [[nodiscard]] FunctionalVerdict {
    FunctionalFault fault = FunctionalFault::none;
    SolveVerdict solve{};  // of parts_missing, where an extraction of roots failed
};

// e given: eFactors by c = (c0 - a)/b, d = (1 - c0)/b, ES, eEven and eOdd; the level is the caller's to set.
// Faults: inconsistent for a degree other than spec.degree or a zero that is not in the left half plane; parts_missing.
FunctionalVerdict denominatorFromFactors(const FilterSpec& spec, XPlane& x);

// f given: FS, fEven and fOdd at the level of functionMultiplier times the product of the factors. A factor s^2 + c0
// without linear term has the root (a - c0)/(1 - c0) in both parts. Reflection zeros of a high-pass at infinity, that
// is a lower degree, are factors s of the inverted variable. Faults: inconsistent for any other degree than
// spec.degree; parts_missing.
FunctionalVerdict numeratorFromFactors(const FilterSpec& spec, XPlane& x, ExtractionWorkspace& ws);

// ... and then the level of the characteristic function, needs QS: the product of the factors is divided by s^nz0 times
// the product of (s^2 + wz^2). For low-pass and high-pass also termRatioLimit, (sqrt t + sqrt(1 + t))^2 with t = |F/Q|
// at x = 0. `zeros_inverted`: the zeros of a high-pass were not known yet when functionMultiplier was inverted.
void levelOfNumerator(const FilterSpec& spec, XPlane& x, bool zeros_inverted);

}  // namespace kavrel
