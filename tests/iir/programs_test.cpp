// Programs of filters: the classic text byte for byte, all others by running them beside the steppers.
#include <sstream>

#include "iir/program_dialects.h"
#include "iir/steppers.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/words.h"
#include "tests/support/golden.h"
#include "tests/support/running_programs.h"

namespace kavrel {
namespace {

using enum Implementation;

std::string program_text(ProgramDialect dialect, const ProgramInput& input) { return text_of(row_of(dialect).write(input)); }

// Five forms in numbers that are short; a first-order section, and one that lacks its numerator.
IirFilter short_filter() {
    IirFilter f = factored_filter(1, 0.125, {{-1.25, 1}, {1, 0}}, {{-1.5, 0.75}, {-0.5, 0}, {0.25, 0.5}, {0, 0.0625}});
    f.cascade.SC(1) = 0.5, f.cascade.C1N(1) *= 0.5, f.cascade.C2N(1) *= 0.5;
    f.parallel = {.AL = {{0.5, -0.25}}, .BE = {{1, 0}}, .GA = {{-1.5, -0.5}}, .DE = {{0.75, 0}}, .AO = -2, .NPAR = 2};
    f.direct = {.ZNUM = {{1, -0.5, 0.25}}, .ZDEN = {{1, 0.5, 0.25, 0.125, 1e-101}}, .JN = 3, .JD = 5};
    f.lattice = {.GMMUL = {{0.5, -0.25}}, .GMTAP = {{1, 0.5, 0.125}}, .JM = 2, .JT = 3};
    f.allpass.TA1 = {{-0.5, 0.25}}, f.allpass.TA2 = {{0, 0.5}}, f.allpass.TB1 = {{0.75}}, f.allpass.TB2 = {{0.125}};
    f.allpass.NTA = 2, f.allpass.NTB = 1;
    return f;
}

// Of the second filter tables have all places taken, all but one, and none.
TEST(ClassicProgram, IsItsText) {
    IirFilter full;
    full.direct.JN = 51, full.direct.JD = 50, full.allpass.NTB = 13;
    const std::pair<std::string_view, IirFilter> filters[] = {{"classic", short_filter()}, {"classic_full", full}};
    for (const auto& [name, filter] : filters) {
        for (const Implementation form : programmed_forms) {
            const ProgramInput input{.filter = filter, .form = form, .difference = name == "classic_full"};
            expect_golden(fmt::format("{}/iir/programs/{}_{}.f90", TEST_DATA, name, form_name(form)),
                          program_text(ProgramDialect::classic, input));
        }
    }
}

// ---- programs that run ----

struct Program {
    IirFilter filter;
    Implementation form = cascade;
    bool difference = false;
    std::vector<int> words;  // to be run with; 50 and more: as numbers are; negative: truncated
};

template <class Arithmetic>
std::vector<double> run_form(const Program& program, const Arithmetic& arithmetic, const std::vector<double>& x) {
    const auto run = [&](auto stepper) {
        std::vector<double> y;
        for (const double value : x) y.push_back(stepper.step(value));
        return y;
    };
    const auto& [f, form, difference, words] = program;
    const auto output = difference ? AllpassOutput::difference : AllpassOutput::sum;
    if (form == cascade) return run(CascadeStepper(f.cascade, arithmetic));
    if (form == parallel) return run(ParallelStepper(f.parallel, arithmetic));
    if (form == direct) return run(DirectStepper(f.direct, arithmetic));
    return form == lattice ? run(LatticeStepper(f.lattice, arithmetic))
                           : run(AllpassStepper(f.allpass, output, arithmetic));
}

// The first call of all forms but the lattice resets, and takes no sample.
void expect_same(ProgramDialect dialect, const std::vector<Program>& programs) {
    const ScratchFolder folder;
    std::vector<ProgramText> texts;
    std::vector<ProgramRun> all;
    for (const Program& program : programs) {
        const auto& [filter, form, difference, words] = program;
        const ProgramInput input{
            .filter = filter, .form = form, .difference = difference, .title = "100 % */ of \"it\" \\", .name = "lp"};
        for (const int ibt : words) {
            for (const auto& x : inputs(std::abs(ibt))) {
                const WordLength word = fixed_word(ibt);
                ProgramRun& run = all.emplace_back(ProgramRun{texts.size(), ibt, x, {}});
                run.y =
                    word.quantises() ? run_form(program, WordArithmetic(word), x) : run_form(program, Unquantised{}, x);
                if (form == lattice) continue;
                run.x.insert(run.x.begin(), 0.5);
                run.y.insert(run.y.begin(), 0);
            }
        }
        texts.push_back({program_text(dialect, input), filter.word.bits});
    }
    compile("tim", dialect, texts);
    expect_runs(all);
}

// Random filters with all forms, scaled, and with chains of both orders; filters of few factors.
std::vector<IirFilter> filters() {
    RandomNumbers random(1804);
    std::vector<IirFilter> list;
    for (const int degree : {1, 2, 7, 12}) {
        IirFilter filter = random_filter(random, degree);
        make_forms(filter);
        scale(filter, random);
        AllpassForm& chains = filter.allpass;
        chains.NTA = random.integer(1, 4), chains.NTB = random.integer(1, 4);
        for (auto* table : {&chains.TA1, &chains.TB1, &chains.TA2, &chains.TB2})
            for (double& value : *table) value = random.between(-0.4, 0.4);
        chains.TA2(1) = chains.TB2(2) = 0;
        list.push_back(filter);
    }
    list.push_back(factored_filter(1, 0.7, {}, {}));
    list.push_back(factored_filter(1, 0.7, {{0.3, 0.2}, {0.1, 0}}, {}));
    list.push_back(factored_filter(1, 0.7, {}, {{0.3, 0.2}, {0.1, 0}}));
    for (auto filter = list.end() - 2; filter != list.end(); ++filter) EXPECT_EQ(makeDirect(*filter).text, "");
    return list;
}

// Every form that there is, unquantised, and with words whose products are exact.
void expect_programs(ProgramDialect dialect) {
    std::vector<Program> programs;
    for (const IirFilter& filter : filters()) {
        for (const Implementation form : programmed_forms) {
            if (!is_available(filter, form)) continue;
            const bool difference = programs.size() % 2 == 1;
            programs.push_back({filter, form, difference, {50, -64}});
            for (const int word : {-12, 20})
                programs.push_back({in_words(filter, fixed_word(word)), form, difference, {word, -word}});
        }
    }
    expect_same(dialect, programs);
}

TEST(Programs, InC) { expect_programs(ProgramDialect::c); }

TEST(Programs, InStandardFortran) {
    if (!is_installed("gfortran")) GTEST_SKIP() << "gfortran is not installed";
    expect_programs(ProgramDialect::standard);
}

// All words from 2 to 30 bits, of filters that every word leaves stable, and quiet enough for 30 bits.
TEST(Programs, InWholeNumbers) {
    IirFilter filter = factored_filter(1, 0.02, {{-0.6, 0.7}, {1, 0}}, {{-0.9, 0.45}, {-0.3, 0}, {0.2, 0.5}});
    EXPECT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
    filter.cascade.SC(2) = 0.7, filter.cascade.C1N(2) = 0.7;
    for (double& value : filter.direct.ZNUM) value *= 0.1;
    filter.allpass.TA1 = {{0.3, 0.25}}, filter.allpass.TA2 = {{0, 0.4}}, filter.allpass.TB1 = {{-0.2, 0.1}};
    filter.allpass.TB2 = {{0.3, 0.25}}, filter.allpass.NTA = filter.allpass.NTB = 2;
    std::vector<Program> programs;
    RandomNumbers random(31);
    Unwatched watcher;
    for (int bits = 2; bits <= 30; ++bits) {
        for (const Implementation form : all_but_lattice) {
            const int ibt = random.coin() ? bits : -bits;
            const IirFilter of_word = in_words(filter, fixed_word(ibt));
            EXPECT_EQ(integer_program_refusal({.filter = of_word, .form = form}, watcher).text, "") << bits;
            programs.push_back({of_word, form, random.coin(), {ibt}});
        }
    }
    expect_same(ProgramDialect::c_integer, programs);
}

// A section with a level g and a pole p: its largest product is p g/(1 - p).
TEST(Programs, WholeNumbersRefused) {
    struct Section {
        double level, pole;
        int bits;
    };
    const std::pair<std::string_view, std::vector<Section>> cases[] = {
        {"Filter is not truncated to a fixed word", {{0.5, 0.5, 50}, {0.5, 0.34375, 4}, {1.0 / 3, 0.5, 14}}},
        {"Word of the filter is not of 2 to 30 bits", {{0.5, 0.5, 31}, {0.5, 0.5, 1}}},
        {"A coefficient does not fit into 32 bits", {{0.5, -2, 30}, {0.5, -4, 29}, {0x1p40, 0.5, 10}}},
        // To 4 there is room for what the quantisers add, or not; 31 17/128 of 4, and below 31/8 of 4.
        {"A product may pass 2**62", {{0.5, 2, 30}, {0.5, 1, 10}, {4, 0.5, 30}, {0.1328125, 0.96875, 30}}},
        {"", {{4 - 0x1p-10, 0.5, 30}, {0x1p-90, 0.5, 10}, {0.125, 0.96875, 30}}}};
    Unwatched watcher;
    for (const auto& [why, sections] : cases) {
        for (const auto& [level, pole, bits] : sections) {
            IirFilter filter = factored_filter(1, level, {}, {{-pole, 0}});
            filter.word = fixed_word(bits);
            EXPECT_EQ(integer_program_refusal({.filter = filter}, watcher).text, why) << level << ' ' << pole;
        }
    }
}

// ---- tables ----

IirFilter scaled_filter() {
    RandomNumbers random(5);
    IirFilter filter = random_filter(random, 9);
    scale(filter, random);
    return filter;
}

// H of the table's numbers as each type has them, by a small program in C.
TEST(Programs, TableInC) {
    const ScratchFolder folder;
    const IirFilter filter = scaled_filter();
    write_text("lp-2.h", program_text(ProgramDialect::c_table, {.filter = filter, .title = "*/", .name = "lp-2"}));
    write_text("run.c", R"(#include "lp-2.h"
#include "lp-2.h"
#include <stdio.h>
static double number(int type, int i)
{
    const double by = (double)(1 << lp_2_shift);
    return type == 0 ? lp_2_double[i] : type == 1 ? (double)lp_2_float[i]
        : type == 2 ? lp_2_q31[i]/2147483648.0*by : lp_2_q15[i]/32768.0*by;
}
int main(void)
{
    for (int type = 0; type < 4; ++type) {
        double s[lp_2_sections][4] = {{0}};
        for (int n = 0; n < 60; ++n) {
            double x = n == 0;
            for (int k = 0; k < lp_2_sections; ++k) {
                double y = number(type, 5*k)*x;
                for (int i = 0; i < 4; ++i) y += number(type, 5*k + 1 + i)*s[k][i];
                s[k][1] = s[k][0], s[k][0] = x, s[k][3] = s[k][2], s[k][2] = y;
                x = y;
            }
            printf("%.17g\n", x);
        }
    }
    return 0;
}
)");
    ASSERT_TRUE(runs(fmt::format("{} run.c -o run && ./run", gcc))) << read_text("log.txt");
    std::istringstream out(read_text("out.txt"));
    const std::vector<double> truth = direct_impulse(filter.roots, 60);
    for (const double within : {1e-13, 1e-5, 1e-7, 2e-2}) {
        double worst = 0, y = 0;
        for (const double value : truth) worst = out >> y ? std::max(worst, std::fabs(y - value)) : HUGE_VAL;
        EXPECT_LE(worst, within * peak_of(truth));
        EXPECT_GE(worst, 1e-5 * within * peak_of(truth)) << "numbers of another type";
    }
}

TEST(Programs, FractionWords) {
    const auto first = [](const std::vector<double>& values) {
        const FractionWords words = fraction_words(values);
        return std::tuple(words.shift, words.q31[0], words.q15[0]);
    };
    constexpr auto least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(first({-1}), std::tuple(0, least, -32768));
    EXPECT_EQ(first({0.99999}), std::tuple(1, 1073731087, 0x4000)) << "as 16 bits it would be 1";
    EXPECT_EQ(first({-2, 1.5}), std::tuple(1, least, -32768));
    EXPECT_EQ(first({1, 1e10}), std::tuple(34, 0, 0));
}

// Both run H of each file on an impulse.
TEST(Programs, SectionsInScipyAndOctave) {
    const ScratchFolder folder;
    const std::pair<std::string, std::string> readers[] = {
        {"/usr/bin/python3 -c 'import numpy, scipy.signal",
         "; [print(y) for y in scipy.signal.sosfilt(numpy.loadtxt(\"lp.sos\", ndmin=2), [1] + 59*[0])]'"},
        {"octave-cli --no-gui -q --eval 'pkg load signal",
         "; printf(\"%.17g\\n\", sosfilt(load(\"lp.sos\"), [1 zeros(1, 59)]))'"}};
    bool missing = false;
    for (const auto& [start, rest] : readers) {
        missing |= !runs(start + "'");
        if (!runs(start + "'")) continue;
        for (const IirFilter& filter : {scaled_filter(), factored_filter(1, 0.5, {}, {{-0.5, 0}})}) {
            write_text("lp.sos", program_text(ProgramDialect::sos_text, {.filter = filter, .title = "name: 5 % # of it"}));
            ASSERT_TRUE(runs(start + rest)) << read_text("log.txt");
            std::istringstream out(read_text("out.txt"));
            double y = HUGE_VAL;
            for (const double value : direct_impulse(filter.roots, 60))
                ASSERT_TRUE(out >> y && std::fabs(y - value) < 1e-12) << start << y << ' ' << value;
        }
    }
    if (missing) GTEST_SKIP() << "a reader is not installed, or has no signal package";
}

// ---- the command ----

struct ProgramCommand : testing::Test, IirRoom {
    ProgramCommand() {
        session.TITLE = "Some filter";
        filter = short_filter();
        filter.word = fixed_word(-4), filter.kind = DigitalKind::high_pass;
    }
    std::string boxes_of(Implementation form, ProgramDialect dialect, const std::string& name) {
        command.programmed = form, command.dialect = dialect;
        window.files = {name};
        send("prog");
        return boxes();
    }
};
using enum ProgramDialect;

TEST_F(ProgramCommand, WritesFiles) {
    const struct {
        Implementation form;
        ProgramDialect dialect;
        std::string typed, file, text;
    } written[] = {
        {parallel, classic, "lp", "lp.f90", "      subroutine tim(x, y, n, ibt)\n      real(len=8) x, y, al,"},
        {allpass, standard, "a.sos", "a.f90", "! Some filter\n! allpass form, difference\n"},
        {direct, c, "lp1.5k", "lp1.5k.c", "/* Some filter\n   direct form\n"},
        {lattice, c_table, "2 of it.h", "2 of it.h", "\n#ifndef filter_2_of_it_H\n"},
        {lattice, sos_text, "lp.sos", "lp.sos", "# second-order sections of Some filter\n"},
        {cascade, c_integer, "w", "w.c", "const int64_t half = 0;"},
    };
    for (const auto& [form, dialect, typed, file, text] : written) {
        EXPECT_EQ(boxes_of(form, dialect, typed), "Success: *** done ***");
        EXPECT_NE(read_text(file).find(text), std::string::npos) << file;
    }
}

TEST_F(ProgramCommand, Refuses) {
    filter.word.bits = 20, filter.cascade.C1D(2) = -1, window.stop_at = 3;
    boxes_of(cascade, c_integer, "w");
    EXPECT_EQ(boxes() + lines(), " **** Stopped ****\n");
    EXPECT_FALSE(std::filesystem::exists("w.c"));
    EXPECT_EQ(boxes_of(lattice, c_integer, "w"), "Error: Dialect has no lattice form");
    EXPECT_EQ(boxes_of(parallel, c, ""), "Warning: CANCEL");
    EXPECT_EQ(boxes_of(parallel, c, "no/lp"), "Error: File could not be written");
    filter.cascade.C1N(1) = 1e41;
    EXPECT_EQ(boxes_of(parallel, c_table, "t"), "Error: A coefficient does not fit into a float");
    clear_derived_forms(filter);
    const std::string missing[] = {"Parallel form does not exist", "Direct form does not exist",
                                   "Diff. allpass form does not exist", "Lattice form does not exist"};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(boxes_of(programmed_forms[i + 1], c_integer, "w"), "Error: " + missing[i]);
    filter = {};
    EXPECT_EQ(boxes_of(cascade, classic, "lp"), "Error: Data is unavailable");
}

}  // namespace
}  // namespace kavrel
