// Numbers as people type them and as data files hold them. Independent of the user's locale.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace kavrel {

// A finite number, optionally with an engineering suffix: 4.7k, 10n, 2.2u, 1M (1e6), 1m (1e-3), G, p, f. The exponent
// letter may be E or D. None for anything else, "nan" and "inf" among it.
[[nodiscard]] std::optional<double> parse_number(std::string_view text);

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

}  // namespace kavrel
