// What holds of every form, and the manual's page of menus and forms.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "forms/filter_form.h"
#include "shell/fixed_text.h"
#include "shell/number_text.h"
#include "shell/stored_files.h"
#include "synthesis/synthesis_form.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "tests/workbench/form_cases.h"
#include "workbench/all_forms.h"
#include "workbench/events.h"
#include "workbench/state_json.h"

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
    const std::map<std::string, std::string> others = {{"DESIGN_FILTER_DLG r1", "50.000000E+00"},
                                                       {"DESIGN_FILTER_DLG r2", "50.000000E+00"},
                                                       {"DELAY_DESIGN_DLG r1", "50.000000E+00"},
                                                       {"DELAY_DESIGN_DLG r2", "50.000000E+00"},
                                                       {"PRINT_DLG printing_to", "None"},
                                                       {"function_number", "1"},
                                                       {"SYNTHESIS_DLG form", "Ladder"},
                                                       {"SYNTHESIS_DLG direction", ""},
                                                       {"Z_TRANSFORM_DLG z_transform_type", "Bilinear"}};
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
            const auto other = others.find(field.name == "function_number" ? "function_number" : where);
            EXPECT_EQ(sheet.shown(i), other == others.end() ? plain : other->second) << where;
        }
    }
    EXPECT_EQ(DESIGN_FILTER_DLG.refusal(&bench->filter_request).text, "Stopband not specified or incorrect");
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
        if (form->refusal == nullptr || form->refusal(record).empty()) continue;
        SCOPED_TRACE(form->name);
        std::size_t real = 0;
        while (real < form->fields.size() && form->fields[real].kind != FieldKind::real) ++real;
        if (real == form->fields.size()) continue;
        const std::string typed = "-1.250000E-06";
        window.boxes.clear();
        window.forms = {[&](FormSheet& sheet) { return sheet.enter(real, typed).empty(); },
                        [&](FormSheet& sheet) {
                            EXPECT_EQ(sheet.shown(real), typed);
                            EXPECT_EQ(sheet.refusals(), 1);
                            return false;
                        }};
        EXPECT_FALSE(run_form(*form, record, bench->session.units, bench->reporter));
        ASSERT_EQ(window.boxes.size(), 1U);
        EXPECT_TRUE(window.boxes[0].starts_with("Error: ")) << window.boxes[0];
        EXPECT_LE(window.boxes[0].size(), 7U + 60U);
    }
}

TEST_F(Forms, RulesAndValidatorsAnswerAsWritten) {
    std::set<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(std::filesystem::path(TEST_DATA) / "forms")) {
        names.insert(file.path().stem().string());
    }
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) {
        const auto form = std::ranges::find(all_forms(), name, [](const Form* f) { return f->name; });
        ASSERT_NE(form, all_forms().end()) << name;
        const auto fresh = std::make_unique<Workbench>(window);
        FormCases cases(**form, *fresh);
        for (const std::string& row : plan_rows("forms/" + name + ".txt")) {
            SCOPED_TRACE(name + ": " + row);
            cases.check(row);
        }
    }
}

// Poisoned numbers: each field of a number, and each list, is given each of the values, as are integers their ends;
// what the form takes is carried out, on the records whose forms are good above, and commands on a filter of their
// kind.

struct Opener {
    std::string_view form;
    int item;
};
constexpr Opener openers[] = {{"DESIGN_FILTER_DLG", 166},
                              {"DELAY_DESIGN_DLG", 135},
                              {"FIR_DESIGN_DLG", 1031},
                              {"ANALYSIS_DLG", 149},
                              {"ANALYSIS_FIR_DLG", 152}};

// The form that opens a record, of the menus or else the one that the form is behind.
Opener opener_of(const Form& form) {
    for (std::size_t i = 0; i < segment_count; ++i) {
        const auto menu = room_of(static_cast<SegmentId>(i)).menu;
        const auto item = std::ranges::find(menu, &form, &MenuItem::form);
        if (item != menu.end()) return {form.name, item->id};
    }
    for (const Opener& opener : openers) {
        const auto main = std::ranges::find(all_forms(), opener.form, [](const Form* f) { return f->name; });
        if ((*main)->record == form.record) return opener;
    }
    return {form.name, 0};
}

void expect_numbers(const nlohmann::json& value, const std::string& key) {
    for (const auto& [name, member] : value.items()) {
        if (member.is_structured()) expect_numbers(member, value.is_object() ? name : key);
        const bool may_be_unknown = name == "asked" || name == "margin" || name == "band" || key == "band";
        EXPECT_TRUE(!member.is_null() || may_be_unknown) << key << ' ' << name;
    }
}

TEST_F(Forms, WhateverNumberIsTypedNoneThatComesOfItIsNotFinite) {
    const ScratchFolder folder;
    int carried_out = 0;
    for (const Form* form : all_forms()) {
        const auto [main_form, item] = opener_of(*form);
        if (item == 0) continue;
        const auto main = std::ranges::find(all_forms(), main_form, [](const Form* f) { return f->name; });
        FormCases cases(**main, *bench);
        std::vector<std::string> good;
        for (const std::string& row : plan_rows(fmt::format("forms/{}.txt", main_form))) {
            if (!cases.name_entries(row) && row.ends_with("| good")) good.push_back(row.substr(0, row.find('|')));
        }
        if (good.empty()) good.emplace_back();
        for (std::size_t i = 0; i < form->fields.size(); ++i) {
            const Field& field = form->fields[i];
            std::vector<std::string> values{"0", "-0", "1e-308", "1e308", "-1e308", "inf", "nan", "1e-150", "1e150"};
            if (field.kind == FieldKind::integer) values = {std::to_string(field.low), std::to_string(field.high)};
            const bool is_list = field.kind == FieldKind::list;
            if (!is_list && field.kind != FieldKind::real && field.kind != FieldKind::integer) continue;
            for (std::size_t v = 0; v < values.size(); ++v) {
                const std::string& base = good[(i + v) % good.size()];
                SCOPED_TRACE(fmt::format("{} {} {} on {}", form->name, field.name, values[v], base));
                cases.fill_in(base);
                FormSheet sheet = sheet_of(*form);
                const auto number = parse_number(values[v]);
                const std::vector<double> row(is_list ? field.columns.size() : 0, number.value_or(0));
                const std::string wrong = is_list ? sheet.append_row(i, row) : sheet.enter(i, values[v]);
                EXPECT_TRUE(!wrong.empty() || !number || is_in_range(*number));
                if (!wrong.empty()) continue;
                window.lines.clear();
                bench->journal = {};
                window.forms = {[](FormSheet&) { return true; }, [](FormSheet&) { return true; }};
                dispatch_event(*bench, item);
                ++carried_out;
                expect_numbers(nlohmann::json::parse(state_json(*bench)), "");
                for (const std::string& line : window.lines) {
                    EXPECT_EQ(line.find("NaN"), std::string::npos) << line;
                    const bool without_bound = line.find("Deviation in db") != std::string::npos;  // a gain of 0 in dB
                    EXPECT_TRUE(without_bound || line.find("Infinity") == std::string::npos) << line;
                }
                if (HasFailure()) return;
            }
        }
    }
    EXPECT_GT(carried_out, 300);
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
    ASSERT_TRUE(bool(text));
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
