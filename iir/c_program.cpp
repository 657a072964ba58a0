#include "iir/c_program.h"

#include <utility>

#include <fmt/format.h>

#include "shell/fixed_text.h"

namespace kavrel {

namespace {

constexpr CNumbers doubles{.type = "double",
                           .front = "trun(ck*x, ibt)",
                           .sum = "trun(yy, ibt)",
                           .half_sum = "trun(0.5*(ya[2][nta] + yb[2][ntb]), ibt)",
                           .half_difference = "trun(-0.5*(ya[2][nta] - yb[2][ntb]), ibt)"};

void add_head(const ProgramInput& input, ProgramLines& lines);
void add_coefficients(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines);
void add_counts(Implementation form, const std::vector<CoefficientTable>& tables, ProgramLines& lines);
std::string equations(const ProgramInput& input, const CNumbers& numbers);

}  // namespace

ProgramLines c_program(const ProgramInput& input) {
    ProgramLines lines;
    const auto tables = padded_tables(input.filter, input.form);
    add_head(input, lines);
    add_text(lines, c_quantiser());
    add_text(lines, R"(

void tim(double x, double *y, int n, int ibt)
{
)");
    add_coefficients(input, tables, lines);
    add_c_equations(input, tables, doubles, lines);
    lines.emplace_back("}");
    return lines;
}

void add_c_equations(const ProgramInput& input, const std::vector<CoefficientTable>& tables, const CNumbers& numbers,
                     ProgramLines& lines) {
    add_counts(input.form, tables, lines);
    std::string text = equations(input, numbers);
    for (const auto& [word, by] :
         {std::pair("NUMBER", numbers.type), std::pair("FRONT", numbers.front), std::pair("SUM", numbers.sum)}) {
        text = replaced(text, word, by);
    }
    add_text(lines, text);
}

namespace {

void add_head(const ProgramInput& input, ProgramLines& lines) {
    lines.push_back("/* " + c_comment(input.title));
    lines.push_back("   " + form_text(input));
    add_text(lines, input.form == Implementation::lattice ? R"(

   tim(x, &y, n, ibt) with n = 1 is the first sample, which sets the state that x = 1 leaves; y stays as it is.
   Each later sample x, with n = 2, 3, ..., gives y, the output one sample late.
)"
                                                          : R"(

   tim(x, &y, n, ibt) with n = 1 resets the filter; y stays as it is. Each sample x, with n = 2, 3, ..., gives y.
)");
    add_text(lines, c_products);
    add_text(lines, R"(

#include <stdint.h>

void tim(double x, double *y, int n, int ibt);

)");
}

void add_coefficients(const ProgramInput& input, const std::vector<CoefficientTable>& tables, ProgramLines& lines) {
    const auto number = [&](std::string_view name, double value) {
        lines.push_back(fmt::format("    static const double {} = {};", name, decimal(value)));
    };
    if (input.form == Implementation::cascade) number("ck", input.filter.cascade.CK);
    if (input.form == Implementation::parallel) number("ao", input.filter.parallel.AO);
    for (const CoefficientTable& table : tables) {
        add_c_array(lines, "    ", fmt::format("static const double {}[]", trim(table.name)), c_decimals(table.values));
    }
}

void add_counts(Implementation form, const std::vector<CoefficientTable>& tables, ProgramLines& lines) {
    const auto size = [&](std::size_t table) { return tables[table].values.size(); };
    switch (form) {
        case Implementation::cascade:
        case Implementation::parallel: return lines.push_back(fmt::format("    enum {{ nsec = {} }};", size(0)));
        case Implementation::direct:
            return lines.push_back(fmt::format("    enum {{ jn = {}, jd = {} }};", size(0), size(1)));
        case Implementation::lattice: return lines.push_back(fmt::format("    enum {{ jt = {} }};", size(1)));
        case Implementation::allpass:
            return lines.push_back(fmt::format("    enum {{ nta = {}, ntb = {} }};", size(0), size(2)));
        case Implementation::natural_modes: break;
    }
}

constexpr std::string_view cascade_equations = R"(
    static NUMBER ys[3][nsec + 1];
    if (n == 1) {
        for (int k = 0; k <= nsec; ++k) ys[0][k] = ys[1][k] = 0;
        return;
    }
    ys[2][0] = FRONT;
    for (int k = 0; k < nsec; ++k) {
        const NUMBER yy = trun(sc[k]*ys[2][k], ibt) + trun(c1n[k]*ys[1][k], ibt) + trun(c2n[k]*ys[0][k], ibt)
            - trun(c1d[k]*ys[1][k + 1], ibt) - trun(c2d[k]*ys[0][k + 1], ibt);
        ys[2][k + 1] = SUM;
    }
    *y = ys[2][nsec];
    for (int k = 0; k <= nsec; ++k) {
        ys[0][k] = ys[1][k];
        ys[1][k] = ys[2][k];
    }
)";

constexpr std::string_view parallel_equations = R"(
    static NUMBER ys[3][nsec + 1];
    if (n == 1) {
        for (int k = 0; k <= nsec; ++k) ys[0][k] = ys[1][k] = 0;
        return;
    }
    ys[2][0] = x;
    for (int k = 0; k < nsec; ++k) {
        ys[2][k + 1] = trun(al[k]*ys[2][0], ibt) + trun(be[k]*ys[1][0], ibt)
            - trun(ga[k]*ys[1][k + 1], ibt) - trun(de[k]*ys[0][k + 1], ibt);
    }
    *y = trun(ao*ys[2][0], ibt);
    for (int k = 0; k < nsec; ++k) *y += ys[2][k + 1];
    for (int k = 0; k <= nsec; ++k) {
        ys[0][k] = ys[1][k];
        ys[1][k] = ys[2][k];
    }
)";

constexpr std::string_view direct_equations = R"(
    static NUMBER xi[jn], yi[jd];
    if (n == 1) {
        for (int i = 0; i < jn; ++i) xi[i] = 0;
        for (int i = 0; i < jd; ++i) yi[i] = 0;
        return;
    }
    for (int i = jn - 1; i > 0; --i) xi[i] = xi[i - 1];
    for (int i = jd - 1; i > 0; --i) yi[i] = yi[i - 1];
    xi[0] = x;
    NUMBER yy = 0;
    for (int i = 0; i < jn; ++i) yy += trun(znum[i]*xi[i], ibt);
    for (int i = 1; i < jd; ++i) yy -= trun(zden[i]*yi[i], ibt);
    yi[0] = *y = SUM;
)";

constexpr std::string_view lattice_equations = R"(
    static NUMBER z[jt];
    if (n == 1) {
        z[0] = 1;
        for (int i = 1; i < jt; ++i) z[i] = gmul[i - 1];
        return;
    }
    NUMBER e = x, yy = 0;
    for (int i = 0; i < jt; ++i) yy += trun(gtap[i]*z[i], ibt);
    for (int i = jt - 1; i > 0; --i) {
        const NUMBER last = z[i - 1];
        e -= trun(gmul[i - 1]*last, ibt);
        z[i] = last + trun(gmul[i - 1]*e, ibt);
    }
    z[0] = e;
    *y = SUM;
)";

constexpr std::string_view chain_reset = R"(
    static NUMBER ya[3][nta + 1], yb[3][ntb + 1];
    if (n == 1) {
        for (int k = 0; k <= nta; ++k) ya[0][k] = ya[1][k] = 0;
        for (int k = 0; k <= ntb; ++k) yb[0][k] = yb[1][k] = 0;
        return;
    }
)";
constexpr std::string_view chain_equations = R"(
    ya[2][0] = x;
    for (int k = 0; k < nta; ++k) {
        ya[2][k + 1] = ta2[k] == 0
            ? trun(ta1[k]*ya[2][k], ibt) + ya[1][k] - trun(ta1[k]*ya[1][k + 1], ibt)
            : trun(ta2[k]*ya[2][k], ibt) + trun(ta1[k]*ya[1][k], ibt) + ya[0][k]
                - trun(ta1[k]*ya[1][k + 1], ibt) - trun(ta2[k]*ya[0][k + 1], ibt);
    }
)";
constexpr std::string_view chain_shift = R"(
    for (int k = 0; k <= nta; ++k) {
        ya[0][k] = ya[1][k];
        ya[1][k] = ya[2][k];
    }
)";

std::string allpass_equations(const ProgramInput& input, const CNumbers& numbers) {
    const auto both = [](std::string_view text) { return std::string(text) + of_second_chain(text).substr(1); };
    const std::string_view output = input.difference ? numbers.half_difference : numbers.half_sum;
    return std::string(chain_reset) + both(chain_equations).substr(1) + fmt::format("    *y = {};\n", output) +
           both(chain_shift).substr(1);
}

std::string equations(const ProgramInput& input, const CNumbers& numbers) {
    switch (input.form) {
        case Implementation::cascade: return std::string(cascade_equations);
        case Implementation::parallel: return std::string(parallel_equations);
        case Implementation::direct: return std::string(direct_equations);
        case Implementation::lattice: return std::string(lattice_equations);
        case Implementation::allpass: return allpass_equations(input, numbers);
        case Implementation::natural_modes: break;
    }
    return "\n";
}

}  // namespace

}  // namespace kavrel
