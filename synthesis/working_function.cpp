#include "synthesis/working_function.h"

#include <algorithm>
#include <cmath>

#include "numeric/real_sum_roots.h"
#include "synthesis/long_roots.h"

namespace kavrel {

namespace {

constexpr long double least_reach = 1e-8L;
constexpr long double lost = 1e-60L;         // a coefficient this small is the rounding of its terms
constexpr long double off_axis = 1e-6L;      // relative imaginary part up to which a rough root is real
constexpr long double one_to_rough = 1e-7L;  // relative distance of two roots that are one to the rough type

// Highest degree of A + B and its two highest coefficients.
struct Leading {
    int degree = 0;
    WideReal first = 0;
    WideReal second = 0;
};

[[nodiscard]] bool solve_sum(const ReactanceRoots& A, const ReactanceRoots& B, ReactanceRoots& sum);
[[nodiscard]] Leading leading_terms(const ReactanceRoots& A, const ReactanceRoots& B);
[[nodiscard]] bool rough_roots(const ReactanceRoots& A, const ReactanceRoots& B, WideRootSet& rough);
void start_from_pairs(const ReactanceRoots& A, ReactanceRoots& found);

}  // namespace

void ReactanceRoots::erase(int i) {
    for (; i < count; ++i) root(i) = root(i + 1);
    --count;
}

WideReal reach_of(const WideReal& value, int digits) {
    const WideReal relative = abs(value) * std::pow(10.0L, -digits);
    return relative > least_reach ? relative : WideReal{least_reach};
}

bool removeRoot(ReactanceRoots& roots, WideReal value, int digits) {
    const int i = nearest_root(roots, value, digits);
    if (i > 0) roots.erase(i);
    return i > 0;
}

int nearest_root(const ReactanceRoots& roots, const WideReal& value, int digits) {
    WideReal nearest = reach_of(value, digits);
    int found = 0;
    for (int i = 1; i <= roots.count; ++i) {
        const WideReal distance = abs(roots.root(i) - value);
        if (distance > nearest || (found > 0 && distance == nearest)) continue;
        found = i;
        nearest = distance;
    }
    return found;
}

bool cancel_root(ReactanceRoots& roots, WideReal value) {
    for (int i = 1; i <= roots.count; ++i) {
        if (roots.root(i) != value) continue;
        roots.erase(i);
        return true;
    }
    return false;
}

void complementRoots(ReactanceRoots& roots) {
    for (int i = 1; i <= roots.count; ++i) roots.root(i) = 1 - roots.root(i);
}

bool copyFunction(const ReactanceRoots& polynomial, ReactanceRoots& roots) {
    roots = polynomial;
    return roots.multiplier.sign() != 0;
}

void invert(WorkingFunction& f) {
    std::swap(f.ANUMR, f.DENOMR);
    std::swap(f.Fn, f.Fd);
}

// I = F0/s = s F1: F1 = F0 (1 - x)/(x - a).
void hold_as_quotient(WorkingFunction& f) {
    if (f.Fn == 1) return;
    if (!cancel_root(f.DENOMR, 1)) f.ANUMR.append(1);
    if (!cancel_root(f.ANUMR, f.x0)) f.DENOMR.append(f.x0);
    f.ANUMR.multiplier = -f.ANUMR.multiplier;
    f.Fn = 1, f.Fd = 0;
}

void hold_as_product(WorkingFunction& f) {
    if (f.Fn == 0) return;
    if (!cancel_root(f.ANUMR, 1)) f.DENOMR.append(1);
    if (!cancel_root(f.DENOMR, f.x0)) f.ANUMR.append(f.x0);
    f.ANUMR.multiplier = -f.ANUMR.multiplier;
    f.Fn = 0, f.Fd = 1;
}

WideReal value_of(const ReactanceRoots& roots, WideReal x) {
    WideReal product = roots.multiplier;
    for (int i = 1; i <= roots.count; ++i) product *= x - roots.root(i);
    return product;
}

WideReal value_of(const WorkingFunction& f, WideReal x) { return value_of(f.ANUMR, x) / value_of(f.DENOMR, x); }

WideReal quotient_at(const WorkingFunction& f, WideReal x) {
    return f.Fn == 1 ? value_of(f, x) : value_of(f, x) * (1 - x) / (x - f.x0);
}

bool sumOfProducts(const ReactanceRoots& A, const ReactanceRoots& B, ReactanceRoots& sum) {
    ReactanceRoots a = A;
    ReactanceRoots b = B;
    ReactanceRoots common;
    for (int i = a.count; i >= 1; --i) {
        const WideReal r = a.root(i);
        if (!cancel_root(b, r)) continue;
        common.append(r);
        a.erase(i);
    }
    ReactanceRoots found;
    if (!solve_sum(a, b, found)) return false;
    for (int i = 1; i <= common.count; ++i) found.append(common.root(i));
    sum = found;
    return true;
}

void cancel_common_roots(WorkingFunction& f) {
    for (int i = f.ANUMR.count; i >= 1; --i) {
        if (cancel_root(f.DENOMR, f.ANUMR.root(i))) f.ANUMR.erase(i);
    }
}

bool has_pole_at_zero(const WorkingFunction& f) {
    WorkingFunction product = f;
    hold_as_product(product);
    return !cancel_root(product.ANUMR, f.x0);
}

bool has_pole_at_infinity(const WorkingFunction& f) {
    WorkingFunction quotient = f;
    hold_as_quotient(quotient);
    return !cancel_root(quotient.ANUMR, 1);
}

int reactance_degree(const WorkingFunction& f) {
    // s = j is an ordinary point: in s^2 the lists have equal length once the roots at x = infinity are counted.
    WorkingFunction product = f;
    hold_as_product(product);
    const int pairs = std::max(product.ANUMR.count, product.DENOMR.count);
    // Every pole of I s in s^2 away from infinity is a pair of poles of I.
    int poles = 2 * pairs;
    if (cancel_root(product.DENOMR, 1)) --poles;     // that at infinity is simple
    if (!cancel_root(product.ANUMR, f.x0)) ++poles;  // I s does not vanish at 0: I has a pole there
    return poles;
}

namespace {

// Roots from the kernel's solver in rough numbers; Newton's iteration then brings them to full length. A root far
// beyond the others, which the rough sum may have lost with its leading term, comes from the two highest coefficients.
bool solve_sum(const ReactanceRoots& A, const ReactanceRoots& B, ReactanceRoots& sum) {
    if (A.multiplier.sign() == 0 || B.multiplier.sign() == 0) {
        sum = A.multiplier.sign() == 0 ? B : A;
        if (sum.multiplier.sign() == 0) sum.count = 0;
        return true;
    }
    const Leading top = leading_terms(A, B);
    if (top.degree == 0 && abs(top.first) <= abs(A.multiplier) * lost) {
        sum = {};
        return true;
    }
    WideRootSet rough;
    if (!rough_roots(A, B, rough)) return false;
    ReactanceRoots found;
    found.multiplier = top.first;
    for (int i = 1; i <= rough.count && i <= immittance_root_limit; ++i) found.append(rough.re(i));
    if (found.count == top.degree - 1) {
        if (abs(top.first) <= abs(top.second) * lost)
            found.multiplier = top.second;
        else
            found.append(-top.second / top.first);
    } else if (found.count != top.degree) {
        return false;
    }
    start_from_pairs(A, found);
    const auto value = [&](const WideReal& x) {
        const WideReal a = value_of(A, x);
        const WideReal s = a + value_of(B, x);
        return abs(s) <= abs(a) * long_rounding ? WideReal{0} : s;
    };
    if (!refine_real_roots(found.root, found.count, found.multiplier, value)) return false;
    sum = found;
    return true;
}

Leading leading_terms(const ReactanceRoots& A, const ReactanceRoots& B) {
    Leading top;
    top.degree = std::max(A.count, B.count);
    for (const ReactanceRoots* set : {&A, &B}) {
        if (set->count == top.degree) {
            top.first += set->multiplier;
            for (int i = 1; i <= set->count; ++i) top.second -= set->multiplier * set->root(i);
        } else if (set->count == top.degree - 1) {
            top.second += set->multiplier;
        }
    }
    return top;
}

// First as the reals that they should be, then as complex numbers whose imaginary parts have to be rounding.
bool rough_roots(const ReactanceRoots& A, const ReactanceRoots& B, WideRootSet& rough) {
    // The scale of the multipliers is left out: they may be beyond the range of the rough type.
    const WideReal ratio = B.multiplier / A.multiplier;
    if (A.count <= max_real_degree && B.count <= max_real_degree) {
        const auto rough_set = [](const ReactanceRoots& from, WideReal multiplier) {
            RealRootSet to{.multiplier = rounded(multiplier), .count = from.count, .root = {}};
            for (int i = 1; i <= from.count; ++i) to.root(i) = rounded(from.root(i));
            return to;
        };
        RealSumWorkspace ws;
        RealRootSet found;
        if (solveRealSum(rough_set(A, 1), rough_set(B, ratio), found, ws, rough_options).good()) {
            rough = {};
            for (int i = 1; i <= found.count; ++i) rough.append({found.root(i), 0});
            return true;
        }
    }
    const auto rough_set = [](const ReactanceRoots& from, WideReal multiplier) {
        WideRootSet to;
        to.multiplier = rounded(multiplier);
        for (int i = 1; i <= from.count; ++i) to.append({rounded(from.root(i)), 0});
        return to;
    };
    SumWorkspace ws;
    if (!solveSum(rough_set(A, 1), rough_set(B, ratio), rough, ws, rough_options).good()) return false;
    for (int i = 1; i <= rough.count; ++i) {
        if (!(std::fabs(rough.im(i)) <= off_axis * std::fabs(rough.re(i)))) return false;
    }
    return true;
}

// Two rough roots that are one to their accuracy, where A has a close pair: that pair is the better start, as its
// distance has the right size.
void start_from_pairs(const ReactanceRoots& A, ReactanceRoots& found) {
    const auto close = [](const WideReal& p, const WideReal& q) { return abs(p - q) <= abs(p) * one_to_rough; };
    for (int i = 1; i <= found.count; ++i) {
        for (int j = i + 1; j <= found.count; ++j) {
            if (!close(found.root(i), found.root(j))) continue;
            int k = 1;
            while (k <= A.count && !close(A.root(k), found.root(i))) ++k;
            int l = k + 1;
            while (l <= A.count && !close(A.root(l), found.root(i))) ++l;
            if (l > A.count) continue;
            found.root(i) = A.root(k);
            found.root(j) = A.root(l);
        }
    }
}

}  // namespace

}  // namespace kavrel
