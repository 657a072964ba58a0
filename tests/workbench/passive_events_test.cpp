// The road from the menus to the passive Segment and back to its files.
#include <gtest/gtest.h>

#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/menus.h"
#include "workbench/start_up.h"

namespace kavrel {
namespace {

constexpr int insert_item = 354;
constexpr int frequency_item = 343;
constexpr int save_item = 329;
constexpr int save_as_item = 330;
constexpr int play_item = 521;
constexpr int plot_print_item = 160;

struct PassiveEvents : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};

    PassiveEvents() { main_program(bench, "", "x"); }

    void insert(int element, int branch, double value) {
        bench.passive_command.insert = {.element = element, .branch = branch, .value1 = value};
        window.forms = {[](FormSheet& sheet) { return sheet.form().name == "INSERT_DLG"; }};
        dispatch_event(bench, insert_item);
    }
};

TEST_F(PassiveEvents, ACircuitIsTypedInSavedAndRecalled) {
    insert(InsertChoice::r, 1, 50);
    insert(InsertChoice::l, 2, 1e-6);
    EXPECT_EQ(bench.passive.circuit.klast, 2);
    window.forms.clear();
    dispatch_event(bench, insert_item);
    EXPECT_EQ(bench.passive.circuit.klast, 2) << "the form was cancelled";
    const Circuit typed = bench.passive.circuit;

    window.files = {"first", "second"};
    dispatch_event(bench, save_item);
    dispatch_event(bench, save_as_item);
    EXPECT_EQ(read_text("first.qfp"), read_text("second.qfp"));
    dispatch_event(bench, save_as_item);
    EXPECT_EQ(window.boxes.back(), "Warning: CANCEL");

    bench.passive = {};
    window.boxes.clear();
    window.files = {"second.qfp"};
    dispatch_event(bench, recall_filter_event);
    EXPECT_TRUE(window.boxes.empty()) << "nothing is overwritten from the main menu";
    EXPECT_EQ(window.titles.back(), "Kavrel - PASSIVE LC/MICROWAVE MENU");
    EXPECT_TRUE(bench.passive.circuit == typed);
}

// Neither the Segment nor what is in it is given up for a file that cannot be read.
TEST_F(PassiveEvents, AStoredFileThatCannotBeReadChangesNothing) {
    insert(InsertChoice::r, 1, 50);
    insert(InsertChoice::l, 2, 1e-6);
    window.files = {"good"};
    dispatch_event(bench, save_item);
    insert(InsertChoice::r, 3, 50);
    write_text("damaged.qfp", "noise");
    const std::size_t titles = window.titles.size();
    const struct {
        const char* name;
        const char* box;
    } rows[] = {{"missing.qfp", "Error: File was not found"},
                {"damaged.qfp", "Error: Error encountered in reading the file"}};
    for (const auto& row : rows) {
        window.files = {row.name};
        dispatch_event(bench, recall_filter_event);
        EXPECT_EQ(window.boxes.back(), row.box);
        EXPECT_EQ(window.titles.size(), titles) << "the main window's title and menu stay";
        EXPECT_EQ(bench.passive.circuit.klast, 3);
        EXPECT_EQ(bench.passive_state.kept.undoTop, 3);
        EXPECT_EQ(bench.session.filter_file, std::string_view("good"));

        Workbench other{window};
        main_program(other, row.name, "x");
        EXPECT_EQ(window.boxes.back(), row.box);
        EXPECT_EQ(other.session.segment, SegmentId::main);
        window.titles.resize(titles);
    }
}

TEST_F(PassiveEvents, RefusalsOfAFormKeepIt) {
    int opened = 0;
    const auto press_ok = [&](FormSheet&) { return ++opened > 0; };
    window.forms = {press_ok, press_ok};
    dispatch_event(bench, frequency_item);
    EXPECT_EQ(opened, 2) << "it came back after its refusal";
    EXPECT_EQ(window.boxes.front(), "Error: Frequency specification incorrect");
}

TEST_F(PassiveEvents, MacrosAndPlots) {
    write_text("a.wbt", "SendKey (\"~\")\n");
    window.files = {"a.wbt"};
    window.lines.clear();
    dispatch_event(bench, play_item);
    EXPECT_EQ(window.lines, std::vector<std::string>{"SendKey (\"~\")\n"});
    dispatch_event(bench, plot_print_item);
    EXPECT_EQ(window.boxes.back(), "Error: No plot specified");
}

// What has a form in the table has fields in it, all of a name of their own.
TEST_F(PassiveEvents, EveryFormOfTheMenuHasFields) {
    int forms = 0;
    for (const MenuItem& item : passive_menu) {
        if (item.form == nullptr) continue;
        ++forms;
        EXPECT_GT(item.form->fields.size(), 0U) << item.path;
        for (std::size_t i = 0; i < item.form->fields.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) EXPECT_NE(item.form->fields[i].name, item.form->fields[j].name);
        }
    }
    EXPECT_EQ(forms, 12);
}

}  // namespace
}  // namespace kavrel
