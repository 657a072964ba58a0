// Edits: their conditions, their traces (undo, mark, terminations, show), and what they make of typed values.
#include <functional>

#include "circuit/branch_kinds.h"
#include "tests/passive/passive_room.h"

namespace kavrel {
namespace {

struct Edits : testing::Test, PassiveRoom {};

TEST_F(Edits, EveryConditionHasItsMessageAndEveryGoodRowNone) {
    struct Row {
        const char* what;
        CircuitKind kind;
        std::string_view word;
        InsertRequest insert;
        ChangeRequest change;
        int deleted;
        std::string_view box;
    };
    using enum BranchId;
    constexpr auto of = insert_choice;
    constexpr auto lumped_kind = CircuitKind::lumped;
    constexpr auto lines = CircuitKind::microwave;
    const Row rows[] = {
        {"shunt r", lumped_kind, "ins ", {of(resistor), 9, 50}, {}, 0, ""},
        {"no slot 0", lumped_kind, "ins ", {of(inductor), 0, 1}, {}, 0, "Error: Branch number is out of range"},
        {"no slot 101", lumped_kind, "ins ", {of(inductor), 101, 1}, {}, 0, "Error: Branch number is out of range"},
        {"appended", lumped_kind, "ins ", {of(inductor), 100, 1}, {}, 0, ""},
        {"an l as the first",
         lumped_kind,
         "ins ",
         {of(inductor), 1, 1},
         {},
         0,
         "Error: First branch must be a resistor"},
        {"an r as the first", lumped_kind, "ins ", {of(resistor), 1, 1}, {}, 0, ""},
        {"no ohms", lumped_kind, "ins ", {of(resistor), 9, 0}, {}, 0, "Error: Zero value not permitted"},
        {"ue among lumps",
         lumped_kind,
         "ins ",
         {of(unit_element), 4, 50},
         {},
         0,
         "Error: Not microwave, no unit element"},
        {"ue", lines, "ins ", {of(unit_element), 4, 50}, {}, 0, ""},
        {"stub", lines, "ins ", {of(capacitor), 3, 50}, {}, 0, ""},
        {"no stub", lines, "ins ", {of(capacitor), 3, 0}, {}, 0, "Error: Zero value not permitted"},
        {"eqa", lumped_kind, "ins ", {of(equalizer_a), 0, 1, 2, 3}, {}, 0, ""},
        {"eqa of no r", lumped_kind, "ins ", {of(equalizer_a), 0, 1, 0, 3}, {}, 0, "Error: Zero value not permitted"},
        {"eqb",
         lines,
         "ins ",
         {of(equalizer_b), 0, 1, 2, 3},
         {},
         0,
         "Error: Microwave, equalizer section may not be added"},
        {"copy", lumped_kind, "ins ", {insert_copy, 6, 0, 0, 0, 4}, {}, 0, ""},
        {"copy by its word", lumped_kind, "copy", {of(resistor), 6, 0, 0, 0, 4}, {}, 0, ""},
        {"copy of none",
         lumped_kind,
         "ins ",
         {insert_copy, 6, 0, 0, 0, 2},
         {},
         0,
         "Error: Missing or inappropriate branch"},
        {"copy to none",
         lumped_kind,
         "copy",
         {insert_copy, 0, 0, 0, 0, 4},
         {},
         0,
         "Error: Branch number is out of range"},
        {"delete", lumped_kind, "del ", {}, {}, 4, ""},
        {"delete the source", lumped_kind, "del ", {}, {}, 7, ""},
        {"delete none", lumped_kind, "del ", {}, {}, 2, "Error: Incorrect or nonexistent branch"},
        {"delete beyond", lumped_kind, "del ", {}, {}, 999, "Error: Incorrect or nonexistent branch"},
        {"delete the load", lumped_kind, "del ", {}, {}, 1, "Error: Incorrect or nonexistent branch"},
        {"change", lumped_kind, "ch  ", {}, {4, 3, 0}, 0, ""},
        {"change none", lumped_kind, "ch  ", {}, {2, 3, 0}, 0, "Error: Incorrect branch selected"},
        {"change to no r", lumped_kind, "ch  ", {}, {1, 0, 3}, 0, "Error: Zero value not permitted"},
        {"change to no stub", lines, "ch  ", {}, {3, 3, 0}, 0, "Error: Zero value not permitted"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        filter = {};
        butterworth();
        filter.circuit.kind = row.kind;
        const PassiveFilter before = filter;
        command.insert = row.insert;
        command.change = row.change;
        command.deleted_branch = row.deleted;
        send(row.word);
        EXPECT_EQ(boxes(), row.box);
        if (!row.box.empty()) {
            EXPECT_TRUE(filter.circuit == before.circuit && filter.mod == before.mod) << "a refusal leaves no trace";
            EXPECT_EQ(state.kept.undoTop, 0);
            EXPECT_TRUE(window.lines.empty());
            continue;
        }
        EXPECT_FALSE(filter.circuit == before.circuit);
        EXPECT_EQ(filter.mod, 1.0F);
        EXPECT_FALSE(window.lines.empty()) << "an edit shows what it did";
        const Circuit edited = filter.circuit;
        send("undo");
        EXPECT_EQ(boxes(), "");
        EXPECT_TRUE(filter.circuit == before.circuit && filter.mod == before.mod);
        send("redo");
        EXPECT_TRUE(filter.circuit == edited);
    }
}

TEST_F(Edits, CompoundBranchesMayNotBeChangedAndAFullStoreTakesNoMore) {
    butterworth();
    insert("lcc", 6, 1, 1, 1);
    command.change = {6, 1, 1};
    send("ch  ");
    EXPECT_EQ(boxes(), "Error: Branch may not be changed");
    insert("c", 99, 1);
    for (int i = 0; i < 100 && window.boxes.empty(); ++i) insert("c", 99, 1);
    EXPECT_EQ(boxes(), "Warning: Storage is full, operations discontinued");
    EXPECT_LE(filter.circuit.klast, last_insert_slot);
}

// Values are in the user's units, and what a stub is told by is its impedance.
TEST_F(Edits, TypedValuesBecomeCells) {
    session.units = {.frequency_index = 3, .inductor_index = 3, .capacitor_index = 5};
    settle_units(session.units);
    insert("r", 1, 50);
    insert("lc", 3, 2, 4);
    insert("lcl", 4, 2, 4, 6);
    insert("eqb", 0, 2, 75, 4);
    const auto values = [&](int k) { return branch_values(filter.circuit, unpackBranch(filter.circuit, k)); };
    const auto near = [](std::span<const double> cells, std::vector<double> expected) {
        ASSERT_EQ(cells.size(), expected.size());
        for (std::size_t i = 0; i < cells.size(); ++i) EXPECT_DOUBLE_EQ(cells[i], expected[i]) << i;
    };
    near(values(2), {50, 2e-6, 75, 4e-12, 4e-12 * 2500, 2500 / 75.0, 2e-6 / 2500});
    near(values(5), {2e-6, 4e-12});
    near(values(6), {2e-6, 4e-12, 6e-6});
    send("ch  ", PASSIVE_CHANGE_DLG, {{"branch", "5"}, {"first", "7"}, {"second", "8"}});
    near(values(5), {7e-6, 8e-12});

    filter = {};
    filter.circuit.kind = CircuitKind::microwave;
    insert("r", 1, 50);
    insert("lc", 3, 20, 40);
    insert("lcc", 4, 20, 40, 80);
    insert("ue", 6, 75);
    near(values(3), {20, 1 / 40.0});
    near(values(4), {20, 1 / 40.0, 1 / 80.0});
    EXPECT_EQ(unpackBranch(filter.circuit, filter.circuit.klast).id, BranchId::unit_element);
    send("ch  ", PASSIVE_CHANGE_DLG, {{"branch", "3"}, {"first", "10"}, {"second", "25"}});
    near(values(3), {10, 1 / 25.0});
}

TEST_F(Edits, TerminationsFollowTheEnds) {
    butterworth();
    command.change = {1, 50, 0};
    send("ch  ");
    EXPECT_EQ(filter.circuit.R1, 50.0);
    EXPECT_EQ(filter.circuit.R2, 1.0);
    EXPECT_EQ(filter.circuit.termination_ratio, 0.02);
    command.deleted_branch = 7;
    send("del ");
    EXPECT_EQ(filter.circuit.R2, 0.0);
}

TEST_F(Edits, EntriesStartAnew) {
    butterworth();
    command.deleted_branch = 4;
    send("del ");
    session.filter_file = "old.qfp";
    session.entry(SegmentId::passive) = passive_entry::synthesised;
    send("show");
    EXPECT_EQ(filter.mod, 0.0F);
    EXPECT_EQ(state.kept.undoTop, 1) << "a design is undone as an edit is";
    EXPECT_TRUE(session.filter_file.is_blank()) << "a new circuit does not overwrite the file of another";
    filter = {};
    session.filter_file = "old.qfp";
    session.entry(SegmentId::passive) = passive_entry::analysis;
    send("list");
    EXPECT_EQ(window.lines, std::vector<std::string>{" no circuit"});
    EXPECT_TRUE(session.filter_file.is_blank());
    send("what");
    EXPECT_EQ(boxes(), "") << "a word of no table is ignored";
}

// Inserting and deleting uses cells up, until they are packed before the next command.
TEST_F(Edits, CellsAreCompacted) {
    butterworth();
    for (int i = 0; i < 200; ++i) {
        insert("lcl", 4, 1, 2, 3);
        ASSERT_EQ(boxes(), "");
        command.deleted_branch = 4;
        send("del ");
        ASSERT_EQ(boxes(), "");
    }
    EXPECT_LT(filter.circuit.ilast, 150);
}

}  // namespace
}  // namespace kavrel
