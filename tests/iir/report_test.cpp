// Reports and analyses of digital filters as they are shown: golden texts, numbers as words, the state file.
#include <complex>

#include <nlohmann/json.hpp>

#include "iir/coefficient_text.h"
#include "iir/form_response.h"
#include "iir/iir_json.h"
#include "iir/iir_report.h"
#include "iir/section_diagram.h"
#include "shell/utf8.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"
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
        {0.5, 0.5, 31, "40000000"},      {-0.5, 0.9, 31, "C0000000"},      {1.0, 1.0, 31, "7FFFFFFF"},
        {-1.0, 1.0, 31, "80000000"},     {1.0, 1.0000001, 30, "40000000"}, {-1.9, 2.0, 30, "86666666"},
        {2.0, 2.0, 30, "7FFFFFFF"},      {0.1, 1e3, 21, "00033333"},       {1e-9, 0.0, 31, "00000002"},
        {-0x1p-32, 1.0, 31, "FFFFFFFF"}, {0.0, 0.0, 31, "00000000"},
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
    EXPECT_EQ(text(-0.3), "     00000000");
    EXPECT_EQ(text(-1e151), "     80000000") << "beyond the table: saturated";
    EXPECT_EQ(CoefficientText(DisplayFormat::decimal, huge)(-0.1), "-1.000000E-01");
}

// All five forms, with numbers that are read easily; they are not one filter.
IirFilter of_all_forms() {
    IirFilter f = filter_of(0.125, {{0.6, 0.8}, {-1, 0}}, {{0.5, 0.25}, {0.75, 0}});
    f.fs = 8000, f.T = 1 / f.fs, f.FHI = 1000;
    f.z_transform = ZTransform::bilinear;
    f.FilterTypeText = "lowpass";
    f.kind = DigitalKind::low_pass;
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
    for (const std::string& line : lines) EXPECT_LE(utf8_length(line), Reporter::line_limit) << line;
    expect_golden(TEST_DATA "/iir/report/report.txt", text_of(lines));
    EXPECT_TRUE(section_diagram(f, SectionOf::cascade, 3, DiagramChoice::summed_output, {}).empty());
}

struct IirViews : testing::Test, IirRoom {
    IirViews() { filter = of_all_forms(); }
    void frequency(Implementation form, double end = 4000, double increment = 1000) {
        command.frequency = {.end = end, .increment = increment};
        command.analysed = form;
        send("freq");
    }
};

TEST_F(IirViews, WhatTheResultsHold) {
    frequency(Implementation::allpass);
    EXPECT_TRUE(results.has_complement && results.has_delay && !results.difference);
    const double hertz[] = {3000};
    const FormResponse response = form_response(filter, Implementation::allpass, hertz);
    EXPECT_EQ(results.LOSS_COMPLEMENT(4), static_cast<float>(response.complement(1).loss));
    EXPECT_EQ(results.structure.trimmed(), "diff. allpass");
    frequency(Implementation::cascade);
    EXPECT_FALSE(results.has_complement);
    EXPECT_EQ(results.LOSS(5), 100) << "infinite";
    window.answers = {Answer::yes};
    frequency(Implementation::cascade, 4000, 10);
    EXPECT_EQ(std::ranges::count(window.lines, "******* Computed performance *******"), 401 / 57 + 1) << "one a page";
    filter.cascade.C1D(2) = -1;  // a pole on a frequency of the grid
    frequency(Implementation::cascade);
    EXPECT_TRUE(reported(" *** 1 of 5 frequencies has no result ***"));
    EXPECT_EQ(results.FREQ(1), 1000);
    filter.cascade.C1D(2) = -0.5;
    window.files = {"kept"};
    send("tabf");
    EXPECT_TRUE(read_text("kept.tab").starts_with(" *** analysis of an earlier filter ***"));
}

TEST_F(IirViews, Plots) {
    const auto plot_of = [&](Implementation form, double end, int y1, int y2, Answer answer = Answer::no) {
        frequency(form, end, 500);
        command.frequency_plot = {.y1 = y1, .y2 = y2};
        window.answers = {answer};
        send("pltf");
        return boxes();
    };
    constexpr std::string_view which = "Question: Need the sum functions?";
    EXPECT_EQ(plot_of(Implementation::parallel, 4000, 1, 3), "Error: Parallel form, delay is unavailable");
    EXPECT_EQ(plot_of(Implementation::cascade, 1500, 1, 2), "Warning: Too few points to plot");
    EXPECT_EQ(plot_of(Implementation::allpass, 4000, 0, 0), "Error: No plot specified");
    EXPECT_EQ(window.plots_shown, 0);
    EXPECT_EQ(plot_of(Implementation::cascade, 2000, 1, 2), "");
    EXPECT_EQ(plot.print_id, 161);
    EXPECT_EQ(plot_of(Implementation::allpass, 4000, 1, 3), which);
    EXPECT_EQ(results.y1_label.trimmed(), "Loss (dB) difference");
    EXPECT_EQ(results.Y1_DATA(2), results.LOSS_COMPLEMENT(2)) << "of a low-pass the sum is the filter";
    EXPECT_EQ(plot_of(Implementation::allpass, 4000, 2, 0, Answer::yes), which);
    EXPECT_EQ(results.y1_label.trimmed(), "Phase (deg) sum");
    EXPECT_EQ(results.Y1_DATA(2), results.PHASE(2));
}

// H at one frequency, by a reader of the state file that knows only its manual.
TEST(IirJson, HoldsTheFilterWhileScaled) {
    IirFilter filter = of_all_forms();
    CascadeForm& c = filter.cascade;
    c.SCALED = true, c.CK /= 4, c.SC(1) = 4, c.C1N(1) *= 4, c.C2N(1) *= 4;
    const auto part = nlohmann::json::parse(iir_part(filter).dump());
    const auto w = std::polar(1.0, -0.7);
    std::complex<double> h = part["cascade"]["front"].get<double>(), roots = 1;
    const auto value = [&](const auto& row) {
        return row[0].template get<double>() + row[1].template get<double>() * w +
               row[2].template get<double>() * w * w;
    };
    for (const auto& row : part["cascade"]["numerator"]) h *= value(row);
    for (const auto& row : part["cascade"]["denominator"]) h /= value(row);
    for (const auto& root : part["zeros"]) roots *= 1.0 - std::complex<double>(root[0], root[1]) * w;
    for (const auto& root : part["poles"]) roots /= 1.0 - std::complex<double>(root[0], root[1]) * w;
    roots *= part["zero_multiplier"].get<double>() / part["pole_multiplier"].get<double>();
    EXPECT_LT(std::abs(h - roots), 1e-15);
    EXPECT_EQ(part["cascade"]["numerator"][0][0], 4);
    EXPECT_EQ(part["allpass"]["output"], "sum");
    EXPECT_EQ(part["kind"], "low_pass");
    EXPECT_EQ(part["edges"], nlohmann::json({0, 1000}));
    EXPECT_EQ(part["parallel"]["blocks"][0], nlohmann::json({1.5, -0.5, -1, 0.3125}));
    EXPECT_EQ(part["lattice"]["taps"].size(), 3u);
    EXPECT_TRUE(iir_part({}).is_null());
}

}  // namespace
}  // namespace kavrel
