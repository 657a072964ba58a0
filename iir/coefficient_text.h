// Numbers of a table, in 13 columns each: decimal, or as words of a digital machine.
//
// A word has 32 bits in two's complement, f of them behind the point: round(x 2^f), a half away from zero, saturated,
// shown as eight hexadecimal digits. All numbers of a table have the same f = 31 - i, where i >= 0 is the least one
// with |x| <= 2^i for each of them: numbers up to 1 are fractions, and what is exactly 2^i is the largest word.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "iir/iir_request.h"

namespace kavrel {

inline constexpr int coefficient_width = 13;

class CoefficientText {
public:
    // `numbers` are all that the table shows.
    CoefficientText(DisplayFormat format, std::span<const double> numbers);

    [[nodiscard]] std::string operator()(double x) const;  // 1P,E13.6, or the word at the right end
    [[nodiscard]] std::string_view name() const;           // "decimal", "hexadecimal"
    [[nodiscard]] std::string note() const;                // "32-bit words, 30 fraction bits"; of decimals blank
    [[nodiscard]] int fraction_bits() const { return fraction_bits_; }  // f, negative from 2^32 on

private:
    DisplayFormat format_;
    int fraction_bits_ = 31;
};

// The 1 that leads each factor of H(z) while its other numbers are words.
inline constexpr std::string_view leading_one = " 1.00000D+00";

}  // namespace kavrel
