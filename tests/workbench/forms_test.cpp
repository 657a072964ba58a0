// Forms as they were planned, and the manual's page of menus and forms.
#include <filesystem>
#include <functional>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "shell/stored_files.h"
#include "tests/support/fake_window.h"
#include "tests/workbench/form_plan.h"
#include "workbench/analysis_form.h"
#include "workbench/delay_form.h"
#include "workbench/filter_form.h"
#include "workbench/fir_analysis_form.h"
#include "workbench/fir_form.h"
#include "workbench/units_form.h"

namespace kavrel {
namespace {

struct OwnedForm {
    const Form* form;
    void* record;
};

// The design and analysis forms, each before its lists.
std::vector<OwnedForm> design_forms(Workbench& bench) {
    return {{&DESIGN_FILTER_DLG, &bench.filter_request},
            {&DOUBLETS_DLG, &bench.filter_request},
            {&PLACER_DLG, &bench.filter_request},
            {&DELAY_DESIGN_DLG, &bench.delay_request},
            {&ZEROS_DLG, &bench.delay_request},
            {&POLES_DLG, &bench.delay_request},
            {&INDICATORS_DLG, &bench.delay_request},
            {&FIR_DESIGN_DLG, &bench.fir_request},
            {&FIR_QUADS_DLG, &bench.fir_request},
            {&FIR_TWIN_DLG, &bench.fir_request},
            {&ANALYSIS_DLG, &bench.analysis_request},
            {&ANALYSIS_POLES_DLG, &bench.analysis_request},
            {&ANALYSIS_ZEROS_DLG, &bench.analysis_request},
            {&NUMER_DLG, &bench.analysis_request},
            {&DENOM_DLG, &bench.analysis_request},
            {&FEED_DLG, &bench.analysis_request},
            {&ANALYSIS_FIR_DLG, &bench.fir_analysis_request},
            {&COEFFICIENTS_DLG, &bench.fir_analysis_request},
            {&FIR_ZEROS_DLG, &bench.fir_analysis_request},
            {&MENU2_DLG, &bench.session.units}};
}

struct Forms : testing::Test {
    FakeWindow window;
    std::unique_ptr<Workbench> bench = std::make_unique<Workbench>(window);
};

// Labels as they read before a choice gives them another name.
TEST_F(Forms, FieldsAreThePlan) {
    std::vector<std::string> rows;
    for (const OwnedForm& owned : design_forms(*bench)) {
        const FormSheet sheet(*owned.form, owned.record, bench->session.units, bench->reporter);
        rows.push_back(fmt::format("form {}|{}", owned.form->name, owned.form->title));
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            const std::string label = std::string(field.label) + unit_suffix(bench->session.units, field.unit);
            rows.push_back(fmt::format("{}|{}|{}|{}", field.name, label, kind_name(field.kind), values_text(sheet, i)));
        }
    }
    EXPECT_EQ(rows, plan_rows("forms.txt"));
}

TEST_F(Forms, AFreshFormHoldsNoughtsAndFirstChoices) {
    for (const OwnedForm& owned : design_forms(*bench)) {
        FormSheet sheet(*owned.form, owned.record, bench->session.units, bench->reporter);
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            const std::string shown = sheet.shown(i);
            const std::string where = fmt::format("{} {}", owned.form->name, field.name);
            switch (field.kind) {
                case FieldKind::real:
                    EXPECT_EQ(shown, field.name == "r1" || field.name == "r2" ? "50.000000E+00" : "0.000000E+00")
                        << where;
                    break;
                case FieldKind::integer: EXPECT_EQ(shown, "0") << where; break;
                case FieldKind::radio: EXPECT_EQ(shown, field.choices[0].label) << where; break;
                case FieldKind::flag: EXPECT_EQ(shown, "no") << where; break;
                case FieldKind::list: EXPECT_EQ(shown, "0 rows") << where; break;
                default: break;
            }
        }
    }
    EXPECT_EQ(DESIGN_FILTER_DLG.message(&bench->filter_request), "Stopband not specified or incorrect");
}

TEST_F(Forms, FieldsAreFoundByNameAndByLabelUnlessAnotherHasIt) {
    for (const OwnedForm& owned : design_forms(*bench)) {
        const FormSheet sheet(*owned.form, owned.record, bench->session.units, bench->reporter);
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const std::string where = fmt::format("{} {}", owned.form->name, sheet.field(i).name);
            EXPECT_EQ(find_field(sheet, sheet.field(i).name), static_cast<int>(i)) << where;
            int sharers = 0;
            for (std::size_t k = 0; k < sheet.size(); ++k)
                sharers += same_label(sheet.label(k), sheet.label(i)) ? 1 : 0;
            EXPECT_EQ(find_field(sheet, sheet.label(i)), sharers > 1 ? -2 : static_cast<int>(i)) << where;
        }
    }
}

TEST_F(Forms, EveryRefusalKeepsWhatWasEntered) {
    for (const OwnedForm& owned : design_forms(*bench)) {
        if (owned.form->message == nullptr || owned.form->message(owned.record).empty()) continue;
        SCOPED_TRACE(owned.form->name);
        std::size_t real = 0;
        while (real < owned.form->fields.size() && owned.form->fields[real].kind != FieldKind::real) ++real;
        if (real == owned.form->fields.size()) continue;
        const std::string typed = "1.250000E-06";
        window.boxes.clear();
        window.forms = {[&](FormSheet& sheet) { return sheet.enter(real, typed).empty(); },
                        [&](FormSheet& sheet) {
                            EXPECT_EQ(sheet.shown(real), "1.250000E-06");
                            EXPECT_EQ(sheet.refusals(), 1);
                            return false;
                        }};
        EXPECT_FALSE(run_form(*owned.form, owned.record, bench->session.units, bench->reporter));
        ASSERT_EQ(window.boxes.size(), 1U);
        EXPECT_TRUE(window.boxes[0].starts_with("Error: ")) << window.boxes[0];
        EXPECT_LE(window.boxes[0].size(), 7U + 60U);
    }
}

// The manual's page: what the tables say, in its own words.

std::string menu_tables() {
    std::string text;
    for (std::size_t i = 0; i < segment_count; ++i) {
        const Room& room = room_of(static_cast<SegmentId>(i));
        text += fmt::format("\n### {}\n\nWindow title \"{}\".\n\n", room.name, room.title);
        text += "| choose | hint | key | id | word | form |\n|---|---|---|---|---|---|\n";
        for (const MenuItem& item : room.menu) {
            const bool owns = item.accelerator.empty() || accelerator_owner(room.menu, item.accelerator) == &item;
            text += fmt::format("| {} | {} | {} | {} | {} | {} |\n", choose_path(item.path), item.hint,
                                owns ? std::string(item.accelerator) : fmt::format("({})", item.accelerator), item.id,
                                item.command.empty() ? "" : fmt::format("`{}`", trim_right(item.command)),
                                item.form == nullptr ? "" : fmt::format("`{}`", item.form->name));
        }
    }
    return text;
}

std::string form_table(const Form& form, void* record, Workbench& bench) {
    const FormSheet sheet(form, record, bench.session.units, bench.reporter);
    std::string text = fmt::format("\n### {}\n\n\"{}\"\n\n", form.name, form.title);
    text += "| field | label | kind | values |\n|---|---|---|---|\n";
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        const Field& field = sheet.field(i);
        text += fmt::format("| `{}` | {} | {} | {} |\n", field.name, sheet.label(i), kind_name(field.kind),
                            values_text(sheet, i));
    }
    return text;
}

std::string form_tables(Workbench& bench) {
    std::string text;
    std::set<std::string_view> told;
    for (const OwnedForm& owned : design_forms(bench)) {
        text += form_table(*owned.form, owned.record, bench);
        told.insert(owned.form->name);
    }
    for (std::size_t i = 0; i < segment_count; ++i) {
        const Room& room = room_of(static_cast<SegmentId>(i));
        for (const MenuItem& item : room.menu) {
            if (item.form == nullptr || !told.insert(item.form->name).second) continue;
            text += form_table(*item.form, room.command_request(bench), bench);
        }
    }
    return text;
}

// On a difference the page as it should be lies in the folder of the test run, to be copied over the old one.
TEST_F(Forms, TheManualTellsAllMenusAndForms) {
    const std::filesystem::path page = std::filesystem::path(TEST_DATA) / "../../docs/menus_and_forms.md";
    const auto text = read_whole(page.string());
    ASSERT_TRUE(text.has_value());
    const std::string tables = "## Menus\n" + menu_tables() + "\n## Forms\n" + form_tables(*bench);
    const std::size_t head = text->find("## Menus\n");
    ASSERT_NE(head, std::string::npos);
    const bool same = text->substr(head) == tables;
    if (!same) {
        ASSERT_TRUE(write_whole("menus_and_forms.md", text->substr(0, head) + tables));
    }
    EXPECT_TRUE(same) << "copy " << std::filesystem::absolute("menus_and_forms.md") << " to docs/";
}

}  // namespace
}  // namespace kavrel
