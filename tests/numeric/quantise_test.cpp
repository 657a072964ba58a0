// Words against whole steps in long doubles, and products of words against exact ones.
#include "numeric/quantise.h"

#include <limits>

#include <gtest/gtest.h>

#include "numeric/long_real.h"
#include "tests/support/in_word.h"
#include "tests/support/numbers.h"

namespace kavrel {
namespace {

// Both methods and number forms, both signs.
void expect_word(double x, int bits) {
    for (const auto method : {WordMethod::round, WordMethod::truncate}) {
        for (const auto form : {NumberForm::floating_point, NumberForm::fixed_point}) {
            const WordLength word{bits, method, form};
            for (const double value : {x, -x}) {
                ASSERT_EQ(quantise(value, word), in_word(value, word)) << value << ' ' << bits << name_of(method);
            }
        }
    }
}

TEST(Quantise, IsOfWholeSteps) {
    using Double = std::numeric_limits<double>;
    RandomNumbers random(931);
    for (int bits = 1; bits <= 49; ++bits) {
        const double step = std::ldexp(1, -bits);
        for (const double x : {0.0, 2 - step / 2, 2 - step / 4, step / 2, step * 0.4999, 1.5 * step, 1 + 1.5 * step,
                               1 - 0x1p-53, 0x1p52 + 1, 1e150, Double::min(), Double::denorm_min(),
                               27 * Double::denorm_min(), Double::min() * (1 - step)}) {
            expect_word(x, bits);
        }
        for (int n = 0; n < 200; ++n) {
            expect_word(random.integer(0, 5000) / 1024.0, bits);
            expect_word(random.between(0, 4), bits);
            expect_word(std::ldexp(random.between(1, 2), random.integer(-1074, 1000)), bits);
        }
    }
    for (const int bits : {12, -12})
        EXPECT_TRUE(std::isinf(quantise(-HUGE_VAL, bits, true)) && std::isnan(quantise(NAN, bits, true)));
    EXPECT_FALSE(std::signbit(quantise(-1e-9, -12, true))) << "nothing has no sign";
}

// Of random products, and of those that a double holds as a half step, or a whole one, and that are not quite that.
TEST(Quantise, ProductOfAFixedWordIsOfTheExactProduct) {
    RandomNumbers random(932);
    for (int n = 0; n < 40000; ++n) {
        const WordLength word{random.integer(1, 30), WordMethod{1 + n % 2}, NumberForm::fixed_point};
        double x = random.between(-2, 2), y = random.spread(1e-9, 1e6);
        if (n % 8 < 4) {
            const double close = std::ldexp(1, -random.integer(20, 40)) * (random.coin() ? 1 : -1);
            x = random.integer(1, 9) * (1 + close) * (random.coin() ? 1 : -1);
            y = std::ldexp(n % 8 < 2 ? 1 - close : 1 + close, -word.bits - random.integer(-2, 2));
        }
        const LongReal half = word.method == WordMethod::round ? 0.5 : 0.0;
        const LongReal steps = floor(shifted(abs(LongReal(x) * LongReal(y)), word.bits) + half);
        const double exact = std::copysign(static_cast<double>(shifted(steps, -word.bits)), x);
        ASSERT_EQ(quantise_product(x, y, word), exact) << x << ' ' << y << ' ' << word.bits;
    }
    EXPECT_EQ(quantise_product(1e200, 1e200, {8, WordMethod::round, NumberForm::fixed_point}), HUGE_VAL);
}

}  // namespace
}  // namespace kavrel
