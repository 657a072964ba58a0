// All data of a design in the variable x = (s^2 + a)/(s^2 + 1), s = j at the upper band edge. Sets and factors are held
// in the wide type between the steps: each extraction magnifies the rounding of the one before, and ladder synthesis
// lives on these roots.
#pragma once

#include <type_traits>

#include "numeric/pseudo_polynomial.h"
#include "numeric/root_set.h"
#include "shell/table.h"

namespace kavrel {

// A low-pass with an equal minima stopband of which this filter is an image: x -> (scale x + shift)/(1 + shift), then,
// for a band-pass, to both sides of its centre.
struct LowPassPrototype {
    int degree = 0;  // 0: none
    bool flat = false;
    long double edge = 0;  // of the stopband, pass band edge 1; 0: all zeros at infinity
    long double scale = 1;
    long double shift = 0;
};

struct XPlane {
    using Real = long double;

    // The variable.
    Real a = 0;      // lowerEdgeRatio: (lower band edge / upper band edge)^2, 0 for low-pass and high-pass
    Real xReal = 0;  // x of Freal
    Real ueX = 0;    // x of the unit-element factor as defined for low-pass and band-pass (high-pass uses 1 - ueX in Q)
    Real normFrequency = 0;  // Hz, that s = j corresponds to: the upper band edge
    Real warp = 0;           // sampled media: tan(pi normFrequency/sampleFrequency)/normFrequency; 0 for lumped
    Real eps2 = 0;           // 10^(bandEdgeLoss/10) - 1
    Real lower_stop = 0;     // stop edges as normalised, warped w of s = jw; low-pass and high-pass have the upper
    Real upper_stop = 0;     // one alone (above 1); 0 none

    LowPassPrototype prototype;

    // Finite transmission zeros in x, conjugates not repeated.
    int zeroCount = 0;
    Table<Real, 26> ARR;
    Table<Real, 26> ARI;

    // Loss = 10 log10 E/Q, E = F + Q.
    WideRootSet QS;
    WideRootSet FS;
    WideRootSet ES;
    WidePseudoPolynomial eFactors;
    WidePseudoPolynomial fFactors;
    // Until E exists the square-root factors of F; afterwards the even and odd part of f.
    WideRootSet fEven;
    WideRootSet fOdd;
    WideRootSet eEven;
    WideRootSet eOdd;

    Table<int, max_degree> factor_sign;  // [i] sign of factor i of f: +1, -1, 0 not set
    Table<int, max_degree> LARR;         // [i] sign of each pole for the allpass form, 0 not set

    // Immittance polynomials: even and odd parts of e + f and e - f. Where a part of f is 0, its sum is the part of e
    // and is the difference as well: multiplier 0 of ed or od then means "as the sum". Decided by the multiplier
    // of fEven for ed, of fOdd for od: where that is not 0, a difference of multiplier 0 is one that vanishes. After a
    // single termination es and os are the parts of e, and ed and od do not exist.
    WideRootSet es;
    WideRootSet os;
    WideRootSet ed;
    WideRootSet od;

    Real termRatioLimit = 1;        // largest ratio of terminations that the function can serve
    Real requested_ratio = 1;       // of the terminations as asked for
    Real q1 = 0;                    // requested Q
    Real qMin = 0;                  // attainable Q
    int passes = -2;                // of the scaling loop
    bool equal_minima_due = false;  // an equal minima iteration follows E
    bool matched = false;           // the loss at s = 0 is made for the terminations: they ask for no further change
};

static_assert(std::is_trivially_copyable_v<XPlane>);

}  // namespace kavrel
