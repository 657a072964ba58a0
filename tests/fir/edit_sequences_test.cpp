// Random sequences of the Segment's commands with undo, redo, store and recall in between.
#include <algorithm>
#include <random>

#include "fir/fir_records.h"
#include "tests/fir/fir_room.h"

namespace kavrel {
namespace {

constexpr std::string_view left_out[] = {"read", "save", "file", "ffac", "prog", "tabf", "tabt",
                                         "plpr", "pri ", "undo", "redo", "sto ", "rcl "};

class Sequence : public FirRoom {
public:
    explicit Sequence(unsigned seed) : engine_(seed) {
        ask(whole(11, 40), FirSpecification::weights, {{0, 8, 1, 1}, {12, 24, 0, 1}});
        EXPECT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        std::ranges::copy_if(fir_words().words, std::back_inserter(words_), [](const CommandKeyword& word) {
            return fir_words().performs(word) &&
                   std::ranges::none_of(left_out, [&](auto other) { return word == CommandKeyword(other); });
        });
    }

    // One command; false where what it left is not what it has to be.
    bool step() {
        const std::string before = bytes();
        fill_in_forms();
        switch (whole(0, 9)) {
            case 0: return moved("undo", past_, future_);
            case 1: return moved("redo", future_, past_);
            case 2: send("sto "), stored_ = before; return bytes() == before;
            case 3: send("rcl "); return stored_.empty() || (edited(before), bytes() == stored_);
            default: send(words_[static_cast<std::size_t>(whole(1, static_cast<int>(words_.size()))) - 1].padded());
        }
        if (bytes() != before) edited(before);
        FixedText<80> title;
        return read_fir_records(bytes(), *std::make_unique<FirFilter>(), title);
    }

private:
    using States = std::vector<std::string>;
    [[nodiscard]] std::string bytes() const { return fir_records(filter, session.TITLE); }
    int whole(int from, int to) { return std::uniform_int_distribution(from, to)(engine_); }

    void fill_in_forms() {
        command.function_number = whole(0, 9) > 0 ? whole(1, std::max(1, filter.functions)) : whole(0, 6);
        command.frequency = {.end = 24, .count = whole(0, 9)};
        command.truncated_to = {whole(4, 49), WordMethod{whole(1, 2)}, NumberForm{whole(1, 2)}};
        command.gain = whole(-3, 3), command.linear = 0.1 * whole(-9, 9), command.quadratic = 0.1 * whole(-9, 9);
        command.serial = whole(1, std::max(1, filter.factors.last_serial));
        for (int row = command.SERIAL.rows = whole(0, 4); row > 0; --row) command.SERIAL(row, 1) = command.serial - row;
        command.title = whole(0, 1) == 0 ? "one title" : "another title";
    }
    void edited(const std::string& before) {
        past_.push_back(before), future_.clear();
        if (past_.size() > undo_levels) past_.erase(past_.begin());
    }
    bool moved(std::string_view word, States& from, States& to) {
        const std::string before = bytes();
        const std::string said = send(word);
        if (from.empty()) return bytes() == before && said.starts_with("Error: Nothing to");
        const bool good = bytes() == from.back();
        from.pop_back(), to.push_back(before);
        return good;
    }

    std::mt19937 engine_;
    std::vector<CommandKeyword> words_;
    States past_, future_;
    std::string stored_;
};

TEST(FirEditSequences, UndoIsBitIdentical) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Sequence sequence(seed);
        for (int step = 0; step < 100; ++step) ASSERT_TRUE(sequence.step()) << seed << ' ' << step;
    }
}

}  // namespace
}  // namespace kavrel
