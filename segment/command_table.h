// The commands of a Segment as one table: a row each, in the order in which words are looked up.
//
//     constexpr CommandTable commands({Command<FirDesk>{"show", show}, {"time", time}, {"trun"}});
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "shell/commands.h"

namespace kavrel {

template <class SegmentDesk>
struct Command {
    CommandKeyword word;
    void (*perform)(SegmentDesk& desk) = nullptr;  // null while the command has no routine
};

// What others may ask a table.
struct CommandWords {
    std::span<const CommandKeyword> words;
    std::span<const bool> built = {};  // [place] whether the word has a routine; of a Segment without any, empty

    [[nodiscard]] constexpr bool knows(const CommandKeyword& word) const {
        return match_command(word, words).has_value();
    }
    [[nodiscard]] constexpr bool performs(const CommandKeyword& word) const {
        const auto place = match_command(word, words);
        return place && *place < built.size() && built[*place];
    }
};

template <class SegmentDesk, std::size_t N>
class CommandTable {
public:
    consteval explicit CommandTable(const Command<SegmentDesk> (&rows)[N]) {
        for (std::size_t i = 0; i < N; ++i) {
            if (match_command(rows[i].word, std::span(words_).first(i))) a_word_has_two_rows();
            words_[i] = rows[i].word;
            built_[i] = rows[i].perform != nullptr;
            routines_[i] = rows[i].perform;
        }
    }

    [[nodiscard]] constexpr CommandWords words() const { return {words_, built_}; }

    // Performs the command in a Segment's cell, then clears the cell. A word that the table does not know, or that has
    // no routine, is ignored.
    void run(SegmentDesk& desk, CommandKeyword& cell) const {
        const auto place = match_command(cell, words_);
        if (place && built_[*place]) routines_[*place](desk);
        cell = {};
    }

private:
    static void a_word_has_two_rows() {}  // not constexpr: such a table does not compile

    std::array<CommandKeyword, N> words_{};
    std::array<bool, N> built_{};
    std::array<void (*)(SegmentDesk& desk), N> routines_{};
};

}  // namespace kavrel
