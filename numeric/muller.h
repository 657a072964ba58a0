// One step of Muller's iteration: the nearer root of the parabola through three points.
//
// Source: D. E. Muller, "A method for solving algebraic equations using an automatic computer", MTAC 10 (1956).
#pragma once

#include "numeric/complex.h"
#include "shell/table.h"

namespace kavrel {

template <class Real>
struct MullerPoints {
    Table<Complex<Real>, 4> x;  // (1) to (3): the points, the best one last; (4): where the step leads
    Table<Complex<Real>, 4> f;  // values there, on any common scale
    Complex<Real> q12;          // divided difference of the two older points, handed from step to step
};

// Fills x(4) from the other three and returns |x(4) - x(3)|; 0 when the parabola is a constant. `iteration` counts from
// 1; later ones take over the divided difference of the one before. A step much longer than |x(3)| is shortened by
// powers of ten.
template <class Real>
Real mullerStep(MullerPoints<Real>& points, int iteration);

}  // namespace kavrel
