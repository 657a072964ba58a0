// Roots of equal ripple functions. With all m_i in the right half plane the product of (m_i + j eta) turns steadily as
// eta grows; the sum A(y) + A(-y) of A(y) = prod (y + m_i) vanishes at y = j eta where the angle
//
//   theta(eta) = sum weight_i arg(m_i + j eta)
//
// is an odd multiple of pi/2, the difference where it is an even one. Finding them on the imaginary axis, where they
// are known to lie and to be simple, costs no digits with the degree and cannot fail.
#pragma once

#include "approximation/x_plane.h"
#include "numeric/complex.h"
#include "shell/table.h"

namespace kavrel {

// A complex m counts for its conjugate as well. A term with negative weight takes its angle away.
struct AngleSum {
    using Real = XPlane::Real;
    struct Term {
        Complex<Real> m;
        int weight = 0;
    };
    int count = 0;
    Table<Term, max_degree> term;

    void append(Complex<Real> m, int weight) {
        if (weight != 0) term(++count) = {m, weight};
    }
};

// The eta > above with theta(eta) = half_turns pi/2, 0 < half_turns < total, where total pi/2 is the angle at infinity
// and theta(above) is below the target. A start, where one is known, saves the search. Relative error some ulp of the
// wide type.
[[nodiscard]] XPlane::Real root_of_angle(const AngleSum& angles, int half_turns, int total, XPlane::Real above,
                                         XPlane::Real start = 0);

}  // namespace kavrel
