#include "iir/cascade_pairing.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numeric/guarded.h"

namespace kavrel {

namespace {

// A factor with its roots: a conjugate pair, two real roots, or one.
struct Factor {
    double c1 = 0;
    double c2 = 0;
    HalfRoots roots;

    [[nodiscard]] bool first_order() const { return roots.size() == 1 && !roots[0].pair; }
    // Where it lies in the upper half plane; of two real roots halfway.
    [[nodiscard]] Complex<Wide> place() const {
        if (roots.size() == 1) return roots[0].root;
        return {(roots[0].root.re + roots[1].root.re) / 2, 0};
    }
};
using Factors = std::vector<Factor>;

enum class RealPairs { neighbours, opposites };
Factors factors_of(const HalfRoots& roots, RealPairs real_pairs);
void settle_on_circle(Factor& zero);
void sort_by_quality(Factors& poles);
Factors in_sections(Factors zeros, const Factors& poles);
int set_factors(const Factors& factors, Table<double, iir_section_limit>& c1, Table<double, iir_section_limit>& c2);
int set_roots(const Factors& factors, Table<double, 51>& re, Table<double, 51>& im);

}  // namespace

void pair_roots(IirFilter& filter) {
    DigitalRoots& roots = filter.roots;
    HalfRoots of_poles = half_roots(roots.QR, roots.PI, roots.NP);
    Table<int, iir_root_limit>& chains = filter.allpass.LARR;
    for (int i = 1; HalfRoot & pole : of_poles) pole.chain = chains(i), i += pole.size();
    Factors poles = factors_of(of_poles, RealPairs::neighbours);
    sort_by_quality(poles);
    Factors of_zeros = factors_of(half_roots(roots.ZR, roots.ZI, roots.NZ), RealPairs::opposites);
    for (Factor& zero : of_zeros) settle_on_circle(zero);
    const Factors zeros = in_sections(of_zeros, poles);

    filter.cascade = {};
    filter.cascade.CK = roots.ZMULT / roots.PMULT;
    filter.cascade.NNUM = set_factors(zeros, filter.cascade.C1N, filter.cascade.C2N);
    filter.cascade.NDEN = set_factors(poles, filter.cascade.C1D, filter.cascade.C2D);
    roots.NZ = set_roots(zeros, roots.ZR, roots.ZI);
    roots.NP = set_roots(poles, roots.QR, roots.PI);
    int next = 0;
    for (const Factor& factor : poles) {
        for (const HalfRoot& half : factor.roots) {
            for (int member = 1; member <= half.size(); ++member) chains(++next) = half.chain;
        }
    }
}

void take_function(const DigitalFunction& f, IirFilter& filter) {
    DigitalRoots& roots = filter.roots;
    roots = {};
    roots.NZ = f.zeroCount, roots.NP = f.poleCount;
    for (int i = 1; i <= f.zeroCount; ++i) roots.ZR(i) = f.ZEROS_RE(i), roots.ZI(i) = f.ZEROS_IM(i);
    for (int i = 1; i <= f.poleCount; ++i) roots.QR(i) = f.POLES_RE(i), roots.PI(i) = f.POLES_IM(i);
    roots.ZMULT = f.zMultiplier;
    filter.allpass = {};
    filter.allpass.LARR = f.LARR;
    filter.allpass.ALLPASS_OK = f.allpass_ok;
    pair_roots(filter);
}

namespace {

Factor pair_of(const HalfRoot& half) {
    const Wide re = half.root.re, im = half.root.im;
    return {static_cast<double>(-2 * re), static_cast<double>(re * re + im * im), {half}};
}

Factor real_pair(const HalfRoot& a, const HalfRoot& b) {
    const bool in_order = a.root.re >= b.root.re;
    return {static_cast<double>(-a.root.re - b.root.re), static_cast<double>(a.root.re * b.root.re),
            in_order ? HalfRoots{a, b} : HalfRoots{b, a}};
}

// Of an odd number of real roots the one in the middle is left, or one at 0: a pair with it would have no c2.
Factors factors_of(const HalfRoots& roots, RealPairs real_pairs) {
    Factors factors;
    HalfRoots reals;
    for (const HalfRoot& half : roots) {
        if (half.pair) {
            factors.push_back(pair_of(half));
        } else {
            reals.push_back(half);
        }
    }
    std::ranges::stable_sort(reals, {}, [](const HalfRoot& half) { return half.root.re; });
    Factors single;
    if (reals.size() % 2 == 1) {
        const auto zero = std::ranges::find_if(reals, [](const HalfRoot& half) { return half.root.re == 0; });
        const auto middle = reals.begin() + static_cast<std::ptrdiff_t>(reals.size() / 2);
        const auto left = zero != reals.end() ? zero : middle;
        single.push_back({static_cast<double>(-left->root.re), 0, {*left}});
        reals.erase(left);
    }
    const std::size_t count = reals.size();
    for (std::size_t i = 0; i < count / 2; ++i) {
        const bool opposites = real_pairs == RealPairs::opposites;
        factors.push_back(opposites ? real_pair(reals[i], reals[count - 1 - i])
                                    : real_pair(reals[2 * i], reals[2 * i + 1]));
    }
    factors.insert(factors.end(), single.begin(), single.end());
    return factors;
}

// A pair on the unit circle, to within the rounding of its parts, has c2 = 1: cut to a short word, the next number
// below 1 would take the pair far off.
void settle_on_circle(Factor& zero) {
    constexpr double rounding = 4e-16;
    if (zero.roots.size() == 1 && std::fabs(zero.c2 - 1) < rounding) zero.c2 = 1;
}

// The greatest first; that of a pole on the circle or beyond has no value and counts as the greatest.
void sort_by_quality(Factors& poles) {
    const auto quality = [](const Factor& factor) {
        const double c1 = factor.c1, c2 = factor.c2;
        if (!(c2 < 1)) return HUGE_VAL;
        return std::sqrt(std::fmax(0.0, (1 + c2 - c1) * (1 + c2 + c1))) / (1 - c2);
    };
    std::ranges::stable_sort(poles, [&](const Factor& a, const Factor& b) {
        if (a.first_order() != b.first_order()) return b.first_order();
        return quality(a) > quality(b);
    });
}

Wide distance(const Factor& pole, const Factor& zero) {
    Wide least = cabs(pole.place() - zero.roots[0].root);
    for (const HalfRoot& half : zero.roots) least = std::min(least, cabs(pole.place() - half.root));
    return least;
}

// The numerator factors in the order of their sections; more zeros than poles make sections of their own.
Factors in_sections(Factors zeros, const Factors& poles) {
    Factors sorted;
    for (const Factor& pole : poles) {
        if (zeros.empty()) break;
        const auto better = [&](const Factor& a, const Factor& b) {
            if (a.first_order() != b.first_order()) return a.first_order() == pole.first_order();
            return distance(pole, a) < distance(pole, b);
        };
        const auto nearest = std::ranges::min_element(zeros, better);
        sorted.push_back(*nearest);
        zeros.erase(nearest);
    }
    sorted.insert(sorted.end(), zeros.begin(), zeros.end());
    return sorted;
}

int set_factors(const Factors& factors, Table<double, iir_section_limit>& c1, Table<double, iir_section_limit>& c2) {
    int count = 0;
    for (const Factor& factor : factors) {
        ++count;
        c1(count) = factor.c1, c2(count) = factor.c2;
    }
    return count;
}

int set_roots(const Factors& factors, Table<double, 51>& re, Table<double, 51>& im) {
    int count = 0;
    const auto append = [&](Wide x, Wide y) {
        ++count, re(count) = static_cast<double>(x), im(count) = static_cast<double>(y);
    };
    for (const Factor& factor : factors) {
        for (const HalfRoot& half : factor.roots) {
            append(half.root.re, half.root.im);
            if (half.pair) append(half.root.re, -half.root.im);
        }
    }
    return count;
}

}  // namespace

}  // namespace kavrel
