#include "approximation/digital_function.h"

#include <cmath>

#include "numeric/guarded.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

using Number = Complex<Wide>;

constexpr Wide as_good_as_zero = 1e-15L;  // of a zero of H: next to 0 it is one that rounding has moved

template <class List>
void append(const HalfRoot& half, List& re, List& im, int& count) {
    for (int member = 0; member < half.size(); ++member) {
        ++count;
        re(count) = static_cast<double>(half.root.re);
        im(count) = static_cast<double>(member == 0 ? half.root.im : -half.root.im);
    }
}

Number quotient(Number n, Number d) { return cdiv(n, d, solver_decades); }
Number product_of(const HalfRoots& roots, Number inverse);
Number chain_at(const HalfRoots& poles, bool first, Number inverse);

}  // namespace

int count_of(const HalfRoots& roots) {
    int count = 0;
    for (const HalfRoot& root : roots) count += root.size();
    return count;
}

HalfRoots zeros_of(const DigitalFunction& f) { return half_roots(f.ZEROS_RE, f.ZEROS_IM, f.zeroCount); }

HalfRoots poles_of(const DigitalFunction& f) {
    HalfRoots poles = half_roots(f.POLES_RE, f.POLES_IM, f.poleCount);
    int i = 1;
    for (HalfRoot& pole : poles) pole.chain = f.LARR(i), i += pole.size();
    return poles;
}

void set_zeros(const HalfRoots& zeros, DigitalFunction& f) {
    f.zeroCount = 0;
    for (const HalfRoot& zero : zeros) {
        if (cabs(zero.root) > as_good_as_zero) append(zero, f.ZEROS_RE, f.ZEROS_IM, f.zeroCount);
    }
}

void set_poles(const HalfRoots& poles, DigitalFunction& f) {
    f.poleCount = 0;
    for (const HalfRoot& pole : poles) {
        for (int member = 1; member <= pole.size(); ++member) f.LARR(f.poleCount + member) = pole.chain;
        append(pole, f.POLES_RE, f.POLES_IM, f.poleCount);
    }
}

Number value_at(const DigitalFunction& f, Number z) {
    const Number inverse = cinv(z.re, z.im);
    return Wide{f.zMultiplier} * quotient(product_of(zeros_of(f), inverse), product_of(poles_of(f), inverse));
}

void order_chains(Number z, DigitalFunction& f) {
    const HalfRoots poles = poles_of(f);
    const Number inverse = cinv(z.re, z.im);
    const Number difference = chain_at(poles, false, inverse) - chain_at(poles, true, inverse);
    if (quotient(difference, value_at(f, z)).re > 0) return;
    for (int i = 1; i <= f.poleCount; ++i) f.LARR(i) = f.LARR(i) == 1 ? 2 : 1;
}

bool is_usable(const DigitalFunction& f) {
    return all_finite(f.ZEROS_RE, f.ZEROS_IM, f.POLES_RE, f.POLES_IM, f.zMultiplier) && std::isnormal(f.zMultiplier);
}

namespace {

// 1 - root z^-1, of a pair times that of its conjugate.
Number factor(const HalfRoot& half, Number inverse) {
    const Number one = Number{1, 0} - half.root * inverse;
    return half.pair ? one * (Number{1, 0} - conjugate(half.root) * inverse) : one;
}

Number product_of(const HalfRoots& roots, Number inverse) {
    Number product{1, 0};
    for (const HalfRoot& half : roots) product *= factor(half, inverse);
    return product;
}

// prod (z^-1 - pole*)/(1 - pole z^-1).
Number chain_at(const HalfRoots& poles, bool first, Number inverse) {
    Number value{1, 0};
    for (const HalfRoot& half : poles) {
        if ((half.chain == 1) != first) continue;
        Number mirrored = inverse - half.root;
        if (half.pair) mirrored *= inverse - conjugate(half.root);
        value *= quotient(mirrored, factor(half, inverse));
    }
    return value;
}

}  // namespace

}  // namespace kavrel
