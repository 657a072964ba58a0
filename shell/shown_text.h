// Text from outside (titles, files, names, what a script says) as a screen or a drawing may have it.
#pragma once

#include <string>
#include <string_view>

namespace kavrel {

// Whether a terminal or a window would obey a character: C0, DEL, C1, the ends of lines and paragraphs U+2028 and
// U+2029, and those that turn the direction of writing (U+202A to U+202E, U+2066 to U+2069).
[[nodiscard]] constexpr bool is_obeyed(char32_t code) {
    return code < ' ' || (code >= 0x7F && code < 0xA0) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

// How a text is shown: in one line, or in lines and columns, whose ends and tabs it keeps.
enum class ShownAs { line, lines };

// A copy with a blank for each character that would be obeyed, and "?" for each byte that is no UTF-8 or that XML does
// not take. Shown text is shown unchanged. What is stored keeps its bytes.
[[nodiscard]] std::string shown_text(std::string_view text, ShownAs as = ShownAs::line);

}  // namespace kavrel
