// The words of analysis and report: what they refuse, and what they leave.
#include "tests/fir/fir_room.h"

namespace kavrel {
namespace {

struct FirAnalysis : testing::Test, FirRoom {
    // The box, or else the lines, that a word brings up.
    std::string answer(std::string_view word) {
        send(word);
        return window.boxes.empty() ? lines() : boxes();
    }
};

TEST_F(FirAnalysis, SaysWhatItCannotDo) {
    constexpr std::pair<std::string_view, std::string_view> without_filter[] = {
        {"freq", "Error: No function to analyze"}, {"tabf", "Error: No analysis results"},
        {"pltf", "Error: No analysis results"},    {"tabt", "Error: No analysis results"},
        {"pltt", "Error: No analysis results"},    {"disp", "Error: Data is unavailable"},
        {"file", "Error: Data is unavailable"},
    };
    for (const auto& [word, box] : without_filter) EXPECT_EQ(answer(word), box) << word;
    filter = filter_of({1, 2, 1});
    command.function_number = 2;
    EXPECT_EQ(answer("freq"), "Error: Function does not exist");
    command.function_number = 1;
    EXPECT_EQ(answer("freq"), "Error: No frequencies");
    EXPECT_EQ(results.frequency_count, 0);
    command.frequency.count = 1;
    send("freq");
    EXPECT_EQ(answer("pltf"), "Warning: Too few points to plot");
    command.frequency = {.end = 24e3, .count = 9};
    send("freq");
    command.frequency_plot.y1 = 3;
    EXPECT_EQ(answer("pltf"), "Warning: Delay constant, no plot");
    command.frequency_plot.y1 = no_curve;
    EXPECT_EQ(answer("pltf"), "Error: No plot specified");
}

TEST_F(FirAnalysis, ResultsAreOfTheirFunction) {
    filter = filter_of({1, 2, 1});
    const FirResponse second = response_of(std::vector<double>{1, 0.5});
    ASSERT_TRUE(add_function(filter, second.function, second.coefficients));
    command.frequency = {.end = 24e3, .count = 9};
    window.answers = {Answer::yes};
    send("freq");
    EXPECT_TRUE(boxes() == "Question: Tabulate?" && reported("  2.40000E+04   200.0000  -180.00  2.0833E-05"));
    EXPECT_EQ(results.LOSS(9), 200.0F);
    command.function_number = 2;
    send("freq");
    EXPECT_TRUE(results.structure == std::string_view("function 2") && results.frequency_of == fingerprint(filter, 2));
    send("pltf");
    EXPECT_EQ(plot.print_id, 162);
    send("time");
    window.files = {"table"};
    send("tabt");
    EXPECT_TRUE(read_text("table.tab").find("2.08333E-05    5.00000E-01    1.50000E+00") != std::string::npos);
    send("clr ");
    window.files = {"earlier"};
    send("tabf");
    EXPECT_TRUE(read_text("earlier.tab").starts_with(" *** analysis of an earlier filter ***"));
}

TEST_F(FirAnalysis, DisplaysDesignAndReportsAll) {
    design(9, {{0, 8, 1, 1}, {12, 24, 0, 2}});
    ASSERT_TRUE(add_function(filter, {.taps = 3, .symmetry = FirSymmetry::odd}, std::vector<double>{0}));
    send("disp");
    EXPECT_TRUE(reported("    2    1.2000000E+01   2.4000000E+01    0.000000000  2.0000000E+00"));
    EXPECT_TRUE(reported("Free cells of the store : 512"));
    const std::string shown = lines();
    window.files = {"report"};
    send("file");
    const std::string text = read_text("report.txt");
    EXPECT_TRUE(text.starts_with(shown) && text.find("H(  1) =   0.000000000E+00 = -H(  3)") != std::string::npos);
    EXPECT_TRUE(text.ends_with("    **** All coefficients are 0 ****\n"));
}

}  // namespace
}  // namespace kavrel
