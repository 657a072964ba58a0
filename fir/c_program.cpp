#include "fir/c_program.h"

#include <cmath>

#include <fmt/format.h>

namespace kavrel {

namespace {

// What the equations go on with: the types of samples and of sums, and how a sample becomes a number of a sum.
struct CNumbers {
    std::string_view sample, sum, cast;
};
void add_head(const FirProgramInput& input, std::string_view scale, ProgramLines& lines);
void add_equations(const FirProgramInput& input, const CNumbers& numbers, ProgramLines& lines);

}  // namespace

ProgramLines c_program(const FirProgramInput& input) {
    ProgramLines lines;
    add_head(input, "", lines);
    add_text(lines, R"(
   fir(x, &y, n, ibt) with n = 1 clears the delay line first. Each sample x, with n = 1, 2, ..., gives y.
)");
    add_text(lines, c_products);
    add_text(lines, R"(

#include <stdint.h>

void fir(double x, double *y, int n, int ibt);

)");
    add_text(lines, c_quantiser());
    add_text(lines, R"(

void fir(double x, double *y, int n, int ibt)
{
)");
    add_c_array(lines, "    ", "static const double coef[]", c_decimals(input.coefficients()));
    add_equations(input, {"double", "double", ""}, lines);
    return lines;
}

Refusal integer_program_refusal(const FirProgramInput& input) {
    const WordLength& word = input.shape().word;
    std::vector<double> numbers;
    for (const double h : input.coefficients()) numbers.push_back(std::ldexp(h, word.bits));
    return integer_refusal(word, numbers);
}

ProgramLines integer_program(const FirProgramInput& input) {
    const auto& [bits, method, number_form] = input.shape().word;
    const long long full_scale = 1LL << bits;
    ProgramLines lines;
    add_head(input, fmt::format("; all numbers are values times 2^{}", bits), lines);
    add_text(lines, R"(
   fir(x, &y, n) with n = 1 clears the delay line first. Each sample x, with n = 1, 2, ..., gives y.
)");
    lines.push_back(fmt::format("   With x from {} to {}, full scale, nothing overflows. */", -full_scale, full_scale));
    add_text(lines, R"(

#include <stdint.h>

void fir(int32_t x, int64_t *y, int n);

)");
    add_integer_quantiser(method, lines);
    add_text(lines, R"(

void fir(int32_t x, int64_t *y, int n)
{
)");
    lines.push_back(fmt::format("    enum {{ ibt = {} }};", bits));
    add_c_array(lines, "    ", "static const int32_t coef[]", c_integers(input.coefficients(), bits));
    add_equations(input, {"int32_t", "int64_t", "(int64_t)"}, lines);
    return lines;
}

namespace {

void add_head(const FirProgramInput& input, std::string_view scale, ProgramLines& lines) {
    lines.push_back("/* " + c_comment(input.title));
    lines.push_back(fmt::format("   {}{}", function_text(input), scale));
    lines.emplace_back();
}

void add_equations(const FirProgramInput& input, const CNumbers& numbers, ProgramLines& lines) {
    const auto& [taps, symmetry, word, gain, asked] = input.shape();
    const int pairs = input.pairs();
    lines.push_back(fmt::format("    enum {{ nt = {} }};", taps));
    lines.push_back(fmt::format("    static {} x1[nt];", numbers.sample));
    lines.push_back(fmt::format("    {} sum = 0;", numbers.sum));
    add_text(lines, R"(
    if (n <= 1) {
        for (int i = 0; i < nt; ++i) x1[i] = 0;
    }
    for (int i = nt - 1; i > 0; --i) x1[i] = x1[i - 1];
    x1[0] = x;
)");
    const auto add_loop = [&](int count, std::string_view samples) {
        lines.push_back(fmt::format("    for (int i = 0; i < {}; ++i) sum += trun(coef[i]*{}, ibt);", count,
                                    replaced(std::string(samples), "CAST", numbers.cast)));
    };
    if (symmetry == FirSymmetry::none) add_loop(taps, "CASTx1[i]");
    if (pairs > 0) {
        add_loop(pairs, symmetry == FirSymmetry::odd ? "(CASTx1[i] - x1[nt - 1 - i])" : "(CASTx1[i] + x1[nt - 1 - i])");
    }
    if (input.has_middle()) {
        lines.push_back(fmt::format("    sum += trun(coef[{0}]*{1}x1[{0}], ibt);", pairs, numbers.cast));
    }
    add_text(lines, R"(
    *y = sum;
}
)");
}

}  // namespace

}  // namespace kavrel
