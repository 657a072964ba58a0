// A script as lines of words, with files that include files, and room to hand a line back.
//
// Blanks separate words, double quotes hold words together, `#` starts a comment (but for the item id of `choose
// #166`).
#pragma once

#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/transcript.h"

namespace kavrel {

struct ScriptWord {
    std::string text;
    bool quoted = false;
};

struct ScriptLine {
    std::string file;    // as it was named
    std::string folder;  // that it lies in: files to include are looked for there first
    int number = 0;
    std::string text;  // as written, without its comment
    std::vector<ScriptWord> words;
    std::string_view wrong;  // with the line as such, or blank
    Failure failure = Failure::script;

    [[nodiscard]] std::string where() const { return file + ':' + std::to_string(number); }
    [[nodiscard]] std::string_view verb() const { return words.front().text; }
    // The words from number `first` on (the verb is 0), with a blank between them.
    [[nodiscard]] std::string rest(std::size_t first = 1) const;
};

[[nodiscard]] ScriptLine split_line(std::string file, int number, std::string_view text);

// The labels of `choose A > B > C`: words between the unquoted '>', or of a path that is quoted as a whole.
[[nodiscard]] std::vector<std::string> path_of(const ScriptLine& line);

// Why a file is not included: `failure` is none when it is.
struct Included {
    Failure failure = Failure::none;
    std::string text = {};
};

class ConsoleScript {
public:
    // Lines of a stream; `name` appears in errors; files to include are looked for in `folder` first.
    void push(std::string name, std::unique_ptr<std::istream> lines, std::string folder = {});

    // The next line that has a word, or none at the end. A line without end ends its file, as one that cannot be read.
    [[nodiscard]] std::optional<ScriptLine> next();

    // The line stays the next one.
    void hand_back(ScriptLine line) { handed_back_ = std::move(line); }

    // Reads a file's lines before those that follow. All files together are bounded: files may include each other.
    [[nodiscard]] Included include(const ScriptLine& line, const std::string& file);

    void end() { sources_.clear(), handed_back_.reset(); }

private:
    struct Source {
        std::string name;
        std::string folder;
        std::unique_ptr<std::istream> lines;
        int number = 0;
    };

    std::vector<Source> sources_;
    std::optional<ScriptLine> handed_back_;
    std::ptrdiff_t included_lines_ = 0;
};

}  // namespace kavrel
