#include "synthesis/quadruplet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <utility>

#include "synthesis/long_roots.h"

namespace kavrel {

namespace {

using LongComplex = Complex<WideReal>;

constexpr long double equal_residues = 1e-12L;  // relative difference of two that make a simpler branch
constexpr long double off_axis = 1e-6L;         // relative imaginary part up to which a rough root is real
constexpr long double exact_place = 1e-60L;     // distance at which a root is the extreme point beside it
constexpr long double near_pair = 0.05L;        // relative distance of rough roots from the pair that they are

// Coefficients of the chain matrix, even parts in t^0, t^1, t^2.
struct Section {
    std::array<WideReal, 3> a, d, q;
    std::array<WideReal, 2> b, c;
};

[[nodiscard]] bool solve_section(const WorkingFunction& g, const LongComplex& x0, bool at_zero, Section& section);
[[nodiscard]] bool remainder(const WorkingFunction& g, const Section& section, const LongComplex& x0,
                             WorkingFunction& rest);
[[nodiscard]] bool element_values(const Section& section, bool at_zero, QuadrupletValues& out);

}  // namespace

RemovalFault quadruplet(WorkingFunction& f, const Complex<WideReal>& x0, QuadrupletSide side, QuadrupletValues& out) {
    WorkingFunction g = f;
    hold_as_quotient(g);
    const auto attempt = [&](bool at_zero) {
        Section section;
        WorkingFunction rest;
        if (!solve_section(g, x0, at_zero, section) || !element_values(section, at_zero, out)) return false;
        if (!remainder(g, section, x0, rest)) return false;
        f = rest;
        return true;
    };
    if (side == QuadrupletSide::either) {
        Section section;
        const bool inductors = solve_section(g, x0, false, section) && element_values(section, false, out) &&
                               out.near_shunt < 0 && solve_section(g, x0, true, section) &&
                               element_values(section, true, out) && out.near_shunt > 0;
        return attempt(inductors) ? RemovalFault::none : RemovalFault::quadruplet;
    }
    return attempt(side == QuadrupletSide::zero) ? RemovalFault::none : RemovalFault::quadruplet;
}

bool quadruplet_values(const WorkingFunction& f, const Complex<WideReal>& x0, bool at_zero, QuadrupletValues& out) {
    WorkingFunction g = f;
    hold_as_quotient(g);
    Section section;
    return solve_section(g, x0, at_zero, section) && element_values(section, at_zero, out);
}

QuadrupletValues turned_around(QuadrupletValues section) {
    std::swap(section.value(1), section.value(section.count));
    if (section.id == BranchId::twin_t || section.id == BranchId::twin_t_trap) {
        std::swap(section.value(2), section.value(section.count - 1));
    }
    std::swap(section.near_shunt, section.far_shunt);
    return section;
}

// The graph of a bridged T is its own dual: the arms stay, bridge and shunt arm change places, C and L names.
bool turn_to_dual(QuadrupletValues& section) {
    switch (section.id) {
        case BranchId::bridged_l:
        case BranchId::bridged_c:
            section.id = section.id == BranchId::bridged_l ? BranchId::bridged_c : BranchId::bridged_l;
            std::swap(section.value(2), section.value(3));
            return true;
        case BranchId::bridged_c_trap:
        case BranchId::bridged_l_trap:
            section.id = section.id == BranchId::bridged_c_trap ? BranchId::bridged_l_trap : BranchId::bridged_c_trap;
            std::swap(section.value(2), section.value(4));
            return true;
        default: return false;
    }
}

namespace {

// G = I/s and its derivative by t at a complex x.
struct Sample {
    LongComplex value, slope;
};
Sample sample(const WorkingFunction& g, const LongComplex& x) {
    LongComplex value{1, 0};
    LongComplex log_slope{0, 0};
    LongComplex below{1, 0};
    for (int i = 1; i <= g.ANUMR.count; ++i) {
        const LongComplex factor = x - LongComplex{g.ANUMR.root(i), 0};
        value *= factor;
        log_slope += quotient(LongComplex{1, 0}, factor);
    }
    for (int i = 1; i <= g.DENOMR.count; ++i) {
        const LongComplex factor = x - LongComplex{g.DENOMR.root(i), 0};
        below *= factor;
        log_slope -= quotient(LongComplex{1, 0}, factor);
    }
    value = g.ANUMR.multiplier / g.DENOMR.multiplier * quotient(value, below);
    // dt/dx = (1 - a)/(1 - x)^2.
    const LongComplex up = LongComplex{1, 0} - x;
    const LongComplex dx = quotient(up * up, LongComplex{1 - g.x0, 0});
    return {value, value * log_slope * dx};
}

// Gauss elimination with pivots; the solution comes in the last column.
[[nodiscard]] bool solve_linear(std::array<std::array<WideReal, 5>, 4>& m) {
    for (std::size_t k = 0; k < 4; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < 4; ++i) {
            if (abs(m[i][k]) > abs(m[pivot][k])) pivot = i;
        }
        std::swap(m[k], m[pivot]);
        if (m[k][k].sign() == 0) return false;
        for (std::size_t i = 0; i < 4; ++i) {
            if (i == k) continue;
            const WideReal factor = m[i][k] / m[k][k];
            for (std::size_t j = k; j < 5; ++j) m[i][j] -= factor * m[k][j];
        }
    }
    for (std::size_t k = 0; k < 4; ++k) {
        m[k][4] /= m[k][k];
        if (!is_finite(m[k][4])) return false;
    }
    return true;
}

// One pair of polynomials: known + u t^j + v t + (y + z t) h = 0 doubly at t0, h a function with derivative dh.
[[nodiscard]] bool solve_pair(const LongComplex& t, const LongComplex& known, const LongComplex& known_slope, int power,
                              const LongComplex& even_factor, const LongComplex& even_slope, const LongComplex& h,
                              const LongComplex& dh, std::array<WideReal, 4>& solution) {
    const LongComplex one{1, 0};
    const LongComplex high = power == 2 ? t * t : one;
    const LongComplex high_slope = power == 2 ? t + t : LongComplex{0, 0};
    const std::array<LongComplex, 4> columns = {high * even_factor, t * even_factor, h, t * h};
    const std::array<LongComplex, 4> slopes = {high_slope * even_factor + high * even_slope,
                                               even_factor + t * even_slope, dh, h + t * dh};
    std::array<std::array<WideReal, 5>, 4> m;
    for (std::size_t j = 0; j < 4; ++j) {
        m[0][j] = columns[j].re, m[1][j] = columns[j].im;
        m[2][j] = slopes[j].re, m[3][j] = slopes[j].im;
    }
    m[0][4] = -known.re, m[1][4] = -known.im;
    m[2][4] = -known_slope.re, m[3][4] = -known_slope.im;
    if (!solve_linear(m)) return false;
    for (std::size_t k = 0; k < 4; ++k) solution[k] = m[k][4];
    return true;
}

bool solve_section(const WorkingFunction& g, const LongComplex& x0, bool at_zero, Section& section) {
    const LongComplex t = quotient(x0 - LongComplex{g.x0, 0}, LongComplex{1, 0} - x0);
    const Sample y = sample(g, x0);
    const WideReal size = t.re * t.re + t.im * t.im;
    section.q = {1, -shifted(t.re, 1) / size, 1 / size};
    // What is known of A and D: their constant term 1, or their highest term r t^2.
    const std::size_t fixed = at_zero ? 2 : 0;
    const std::size_t free = at_zero ? 0 : 2;
    const WideReal given = section.q[fixed];
    const LongComplex one{1, 0};
    const LongComplex zero{0, 0};
    const LongComplex known = given * (at_zero ? t * t : one);
    const LongComplex known_slope = given * (at_zero ? t + t : zero);
    const int power = static_cast<int>(free);

    // D - t (b1 + b3 t) G.
    std::array<WideReal, 4> solution;
    const LongComplex h = -(t * y.value);
    const LongComplex dh = -(y.value + t * y.slope);
    if (!solve_pair(t, known, known_slope, power, one, zero, h, dh, solution)) return false;
    section.d[fixed] = given;
    section.d[free] = solution[0];
    section.d[1] = solution[1];
    section.b = {solution[2], solution[3]};

    // A G - (c1 + c3 t).
    if (!solve_pair(t, known * y.value, known_slope * y.value + known * y.slope, power, y.value, y.slope, -one, zero,
                    solution)) {
        return false;
    }
    section.a[fixed] = given;
    section.a[free] = solution[0];
    section.a[1] = solution[1];
    section.c = {solution[2], solution[3]};
    return true;
}

// k0 + k1 t + k2 t^2 times (1 - x)^2, as a value at x.
WideReal even_value(const std::array<WideReal, 3>& k, const WideReal& x, const WideReal& a) {
    const WideReal up = 1 - x;
    const WideReal down = x - a;
    return k[0] * up * up + k[1] * up * down + k[2] * down * down;
}

// The roots of even_value, as a set; its leading coefficient is k0 - k1 + k2.
WideRootSet even_roots(const std::array<WideReal, 3>& k, const WideReal& a) {
    const WideReal lead = k[0] - k[1] + k[2];
    const WideReal middle = k[1] * (1 + a) - shifted(k[0] + k[2] * a, 1);
    const WideReal last = k[0] - k[1] * a + k[2] * a * a;
    const WideReal h = shifted(-middle / lead, -1);
    const WideReal rest = h * h - last / lead;
    const WideReal root = sqrt(abs(rest));
    WideRootSet set;
    set.multiplier = rounded(lead);
    if (rest.sign() < 0) {
        set.append({rounded(h), rounded(root)});
        set.append({rounded(h), -rounded(root)});
    } else {
        set.append({rounded(h + root), 0});
        set.append({rounded(h - root), 0});
    }
    return set;
}

// A sum of two products with the double pair x0 divided out.
[[nodiscard]] bool divided_sum(const std::array<WideReal, 3>& even, const ReactanceRoots& with_even,
                               const std::array<WideReal, 3>& other, const ReactanceRoots& with_other,
                               const LongComplex& x0, const WideReal& a, ReactanceRoots& roots) {
    const auto product = [&](const std::array<WideReal, 3>& k, const ReactanceRoots& set) {
        WideRootSet all = even_roots(k, a);
        for (int i = 1; i <= set.count; ++i) all.append({rounded(set.root(i)), 0});
        all.multiplier *= rounded(set.multiplier);
        return all;
    };
    WideRootSet rough;
    SumWorkspace ws;
    if (!solveSum(product(even, with_even), product(other, with_other), rough, ws, rough_options).good()) {
        return false;
    }
    // The four roots nearest to the pair are the pair, to half of the digits.
    for (int turn = 0; turn < 4; ++turn) {
        int nearest = 0;
        long double smallest = 0;
        for (int i = 1; i <= rough.count; ++i) {
            const long double away =
                std::hypot(rough.re(i) - rounded(x0.re), std::fabs(rough.im(i)) - std::fabs(rounded(x0.im)));
            if (nearest != 0 && away >= smallest) continue;
            nearest = i;
            smallest = away;
        }
        if (nearest == 0 || smallest > near_pair * std::hypot(rounded(x0.re), rounded(x0.im))) return false;
        for (int i = nearest; i < rough.count; ++i) rough.set_root(i, rough.root(i + 1));
        --rough.count;
    }
    const auto value = [&](const WideReal& x) {
        const WideReal p = even_value(even, x, a) * value_of(with_even, x);
        const WideReal s = p + even_value(other, x, a) * value_of(with_other, x);
        const WideReal distance = (x - x0.re) * (x - x0.re) + x0.im * x0.im;
        return abs(s) <= abs(p) * long_rounding ? WideReal{0} : s / (distance * distance);
    };
    const auto leading = [&](const std::array<WideReal, 3>& k, const ReactanceRoots& set) {
        return (k[0] - k[1] + k[2]) * set.multiplier;
    };
    roots = {};
    const int degree = std::max(with_even.count, with_other.count);
    if (with_even.count == degree) roots.multiplier += leading(even, with_even);
    if (with_other.count == degree) roots.multiplier += leading(other, with_other);
    for (int i = 1; i <= rough.count; ++i) {
        if (!(std::fabs(rough.im(i)) <= off_axis * std::fabs(rough.re(i)))) return false;
        roots.append(rough.re(i));
    }
    if (roots.count != degree - 2 || !refine_real_roots(roots.root, roots.count, roots.multiplier, value)) return false;
    // Roots at the extreme points have to cancel exactly.
    for (int i = 1; i <= roots.count; ++i) {
        for (const WideReal& place : {WideReal{1}, a}) {
            if (abs(roots.root(i) - place) <= exact_place) roots.root(i) = place;
        }
    }
    return true;
}

// G2 = (A G - c)/(D - t b G), both times (1 - x)^2 over the denominator of G.
bool remainder(const WorkingFunction& g, const Section& section, const LongComplex& x0, WorkingFunction& rest) {
    const std::array<WideReal, 3> c = {-section.c[0], -section.c[1], 0};
    const std::array<WideReal, 3> b = {0, -section.b[0], -section.b[1]};
    rest = g;
    return divided_sum(section.a, g.ANUMR, c, g.DENOMR, x0, g.x0, rest.ANUMR) &&
           divided_sum(section.d, g.DENOMR, b, g.ANUMR, x0, g.x0, rest.DENOMR);
}

bool element_values(const Section& section, bool at_zero, QuadrupletValues& out) {
    const WideReal& b1 = section.b[0];
    const WideReal& b3 = section.b[1];
    const WideReal w2 = b1 / b3;
    const WideReal k0 = 1 / b1;
    const WideReal kinf = section.q[2] / b3;
    const auto at_resonance = [&](const std::array<WideReal, 3>& k) { return k[0] - k[1] * w2 + k[2] * w2 * w2; };
    const WideReal rho = at_resonance(section.q) / b1;
    const WideReal n = -at_resonance(section.d) / (b1 * rho);
    if (!(k0 > 0) || !(kinf > 0) || !(rho > 0) || !(n > 0)) return false;

    const WideReal la = 1 / (k0 * (n + 1));
    const WideReal lb = n * la;
    const auto shunt_c = [&](const WideReal& share) { return share / (la * lb * k0 * k0 * w2); };
    const auto equal = [](const WideReal& p, const WideReal& q) { return abs(p - q) <= abs(q) * equal_residues; };
    out = {};
    const auto set = [&](BranchId id, std::initializer_list<WideReal> values) {
        out.id = id;
        for (const WideReal& v : values) out.value(++out.count) = v;
    };
    if (equal(rho, k0)) {
        set(BranchId::bridged_l, {la, kinf, shunt_c(rho), lb});
    } else if (rho < k0) {
        set(BranchId::bridged_l_trap, {la, kinf, la * lb * k0 * (k0 - rho) / rho, shunt_c(rho), lb});
    } else if (rho < kinf * w2 || equal(rho, kinf * w2)) {
        const WideReal kappa = rho / w2;
        const WideReal ca = kappa * (n + 1);
        const WideReal cb = ca / n;
        const WideReal l = 1 / ((ca + cb) * w2);
        if (equal(rho, kinf * w2))
            set(BranchId::bridged_c, {ca, b1, l, cb});
        else
            set(BranchId::bridged_c_trap, {ca, b1, kinf - kappa, l, cb});
    } else {
        const WideReal rest = rho - k0;
        const WideReal ca = kinf * (n + 1);
        const WideReal cb = ca / n;
        const WideReal l = kinf / (rest * (ca + cb));
        const WideReal series2 = w2 - rest / kinf;
        if (equal(rest, kinf * w2))
            set(BranchId::twin_t, {la, ca, shunt_c(k0), l, cb, lb});
        else
            set(BranchId::twin_t_trap, {la, ca, shunt_c(k0), l, 1 / (l * series2), cb, lb});
    }
    out.at_zero = at_zero;
    const auto shunt = [&](const std::array<WideReal, 3>& k) {
        if (at_zero) return b1 / (k[0] - 1);
        return (k[2] - section.q[2]) / b3;
    };
    out.near_shunt = shunt(section.d);
    out.far_shunt = shunt(section.a);
    return true;
}

}  // namespace

}  // namespace kavrel
