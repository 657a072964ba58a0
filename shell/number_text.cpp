#include "shell/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "shell/fixed_text.h"

namespace kavrel {

namespace {

struct Suffix {
    char letter;
    int exponent;
};

constexpr Suffix suffixes[] = {{'f', -15}, {'p', -12}, {'n', -9}, {'u', -6}, {'m', -3},
                               {'k', 3},   {'K', 3},   {'M', 6},  {'G', 9},  {'T', 12}};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool has_exponent(std::string_view text) { return text.find_first_of("eEdD") != std::string_view::npos; }

}  // namespace

std::optional<double> parse_number(std::string_view text) {
    std::string plain(trim(text));
    if (plain.empty()) return std::nullopt;
    // A suffix is one more exponent: so 10n is the double next to 1e-8, not 10 times the one next to 1e-9.
    const auto suffix = std::ranges::find(suffixes, plain.back(), &Suffix::letter);
    if (suffix != std::end(suffixes)) {
        plain.pop_back();
        if (plain.empty() || has_exponent(plain)) return std::nullopt;
        plain += 'e' + std::to_string(suffix->exponent);
    }
    std::ranges::replace_if(
        plain, [](char c) { return c == 'd' || c == 'D'; }, 'e');
    std::string_view digits = plain;
    if (digits.front() == '+') digits.remove_prefix(1);
    const bool begins_well =
        !digits.empty() && (is_digit(digits[0]) || digits[0] == '.' ||
                            (digits[0] == '-' && digits.size() > 1 && digits.data() == plain.data() &&
                             (is_digit(digits[1]) || digits[1] == '.')));
    if (!begins_well) return std::nullopt;
    double value = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc{} || end != digits.data() + digits.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<int> parse_integer(std::string_view text) {
    text = trim(text);
    if (text.starts_with('+')) text.remove_prefix(1);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

std::optional<std::vector<double>> parse_free_format(std::string_view line) {
    constexpr std::string_view blanks = " \t\r,;";
    std::vector<double> numbers;
    for (auto at = line.find_first_not_of(blanks); at != std::string_view::npos;
         at = line.find_first_not_of(blanks, at)) {
        const auto end = std::min(line.find_first_of(blanks, at), line.size());
        const auto number = parse_number(line.substr(at, end - at));
        if (!number) return std::nullopt;
        numbers.push_back(*number);
        at = end;
    }
    return numbers;
}

}  // namespace kavrel
