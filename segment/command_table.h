// The commands of a Segment as one table: a row each, in the order in which words are looked up.
//
//     constexpr CommandTable commands({Command<FirDesk>{"show", show}, {"time", time}, {"trun"}});
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "shell/commands.h"

namespace kavrel {

// A word with its routine, or without one while the command is not built. (That is noted, since a routine's address
// cannot be compared with null at compile time under the sanitizers.)
template <class SegmentDesk>
struct Command {
    using Routine = void (*)(SegmentDesk& desk);
    // Why the command cannot act on what there is, in the words of its refusal; blank when it can.
    using Hindrance = std::string_view (*)(const SegmentDesk& desk);

    constexpr Command(CommandKeyword text) : word(text) {}  // NOLINT: a row of a table
    constexpr Command(CommandKeyword text, Routine routine, Hindrance why_not = nullptr)
        : word(text), perform(routine), hindrance(why_not), built(true) {}

    CommandKeyword word;
    Routine perform = nullptr;
    Hindrance hindrance = nullptr;
    bool built = false;
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
            built_[i] = rows[i].built;
            routines_[i] = rows[i].perform;
            hindrances_[i] = rows[i].hindrance;
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

    // Why a command cannot act now, or blank.
    [[nodiscard]] std::string_view hindrance(const SegmentDesk& desk, const CommandKeyword& word) const {
        const auto place = match_command(word, words_);
        return place && hindrances_[*place] != nullptr ? hindrances_[*place](desk) : std::string_view{};
    }

private:
    static void a_word_has_two_rows() {}  // not constexpr: such a table does not compile

    std::array<CommandKeyword, N> words_{};
    std::array<bool, N> built_{};
    std::array<void (*)(SegmentDesk& desk), N> routines_{};
    std::array<std::string_view (*)(const SegmentDesk& desk), N> hindrances_{};
};

}  // namespace kavrel
