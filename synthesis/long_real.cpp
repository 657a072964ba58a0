#include "synthesis/long_real.h"

#include <bit>
#include <cmath>
#include <cstddef>

#include "shell/whole_part.h"

namespace kavrel {

namespace {

__extension__ using Wide = unsigned __int128;

constexpr int bits_of_limb = 64;

}  // namespace

LongReal::LongReal(long double x) {
    if (x == 0) return;
    if (!std::isfinite(x)) {
        sign_ = not_a_number;
        return;
    }
    sign_ = x < 0 ? -1 : 1;
    const long double m = std::frexp(std::fabs(x), &exponent_);
    limb_[limbs - 1] = whole_part<std::uint64_t>(std::ldexp(m, bits_of_limb));
}

long double LongReal::rounded() const {
    if (!is_finite()) return std::nanl("");
    if (sign_ == 0) return 0;
    const long double high = std::ldexp(static_cast<long double>(limb_[limbs - 1]), exponent_ - bits_of_limb);
    const long double low = std::ldexp(static_cast<long double>(limb_[limbs - 2]), exponent_ - 2 * bits_of_limb);
    return static_cast<long double>(sign_) * (high + low);
}

LongReal LongReal::undefined() {
    LongReal x;
    x.sign_ = not_a_number;
    return x;
}

int LongReal::compare_magnitude(const LongReal& y) const {
    if (exponent_ != y.exponent_) return exponent_ < y.exponent_ ? -1 : 1;
    for (std::size_t i = limbs; i-- > 0;) {
        if (limb_[i] != y.limb_[i]) return limb_[i] < y.limb_[i] ? -1 : 1;
    }
    return 0;
}

void LongReal::normalise() {
    int empty = 0;
    while (empty < limbs && limb_[limbs - 1] == 0) {
        for (std::size_t i = limbs - 1; i > 0; --i) limb_[i] = limb_[i - 1];
        limb_[0] = 0;
        ++empty;
    }
    if (empty == limbs) {
        sign_ = 0;
        exponent_ = 0;
        return;
    }
    const int shift = std::countl_zero(limb_[limbs - 1]);
    exponent_ -= empty * bits_of_limb + shift;
    if (shift == 0) return;
    for (std::size_t i = limbs - 1; i > 0; --i) {
        limb_[i] = (limb_[i] << shift) | (limb_[i - 1] >> (bits_of_limb - shift));
    }
    limb_[0] <<= shift;
}

LongReal operator+(const LongReal& x, const LongReal& y) {
    if (!x.is_finite() || !y.is_finite()) return LongReal::undefined();
    if (x.sign_ == 0) return y;
    if (y.sign_ == 0) return x;
    const bool x_larger = x.compare_magnitude(y) >= 0;
    LongReal sum = x_larger ? x : y;
    LongReal small = x_larger ? y : x;

    // Down to the exponent of the larger one.
    const int distance = sum.exponent_ - small.exponent_;
    if (distance >= LongReal::limbs * bits_of_limb) return sum;
    const auto whole = static_cast<std::size_t>(distance / bits_of_limb);
    const int part = distance % bits_of_limb;
    for (std::size_t i = 0; i < LongReal::limbs; ++i) {
        const std::size_t from = i + whole;
        const std::uint64_t low = from < LongReal::limbs ? small.limb_[from] : 0;
        const std::uint64_t high = from + 1 < LongReal::limbs ? small.limb_[from + 1] : 0;
        small.limb_[i] = part == 0 ? low : (low >> part) | (high << (bits_of_limb - part));
    }

    if (sum.sign_ == small.sign_) {
        Wide carry = 0;
        for (std::size_t i = 0; i < LongReal::limbs; ++i) {
            carry += Wide{sum.limb_[i]} + small.limb_[i];
            sum.limb_[i] = static_cast<std::uint64_t>(carry);
            carry >>= bits_of_limb;
        }
        if (carry != 0) {
            for (std::size_t i = 0; i + 1 < LongReal::limbs; ++i) {
                sum.limb_[i] = (sum.limb_[i] >> 1) | (sum.limb_[i + 1] << (bits_of_limb - 1));
            }
            sum.limb_[LongReal::limbs - 1] =
                (sum.limb_[LongReal::limbs - 1] >> 1) | (std::uint64_t{1} << (bits_of_limb - 1));
            ++sum.exponent_;
        }
        return sum;
    }
    std::uint64_t borrow = 0;
    for (std::size_t i = 0; i < LongReal::limbs; ++i) {
        const Wide difference = Wide{sum.limb_[i]} - small.limb_[i] - borrow;
        sum.limb_[i] = static_cast<std::uint64_t>(difference);
        borrow = static_cast<std::uint64_t>(difference >> bits_of_limb) & 1;
    }
    sum.normalise();
    return sum;
}

LongReal operator*(const LongReal& x, const LongReal& y) {
    if (!x.is_finite() || !y.is_finite()) return LongReal::undefined();
    if (x.sign_ == 0 || y.sign_ == 0) return {};
    std::array<std::uint64_t, 2 * LongReal::limbs> product{};
    for (std::size_t i = 0; i < LongReal::limbs; ++i) {
        if (x.limb_[i] == 0) continue;
        Wide carry = 0;
        for (std::size_t j = 0; j < LongReal::limbs; ++j) {
            carry += Wide{x.limb_[i]} * y.limb_[j] + product[i + j];
            product[i + j] = static_cast<std::uint64_t>(carry);
            carry >>= bits_of_limb;
        }
        product[i + LongReal::limbs] = static_cast<std::uint64_t>(carry);
    }
    // 1/4 <= m m' < 1: at most one bit has to move up.
    const int shift = std::countl_zero(product.back());
    LongReal result;
    result.sign_ = x.sign_ * y.sign_;
    result.exponent_ = x.exponent_ + y.exponent_ - shift;
    for (std::size_t i = 0; i < LongReal::limbs; ++i) {
        const std::size_t k = i + LongReal::limbs;
        result.limb_[i] = shift == 0 ? product[k] : (product[k] << shift) | (product[k - 1] >> (bits_of_limb - shift));
    }
    return result;
}

// Newton's iteration for 1/y, r <- r + r (1 - y r), doubles the right bits of the 63 that it starts with; a last step
// corrects the quotient itself.
LongReal operator/(const LongReal& x, const LongReal& y) {
    if (!x.is_finite() || !y.is_finite() || y.sign_ == 0) return LongReal::undefined();
    LongReal mantissa = y;
    mantissa.exponent_ = 0;
    LongReal r = 1 / mantissa.rounded();
    for (int turn = 0; turn < 3; ++turn) r += r * (1 - mantissa * r);
    LongReal quotient = x * r;
    quotient += r * (x - mantissa * quotient);
    if (quotient.sign_ != 0) quotient.exponent_ -= y.exponent_;
    return quotient;
}

// Newton's iteration for 1/sqrt(x), r <- r + r (1 - x r^2)/2.
LongReal sqrt(const LongReal& x) {
    if (!x.is_finite() || x.sign_ < 0) return LongReal::undefined();
    if (x.sign_ == 0) return x;
    LongReal mantissa = x;
    mantissa.exponent_ = x.exponent_ % 2;
    const int half = (x.exponent_ - mantissa.exponent_) / 2;
    LongReal r = 1 / std::sqrt(mantissa.rounded());
    for (int turn = 0; turn < 3; ++turn) r += shifted(r * (1 - mantissa * r * r), -1);
    LongReal root = mantissa * r;
    root += shifted(r * (mantissa - root * root), -1);
    return shifted(root, half);
}

}  // namespace kavrel
