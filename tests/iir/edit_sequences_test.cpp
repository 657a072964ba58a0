// Random sequences of edits with undo and redo in between.
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

class Sequence : public IirRoom {
public:
    explicit Sequence(unsigned long long seed) : random_(seed) {
        filter = random_filter(random_, random_.integer(3, 14));
        if (random_.coin()) scale(filter, random_);
    }

    // One command; false where what it left is not what it has to be.
    bool step() {
        const auto place = [&] { return random_.coin() ? FactorPlace::numerator : FactorPlace::denominator; };
        const std::string before = bytes();
        command = {.loss = random_.between(-3, 3), .c1 = random_.between(-1, 1), .c2 = random_.between(0.3, 0.9)};
        command.added_to = place(), command.deleted_from = place(), command.permuted = place();
        command.deleted = random_.integer(1, 9), command.sequence = "2 1 3 5 4";
        command.sampling_frequency = random_.between(1e3, 1e5);
        constexpr std::string_view edits[] = {"flat", "add ", "del ", "perm", "fs  ", "conv"};
        constexpr std::string_view forms[] = {"par ", "dir ", "lat "};
        switch (const int number = random_.integer(0, 9)) {
            case 0: return moved("undo", past_, future_);
            case 1: return moved("redo", future_, past_);
            case 2: return recalled();
            case 3: send(forms[random_.integer(0, 2)]); return roots_against_cascade(filter) < 1e-12;  // no edit
            default: send(edits[number - 4]);
        }
        if (bytes() == before) return true;
        edited(before);
        return filter.Modified && roots_against_cascade(filter) < 1e-12;
    }

private:
    using States = std::vector<std::string>;
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
        if (stored_.empty() || random_.coin()) return send("sto "), stored_ = before, bytes() == before;
        send("rcl ");
        edited(before);
        return bytes() == stored_;
    }

    RandomNumbers random_;
    States past_, future_;
    std::string stored_;
};

TEST(EditSequences, UndoIsBitIdenticalAndRootsFollowTheCascade) {
    for (unsigned long long seed = 1; seed <= 20; ++seed) {
        Sequence sequence(seed);
        for (int step = 0; step < 100; ++step) ASSERT_TRUE(sequence.step()) << seed << ' ' << step << sequence.boxes();
    }
}

}  // namespace
}  // namespace kavrel
