// Real roots of a sum in long numbers, from those of the solver in rough ones.
#pragma once

#include <cmath>

#include "numeric/long_real.h"
#include "numeric/sum_roots.h"
#include "shell/table.h"

namespace kavrel {

// For the rough roots: the digits of their type, sums that cancel to less are taken as 0.
inline constexpr SolveOptions rough_options = {.precisionDigits = 19};

struct RefineLimits {
    int sweeps = 60;
    long double settled = 1e-120L;   // relative correction at which all roots are found
    long double enough = 1e-60L;     // ... with which they have to do after the last sweep
    long double smallest = 1e-20L;   // size below which a root counts as 0
    long double neighbours = 1e-5L;  // relative distance of two roots that are corrected together
};

// Brings `count` approximate real roots to full length. `value` gives S(x), `leading` its highest coefficient, so that
// S = leading product (x - root). With C the product over all other roots, a root moves by -S(x)/C(x). Two neighbours,
// such as the pairs of an immittance in a deep stop band, whose distance may be below 1e-60, are the roots of
//   (x - p)(x - r) + v (x - r)/(p - r) + w (x - p)/(r - p),  v = S(p)/C(p), w = S(r)/C(r).
// False when the corrections do not die out. Roots come back in the order given.
// Source: the simultaneous iteration of Weierstrass, Durand and Kerner, by blocks.
template <int N, class Value>
[[nodiscard]] bool refine_real_roots(Table<LongReal, N>& root, int count, const LongReal& leading, const Value& value,
                                     const RefineLimits& limits = {}) {
    Table<int, N> partner;
    long double worst = 0;
    bool off_axis = false;
    const auto cofactor = [&](const LongReal& x, int i, int j) {
        LongReal product = leading;
        for (int k = 1; k <= count; ++k) {
            if (k != i && k != j) product *= x - root(k);
        }
        return product;
    };
    const auto note = [&](const LongReal& delta, const LongReal& x) {
        if (delta.sign() == 0) return;
        const long double step = rounded(abs(delta)) / std::fmax(rounded(abs(x)), limits.smallest);
        if (!(step <= worst)) worst = step;
    };
    for (int sweep = 0; sweep < limits.sweeps; ++sweep) {
        worst = 0;
        off_axis = false;
        partner.fill(0);
        for (int i = 1; i <= count; ++i) {
            for (int j = i + 1; j <= count && partner(i) == 0; ++j) {
                if (partner(j) != 0 || !(abs(root(i) - root(j)) <= abs(root(i)) * limits.neighbours)) continue;
                partner(i) = j;
                partner(j) = i;
            }
        }
        for (int i = 1; i <= count; ++i) {
            const int j = partner(i);
            if (j == 0) {
                const LongReal s = value(root(i));
                if (s.sign() == 0) continue;
                const LongReal delta = s / cofactor(root(i), i, i);
                if (!is_finite(delta)) return false;
                root(i) -= delta;
                note(delta, root(i));
            } else if (i < j) {
                if (root(i) == root(j)) root(j) += root(j) * 1e-9L;
                const LongReal p = root(i);
                const LongReal r = root(j);
                const LongReal v = value(p) / (cofactor(p, i, j) * (p - r));
                const LongReal w = value(r) / (cofactor(r, i, j) * (r - p));
                // x = m + y: y^2 + b y + c.
                const LongReal m = shifted(p + r, -1);
                const LongReal h = shifted(p - r, -1);
                const LongReal b = v + w;
                const LongReal c = h * (v - w) - h * h;
                // Below 0 while the other roots are rough; of a pair off the axis it stays so.
                const LongReal discriminant = shifted(b * b, -2) - c;
                off_axis = off_axis || discriminant < -(m * m * limits.settled);
                const LongReal distance = sqrt(abs(discriminant));
                const LongReal middle = m - shifted(b, -1);
                if (!is_finite(middle)) return false;
                const bool p_first = h.sign() > 0;
                root(i) = p_first ? middle + distance : middle - distance;
                root(j) = p_first ? middle - distance : middle + distance;
                note(root(i) - p, m);
                note(root(j) - r, m);
            }
        }
        if (worst <= limits.settled) return !off_axis;
    }
    return worst <= limits.enough && !off_axis;
}

}  // namespace kavrel
