// Commands that edit circuits: rows of a circuit, what is entered, and what comes of it, in
// tests/data/passive/edit_rows.txt.
#include <sstream>

#include "tests/passive/passive_room.h"
#include "tests/passive/random_filters.h"
#include "tests/support/circuit_literal.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct EditRows : ::testing::Test, PassiveRoom {
    // "high stubs: R 1 | C3 2 ...", blank for no circuit.
    void take(std::string literal) {
        filter = {};
        state.kept = {};
        command = {};
        command.circuit = &filter.circuit;
        const auto takes = [&literal](std::string_view prefix) {
            const bool there = literal.starts_with(prefix);
            if (there) literal.erase(0, prefix.size());
            return there;
        };
        FilterSpec& spec = filter.spec;
        spec.filterType = takes("high ") ? high_pass : takes("band ") ? band_pass : low_pass;
        spec.medium = takes("stubs: ") ? microwave : lumped;
        (spec.filterType == high_pass ? spec.lowerPassEdge : spec.upperPassEdge) = 0.2;
        const bool gaps = takes("gaps: "), full = literal.ends_with(" ...");
        if (full) literal.erase(literal.size() - 4);
        Circuit& made = filter.circuit =
            circuit(literal, spec.medium == microwave ? CircuitKind::microwave : CircuitKind::lumped);
        for (int k = made.klast + 1; full && k <= last_insert_slot; ++k)
            ASSERT_EQ(insertBranch(made, k, 1, 0, BranchId::capacitor), CircuitVerdict::done);
        for (int k = made.klast; gaps && k > 1; k -= 3) ASSERT_EQ(shiftBranches(made, k, 4), CircuitVerdict::done);
        made.fs = 2;
        made.fnorm = 0.2;
        if (literal.empty()) return;
        const Branch last = unpackBranch(made, made.klast);
        made.R1 = made.VALUE(1);
        made.R2 = last.id == BranchId::resistor ? made.VALUE(last.i1) : 0;
        made.termination_ratio = made.R2 / made.R1;
    }

    // Enters "branch1=4 branch2=6" into the form of an item, a list as "branches=3,4", and sends its word.
    void enter(std::string_view item, std::string_view typed) {
        const struct {
            std::string_view item;
            const Form& form;
        } forms[] = {{"com", PASSIVE_COMBINE_DLG},      {"spl", PASSIVE_SPLIT_DLG},
                     {"ib", PASSIVE_INTERCHANGE_DLG},   {"tp", PASSIVE_TEE_PI_DLG},
                     {"xr", PASSIVE_EXCHANGE_DLG},      {"xch", PASSIVE_CONVERT_DLG},
                     {"tr", PASSIVE_NORTON_SIMPLE_DLG}, {"tr computed", PASSIVE_NORTON_COMPUTED_DLG},
                     {"lce", PASSIVE_EQUAL_DLG},        {"tr matching", PASSIVE_NORTON_MATCHING_DLG},
                     {"ecm", PASSIVE_INNER_EQUAL_DLG},  {"ct", PASSIVE_TRIPLET_DLG},
                     {"cq", PASSIVE_QUADRUPLET_DLG},    {"mtr L", PASSIVE_MULTIPLE_L_DLG},
                     {"mtr C", PASSIVE_MULTIPLE_C_DLG}, {"mtr values", PASSIVE_MULTIPLE_VALUES_DLG},
                     {"lat", PASSIVE_LATTICE_DLG},      {"incl", PASSIVE_INCLUDE_DLG},
                     {"pref", PASSIVE_PREFERRED_DLG},   {"be", PASSIVE_BAND_REJECT_DLG}};
        const auto row = std::ranges::find(forms, item, [](const auto& form) { return form.item; });
        if (row == std::end(forms)) return send(item);
        window.forms.push_back([typed](FormSheet& sheet) {
            std::istringstream words{std::string(typed)};
            for (std::string entry; words >> entry;) {
                const auto sign = entry.find('=');
                const int field = find_field(sheet, entry.substr(0, sign));
                const auto place = static_cast<std::size_t>(field);
                std::istringstream values(entry.substr(sign + 1));
                for (std::string value; field >= 0 && std::getline(values, value, ',');)
                    EXPECT_EQ(sheet.field(place).name == "branches"
                                  ? sheet.append_row(place, std::array{*parse_number(value)})
                                  : sheet.enter(place, value),
                              "");
                EXPECT_GE(field, 0) << entry;
            }
            return true;
        });
        EXPECT_TRUE(run_form(row->form, &command, session.units, reporter));
        send(item.substr(0, item.find(' ')));
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
    [[nodiscard]] std::string band() const {
        const FilterSpec& spec = filter.spec;
        return fmt::format("class {}, {} to {}", static_cast<int>(spec.filterType), spec.lowerPassEdge,
                           spec.upperPassEdge);
    }
};

TEST_F(EditRows, AreRefusedWithoutATraceOrMadeShownAndUndone) {
    window.files = {"edits"};
    send("writ");
    const PassiveState recording = state;
    std::istringstream rows(read_text(TEST_DATA "/passive/edit_rows.txt"));
    std::string text;
    for (std::string row; std::getline(rows, row);) {
        if (row.starts_with('#') || row.starts_with(' ')) continue;
        SCOPED_TRACE(row);
        text += row + '\n';
        const auto first = row.find("; "), second = row.find(';', first + 1), third = row.find("; no", second);
        state = recording;
        take(row.substr(0, first));
        const std::string item = row.substr(first + 2, second - first - 2);
        const PassiveFilter before = filter;
        const std::string design = band();
        const auto hindrance = passive_hindrance(desk, CommandKeyword(item.substr(0, item.find(' '))));
        window.answers = {third == row.npos ? Answer::yes : Answer::no};
        enter(item, row.substr(second + 1, third - second - 1));
        window.answers.clear();
        if (!boxes().empty()) text += "    " + boxes() + (hindrance.empty() ? "\n" : " (hindered)\n");
        EXPECT_EQ(hindrance, hindrance.empty() ? "" : boxes().substr(7));
        EXPECT_FALSE(first == 0 && hindrance.empty());
        EXPECT_EQ(state.computed.count, 0);
        state.recording = false;
        if (filter.circuit == before.circuit) {
            EXPECT_TRUE(testing::bytes_of(filter) == testing::bytes_of(before));
            EXPECT_EQ(state.kept.undoTop, 0);
            continue;
        }
        EXPECT_TRUE(boxes().find("Error") == std::string::npos && boxes().find("Warning") == std::string::npos);
        text += "    " + literal() + '\n';
        if (band() != design) text += "    " + band() + '\n';
        EXPECT_EQ(filter.mod, 1.0F);
        EXPECT_FALSE(window.lines.empty());
        Circuit edited = filter.circuit;
        if (edited.ilast >= 130) compactValues(edited);  // as every command does
        send("undo");
        EXPECT_TRUE(filter.circuit == before.circuit && band() == design);
        send("redo");
        EXPECT_TRUE(filter.circuit == edited);
    }
    expect_golden(TEST_DATA "/passive/edit_rows.txt", text);
    expect_golden(TEST_DATA "/passive/edit_rows.wbt", read_text("edits.wbt"));
}

TEST_F(EditRows, AFormOpensWithWhatTheBranchHas) {
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
