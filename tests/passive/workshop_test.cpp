// All edits of the passive Segment, in any order.
#include <random>

#include "passive/edit_step.h"
#include "tests/passive/passive_room.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

// A user who tries everything, mostly on branches that there are.
struct Tinkerer {
    PassiveRoom& room;
    std::mt19937 engine;

    int whole(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine); }
    double value() { return std::exp(std::uniform_real_distribution<double>(-1, 1)(engine)); }
    int branch() {
        int k = 1;
        for (int steps = whole(0, 12); steps > 0 && unpackBranch(room.filter.circuit, k).kn != 0; --steps)
            k = unpackBranch(room.filter.circuit, k).kn;
        return whole(0, 30) == 0 ? whole(0, 101) : k;
    }
    // A branch, and often the next one or that behind it.
    TwoBranches branches() {
        const int k = branch();
        int other = branchExists(room.filter.circuit, k) ? unpackBranch(room.filter.circuit, k).kn : 0;
        if (other != 0 && whole(0, 1) == 0) other = unpackBranch(room.filter.circuit, other).kn;
        return whole(0, 4) == 0 ? TwoBranches{branch(), branch()} : TwoBranches{k, other};
    }

    void edit() {
        constexpr std::string_view words[] = {"ins ", "del ", "ch  ", "com ", "squ ", "spl ", "ib  ", "tp  ", "xr  ",
                                              "xch ", "tr  ", "lce ", "ecm ", "ct  ", "cq  ", "mtr ", "rs  ", "fs  ",
                                              "dual", "flip", "pref", "be  ", "lat ", "incl", "conv"};
        PassiveRequest& r = room.command;
        r.insert = {.element = whole(1, insert_copy),
                    .branch = branch(),
                    .value1 = value(),
                    .value2 = value(),
                    .value3 = value(),
                    .copy_of = branch()};
        r.deleted_branch = r.included_in = r.coupled_four = branch();
        r.triplet = {branch(), OtherCoupling{whole(1, 3)}};
        r.change = {branch(), value(), value()};
        r.combined = r.interchanged = r.exchanged = r.converted = r.latticed = r.norton.branches = branches();
        r.split = {branch(), value() / 4, whole(0, 3) == 0 ? branch() : 0, whole(0, 1) == 0};
        r.tee_pi = {branch(), TeePiSide{whole(1, 2)}};
        r.norton.kind = NortonKind{whole(0, 2)};
        r.norton.ratio = whole(0, 1) == 0 ? 0 : value();
        r.norton.index = whole(0, 4);
        r.norton.match1 = branch();
        r.norton.match2 = branch();
        r.equalised.rows = whole(1, 4);
        for (int i = 1; i <= r.equalised.rows; ++i) r.equalised(i, 1) = branch();
        r.multiple = {MultipleKind{whole(0, 2)}, branch(), SideBranches{whole(1, 2)}, value(), value(), value()};
        r.impedance_factor = whole(0, 1) == 0 ? value() : -value();
        r.frequency_factor = value();
        r.percent_class = PercentClass{whole(1, 4)};
        r.rejected = {value(), value()};
        for (int i = 0; i < 4; ++i) room.window.answers.push_back(whole(0, 1) == 0 ? Answer::yes : Answer::no);
        room.send(words[static_cast<std::size_t>(whole(0, static_cast<int>(std::size(words)) - 1))]);
        room.window.answers.clear();
    }
};

TEST(Workshop, UndosAndRedosLeadBackToTheBit) {
    int edits = 0;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        PassiveRoom room;
        const bool stubs = seed % 3 == 0;
        room.filter.circuit = circuit(
            stubs ? "R 1 | C3 1 | UE5 1 | L8 2 | C9 1 | UE11 2 | L13 1 | R 1"
                  : "R 1 | C3 1 | L4 2 | LC5 1 0.5 | L6 1 | C7 1 | LC8 0.5 1 | C9 2 | L10 1 | LC11 0.3 1 | L12 1 | R 2",
            stubs ? CircuitKind::microwave : CircuitKind::lumped);
        room.filter.circuit.fs = 2;
        room.filter.circuit.fnorm = room.filter.circuit.fb = 0.2;
        Tinkerer user{room, std::mt19937(seed)};
        std::vector<Circuit> states{room.filter.circuit};
        std::size_t at = 0;
        int undone = 0;           // that can be redone
        const auto begin = [&] {  // as every command does
            if (states[at].ilast >= 130) compactValues(states[at]);
        };
        const auto step = [&](bool back) {
            begin();
            const bool possible = back ? room.state.kept.undoTop > 0 : undone > 0;
            room.send(back ? "undo" : "redo");
            EXPECT_EQ(room.boxes(), possible ? "" : back ? "Error: Nothing to undo" : "Error: Nothing to redo");
            if (!possible) return;
            at += back ? std::size_t(-1) : 1;
            undone += back ? 1 : -1;
            EXPECT_TRUE(room.filter.circuit == states[at]) << seed;
        };
        for (int turn = 0; turn < 250; ++turn) {
            if (const int way = user.whole(0, 5); way < 2) {
                step(way == 0);
                continue;
            }
            begin();
            user.edit();
            const bool destroyed = room.boxes().find("Circuit destroyed") != std::string::npos;
            const bool changed = !(room.filter.circuit == states[at]);
            EXPECT_FALSE(changed && room.boxes().find("Error: ") != std::string::npos) << room.boxes();
            if (!destroyed && !changed) continue;
            states.resize(++at);
            states.push_back(room.filter.circuit);
            undone = 0;
            ++edits;
        }
        while (room.state.kept.undoTop > 0) step(true);
    }
    EXPECT_GT(edits, 200);
}

TEST(Workshop, WhatBreaksItsPromiseIsNotTaken) {
    PassiveRoom room;
    room.butterworth();
    const Circuit before = room.filter.circuit;
    make_edit(room.desk, Promise::loss, [](PassiveDesk&, EditStep& step) {
        step.circuit().VALUE(2) *= 1 + 1e-6;
        return true;
    });
    EXPECT_EQ(room.window.boxes.back(), "Error: Circuit destroyed, use 'undo' to recover");
    EXPECT_TRUE(room.filter.circuit == before);
    EXPECT_EQ(room.state.kept.undoTop, 1);
    room.send("undo");
    EXPECT_TRUE(room.filter.circuit == before);
}

}  // namespace
}  // namespace kavrel
