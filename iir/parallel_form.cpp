#include "iir/parallel_form.h"

#include <cmath>

#include "numeric/guarded.h"
#include "shell/analysis_result.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

constexpr std::string_view too_many_zeros = "More zeros than poles, no parallel form";

using Root = Complex<Wide>;

// Which poles take part, in the order of the blocks.
struct PoleOrder {
    Table<int, 51> at;  // [i] 1 <= i <= count: place of the pole in the list
    int count = 0;
    int in_pairs = 0;  // the first ones, in conjugate pairs
};
PoleOrder pairs_first(const DigitalRoots& roots);
void push_apart(DigitalRoots& roots, const PoleOrder& order);

struct Roots {
    Table<Root, 51> of;
    int count = 0;
};
Roots poles_in(const PoleOrder& order, const DigitalRoots& roots);
Roots zeros_off_origin(const DigitalRoots& roots);

Root residue(Wide level, const Roots& zeros, const Roots& poles, int i);
Wide ratio_at_infinity(Wide level, const Roots& zeros, const Roots& poles);
void append_fractions(const Roots& poles, const Table<Root, 51>& residues, ParallelForm& form);
void append_line(Wide slope, const Roots& zeros, const Roots& poles, ParallelForm& form);

}  // namespace

Refusal makeParallel(IirFilter& filter) {
    DigitalRoots roots = filter.roots;
    const PoleOrder order = pairs_first(roots);
    push_apart(roots, order);
    const Roots poles = poles_in(order, roots);
    const Roots zeros = zeros_off_origin(roots);
    const int excess = zeros.count - poles.count;
    if (excess > 1) return too_many_zeros;

    const Wide level = static_cast<Wide>(roots.ZMULT) / static_cast<Wide>(roots.PMULT);
    Table<Root, 51> residues;
    for (int i = 1; i <= poles.count; ++i) residues(i) = residue(level, zeros, poles, i);
    ParallelForm form;
    append_fractions(poles, residues, form);
    const Wide limit = ratio_at_infinity(level, zeros, poles);
    if (excess == 0) form.AO = static_cast<double>(limit);
    if (excess == 1) append_line(limit, zeros, poles, form);
    if (form.NPAR == 0) form.NPAR = 1;
    if (!all_finite(form.AL, form.BE, form.GA, form.DE, form.AO)) return results_out_of_range;
    filter.parallel = form;
    filter.roots = roots;
    return {};
}

namespace {

PoleOrder pairs_first(const DigitalRoots& roots) {
    PoleOrder order;
    const auto append = [&](int i) { order.at(++order.count) = i; };
    for (int i = 1; i <= roots.NP; ++i) {
        if (roots.PI(i) != 0) append(i);
    }
    order.in_pairs = order.count;
    for (int i = 1; i <= roots.NP; ++i) {
        if (roots.PI(i) == 0 && roots.QR(i) != 0) append(i);
    }
    return order;
}

// A pole that was moved goes outward only, and those before it have their place: so it passes each of them once.
void push_apart(DigitalRoots& roots, const PoleOrder& order) {
    constexpr double close = 1e-10, push = 1.00000001;
    const auto pole = [&](int i) { return Complex<double>{roots.QR(order.at(i)), roots.PI(order.at(i))}; };
    const auto coincides = [&](int i) {
        for (int j = 1; j < i; ++j) {
            if (cabs(pole(i) - pole(j)) <= close * cabs(pole(j))) return true;
        }
        return false;
    };
    for (int i = 1; i <= order.count; ++i) {
        const bool pair = i <= order.in_pairs;
        while (coincides(i)) {
            const Complex<double> before = pole(i);
            for (int k = order.at(i); k <= order.at(i) + (pair ? 1 : 0); ++k) roots.QR(k) *= push, roots.PI(k) *= push;
            if (pole(i) == before) break;  // next to 0, where it does not move
        }
        if (pair) ++i;
    }
}

Roots poles_in(const PoleOrder& order, const DigitalRoots& roots) {
    Roots poles;
    for (int i = 1; i <= order.count; ++i) {
        const int k = order.at(i);
        poles.of(++poles.count) = {static_cast<Wide>(roots.QR(k)), static_cast<Wide>(roots.PI(k))};
    }
    return poles;
}

Roots zeros_off_origin(const DigitalRoots& roots) {
    Roots zeros;
    for (int i = 1; i <= roots.NZ; ++i) {
        const Root zero = {static_cast<Wide>(roots.ZR(i)), static_cast<Wide>(roots.ZI(i))};
        if (zero != Root{}) zeros.of(++zeros.count) = zero;
    }
    return zeros;
}

Root over(Root n, Root d) { return 1 / (d.re * d.re + d.im * d.im) * (n * conjugate(d)); }

// The factors of both products by turns, so that neither grows beyond all bounds.
Root residue(Wide level, const Roots& zeros, const Roots& poles, int i) {
    const Root pole = poles.of(i);
    Root value = {level, 0};
    int j = 0;
    for (int n = 1; n <= zeros.count || n <= poles.count; ++n) {
        if (n <= zeros.count) value *= over(pole - zeros.of(n), pole);
        if (++j != i && j <= poles.count) value = over(value * pole, pole - poles.of(j));
    }
    return value;
}

// The highest coefficient of the numerator in z^-1 over that of the denominator.
Wide ratio_at_infinity(Wide level, const Roots& zeros, const Roots& poles) {
    Root value = {level, 0};
    for (int n = 1; n <= zeros.count || n <= poles.count; ++n) {
        if (n <= zeros.count) value *= -zeros.of(n);
        if (n <= poles.count) value = over(value, -poles.of(n));
    }
    return value.re;
}

void append_fractions(const Roots& poles, const Table<Root, 51>& residues, ParallelForm& form) {
    for (int i = 1; i <= poles.count; i += 2) {
        const Root p1 = poles.of(i), a1 = residues(i);
        const int k = ++form.NPAR;
        if (i == poles.count) {
            form.AL(k) = static_cast<double>(a1.re);
            form.GA(k) = static_cast<double>(0 - p1.re);
            continue;
        }
        const Root p2 = poles.of(i + 1), a2 = residues(i + 1);
        form.AL(k) = static_cast<double>(a1.re + a2.re);
        form.BE(k) = static_cast<double>(0 - (a1 * p2 + a2 * p1).re);
        form.GA(k) = static_cast<double>(0 - (p1 + p2).re);
        form.DE(k) = static_cast<double>((p1 * p2).re);
    }
}

// What is left of a numerator of one degree more: `slope` z^-1 plus a constant.
void append_line(Wide slope, const Roots& zeros, const Roots& poles, ParallelForm& form) {
    Wide constant = 0;
    for (int n = 1; n <= poles.count; ++n) constant += over({1, 0}, poles.of(n)).re;
    for (int n = 1; n <= zeros.count; ++n) constant -= over({1, 0}, zeros.of(n)).re;
    form.AO = static_cast<double>(slope * constant);
    form.BE(++form.NPAR) = static_cast<double>(slope);
}

}  // namespace

}  // namespace kavrel
