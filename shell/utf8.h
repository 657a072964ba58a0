// Characters of UTF-8 text: report columns count characters, not bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavrel {

// What some editors put at the head of a text file.
inline constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

[[nodiscard]] constexpr bool utf8_starts(char byte) { return (static_cast<unsigned char>(byte) & 0xC0u) != 0x80u; }

[[nodiscard]] constexpr std::size_t utf8_length(std::string_view text) {
    std::size_t length = 0;
    for (const char byte : text) length += utf8_starts(byte) ? 1 : 0;
    return length;
}

// The first `characters` characters.
[[nodiscard]] constexpr std::string_view utf8_head(std::string_view text, std::size_t characters) {
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (!utf8_starts(text[at])) continue;
        if (characters == 0) break;
        --characters;
    }
    return text.substr(0, at);
}

}  // namespace kavrel
