// Commands that rewrite branches: rows of a circuit, what is entered, and what comes of it, in
// tests/data/passive/branch_edits.txt.
#include "passive/branch_edits.h"

#include <sstream>

#include "tests/passive/passive_room.h"
#include "tests/support/circuit_literal.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct BranchEdits : testing::Test, PassiveRoom {
    // "stubs: R 1 | C3 2 ...", blank for no circuit.
    void take(std::string literal) {
        filter = {};
        state.kept = {};
        command = {};
        command.circuit = &filter.circuit;
        const bool stubs = literal.starts_with("stubs: "), full = literal.ends_with(" ...");
        if (stubs) literal.erase(0, 7);
        if (full) literal.erase(literal.size() - 4);
        Circuit& made = filter.circuit = circuit(literal, stubs ? CircuitKind::microwave : CircuitKind::lumped);
        for (int k = made.klast + 1; full && k <= last_insert_slot; ++k)
            ASSERT_EQ(insertBranch(made, k, 1, 0, BranchId::capacitor), CircuitVerdict::done);
        made.fs = 2;
        made.fnorm = 0.2;
        if (literal.empty()) return;
        const Branch last = unpackBranch(made, made.klast);
        made.R1 = made.VALUE(1);
        made.R2 = last.id == BranchId::resistor && made.klast > 1 ? made.VALUE(last.i1) : 0;
        made.termination_ratio = made.R2 / made.R1;
    }

    // Enters "branch1=4 branch2=6" into the form of a word and sends that.
    void enter(std::string_view word, std::string_view typed) {
        const struct {
            std::string_view word;
            const Form& form;
        } forms[] = {{"com", PASSIVE_COMBINE_DLG}, {"spl", PASSIVE_SPLIT_DLG},   {"ib", PASSIVE_INTERCHANGE_DLG},
                     {"tp", PASSIVE_TEE_PI_DLG},   {"xr", PASSIVE_EXCHANGE_DLG}, {"xch", PASSIVE_CONVERT_DLG}};
        window.forms.push_back([typed](FormSheet& sheet) {
            std::istringstream words{std::string(typed)};
            for (std::string entry; words >> entry;) {
                const auto sign = entry.find('=');
                const int field = find_field(sheet, entry.substr(0, sign));
                const auto place = static_cast<std::size_t>(field);
                EXPECT_EQ(field < 0 ? "no field" : sheet.enter(place, entry.substr(sign + 1)), "") << entry;
            }
            return true;
        });
        const auto row = std::ranges::find(forms, word, [](const auto& form) { return form.word; });
        EXPECT_TRUE(run_form(row->form, &command, session.units, reporter));
        send(word);
    }

    [[nodiscard]] std::string literal() const {
        std::string text;
        for (int k = 1; k != 0; k = unpackBranch(filter.circuit, k).kn) {
            const Branch branch = unpackBranch(filter.circuit, k);
            text += fmt::format("{}{}{}", text.empty() ? "" : " | ", branch_kinds[branch.id].name, k);
            for (const double value : branch_values(filter.circuit, branch)) text += fmt::format(" {:.10g}", value);
        }
        return text;
    }
};

TEST_F(BranchEdits, RowsAreRefusedWithoutATraceOrMadeShownAndUndone) {
    window.files = {"edits"};
    send("writ");
    const PassiveState recording = state;
    std::istringstream rows(read_text(TEST_DATA "/passive/branch_edits.txt"));
    std::string text;
    for (std::string row; std::getline(rows, row);) {
        if (row.starts_with('#') || row.starts_with(' ')) continue;
        SCOPED_TRACE(row);
        text += row + '\n';
        const auto first = row.find("; "), second = row.find("; ", first + 1), third = row.find("; ", second + 1);
        state = recording;
        take(row.substr(0, first));
        const std::string word = row.substr(first + 2, second - first - 2);
        const PassiveFilter before = filter;
        const auto hindrance = passive_hindrance(desk, CommandKeyword(word));
        window.answers = {third == row.npos ? Answer::yes : Answer::no};
        enter(word, row.substr(second + 2, third - second - 2));
        window.answers.clear();
        if (!boxes().empty()) text += "    " + boxes() + '\n';
        EXPECT_EQ(hindrance, first == 0 ? boxes().substr(7) : "");
        state.recording = false;
        if (boxes().find("Error") != std::string::npos || boxes().find("Warning") != std::string::npos) {
            EXPECT_TRUE(filter.circuit == before.circuit && filter.mod == before.mod);
            EXPECT_EQ(state.kept.undoTop, 0);
            continue;
        }
        text += "    " + literal() + '\n';
        EXPECT_EQ(filter.mod, 1.0F);
        EXPECT_FALSE(window.lines.empty());
        const Circuit edited = filter.circuit;
        send("undo");
        EXPECT_TRUE(filter.circuit == before.circuit);
        send("redo");
        EXPECT_TRUE(filter.circuit == edited);
    }
    expect_golden(TEST_DATA "/passive/branch_edits.txt", text);
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
        EXPECT_EQ(sheet.enter(0, "3"), "");
        EXPECT_EQ(sheet.shown(1), "5.000000E+00");
        return true;
    });
    EXPECT_TRUE(run_form(PASSIVE_SPLIT_DLG, &command, session.units, reporter));
}

}  // namespace
}  // namespace kavrel
