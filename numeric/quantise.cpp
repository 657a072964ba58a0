#include "numeric/quantise.h"

namespace kavrel {

namespace {

double quantise_fixed(double x, double rest, int bits, bool round);

}  // namespace

double quantise(double x, int bits, bool round) {
    if (x == 0 || !std::isfinite(x)) return x;
    if (bits < 0) return quantise_fixed(x, 0, -bits, round);
    int exponent = 0;
    const double mantissa = 2 * std::frexp(x, &exponent);
    return std::ldexp(quantise_fixed(mantissa, 0, bits, round), exponent - 1);
}

double quantise(double x, const WordLength& word) {
    const bool fixed = word.number_form == NumberForm::fixed_point;
    return quantise(x, fixed ? -word.bits : word.bits, word.method == WordMethod::round);
}

double quantise_product(double x, double y, const WordLength& word) {
    const double product = x * y;
    if (product == 0 || !std::isfinite(product)) return product;
    return quantise_fixed(product, std::fma(x, y, -product), word.bits, word.method == WordMethod::round);
}

namespace {

// Of x + rest, where the rest is at most half a unit in the last place of x.
double quantise_fixed(double x, double rest, int bits, bool round) {
    double whole = 0;
    const double fraction = std::ldexp(std::modf(std::fabs(x), &whole), bits);
    const double beyond = std::copysign(1.0, x) * rest;
    double digits = std::floor(fraction);
    const double left = fraction - digits;
    if (round && (left > 0.5 || (left == 0.5 && beyond >= 0))) ++digits;
    if (!round && left == 0 && beyond < 0) --digits;
    return std::copysign(whole + std::ldexp(digits, -bits), x);
}

}  // namespace

}  // namespace kavrel
