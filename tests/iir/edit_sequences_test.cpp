// Random sequences of edits with undo and redo in between.
#include <deque>

#include <fmt/format.h>

#include "tests/iir/factored_filter.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

class Sequence : public IirRoom {
public:
    explicit Sequence(unsigned long long seed) : random_(seed) {
        filter = random_cascade(random_, random_.integer(2, 8));
        if (random_.coin()) scale(filter, random_);
    }

    // One command; false where what it left is not what it has to be.
    bool step() {
        const std::string before = bytes();
        switch (random_.integer(0, 9)) {
            case 0: return moved("undo", past_, future_);
            case 1: return moved("redo", future_, past_);
            case 2: send("flat", IIR_FLAT_DLG, {{"loss", number(-3, 3)}}); break;
            case 3:
                send("add ", IIR_ADD_DLG, {{"c1", number(-1, 1)}, {"c2", number(0.3, 0.9)}, {"place", place()}});
                break;
            case 4: send("del ", IIR_DELETE_DLG, {{"number", whole_number(1, 9)}, {"place", place()}}); break;
            case 5: send("perm", IIR_PERMUTE_DLG, {{"sequence", "2 1 3 5 4"}, {"place", place()}}); break;
            case 6: send("fs  ", IIR_RESAMPLE_DLG, {{"sampling_frequency", number(1e3, 1e5)}}); break;
            case 7: send("conv"); break;
            case 8: return recalled();
            default: return form_made();
        }
        return edited(before);
    }

private:
    using States = std::deque<std::string>;

    std::string number(double low, double high) { return fmt::format("{}", random_.between(low, high)); }
    std::string whole_number(int low, int high) { return fmt::format("{}", random_.integer(low, high)); }
    std::string_view place() { return random_.coin() ? "Numerator" : "Denominator"; }

    bool edited(const std::string& before) {
        if (bytes() == before) return true;
        past_.push_back(before);
        if (past_.size() > undo_levels) past_.pop_front();
        future_.clear();
        return filter.Modified && roots_against_cascade(filter) < 1e-12;
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
    // No edit: an undo leads to what was before the last one.
    bool form_made() {
        constexpr std::string_view words[] = {"par ", "dir ", "lat "};
        const CascadeForm before = filter.cascade;
        send(words[random_.integer(0, 2)]);
        return filter.cascade.C1D == before.C1D && filter.cascade.CK == before.CK;
    }
    bool recalled() {
        if (stored_.empty() || random_.coin()) {
            stored_ = bytes();
            send("sto ");
            return boxes() == "Success: *** done ***" && bytes() == stored_;
        }
        const std::string before = bytes();
        send("rcl ");
        past_.push_back(before);
        if (past_.size() > undo_levels) past_.pop_front();
        future_.clear();
        return bytes() == stored_;
    }

    RandomNumbers random_;
    States past_, future_;
    std::string stored_;
};

TEST(EditSequences, UndoIsBitIdenticalAndRootsFollowTheCascade) {
    for (unsigned long long seed = 1; seed <= 20; ++seed) {
        Sequence sequence(seed);
        for (int step = 0; step < 100; ++step) {
            ASSERT_TRUE(sequence.step()) << seed << ' ' << step << ' ' << sequence.boxes() << ' '
                                         << roots_against_cascade(sequence.filter);
        }
    }
}

}  // namespace
}  // namespace kavrel
