#include "workbench/start_up.h"

#include <gtest/gtest.h>

#include "shell/settings.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/rooms.h"

namespace kavrel {
namespace {

struct StartUp : testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};

    void start(std::string_view argument = "") { main_program(bench, argument, "/opt/kavrel/bin/kavrel-cli"); }
};

TEST_F(StartUp, ClearsTemporaryFilesAndCreatesTheSettings) {
    const char* temporary[] = {"~xxx.tmp", "_xxx0.tmp", "_xxx9.tmp", "_xxx10.tmp", "~_xxx4.tmp.kavrel-7.tmp"};
    for (const char* name : temporary) write_text(name, "stale");
    for (const char* name : {"_xxx11.tmp", "keep.tmp", "~own.7.tmp"}) write_text(name, "stale");
    start();
    for (const char* gone : temporary) EXPECT_FALSE(std::filesystem::exists(gone)) << gone;
    for (const char* kept : {"_xxx11.tmp", "keep.tmp", "~own.7.tmp"})
        EXPECT_TRUE(std::filesystem::exists(kept)) << kept;
    EXPECT_EQ(read_text("q_qxz"),
              "   1.00000000E+00   1.00000000E+00   1.00000000E+00   1.00000000E+00\n"
              "       1       1       1       1       0       0\n");
    EXPECT_EQ(bench.session.program_directory.trimmed(), "/opt/kavrel/bin/");
    EXPECT_TRUE(bench.session.command_line.is_blank());
    EXPECT_EQ(window.titles, std::vector<std::string>{"Kavrel - MAIN MENU"});
    EXPECT_TRUE(window.lines.empty());
    ASSERT_EQ(window.toolbar.size(), 6U);
    EXPECT_EQ(window.toolbar[2].tip, "About Kavrel " KAVREL_VERSION);
    for (const ToolbarItem& item : window.toolbar) EXPECT_NE(find_item(window.menu, item.id), nullptr) << item.tip;
}

TEST_F(StartUp, ReadsTheSettingsAndTellsOfDamage) {
    write_text("q_qxz", "1000.0 1.0 1.0 1.0\n4 3 2 5 3 1\n");
    start();
    EXPECT_EQ(bench.session.units.frequency_index, 2);
    EXPECT_EQ(bench.session.units.inductor_index, 1);
    EXPECT_EQ(bench.session.frequency_scale, 1.0) << "working copies follow with the first event";
    dispatch_event(bench, 5);
    EXPECT_EQ(bench.session.frequency_scale, 1000.0);

    write_text("q_qxz", "noise");
    Workbench other{window};
    window.boxes.clear();
    main_program(other, "", "x");
    EXPECT_EQ(other.session.units, UnitSet{});
    ASSERT_EQ(window.boxes.size(), 1U);
    EXPECT_EQ(window.boxes[0].substr(0, 9), "Warning: ");
    EXPECT_EQ(read_text("q_qxz"), "noise") << "the file stays for its owner to look at";
}

TEST_F(StartUp, OnlyANameOfAStoredFilterIsOpened) {
    for (const char* ignored : {"filter.dat", ".qfp", "filter.qf", "filter.qfpx", "qfp", ""}) {
        Workbench other{window};
        window.boxes.clear();
        window.lines.clear();
        main_program(other, ignored, "x");
        EXPECT_TRUE(window.boxes.empty()) << ignored;
        EXPECT_TRUE(window.lines.empty()) << ignored;
        EXPECT_TRUE(other.session.filter_file.is_blank()) << ignored;
    }
    start("a.qfq");
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: File is no stored filter"});
    EXPECT_EQ(window.lines, std::vector<std::string>{"a.qfq"});
    EXPECT_EQ(bench.session.filter_file.trimmed(), "a.qfq");
    EXPECT_FALSE(bench.session.recall_from_command_line);

    const std::string deep = std::string(140, 'd') + "/a.qfp";
    start(deep);
    EXPECT_EQ(window.boxes.back(), "Error: File was not found") << "a name longer than the session's copy";
    EXPECT_EQ(bench.session.filter_file.trimmed(), deep);
}

TEST_F(StartUp, EventsAreSentOn) {
    start();
    EXPECT_EQ(dispatch_event(bench, 195), -1);
    EXPECT_EQ(window.boxes.back(), "Default: Command not implemented");
    EXPECT_EQ(dispatch_event(bench, 1200), -1);
    EXPECT_EQ(window.boxes.back(), "Default: Command not implemented");
    const auto told = window.boxes.size();
    window.knows_events = true;
    EXPECT_EQ(dispatch_event(bench, close_window_event), 0) << "left to the window layer";
    EXPECT_EQ(window.boxes.size(), told);
    dispatch_event(bench, help_event);
    EXPECT_EQ(window.boxes.back(), "Warning: Help file unavailable");
    dispatch_event(bench, recall_filter_event);
    EXPECT_EQ(window.boxes.back(), "Warning: CANCEL");
    window.files = {"menu.txt"};
    write_text("menu.txt", "a text to view");
    dispatch_event(bench, 129);
    EXPECT_EQ(window.lines.back(), "a text to view");
    window.answers = {Answer::no, Answer::yes};
    dispatch_event(bench, 1136);
    EXPECT_FALSE(bench.session.stopped);
    dispatch_event(bench, 1136);
    EXPECT_TRUE(bench.session.stopped);
}

TEST_F(StartUp, UnitsFormSettlesAndKeepsTheUnits) {
    start();
    const auto choose = [](std::string_view frequency, std::string_view inductor) {
        return [=](FormSheet& sheet) {
            return sheet.enter(static_cast<std::size_t>(find_field(sheet, "Frequency unit")), frequency).empty() &&
                   sheet.enter(static_cast<std::size_t>(find_field(sheet, "inductor_index")), inductor).empty();
        };
    };
    window.forms = {choose("Hz", "uH"), choose("MHz", "uH")};
    dispatch_event(bench, 143);
    EXPECT_EQ(bench.session.units, UnitSet{}) << "no inductor unit without a frequency unit above hertz";
    dispatch_event(bench, 143);
    EXPECT_EQ(bench.session.units.inductor_multiplier, 1.0e-6);
    EXPECT_EQ(bench.session.units.fixed_units, 3);
    EXPECT_EQ(bench.session.frequency_scale, 1.0) << "in force with the next event";
    UnitSet kept;
    EXPECT_EQ(read_settings("q_qxz", kept), SettingsStatus::read);
    EXPECT_EQ(kept, bench.session.units);
    std::filesystem::remove("q_qxz");
    std::filesystem::create_directories("q_qxz/occupied");
    const UnitSet before = bench.session.units;
    window.forms = {choose("GHz", "pH")};
    dispatch_event(bench, 143);
    EXPECT_EQ(window.boxes.back(), "Error: File could not be written");
    EXPECT_EQ(bench.session.units, before);
}

}  // namespace
}  // namespace kavrel
