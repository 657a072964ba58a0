#include "console/script.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include <fmt/format.h>

#include "shell/fixed_text.h"
#include "shell/utf8.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

constexpr std::size_t include_depth = 50;
constexpr std::ptrdiff_t include_lines = 1'000'000;  // of all included files
constexpr std::size_t longest_line = 1 << 16;
constexpr std::size_t shown_of_wrong_line = 80;

enum class LineEnd { line, last, too_long, unreadable };
LineEnd read_line(std::istream& lines, std::string& text);

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// Whether a comment starts at `at`: not where "#166" follows the verb `choose`.
bool starts_comment(std::string_view text, std::size_t at, const std::vector<ScriptWord>& words, bool in_word) {
    if (text[at] != '#') return false;
    const bool is_id = at + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[at + 1])) != 0;
    return !(is_id && !in_word && words.size() == 1 && words[0].text == "choose");
}

}  // namespace

std::string ScriptLine::rest(std::size_t first) const {
    std::string joined;
    for (std::size_t i = first; i < words.size(); ++i) {
        if (i > first) joined += ' ';
        joined += words[i].text;
    }
    return joined;
}

ScriptLine split_line(std::string file, int number, std::string_view text) {
    ScriptLine line{.file = std::move(file), .folder = {}, .number = number, .text = {}, .words = {}, .wrong = {}};
    ScriptWord word;
    bool in_word = false;
    bool in_quotes = false;
    std::size_t at = 0;
    const auto finish = [&] {
        if (in_word) line.words.push_back(std::move(word));
        word = {};
        in_word = false;
    };
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '"') {
            in_quotes = !in_quotes;
            in_word = word.quoted = true;
        } else if (in_quotes) {
            word.text += c;
        } else if (is_blank(c)) {
            finish();
        } else if (starts_comment(text, at, line.words, in_word)) {
            break;
        } else {
            word.text += c;
            in_word = true;
        }
    }
    finish();
    if (in_quotes) line.wrong = "a double quote is missing";
    line.text = trim_right(text.substr(0, at));
    return line;
}

std::vector<std::string> path_of(const ScriptLine& line) {
    std::vector<std::string> labels(1);
    const auto append = [&](std::string_view text) {
        text = trim(text);
        if (!labels.back().empty() && !text.empty()) labels.back() += ' ';
        labels.back() += text;
    };
    for (std::size_t i = 1; i < line.words.size(); ++i) {
        std::string_view text = line.words[i].text;
        if (!line.words[i].quoted || line.words.size() == 2) {
            for (auto at = text.find('>'); at != std::string_view::npos; at = text.find('>')) {
                append(text.substr(0, at));
                labels.emplace_back();
                text.remove_prefix(at + 1);
            }
        }
        append(text);
    }
    return labels;
}

void ConsoleScript::push(std::string name, std::unique_ptr<std::istream> lines, std::string folder) {
    sources_.push_back({.name = std::move(name), .folder = std::move(folder), .lines = std::move(lines), .number = 0});
}

std::optional<ScriptLine> ConsoleScript::next() {
    if (handed_back_) {
        std::optional<ScriptLine> line;
        line.swap(handed_back_);
        return line;
    }
    while (!sources_.empty()) {
        Source& source = sources_.back();
        std::string text;
        const LineEnd end = read_line(*source.lines, text);
        if (end == LineEnd::last && text.empty()) {
            sources_.pop_back();
            continue;
        }
        if (++source.number == 1 && text.starts_with(byte_order_mark)) text.erase(0, byte_order_mark.size());
        ScriptLine line = split_line(source.name, source.number, text);
        line.folder = source.folder;
        if (end == LineEnd::too_long || end == LineEnd::unreadable) {
            line.text.resize(std::min(line.text.size(), shown_of_wrong_line));
            line.words.resize(1);
            line.wrong =
                end == LineEnd::too_long ? "the line is longer than 65536 bytes" : "the script could not be read";
            line.failure = end == LineEnd::too_long ? Failure::script : Failure::file;
            sources_.pop_back();
        }
        if (!line.words.empty()) return line;
    }
    return std::nullopt;
}

Included ConsoleScript::include(const ScriptLine& line, const std::string& file) {
    if (sources_.size() >= include_depth)
        return {Failure::script, fmt::format("'{}' is included by too many files within files", file)};
    std::string path = (std::filesystem::path(line.folder) / file).string();
    WholeFile found = read_whole(path);
    if (found.fault == ReadFault::missing) found = read_whole(path = file);
    if (!found) {
        const std::string name = fmt::format("'{}'", file);
        return {Failure::file, complaint_of(found.fault, name + " could not be read", name)};
    }
    included_lines_ += std::ranges::count(*found, '\n') + 1;
    if (included_lines_ > include_lines)
        return {Failure::script, fmt::format("'{}' is one too many: {} lines are included", file, include_lines)};
    push(file, std::make_unique<std::istringstream>(std::move(found.bytes)),
         std::filesystem::absolute(path).parent_path().string());
    return {};
}

namespace {

LineEnd read_line(std::istream& lines, std::string& text) {
    for (char c = 0; lines.get(c);) {
        if (c == '\n') return LineEnd::line;
        if (text.size() == longest_line) return LineEnd::too_long;
        text += c;
    }
    return lines.bad() ? LineEnd::unreadable : LineEnd::last;
}

}  // namespace

}  // namespace kavrel
