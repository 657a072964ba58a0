#include "iir/lattice_form.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "numeric/long_real.h"

namespace kavrel {

namespace {

template <class Long>
LatticeVerdict step_down(const DigitalRoots& roots, LatticeForm& lattice);

}  // namespace

LatticeVerdict makeLattice(IirFilter& filter) {
    if (filter.roots.NP == 0) return {LatticeOutcome::no_poles};
    LatticeForm lattice;
    LatticeVerdict verdict = step_down<LongRealOf<60>>(filter.roots, lattice);
    if (verdict.outcome == LatticeOutcome::lost) verdict = step_down<LongReal>(filter.roots, lattice);
    if (verdict.outcome == LatticeOutcome::lost) verdict = step_down<LongestReal>(filter.roots, lattice);
    if (verdict.outcome == LatticeOutcome::made) filter.lattice = lattice;
    return verdict;
}

namespace {

constexpr int kept_digits = 20;  // of the coefficients after the last step

template <class Long>
using Coefficients = std::array<Long, 51>;  // [i] of z^-i

template <class Long>
Coefficients<Long> multiplied_out(const Long& multiplier, const Table<double, 51>& re, const Table<double, 51>& im,
                                  int count);

// How many digits the step with k and 1 - k^2 may cost.
template <class Long>
long double digits_lost(const Long& k, const Long& w) {
    return std::log10(static_cast<long double>(Long((1 + abs(k)) / abs(w))));
}

template <class Long>
LatticeVerdict step_down(const DigitalRoots& roots, LatticeForm& lattice) {
    constexpr int digits = std::numeric_limits<Long>::digits10;
    const int degree = std::max(roots.NP, roots.NZ);
    Coefficients<Long> A = multiplied_out(Long(1), roots.QR, roots.PI, roots.NP);
    Coefficients<Long> B = multiplied_out(Long(Long(roots.ZMULT) / roots.PMULT), roots.ZR, roots.ZI, roots.NZ);
    const auto at = [](int i) { return static_cast<std::size_t>(i); };

    lattice = {};
    long double lost = 0;
    for (int m = degree; m >= 1; --m) {
        const int stage = degree - (m + 1);
        const Long k = A[at(m)], v = B[at(m)];
        lattice.GMMUL(m) = static_cast<double>(k);
        lattice.GMTAP(m + 1) = static_cast<double>(v);
        if (!(abs(v) < 1)) return {LatticeOutcome::unstable, stage};
        if (v != 0) {
            for (int i = 0; i < m; ++i) B[at(i)] -= v * A[at(m - i)];
        }
        if (k == 0) continue;
        const Long w = 1 - k * k;
        lost += w == 0 ? digits : digits_lost(k, w);
        if (!(lost < digits - kept_digits)) return {LatticeOutcome::lost, stage};
        const Long inverse = 1 / w;
        for (int i = 1, j = m - 1; i <= j; ++i, --j) {
            const Long low = A[at(i)], high = A[at(j)];
            A[at(i)] = (low - k * high) * inverse;
            A[at(j)] = (high - k * low) * inverse;
        }
    }
    lattice.GMTAP(1) = static_cast<double>(B[0]);
    lattice.JM = degree;
    lattice.JT = degree + 1;
    return {};
}

// Coefficients of multiplier prod(1 - root z^-1), a pair at a time; 0 beyond them.
template <class Long>
Coefficients<Long> multiplied_out(const Long& multiplier, const Table<double, 51>& re, const Table<double, 51>& im,
                                  int count) {
    Coefficients<Long> c;
    c.fill(Long(0));
    c[0] = multiplier;
    std::size_t degree = 0;
    for (int i = 1; i <= count; ++i) {
        if (im(i) == 0) {
            ++degree;
            for (std::size_t n = degree; n >= 1; --n) c[n] -= re(i) * c[n - 1];
        } else {
            const Long c1 = -2 * Long(re(i)), c2 = Long(re(i)) * re(i) + Long(im(i)) * im(i);
            degree += 2;
            for (std::size_t n = degree; n >= 2; --n) c[n] += c1 * c[n - 1] + c2 * c[n - 2];
            c[1] += c1 * c[0];
            ++i;
        }
    }
    return c;
}

}  // namespace

}  // namespace kavrel
