// Files that commands write and read, and the lists of roots.
#include "iir/file_commands.h"

#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

struct IirFileCommands : testing::Test, IirRoom {
    IirFileCommands() {
        filter = factored_filter(8000, 0.25, {{-1.2, 1}, {1, 0}}, {{-1, 0.5}});
        session.TITLE = "Some filter";
    }
    std::string file_of(std::string_view word, const std::string& name) {
        window.files = {name.substr(0, name.find('.'))};
        send(word);
        return read_text(name);
    }
};

// The roots are those before it was equalized, and of the original filter.
TEST_F(IirFileCommands, PoleZeroFile) {
    EXPECT_EQ(file_of("pz  ", "one.pz"),
              " ! Pole-zero data of:\n"
              " ! Some filter\n"
              " ! Zeros (normalized):\n"
              "   -6.000000000E-01    8.000000000E-01\n"
              "    1.000000000E+00    0.000000000E+00\n"
              " ! Poles (normalized):\n"
              "   -5.000000000E-01    5.000000000E-01\n");
    filter.Modified = true;
    send("pz  ");
    EXPECT_EQ(boxes(), "Question: Data is for the original filter, not the current (modified) one \nWish to continue?");
    filter.unequalized_count = 1;
    filter.UNEQUALIZED_RE(1) = 0.125;
    send("func");
    EXPECT_TRUE(reported("   -1.250000000E-01    0.000000000E+00"));
    EXPECT_FALSE(reported("   -5.000000000E-01   -5.000000000E-01"));
}

// H = 0.25 (1 - 1.2 z^-1 + z^-2)(1 + z^-1)/(1 - z^-1 + 0.5 z^-2), scaled or not.
TEST_F(IirFileCommands, SwitchedCapacitorFile) {
    const auto file = [](std::string_view rows) {
        return " ! pole-zero data for switched-capacitor filter\n ! Some filter\n ! numerator quadratic factors\n" +
               std::string(rows) +
               " ! denominator quadratic factors\n     1.000000E+00    -1.000000E+00     5.000000E-01\n";
    };
    EXPECT_EQ(file_of("swc ", "plain.swc"), file("     2.500000E-01    -3.000000E-01     2.500000E-01\n"
                                                 "     1.000000E+00     1.000000E+00     0.000000E+00\n"));
    CascadeForm& c = filter.cascade;
    c.SC(1) = 2, c.C1N(1) *= 2, c.C2N(1) *= 2;
    c.SC(2) = 0.5, c.C1N(2) *= 0.5;
    c.SCALED = true;
    EXPECT_EQ(file_of("swc ", "scaled.swc"), file("     5.000000E-01    -6.000000E-01     5.000000E-01\n"
                                                  "     5.000000E-01     5.000000E-01     0.000000E+00\n"));
    filter = factored_filter(8000, 0.25, {}, {{-1, 0.5}});
    EXPECT_EQ(file_of("swc ", "poles.swc"), file("     2.500000E-01     0.000000E+00     0.000000E+00\n"));
    file_of("swc ", "no/such/folder.swc");
    EXPECT_EQ(boxes(), "Error: Error in opening file");
}

// What is read can be undone; what was done to another filter before it was recalled can not.
TEST_F(IirFileCommands, SaveAndRead) {
    file_of("save", "some.qfd");
    EXPECT_EQ(session.filter_file, std::string_view("some"));
    const std::string saved = bytes();
    command.loss = 6;
    send("flat");
    const std::string flat = bytes();
    window.answers = {Answer::yes};
    window.files = {"some.qfd"};
    session.TITLE = "Another";
    send("read");
    EXPECT_EQ(boxes(), "Warning: Current filter will be overwritten!");
    EXPECT_EQ(bytes(), saved);
    EXPECT_EQ(session.TITLE, std::string_view("Some filter"));
    send("undo");
    EXPECT_EQ(bytes(), flat);
    session.filter_file = "some";
    session.entry(SegmentId::iir) = iir_entry::stored_filter;
    send("read");
    EXPECT_EQ(bytes(), saved);
    send("undo");
    EXPECT_EQ(boxes(), "Error: Nothing to undo");
    send("redo");
    EXPECT_EQ(boxes(), "Error: Nothing to redo");
}

}  // namespace
}  // namespace kavrel
