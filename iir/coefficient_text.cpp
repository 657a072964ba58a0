#include "iir/coefficient_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include <fmt/format.h>

#include "shell/edit.h"
#include "shell/edited.h"
#include "shell/whole_part.h"

namespace kavrel {

CoefficientText::CoefficientText(DisplayFormat format, std::span<const double> numbers) : format_(format) {
    double largest = 0;
    for (const double x : numbers) largest = std::max(largest, std::fabs(x));
    int i = 0;
    const double mantissa = std::frexp(largest, &i);  // largest = mantissa 2^i, 1/2 <= mantissa < 1
    if (mantissa == 0.5) --i;
    fraction_bits_ = 31 - std::max(i, 0);
}

std::string CoefficientText::operator()(double x) const {
    if (format_ == DisplayFormat::decimal) return edited<"(1P,E13.6)">(x + 0.0);  // a zero has no sign
    const auto word = whole_part<std::int32_t>(std::round(std::ldexp(x, fraction_bits_)));
    const std::string digits = fmt::format("{:08X}", static_cast<std::uint32_t>(word));
    return edit_a(digits, coefficient_width);
}

std::string_view CoefficientText::name() const { return format_ == DisplayFormat::decimal ? "decimal" : "hexadecimal"; }

std::string CoefficientText::note() const {
    if (format_ == DisplayFormat::decimal) return {};
    return edited<"('32-bit words, ',I0,' fraction bits')">(fraction_bits_);
}

}  // namespace kavrel
