// Several programs in one folder edit, undo, store, recall and save into the same file, and are killed. Longer:
// script/siege.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <random>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "passive/command_tools.h"
#include "passive/stored_circuit.h"
#include "tests/passive/passive_room.h"
#include "tests/passive/random_filters.h"

namespace kavrel {
namespace {

using testing::bytes_of;

constexpr const char* shared = "both";
constexpr int programs = 9;  // that there may have been

int rounds_or(int few) {
    const char* many = std::getenv("KAVREL_SIEGE");
    return many == nullptr ? few : std::atoi(many);
}

// Whether a file of that name holds a circuit that one of the programs has saved, whole.
bool holds_somebodys(const char* name) {
    PassiveFilter filter;
    FixedText<80> title;
    FileMark mark;
    if (read_filter(name, circuit_forms, filter, title, mark) != FileStatus::done) return false;
    const int owner = static_cast<int>(filter.circuit.fa);
    return owner >= 1 && owner <= programs && title.text() == std::to_string(owner) &&
           filter.circuit.fa == filter.circuit.fb;
}

// A program's work in the current folder; ends it with the number of the step that went wrong, or 0.
[[noreturn]] void work(PassiveRoom& room, int number, int rounds) {
    const auto kit = kept(room.desk);
    Circuit& circuit = room.filter.circuit;
    room.desk.temporaries.take_folder();
    room.session.TITLE.assign(std::to_string(number));
    const auto need = [](bool holds, int step) {
        if (!holds) _exit(step);
    };
    const auto edit = [&] {
        need(keep_for_undo(kit), 1);
        circuit.fa = circuit.fb = circuit.fa + 1.0e-6;
    };
    circuit.fa = circuit.fb = number;
    for (int round = 0; round < rounds; ++round) {
        const std::string before = bytes_of(room.filter);
        edit();
        const std::string edited = bytes_of(room.filter);
        need(undo(kit) && bytes_of(room.filter) == before, 2);
        need(redo(kit) && bytes_of(room.filter) == edited, 3);
        need(store(kit), 4);
        edit();
        need(recall(kit) && bytes_of(room.filter) == edited, 5);
        room.window.answers = {Answer::yes};  // another program has changed it
        room.session.filter_file = shared;
        need(save(kit), 6);
        need(holds_somebodys(shared), 7);
        room.window.boxes.clear();
        room.journal = {};
    }
    room.desk.temporaries.give_up();
    _exit(0);
}

pid_t start(PassiveRoom& room, int number, int rounds) {
    const pid_t child = fork();
    if (child == 0) work(room, number, rounds);
    return child;
}

int ended(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

std::set<std::string> files_here() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename().string());
    return names;
}

TEST(Siege, SeveralProgramsInAFolderKeepTheirOwn) {
    for (const int count : {2, 4}) {
        PassiveRoom room;
        room.butterworth();
        const ScratchFolder folder(ScratchFolder::On::memory);
        std::vector<pid_t> children;
        for (int number = 1; number <= count; ++number) children.push_back(start(room, number, rounds_or(150)));
        for (const pid_t child : children) EXPECT_EQ(ended(child), 0) << count << " programs";
        EXPECT_EQ(files_here(), std::set<std::string>{"both.qfp"});
    }
}

TEST(Siege, AKilledProgramHarmsNeitherTheOtherNorTheirFile) {
    PassiveRoom room;
    room.butterworth();
    const ScratchFolder folder(ScratchFolder::On::memory);
    ASSERT_EQ(ended(start(room, 1, 1)), 0);
    std::mt19937 random(14);
    constexpr int endless = 1 << 30;
    pid_t children[2] = {start(room, 1, endless), start(room, 2, endless)};
    const int kills = rounds_or(100);
    for (int i = 0; i < kills; ++i) {
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 8000));
        pid_t& child = children[random() % 2];
        kill(child, SIGKILL);
        ASSERT_EQ(ended(child), SIGKILL) << "had found a fault by itself";
        ASSERT_TRUE(holds_somebodys(shared)) << i;
        child = start(room, 1 + static_cast<int>(random() % programs), endless);
    }
    for (const pid_t child : children) {
        kill(child, SIGKILL);
        EXPECT_EQ(ended(child), SIGKILL);
    }
    TemporaryFiles next;
    next.take_folder();
    EXPECT_EQ(files_here(), std::set<std::string>{"both.qfp"}) << "the next start takes away what was left";
}

}  // namespace
}  // namespace kavrel
