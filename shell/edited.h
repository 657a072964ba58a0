// A line written as its Fortran format, which the compiler reads and checks against the values:
//
//     edited<"(1X,A,I3,2X,1P,E15.7,' dB')">("R", n, loss)
//
// Between commas: blanks nX; a text A, Aw (of anything that is a string_view, or a char); an integer I, Iw, Iw.m;
// a float or double Fw.d, Ew.d, Ew.dEe, Dw.d, ENw.d, Gw.d; the scale factor kP of all fields behind it, up to the next
// one (no comma need follow it); a text in ' or ", in which that quote is doubled; and lists in parentheses. A number
// in front repeats a field or a list. Blanks outside the quotes mean nothing. Each field is that of shell/edit.h; I is
// I0.
#pragma once

#include <array>
#include <concepts>
#include <string>
#include <string_view>

namespace kavrel {

// One field of a format, its repetitions and lists already written out.
struct FormatItem {
    char kind = 'X';     // X, A, I, F, E, D, N (of EN), G, or ' for a quoted text
    short width = 0;     // A alone: -1; of a quoted text: where it begins in the format
    short decimals = 0;  // m of I; of a quoted text: its length
    short exp_digits = 0;
    short scale = 0;

    [[nodiscard]] constexpr bool shows_value() const { return kind != 'X' && kind != '\''; }
};

struct Format {
    static constexpr int max_items = 64;
    std::array<FormatItem, max_items> items;
    int count = 0;
    int values = 0;
    bool good = false;
};

class FormatReader {
public:
    constexpr explicit FormatReader(std::string_view text) : text_(text) {}

    [[nodiscard]] constexpr Format format() {
        format_.good = take('(') && list() && peek() == '\0';
        return format_;
    }

private:
    // What follows "(", up to and with its ")".
    constexpr bool list() {
        for (;;) {
            comma_ = true;
            if (!item()) return false;
            if (take(')')) return true;
            if (!take(',') && comma_) return false;
        }
    }

    constexpr bool item() {
        if (peek() == '\'' || peek() == '"') return quoted();
        const bool negative = take('-');
        const int n = number(-1);
        if (take('P')) {
            scale_ = static_cast<short>(negative ? -n : n);
            comma_ = false;
            return n >= 0;
        }
        if (negative || n == 0) return false;
        const int repeats = n < 0 ? 1 : n;
        if (take('X')) return add({.kind = 'X', .width = static_cast<short>(repeats)});
        if (!take('(')) return field(repeats);
        const auto start = at_;
        for (int r = 1; r <= repeats; ++r) {
            at_ = start;
            if (!list()) return false;
        }
        return true;
    }

    constexpr bool field(int repeats) {
        FormatItem item{.scale = scale_};
        for (const char kind : {'A', 'I', 'F', 'E', 'D', 'G'}) {
            if (!take(kind)) continue;
            item.kind = kind;
            break;
        }
        if (item.kind == 'E' && take('N')) item.kind = 'N';
        if (item.kind == 'X') return false;
        const bool real = item.kind != 'A' && item.kind != 'I';
        item.width = number(item.kind == 'A' ? -1 : 0);
        item.decimals = 1;
        const bool point = item.kind != 'A' && take('.');
        if (point) item.decimals = number(-1);
        if (item.kind == 'E' && take('E')) item.exp_digits = number(-1);
        if (point != real && item.kind != 'I') return false;
        if (item.decimals < 0 || item.exp_digits < 0) return false;
        for (int r = 1; r <= repeats; ++r) {
            if (!add(item)) return false;
        }
        return true;
    }

    // A doubled quote ends one piece, which holds the first of the two, and begins the next.
    constexpr bool quoted() {
        const char quote = text_[at_];
        do {
            const auto begin = ++at_;
            while (at_ < text_.size() && text_[at_] != quote) ++at_;
            if (at_++ == text_.size()) return false;
            const bool doubled = at_ < text_.size() && text_[at_] == quote;
            const auto length = at_ - begin - (doubled ? 0 : 1);
            if (!add({.kind = '\'', .width = static_cast<short>(begin), .decimals = static_cast<short>(length)}))
                return false;
        } while (at_ < text_.size() && text_[at_] == quote);
        return true;
    }

    constexpr bool add(const FormatItem& item) {
        if (format_.count == Format::max_items) return false;
        format_.items[static_cast<std::size_t>(format_.count++)] = item;
        if (item.shows_value()) ++format_.values;
        return true;
    }

    constexpr char peek() {
        while (at_ < text_.size() && text_[at_] == ' ') ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }
    constexpr bool take(char c) {
        if (peek() != c) return false;
        ++at_;
        return true;
    }
    // The number here, at most 999; `none` where there is none.
    constexpr short number(int none) {
        int n = none;
        for (char c = peek(); c >= '0' && c <= '9' && n < 100; c = peek()) {
            n = (n < 0 ? 0 : n) * 10 + (c - '0');
            ++at_;
        }
        return static_cast<short>(n);
    }

    std::string_view text_;
    std::size_t at_ = 0;
    short scale_ = 0;
    bool comma_ = true;
    Format format_;
};

// A value of a field, and what it is: A text, I an integer, F a number; the kind ? is none of them.
struct FormatValue {
    char kind = '?';
    std::string_view text = {};
    long long integer = 0;
    double number = 0;
};

template <class Value>
[[nodiscard]] constexpr char format_kind() {
    if (std::convertible_to<const Value&, std::string_view> || std::same_as<Value, char>) return 'A';
    if (std::integral<Value> && !std::same_as<Value, bool>) return 'I';
    return std::same_as<Value, double> || std::same_as<Value, float> ? 'F' : '?';
}

template <class Value>
[[nodiscard]] constexpr FormatValue format_value(const Value& value) {
    if constexpr (std::same_as<Value, char>)
        return {.kind = 'A', .text = {&value, 1}};
    else if constexpr (format_kind<Value>() == 'A')
        return {.kind = 'A', .text = value};
    else if constexpr (format_kind<Value>() == 'I')
        return {.kind = 'I', .integer = static_cast<long long>(value)};
    else
        return {.kind = 'F', .number = value};
}

// The first of the values, counted from 1, that is not of the kind which its field shows; 0 where all are.
[[nodiscard]] constexpr int first_mismatch(const Format& format, std::string_view kinds) {
    std::size_t v = 0;
    for (int i = 0; i < format.count; ++i) {
        const FormatItem& item = format.items[static_cast<std::size_t>(i)];
        if (!item.shows_value()) continue;
        const char shown = item.kind == 'A' || item.kind == 'I' ? item.kind : 'F';
        if (kinds[v++] != shown) return static_cast<int>(v);
    }
    return 0;
}

// The line of a format: `text` is the format itself, `values` as many as it has.
[[nodiscard]] std::string edit_values(const Format& format, std::string_view text, const FormatValue* values);

// A string as an argument of a template.
template <std::size_t N>
struct FormatText {
    char letters[N] = {};

    constexpr FormatText(const char (&text)[N]) {  // NOLINT: a format is written as a string
        for (std::size_t i = 0; i < N; ++i) letters[i] = text[i];
    }
    [[nodiscard]] constexpr std::string_view view() const { return {letters, N - 1}; }
};

template <FormatText text>
inline constexpr Format format_of = FormatReader(text.view()).format();

template <FormatText text, class... Values>
[[nodiscard]] std::string edited(const Values&... values) {
    static_assert(format_of<text>.good, "edited: this is no format; shell/edited.h lists the fields");
    static_assert(format_of<text>.values == sizeof...(Values), "edited: not as many values as the format has fields");
    if constexpr (format_of<text>.values == sizeof...(Values)) {
        constexpr char kinds[] = {format_kind<Values>()..., '\0'};
        static_assert(first_mismatch(format_of<text>, {kinds, sizeof...(Values)}) == 0,
                      "edited: this value is not of its field's kind: A text, I an integer, F E D EN G a number");
        const FormatValue list[] = {format_value(values)..., {}};
        return edit_values(format_of<text>, text.view(), list);
    }
}

}  // namespace kavrel
