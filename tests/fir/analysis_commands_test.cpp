// The words of analysis and report: what they refuse, and what they leave.
#include "tests/fir/fir_room.h"

namespace kavrel {
namespace {

struct FirAnalysis : testing::Test, FirRoom {
    void take(const std::vector<double>& taps) {
        const auto [function, cells] = response_of(taps);
        filter.sampling_frequency = 48e3;
        ASSERT_TRUE(add_function(filter, function, cells));
    }
};

TEST_F(FirAnalysis, SaysWhatItCannotDo) {
    EXPECT_EQ(send("freq"), "Error: No function to analyze");
    for (const auto word : {"tabf", "pltf", "tabt", "pltt"}) EXPECT_EQ(send(word), "Error: No analysis results");
    take({1, 2, 1});
    EXPECT_EQ(send("freq"), "Error: No frequencies");
    command.frequency.count = 1, send("freq");
    EXPECT_EQ(send("pltf"), "Warning: Too few points to plot");
    command.frequency = {.end = 24e3, .count = 9}, send("freq");
    command.frequency_plot.y1 = 3;
    EXPECT_EQ(send("pltf"), "Warning: Delay constant, no plot");
}

TEST_F(FirAnalysis, ResultsAreOfTheirFunction) {
    take({1, 2, 1});
    take({1, 0.5});
    command.frequency = {.end = 24e3, .count = 9}, window.answers = {Answer::yes};
    EXPECT_TRUE(send("freq").ends_with("  2.40000E+04   200.0000  -180.00  2.0833E-05") && results.LOSS(9) == 200);
    command.function_number = 2, send("freq"), send("pltf");
    EXPECT_TRUE(results.structure == std::string_view("function 2") && results.frequency_of == fingerprint(filter, 2));
    EXPECT_EQ(plot.print_id, 162);
    window.files = {"table", "earlier", "report"};
    send("time"), send("tabt");
    EXPECT_TRUE(read_text("table.tab").find("2.08333E-05    5.00000E-01    1.50000E+00") != std::string::npos);
    send("clr "), send("tabf");
    EXPECT_TRUE(read_text("earlier.tab").starts_with(" *** analysis of an earlier filter ***"));
    const std::string design = send("disp");
    send("file");
    EXPECT_TRUE(read_text("report.txt").starts_with(design) && read_text("report.txt").ends_with("2.000000000E+00\n"));
}

}  // namespace
}  // namespace kavrel
