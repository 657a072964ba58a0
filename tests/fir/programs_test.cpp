// Programs of FIR functions: the classic text byte for byte, all of them by running them.
#include "fir/program_dialects.h"
#include "tests/fir/fir_room.h"
#include "tests/support/golden.h"
#include "tests/support/running_programs.h"

namespace kavrel {
namespace {

using enum FirSymmetry;
using enum ProgramDialect;

// Noise as the second function of a filter.
FirFilter noise_filter(int taps, FirSymmetry symmetry, int ibt) {
    RandomNumbers random(31);
    FirFilter filter;
    const WordLength word = ibt == 50 ? WordLength{48} : fixed_word(ibt);
    std::vector<double> coefficients(static_cast<std::size_t>(stored_cells(taps, symmetry)));
    for (double& h : coefficients) h = quantise(random.between(-1, 1), word);
    EXPECT_TRUE(add_function(filter, {.taps = 1}, std::vector{1.0}));
    EXPECT_TRUE(add_function(filter, {.taps = taps, .symmetry = symmetry, .word = word}, coefficients));
    filter.sampling_frequency = 1;
    return filter;
}
std::string program_text(ProgramDialect dialect, const FirProgramInput& input) {
    return text_of(fir_dialect_row(dialect).write(input));
}

TEST(ClassicFirProgram, IsItsText) {
    for (const auto& [name, taps, symmetry] : {std::tuple("even", 3, even), {"none", 7, none}, {"odd", 122, odd}}) {
        FirFilter filter = noise_filter(taps, symmetry, 50);
        int i = 0;
        for (double& h : stored_coefficients(filter, 2)) h = std::pow(-1, i) * (i + 1) / 64, ++i;
        expect_golden(fmt::format("{}/fir/programs/classic_{}.f90", TEST_DATA, name),
                      program_text(classic, {filter, 2}));
    }
}

// One product for each pair of taps, and the middle.
template <class Arithmetic>
std::vector<double> run_function(const FirFilter& filter, const Arithmetic& in, const std::vector<double>& x) {
    const auto h = stored_coefficients(filter, 2);
    const FirFunction& f = filter.FUNCTION(2);
    std::vector<double> y(x.size(), 0.0);
    for (std::size_t n = 0; n < x.size(); ++n) {
        const auto sample = [&](std::size_t late) { return late <= n ? x[n - late] : 0; };
        for (std::size_t i = 0; i < h.size(); ++i) {
            const std::size_t j = static_cast<std::size_t>(f.taps) - 1 - i;
            const double mirrored = f.symmetry == none || i == j ? 0 : sample(j);
            y[n] += in.product(h[i], f.symmetry == odd ? sample(i) - mirrored : sample(i) + mirrored);
        }
    }
    return y;
}

// Filters with the words that they run with; 50 and more: as numbers are. Runs follow each other, so that a delay line
// is not empty when they begin. The classic texts run without their quirks.
using Programs = std::vector<std::pair<FirFilter, std::vector<int>>>;
void expect_same(ProgramDialect dialect, const Programs& programs) {
    const ScratchFolder folder;
    std::vector<ProgramText> texts;
    std::vector<ProgramRun> all;
    for (const auto& [filter, words] : programs) {
        for (const int ibt : words) {
            const WordLength word = fixed_word(ibt);
            for (const auto& x : inputs(std::abs(ibt))) {
                const auto y = word.quantises() ? run_function(filter, WordArithmetic(word), x)
                                                : run_function(filter, Unquantised{}, x);
                all.push_back({texts.size(), ibt, x, y});
            }
        }
        std::string text = program_text(dialect, {filter, 2, "100 % */ of \"it\" \\", "lp"});
        if (dialect == classic) text = replaced(replaced(text, "1.do", "1.d0"), "),  x1(", "),  x1(1 + ");
        texts.push_back({text, filter.FUNCTION(2).word.bits});
    }
    compile("fir", dialect, texts);
    expect_runs(all);
}

// The classic text is another filter for an odd symmetry of odd length, and tells so for that alone.
void expect_programs(ProgramDialect dialect) {
    Programs programs;
    for (const int taps : {1, 2, 3, 6, 7, 121, 499, 512}) {
        for (int i = taps == 1 ? 6 : 0; i < 9; ++i) {
            const int word = std::array{50, -12, 18}[static_cast<std::size_t>(i % 3)];
            const FirFilter filter = noise_filter(taps, FirSymmetry{2 - i / 3}, word);
            const bool told = !fir_dialect_row(dialect).note({filter, 2}).empty();
            EXPECT_EQ(told, dialect == classic && i / 3 == 1 && taps % 2 == 1) << taps;
            if (!told) programs.push_back({filter, {word, word == 50 ? -64 : -word}});
        }
    }
    expect_same(dialect, programs);
}
TEST(FirPrograms, InC) { expect_programs(c); }
TEST(FirPrograms, InFortran) {
    if (!is_installed("gfortran")) GTEST_SKIP() << "gfortran is not installed";
    expect_programs(standard);
    expect_programs(classic);
}
TEST(FirPrograms, InWholeNumbers) {
    Programs programs = {{noise_filter(512, none, 30), {30}}};
    for (double& h : stored_coefficients(programs[0].first, 2)) h = -2;
    for (int ibt = -30; ibt <= 30; ++ibt)
        if (std::abs(ibt) > 1)
            programs.push_back({noise_filter(std::abs(ibt), FirSymmetry{(ibt + 30) % 3}, ibt), {ibt}});
    for (const auto& [filter, words] : programs) EXPECT_EQ(integer_program_refusal({filter, 2}).text, "");
    expect_same(c_integer, programs);
}

TEST(FirPrograms, TextInNumpyAndOctave) {
    const ScratchFolder folder;
    const FirFilter filter = noise_filter(7, odd, 50);
    write_text("lp.txt", program_text(ProgramDialect::text, {filter, 2, "name: 5 % # of it"}));
    for (const std::string reader :
         {"/usr/bin/python3 -c 'import numpy; [print(repr(float(h))) for h in numpy.loadtxt(\"lp.txt\")]'",
          "octave-cli --no-gui -q --eval '1; printf(\"%.17g\\n\", load(\"lp.txt\"))'"}) {
        if (!runs(reader.substr(0, reader.find(';')) + "'")) GTEST_SKIP() << reader;
        ASSERT_TRUE(runs(reader)) << read_text("log.txt");
        std::istringstream out(read_text("out.txt"));
        double found = HUGE_VAL;
        for (const double h : full_response(filter, 2)) EXPECT_TRUE(out >> found && found == h) << reader << h;
        EXPECT_FALSE(out >> found);
    }
}

struct FirProgramCommand : testing::Test, FirRoom {};

TEST_F(FirProgramCommand, WritesFilesOrRefuses) {
    EXPECT_EQ(send("prog"), "Error: Function does not exist");
    const FirFilter five = noise_filter(5, odd, 12), long_one = noise_filter(513, none, 50);
    FirFilter large = noise_filter(1, even, 31), wide = noise_filter(1, even, 30), fine = noise_filter(1, even, 12);
    wide.X(2) = 2, fine.X(2) = 0.1, large.X(2) = 1e41;
    // the box, or what is in the file
    const std::tuple<FirFilter, int, ProgramDialect, std::string, std::string, std::string> cases[] = {
        {five, 2, classic, "lp", "lp.f90", "dimension coef(  2),  x1(  3)"},
        {five, 2, standard, "a.txt", "a.f90", "\n! FIR filter of 5 taps, odd symmetry\n"},
        {five, 2, c_integer, "lp1.5k", "lp1.5k.c", "With x from -4096 to 4096"},
        {five, 2, c_table, "2 of it.h", "2 of it.h", "double filter_2_of_it_double[filter_2_of_it_taps]"},
        {five, 0, c, "lp", "", "Error: Function does not exist"},
        {five, 3, c, "lp", "", "Error: Function does not exist"},
        {five, 2, c, "no/lp", "", "Error: File could not be written"},
        {long_one, 2, classic, "lp", "", "Error: Classic text has no room for more than 512 coefficients"},
        {long_one, 2, c_integer, "lp", "", "Error: Filter is not truncated to a fixed word"},
        {fine, 2, c_integer, "lp", "", "Error: Filter is not truncated to a fixed word"},
        {wide, 2, c_integer, "lp", "", "Error: A coefficient does not fit into 32 bits"},
        {large, 2, c_integer, "lp", "", "Error: Word of the filter is not of 2 to 30 bits"},
        {large, 2, c_table, "lp", "", "Error: A coefficient does not fit into a float"}};
    for (const auto& [of, function, dialect, typed, file, expected] : cases) {
        filter = of, command.function_number = function, command.dialect = dialect, window.files = {typed};
        const std::string shown = send("prog");
        EXPECT_EQ(shown.starts_with("Success: *** Done ***"), !file.empty());
        EXPECT_NE((file.empty() ? shown : read_text(file)).find(expected), std::string::npos) << expected << shown;
    }
}

}  // namespace
}  // namespace kavrel
