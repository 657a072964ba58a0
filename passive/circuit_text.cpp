#include "passive/circuit_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "passive/circuit_check.h"
#include "shell/edit.h"
#include "shell/number_text.h"

namespace kavrel {

namespace {

constexpr std::size_t title_width = 80;
constexpr std::size_t short_title_width = 68;
constexpr std::size_t real_width = 16;
constexpr int real_digits = 8;

// A line of numbers: how many it holds and how wide a field is.
struct Row {
    std::size_t count;
    std::size_t width;
};
constexpr Row counts_row = {16, 6};
constexpr Row pattern_row = {43, 6};
constexpr Row quadruplet_row = {8, real_width};
constexpr Row word_row = {10, 10};
constexpr Row value_row = {10, real_width};
constexpr Row band_row = {13, real_width};

// The two directions. Numbers run on from line to line of a table; each table ends with its line.
class LineWriter {
public:
    void text(std::string_view text, std::size_t width);
    void begin(Row row) { row_ = row, in_line_ = 0; }
    void item(double number) { field(edit_d(number, static_cast<int>(row_.width), real_digits)); }
    void item(int number) { field(edit_i(number, static_cast<int>(row_.width))); }
    void item(float number) { item(static_cast<double>(number)); }
    void spare(std::size_t count);
    [[nodiscard]] const std::string& lines() const { return lines_; }

private:
    void field(const std::string& text);

    std::string lines_;
    Row row_{};
    std::size_t in_line_ = 0;
};

class LineReader {
public:
    explicit LineReader(std::string_view text) : rest_(text) {}
    void text(FixedText<title_width>& found);
    void begin(Row row) { row_ = row, line_ = {}; }
    void item(double& number);
    void item(int& number);
    void item(float& number);
    void spare(std::size_t count);
    [[nodiscard]] bool good() const { return good_; }
    // Whether all was good and nothing but blank lines is left.
    [[nodiscard]] bool finished() const { return good_ && rest_.find_first_not_of(" \r\n") == std::string_view::npos; }

private:
    std::string_view next_line();
    std::string_view next_field();

    std::string_view rest_;
    std::string_view line_;
    Row row_{};
    bool good_ = true;
};

// All lines of numbers, of a filter to be written or to be filled in.
template <class Lines, class Filter>
void number_lines(Lines& lines, Filter& filter);

}  // namespace

std::string circuit_text(const PassiveFilter& filter, const FixedText<80>& title) {
    LineWriter lines;
    lines.text(title.padded(), title_width);
    number_lines(lines, filter);
    lines.text(title.padded(), short_title_width);
    return lines.lines();
}

bool read_circuit_text(std::string_view text, PassiveFilter& filter, FixedText<80>& title) {
    PassiveFilter found;
    FixedText<title_width> found_title;
    FixedText<title_width> short_title;
    LineReader lines(text);
    lines.text(found_title);
    number_lines(lines, found);
    lines.text(short_title);
    if (!lines.finished() || !sound_store(found.circuit) || !all_finite(found)) return false;
    Circuit& circuit = found.circuit;
    if (circuit.R1 != 0 || circuit.R2 != 0) circuit.termination_ratio = circuit.R2 / circuit.R1;
    filter = found;
    title = found_title;
    return true;
}

namespace {

template <class Lines, class Filter>
void number_lines(Lines& lines, Filter& filter) {
    auto& c = filter.circuit;
    auto kind = static_cast<int>(c.kind);
    lines.begin(counts_row);
    lines.item(c.klast);
    lines.item(c.ilast);
    lines.item(kind);
    lines.item(c.mode_count);
    lines.spare(counts_row.count - 4);
    if constexpr (!std::is_const_v<Filter>) c.kind = static_cast<CircuitKind>(kind);

    lines.begin(pattern_row);
    for (auto& q : c.QUADRUPLETS) {
        for (auto& cell : q.M.cells) lines.item(cell);
    }
    lines.item(c.quadruplet_count);

    lines.begin(quadruplet_row);
    const auto all_of = [&](auto member) {
        for (auto& q : c.QUADRUPLETS) {
            for (auto& cell : (q.*member).cells) lines.item(cell);
        }
    };
    all_of(&Quadruplet::XK);
    all_of(&Quadruplet::XC);
    all_of(&Quadruplet::YK);
    all_of(&Quadruplet::YC);
    all_of(&Quadruplet::FRES);

    lines.begin(word_row);
    Table words = marked_words(c);
    for (auto& word : words) lines.item(word);
    if constexpr (!std::is_const_v<Filter>) take_marked_words(words, c);
    lines.begin(value_row);
    for (auto& value : c.VALUE) lines.item(value);

    lines.begin(band_row);
    for (auto* number : {&c.R1, &c.R2, &c.fa, &c.fb, &c.fnorm, &c.fs}) lines.item(*number);
    lines.item(filter.mod);
    lines.spare(band_row.count - 7);

    lines.begin(value_row);
    for (int i = 1; i <= max_natural_modes; ++i) {
        lines.item(c.MODE_RE(i));
        lines.item(c.MODE_IM(i));
    }
}

void LineWriter::text(std::string_view text, std::size_t width) {
    std::string line(head_of(text, width));
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    line.resize(width, ' ');
    lines_ += line + '\n';
}

void LineWriter::spare(std::size_t count) {
    for (; count > 0; --count) row_.width == real_width ? item(0.0) : item(0);
}

void LineWriter::field(const std::string& text) {
    lines_ += text;
    if (++in_line_ < row_.count) return;
    lines_ += '\n';
    in_line_ = 0;
}

void LineReader::text(FixedText<title_width>& found) {
    const std::string_view line = next_line();
    good_ = good_ && line.size() <= title_width;
    if (good_) found.assign(line);
}

// A real number in a field of its own, its exponent with either letter or with its sign alone.
void LineReader::item(double& number) {
    std::string digits(trim(next_field()));
    if (digits.find_first_not_of("0123456789+-.DEde") != std::string::npos) good_ = false;
    const auto sign = digits.find_last_of("+-");
    const bool has_letter = digits.find_first_of("DEde") != std::string::npos;
    if (!has_letter && sign != std::string::npos && sign > 0) digits.insert(sign, 1, 'E');
    const auto parsed = parse_number(digits);
    good_ = good_ && parsed.has_value();
    if (good_) number = *parsed;
}

void LineReader::item(int& number) {
    const auto parsed = parse_integer(trim(next_field()));
    good_ = good_ && parsed.has_value();
    if (good_) number = *parsed;
}

void LineReader::item(float& number) {
    double wide = 0;
    item(wide);
    good_ = good_ && std::abs(wide) <= static_cast<double>(std::numeric_limits<float>::max());
    if (good_) number = static_cast<float>(wide);
}

void LineReader::spare(std::size_t count) {
    double real = 0;
    int whole = 0;
    for (; count > 0; --count) row_.width == real_width ? item(real) : item(whole);
}

// A line that no line feed ends was cut off.
std::string_view LineReader::next_line() {
    const auto end = rest_.find('\n');
    good_ = good_ && end != std::string_view::npos;
    if (!good_) return {};
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return trim_right(line);
}

std::string_view LineReader::next_field() {
    if (line_.empty()) {
        line_ = next_line();
        good_ = good_ && line_.size() == row_.count * row_.width;
    }
    if (!good_) return {};
    const std::string_view field = line_.substr(0, row_.width);
    line_.remove_prefix(row_.width);
    return field;
}

}  // namespace

}  // namespace kavrel
