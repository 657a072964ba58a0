// A walk through all seven menus: tables as planned, every item answered, every form opened and closed.
#include <algorithm>
#include <map>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "forms/analysis_form.h"
#include "forms/delay_form.h"
#include "forms/filter_form.h"
#include "forms/fir_analysis_form.h"
#include "forms/fir_form.h"
#include "iir/iir_forms.h"
#include "synthesis/synthesis_form.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "tests/workbench/form_plan.h"
#include "workbench/all_forms.h"
#include "workbench/events.h"

namespace kavrel {
namespace {

const std::string unbuilt = "Default: Command not implemented";
constexpr int play_macro = 521;

std::vector<const Room*> all_rooms() {
    std::vector<const Room*> rooms;
    for (std::size_t i = 0; i < segment_count; ++i) rooms.push_back(&room_of(static_cast<SegmentId>(i)));
    return rooms;
}

TEST(Menus, TablesAreThePlan) {
    std::map<std::string, std::vector<std::string>> menus;
    std::map<std::string, std::string> words;
    std::string menu;
    for (const std::string& row : plan_rows("workbench/menus.txt")) {
        if (row.starts_with("menu ")) {
            menu = row.substr(5);
        } else if (row.starts_with("words ")) {
            words[row.substr(6, row.find('|') - 6)] = row.substr(row.find('|') + 1);
        } else {
            menus[menu].push_back(row);
        }
    }
    ASSERT_EQ(menus.size(), segment_count);
    ASSERT_EQ(words.size(), segment_count - 1);
    for (const Room* room : all_rooms()) {
        std::vector<std::string> rows;
        for (const MenuItem& item : room->menu) {
            rows.push_back(
                fmt::format("{}|{}|{}|{}|{}", item.path, item.hint, item.accelerator, item.id, item.command));
        }
        EXPECT_EQ(rows, menus[std::string(room->name)]) << room->name;
        if (room->words == nullptr) continue;
        std::string table;
        for (const CommandKeyword& word : room->commands().words) {
            if (!table.empty()) table += '|';
            table += word.padded();
        }
        // The plan writes the words of the ladder Segment without all of their blanks.
        std::string planned;
        for (std::string rest = words[std::string(room->name)] + '|'; !rest.empty();
             rest.erase(0, rest.find('|') + 1)) {
            planned += fmt::format("{}{:<4}", planned.empty() ? "" : "|", rest.substr(0, rest.find('|')));
        }
        EXPECT_EQ(table, planned) << room->name;
        words.erase(std::string(room->name));
    }
    EXPECT_TRUE(words.empty()) << "a table that no Segment has";
}

// Words of the ladder Segment's items that start its conversation instead of standing in the script's table.
bool is_manual_word(const Room& room, std::string_view word) {
    static constexpr std::string_view manual[] = {"print", "next", "del", "rest", "fini"};
    return room.id == SegmentId::ladder && std::ranges::find(manual, word) != std::end(manual);
}

TEST(Menus, LabelsIdsAndWordsLeadToTheirItems) {
    std::set<int> ids;
    for (const Room* room : all_rooms()) {
        for (const MenuItem& item : room->menu) {
            EXPECT_TRUE(ids.insert(item.id).second) << item.path;
            EXPECT_EQ(find_item(room->menu, item.id), &item);
            std::vector<std::string> labels;
            for (int level = 0; level < path_depth(item.path); ++level) {
                labels.push_back(plain_label(path_label(item.path, level)));
            }
            EXPECT_EQ(find_item(room->menu, labels), &item) << item.path;
            labels.pop_back();
            EXPECT_EQ(find_item(room->menu, labels), nullptr) << item.path;
            EXPECT_TRUE(opens_submenu(room->menu, labels)) << item.path;
            if (item.command.empty() || is_manual_word(*room, item.command)) continue;
            EXPECT_EQ(item.command.size(), 4U) << item.path;
            EXPECT_TRUE(room->commands().knows(CommandKeyword(item.command))) << item.path;
        }
    }
}

TEST(Menus, OfTwoItemsWithOneAcceleratorTheFirstHasTheKey) {
    std::set<int> without_key;
    for (const Room* room : all_rooms()) {
        for (const MenuItem& item : room->menu) {
            if (item.accelerator.empty()) continue;
            const MenuItem* owner = accelerator_owner(room->menu, item.accelerator);
            ASSERT_NE(owner, nullptr) << item.path;
            EXPECT_LE(owner, &item);
            if (owner != &item) without_key.insert(item.id);
        }
    }
    EXPECT_EQ(without_key, (std::set<int>{520, 554, 595}));
    const auto passive = room_of(SegmentId::passive).menu;
    EXPECT_EQ(accelerator_owner(passive, "ALT+o")->id, 357) << "Combine stands before Stop";
    EXPECT_EQ(accelerator_owner(passive, "ctrl+f2")->id, 503);
    EXPECT_EQ(accelerator_owner(passive, "ctrl+Y"), nullptr);
    EXPECT_EQ(accelerator_owner(passive, ""), nullptr);
}

// Tells what an event came to, and cancels everything.
struct WalkWindow : FakeWindow {
    std::vector<std::string> told;
    std::set<const Form*> opened;

    Answer message(std::string_view text, std::string_view caption, Buttons buttons) override {
        told.push_back(fmt::format("{}: {}", caption, text.substr(0, text.find('\n'))));
        return buttons == Buttons::ok ? Answer::ok : Answer::no;
    }
    bool edit_form(FormSheet& sheet) override {
        told.push_back(fmt::format("form {}", sheet.form().name));
        visit(sheet);
        return false;
    }
    std::string choose_file(const FileQuery& query) override {
        told.push_back(fmt::format("file {}", query.filter));
        return {};
    }
    void copy_text() override { told.emplace_back("copy"); }
    bool open_help(std::string_view page) override {
        told.push_back(fmt::format("help {}", page));
        return true;
    }
    bool own_event(int) override {
        told.emplace_back("window");
        return true;
    }

    // Looks at all that a window layer would show, and presses every button that is on.
    void visit(FormSheet& sheet) {
        opened.insert(&sheet.form());
        EXPECT_FALSE(sheet.form().title.empty()) << sheet.form().name;
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            EXPECT_EQ(find_field(sheet, field.name), static_cast<int>(i)) << sheet.form().name << ' ' << field.name;
            EXPECT_FALSE(sheet.label(i).empty()) << field.name;
            if (field.kind == FieldKind::list) {
                const ListView list = sheet.list(i);
                EXPECT_GE(*list.rows, 0);
                EXPECT_EQ(field.columns.size(), static_cast<std::size_t>(list.columns)) << field.name;
            } else if (field.kind == FieldKind::button) {
                EXPECT_NE(field.opens, nullptr) << field.name;
                if (sheet.is_on(i)) sheet.press(i);
            } else if (field.kind == FieldKind::heading) {
                EXPECT_EQ(sheet.shown(i), "");
            } else if (field.kind != FieldKind::text) {
                EXPECT_FALSE(sheet.shown(i).empty()) << sheet.form().name << ' ' << field.name;
            }
        }
    }
};

struct MenuWalk : testing::Test {
    ScratchFolder folder;
    WalkWindow window;

    std::vector<std::string> answer_to(int id) {
        const auto bench = std::make_unique<Workbench>(window);
        window.told.clear();
        const int handled = dispatch_event(*bench, id);
        EXPECT_EQ(handled, id == close_window_event ? 0 : -1) << id;
        return window.told;
    }
};

using Told = std::vector<std::string>;

TEST_F(MenuWalk, ItemsWithoutACommandAnswerAsTold) {
    const Told filter{"form DESIGN_FILTER_DLG"};
    const Told copy{"copy"};
    const Told sure{"Warning: Are you sure?"};
    const Told help{"help index"};
    const Told help_on_help{"help help"};
    const Told about{"Advice: Kavrel " KAVREL_VERSION};
    const std::map<int, Told> plan = {
        {129, {"file *.txt;*.tab;*.ckt;*.*"}},
        {130, {"file *.qfp;*.qfa;*.qfd;*.qff", "Warning: CANCEL"}},
        {195, {unbuilt}},
        {143, {"form MENU2_DLG"}},
        {close_window_event, {"window"}},
        {166, filter},
        {167, {"file *.qfi"}},
        {135, {"form DELAY_DESIGN_DLG"}},
        {136, {"file *.qfi"}},
        {1031, {"form FIR_DESIGN_DLG"}},
        {1032, {"file *.qfi"}},
        {149, {"form ANALYSIS_DLG"}},
        {169, {"file *.qai"}},
        {152, {"form ANALYSIS_FIR_DLG"}},
        {170, {"file *.qai"}},
        {159, help},
        {141, help_on_help},
        {142, about},
        {524, filter},
        {841, filter},
        {651, filter},
        {1199, {"form FIR_DESIGN_DLG"}},
    };
    const std::map<std::string, Told> by_label = {
        {"Copy", copy}, {"Exit", sure}, {"Help", help}, {"Help on help", help_on_help}, {"About Kavrel", about}};
    for (const Room* room : all_rooms()) {
        for (const MenuItem& item : room->menu) {
            if (!item.command.empty() || item.id == play_macro) continue;
            const auto planned = plan.find(item.id);
            const std::string label = plain_label(path_label(item.path, path_depth(item.path) - 1));
            // Only the top level of a list button is pressed through: the outer form comes first.
            Told told = answer_to(item.id);
            if (!told.empty() && told[0].starts_with("form ")) told.resize(1);
            EXPECT_EQ(told, planned != plan.end() ? planned->second : by_label.at(label)) << room->name << item.path;
        }
    }
    EXPECT_FALSE(answer_to(play_macro).empty());
}

TEST_F(MenuWalk, CommandsReachTheirSegmentOrAreNotImplemented) {
    int performed = 0;
    for (const Room* room : all_rooms()) {
        for (const MenuItem& item : room->menu) {
            if (item.command.empty()) continue;
            const Told told = answer_to(item.id);
            const bool built = room->commands().performs(CommandKeyword(item.command));
            if (!built) {
                EXPECT_EQ(told, Told{unbuilt}) << room->name << item.path;
                continue;
            }
            ++performed;
            EXPECT_EQ(std::ranges::count(told, unbuilt), 0) << room->name << item.path;
            if (item.form == nullptr) continue;
            ASSERT_FALSE(told.empty()) << item.path;
            EXPECT_EQ(told[0], fmt::format("form {}", item.form->name)) << item.path;
        }
    }
    EXPECT_GT(performed, 0);
}

TEST_F(MenuWalk, WhatThePlotWindowSendsReachesItsSegment) {
    const struct {
        int id;
        SegmentId segment;
        const char* word;
    } rows[] = {{160, SegmentId::passive, "plpr"}, {161, SegmentId::iir, "plpr"},
                {162, SegmentId::fir, "plpr"},     {163, SegmentId::active, "plpr"},
                {168, SegmentId::lattice, "plpr"}, {154, SegmentId::passive, "nonp"}};
    for (const auto& row : rows) {
        const Room& room = room_of(row.segment);
        EXPECT_TRUE(room.commands().knows(row.word)) << row.id;
        const bool built = room.commands().performs(row.word);
        EXPECT_EQ(std::ranges::count(answer_to(row.id), unbuilt), built ? 0 : 1) << row.id;
    }
    for (const int nobodys : {155, 164, 167 + 4, 200}) EXPECT_EQ(answer_to(nobodys), Told{unbuilt}) << nobodys;
}

// Turns every radio of a form to every choice that is on, and opens what its buttons open then.
void walk_choices(WalkWindow& window, FormSheet& sheet, std::size_t from) {
    while (from < sheet.size() && sheet.field(from).kind != FieldKind::radio) ++from;
    if (from == sheet.size()) {
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            if (sheet.field(i).kind == FieldKind::button && sheet.is_on(i)) sheet.press(i);
        }
        return;
    }
    for (const Choice& choice : sheet.field(from).choices) {
        if (sheet.enter(from, std::to_string(choice.value)).empty()) walk_choices(window, sheet, from + 1);
    }
}

TEST_F(MenuWalk, EveryFormOpensShowsItsFieldsAndCloses) {
    const auto bench = std::make_unique<Workbench>(window);
    for (const Room* room : all_rooms()) {
        for (const MenuItem& item : room->menu) {
            if (item.form == nullptr) continue;
            EXPECT_FALSE(run_form(*item.form, record_of(*item.form, *bench), bench->session.units, bench->reporter));
        }
    }
    for (const int id : {166, 135, 1031, 149, 152, 143}) dispatch_event(*bench, id);
    for (const Form* form :
         {&DESIGN_FILTER_DLG, &DELAY_DESIGN_DLG, &FIR_DESIGN_DLG, &ANALYSIS_DLG, &ANALYSIS_FIR_DLG}) {
        FormSheet sheet(*form, record_of(*form, *bench), bench->session.units, bench->reporter);
        walk_choices(window, sheet, 0);
    }
    for (const Form* form : all_forms()) {
        const bool needs_a_design = form == &SYNTHESIS_DLG || form == &Z_TRANSFORM_DLG || form == &SPECTRAL_DLG ||
                                    form == &IIR_SCALE_FACTORS_DLG;
        EXPECT_EQ(window.opened.count(form), needs_a_design ? 0U : 1U) << form->name;
    }
}

// What the window shows as the reason of a grey item is what the console says when it is chosen.
TEST(Hindrances, AreWhatTheCommandRefusesWith) {
    const ScratchFolder folder;
    int refused = 0;
    for (const SegmentId segment :
         {SegmentId::main, SegmentId::passive, SegmentId::iir, SegmentId::fir, SegmentId::lattice}) {
        for (const MenuItem& item : room_of(segment).menu) {
            FakeWindow window;
            const auto bench = std::make_unique<Workbench>(window);
            enter_segment(*bench, segment);
            bench->iir_command.frequency = bench->fir_command.frequency =
                bench->passive_command.frequency = {.start = 0, .end = 1000, .increment = 10};
            bench->iir_command.time = bench->passive_command.time = {.start = 0, .stop = 1, .step = 0.1};
            const std::string why(hindrance(*bench, item.id));
            if (why.empty() || item.action != MenuAction::none) continue;
            window.forms = {[](FormSheet&) { return true; }};
            window.boxes.clear();
            dispatch_event(*bench, item.id);
            ASSERT_FALSE(window.boxes.empty()) << item.path;
            EXPECT_TRUE(window.boxes.back().ends_with(": " + why)) << item.path << ' ' << window.boxes.back();
            ++refused;
        }
    }
    EXPECT_GT(refused, 50);
}

}  // namespace
}  // namespace kavrel
