#include "passive/snapshots.h"

#include <cstring>
#include <filesystem>
#include <limits>
#include <set>

#include <gtest/gtest.h>

#include "tests/passive/random_filters.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

using testing::bytes_of;
using testing::FilterMaker;

// What a Segment keeps, and how it edits: by an undo snapshot first.
struct Bench {
    FilterMaker maker{11};
    PassiveFilter filter = maker.filter();
    FixedText<80> title = maker.title();
    PassiveState state;

    [[nodiscard]] std::string now() const { return bytes_of(filter) + title.text(); }
    void edit() {
        ASSERT_EQ(push_undo(filter, title, state), SnapshotVerdict::done);
        change();
    }
    void change() {
        filter = maker.filter();
        title = maker.title();
    }
    SnapshotVerdict undo() { return kavrel::undo(filter, title, state); }
    SnapshotVerdict redo() { return kavrel::redo(filter, title, state); }
};

std::set<std::string> files_here() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename().string());
    return names;
}

TEST(Snapshots, TwelveEditsLeaveTenToUndoAndToRedo) {
    const ScratchFolder folder;
    Bench bench;
    ASSERT_EQ(store(bench.filter, bench.title), SnapshotVerdict::done);
    std::vector<std::string> states = {bench.now()};
    for (int edit = 1; edit <= 12; ++edit) {
        bench.edit();
        states.push_back(bench.now());
        EXPECT_EQ(bench.state.undoTop, std::min(edit, 10));
        EXPECT_EQ(bench.state.undoCount, std::min(edit, 10));
        if (edit == 1) {
            EXPECT_EQ(files_here(), (std::set<std::string>{"_xxx0.tmp", "~xxx.tmp"}));
        }
    }
    const std::set<std::string> eleven = {"_xxx0.tmp", "_xxx1.tmp", "_xxx2.tmp", "_xxx3.tmp", "_xxx4.tmp", "_xxx5.tmp",
                                          "_xxx6.tmp", "_xxx7.tmp", "_xxx8.tmp", "_xxx9.tmp", "~xxx.tmp"};
    EXPECT_EQ(files_here(), eleven);
    EXPECT_EQ(bench.redo(), SnapshotVerdict::nothing_to_redo);
    for (std::size_t back = 11; back >= 2; --back) {
        ASSERT_EQ(bench.undo(), SnapshotVerdict::done);
        EXPECT_TRUE(bench.now() == states[back]) << back;
    }
    EXPECT_EQ(message_of(bench.undo()), "Nothing to undo");
    EXPECT_TRUE(bench.now() == states[2]);
    for (std::size_t forth = 3; forth <= 12; ++forth) {
        ASSERT_EQ(bench.redo(), SnapshotVerdict::done);
        EXPECT_TRUE(bench.now() == states[forth]) << forth;
    }
    EXPECT_EQ(message_of(bench.redo()), "Nothing to redo");
    EXPECT_TRUE(bench.now() == states[12]);
    EXPECT_EQ(files_here(), eleven);
    ASSERT_EQ(recall(bench.filter, bench.title), SnapshotVerdict::done);
    EXPECT_TRUE(bench.now() == states[0]) << "what was stored before the edits";
}

// Any order of edits, undos and redos, against a plain list of states.
TEST(Snapshots, BehaveAsAListOfElevenStates) {
    const ScratchFolder folder;
    Bench bench;
    std::vector<std::string> states = {bench.now()};
    std::size_t at = 0;
    for (int step = 0; step < 1500; ++step) {
        const int what = bench.maker.whole(0, 6);
        if (what <= 2) {
            bench.edit();
            states.resize(at + 1);
            states.push_back(bench.now());
            if (states.size() > 11) states.erase(states.begin());
            at = states.size() - 1;
        } else if (what <= 4) {
            EXPECT_EQ(bench.undo(), at == 0 ? SnapshotVerdict::nothing_to_undo : SnapshotVerdict::done);
            if (at > 0) --at;
        } else {
            const bool newest = at + 1 == states.size();
            EXPECT_EQ(bench.redo(), newest ? SnapshotVerdict::nothing_to_redo : SnapshotVerdict::done);
            if (!newest) ++at;
        }
        ASSERT_TRUE(bench.now() == states[at]) << step;
        ASSERT_EQ(bench.state.undoTop, static_cast<int>(at));
        ASSERT_EQ(bench.state.undoCount, static_cast<int>(states.size()) - 1);
    }
}

TEST(Snapshots, RecordsHaveTheirLengths) {
    const ScratchFolder folder;
    Bench bench;
    ASSERT_EQ(store(bench.filter, bench.title), SnapshotVerdict::done);
    const std::string bytes = read_text("~xxx.tmp");
    std::size_t at = 0;
    for (const std::uint32_t told : {1200U, 400U, 2688U, 516U, 4U, 4U, 4U, 8U}) {
        std::uint32_t markers[2] = {};
        std::memcpy(&markers[0], bytes.data() + at, 4);
        ASSERT_EQ(markers[0], told);
        std::memcpy(&markers[1], bytes.data() + at + 4 + told, 4);
        EXPECT_EQ(markers[1], told);
        at += told + 8;
    }
    double fnorm = 0;
    std::memcpy(&fnorm, bytes.data() + at - 12, 8);
    EXPECT_EQ(fnorm, bench.filter.circuit.fnorm);
}

// An edit may have made a value infinite: it can be taken back all the same, and made again.
TEST(Snapshots, HoldNumbersThatAreNotFinite) {
    const ScratchFolder folder;
    Bench bench;
    const std::string before = bench.now();
    ASSERT_EQ(push_undo(bench.filter, bench.title, bench.state), SnapshotVerdict::done);
    bench.filter.circuit.VALUE(1) = std::numeric_limits<double>::infinity();
    const std::string behind = bench.now();
    bench.edit();
    ASSERT_EQ(bench.undo(), SnapshotVerdict::done);
    EXPECT_TRUE(bench.now() == behind);
    ASSERT_EQ(bench.undo(), SnapshotVerdict::done);
    EXPECT_TRUE(bench.now() == before);
    ASSERT_EQ(bench.redo(), SnapshotVerdict::done);
    EXPECT_TRUE(bench.now() == behind);
}

// Each case spoils a file of a bench that has three edits, the last undone, and something stored.
struct Failure {
    const char* what;
    void (*spoil)();
    SnapshotVerdict (*attempt)(Bench& bench);
    const char* told;
};

void cut_in_half(const char* name) {
    const std::string bytes = read_text(name);
    write_text(name, bytes.substr(0, bytes.size() / 2));
}

SnapshotVerdict try_undo(Bench& bench) { return bench.undo(); }
SnapshotVerdict try_redo(Bench& bench) { return bench.redo(); }
SnapshotVerdict try_push(Bench& bench) { return push_undo(bench.filter, bench.title, bench.state); }
SnapshotVerdict try_store(Bench& bench) { return store(bench.filter, bench.title); }
SnapshotVerdict try_recall(Bench& bench) { return recall(bench.filter, bench.title); }

// In the place of a file, a folder with something in it can be neither written nor read.
void block(const char* name) {
    std::filesystem::remove(name);
    std::filesystem::create_directory(name);
    write_text(std::string(name) + "/inside", "");
}

constexpr Failure failures[] = {
    {"undo, file missing", [] { std::filesystem::remove("_xxx1.tmp"); }, try_undo,
     "Nothing stored\nor error reading data file"},
    {"undo, file damaged", [] { cut_in_half("_xxx1.tmp"); }, try_undo, "Nothing stored\nor error reading data file"},
    {"redo, file missing", [] { std::filesystem::remove("_xxx2.tmp"); }, try_redo, "File could not be read"},
    {"redo, file damaged", [] { cut_in_half("_xxx2.tmp"); }, try_redo, "File could not be read"},
    {"push", [] { block("_xxx2.tmp"); }, try_push, "Data could not be stored"},
    {"store", [] { block("~xxx.tmp"); }, try_store, "Data could not be stored"},
    {"recall, nothing stored", [] { std::filesystem::remove("~xxx.tmp"); }, try_recall, "Data was not stored"},
    {"recall, file damaged", [] { cut_in_half("~xxx.tmp"); }, try_recall, "Data could not be read"},
    {"recall, file empty", [] { write_text("~xxx.tmp", ""); }, try_recall, "Data could not be read"},
    {"recall, no file", [] { block("~xxx.tmp"); }, try_recall, "Data could not be read"},
};

TEST(Snapshots, FailuresAreToldAndChangeNothing) {
    for (const Failure& failure : failures) {
        const ScratchFolder folder;
        Bench bench;
        for (int i = 0; i < 3; ++i) bench.edit();
        ASSERT_EQ(bench.undo(), SnapshotVerdict::done);
        ASSERT_EQ(store(bench.filter, bench.title), SnapshotVerdict::done);
        bench.change();
        failure.spoil();
        const std::string before = bench.now();
        const auto files_before = files_here();
        EXPECT_EQ(message_of(failure.attempt(bench)), failure.told) << failure.what;
        EXPECT_TRUE(bench.now() == before) << failure.what;
        EXPECT_EQ(bench.state.undoTop, 2) << failure.what;
        EXPECT_EQ(bench.state.undoCount, 3) << failure.what;
        EXPECT_EQ(files_here(), files_before) << failure.what;
    }
}

// The eleventh push cannot be written: the ten files stay where they are.
TEST(Snapshots, AFailedPushDropsNoOlderState) {
    const ScratchFolder folder;
    Bench bench;
    std::vector<std::string> states = {bench.now()};
    for (int edit = 1; edit <= 10; ++edit) {
        bench.edit();
        states.push_back(bench.now());
    }
    block("_xxx10.tmp");
    EXPECT_EQ(push_undo(bench.filter, bench.title, bench.state), SnapshotVerdict::not_kept);
    for (std::size_t back = 10; back > 0; --back) {
        ASSERT_EQ(bench.undo(), SnapshotVerdict::done);
        EXPECT_TRUE(bench.now() == states[back - 1]) << back;
    }
}

}  // namespace
}  // namespace kavrel
