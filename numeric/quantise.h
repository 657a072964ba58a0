// Numbers brought to a finite word, and arithmetic whose products are.
#pragma once

#include <algorithm>
#include <cmath>

#include "numeric/lanes.h"
#include "shell/word_length.h"

namespace kavrel {

// x with |bits| bits behind the point: of its value where `bits` is negative (fixed point), else of its mantissa in
// [1, 2) (floating point). The magnitude is rounded, halves up, or cut off; the sign stays, and a fixed word that
// becomes 0 has none. |bits| is 1 to 49; what is not finite stays as it is.
[[nodiscard]] double quantise(double x, int bits, bool round);
[[nodiscard]] double quantise(double x, const WordLength& word);

// quantise(x y) of a fixed word, for the exact product, which may need more digits than a double has: so it is what
// integers of such words give, as long as the result times 2^bits stays below 2^52.
[[nodiscard]] double quantise_product(double x, double y, const WordLength& word);

// What the equations of a filter do with their numbers, whose type is Value. Unquantised numbers are doubles as they
// are, or two at once, each as it is by itself.
template <class Number>
struct UnquantisedOf {
    using Value = Number;
    [[nodiscard]] Value product(double coefficient, Value value) const { return coefficient * value; }
    [[nodiscard]] Value quantised(Value value) const { return value; }
    [[nodiscard]] Value state(Value value) const { return value; }
};
using Unquantised = UnquantisedOf<double>;

// Products, and some sums, are quantised; states are watched, but not limited.
class WordArithmetic {
public:
    using Value = double;
    explicit WordArithmetic(const WordLength& word) : word_(word) {}

    [[nodiscard]] double product(double coefficient, double value) const {
        return word_.number_form == NumberForm::fixed_point ? quantise_product(coefficient, value, word_)
                                                            : quantised(coefficient * value);
    }
    [[nodiscard]] double quantised(double value) const { return quantise(value, word_); }
    [[nodiscard]] double state(double value) {
        largest_state_ = std::max(largest_state_, std::fabs(value));
        return value;
    }

    [[nodiscard]] double largest_state() const { return largest_state_; }

private:
    WordLength word_;
    double largest_state_ = 0;  // magnitude
};

// The same for two numbers at once.
class PairedWords {
public:
    using Value = LanesOf<double>::Type;
    explicit PairedWords(const WordLength& word) : in_(word) {}

    [[nodiscard]] Value product(double coefficient, Value value) const {
        return Value{in_.product(coefficient, value[0]), in_.product(coefficient, value[1])};
    }
    [[nodiscard]] Value quantised(Value value) const { return Value{in_.quantised(value[0]), in_.quantised(value[1])}; }
    [[nodiscard]] Value state(Value value) { return Value{in_.state(value[0]), in_.state(value[1])}; }

    [[nodiscard]] double largest_state() const { return in_.largest_state(); }

private:
    WordArithmetic in_;
};

}  // namespace kavrel
