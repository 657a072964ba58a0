// What the texts of several files have in common.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "shell/fixed_text.h"

namespace kavrel {

// 19A4: the first 76 characters of the title, blanks behind it; control characters are blanks.
[[nodiscard]] std::string title_words(std::string_view title);

// The same without the blanks at its ends.
[[nodiscard]] inline std::string trimmed_title(std::string_view title) { return std::string(trim(title_words(title))); }

// What a file has in place of a branch that its program has no words for.
[[nodiscard]] std::string not_implemented(int k);

// The coefficient of s^order, 0 beyond the degree.
[[nodiscard]] inline double coefficient_at(const std::vector<double>& ascending, std::size_t order) {
    return order < ascending.size() ? ascending[order] : 0.0;
}

// Ends of a sweep and its number of points.
struct Sweep {
    double low = 0;
    double high = 0;
    int count = 0;

    explicit Sweep(std::span<const double> frequencies)
        : low(frequencies.front()), high(frequencies.back()), count(static_cast<int>(frequencies.size())) {}

    [[nodiscard]] double step() const { return count > 1 ? (high - low) / (count - 1) : 0.0; }
};

// The shortest exponent form from which the number comes back, "4.7e-09": no suffix, no blank, no missing letter.
[[nodiscard]] std::string plain_number(double value);

}  // namespace kavrel
