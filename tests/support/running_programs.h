// Programs that were written for filters: compiled without a warning, and run beside what they are to give.
#pragma once

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "numeric/quantise.h"
#include "segment/program_dialect.h"
#include "tests/support/numbers.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {

inline constexpr std::string_view gcc = "gcc -std=c99 -Wall -Wextra -pedantic -Werror -O1";

inline bool runs(const std::string& command) { return std::system((command + " >out.txt 2>log.txt").c_str()) == 0; }

inline bool is_installed(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

// Impulse, step and noise of a word.
inline std::vector<std::vector<double>> inputs(int bits) {
    RandomNumbers random(31);
    std::vector<double> impulse(60, 0.0), step(60, 1.0), noise(200);
    impulse[0] = 1;
    for (double& x : noise) {
        x = random.between(-1, 1);
        if (bits < 50) x = quantise(x, -bits, true);
    }
    return {impulse, step, noise};
}

// As programs have it: truncated where it is negative.
inline WordLength fixed_word(int ibt) {
    return {.bits = std::abs(ibt),
            .method = ibt < 0 ? WordMethod::truncate : WordMethod::round,
            .number_form = NumberForm::fixed_point};
}

struct ProgramText {
    std::string text;
    int bits = 0;  // of numbers that are whole ones
};

// The programs, whose routine has this name, as "run", which reads "program ibt count", then samples.
inline void compile(std::string_view routine, ProgramDialect dialect, const std::vector<ProgramText>& programs) {
    const bool classic = dialect == ProgramDialect::classic, fortran = classic || dialect == ProgramDialect::standard;
    std::string sources, calls = "#include <stdint.h>\n#include <stdio.h>\n", table;
    for (std::size_t i = 0; i < programs.size(); ++i) {
        const std::string name = fmt::format("{}{}", routine, i);
        write_text(fmt::format("p{}", i), programs[i].text);
        (fortran ? sources : calls) += fmt::format(
            "#define {0} {1}\n#define trun trun{2}\n#include \"p{2}\"\n#undef {0}\n#undef trun\n", routine, name, i);
        if (fortran) calls += fmt::format("void {}_(double *, double *, int *, int *);\n", name);
        calls += fmt::format("static void run{}(double x, double *y, int n, int ibt)\n{{\n", i);
        if (dialect == ProgramDialect::c_integer) {
            calls += fmt::format("int64_t w = 0;\n{0}((int32_t)(x*{1}.0), &w, n);\n*y = (double)w/{1}.0;\n(void)ibt;\n",
                                 name, 1LL << programs[i].bits);
        } else {
            calls += fmt::format("{}{};\n", name, fortran ? "_(&x, y, &n, &ibt)" : "(x, y, n, ibt)");
        }
        calls += "}\n";
        table += fmt::format("run{}, ", i);
    }
    write_text("programs.f90", sources);
    write_text("run.c", calls + R"(int main(void)
{
    static void (*const programs[])(double, double *, int, int) = {)" +
                            table + R"(};
    int p, ibt, count;
    while (scanf("%d %d %d", &p, &ibt, &count) == 3) {
        double x = 0, y = 0;
        for (int n = 1; n <= count && scanf("%lf", &x) == 1; ++n) {
            programs[p](x, &y, n, ibt);
            printf("%.17g\n", y);
        }
    }
    return 0;
}
)");
    const std::string options = classic ? "-std=legacy -w" : "-std=f2008 -Wall -Wextra -pedantic -Werror";
    ASSERT_TRUE(!fortran || runs(fmt::format("gfortran {} -cpp -c programs.f90", options)))
        << read_text("log.txt").substr(0, 2000);
    ASSERT_TRUE(runs(fmt::format("{} -c run.c", gcc))) << read_text("log.txt").substr(0, 2000);
    ASSERT_TRUE(runs(fortran ? "gfortran run.o programs.o -o run" : "gcc run.o -o run")) << read_text("log.txt");
}

// Samples into a program, from n = 1 on, and out of it.
struct ProgramRun {
    std::size_t program = 0;
    int ibt = 0;
    std::vector<double> x, y;
};

// To the last bit.
inline void expect_runs(const std::vector<ProgramRun>& all) {
    std::string in;
    for (const ProgramRun& run : all) {
        in += fmt::format("{} {} {}\n", run.program, run.ibt, run.x.size());
        for (const double x : run.x) in += fmt::format("{:.17g}\n", x);
    }
    write_text("in.txt", in);
    ASSERT_TRUE(runs("./run <in.txt"));
    std::istringstream out(read_text("out.txt"));
    for (const ProgramRun& run : all) {
        for (const double truth : run.y) {
            double y = 0;
            ASSERT_TRUE(out >> y);
            ASSERT_EQ(y, truth) << "ibt " << run.ibt << read_text(fmt::format("p{}", run.program));
        }
    }
}

}  // namespace kavrel
