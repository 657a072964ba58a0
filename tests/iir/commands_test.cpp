// What commands leave in the results, in files and in the filter.
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

struct IirCommands : testing::Test, IirRoom {
    IirCommands() {
        filter = factored_filter(8000, 0.25, {{-1.2, 1}, {1, 0}}, {{-1, 0.5}});
        session.TITLE = "Some filter";
    }
    std::string file_of(std::string_view word, const std::string& name) {
        window.files = {name.substr(0, name.find('.'))};
        send(word);
        return read_text(name);
    }
    void time(double start, double stop, double step) {
        command.time = {start, stop, step};
        send("time");
    }
};

// H = 1/(2 - z^-1) at 1 kHz: impulse response 2^-n of sample n, step response 1 - 2^-n.
TEST_F(IirCommands, TimeRows) {
    filter = factored_filter(1000, 0.5, {}, {{-0.5, 0}});
    const struct {
        double start, stop, step;
        int count, first, every;  // in samples
    } cases[] = {{0, 0.01, 0.0004, 11, 1, 1},
                 {0.002, 0.0109, 0.0026, 3, 3, 3},
                 {0.0029999999, 0.004, 0, 2, 4, 1},
                 {0, 0.0001, 1, 1, 1, 1000}};
    for (const auto& [start, stop, step, count, first, every] : cases) {
        time(start, stop, step);
        ASSERT_EQ(results.time_count, count) << stop << " " << step;
        for (int i = 1; i <= count; ++i) {
            const int n = first + (i - 1) * every;
            EXPECT_EQ(results.TIME(i), static_cast<float>((n - 1) * 1e-3));
            EXPECT_EQ(results.IMPULSE(i), static_cast<float>(std::pow(0.5, n)));
            EXPECT_EQ(results.STEP(i), static_cast<float>(1 - std::pow(0.5, n)));
        }
    }
    session.units.frequency_index = session.units.time_index = 2;
    settle_units(session.units);
    time(0, 1000, 0);
    EXPECT_EQ(lines(), " Time response: first 501 of 1001 rows\n") << "milliseconds";
    window.stop_at = 3;
    time(1e9, 1e9 + 1, 0);
    EXPECT_EQ(boxes() + lines(), " **** Stopped ****\n");
    window.stop_at = -1;
    filter.cascade.C1D(1) = -2;
    time(150, 200, 0);
    EXPECT_EQ(boxes(), "Error: Results are out of range");
    EXPECT_EQ(results.time_count, 501) << "as before";
    EXPECT_TRUE(file_of("tabt", "late.tab").starts_with(" *** analysis of an earlier filter ***"));
}

TEST_F(IirCommands, TimeInWords) {
    filter = factored_filter(1000, 4, {}, {{-0.5, 0}});
    using enum NumberForm;
    for (const auto& [bits, form] :
         {std::pair(30, fixed_point), {27, fixed_point}, {30, floating_point}, {50, fixed_point}}) {
        command.simulated_word = {bits, WordMethod::round, form};
        time(0, 0.01, 0);
        const bool passes = bits == 30 && form == fixed_point;
        EXPECT_EQ(reported(" Overflow: a state reaches 8.586E+09 steps of the word\n"), passes) << lines();
        EXPECT_EQ(reported(" in words of "), bits < 50);
    }
    for (const auto method : {WordMethod::round, WordMethod::truncate}) {
        command.simulated_word = {2, method, NumberForm::fixed_point};
        time(0, 0.01, 0);  // 4, 2, 1, 0.5, 0.25; then of 0.125 half a step stays, or nothing
        const bool stays = method == WordMethod::round;
        EXPECT_EQ(lines(), fmt::format(" Time response in words of 2 bits, fixed point, {}\n", name_of(method)));
        EXPECT_TRUE(results.IMPULSE(5) == 0.25F && results.IMPULSE(9) == (stays ? 0.25F : 0)) << results.IMPULSE(9);
    }
}

TEST_F(IirCommands, FrequencyRows) {
    filter.kind = DigitalKind::low_pass, filter.allpass.NTA = filter.allpass.NTB = 1, filter.allpass.TB2(1) = 0.25;
    command.frequency = {.end = 4000, .increment = 500};
    command.analysed = Implementation::allpass;
    command.frequency_plot = {.y1 = 1, .y2 = 0};
    send("freq");
    window.answers = {Answer::no};
    send("pltf");
    EXPECT_EQ(results.y1_label.trimmed(), "Loss (dB) difference");
    EXPECT_EQ(results.Y1_DATA(2), results.LOSS_COMPLEMENT(2)) << "of a low-pass the sum is the filter";
    filter.cascade.C1D(1) = -1, filter.cascade.C2D(1) = 0;  // a pole on a frequency of the grid
    command.analysed = Implementation::cascade;
    send("freq");
    EXPECT_TRUE(reported(" *** 1 of 9 frequencies has no result ***") && results.FREQ(1) == 500);
}

// The roots are those before it was equalized, and of the original filter.
TEST_F(IirCommands, OriginalRoots) {
    const std::string text = file_of("pz  ", "one.pz");
    EXPECT_TRUE(text.ends_with(" ! Poles (normalized):\n   -5.000000000E-01    5.000000000E-01\n")) << text;
    filter.Modified = true;
    send("pz  ");
    EXPECT_EQ(boxes(), "Question: Data is for the original filter, not the current (modified) one \nWish to continue?");
    filter.unequalized_count = 1, filter.UNEQUALIZED_RE(1) = 0.125;
    send("func");
    EXPECT_TRUE(reported("   -1.250000000E-01    0.000000000E+00") && !reported("   -5.000000000E-01"));
}

// H = 0.25 (1 - 1.2 z^-1 + z^-2)(1 + z^-1)/(1 - z^-1 + 0.5 z^-2), scaled, and without zeros.
TEST_F(IirCommands, SwitchedCapacitorFile) {
    CascadeForm& c = filter.cascade;
    c.SC(1) = 2, c.C1N(1) *= 2, c.C2N(1) *= 2, c.SC(2) = 0.5, c.C1N(2) *= 0.5, c.SCALED = true;
    EXPECT_EQ(file_of("swc ", "scaled.swc"),
              " ! pole-zero data for switched-capacitor filter\n ! Some filter\n ! numerator quadratic factors\n"
              "     5.000000E-01    -6.000000E-01     5.000000E-01\n"
              "     5.000000E-01     5.000000E-01     0.000000E+00\n"
              " ! denominator quadratic factors\n     1.000000E+00    -1.000000E+00     5.000000E-01\n");
    filter = factored_filter(8000, 0.25, {}, {{-1, 0.5}});
    const std::string text = file_of("swc ", "poles.swc");
    EXPECT_NE(text.find("s\n     2.500000E-01     0.000000E+00     0.000000E+00\n !"), std::string::npos) << text;
}

// What is read can be undone; what was done to another filter before it was recalled can not.
TEST_F(IirCommands, SaveAndRead) {
    file_of("save", "some.qfd");
    const std::string saved = bytes();
    command.loss = 6;
    send("flat");
    const std::string flat = bytes();
    window.answers = {Answer::yes};
    window.files = {"some.qfd"};
    session.TITLE = "Another";
    send("read");
    EXPECT_EQ(bytes(), saved);
    EXPECT_EQ(session.TITLE, std::string_view("Some filter"));
    send("undo");
    EXPECT_EQ(bytes(), flat);
    session.filter_file = "some";
    session.entry(SegmentId::iir) = iir_entry::stored_filter;
    send("read");
    EXPECT_EQ(bytes(), saved);
    EXPECT_EQ(state.kept.undoTop, 0);
}

}  // namespace
}  // namespace kavrel
