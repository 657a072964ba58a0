#include "iir/iir_report.h"

#include <array>

#include "shell/edit.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::array<std::string_view, 3> powers = {"z**( 0)", "z**(-1)", "z**(-2)"};

// The first cells of tables of one form.
template <class... Cells>
std::vector<double> numbers(int count, const Cells&... cells) {
    std::vector<double> all;
    for (int k = 1; k <= count; ++k) (all.push_back(cells(k)), ...);
    return all;
}

// Lines of one table: fields of 13 columns, four blanks before each.
class Table13 {
public:
    Table13(std::string_view head, const CoefficientText& text) : text_(text) {
        lines_.emplace_back("");
        lines_.push_back(edit_x(15) + std::string(head));
        if (const std::string note = text_.note(); !note.empty()) line(note);
    }
    void line(std::string_view text) { lines_.push_back(edit_x(6) + std::string(text)); }
    void plain(std::string text) { lines_.push_back(std::move(text)); }
    void heads(std::span<const std::string_view> texts, std::string row = {}) {
        for (const std::string_view text : texts) row += edited<"(4X,A13)">(text);
        lines_.push_back(std::move(row));
    }
    template <class... Numbers>
    void row(Numbers... values) {
        std::string text;
        ((text += field(values)), ...);
        lines_.push_back(std::move(text));
    }
    [[nodiscard]] std::string field(double value) const { return edit_x(4) + text_(value); }
    void coefficients(std::string_view of) {
        line(edited<"(A,' coefficients ',A)">(of, text_.name()));
        heads(powers);
    }
    [[nodiscard]] Lines lines() && { return std::move(lines_); }

private:
    CoefficientText text_;
    Lines lines_;
};

std::vector<double> joined(std::vector<double> a, const std::vector<double>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

template <int N>
void add_allpass(int number, const Table<double, N>& c1, const Table<double, N>& c2, int count, Table13& table);

}  // namespace

void append(Lines& lines, const Lines& more) { lines.insert(lines.end(), more.begin(), more.end()); }

Lines header_lines(const IirFilter& filter, const UnitSet& units) {
    Lines lines{"", " **IIR** digital filter transfer function"};
    lines.push_back(edited<"(4X,'z transform used : ',A)">(z_transform_text(filter.z_transform)));
    lines.push_back(edited<"(4X,'filter type      : ',A)">(filter.FilterTypeText.trimmed()));
    if (filter.spectral != SpectralKind::none) {
        lines.push_back(edited<"(4X,'(obtained from digital lowpass by spectral',' transformation)')">());
    }
    if (is_truncated(filter)) lines.push_back(edited<"(4X,'word length      : ',A)">(text_of(filter.word)));
    const auto frequency = [&](std::string label, double value) {
        label.resize(30, ' ');
        lines.emplace_back(trim_right(edited<"(4X,A,'=',A)">(label, unit_value_text(units, value, hertz))));
    };
    frequency("sampling frequency", filter.fs);
    if (filter.FLO > 0) frequency("lower passband edge frequency", filter.FLO);
    if (filter.FHI > 0) frequency("upper passband edge frequency", filter.FHI);
    return lines;
}

CoefficientText text_of(const CascadeForm& c, DisplayFormat format) {
    const auto factors = joined(numbers(c.NNUM, c.SC, c.C1N, c.C2N), numbers(c.NDEN, c.C1D, c.C2D));
    return {format, joined(factors, {1.0})};
}

CoefficientText text_of(const ParallelForm& p, DisplayFormat format) {
    return {format, joined(numbers(p.NPAR, p.AL, p.BE, p.GA, p.DE), {p.AO})};
}

Lines cascade_table(const CascadeForm& c, DisplayFormat format) {
    Table13 table("**** Cascade form ****", text_of(c, format));
    table.coefficients("numerator");
    for (int k = 1; k <= c.NNUM; ++k) table.row(c.SC(k), c.C1N(k), c.C2N(k));
    table.coefficients("denominator");
    for (int k = 1; k <= c.NDEN; ++k) table.row(1.0, c.C1D(k), c.C2D(k));
    table.plain(edited<"(7X,'Front-end multiplier',5X,'=',1P,E14.6)">(c.CK));
    return std::move(table).lines();
}

Lines parallel_table(const ParallelForm& p, DisplayFormat format) {
    if (!is_there(p)) return {};
    constexpr std::array<std::string_view, 4> names = {"a1", "a2", "a3", "a4"};
    Table13 table("**** Parallel (partial fraction) form ****", text_of(p, format));
    table.line("the general form is:");
    table.line("(a1 + a2 * z**(-1))/(1 + a3 * z**(-1) + a4 * z**(-2))");
    table.heads(names);
    for (int k = 1; k <= p.NPAR; ++k) table.row(p.AL(k), p.BE(k), p.GA(k), p.DE(k));
    table.line("constant term =" + table.field(p.AO));
    return std::move(table).lines();
}

Lines direct_table(const DirectForm& d, DisplayFormat format) {
    if (!is_there(d)) return {};
    constexpr std::array<std::string_view, 2> names = {"numerator", "denominator"};
    Table13 table("**** Direct form ****", {format, joined(numbers(d.JN, d.ZNUM), numbers(d.JD, d.ZDEN))});
    table.line("coefficients of ascending powers of z**(-1)");
    table.heads(names, edit_x(2));
    for (int i = 1; i <= std::max(d.JN, d.JD); ++i) {
        const std::string first = i <= d.JN ? table.field(d.ZNUM(i)) : edit_x(4 + coefficient_width);
        table.plain(edited<"(I2,2A)">(i - 1, first, i <= d.JD ? table.field(d.ZDEN(i)) : std::string{}));
    }
    return std::move(table).lines();
}

Lines lattice_table(const LatticeForm& l, DisplayFormat format) {
    if (!is_there(l)) return {};
    constexpr std::array<std::string_view, 2> names = {"multiplier", "tap-weight"};
    Table13 table("**** Gray-Markel lattice ****", {format, joined(numbers(l.JM, l.GMMUL), numbers(l.JT, l.GMTAP))});
    table.heads(names);
    for (int i = 1; i <= l.JT; ++i) {
        const std::string first = i <= l.JM ? table.field(l.GMMUL(i)) : edit_x(4 + coefficient_width);
        table.plain(first + table.field(l.GMTAP(i)));
    }
    return std::move(table).lines();
}

Lines allpass_table(const AllpassForm& a, DisplayFormat format) {
    if (!is_there(a)) return {};
    const auto shown = joined(numbers(a.NTA, a.TA1, a.TA2), numbers(a.NTB, a.TB1, a.TB2));
    Table13 table("**** Differential allpass form ****", {format, joined(shown, {1.0})});
    add_allpass(1, a.TA1, a.TA2, a.NTA, table);
    add_allpass(2, a.TB1, a.TB2, a.NTB, table);
    return std::move(table).lines();
}

Lines form_tables(const IirFilter& filter, DisplayFormat format) {
    Lines lines = cascade_table(filter.cascade, format);
    append(lines, parallel_table(filter.parallel, format));
    append(lines, direct_table(filter.direct, format));
    append(lines, lattice_table(filter.lattice, format));
    append(lines, allpass_table(filter.allpass, format));
    return lines;
}

Lines cascade_lines(const IirFilter& filter, DisplayFormat format, const UnitSet& units) {
    Lines lines = header_lines(filter, units);
    append(lines, cascade_table(filter.cascade, format));
    return lines;
}

Lines factored_lines(const IirFilter& filter, DisplayFormat format) {
    const CascadeForm& c = filter.cascade;
    const auto c1 = [&](int k) { return numerator_factor(c, k).c1; };
    const auto c2 = [&](int k) { return numerator_factor(c, k).c2; };
    const CoefficientText text(format, joined(numbers(c.NNUM, c1, c2), numbers(c.NDEN, c.C1D, c.C2D)));
    const std::string one = format == DisplayFormat::decimal ? text(1) : std::string(leading_one);
    double multiplier = c.CK;
    for (int k = 1; k <= section_count(c); ++k) multiplier *= c.SC(k);
    const auto factor = [&](double first, double second) {
        return edited<"(3(4X,A13))">(one, text(first), text(second));
    };
    Lines lines{"", " **** H(z) in factored (cascade) form ****"};
    lines.push_back(" coefficients of z**(0), z**(-1) and z**(-2) in " + std::string(text.name()));
    if (const std::string note = text.note(); !note.empty()) lines.push_back(' ' + note);
    lines.push_back(edited<"(' **** numerator ****    multiplier =',1P,E14.6)">(multiplier));
    for (int k = 1; k <= c.NNUM; ++k) lines.push_back(factor(c1(k), c2(k)));
    lines.emplace_back(" **** denominator ****");
    for (int k = 1; k <= c.NDEN; ++k) lines.push_back(factor(c.C1D(k), c.C2D(k)));
    return lines;
}

namespace {

// The numerators are the mirrored denominators.
template <int N>
void add_allpass(int number, const Table<double, N>& c1, const Table<double, N>& c2, int count, Table13& table) {
    table.plain(edited<"(' allpass no. ',I1)">(number));
    table.coefficients("numerator");
    for (int k = 1; k <= count; ++k) {
        c2(k) == 0 ? table.row(c1(k), 1.0, 0.0) : table.row(c2(k), c1(k), 1.0);
    }
    table.coefficients("denominator");
    for (int k = 1; k <= count; ++k) table.row(1.0, c1(k), c2(k));
}

}  // namespace

}  // namespace kavrel
