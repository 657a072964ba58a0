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

struct Utf8Character {
    char32_t code = 0;
    std::size_t bytes = 0;  // 0: the text does not begin with a well-formed character
};

// The character at the head of a text that is not empty; surrogates, U+FFFE and U+FFFF are none.
[[nodiscard]] constexpr Utf8Character utf8_character(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned head = byte(0);
    const std::size_t length = head < 0x80 ? 1 : head >= 0xF0 ? 4 : head >= 0xE0 ? 3 : 2;
    if ((head >= 0x80 && head < 0xC2) || head > 0xF4 || length > text.size()) return {};
    char32_t code = length == 1 ? head : head & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (utf8_starts(text[i])) return {};
        code = code << 6u | (byte(i) & 0x3Fu);
    }
    const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool no_character = (code >= 0xD800 && code < 0xE000) || code == 0xFFFE || code == 0xFFFF || code > 0x10FFFF;
    if (overlong || no_character) return {};
    return {.code = code, .bytes = length};
}

}  // namespace kavrel
