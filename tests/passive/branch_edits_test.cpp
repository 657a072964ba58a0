// Commands that rewrite branches: rows of a circuit, what is entered, and what comes of it.
#include "passive/branch_edits.h"

#include <sstream>

#include "tests/passive/passive_room.h"
#include "tests/support/circuit_literal.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct BranchEdits : testing::Test, PassiveRoom {
    // Enters "branch1=4 branch2=6" into the form of a word and sends that.
    void enter(std::string_view word, std::string_view typed) {
        const struct {
            std::string_view word;
            const Form& form;
        } forms[] = {{"com ", PASSIVE_COMBINE_DLG}, {"spl ", PASSIVE_SPLIT_DLG},    {"ib  ", PASSIVE_INTERCHANGE_DLG},
                     {"tp  ", PASSIVE_TEE_PI_DLG},  {"xr  ", PASSIVE_EXCHANGE_DLG}, {"xch ", PASSIVE_CONVERT_DLG}};
        window.forms.push_back([typed](FormSheet& sheet) {
            std::istringstream words{std::string(typed)};
            for (std::string entry; words >> entry;) {
                const auto sign = entry.find('=');
                const int field = find_field(sheet, entry.substr(0, sign));
                EXPECT_GE(field, 0) << entry;
                if (field < 0) return true;
                EXPECT_EQ(sheet.enter(static_cast<std::size_t>(field), entry.substr(sign + 1)), "") << entry;
            }
            return true;
        });
        for (const auto& row : forms) {
            if (row.word != word) continue;
            EXPECT_TRUE(run_form(row.form, &command, session.units, reporter));
        }
        send(word);
    }

    void take(std::string_view literal, CircuitKind kind = CircuitKind::lumped) {
        filter = {};
        state = {};
        command = {};
        command.circuit = &filter.circuit;
        filter.circuit = circuit(literal, kind);
        filter.circuit.R1 = filter.circuit.VALUE(1);
        const Branch last = unpackBranch(filter.circuit, filter.circuit.klast);
        filter.circuit.R2 = last.id == BranchId::resistor ? filter.circuit.VALUE(last.i1) : 0;
        filter.circuit.termination_ratio = filter.circuit.R2 / filter.circuit.R1;
        filter.circuit.fs = 2;
        filter.circuit.fnorm = 0.2;
    }
};

// The same branches in the same places, whatever their numbers are.
void expect_near(const Circuit& edited, const Circuit& expected) {
    int k = 1, wanted = 1;
    while (k != 0 && wanted != 0) {
        const Branch a = unpackBranch(edited, k), b = unpackBranch(expected, wanted);
        ASSERT_EQ(a.id, b.id) << k;
        const auto values = branch_values(edited, a), others = branch_values(expected, b);
        for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], others[i], 1e-12) << k;
        const bool any_place = !branch_kinds[a.id].slot_element() || a.id == BranchId::resistor;
        EXPECT_TRUE(any_place || (k - wanted) % 2 == 0) << k;
        k = a.kn;
        wanted = b.kn;
    }
    EXPECT_EQ(k, wanted) << "both are at their ends";
}

constexpr auto stubs = CircuitKind::microwave;
constexpr auto lumps = CircuitKind::lumped;

TEST_F(BranchEdits, EveryConditionHasItsMessageAndLeavesNoTrace) {
    // The store has no slot left behind these.
    const auto full = [](std::string head) {
        for (int k = circuit(head).klast; k < last_insert_slot; ++k) head += " | C 1";
        return head;
    };
    const struct {
        std::string before;
        std::string_view word, typed, box;
        CircuitKind kind = lumps;
        bool lowpass = true;
    } rows[] = {
        {"", "com ", "branch1=101 branch2=0", "Error: Incorrect branches specified"},
        {"R 1 | L2 1 | L4 1", "com ", "branch1=2 branch2=6", "Error: Incorrect branches specified"},
        {"R 1 | L2 1 | C4 1", "com ", "branch1=2 branch2=4", "Error: Indicated branches cannot be combined"},
        {"R 1 | L2 1 | C3 1 | L4 1", "com ", "branch1=4 branch2=2", "Error: Indicated branches cannot be combined"},
        {"R 1 | L2 1 | C3 1 | C5 -1", "com ", "branch1=3 branch2=5", "Error: Indicated branches cannot be combined"},
        {"", "spl ", "branch=2 half=yes", "Error: Branch does not exist"},
        {"R 1 | LC2 1 1", "spl ", "branch=2 value=1", "Error: Branch may not be split"},
        {"R 1 | L2 1", "spl ", "branch=2 value=0", "Error: Zero value not permitted"},
        {"R 1 | L2 3", "spl ", "branch=2 value=3", "Error: No change"},
        {"R 1 | L2 3", "spl ", "branch=2 match=-17", "Error:  Branch no.  17 does not exist"},
        {"R 1 | L2 3 | C3 2", "spl ", "branch=2 match=3", "Error:  Branch   3 is of the wrong type"},
        {full("R 1 | L2 1"), "spl ", "branch=2 half=yes", "Warning: Storage is full, operation discontinued"},
        {"", "ib  ", "branch1=2 branch2=4", "Error: Incorrect or inappropriate branch(es)"},
        {"R 1 | L2 1 | R 1", "ib  ", "branch1=1 branch2=2", "Error: Incorrect or inappropriate branch(es)"},
        {"R 1 | L2 1 | R 1", "ib  ", "branch1=2 branch2=101", "Error: Incorrect or inappropriate branch(es)"},
        {"R 1 | L2 1 | C3 1 | R 1", "ib  ", "branch1=3 branch2=2",
         "Error:  Branches   3 and   2 cannot be interchanged"},
        {"R 1 | L2 1 | C3 1 | L4 1 | R 1", "ib  ", "branch1=2 branch2=4",
         "Error:  Branches   2 and   4 cannot be interchanged"},
        {"R 1 | L2 1 | C4 1 | R 1", "ib  ", "branch1=2 branch2=6",
         "Error:  Branches   2 and   6 cannot be interchanged"},
        {"R 1 | L2 1 | UE4 1 | R 1", "ib  ", "branch1=4 branch2=7", "Error: Branch does not exist", stubs},
        {"R 1 | L2 1 | UE4 1 | LC7 1 1 | R 1", "ib  ", "branch1=4 branch2=7", "Error: Branches are inappropriate",
         stubs},
        {"R 1 | L2 1 | C3 1 | UE5 1 | R 1", "ib  ", "branch1=2 branch2=5", "Error: Branches are inappropriate", stubs},
        {"R 1 | L2 1 | UE4 1 | R 1", "ib  ", "branch1=2 branch2=4",
         "Question: Lowpass equivalent? | Error: Branches are inappropriate", stubs, false},
        {"R 1 | L3 1 | UE5 1 | R 1", "ib  ", "branch1=3 branch2=5",
         "Question: Lowpass equivalent? | Error: Branches are inappropriate", stubs},
        {"R 1 | L2 -1 | UE4 1 | R 1", "ib  ", "branch1=2 branch2=4",
         "Question: Lowpass equivalent? | Error: Branches are inappropriate", stubs},
        {"R 1 | L3 -1 | UE5 2 | R 1", "ib  ", "branch1=3 branch2=5",
         "Question: Lowpass equivalent? | Error: Branches are inappropriate", stubs, false},
        {full("R 1 | C2 1 | L3 1 | UE5 1 | C7 1"), "ib  ", "branch1=3 branch2=5",
         "Question: Lowpass equivalent? | Error: Storage is full", stubs, false},
        {full("R 1 | L2 1 | C3 1 | C4 1 | C5 1"), "tp  ", "branch=3", "Error: Storage is full"},
        {full("R 1 | LC2 1 1 | C3 1 | LC4 1 2.5"), "xr  ", "branch1=2 branch2=4", "Error: Storage is full"},
        {full("R 1 | LCL2 1 1 1"), "xch ", "branch1=2", "Error: Storage is full"},
        {"", "tp  ", "branch=2", "Error: Incorrect or nonexistent branch"},
        {"R 1 | L3 1 | L4 1 | L5 1 | R 1", "tp  ", "branch=1", "Error: Incorrect or nonexistent branch"},
        {"R 1 | L3 1 | L4 1 | L5 1", "tp  ", "branch=5", "Error: Incorrect or nonexistent branch"},
        {"R 1 | L3 1 | L4 1 | C5 1 | R 1", "tp  ", "branch=3",
         "Error: There is no appropriate tee or pi at indicated location"},
        {"R 1 | L3 1 | L4 -2 | L5 1 | R 1", "tp  ", "branch=3",
         "Error: There is no appropriate tee or pi at indicated location"},
        {"R 1 | L3 1 | L4 1 | L5 1", "tp  ", "branch=3",
         "Error: There is no appropriate tee or pi at indicated location"},  // a voltage would drive it
        {"R 1 | L3 1 | LC4 -2 1 | L5 1 | R 1", "tp  ", "branch=3 side=Up",
         "Error: There is no appropriate tee or pi at indicated location"},
        {"", "xr  ", "branch1=2 branch2=4", "Error: Incorrect branches selected"},
        {"R 1 | LC2 1 1", "xr  ", "branch1=2 branch2=2", "Error: Incorrect branches selected"},
        {"R 1 | LC2 1 1 | C3 1 | L4 1", "xr  ", "branch1=2 branch2=4", "Error: Branches are not resonant"},
        {"R 1 | LC2 1 1 | LC3 2 1", "xr  ", "branch1=2 branch2=3", "Error: Operation not possible"},
        {"R 1 | LC2 1 1 | LC4 2 1", "xr  ", "branch1=2 branch2=4",
         "Error: Use the 'interchange branch' option instead"},
        {"R 1 | LC2 1 1 | L4 1 | LC6 2 1", "xr  ", "branch1=2 branch2=6",
         "Error: Use the 'interchange branch' option instead"},
        {"R 1 | LC2 1 1 | C3 1 | L5 1 | LC6 2 1", "xr  ", "branch1=2 branch2=6", "Error: Too many branches in between"},
        {"R 1 | LC2 1 1 | LC3 1 1 | LC4 2 1", "xr  ", "branch1=2 branch2=4", "Error: Take dual first, then repeat"},
        {"R 1 | LC2 1 2 | C3 1 | LC4 2 1", "xr  ", "branch1=2 branch2=4", "Error: No change"},
        {"R 1 | LC2 1 1 | C3 1 | LC4 1 2", "xr  ", "branch1=2 branch2=4", "Error: Operation not possible"},
        {"", "xch ", "branch1=2 branch2=4", "Error: Branch does not exist"},
        {"R 1 | LC2 1 1", "xch ", "branch1=2 branch2=4", "Error: Branch does not exist"},
        {"R 1 | L2 1 | LC4 1 1", "xch ", "branch1=2 branch2=4", "Error: Incorrect branch specified"},
        {"R 1 | LC2 1 1 | LC4 1 1", "xch ", "branch1=2 branch2=4", "Error: Incorrect branch specified"},
        {"R 1 | LC2 1 1 | C3 1 | L4 1", "xch ", "branch1=2 branch2=4", "Error: Incorrect branch specified"},
        {"R 1 | LC2 1 1 | L4 -1", "xch ", "branch1=2 branch2=4", "Error: Incorrect branch specified"},
        {"R 1 | LC2 1 1 | C3 1", "xch ", "branch1=2 branch2=3", "Error: Take the dual of the circuit and repeat"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.before.substr(0, 60) + " " + std::string(row.word) + std::string(row.typed));
        row.before.empty() ? take("R 1") : take(row.before, row.kind);
        if (row.before.empty()) filter = {};
        const auto hindrance = passive_hindrance(desk, CommandKeyword(row.word));
        EXPECT_EQ(hindrance, row.before.empty() ? row.box.substr(row.box.find(' ') + 1) : "");
        const PassiveFilter before = filter;
        window.answers = {row.lowpass ? Answer::yes : Answer::no};
        enter(row.word, row.typed);
        EXPECT_EQ(boxes(), row.box);
        EXPECT_TRUE(filter.circuit == before.circuit && filter.mod == before.mod);
        EXPECT_EQ(state.kept.undoTop, 0);
        window.answers.clear();
    }
}

TEST_F(BranchEdits, WhatIsMadeIsShownAndUndone) {
    const struct {
        std::string_view before, word, typed, after;
        CircuitKind kind = lumps;
        bool lowpass = true;
    } rows[] = {
        {"R 1 | L2 1 | L4 2 | R 1", "com ", "branch1=4 branch2=2", "R 1 | L2 3 | R 1"},
        {"R 1 | C3 1 | C5 -1 | L6 1", "com ", "branch1=3 branch2=5", "R 1 | L2 1"},
        {"R 1 | C2 3 | C4 6 | L5 2 | L7 2 | C9 0 | R 1", "com ", "branch1=101 branch2=0", "R 1 | C2 2 | L3 1 | R 1"},
        {"R 1 | L2 4 | R 1", "spl ", "branch=2 half=yes", "R 1 | L2 2 | L4 2 | R 1"},
        {"R 1 | L3 4 | R 1", "spl ", "branch=3 half=yes", "R 1 | L3 8 | L5 8 | R 1"},
        {"R 1 | C2 4 | R 1", "spl ", "branch=2 value=5", "R 1 | C2 5 | C4 20 | R 1"},
        {"R 1 | C3 4 | R 1", "spl ", "branch=3 value=5", "R 1 | C3 5 | C5 -1 | R 1"},
        {"R 1 | C3 4 | C5 1 | R 1", "spl ", "branch=3 match=-5", "R 1 | C3 -1 | C5 5 | C7 1 | R 1"},
        {"R 1 | C3 4 | R 1", "spl ", "branch=3 value=0.2", "R 1 | C3 5 | C5 -1 | R 1", stubs},  // an impedance
        {"R 1 | L2 1 | C4 2 | LC6 3 4 | R 1", "ib  ", "branch1=2 branch2=6", "R 1 | LC2 3 4 | C4 2 | L6 1 | R 1"},
        {"R 1 | C3 1 | UE5 1 | R 1", "ib  ", "branch1=5 branch2=3", "R 1 | UE3 0.5 | L6 0.5 | R 1", stubs},
        {"R 1 | UE3 1 | L6 1 | R 1", "ib  ", "branch1=3 branch2=6", "R 1 | C3 0.5 | UE5 2 | R 1", stubs},
        {"R 1 | L3 1 | UE5 1 | R 1", "ib  ", "branch1=3 branch2=5", "R 1 | UE3 0.5 | L5 0.5 | R 0.25", stubs, false},
        {"R 1 | L3 3 | L4 3 | L5 3 | R 1", "tp  ", "branch=3", "R 1 | L2 1 | L3 1 | L4 1 | R 1"},
        {"R 1 | C2 3 | C3 3 | C4 3 | R 1", "tp  ", "branch=2 ", "R 1 | C3 1 | C4 1 | C5 1 | R 1"},
        {"R 1 | C3 5 | L5 1 | LC6 1 2 | L7 1 | R 1", "tp  ", "branch=5 side=Up",
         "R 1 | C3 3 | LC4 0.5 4 | L5 0.16666666666666667 | C7 4 | R 0.25"},
        {"R 1 | C3 4 | LC4 1 1 | C5 2 | LC6 1 2 | C7 1 | R 1", "xr  ", "branch1=4 branch2=6",
         "R 1 | C3 2 | LC4 0.2 10 | C5 3.3333333333333333 | LC6 1.8 0.5555555555555556 | C7 1.6666666666666667 | R 1"},
        {"R 1 | LC2 1 1 | L4 1 | R 1", "xch ", "branch1=2 branch2=4", "R 1 | LCL2 2 0.25 2 | R 1"},
        {"R 1 | LCL2 2 0.25 2 | R 1", "xch ", "branch1=2", "R 1 | LC2 1 1 | L4 1 | R 1"},
    };
    window.files = {"edits"};
    send("writ");
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.before) + " " + std::string(row.word) + std::string(row.typed));
        take(row.before, row.kind);
        state.recording = true;
        state.macro_file.assign("edits.wbt");
        const Circuit before = filter.circuit;
        window.answers = {row.lowpass ? Answer::yes : Answer::no};
        enter(row.word, row.typed);
        EXPECT_TRUE(boxes().empty() || boxes() == "Question: Lowpass equivalent?") << boxes();
        expect_near(filter.circuit, circuit(row.after, row.kind));
        EXPECT_EQ(filter.mod, 1.0F);
        EXPECT_FALSE(window.lines.empty());
        const Circuit edited = filter.circuit;
        state.recording = false;
        send("undo");
        EXPECT_TRUE(filter.circuit == before);
        send("redo");
        EXPECT_TRUE(filter.circuit == edited);
        window.answers.clear();
    }
    expect_golden(TEST_DATA "/passive/branch_edits.wbt", read_text("edits.wbt"));
}

TEST_F(BranchEdits, NumbersWithoutGapsAndNothingToUndoWhereThereAreNone) {
    take("R 1 | C3 1 | L4 2 | R5 1");
    ASSERT_EQ(shiftBranches(filter.circuit, 4, 6), CircuitVerdict::done);
    send("squ ");
    EXPECT_EQ(filter.circuit.klast, 5);
    EXPECT_EQ(state.kept.undoTop, 1);
    send("squ ");
    EXPECT_EQ(boxes(), "");
    EXPECT_EQ(state.kept.undoTop, 1);
}

TEST_F(BranchEdits, AFormOpensWithWhatTheBranchHas) {
    take("R 1 | C3 5n | LC4 1 2 | R 1");
    session.units.capacitor_multiplier = 1e-9;
    window.forms.push_back([](FormSheet& sheet) {
        const auto value = static_cast<std::size_t>(find_field(sheet, "value"));
        EXPECT_EQ(sheet.enter(0, "3"), "");
        EXPECT_EQ(sheet.shown(value), "5.000000E+00");
        return true;
    });
    EXPECT_TRUE(run_form(PASSIVE_SPLIT_DLG, &command, session.units, reporter));
}

}  // namespace
}  // namespace kavrel
