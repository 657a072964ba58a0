// Whether numbers are finite: those of records too that list their fields, and of tables of either.
#pragma once

#include <cmath>
#include <ranges>
#include <type_traits>

#include "shell/fields.h"

namespace kavrel {

template <class Item>
[[nodiscard]] bool is_finite(const Item& item) {
    bool finite = true;
    if constexpr (std::is_floating_point_v<Item>) {
        finite = std::isfinite(item);
    } else if constexpr (Listed<const Item>) {
        for_each_field(item, [&](const auto& field) { finite = finite && is_finite(field); });
    } else if constexpr (requires { item.cells; }) {
        finite = is_finite(item.cells);
    } else if constexpr (std::ranges::range<const Item>) {
        for (const auto& cell : item) finite = finite && is_finite(cell);
    }
    return finite;
}

template <class... Items>
[[nodiscard]] bool all_finite(const Items&... items) {
    return (is_finite(items) && ...);
}

}  // namespace kavrel
