#include "console/script.h"

#include <cctype>
#include <filesystem>
#include <fstream>

#include "shell/fixed_text.h"
#include "shell/utf8.h"

namespace kavrel {

namespace {

constexpr std::size_t include_depth = 50;

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
    ScriptLine line{
        .file = std::move(file), .folder = {}, .number = number, .text = {}, .words = {}, .open_quote = false};
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
    line.open_quote = in_quotes;
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

std::unique_ptr<std::istream> open_text(const std::string& name) {
    std::error_code unknown;
    auto lines = std::make_unique<std::ifstream>(name);
    if (!*lines || std::filesystem::is_directory(name, unknown)) return nullptr;
    return lines;
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
        if (!std::getline(*source.lines, text)) {
            sources_.pop_back();
            continue;
        }
        if (++source.number == 1 && text.starts_with(byte_order_mark)) text.erase(0, byte_order_mark.size());
        ScriptLine line = split_line(source.name, source.number, text);
        line.folder = source.folder;
        if (!line.words.empty()) return line;
    }
    return std::nullopt;
}

Included ConsoleScript::include(const ScriptLine& line, const std::string& file) {
    if (sources_.size() >= include_depth) return Included::too_deep;
    for (const auto& path : {std::filesystem::path(line.folder) / file, std::filesystem::path(file)}) {
        auto lines = open_text(path.string());
        if (lines == nullptr) continue;
        push(file, std::move(lines), std::filesystem::absolute(path).parent_path().string());
        return Included::done;
    }
    return Included::unreadable;
}

}  // namespace kavrel
