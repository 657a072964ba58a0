#include "shell/form.h"

#include <gtest/gtest.h>

#include "shell/field_table.h"
#include "shell/number_text.h"
#include "shell/reporter.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

struct Request {
    double edge = 0.0;
    int count = 2;
    int kind = 0;
    bool kept = false;
    FixedText<8> title;
    FormList<3, 2> points;
};

void rules(const Request& r, FieldStates& states) {
    states.off("edge", r.kind == 1);
    states.choice_off("kind", 3, r.kept);
    states.label("edge", r.kind == 2 ? "Stop edge" : "Edge");
}

std::string_view message(const Request& r) { return r.edge > 0.0 ? "" : "Edge missing"; }

constexpr Choice kinds[] = {{"Low pass", 1}, {"High pass", 2}, {"Band pass", 3}};
constexpr Column columns[] = {{"Frequency", Unit::frequency}, {"Zero", Unit::hertz}};
extern const Form points_form;
constexpr Field fields[] = {
    real<&Request::edge>("edge", "Edge", Unit::frequency),
    integer<&Request::count>("count", "Count", 0, 9),
    radio<&Request::kind>("kind", "Kind", kinds),
    flag<&Request::kept>("kept", "Kept"),
    text<&Request::title>("title", "Title"),
    button<points_form>("points", "Points"),
    flag<&Request::kept>("second_kept", "Kept"),
};
constexpr Field point_fields[] = {list<&Request::points>("points", "Points", columns)};
constexpr Form form = form_of<Request, rules, message>("TEST_DLG", "Test", fields);
constexpr Form points_form = form_of<Request>("POINTS_DLG", "Points", point_fields, true);

struct Forms : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    UnitSet units;
    Request request;

    std::string enter(std::string_view name, std::string_view typed) {
        FormSheet sheet(form, &request, units, reporter);
        return sheet.enter(static_cast<std::size_t>(find_field(sheet, name)), typed);
    }
};

TEST_F(Forms, FieldsTakeWhatIsTypedOrSayWhatIsWrong) {
    EXPECT_EQ(enter("edge", "4.7k"), "");
    EXPECT_EQ(request.edge, 4700.0);
    EXPECT_EQ(enter("edge", "fast"), "'fast' is not a number");
    EXPECT_EQ(enter("edge", "nan"), "'nan' is not a number");
    EXPECT_EQ(request.edge, 4700.0) << "what is wrong changes nothing";
    EXPECT_EQ(enter("count", "10"), "10 is outside 0 to 9");
    EXPECT_EQ(enter("count", "1.5"), "'1.5' is not a whole number");
    EXPECT_EQ(enter("count", "9"), "");
    EXPECT_EQ(enter("kind", "high pass"), "");
    EXPECT_EQ(request.kind, 2);
    EXPECT_EQ(enter("kind", "3"), "");
    EXPECT_EQ(enter("kind", "4"), "'4' is none of its choices");
    EXPECT_EQ(enter("kept", "Yes"), "");
    EXPECT_TRUE(request.kept);
    EXPECT_EQ(enter("kind", "Band pass"), "'Band pass' cannot be chosen here");
    EXPECT_EQ(enter("kept", "maybe"), "'maybe' is neither yes nor no");
    EXPECT_EQ(enter("title", "a title too long"), "");
    EXPECT_EQ(request.title.padded(), "a title ");
}

TEST_F(Forms, RulesLabelsAndUnitsShow) {
    units.frequency_index = 3;
    request.kind = 1;
    request.edge = 2.5e3;
    const FormSheet off(form, &request, units, reporter);
    EXPECT_FALSE(off.is_on(0));
    request.kind = 2;
    const FormSheet on(form, &request, units, reporter);
    EXPECT_TRUE(on.is_on(0));
    EXPECT_EQ(on.label(0), "Stop edge (MHz)");
    EXPECT_EQ(on.shown(0), "2.500000E+03");
    EXPECT_EQ(on.shown(2), "High pass");
    EXPECT_EQ(find_field(on, "Kept"), -2) << "a label of two fields";
    EXPECT_EQ(find_field(on, "kept"), 3);
    EXPECT_EQ(find_field(on, "COUNT"), 1) << "labels in any case";
    EXPECT_EQ(find_field(on, "nothing"), -1);
    EXPECT_EQ(find_field(on, "Edge"), 0) << "the label it always has";
    EXPECT_EQ(find_field(on, "stop  EDGE"), 0) << "the label it has now, without the unit";
    EXPECT_EQ(find_field(on, "stop_edge"), 0) << "a name made from it";
    EXPECT_EQ(find_field(on, "Second_Kept"), 6) << "names in any case";
    EXPECT_EQ(find_field(on, "stop_edge"), 0) << "a name made from the label";
    EXPECT_EQ(find_field(on, " stop   edge (MHz)"), 0) << "one blank or several";
}

TEST_F(Forms, RefusalKeepsTheFormOpenAndCancelRestores) {
    window.forms = {[](FormSheet& sheet) { return sheet.enter(1, "7").empty(); },
                    [](FormSheet& sheet) { return sheet.refusals() == 1 && sheet.enter(0, "1k").empty(); }};
    EXPECT_TRUE(run_form(form, &request, units, reporter));
    EXPECT_EQ(window.boxes, (std::vector<std::string>{"Error: Edge missing"}));
    EXPECT_EQ(request.count, 7) << "what was entered before the refusal stays";
    window.forms = {[](FormSheet& sheet) { return !sheet.enter(1, "3").empty(); }};
    EXPECT_FALSE(run_form(form, &request, units, reporter));
    EXPECT_EQ(request.count, 7);
}

TEST_F(Forms, ListsHaveRoomAndWidth) {
    FormSheet sheet(points_form, &request, units, reporter);
    EXPECT_EQ(sheet.column_label(0, 1), "Frequency ( Hz)");
    for (const double row : {1.0, 2.0, 3.0}) EXPECT_EQ(sheet.append_row(0, std::array{row, -row}), "");
    EXPECT_EQ(sheet.append_row(0, std::array{4.0, 4.0}), "the list has room for 3 rows");
    EXPECT_EQ(request.points(3, 2), -3.0);
    sheet.clear_rows(0);
    EXPECT_EQ(sheet.append_row(0, std::array{4.0}), "a row has 2 numbers, not 1");
    units.frequency_multiplier = 1e3;
    EXPECT_EQ(sheet.append_typed_row(0, std::array<std::string, 2>{"1 kHz", "1 kHz"}), "");
    EXPECT_EQ(request.points(1, 2), 1000.0 * request.points(1, 1)) << "in Hz, whatever the user's unit";
    sheet.clear_rows(0);
    EXPECT_EQ(request.points.rows, 0);
    EXPECT_EQ(request.points(1, 1), 0.0);
}

TEST_F(Forms, ListsAreReadFromAFileThatFitsWhole) {
    const ScratchFolder folder;
    request.points.rows = 1;
    request.points(1, 1) = 42.0;
    for (const char* text : {"1 2\n3\n", "1 2\nx 4\n", "1 2\n3 4\n5 6\n7 8\n", "", "1 2 3\n"}) {
        write_text("bad.dat", text);
        window.files = {"bad.dat"};
        FormSheet(points_form, &request, units, reporter).read_rows(0);
        EXPECT_EQ(window.boxes.back(), "Error: File contains incorrect data") << text;
        EXPECT_EQ(request.points.rows, 1);
        EXPECT_EQ(request.points(1, 1), 42.0);
    }
    write_text("good.dat", "1k, 2\r\n\n 3.5D3\t-4e0\n");
    window.files = {"good.dat"};
    FormSheet(points_form, &request, units, reporter).read_rows(0);
    EXPECT_EQ(window.boxes.back(), "Success:  *** Done ***");
    EXPECT_EQ(request.points.rows, 2);
    EXPECT_EQ(request.points(2, 1), 3500.0);
    EXPECT_EQ(request.points(2, 2), -4.0);
    write_text("marked.dat",
               "\xEF\xBB\xBF"
               "5 6\n");
    window.files = {"marked.dat"};
    FormSheet(points_form, &request, units, reporter).read_rows(0);
    EXPECT_EQ(request.points.rows, 1) << "a byte order mark is no part of the first row";
    EXPECT_EQ(request.points(1, 1), 5.0);
}

TEST_F(Forms, CommentsOfAFilePassAndHeadItsLists) {
    const ScratchFolder folder;
    FormSheet sheet(points_form, &request, units, reporter);
    const std::string name(points_form.fields[0].label);
    write_text("plain.dat", "! frequency and loss\n1 2\n ! more\n3 4\n");
    write_text("lists.dat", " ! of " + name + "\n! Others (in Hz):\n9 9\n9 9\n9 9\n !  " + name +
                                " (in Hz):\n5 6\n! Numbers\n7 8\nnot a row\n");
    for (const auto& [file, rows, first] : {std::tuple{"plain.dat", 2, 1.0}, std::tuple{"lists.dat", 1, 5.0}}) {
        window.files = {file};
        sheet.read_rows(0);
        EXPECT_EQ(window.boxes.back(), "Success:  *** Done ***") << file;
        EXPECT_EQ(request.points.rows, rows) << file;
        EXPECT_EQ(request.points(1, 1), first) << file;
    }
    units.frequency_index = 2;
    settle_units(units);
    window.files = {"lists.dat"};
    sheet.read_rows(0);
    EXPECT_EQ(request.points(1, 1), 0.005) << "from Hz";
    EXPECT_EQ(request.points(1, 2), 6.0) << "no frequency";
    write_text("empty.dat", "! " + name + "\n! Others\n1 2\n");
    window.files = {"empty.dat"};
    sheet.read_rows(0);
    EXPECT_EQ(window.boxes.back(), "Error: File contains incorrect data") << "no row under the list's own heading";
    EXPECT_EQ(request.points.rows, 1);
}

TEST_F(Forms, AButtonsFormChangesTheRecordOnlyWhenItIsAccepted) {
    const auto add_row = [](bool accept) {
        return [accept](FormSheet& sheet) { return sheet.append_row(0, std::array{1.0, 2.0}).empty() && accept; };
    };
    FormSheet sheet(form, &request, units, reporter);
    window.forms = {add_row(false), add_row(true)};
    sheet.press(5);
    EXPECT_EQ(request.points.rows, 0);
    sheet.press(5);
    EXPECT_EQ(request.points.rows, 1);
}

TEST(NumberText, EngineeringSuffixesAndRefusals) {
    const struct {
        const char* text;
        double value;
    } good[] = {{"4.7k", 4700.0}, {"10n", 1e-8},   {"2.2u", 2.2e-6}, {"1M", 1e6},  {"1m", 1e-3},   {"3G", 3e9},
                {"1p", 1e-12},    {"5f", 5e-15},   {"-.5", -0.5},    {"+2.", 2.0}, {"1d-3", 1e-3}, {"1E+5", 1e5},
                {" 12 ", 12.0},   {"1D3", 1000.0}, {"-1e-2", -0.01}, {"0", 0.0}};
    for (const auto& row : good) EXPECT_EQ(parse_number(row.text), row.value) << row.text;
    for (const char* text : {"", " ", "k", "nan", "inf", "-inf", "1e400", "1e3k", "1 k", "1kk", "0x10", "--1", "+-1",
                             "1,5", "e5", "Infinity", "-", "+", "."}) {
        EXPECT_EQ(parse_number(text), std::nullopt) << text;
    }
    EXPECT_EQ(parse_integer("+12"), 12);
    for (const char* text : {"", "1.0", "99999999999", "x", "1k"}) EXPECT_EQ(parse_integer(text), std::nullopt) << text;
}

}  // namespace
}  // namespace kavrel
