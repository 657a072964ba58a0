// The kinds of filter that a design can be made for, a row a kind.
#pragma once

#include <algorithm>
#include <array>

#include "approximation/filter_spec.h"

namespace kavrel {

// By the numbers of the filter form; none is chosen while its group is off.
enum class FilterKind : int { unchosen = 0, lc = 1, microwave = 2, active_rc = 3, iir_digital = 4 };

struct FilterKindRow {
    FilterKind kind;
    char letter;  // FilterSpec::implementation
    Medium medium;
    bool terminated;  // a network between a source and a load; else a cascade or a digital filter, which asks for
                      // neither
};

inline constexpr std::array<FilterKindRow, 4> filter_kinds = {{
    {.kind = FilterKind::lc, .letter = 'P', .medium = Medium::lumped, .terminated = true},
    {.kind = FilterKind::microwave, .letter = 'M', .medium = Medium::microwave, .terminated = true},
    {.kind = FilterKind::active_rc, .letter = 'A', .medium = Medium::lumped, .terminated = false},
    {.kind = FilterKind::iir_digital, .letter = 'I', .medium = Medium::sampled_data, .terminated = false},
}};

// The row of a kind or of a letter, or null.
[[nodiscard]] constexpr const FilterKindRow* find_kind(FilterKind kind) {
    const auto row = std::ranges::find(filter_kinds, kind, &FilterKindRow::kind);
    return row == filter_kinds.end() ? nullptr : &*row;
}
[[nodiscard]] constexpr const FilterKindRow* find_kind(char letter) {
    const auto row = std::ranges::find(filter_kinds, letter, &FilterKindRow::letter);
    return row == filter_kinds.end() ? nullptr : &*row;
}

}  // namespace kavrel
