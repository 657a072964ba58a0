#include "iir/form_poles.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "iir/truncation.h"
#include "numeric/polynomial_roots.h"

namespace kavrel {

namespace {

// Calls act(c1, c2) with the denominator factors of a form that is made of such.
template <class Act>
void each_factor(const IirFilter& filter, Implementation form, const Act& act) {
    const auto pass = [&](const auto& c1, const auto& c2, int count) {
        for (int k = 1; k <= count; ++k) act(c1(k), c2(k));
    };
    const CascadeForm& c = filter.cascade;
    const ParallelForm& p = filter.parallel;
    const AllpassForm& a = filter.allpass;
    if (form == Implementation::cascade) pass(c.C1D, c.C2D, c.NDEN);
    if (form == Implementation::parallel) pass(p.GA, p.DE, p.NPAR);
    if (form == Implementation::allpass) pass(a.TA1, a.TA2, a.NTA), pass(a.TB1, a.TB2, a.NTB);
}

bool has_multipliers_below_1(const LatticeForm& form);
template <class Long>
bool is_stable_polynomial(const DirectForm& form);
std::vector<LongReal> denominator_of(const LatticeForm& form);
std::vector<LongReal> denominator_of(const DirectForm& form);
bool solve(std::vector<LongReal> ascending, Table<double, 51>& re, Table<double, 51>& im, int& count);

}  // namespace

bool is_stable(const IirFilter& filter, Implementation form) {
    if (form == Implementation::lattice) return has_multipliers_below_1(filter.lattice);
    if (form == Implementation::direct) {
        constexpr int enough_for_long_numbers = 20;  // degree, of any poles; narrow filters of 50 lose 150 digits
        return filter.direct.JD <= enough_for_long_numbers ? is_stable_polynomial<LongReal>(filter.direct)
                                                           : is_stable_polynomial<LongestReal>(filter.direct);
    }
    bool stable = true;
    each_factor(filter, form, [&](double c1, double c2) { stable = stable && has_poles_inside(c1, c2); });
    return stable;
}

DigitalRoots roots_near_form(const IirFilter& filter, Implementation form) {
    if (form == Implementation::cascade) return roots_of_factors(filter);
    if (form == Implementation::lattice || form == Implementation::direct) return filter.roots;
    DigitalRoots roots = filter.roots;
    roots.NP = 0;
    each_factor(filter, form, [&](double c1, double c2) {
        if ((c1 != 0 || c2 != 0) && roots.NP < iir_root_limit) factorRoots(c1, c2, roots.QR, roots.PI, roots.NP);
    });
    return roots;
}

DigitalRoots roots_of_form(const IirFilter& filter, Implementation form) {
    DigitalRoots roots = roots_near_form(filter, form);
    if (form == Implementation::lattice) {
        if (!solve(denominator_of(filter.lattice), roots.QR, roots.PI, roots.NP)) roots.NP = 0;
    } else if (form == Implementation::direct) {
        std::vector<LongReal> numerator;
        for (int i = 1; i <= filter.direct.JN; ++i) numerator.emplace_back(filter.direct.ZNUM(i));
        if (!solve(denominator_of(filter.direct), roots.QR, roots.PI, roots.NP)) roots.NP = 0;
        if (!solve(numerator, roots.ZR, roots.ZI, roots.NZ)) roots.NZ = 0;
    }
    return roots;
}

namespace {

bool has_multipliers_below_1(const LatticeForm& form) {
    for (int i = 1; i <= form.JM; ++i) {
        if (!(std::fabs(form.GMMUL(i)) < 1)) return false;
    }
    return true;
}

// k = A's coefficient of z^-m, A <- (A - k A~)/(1 - k^2), A~ being A with its coefficients in reversed order, for m
// down to 1.
template <class Long>
bool is_stable_polynomial(const DirectForm& form) {
    const Long on_circle("1e-60");
    std::vector<Long> A{Long(1)};
    for (int i = 2; i <= form.JD; ++i) A.emplace_back(form.ZDEN(i));
    while (A.size() > 1) {
        const Long k = A.back();
        if (!(1 - abs(k) > on_circle)) return false;
        const Long inverse = 1 / (1 - k * k);
        for (std::size_t i = 1, j = A.size() - 2; i <= j; ++i, --j) {
            const Long low = A[i], high = A[j];
            A[i] = (low - k * high) * inverse;
            A[j] = (high - k * low) * inverse;
        }
        A.pop_back();
    }
    return true;
}

// A <- A + k z^-m A~, from stage to stage.
std::vector<LongReal> denominator_of(const LatticeForm& form) {
    std::vector<LongReal> A{LongReal(1)};
    for (int m = 1; m <= form.JM; ++m) {
        const LongReal k = form.GMMUL(m);
        A.emplace_back(0);
        const std::vector<LongReal> before = A;
        for (std::size_t i = 0; i < A.size(); ++i) A[i] += k * before[A.size() - 1 - i];
    }
    return A;
}

std::vector<LongReal> denominator_of(const DirectForm& form) {
    std::vector<LongReal> A{LongReal(1)};
    for (int i = 2; i <= form.JD; ++i) A.emplace_back(form.ZDEN(i));
    return A;
}

// Roots in z of coefficients of ascending powers of z^-1, without those at 0 and at infinity.
bool solve(std::vector<LongReal> ascending, Table<double, 51>& re, Table<double, 51>& im, int& count) {
    const auto is_zero = [](const LongReal& c) { return c == 0; };
    while (!ascending.empty() && is_zero(ascending.back())) ascending.pop_back();
    ascending.erase(ascending.begin(), std::ranges::find_if_not(ascending, is_zero));
    std::vector<Complex<LongReal>> roots;
    if (!polynomial_roots(ascending, roots)) return false;
    count = 0;
    for (const auto& root : roots) {
        const auto x = static_cast<double>(root.re), y = static_cast<double>(root.im);
        ++count, re(count) = x, im(count) = y;
        if (y != 0) ++count, re(count) = x, im(count) = -y;
    }
    return true;
}

}  // namespace

}  // namespace kavrel
