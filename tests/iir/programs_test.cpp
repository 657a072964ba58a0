// Programs of filters: the classic text byte for byte, all others by running them beside the steppers.
#include <cstdlib>
#include <functional>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "iir/program_dialects.h"
#include "iir/steppers.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/words.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

using enum Implementation;

constexpr std::string_view gcc = "gcc -std=c99 -Wall -Wextra -pedantic -Werror -O1";
constexpr std::string_view gfortran = "gfortran -std=f2008 -Wall -Wextra -pedantic -Werror -cpp";

bool runs(const std::string& command) { return std::system((command + " >log.txt 2>&1").c_str()) == 0; }

std::string text(ProgramDialect dialect, const ProgramInput& input) { return text_of(row_of(dialect).write(input)); }

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

TEST(ClassicProgram, IsItsText) {
    const IirFilter filter = short_filter();
    for (const Implementation form : programmed_forms) {
        const std::string name = fmt::format("{}/iir/programs/classic_{}.f90", TEST_DATA, form_name(form));
        expect_golden(name, text(ProgramDialect::classic, {.filter = filter, .form = form}));
    }
    const auto difference = text(ProgramDialect::classic, {.filter = filter, .form = allpass, .difference = true});
    EXPECT_NE(difference.find("\n        y = -0.5d0*(ys(3,nta+1) - ys(3,ntb+1+n14))\n"), std::string::npos);
}

// How a data statement ends: of 25, 51 and 13 places, with none, some and all of them taken.
TEST(ClassicProgram, DataStatements) {
    IirFilter filter;
    const std::string value =
                          "        "
                          " 0.00000000000E+00, &\n",
                      row = "         0.00000000000E+00, 0.00000000000E+00,";
    const struct {
        Implementation form;
        int& count;
        int number;
        const char* name;
        std::string end;
    } cases[] = {
        {cascade, filter.cascade.NNUM, 0, "c2d ", "/ &\n        25*0.d0/\n"},
        {cascade, filter.cascade.NNUM, 23, "c1d ", "/ &\n" + row},
        {cascade, filter.cascade.NDEN, 25, "c1n ", value + "        /\n"},
        {direct, filter.direct.JN, 51, "znum", " 0.00000000000E+00, &\n        /\n"},
        {direct, filter.direct.JD, 50, "zden", value + value + "         1*0.d0/\n"},
        {allpass, filter.allpass.NTB, 13, " tb2", value + "        /\n"},
    };
    for (const auto& [form, count, number, name, end] : cases) {
        count = number;
        const std::string program = text(ProgramDialect::classic, {.filter = filter, .form = form});
        const auto from = program.find(fmt::format("      data {}/ &\n", name));
        const auto to = program.find("data", from + 12);
        EXPECT_NE(program.substr(from, to - from).find(end), std::string::npos) << program.substr(from, to - from);
    }
}

// ---- programs that run ----

enum class Language { c, fortran };

// A program, and what it has to give: of an input, with so many bits (50: as they are; negative: truncated).
struct Program {
    std::string source;
    Implementation form = cascade;
    int integer_bits = 0;  // of a program in whole numbers
    std::function<std::vector<double>(const std::vector<double>& x, int ibt)> truth;
};
struct Job {
    std::size_t program = 0;
    int ibt = 50;
    std::vector<double> x;
};

template <class Arithmetic>
std::vector<double> run_form(const IirFilter& f, Implementation form, bool difference, const Arithmetic& arithmetic,
                             const std::vector<double>& x) {
    const auto run = [&](auto stepper) {
        std::vector<double> y;
        for (const double value : x) y.push_back(stepper.step(value));
        return y;
    };
    switch (form) {
        case cascade: return run(CascadeStepper(f.cascade, arithmetic));
        case parallel: return run(ParallelStepper(f.parallel, arithmetic));
        case direct: return run(DirectStepper(f.direct, arithmetic));
        case lattice: return run(LatticeStepper(f.lattice, arithmetic));
        default:
            return run(
                AllpassStepper(f.allpass, difference ? AllpassOutput::difference : AllpassOutput::sum, arithmetic));
    }
}

WordLength fixed_word(int ibt) {
    return {.bits = std::abs(ibt),
            .method = ibt < 0 ? WordMethod::truncate : WordMethod::round,
            .number_form = NumberForm::fixed_point};
}

Program program(ProgramDialect dialect, const IirFilter& filter, Implementation form, bool difference = false) {
    const ProgramInput input{
        .filter = filter, .form = form, .difference = difference, .title = "100 % */ of \"it\" \\", .name = "lp"};
    return {.source = text(dialect, input),
            .form = form,
            .integer_bits = dialect == ProgramDialect::c_integer ? filter.word.bits : 0,
            .truth = [filter, form, difference](const std::vector<double>& x, int ibt) {
                const WordLength word = fixed_word(ibt);
                return word.quantises() ? run_form(filter, form, difference, WordArithmetic(word), x)
                                        : run_form(filter, form, difference, Unquantised{}, x);
            }};
}

// The programs as one source, with a main that runs jobs: "program ibt count", then samples.
void write_c_source(const std::vector<Program>& programs) {
    std::string source = "#include <stdio.h>\n", table, wrappers;
    for (std::size_t i = 0; i < programs.size(); ++i) {
        write_text(fmt::format("p{}.c", i), programs[i].source);
        source +=
            fmt::format("#define tim tim{0}\n#define trun trun{0}\n#include \"p{0}.c\"\n#undef tim\n#undef trun\n", i);
        if (const int bits = programs[i].integer_bits; bits > 0) {
            source += fmt::format(
                "static void whole{0}(double x, double *y, int n, int ibt)\n{{\n    int64_t w = 0;\n"
                "    tim{0}((int32_t)(x*{1}.0), &w, n);\n    *y = (double)w/{1}.0;\n    (void)ibt;\n}}\n",
                i, 1LL << bits);
        }
        table += fmt::format("{}{}, ", programs[i].integer_bits > 0 ? "whole" : "tim", i);
    }
    source += "int main(void)\n{\n    static void (*const programs[])(double, double *, int, int) = {" + table + "};\n";
    source += R"(    int p, ibt, count;
    while (scanf("%d %d %d", &p, &ibt, &count) == 3) {
        double x = 0, y = 0;
        for (int n = 1; n <= count && scanf("%lf", &x) == 1; ++n) {
            programs[p](x, &y, n, ibt);
            printf("%.17g\n", y);
        }
    }
    return 0;
}
)";
    write_text("programs.c", source);
}

void write_fortran_source(const std::vector<Program>& programs) {
    std::string source, cases;
    for (std::size_t i = 0; i < programs.size(); ++i) {
        write_text(fmt::format("p{}.f90", i), programs[i].source);
        source += fmt::format("#define tim tim{0}\n#include \"p{0}.f90\"\n#undef tim\n", i);
        cases += fmt::format("    if (p == {0}) call tim{0}(x, y, n, ibt)\n", i);
    }
    source +=
        "program run\n  implicit none\n  double precision :: x, y\n  integer :: p, ibt, count, n, status\n"
        "  do\n  read (*, *, iostat=status) p, ibt, count\n  if (status /= 0) exit\n  y = 0d0\n"
        "  do n = 1, count\n    read (*, *) x\n" +
        cases + "    write (*, '(ES26.17E3)') y\n  end do\n  end do\nend program run\n";
    write_text("programs.f90", source);
}

// The first call of all forms but the lattice resets, and takes no sample.
void expect_same(Language language, const std::vector<Program>& programs, const std::vector<Job>& jobs) {
    const ScratchFolder folder;
    language == Language::c ? write_c_source(programs) : write_fortran_source(programs);
    const std::string compile = language == Language::c ? fmt::format("{} programs.c -o run", gcc)
                                                        : fmt::format("{} programs.f90 -o run", gfortran);
    ASSERT_TRUE(runs(compile)) << read_text("log.txt").substr(0, 2000);
    std::string in;
    for (const Job& job : jobs) {
        const bool resets = programs[job.program].form != lattice;
        in += fmt::format("{} {} {}\n", job.program, job.ibt, job.x.size() + (resets ? 1 : 0));
        if (resets) in += "0.5\n";
        for (const double x : job.x) in += fmt::format("{:.17g}\n", x);
    }
    write_text("in.txt", in);
    ASSERT_EQ(std::system("./run <in.txt >out.txt"), 0);
    std::istringstream out(read_text("out.txt"));
    for (const Job& job : jobs) {
        const Program& p = programs[job.program];
        double y = 1;
        ASSERT_TRUE(p.form == lattice || (out >> y && y == 0));
        const std::vector<double> truth = p.truth(job.x, job.ibt);
        for (std::size_t n = 0; n < truth.size(); ++n) {
            ASSERT_TRUE(out >> y);
            ASSERT_EQ(y, truth[n]) << form_name(p.form) << " ibt " << job.ibt << " sample " << n << '\n' << p.source;
        }
    }
}

// Impulse, step and noise of a word.
std::vector<std::vector<double>> inputs(RandomNumbers& random, int bits) {
    std::vector<double> impulse(60, 0.0), step(60, 1.0), noise;
    impulse[0] = 1;
    for (int n = 0; n < 200; ++n)
        noise.push_back(bits < 50 ? quantise(random.between(-1, 1), -bits, true) : random.between(-1, 1));
    return {impulse, step, noise};
}

void add_jobs(std::vector<Job>& jobs, RandomNumbers& random, std::size_t program, int ibt) {
    for (auto& x : inputs(random, std::abs(ibt))) jobs.push_back({program, ibt, std::move(x)});
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
void expect_programs(ProgramDialect dialect, Language language) {
    std::vector<Program> programs;
    std::vector<Job> jobs;
    RandomNumbers random(9);
    for (const IirFilter& filter : filters()) {
        for (const Implementation form : programmed_forms) {
            if (!is_available(filter, form)) continue;
            const bool difference = random.coin();
            programs.push_back(program(dialect, filter, form, difference));
            add_jobs(jobs, random, programs.size() - 1, 50);
            add_jobs(jobs, random, programs.size() - 1, -64);
            for (const int ibt : {-12, 20}) {
                programs.push_back(program(dialect, in_words(filter, fixed_word(ibt)), form, difference));
                add_jobs(jobs, random, programs.size() - 1, ibt);
                add_jobs(jobs, random, programs.size() - 1, -ibt);
            }
        }
    }
    expect_same(language, programs, jobs);
}

TEST(Programs, InC) { expect_programs(ProgramDialect::c, Language::c); }

TEST(Programs, InStandardFortran) {
    if (std::system("command -v gfortran >/dev/null 2>&1") != 0) GTEST_SKIP() << "gfortran is not installed";
    expect_programs(ProgramDialect::standard, Language::fortran);
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
    std::vector<Job> jobs;
    RandomNumbers random(31);
    Unwatched watcher;
    for (int bits = 2; bits <= 30; ++bits) {
        for (const Implementation form : all_but_lattice) {
            const int ibt = random.coin() ? bits : -bits;
            const IirFilter of_word = in_words(filter, fixed_word(ibt));
            EXPECT_EQ(integer_program_refusal({.filter = of_word, .form = form}, watcher).text, "")
                << form_name(form) << bits;
            programs.push_back(program(ProgramDialect::c_integer, of_word, form, random.coin()));
            add_jobs(jobs, random, programs.size() - 1, ibt);
        }
    }
    expect_same(Language::c, programs, jobs);
}

// A section with a pole p and a level g: its largest product is p g/(1 - p).
TEST(Programs, WholeNumbersRefused) {
    const auto section = [](double level, double pole, int bits) {
        IirFilter filter = factored_filter(1, level, {}, {{-pole, 0}});
        filter.word = fixed_word(bits);
        return filter;
    };
    const std::string overflow = "A product may pass 2**62", too_long = "A coefficient does not fit into 32 bits";
    const std::string other_word = "Filter is not truncated to a fixed word";
    const struct {
        IirFilter filter;
        std::string why;
    } cases[] = {
        {section(0.5, 0.5, 50), other_word},
        {section(0.5, 0.5, 31), "Word of the filter is not of 2 to 30 bits"},
        {section(0.5, 0.5, 1), "Word of the filter is not of 2 to 30 bits"},
        {section(0.5, 0.34375, 4), other_word},
        {section(1.0 / 3, 0.5, 14), other_word},
        {section(0.5, -2, 30), too_long},
        {section(0.5, 2, 30), overflow},
        {section(0.5, -4, 29), too_long},
        {section(0.5, 1, 10), overflow},
        {section(0x1p40, 0.5, 10), too_long},
        {section(4, 0.5, 30), overflow},  // with what the quantisers add
        {section(4 - 0x1p-10, 0.5, 30), ""},
        {section(0x1p-90, 0.5, 10), ""},
        {section(0.125, 0.96875, 30), ""},            // 31/8 of 4
        {section(0.1328125, 0.96875, 30), overflow},  // 31 17/128 of 4
    };
    Unwatched watcher;
    for (const auto& [filter, why] : cases) {
        EXPECT_EQ(integer_program_refusal({.filter = filter}, watcher).text, why)
            << filter.cascade.CK << ' ' << filter.cascade.C1D(1) << ' ' << filter.word.bits;
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
    write_text("lp-2.h", text(ProgramDialect::c_table, {.filter = filter, .title = "*/", .name = "lp-2"}));
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
                double b[5], y;
                for (int i = 0; i < 5; ++i) b[i] = number(type, 5*k + i);
                y = b[0]*x + b[1]*s[k][0] + b[2]*s[k][1] + b[3]*s[k][2] + b[4]*s[k][3];
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
    std::istringstream out(read_text("log.txt"));
    const std::vector<double> truth = direct_impulse(filter.roots, 60);
    for (const double within : {1e-13, 1e-5, 1e-7, 2e-2}) {
        double worst = 0, y = 0;
        for (const double value : truth) worst = out >> y ? std::max(worst, std::fabs(y - value)) : HUGE_VAL;
        EXPECT_LE(worst, within * peak_of(truth));
        EXPECT_GE(worst, 1e-5 * within * peak_of(truth)) << "numbers of another type";
    }
}

TEST(Programs, FractionWords) {
    const struct {
        std::vector<double> values;
        int shift;
        std::int32_t q31;  // of the first value
        std::int16_t q15;
    } cases[] = {{{0}, 0, 0, 0},
                 {{-1}, 0, std::numeric_limits<std::int32_t>::min(), -32768},
                 {{0.75, -1}, 0, 0x60000000, 0x6000},
                 {{1}, 1, 0x40000000, 0x4000},
                 {{0.99999}, 1, 1073731087, 0x4000},  // as 16 bits it would be 1
                 {{-2, 1.5}, 1, std::numeric_limits<std::int32_t>::min(), -32768},
                 {{1, 1e10}, 34, 0, 0}};
    for (const auto& [values, shift, q31, q15] : cases) {
        const FractionWords words = fraction_words(values);
        EXPECT_TRUE(words.shift == shift && words.q31[0] == q31 && words.q15[0] == q15) << values[0];
    }
}

// Both run H of each file on an impulse. A reader without what it needs ends with 77.
TEST(Programs, SectionsInScipyAndOctave) {
    const ScratchFolder folder;
    write_text("sections.py", R"(import sys
try:
    import numpy, scipy.signal
except ImportError:
    sys.exit(77)
for name in ["0.sos", "1.sos"]:
    for y in scipy.signal.sosfilt(numpy.loadtxt(name, ndmin=2), [1] + 59*[0]):
        print(repr(float(y)))
)");
    write_text("sections.m", R"(1;
try pkg load signal; catch, exit(77), end
for name = {"0.sos", "1.sos"}
    printf("%.17g\n", sosfilt(load(name{1}), [1 zeros(1, 59)]));
end
)");
    const IirFilter filters[] = {scaled_filter(), factored_filter(1, 0.5, {}, {{-0.5, 0}})};
    std::vector<double> truth;
    for (std::size_t i = 0; i < 2; ++i) {
        const ProgramInput input{.filter = filters[i], .title = "name: 5 % # of it"};
        write_text(fmt::format("{}.sos", i), text(ProgramDialect::sos_text, input));
        for (const double value : direct_impulse(filters[i].roots, 60)) truth.push_back(value);
    }
    std::string missing;
    for (const std::string reader : {"/usr/bin/python3 sections.py", "octave-cli --no-gui -q sections.m"}) {
        const int status = std::system((reader + " >out.txt 2>log.txt").c_str());
        if (WEXITSTATUS(status) == 77 || WEXITSTATUS(status) == 127) {
            missing += " " + reader;
            continue;
        }
        EXPECT_EQ(status, 0) << read_text("log.txt");
        std::istringstream out(read_text("out.txt"));
        for (const double value : truth) {
            double y = HUGE_VAL;
            out >> y;
            ASSERT_NEAR(y, value, 1e-12) << reader;
        }
    }
    if (!missing.empty()) GTEST_SKIP() << "not installed, or without its signal package:" << missing;
}

// ---- the command ----

struct ProgramCommand : testing::Test, IirRoom {
    ProgramCommand() { session.TITLE = "Some filter"; }
    std::string boxes_of(Implementation form, ProgramDialect dialect, const std::string& name) {
        command.programmed = form, command.dialect = dialect;
        window.files = {name};
        send("prog");
        return boxes();
    }
};

TEST_F(ProgramCommand, WritesFilesAndRefuses) {
    using enum ProgramDialect;
    const std::string done = "Success: *** done ***";
    EXPECT_EQ(boxes_of(cascade, classic, "lp"), "Error: Data is unavailable");
    filter = short_filter();
    filter.word = fixed_word(-4), filter.kind = DigitalKind::high_pass;
    const struct {
        Implementation form;
        ProgramDialect dialect;
        std::string typed, file, head;
    } written[] = {
        {parallel, classic, "lp", "lp.f90", "      subroutine tim(x, y, n, ibt)\n      real(len=8) x, y, al,"},
        {allpass, standard, "a.sos", "a.f90", "! Some filter\n! allpass form, difference\n"},
        {lattice, c, "lp.c", "lp.c", "/* Some filter\n   lattice form\n"},
        {direct, c, "lp1.5k", "lp1.5k.c", "/* Some filter\n   direct form\n"},
        {lattice, c_table, "2 of it.h", "2 of it.h", "/* Some filter\n   cascade form,"},
        {lattice, sos_text, "lp.sos", "lp.sos", "# second-order sections of Some filter\n"},
    };
    for (const auto& [form, dialect, typed, file, head] : written) {
        EXPECT_EQ(boxes_of(form, dialect, typed), done);
        EXPECT_EQ(read_text(file).substr(0, head.size()), head);
    }
    EXPECT_NE(read_text("2 of it.h").find("\n#ifndef filter_2_of_it_H\n"), std::string::npos);
    filter.direct = {.ZNUM = {{0.5, -0.5}}, .ZDEN = {{1, 0.5}}, .JN = 2, .JD = 2};
    EXPECT_EQ(boxes_of(direct, c_integer, "w"), done);
    EXPECT_NE(read_text("w.c").find("const int64_t half = 0;"), std::string::npos);
    const std::string before = read_text("w.c");
    EXPECT_EQ(boxes_of(lattice, c_integer, "w"), "Error: Dialect has no lattice form");
    filter.word.bits = 50;
    EXPECT_EQ(boxes_of(direct, c_integer, "w"), "Error: Filter is not truncated to a fixed word");
    filter.word.bits = 20, filter.direct.ZDEN(2) = 1, window.stop_at = 3;
    boxes_of(direct, c_integer, "w");
    EXPECT_EQ(boxes() + lines(), " **** Stopped ****\n");
    EXPECT_EQ(read_text("w.c"), before);
    EXPECT_EQ(boxes_of(parallel, c, ""), "Warning: CANCEL");
    EXPECT_EQ(boxes_of(parallel, c, "no/lp"), "Error: File could not be written");
    filter.cascade.C1N(1) = 1e41;
    EXPECT_EQ(boxes_of(parallel, c_table, "t"), "Error: A coefficient does not fit into a float");
    clear_derived_forms(filter);
    const std::string missing[] = {"Parallel form does not exist", "Direct form does not exist",
                                   "Diff. allpass form does not exist", "Lattice form does not exist"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(boxes_of(programmed_forms[i + 1], c_integer, "w"), "Error: " + missing[i]);
    }
}

}  // namespace
}  // namespace kavrel
