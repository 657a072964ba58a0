#include "iir/program_input.h"

#include <algorithm>

#include "segment/program_text.h"

namespace kavrel {

namespace {

template <int N>
CoefficientTable table(std::string_view name, int places, const Table<double, N>& cells, int count);
std::vector<CoefficientTable> cascade_tables(const CascadeForm& c);

}  // namespace

std::string form_text(const ProgramInput& input) {
    const std::string text = std::string(form_name(input.form)) + " form";
    if (input.form != Implementation::allpass) return text;
    return text + (input.difference ? ", difference" : ", sum");
}

std::vector<CoefficientTable> coefficient_tables(const IirFilter& filter, Implementation form) {
    const ParallelForm& p = filter.parallel;
    const DirectForm& d = filter.direct;
    const LatticeForm& l = filter.lattice;
    const AllpassForm& a = filter.allpass;
    switch (form) {
        case Implementation::cascade: return cascade_tables(filter.cascade);
        case Implementation::parallel:
            return {table(" al ", 25, p.AL, p.NPAR), table(" be ", 25, p.BE, p.NPAR), table(" ga ", 25, p.GA, p.NPAR),
                    table(" de ", 25, p.DE, p.NPAR)};
        case Implementation::direct: return {table("znum", 51, d.ZNUM, d.JN), table("zden", 51, d.ZDEN, d.JD)};
        case Implementation::lattice: return {table("gmul", 51, l.GMMUL, l.JM), table("gtap", 51, l.GMTAP, l.JT)};
        case Implementation::allpass:
            return {table(" ta1", 13, a.TA1, a.NTA), table(" ta2", 13, a.TA2, a.NTA), table(" tb1", 13, a.TB1, a.NTB),
                    table(" tb2", 13, a.TB2, a.NTB)};
        case Implementation::natural_modes: break;
    }
    return {};
}

std::vector<CoefficientTable> padded_tables(const IirFilter& filter, Implementation form) {
    std::vector<CoefficientTable> tables = coefficient_tables(filter, form);
    for (CoefficientTable& t : tables) {
        const std::size_t least = t.name == "zden" ? 2 : 1;
        if (t.values.size() < least) t.values.resize(least, t.name == " sc " ? 1.0 : 0.0);
    }
    return tables;
}

std::string of_second_chain(std::string_view text) {
    std::string second(text);
    for (const std::string_view name : {"ta1", "ta2", "nta", "ya"}) {
        second = replaced(second, name, replaced(std::string(name), "a", "b"));
    }
    return second;
}

std::vector<SectionRow> section_rows(const CascadeForm& cascade) {
    std::vector<SectionRow> rows;
    for (int k = 1; k <= std::max(1, section_count(cascade)); ++k) {
        SectionRow row{.b0 = cascade.SC(k)};
        if (k <= cascade.NNUM) row.b1 = cascade.C1N(k), row.b2 = cascade.C2N(k);
        if (k <= cascade.NDEN) row.a1 = cascade.C1D(k), row.a2 = cascade.C2D(k);
        rows.push_back(row);
    }
    for (double* b : {&rows[0].b0, &rows[0].b1, &rows[0].b2}) *b *= cascade.CK;
    return rows;
}

namespace {

template <int N>
CoefficientTable table(std::string_view name, int places, const Table<double, N>& cells, int count) {
    return {name, places, {cells.begin(), cells.begin() + count}};
}

std::vector<CoefficientTable> cascade_tables(const CascadeForm& c) {
    std::vector<CoefficientTable> tables = {table("c1n ", 25, c.C1N, c.NNUM), table("c2n ", 25, c.C2N, c.NNUM),
                                            table("c1d ", 25, c.C1D, c.NDEN), table("c2d ", 25, c.C2D, c.NDEN),
                                            table(" sc ", 25, c.SC, section_count(c))};
    for (CoefficientTable& t : tables) t.values.resize(static_cast<std::size_t>(section_count(c)));
    return tables;
}

}  // namespace

}  // namespace kavrel
