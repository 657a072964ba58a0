// What a program is written from, and the coefficients of its form as tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "iir/iir_filter.h"
#include "iir/iir_request.h"

namespace kavrel {

struct ProgramInput {
    const IirFilter& filter;
    Implementation form = Implementation::cascade;  // one that is there
    bool difference = false;                        // of a differential allpass the difference, not the sum
    std::string_view title = {};
    std::string_view name = {};  // of the file, without folder and extension
};

// "cascade form", "allpass form, difference": in the heads of programs.
[[nodiscard]] std::string form_text(const ProgramInput& input);

// One array of a form.
struct CoefficientTable {
    std::string_view name;  // "c1n ", " sc ", "znum": four characters, as the classic programs have it
    int places = 0;         // that they have for it
    std::vector<double> values;
};

// The arrays of a form, in the order in which programs have them: c1n, c2n, c1d, c2d, sc, a number a section; al, be,
// ga, de; znum, zden; gmul, gtap; ta1, ta2, tb1, tb2. A factor that the cascade does not have is 1.
[[nodiscard]] std::vector<CoefficientTable> coefficient_tables(const IirFilter& filter, Implementation form);

// The same with so many places at least in each array as equations need that languages of today take: loops that run.
// Coefficients that are added are such that H stays.
[[nodiscard]] std::vector<CoefficientTable> padded_tables(const IirFilter& filter, Implementation form);

// The text of one chain of a differential allpass as that of the other one: ta1, ta2, nta, ya are tb1, tb2, ntb, yb.
[[nodiscard]] std::string of_second_chain(std::string_view text);

// The numerator and denominator of a section, the front-end multiplier in the first one. There is one at least.
struct SectionRow {
    double b0 = 1;
    double b1 = 0;
    double b2 = 0;
    double a1 = 0;
    double a2 = 0;
};
[[nodiscard]] std::vector<SectionRow> section_rows(const CascadeForm& cascade);

}  // namespace kavrel
