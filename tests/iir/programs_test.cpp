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

Program program(ProgramDialect dialect, const IirFilter& filter, Implementation form, bool difference = false,
                WordMethod method = WordMethod::round) {
    const ProgramInput input{.filter = filter,
                             .form = form,
                             .difference = difference,
                             .method = method,
                             .title = "100 % */ of \"it\" \\",
                             .name = "lp"};
    return {.source = text(dialect, input),
            .form = form,
            .integer_bits = dialect == ProgramDialect::c_integer ? filter.bits : 0,
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

// All numbers of the forms as multiples of 2^-bits, but for the multiplier of the cascade, a floating word.
IirFilter truncated(IirFilter f, const WordLength& word) {
    for (auto* t : {&f.cascade.C1N, &f.cascade.C2N, &f.cascade.C1D, &f.cascade.C2D, &f.cascade.SC})
        for (double& value : *t) value = quantise(value, word);
    for (auto* t : {&f.parallel.AL, &f.parallel.BE, &f.parallel.GA, &f.parallel.DE})
        for (double& value : *t) value = quantise(value, word);
    for (auto* t : {&f.direct.ZNUM, &f.direct.ZDEN, &f.lattice.GMMUL, &f.lattice.GMTAP})
        for (double& value : *t) value = quantise(value, word);
    for (auto* t : {&f.allpass.TA1, &f.allpass.TA2, &f.allpass.TB1, &f.allpass.TB2})
        for (double& value : *t) value = quantise(value, word);
    f.parallel.AO = quantise(f.parallel.AO, word);
    f.cascade.CK = quantise(f.cascade.CK, word.bits, word.method == WordMethod::round);
    f.bits = word.bits;
    return f;
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
                programs.push_back(program(dialect, truncated(filter, fixed_word(ibt)), form, difference));
                add_jobs(jobs, random, programs.size() - 1, ibt);
                add_jobs(jobs, random, programs.size() - 1, -ibt);
            }
        }
    }
    expect_same(language, programs, jobs);
}

TEST(Programs, InC) { expect_programs(ProgramDialect::c, Language::c); }

TEST(Programs, InStandardFortran) {
    if (!runs("command -v gfortran")) GTEST_SKIP() << "gfortran is not installed";
    expect_programs(ProgramDialect::standard, Language::fortran);
}

}  // namespace
}  // namespace kavrel
