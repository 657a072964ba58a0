#include "synthesis/removals.h"

namespace kavrel {

namespace {

constexpr long double same_point = 1e-10L;  // relative distance of two x that are one point

[[nodiscard]] RemovalFault subtract_shape(WorkingFunction& g, const ShiftPole& pole, WideReal residue);
[[nodiscard]] WideReal shape(const WorkingFunction& g, const ShiftPole& pole, WideReal x);
[[nodiscard]] RemovalFault residues_of_both(const WorkingFunction& f, WideReal zero1, WideReal zero2, WideReal& at_zero,
                                            WideReal& at_infinity);
[[nodiscard]] bool pole_present(const WorkingFunction& f, const ShiftPole& pole, WideReal& matched);
[[nodiscard]] bool same(WideReal p, WideReal q);
[[nodiscard]] bool take_zero(WorkingFunction& g, WideReal zero);
[[nodiscard]] ShiftValues values_of(const WorkingFunction& f, const ShiftPole& pole, WideReal residue);
[[nodiscard]] RemovalFault single_shift(WorkingFunction& f, const ShiftPole& pole, WideReal zero, ShiftValues& out);

}  // namespace

RemovalFault extreme(WorkingFunction& f, RemovalMode mode, ExtremeSide side, WideReal point, WideReal& value,
                     bool evalOnly) {
    // G = I/s at infinity, I s at zero: the residue is the value of G at the point.
    WorkingFunction g = f;
    const bool at_zero = side == ExtremeSide::zero;
    if (at_zero)
        hold_as_product(g);
    else
        hold_as_quotient(g);
    const WideReal pole = at_zero ? f.x0 : 1;
    const bool made = mode == RemovalMode::made;
    if (g.vanished() || cancel_root(g.ANUMR, pole) != made) return RemovalFault::extreme_impossible;
    if (made) g.ANUMR.append(pole);

    WideReal residue = 0;
    if (mode == RemovalMode::given) {
        if (value == 0) return RemovalFault::value_missing;
        residue = at_zero ? 1 / value : value;
    } else {
        residue = value_of(g, mode == RemovalMode::complete ? pole : point);
        value = at_zero ? 1 / residue : residue;
    }
    if (!is_finite(residue) || residue == 0 || (made && residue > 0)) return RemovalFault::extreme_impossible;
    if (evalOnly) return RemovalFault::none;

    ReactanceRoots removed = g.DENOMR;
    removed.multiplier *= -residue;
    if (!sumOfProducts(g.ANUMR, removed, g.ANUMR)) return RemovalFault::roots_missing;
    if (mode == RemovalMode::complete && g.ANUMR.multiplier != 0) {
        if (!take_zero(g, pole)) return RemovalFault::extreme_impossible;
        g.ANUMR.append(pole);
    } else if (mode == RemovalMode::shifting || made) {
        if (!take_zero(g, point)) return RemovalFault::extreme_zero_missing;
        g.ANUMR.append(point);
    }
    cancel_common_roots(g);
    if (at_zero)
        hold_as_quotient(g);
    else if (mode == RemovalMode::complete)
        hold_as_product(g);
    f = g;
    return RemovalFault::none;
}

RemovalFault finite(WorkingFunction& f, RemovalMode mode, WideReal pole, WideReal zero, WideReal& value1,
                    WideReal& value2) {
    WorkingFunction g = f;
    hold_as_quotient(g);
    ShiftPole place{ShiftPole::Place::finite, 0};
    if (!pole_present(g, {ShiftPole::Place::finite, pole}, place.x)) return RemovalFault::pole_missing;
    const WideReal p = place.x;

    WideReal residue = 0;
    if (mode == RemovalMode::given) {
        if (value2 == 0) return RemovalFault::value_missing;
        residue = value2 * (f.x0 - p) / (1 - f.x0);
    } else {
        // h = G (x - p)/(1 - x) at w, the factor (x - p) taken out of the denominator.
        WorkingFunction rest = g;
        if (!cancel_root(rest.DENOMR, p)) return RemovalFault::pole_missing;
        const WideReal w = mode == RemovalMode::complete ? p : zero;
        residue = value_of(rest, w) / (1 - w);
    }
    if (!is_finite(residue) || residue == 0) return RemovalFault::pole_missing;
    const ShiftValues values = values_of(f, place, residue);
    value1 = values.value1;
    value2 = values.value2;

    if (const RemovalFault fault = subtract_shape(g, place, residue); fault != RemovalFault::none) return fault;
    if (mode == RemovalMode::complete && g.ANUMR.multiplier != 0) {
        if (!take_zero(g, p) || !cancel_root(g.DENOMR, p)) return RemovalFault::pole_missing;
    } else if (mode == RemovalMode::shifting) {
        if (!take_zero(g, zero)) return RemovalFault::zero_missing;
        g.ANUMR.append(zero);
    }
    cancel_common_roots(g);
    f = g;
    return RemovalFault::none;
}

RemovalFault doubleShift(WorkingFunction& f, const ShiftPole& x1, const ShiftPole& x2, WideReal zero1, WideReal zero2,
                         ShiftValues& out1, ShiftValues& out2) {
    out1 = out2 = {};
    WorkingFunction g = f;
    hold_as_quotient(g);
    ShiftPole first = x1;
    ShiftPole second = x2;
    if (!pole_present(g, x1, first.x) || !pole_present(g, x2, second.x)) return RemovalFault::pole_missing;

    const auto at_pole = [](WideReal zero, const ShiftPole& pole) {
        return pole.place == ShiftPole::Place::finite && same(zero, pole.x);
    };
    if (same(zero1, zero2)) return single_shift(f, first, zero1, out1);
    if (at_pole(zero1, first) || at_pole(zero2, first)) {
        return single_shift(f, second, at_pole(zero1, first) ? zero2 : zero1, out2);
    }
    if (at_pole(zero1, second) || at_pole(zero2, second)) {
        return single_shift(f, first, at_pole(zero1, second) ? zero2 : zero1, out1);
    }

    const WideReal a1 = shape(g, first, zero1);
    const WideReal b1 = shape(g, second, zero1);
    const WideReal a2 = shape(g, first, zero2);
    const WideReal b2 = shape(g, second, zero2);
    const WideReal g1 = value_of(g, zero1);
    const WideReal g2 = value_of(g, zero2);
    const WideReal determinant = a1 * b2 - a2 * b1;
    const WideReal r1 = (g1 * b2 - g2 * b1) / determinant;
    const WideReal r2 = (a1 * g2 - a2 * g1) / determinant;
    if (!is_finite(r1) || !is_finite(r2) || r1 == 0 || r2 == 0) return RemovalFault::double_roots_missing;
    out1 = values_of(f, first, r1);
    out2 = values_of(f, second, r2);

    // Both residues in one sum: the intermediate function need not have real roots.
    ReactanceRoots numerator = g.ANUMR;
    WorkingFunction shapes = {};
    shapes.x0 = g.x0;
    // r1 i1 + r2 i2 over the common denominator of both shapes.
    const auto numerator_of = [&](const ShiftPole& pole, const ShiftPole& other, WideReal residue) {
        ReactanceRoots n;
        n.multiplier = residue;
        if (pole.place != ShiftPole::Place::infinity) n.append(1), n.multiplier = -n.multiplier;
        if (other.place == ShiftPole::Place::zero) n.append(g.x0);
        if (other.place == ShiftPole::Place::finite) n.append(other.x);
        return n;
    };
    if (!sumOfProducts(numerator_of(first, second, r1), numerator_of(second, first, r2), shapes.ANUMR)) {
        return RemovalFault::double_roots_missing;
    }
    shapes.DENOMR.multiplier = 1;
    for (const ShiftPole& pole : {first, second}) {
        if (pole.place == ShiftPole::Place::zero) shapes.DENOMR.append(g.x0);
        if (pole.place == ShiftPole::Place::finite) shapes.DENOMR.append(pole.x);
    }
    // G - shapes over the denominator of G with the poles of the shapes; G has them already.
    ReactanceRoots removed = shapes.ANUMR;
    removed.multiplier *= -g.DENOMR.multiplier;
    ReactanceRoots left = g.DENOMR;
    for (int i = 1; i <= shapes.DENOMR.count; ++i) {
        if (!cancel_root(left, shapes.DENOMR.root(i))) return RemovalFault::pole_missing;
    }
    for (int i = 1; i <= left.count; ++i) removed.append(left.root(i));
    if (!sumOfProducts(numerator, removed, g.ANUMR)) return RemovalFault::double_roots_missing;
    if (!take_zero(g, zero1) || !take_zero(g, zero2)) return RemovalFault::double_roots_missing;
    g.ANUMR.append(zero1);
    g.ANUMR.append(zero2);
    cancel_common_roots(g);
    f = g;
    return RemovalFault::none;
}

RemovalFault doubleSame(WorkingFunction& f, WideReal zero1, WideReal zero2, WideReal& at_zero, WideReal& at_infinity,
                        bool evalOnly) {
    if (evalOnly) return residues_of_both(f, zero1, zero2, at_zero, at_infinity);
    WorkingFunction g = f;
    ShiftValues low;
    ShiftValues high;
    const RemovalFault fault =
        doubleShift(g, {ShiftPole::Place::zero, f.x0}, {ShiftPole::Place::infinity, 1}, zero1, zero2, low, high);
    if (fault != RemovalFault::none) return fault;
    at_zero = low.value2;
    at_infinity = high.value2;
    f = g;
    return fault;
}

RemovalFault unitElement(WorkingFunction& f, WideReal u, WideReal& value) {
    // With Z0 = I(s0) what is left is Z0 (s0 I - s Z0)/(s0 Z0 - s I); G = I/s, g0 = G(u), Z0 = s0 g0:
    //   G' = g0 s0^2 (G - g0)/(s0^2 g0 - s^2 G), s^2 = (x - a)/(1 - x).
    WorkingFunction g = f;
    hold_as_quotient(g);
    const WideReal s2 = (u - f.x0) / (1 - u);
    const WideReal g0 = value_of(g, u);
    if (!(s2 > 0) || !is_finite(g0) || g0 == 0) return RemovalFault::unit_element;

    ReactanceRoots subtracted = g.DENOMR;  // N - g0 D
    subtracted.multiplier *= -g0;
    ReactanceRoots passed = g.DENOMR;  // s0^2 g0 (1 - x) D
    passed.multiplier *= -s2 * g0;
    passed.append(1);
    ReactanceRoots reflected = g.ANUMR;  // -(x - a) N
    reflected.multiplier = -reflected.multiplier;
    reflected.append(f.x0);

    WorkingFunction rest = g;
    if (!sumOfProducts(g.ANUMR, subtracted, rest.ANUMR)) return RemovalFault::unit_element;
    if (!sumOfProducts(passed, reflected, rest.DENOMR)) return RemovalFault::unit_element;
    value = sqrt(s2) * g0;
    if (rest.ANUMR.multiplier != 0 && rest.DENOMR.multiplier != 0) {
        if (!removeRoot(rest.ANUMR, u, f.digits - 3) || !removeRoot(rest.DENOMR, u, f.digits - 3)) {
            return RemovalFault::unit_element;
        }
    }
    rest.ANUMR.multiplier *= -s2 * g0;  // times (1 - x)
    rest.ANUMR.append(1);
    cancel_common_roots(rest);
    f = rest;
    return RemovalFault::none;
}

namespace {

// G(z) = v + k (1 - z)/(z - a) at both zeros.
RemovalFault residues_of_both(const WorkingFunction& f, WideReal zero1, WideReal zero2, WideReal& at_zero,
                              WideReal& at_infinity) {
    if (!has_pole_at_zero(f) || !has_pole_at_infinity(f)) return RemovalFault::pole_missing;
    const ShiftPole origin{ShiftPole::Place::zero, f.x0};
    const WideReal i1 = shape(f, origin, zero1);
    const WideReal g1 = quotient_at(f, zero1);
    const WideReal k = (g1 - quotient_at(f, zero2)) / (i1 - shape(f, origin, zero2));
    at_zero = 1 / k;
    at_infinity = g1 - k * i1;
    const bool found = is_finite(at_zero) && is_finite(at_infinity) && at_infinity != 0;
    return found ? RemovalFault::none : RemovalFault::double_roots_missing;
}

// The shape with residue 1 at x.
WideReal shape(const WorkingFunction& g, const ShiftPole& pole, WideReal x) {
    if (pole.place == ShiftPole::Place::infinity) return 1;
    return (1 - x) / (x - (pole.place == ShiftPole::Place::zero ? g.x0 : pole.x));
}

// G <- G - residue times the shape of a pole that G has.
RemovalFault subtract_shape(WorkingFunction& g, const ShiftPole& pole, WideReal residue) {
    ReactanceRoots removed = g.DENOMR;
    removed.multiplier *= -residue;
    if (pole.place != ShiftPole::Place::infinity) {
        if (!cancel_root(removed, pole.place == ShiftPole::Place::zero ? g.x0 : pole.x)) {
            return RemovalFault::pole_missing;
        }
        removed.append(1);
        removed.multiplier = -removed.multiplier;
    }
    return sumOfProducts(g.ANUMR, removed, g.ANUMR) ? RemovalFault::none : RemovalFault::roots_missing;
}

// Whether G = I/s has the pole; `matched` is the root as the list has it.
bool pole_present(const WorkingFunction& f, const ShiftPole& pole, WideReal& matched) {
    switch (pole.place) {
        case ShiftPole::Place::zero: matched = f.x0; return has_pole_at_zero(f);
        case ShiftPole::Place::infinity: matched = 1; return has_pole_at_infinity(f);
        case ShiftPole::Place::finite: break;
    }
    ReactanceRoots poles = f.DENOMR;
    static_cast<void>(cancel_root(poles, f.x0));
    const int i = nearest_root(poles, pole.x, f.digits);
    if (i > 0) matched = poles.root(i);
    return i > 0;
}

bool same(WideReal p, WideReal q) { return abs(p - q) < abs(p) * same_point; }

bool take_zero(WorkingFunction& g, WideReal zero) { return removeRoot(g.ANUMR, zero, g.digits); }

ShiftValues values_of(const WorkingFunction& f, const ShiftPole& pole, WideReal residue) {
    switch (pole.place) {
        case ShiftPole::Place::zero: return {0, 1 / residue, true};
        case ShiftPole::Place::infinity: return {0, residue, true};
        case ShiftPole::Place::finite: break;
    }
    const WideReal u = (1 - f.x0) * residue;
    return {(1 - pole.x) / u, u / (f.x0 - pole.x), true};
}

RemovalFault single_shift(WorkingFunction& f, const ShiftPole& pole, WideReal zero, ShiftValues& out) {
    if (pole.place == ShiftPole::Place::finite) {
        const RemovalFault fault = finite(f, RemovalMode::shifting, pole.x, zero, out.value1, out.value2);
        out.removed = fault == RemovalFault::none;
        return fault;
    }
    const ExtremeSide side = pole.place == ShiftPole::Place::zero ? ExtremeSide::zero : ExtremeSide::infinity;
    const RemovalFault fault = extreme(f, RemovalMode::shifting, side, zero, out.value2);
    out.removed = fault == RemovalFault::none;
    return fault;
}

}  // namespace

}  // namespace kavrel
