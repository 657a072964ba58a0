// Numbers as people type them and as data files hold them. Independent of the user's locale.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "shell/units.h"

namespace kavrel {

// A finite number, optionally with an engineering suffix: 4.7k, 10n, 2.2u, 1M (1e6), 1m (1e-3), G, p, f. The exponent
// letter may be E or D. None for anything else, "nan" and "inf" among it.
[[nodiscard]] std::optional<double> parse_number(std::string_view text);

// A number as it is typed into a form: with or without a unit behind it and a blank between, "1 kHz", "47nF", "600
// ohm", "60 dB", "4.7k". With a unit that the user has chosen another one for, the value is in the user's.
struct Quantity {
    double value = 0;
    Unit unit = Unit::none;  // as it was typed
};
[[nodiscard]] std::optional<Quantity> parse_quantity(std::string_view text, const UnitSet& units);

// The end of a text that is a number but for it: "kHertz" of "1 kHertz"; blank where there is no number before.
[[nodiscard]] std::string_view unknown_unit(std::string_view text);

// Whether a form or an input file may hold the number: 0, or a magnitude from 1e-150 to 1e150, whose square is a number
// still.
[[nodiscard]] constexpr bool is_in_range(double number) {
    const double magnitude = number < 0 ? -number : number;
    return number == 0 || (magnitude >= 1e-150 && magnitude <= 1e150);
}

// A whole number without suffix.
[[nodiscard]] std::optional<int> parse_integer(std::string_view text);

// A line of numbers in free format, separated by blanks, tabs or commas; none if one of them is no finite number.
[[nodiscard]] std::optional<std::vector<double>> parse_free_format(std::string_view line);
[[nodiscard]] std::vector<std::string_view> words_of_free_format(std::string_view line);

}  // namespace kavrel
