#include "shell/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "shell/fixed_text.h"
#include "shell/whole_part.h"

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

// Units by their names as they are written, the case of letters included: 1 mHz is no 1 MHz.
struct UnitName {
    std::string_view name;
    Unit unit;
};
constexpr UnitName unit_names[] = {
    {"Hz", Unit::frequency},   {"sec", Unit::time},          {"rad/sec", Unit::radians},   {"rad/s", Unit::radians},
    {"s", Unit::time},         {"H", Unit::inductor},        {"F", Unit::capacitor},       {"ohm", Unit::resistance},
    {"Ohm", Unit::resistance}, {"\u03a9", Unit::resistance}, {"\u2126", Unit::resistance}, {"dB", Unit::decibel}};

std::optional<double> scaled_number(std::string_view text, int exponent);
std::optional<double> in_unit(std::string_view text, double multiplier);

}  // namespace

std::optional<double> parse_number(std::string_view text) { return scaled_number(text, 0); }

std::optional<Quantity> parse_quantity(std::string_view text, const UnitSet& units) {
    text = trim(text);
    const UnitName* typed = nullptr;
    for (const UnitName& row : unit_names) {
        const bool longer = typed == nullptr || row.name.size() > typed->name.size();
        if (text.ends_with(row.name) && longer) typed = &row;
    }
    if (typed != nullptr) text.remove_suffix(typed->name.size());
    std::string number(trim(text));
    for (const std::string_view micro : {"\u00b5", "\u03bc"}) {
        if (number.ends_with(micro)) number.replace(number.size() - micro.size(), micro.size(), "u");
    }
    // Between a number and its prefix there may be blanks.
    if (number.size() > 1) {
        const auto end = number.find_last_not_of(' ', number.size() - 2);
        if (std::ranges::find(suffixes, number.back(), &Suffix::letter) != std::end(suffixes) &&
            end != std::string::npos) {
            number.erase(end + 1, number.size() - end - 2);
        }
    }
    const Unit unit = typed == nullptr ? Unit::none : typed->unit;
    const auto value = in_unit(number, unit_multiplier(units, unit));
    if (!value) return std::nullopt;
    return Quantity{*value, unit};
}

std::string_view unknown_unit(std::string_view text) {
    text = trim(text);
    std::size_t end = text.size();
    while (end > 0 && !is_digit(text[end - 1]) && text[end - 1] != '.') --end;
    return parse_number(text.substr(0, end)) ? trim(text.substr(end)) : std::string_view{};
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
    std::vector<double> numbers;
    for (const std::string_view word : words_of_free_format(line)) {
        const auto number = parse_number(word);
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

std::vector<std::string_view> words_of_free_format(std::string_view line) {
    constexpr std::string_view blanks = " \t\r,;";
    std::vector<std::string_view> words;
    for (auto at = line.find_first_not_of(blanks); at != std::string_view::npos;
         at = line.find_first_not_of(blanks, at)) {
        const auto end = std::min(line.find_first_of(blanks, at), line.size());
        words.push_back(line.substr(at, end - at));
        at = end;
    }
    return words;
}

namespace {

// A number times a power of ten. A suffix is one more exponent: so 10n is the double next to 1e-8, not 10 times the one
// next to 1e-9.
std::optional<double> scaled_number(std::string_view text, int exponent) {
    std::string plain(trim(text));
    if (plain.empty()) return std::nullopt;
    const auto suffix = std::ranges::find(suffixes, plain.back(), &Suffix::letter);
    const bool has_suffix = suffix != std::end(suffixes);
    if (has_suffix) {
        plain.pop_back();
        exponent += suffix->exponent;
    }
    if (has_suffix || exponent != 0) {
        if (plain.empty() || has_exponent(plain)) return std::nullopt;
        plain += 'e' + std::to_string(exponent);
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

// In a unit of this size: by an exponent where it is a power of ten and the number has none.
std::optional<double> in_unit(std::string_view text, double multiplier) {
    const double exponent = std::round(std::log10(multiplier));
    if (std::pow(10.0, exponent) == multiplier && !has_exponent(text))
        return scaled_number(text, -whole_part(exponent));
    const auto number = scaled_number(text, 0);
    if (!number) return std::nullopt;
    return *number / multiplier;
}

}  // namespace

}  // namespace kavrel
