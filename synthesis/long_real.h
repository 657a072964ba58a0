// A real number of 512 bits, 154 decimal digits.
//
// Extraction of a ladder from one end magnifies the rounding of its polynomials step by step. In a deep stop band the
// immittance has pairs of roots at a relative distance of |q/f|, 1e-69 in an equal ripple filter of degree 50, and what
// follows the first branches hangs on that distance. So the chain of removals runs in numbers that hold its square.
//
// value = sign * m * 2^exponent with 1/2 <= m < 1, m = (limb[7] 2^448 + ... + limb[0])/2^512. Sums, products, quotients
// and roots are right to within 2^-508. Division by 0 and the root of a negative number give a number that is not
// finite, and so does all that is made of it; comparisons with it are false.
#pragma once

#include <array>
#include <cstdint>
#include <type_traits>

namespace kavrel {

class LongReal {
public:
    constexpr LongReal() = default;
    LongReal(long double x);                                       // NOLINT: exact
    LongReal(double x) : LongReal(static_cast<long double>(x)) {}  // NOLINT
    LongReal(int x) : LongReal(static_cast<long double>(x)) {}     // NOLINT

    [[nodiscard]] long double rounded() const;
    [[nodiscard]] bool is_finite() const { return sign_ != not_a_number; }
    [[nodiscard]] int sign() const { return is_finite() ? sign_ : 0; }

    friend LongReal operator-(LongReal x) {
        if (x.is_finite()) x.sign_ = -x.sign_;
        return x;
    }
    friend LongReal operator+(const LongReal& x, const LongReal& y);
    friend LongReal operator-(const LongReal& x, const LongReal& y) { return x + -y; }
    friend LongReal operator*(const LongReal& x, const LongReal& y);
    friend LongReal operator/(const LongReal& x, const LongReal& y);
    LongReal& operator+=(const LongReal& y) { return *this = *this + y; }
    LongReal& operator-=(const LongReal& y) { return *this = *this - y; }
    LongReal& operator*=(const LongReal& y) { return *this = *this * y; }
    LongReal& operator/=(const LongReal& y) { return *this = *this / y; }

    // Every number has one form.
    friend constexpr bool operator==(const LongReal& x, const LongReal& y) {
        return x.sign_ != not_a_number && x.sign_ == y.sign_ && x.exponent_ == y.exponent_ && x.limb_ == y.limb_;
    }
    friend bool operator<(const LongReal& x, const LongReal& y) { return comparable(x, y) && (x - y).sign_ < 0; }
    friend bool operator>(const LongReal& x, const LongReal& y) { return y < x; }
    friend bool operator<=(const LongReal& x, const LongReal& y) { return comparable(x, y) && (x - y).sign_ <= 0; }
    friend bool operator>=(const LongReal& x, const LongReal& y) { return y <= x; }

    friend LongReal abs(LongReal x) { return x.sign() < 0 ? -x : x; }
    friend LongReal sqrt(const LongReal& x);
    // x 2^power.
    friend LongReal shifted(LongReal x, int power) {
        if (x.sign() != 0) x.exponent_ += power;
        return x;
    }

private:
    static constexpr int not_a_number = 2;
    static constexpr int limbs = 8;

    [[nodiscard]] static bool comparable(const LongReal& x, const LongReal& y) {
        return x.is_finite() && y.is_finite();
    }
    [[nodiscard]] static LongReal undefined();
    [[nodiscard]] int compare_magnitude(const LongReal& y) const;
    void normalise();

    int sign_ = 0;  // -1, 0, 1, or not_a_number
    int exponent_ = 0;
    std::array<std::uint64_t, limbs> limb_{};
};

static_assert(std::is_trivially_copyable_v<LongReal>);

// Relative rounding of a product of long numbers, with a margin: a sum whose terms cancel to less is 0.
inline constexpr long double long_rounding = 1e-148L;

}  // namespace kavrel
