// What holds of every form, and the manual's page of menus and forms.
#include <filesystem>
#include <map>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "forms/filter_form.h"
#include "shell/stored_files.h"
#include "synthesis/synthesis_form.h"
#include "tests/support/fake_window.h"
#include "tests/workbench/form_plan.h"
#include "workbench/all_forms.h"

namespace kavrel {
namespace {

struct Forms : testing::Test {
    FakeWindow window;
    std::unique_ptr<Workbench> bench = std::make_unique<Workbench>(window);

    FormSheet sheet_of(const Form& form) {
        return {form, record_of(form, *bench), bench->session.units, bench->reporter};
    }
};

TEST_F(Forms, AFreshFormHoldsNoughtsAndFirstChoicesButForThese) {
    const std::map<std::string, std::string> others = {
        {"DESIGN_FILTER_DLG r1", "50.000000E+00"}, {"DESIGN_FILTER_DLG r2", "50.000000E+00"},
        {"DELAY_DESIGN_DLG r1", "50.000000E+00"},  {"DELAY_DESIGN_DLG r2", "50.000000E+00"},
        {"PRINT_DLG printing_to", "None"},         {"FIR_FUNCTION_DLG function_number", "1"},
        {"SYNTHESIS_DLG form", "Ladder"},          {"SYNTHESIS_DLG direction", ""}};
    for (const Form* form : all_forms()) {
        const FormSheet sheet = sheet_of(*form);
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            const std::string where = fmt::format("{} {}", form->name, field.name);
            const bool chooses = !field.choices.empty();
            const std::string plain = field.kind == FieldKind::real      ? "0.000000E+00"
                                      : field.kind == FieldKind::integer ? "0"
                                      : field.kind == FieldKind::flag    ? "no"
                                      : field.kind == FieldKind::list    ? "0 rows"
                                      : chooses                          ? sheet.choice_label(field.choices[0])
                                                                         : "";
            const auto other = others.find(where);
            EXPECT_EQ(sheet.shown(i), other == others.end() ? plain : other->second) << where;
        }
    }
    EXPECT_EQ(DESIGN_FILTER_DLG.message(&bench->filter_request), "Stopband not specified or incorrect");
}

TEST_F(Forms, FieldsAreFoundByNameAndByLabelUnlessAnotherHasIt) {
    for (const Form* form : all_forms()) {
        const FormSheet sheet = sheet_of(*form);
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const std::string where = fmt::format("{} {}", form->name, sheet.field(i).name);
            EXPECT_EQ(find_field(sheet, sheet.field(i).name), static_cast<int>(i)) << where;
            int sharers = 0;
            for (std::size_t k = 0; k < sheet.size(); ++k)
                sharers += same_label(sheet.label(k), sheet.label(i)) ? 1 : 0;
            EXPECT_EQ(find_field(sheet, sheet.label(i)), sharers > 1 ? -2 : static_cast<int>(i)) << where;
        }
    }
}

TEST_F(Forms, EveryRefusalKeepsWhatWasEntered) {
    for (const Form* form : all_forms()) {
        void* record = record_of(*form, *bench);
        if (form->message == nullptr || form->message(record).empty()) continue;
        SCOPED_TRACE(form->name);
        std::size_t real = 0;
        while (real < form->fields.size() && form->fields[real].kind != FieldKind::real) ++real;
        if (real == form->fields.size()) continue;
        const std::string typed = "1.250000E-06";
        window.boxes.clear();
        window.forms = {[&](FormSheet& sheet) { return sheet.enter(real, typed).empty(); },
                        [&](FormSheet& sheet) {
                            EXPECT_EQ(sheet.shown(real), "1.250000E-06");
                            EXPECT_EQ(sheet.refusals(), 1);
                            return false;
                        }};
        EXPECT_FALSE(run_form(*form, record, bench->session.units, bench->reporter));
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

std::string form_table(const FormSheet& sheet) {
    std::string text = fmt::format("\n### {}\n\n\"{}\"\n\n", sheet.form().name, sheet.form().title);
    text += "| field | label | kind | values |\n|---|---|---|---|\n";
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        const Field& field = sheet.field(i);
        text += fmt::format("| `{}` | {} | {} | {} |\n", field.name, sheet.label(i), kind_name(field.kind),
                            values_text(sheet, i));
    }
    return text;
}

// On a difference the page as it should be lies in the folder of the test run, to be copied over the old one.
TEST_F(Forms, TheManualTellsAllMenusAndForms) {
    const std::filesystem::path page = std::filesystem::path(TEST_DATA) / "../../docs/menus_and_forms.md";
    const auto text = read_whole(page.string());
    ASSERT_TRUE(text.has_value());
    std::string tables = "## Menus\n" + menu_tables() + "\n## Forms\n";
    std::set<std::string_view> told = {SYNTHESIS_DLG.name};  // has a page of its own
    for (const Form* form : all_forms()) {
        if (told.insert(form->name).second) tables += form_table(sheet_of(*form));
    }
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
