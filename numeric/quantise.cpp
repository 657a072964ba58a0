#include "numeric/quantise.h"

#include <bit>
#include <cstdint>
#include <limits>

namespace kavrel {

namespace {

double quantise_mantissa(double x, int bits, bool round);
template <class Beyond>
double quantise_value(double x, int bits, bool round, const Beyond& beyond);

}  // namespace

double quantise(double x, int bits, bool round) {
    if (bits >= 0) return quantise_mantissa(x, bits, round);
    return quantise_value(x, -bits, round, [] { return 0.0; });
}

double quantise(double x, const WordLength& word) {
    const bool fixed = word.number_form == NumberForm::fixed_point;
    return quantise(x, fixed ? -word.bits : word.bits, word.method == WordMethod::round);
}

double quantise_product(double x, double y, const WordLength& word) {
    const double product = x * y;
    const auto beyond = [&] { return std::copysign(1.0, product) * std::fma(x, y, -product); };
    return quantise_value(product, word.bits, word.method == WordMethod::round, beyond);
}

namespace {

// A double has 52 bits of its mantissa behind the 1, with the exponent before them, which takes what is carried over.
double quantise_mantissa(double x, int bits, bool round) {
    constexpr double normal = std::numeric_limits<double>::min(), raise = 0x1p54;
    if (!std::isfinite(x) || x == 0) return x;
    if (std::fabs(x) < normal) return quantise_mantissa(x * raise, bits, round) / raise;
    const int cut = 52 - bits;
    const std::uint64_t last = std::uint64_t{1} << cut;
    const std::uint64_t up = std::bit_cast<std::uint64_t>(x) + (round ? last / 2 : 0);
    return std::bit_cast<double>(up & ~(last - 1));
}

// Of x and what is beyond its own digits, at most half a unit of the last one; asked for only where that decides. From
// 2^52 steps on a double has no digits behind a step, so a sum of that size is rounded to one, halves to even.
template <class Beyond>
double quantise_value(double x, int bits, bool round, const Beyond& beyond) {
    const double step = 1 / static_cast<double>(std::int64_t{1} << bits), top = 0x1p52 * step;
    const double size = std::fabs(x);
    if (!(size < top)) return x;
    double nearest = (size + top) - top;
    const double over = size - nearest;
    if (round && std::fabs(over) == step / 2) nearest = size + (beyond() < 0 ? -step / 2 : step / 2);
    if (!round && (over < 0 || (over == 0 && beyond() < 0))) nearest -= step;
    return std::copysign(nearest, x) + 0.0;  // what is cut to nothing has no sign
}

}  // namespace

}  // namespace kavrel
