#include "shell/edit.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace kavrel {

namespace {

// A rounded magnitude, 0.DIGITS * 10**point.
struct Decimal {
    std::string digits;
    int point = 0;
};

Decimal rounded_to_digits(double value, int count);
Decimal rounded_to_decimals(double value, int decimals);
std::string with_point(std::string digits, int point);
std::string exponent(char letter, int power, int exp_digits);
std::string exponential(double value, int width, int decimals, char letter, int exp_digits, int scale);
std::string field(bool negative, std::string body, int width);
std::string not_finite(double value, int width);

std::string repeated(char c, int n) { return n > 0 ? std::string(static_cast<std::size_t>(n), c) : std::string(); }
std::string zeros(int n) { return repeated('0', n); }
std::string asterisks(int width) { return repeated('*', width); }
int length(std::string_view text) { return static_cast<int>(text.size()); }

}  // namespace

std::string edit_i(long long value, int width, int min_digits) {
    if (value == 0 && min_digits == 0) return edit_x(width);
    auto digits = std::to_string(value);
    if (value < 0) digits.erase(0, 1);
    return field(value < 0, zeros(min_digits - length(digits)) + digits, width);
}

std::string edit_f(double value, int width, int decimals, int scale) {
    if (!std::isfinite(value)) return not_finite(value, width);
    if (decimals + scale < 0) return asterisks(width);
    const auto x = rounded_to_decimals(value, decimals + scale);
    return field(std::signbit(value), with_point(x.digits, x.point + scale), width);
}

std::string edit_e(double value, int width, int decimals, int exp_digits, int scale) {
    return exponential(value, width, decimals, 'E', exp_digits, scale);
}

std::string edit_d(double value, int width, int decimals, int scale) {
    return exponential(value, width, decimals, 'D', 0, scale);
}

std::string edit_en(double value, int width, int decimals) {
    if (!std::isfinite(value)) return not_finite(value, width);
    // The decade after rounding to the longest mantissa, 100 to 999: what carries there carries in a shorter one, too.
    const int decade = rounded_to_digits(value, decimals + 3).point - 1;
    const int lead = ((decade % 3) + 3) % 3 + 1;
    auto x = rounded_to_digits(value, decimals + lead);
    const bool carried = x.point > decade + 1;  // 9.996 to 10.00, one digit more; 999.6 to 1.0E+03
    const int before = carried ? lead % 3 + 1 : lead;
    x.digits.resize(static_cast<std::size_t>(before) + static_cast<std::size_t>(decimals), '0');
    return field(std::signbit(value), with_point(x.digits, before) + exponent('E', x.point - before, 0), width);
}

std::string edit_g(double value, int width, int decimals, int scale) {
    if (!std::isfinite(value)) return not_finite(value, width);
    if (decimals < 1) return asterisks(width);
    const int point = rounded_to_digits(value, decimals).point;
    if (point < 0 || point > decimals) return edit_e(value, width, decimals, 0, scale);
    if (width <= 4) return asterisks(width);
    const auto text = edit_f(value, width - 4, decimals - point);
    return text.front() == '*' ? asterisks(width) : text + edit_x(4);
}

std::string edit_a(std::string_view text) { return std::string(text); }

std::string edit_a(std::string_view text, int width) {
    int characters = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if ((static_cast<unsigned char>(text[at]) & 0xC0u) == 0x80u) continue;  // continues a character of UTF-8
        if (characters == width) return std::string(text.substr(0, at));
        ++characters;
    }
    return edit_x(width - characters) + std::string(text);
}

std::string edit_x(int n) { return repeated(' ', n); }

namespace {

// ".DIGITS" with `point` digits moved before the point, or -point zeros behind it, and the exponent where it has one.
std::string with_point(std::string digits, int point) {
    digits.insert(0, zeros(-point));
    return digits.insert(static_cast<std::size_t>(std::max(point, 0)), ".");
}

std::string exponent(char letter, int power, int exp_digits) {
    auto text = std::to_string(std::abs(power));
    text.insert(0, zeros((exp_digits > 0 ? exp_digits : 2) - length(text)));
    text.insert(0, power < 0 ? "-" : "+");
    return exp_digits == 0 && length(text) > 3 ? text : letter + text;
}

std::string exponential(double value, int width, int decimals, char letter, int exp_digits, int scale) {
    if (!std::isfinite(value)) return not_finite(value, width);
    if (scale <= -decimals || scale >= decimals + 2) return asterisks(width);
    const auto x = rounded_to_digits(value, scale > 0 ? decimals + 1 : decimals + scale);
    const auto power = exponent(letter, value == 0 ? 0 : x.point - scale, exp_digits);
    if (exp_digits > 0 && length(power) > exp_digits + 2) return asterisks(width);
    return field(std::signbit(value), with_point(x.digits, scale) + power, width);
}

// The sign, the optional zero of a number below 1 if there is room, and the body, at the right end of the field.
std::string field(bool negative, std::string body, int width) {
    const bool bare = body == ".";  // a point alone is no number
    if (body.front() == '.' && (bare || width > length(body) + int{negative})) body.insert(0, "0");
    if (negative) body.insert(0, "-");
    if (width > 0 && length(body) > width) return asterisks(width);
    return edit_a(body, std::max(width, length(body)));
}

std::string not_finite(double value, int width) {
    const bool negative = std::signbit(value) && !std::isnan(value);
    if (std::isnan(value)) return field(negative, "NaN", width);
    return field(negative, width >= 8 + int{negative} ? "Infinity" : "Inf", width);
}

// `count` significant digits; those of zero are zeros with the point behind the first.
Decimal rounded_to_digits(double value, int count) {
    std::string text(static_cast<std::size_t>(count) + 6, ' ');  // d.ddde-308
    char* const begin = text.data();
    const auto printed =
        std::to_chars(begin, begin + text.size(), std::fabs(value), std::chars_format::scientific, count - 1);
    text.resize(static_cast<std::size_t>(printed.ptr - begin));

    const auto mark = text.find('e');
    Decimal x{text.substr(0, mark), std::atoi(text.c_str() + mark + 1) + 1};
    if (count > 1) x.digits.erase(1, 1);
    return x;
}

// The digits up to the given place behind the decimal point, without zeros in front; those of zero are none.
Decimal rounded_to_decimals(double value, int decimals) {
    std::string text(static_cast<std::size_t>(decimals) + 310, ' ');  // 309 digits and the point
    char* const begin = text.data();
    const auto printed =
        std::to_chars(begin, begin + text.size(), std::fabs(value), std::chars_format::fixed, decimals);
    text.resize(static_cast<std::size_t>(printed.ptr - begin));

    std::erase(text, '.');
    text.erase(0, text.find_first_not_of('0'));
    return {text, length(text) - decimals};
}

}  // namespace

}  // namespace kavrel
