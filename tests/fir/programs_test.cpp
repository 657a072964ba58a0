// Programs of FIR functions: the classic text byte for byte, all of them by running them.
#include "fir/program_dialects.h"
#include "tests/fir/fir_room.h"
#include "tests/support/golden.h"
#include "tests/support/running_programs.h"

namespace kavrel {
namespace {

using enum FirSymmetry;
using enum ProgramDialect;

std::string program_text(ProgramDialect dialect, const FirProgramInput& input) {
    return text_of(fir_dialect_row(dialect).write(input));
}

// Coefficients are (-1)^i (i + 1)/64.
TEST(ClassicFirProgram, IsItsText) {
    const std::tuple<std::string, int, FirSymmetry> filters[] = {
        {"even", 3, even}, {"none", 7, none}, {"odd", 122, odd}};
    for (const auto& [name, taps, symmetry] : filters) {
        std::vector<double> coefficients;
        for (int i = 0; i < stored_cells(taps, symmetry); ++i)
            coefficients.push_back((i % 2 == 0 ? i + 1 : -i - 1) / 64.0);
        FirFilter filter;
        ASSERT_TRUE(add_function(filter, {.taps = taps, .symmetry = symmetry}, coefficients));
        expect_golden(TEST_DATA "/fir/programs/classic_" + name + ".f90", program_text(classic, {.filter = filter}));
    }
}

// ---- programs that run ----

// Noise as the second function of a filter, its coefficients in a word.
FirFilter noise_filter(int taps, FirSymmetry symmetry, int ibt) {
    RandomNumbers random(static_cast<unsigned long long>(taps));
    FirFilter filter = filter_of({1, 2});
    std::vector<double> coefficients(static_cast<std::size_t>(stored_cells(taps, symmetry)));
    for (double& h : coefficients) h = random.between(-1, 1);
    FirFunction function{.taps = taps, .symmetry = symmetry};
    if (const WordLength word = fixed_word(ibt); word.quantises()) {
        for (double& h : coefficients) h = quantise(h, word);
        function.word = word;
    }
    EXPECT_TRUE(add_function(filter, function, coefficients));
    return filter;
}

// One product for each pair of taps, and the middle.
template <class Arithmetic>
std::vector<double> run_function(const FirFilter& filter, const Arithmetic& in, const std::vector<double>& x) {
    const auto h = stored_coefficients(filter, 2);
    const auto& [taps, symmetry, word, gain, asked] = filter.FUNCTION(2);
    const double sign = symmetry == none ? 0 : symmetry == odd ? -1 : 1;
    std::vector<double> y;
    for (std::size_t n = 0; n < x.size(); ++n) {
        const auto sample = [&](std::size_t late) { return late <= n ? x[n - late] : 0; };
        double sum = 0;
        for (std::size_t i = 0; i < h.size(); ++i) {
            const std::size_t mirrored = static_cast<std::size_t>(taps) - 1 - i;
            sum += in.product(h[i], i == mirrored ? sample(i) : sample(i) + sign * sample(mirrored));
        }
        y.push_back(sum);
    }
    return y;
}

struct Program {
    FirFilter filter;
    std::vector<int> words;  // to be run with; 50 and more: as numbers are; negative: truncated
};

// Of the classic texts without their quirks.
void expect_same(ProgramDialect dialect, const std::vector<Program>& programs) {
    const ScratchFolder folder;
    std::vector<ProgramText> texts;
    std::vector<ProgramRun> all;
    for (const auto& [filter, words] : programs) {
        for (const int ibt : words) {
            for (const auto& x : inputs(std::abs(ibt))) {
                const WordLength word = fixed_word(ibt);
                all.push_back({texts.size(), ibt, x, {}});
                all.back().y = word.quantises() ? run_function(filter, WordArithmetic(word), x)
                                                : run_function(filter, Unquantised{}, x);
            }
        }
        std::string program = program_text(dialect, {filter, 2, "100 % */ of \"it\" \\", "lp"});
        if (dialect == classic) {
            program = replaced(replaced(program, "1.do", "1.d0"), "),  x1(", "),  x1(1 + ");
        }
        texts.push_back({program, filter.FUNCTION(2).word.bits});
    }
    compile("fir", dialect, texts);
    expect_runs(all);
}

// All kinds of symmetry and length, unquantised and with words whose products are exact; one call after another clears
// the delay line. The classic text is told wrong for an odd symmetry of odd length, and for that alone.
void expect_programs(ProgramDialect dialect) {
    std::vector<Program> programs;
    for (const int taps : {1, 2, 3, 6, 7, 121, 499, 512}) {
        for (const FirSymmetry symmetry : {even, odd, none}) {
            if (taps == 1 && symmetry == odd) continue;
            const FirFilter filter = noise_filter(taps, symmetry, 50);
            const bool told_wrong = symmetry == odd && taps % 2 == 1;
            EXPECT_EQ(fir_dialect_row(classic).note({filter, 2}).empty(), !told_wrong);
            if (dialect == classic && told_wrong) continue;
            programs.push_back({filter, {50, -64}});
            for (const int word : {-12, 18}) programs.push_back({noise_filter(taps, symmetry, word), {word, -word}});
        }
    }
    expect_same(dialect, programs);
}

TEST(FirPrograms, InC) { expect_programs(c); }

TEST(FirPrograms, InFortran) {
    if (!runs("command -v gfortran")) GTEST_SKIP() << "gfortran is not installed";
    expect_programs(standard);
    expect_programs(classic);
}

TEST(FirPrograms, InWholeNumbers) {
    std::vector<Program> programs;
    for (int bits = 2; bits <= 30; ++bits) {
        for (const FirSymmetry symmetry : {even, odd, none}) {
            const int ibt = bits % 4 < 2 ? bits : -bits;
            programs.push_back({noise_filter(bits, symmetry, ibt), {ibt}});
            EXPECT_EQ(integer_program_refusal({programs.back().filter, 2}).text, "") << bits;
        }
    }
    programs.push_back({noise_filter(512, none, 30), {30}});
    for (double& h : stored_coefficients(programs.back().filter, 2)) h = h < 0 ? -2 : 2 - 0x1p-30;
    expect_same(c_integer, programs);
}

// The taps as each type of the table has them.
TEST(FirPrograms, TableInC) {
    const ScratchFolder folder;
    FirFilter filter = noise_filter(9, odd, 50);
    for (double& h : stored_coefficients(filter, 2)) h *= 3;
    write_text("lp.h", program_text(c_table, {filter, 2, "*/", "2-lp"}));
    write_text("run.c", R"(#include "lp.h"
#include "lp.h"
#include <stdio.h>
int main(void)
{
    const double by = (double)(1 << filter_2_lp_shift);
    for (int i = 0; i < filter_2_lp_taps; ++i)
        printf("%.17g %.17g %.17g %.17g\n", filter_2_lp_double[i], (double)filter_2_lp_float[i],
            filter_2_lp_q31[i]/2147483648.0*by, filter_2_lp_q15[i]/32768.0*by);
    return 0;
}
)");
    ASSERT_TRUE(runs(fmt::format("{} run.c -o run && ./run", gcc))) << read_text("log.txt");
    std::istringstream out(read_text("out.txt"));
    for (const double h : full_response(filter, 2)) {
        for (const double within : {0.0, 0x1p-23, 0x1p-30, 0x1p-14}) {
            double found = HUGE_VAL;
            EXPECT_TRUE(out >> found && std::fabs(found - h) <= within) << h;
        }
    }
}

TEST(FirPrograms, TextInNumpyAndOctave) {
    const ScratchFolder folder;
    const std::pair<std::string, std::string> readers[] = {
        {"/usr/bin/python3 -c 'import numpy", "; [print(repr(float(h))) for h in numpy.loadtxt(\"lp.txt\", ndmin=1)]'"},
        {"octave-cli --no-gui -q --eval '1;", "; printf(\"%.17g\\n\", load(\"lp.txt\"))'"}};
    bool missing = false;
    for (const auto& [start, rest] : readers) {
        missing |= !runs(start + "'");
        if (!runs(start + "'")) continue;
        for (const int taps : {1, 2, 512}) {
            const FirFilter filter = noise_filter(taps, taps == 2 ? odd : even, 50);
            write_text("lp.txt", program_text(ProgramDialect::text, {filter, 2, "name: 5 % # of it"}));
            ASSERT_TRUE(runs(start + rest)) << read_text("log.txt");
            std::istringstream out(read_text("out.txt"));
            double found = HUGE_VAL;
            for (const double h : full_response(filter, 2)) ASSERT_TRUE(out >> found && found == h) << start << h;
            EXPECT_FALSE(out >> found);
        }
    }
    if (missing) GTEST_SKIP() << "a reader is not installed";
}

// ---- the command ----

struct FirProgramCommand : testing::Test, FirRoom {
    std::string boxes_of(int function, ProgramDialect dialect, const std::string& name) {
        command.function_number = function, command.dialect = dialect;
        window.files = {name};
        send("prog");
        return boxes();
    }
};

TEST_F(FirProgramCommand, WritesFiles) {
    filter = noise_filter(5, odd, 12);
    session.TITLE = "Some filter";
    const std::tuple<ProgramDialect, std::string, std::string, std::string> written[] = {
        {classic, "lp", "lp.f90", "dimension coef(  2),  x1(  3)"},
        {standard, "a.txt", "a.f90", "! Some filter\n! FIR filter of 5 taps, odd symmetry\n"},
        {c, "lp1.5k", "lp1.5k.c", "/* Some filter\n   FIR filter of 5 taps"},
        {c_integer, "w", "w.c", "With x from -4096 to 4096"},
        {c_table, "2 of it.h", "2 of it.h", "\n#ifndef filter_2_of_it_H\n"},
        {ProgramDialect::text, "lp.txt", "lp.txt", "# taps of Some filter\n# FIR"}};
    for (const auto& [dialect, typed, file, part] : written) {
        EXPECT_EQ(boxes_of(2, dialect, typed), "Success: *** Done ***");
        EXPECT_NE(read_text(file).find(part), std::string::npos) << file;
        EXPECT_EQ(reported("two cells short"), dialect == classic);
    }
}

TEST_F(FirProgramCommand, Refuses) {
    EXPECT_EQ(boxes_of(1, classic, "lp"), "Error: Function does not exist");
    filter = noise_filter(516, none, 50);
    const std::tuple<int, ProgramDialect, std::string, std::string> cases[] = {
        {0, c, "lp", "Error: Function does not exist"},
        {3, c, "lp", "Error: Function does not exist"},
        {2, classic, "lp", "Error: Classic text has no room for more than 512 coefficients"},
        {2, c_integer, "lp", "Error: Filter is not truncated to a fixed word"},
        {2, c, "no/lp", "Error: File could not be written"},
        {1, classic, "", "Warning: CANCEL"}};
    for (const auto& [function, dialect, name, box] : cases) EXPECT_EQ(boxes_of(function, dialect, name), box);
    const std::tuple<WordLength, double, std::string> words[] = {
        {fixed_word(31), 1, "Word of the filter is not of 2 to 30 bits"},
        {fixed_word(30), 2, "A coefficient does not fit into 32 bits"},
        {fixed_word(12), 0.1, "Filter is not truncated to a fixed word"},
        {{12, WordMethod::round, NumberForm::floating_point}, 1, "Filter is not truncated to a fixed word"}};
    for (const auto& [word, tap, why] : words) {
        filter.FUNCTION(1).word = word, filter.X(1) = tap;
        EXPECT_EQ(boxes_of(1, c_integer, "lp"), "Error: " + why);
    }
    filter.X(1) = 1e41;
    EXPECT_EQ(boxes_of(1, c_table, "lp"), "Error: A coefficient does not fit into a float");
}

}  // namespace
}  // namespace kavrel
