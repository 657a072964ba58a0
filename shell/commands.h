// Command words: what a menu item leaves in the cell of a Segment, and what the Segment finds it by.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "shell/fixed_text.h"

namespace kavrel {

using CommandKeyword = FixedText<4>;  // lower case, padded with blanks

// The place (from 0) of the first word of the table that equals the cell in all four bytes; none for a word that is in
// no table, which a Segment ignores.
[[nodiscard]] constexpr std::optional<std::size_t> match_command(const CommandKeyword& cell,
                                                                 std::span<const CommandKeyword> table) {
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (cell.padded() == table[i].padded()) return i;
    }
    return std::nullopt;
}

}  // namespace kavrel
