// Random sequences of the Segment's commands with undo, redo, store and recall in between.
#include <algorithm>
#include <random>

#include "fir/fir_records.h"
#include "tests/fir/fir_room.h"

namespace kavrel {
namespace {

constexpr std::string_view of_files[] = {"read", "save", "file", "ffac", "prog", "tabf", "tabt", "plpr", "pri "};
constexpr std::string_view of_states[] = {"undo", "redo", "sto ", "rcl "};

class Sequence : public FirRoom {
public:
    explicit Sequence(unsigned seed) : engine_(seed) {
        design(whole(11, 40), {{0, 8, 1, 1}, {12, 24, 0, 1}});
        for (const CommandKeyword& word : fir_words().words) {
            const auto is_one = [&](std::string_view other) { return word == CommandKeyword(other); };
            const bool left_out = std::ranges::any_of(of_files, is_one) || std::ranges::any_of(of_states, is_one);
            if (fir_words().performs(word) && !left_out) words_.push_back(word);
        }
    }

    // One command; false where what it left is not what it has to be.
    bool step() {
        const std::string before = bytes();
        fill_in_forms();
        switch (whole(0, 9)) {
            case 0: return moved("undo", past_, future_);
            case 1: return moved("redo", future_, past_);
            case 2: return recalled();
            default: send(words_[static_cast<std::size_t>(whole(0, static_cast<int>(words_.size()) - 1))].padded());
        }
        if (bytes() != before) edited(before);
        FixedText<80> title;
        FirFilter again;
        return read_fir_records(bytes(), again, title);
    }

private:
    using States = std::vector<std::string>;
    [[nodiscard]] std::string bytes() const { return fir_records(filter, session.TITLE); }
    int whole(int from, int to) { return std::uniform_int_distribution(from, to)(engine_); }
    double between(double from, double to) { return std::uniform_real_distribution(from, to)(engine_); }

    void fill_in_forms() {
        const auto some_factor = [&] { return whole(1, std::max(1, filter.factors.last_serial)); };
        command.function_number = whole(1, 10) < 9 ? whole(1, std::max(1, filter.functions)) : whole(0, 6);
        command.frequency = {.end = 24, .count = whole(0, 9)};
        command.truncated_to = {whole(4, 49), WordMethod{whole(1, 2)}, NumberForm{whole(1, 2)}};
        command.gain = between(-3, 3), command.linear = between(-1, 1), command.quadratic = between(-0.9, 0.9);
        command.serial = some_factor();
        for (command.SERIAL.rows = 0; command.SERIAL.rows < whole(0, 4);) {
            const int row = ++command.SERIAL.rows;
            command.SERIAL(row, 1) = some_factor();
        }
        command.title = whole(0, 1) == 0 ? "one title" : "another title";
    }
    void edited(const std::string& before) {
        past_.push_back(before);
        if (past_.size() > undo_levels) past_.erase(past_.begin());
        future_.clear();
    }
    bool moved(std::string_view word, States& from, States& to) {
        const std::string before = bytes();
        send(word);
        if (from.empty()) return bytes() == before && boxes().starts_with("Error: Nothing to");
        const bool good = bytes() == from.back();
        from.pop_back();
        to.push_back(before);
        return good;
    }
    bool recalled() {
        const std::string before = bytes();
        if (stored_.empty() || whole(0, 1) == 0) return send("sto "), stored_ = before, bytes() == before;
        send("rcl ");
        edited(before);
        return bytes() == stored_;
    }

    std::mt19937 engine_;
    std::vector<CommandKeyword> words_;
    States past_, future_;
    std::string stored_;
};

TEST(FirEditSequences, UndoIsBitIdentical) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Sequence sequence(seed);
        for (int step = 0; step < 100; ++step) ASSERT_TRUE(sequence.step()) << seed << ' ' << step << sequence.boxes();
    }
}

}  // namespace
}  // namespace kavrel
