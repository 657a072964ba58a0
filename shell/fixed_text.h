// Text of fixed length, padded with blanks and compared trimmed. The length counts bytes of UTF-8; what does not fit is
// cut at a character's boundary.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kavrel {

// Without the blanks at its end.
[[nodiscard]] constexpr std::string_view trim_right(std::string_view text) {
    const auto last = text.find_last_not_of(' ');
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

// Without the blanks at both ends.
[[nodiscard]] constexpr std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view{} : trim_right(text.substr(first));
}

// The longest head of `text` of at most `bytes` bytes that does not split a character.
[[nodiscard]] constexpr std::string_view head_of(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return text;
    while (bytes > 0 && (static_cast<unsigned char>(text[bytes]) & 0xC0u) == 0x80u) --bytes;
    return text.substr(0, bytes);
}

template <std::size_t N>
struct FixedText {
    std::array<char, N> bytes = blank();

    constexpr FixedText() = default;
    constexpr FixedText(std::string_view text) {
        assign(text);
    }                                                        // NOLINT: a text is taken where a fixed text is wanted
    constexpr FixedText(const char* text) { assign(text); }  // NOLINT

    constexpr void assign(std::string_view text) {
        bytes = blank();
        const auto kept = head_of(text, N);
        for (std::size_t i = 0; i < N && i < kept.size(); ++i) bytes[i] = kept[i];
    }

    [[nodiscard]] constexpr std::string_view padded() const { return {bytes.data(), N}; }
    [[nodiscard]] constexpr std::string_view trimmed() const { return trim_right(padded()); }
    [[nodiscard]] std::string text() const { return std::string(trimmed()); }
    [[nodiscard]] constexpr bool is_blank() const { return trimmed().empty(); }

    friend constexpr bool operator==(const FixedText& a, std::string_view b) { return a.trimmed() == trim_right(b); }
    template <std::size_t M>
    friend constexpr bool operator==(const FixedText& a, const FixedText<M>& b) {
        return a.trimmed() == b.trimmed();
    }

private:
    static constexpr std::array<char, N> blank() {
        std::array<char, N> filled{};
        filled.fill(' ');
        return filled;
    }
};

}  // namespace kavrel
