// Reports and analyses of digital filters as they are shown: golden texts, numbers as words, the state file.
#include <complex>

#include <nlohmann/json.hpp>

#include "iir/coefficient_text.h"
#include "iir/iir_json.h"
#include "iir/iir_report.h"
#include "iir/section_diagram.h"
#include "tests/iir/filters.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

// Words against Python's round(x * 2**f) & 0xffffffff, clipped.
TEST(CoefficientText, Words) {
    constexpr struct {
        double x, largest;
        int fraction_bits;
        std::string_view word;
    } cases[] = {
        {0.5, 0.5, 31, "40000000"},  {-0.5, 0.9, 31, "C0000000"},      {1.0, 1.0, 31, "7FFFFFFF"},
        {-1.0, 1.0, 31, "80000000"}, {1.0, 1.0000001, 30, "40000000"}, {-1.9, 2.0, 30, "86666666"},
        {0.1, 1e3, 21, "00033333"},  {-0x1p-32, 1.0, 31, "FFFFFFFF"},  {0.0, 0.0, 31, "00000000"},
    };
    for (const auto& row : cases) {
        const double numbers[] = {row.x, -row.largest};
        const CoefficientText text(DisplayFormat::hexadecimal, numbers);
        EXPECT_EQ(text.fraction_bits(), row.fraction_bits) << row.x;
        EXPECT_EQ(text(row.x), "     " + std::string(row.word)) << row.x;
    }
    const double huge[] = {1e150};
    const CoefficientText text(DisplayFormat::hexadecimal, huge);
    EXPECT_EQ(text.fraction_bits(), 31 - 499);  // 2^498 < 1e150 < 2^499
    EXPECT_EQ(text(-0.3) + text(-1e151), "     00000000     80000000") << "beyond the table: saturated";
}

// All five forms, with numbers that are read easily; they are not one filter.
IirFilter of_all_forms() {
    IirFilter f = filter_of(0.125, {{0.6, 0.8}, {-1, 0}}, {{0.5, 0.25}, {0.75, 0}});
    f.fs = 8000, f.T = 1 / f.fs, f.FHI = 1000;
    f.z_transform = ZTransform::bilinear, f.kind = DigitalKind::low_pass, f.FilterTypeText = "lowpass";
    f.parallel = {.AL = {1.5, 0.25}, .BE = {-0.5, 0}, .GA = {-1, -0.75}, .DE = {0.3125, 0}, .AO = -2.25, .NPAR = 2};
    f.direct = {.ZNUM = {0.125, -0.025, -0.025, 0.125}, .ZDEN = {1, -1.75, 1.0625}, .JN = 4, .JD = 3};
    f.lattice = {.GMMUL = {-0.875, 0.5}, .GMTAP = {0.1, 0.2, 0.3}, .JM = 2, .JT = 3};
    f.allpass = {.TA1 = {-0.75}, .TA2 = {0}, .TB1 = {-1}, .TB2 = {0.3125}, .NTA = 1, .NTB = 1, .LARR = {}};
    return f;
}

TEST(IirReport, Golden) {
    IirFilter f = of_all_forms();
    Lines lines = header_lines(f, {});
    append(lines, form_tables(f, DisplayFormat::decimal));
    append(lines, factored_lines(f, DisplayFormat::decimal));
    for (const auto diagram : {DiagramChoice::multiple_input, DiagramChoice::summed_output}) {
        append(lines, section_diagram(f, SectionOf::cascade, 1, diagram, DisplayFormat::decimal));
        append(lines, section_diagram(f, SectionOf::parallel, 1, diagram, DisplayFormat::hexadecimal));
    }
    // Scaled, from a spectral transformation, in KHz, as words.
    f.spectral = SpectralKind::to_bandpass, f.FLO = 900, f.z_transform = ZTransform::matched;
    CascadeForm& c = f.cascade;
    c.SCALED = true, c.CK = 0.5, c.SC(1) = 0.25, c.C1N(1) *= 0.25, c.C2N(1) *= 0.25;
    UnitSet units{.frequency_index = 2};
    settle_units(units);
    append(lines, header_lines(f, units));
    append(lines, form_tables(f, DisplayFormat::hexadecimal));
    append(lines, factored_lines(f, DisplayFormat::hexadecimal));
    append(lines, section_diagram(f, SectionOf::cascade, 2, DiagramChoice::summed_output, DisplayFormat::hexadecimal));
    expect_golden(TEST_DATA "/iir/report/report.txt", text_of(lines));
}

// H at one frequency, by a reader of the state file that knows only its manual.
TEST(IirJson, HoldsTheFilterWhileScaled) {
    IirFilter filter = of_all_forms();
    CascadeForm& c = filter.cascade;
    c.SCALED = true, c.CK /= 4, c.SC(1) = 4, c.C1N(1) *= 4, c.C2N(1) *= 4;
    const auto part = nlohmann::json::parse(iir_part(filter, {}).dump());
    const auto w = std::polar(1.0, -0.7);
    std::complex<double> h = part["cascade"]["front"].get<double>(), roots = 1;
    const auto value = [&](const std::array<double, 3>& q) { return q[0] + q[1] * w + q[2] * w * w; };
    for (const auto& row : part["cascade"]["numerator"]) h *= value(row);
    for (const auto& row : part["cascade"]["denominator"]) h /= value(row);
    for (const auto& root : part["zeros"]) roots *= 1.0 - std::complex<double>(root[0], root[1]) * w;
    for (const auto& root : part["poles"]) roots /= 1.0 - std::complex<double>(root[0], root[1]) * w;
    roots *= part["zero_multiplier"].get<double>() / part["pole_multiplier"].get<double>();
    EXPECT_LT(std::abs(h - roots), 1e-15);
    EXPECT_TRUE(part["allpass"]["output"] == "sum" && part["kind"] == "low_pass");
    EXPECT_EQ(part["parallel"]["blocks"][0], nlohmann::json({1.5, -0.5, -1, 0.3125}));
    EXPECT_TRUE(part["lattice"]["taps"].size() == 3 && iir_part({}, {}).is_null());
}

}  // namespace
}  // namespace kavrel
