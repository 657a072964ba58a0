// Matlab data, polynomials, pole-zero files and S-parameters.
#include <complex>

#include <gtest/gtest.h>

#include "exchange/pole_zero_text.h"
#include "exchange/transfer_polynomials.h"
#include "shell/field_table.h"
#include "shell/reporter.h"
#include "tests/exchange/exchange_helpers.h"
#include "tests/support/circuit_literal.h"
#include "tests/support/fake_window.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

using namespace testing;
using enum BranchId;
using Sample = std::complex<double>;

// h = 4 (s^2 + 4)/((s + 1)(s^2 + 0.5 s + 2)) at a normalisation frequency of 1 MHz.
TransferFunction known_function() {
    TransferFunction t;
    t.normFrequency = 2 * pi * 1e6;
    const auto root = [&](auto& re, auto& im, int& count, double x, double y) {
        ++count;
        re(count) = x * t.normFrequency, im(count) = y * t.normFrequency;
    };
    root(t.POLES_RE, t.POLES_IM, t.poleCount, -1, 0);
    root(t.POLES_RE, t.POLES_IM, t.poleCount, -0.25, std::sqrt(2 - 0.0625));
    root(t.POLES_RE, t.POLES_IM, t.poleCount, -0.25, -std::sqrt(2 - 0.0625));
    root(t.ZEROS_RE, t.ZEROS_IM, t.zeroCount, 0, 2);
    root(t.ZEROS_RE, t.ZEROS_IM, t.zeroCount, -0.0, -2);
    t.level = 4;
    return t;
}

// From its roots: level times the product of (jw - zero) over that of (jw - pole).
Sample response(const TransferFunction& t, double w) {
    Sample h = t.level;
    const Sample s{0, w / t.normFrequency};
    for (int i = 1; i <= std::max(t.zeroCount, t.poleCount); ++i) {
        if (i <= t.zeroCount) h *= s - Sample(t.ZEROS_RE(i), t.ZEROS_IM(i)) / t.normFrequency;
        if (i <= t.poleCount) h /= s - Sample(t.POLES_RE(i), t.POLES_IM(i)) / t.normFrequency;
    }
    return h;
}

// |w - root| over |jw - root|.
double magnified(double re, double im, double w) { return std::hypot(w - re, im) / std::hypot(re, w - im); }

TEST(TransferPolynomials, OfKnownRootsAndTheirTexts) {
    const TransferFunction t = known_function();
    const auto polynomials = transfer_polynomials(t, false);
    const std::vector<double> numerator = {16, 0, 4}, denominator = {2, 2.5, 1.5, 1};
    ASSERT_EQ(polynomials.numerator.size(), numerator.size());
    ASSERT_EQ(polynomials.denominator.size(), denominator.size());
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(polynomials.numerator[i], numerator[i], 1e-13);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(polynomials.denominator[i], denominator[i], 1e-14);

    const Circuit empty;
    expect_golden(TEST_DATA "/exchange/known_function.txt",
                  "=== screen\n" + text_of(polynomial_lines({numerator, denominator, 1e6})) + "=== Matlab\n" +
                      transfer_text({.circuit = empty, .title = "A title", .transfer = &t},
                                    {.file_type = TransferFileType::matlab}) +
                      "=== poles and zeros\n" + text_of(pole_zero_lines(t, false, "A title")));
}

// A band-pass of degree 20 whose roots lie around 1 GHz: denormalised coefficients would not fit a double.
TEST(TransferPolynomials, OctaveEvaluatesTheMatlabTextAsTheRoots) {
    if (!has_program("octave-cli")) GTEST_SKIP() << "octave-cli is not installed";
    TransferFunction t;
    t.normFrequency = 2 * pi * 1e9;
    for (int i = 1; i <= 20; i += 2) {
        t.POLES_RE(i) = t.POLES_RE(i + 1) = -0.05e9 * i, t.POLES_IM(i) = 4e9 + 0.2e9 * i;
        t.POLES_IM(i + 1) = -t.POLES_IM(i);
    }
    t.poleCount = 20;
    t.zeroCount = 11;  // 9 at zero
    t.ZEROS_IM(10) = 2.5e9, t.ZEROS_IM(11) = -2.5e9;
    t.level = 1;
    t.level = 1 / std::abs(response(t, 5.5e9));
    const ScratchFolder folder;
    const Circuit empty;
    write_text("band.m", transfer_text({.circuit = empty, .title = "band", .transfer = &t},
                                       {.file_type = TransferFileType::matlab}));
    const ProgramRun run = run_program(
        "octave-cli --no-gui -q --eval \"evalc('band'); w = linspace(0.1, 2, 200); s = 1i*w;"
        " h = polyval(num, s)./polyval(denom, s); printf('%.17g %.17g %.17g\\n', [w*2*pi*fnorm; real(h); imag(h)]);\"");
    ASSERT_EQ(run.status, 0) << run.output;
    std::istringstream in(run.output);
    int rows = 0;
    for (double w, re, im; in >> w >> re >> im; ++rows) {
        const Sample expected = response(t, w);
        // Each coefficient is off by up to 5e-14 of itself (14 digits), and Octave rounds its sums to 1e-14; all are
        // positive, so the sum of their terms' magnitudes is the polynomial at the real frequency w.
        double cancellation_above = 1, cancellation_below = 1;
        for (int i = 1; i <= t.zeroCount; ++i) cancellation_above *= magnified(t.ZEROS_RE(i), t.ZEROS_IM(i), w);
        for (int i = 1; i <= t.poleCount; ++i) cancellation_below *= magnified(t.POLES_RE(i), t.POLES_IM(i), w);
        const double tolerance = 6e-14 * (cancellation_above + cancellation_below);
        EXPECT_LT(std::abs(Sample(re, im) - expected), tolerance * std::abs(expected)) << w;
    }
    EXPECT_EQ(rows, 200) << run.output;
}

struct RootsRequest {
    FormList<25, 2> zeros, poles;
    int unit = 1;
};
constexpr Column root_columns[] = {{"Real Part"}, {"Imaginary Part"}};
constexpr Choice unit_choices[] = {{"in  Hz", 1, Unit::frequency}, {"rad/sec", 2}};
constexpr Field root_fields[] = {list<&RootsRequest::zeros>("zeros", "Transmission zeros", root_columns),
                                 list<&RootsRequest::poles>("poles", "Poles", root_columns),
                                 radio<&RootsRequest::unit>("unit", "Unit", unit_choices)};

// The lists of a form without units are in Hz, those of one that chooses a unit in that one.
TEST(PoleZeroText, IsReadByListForms) {
    const ScratchFolder folder;
    write_text("lp.pz", text_of(pole_zero_lines(known_function(), false, "A title")));
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    UnitSet megahertz;
    megahertz.frequency_index = 3;
    settle_units(megahertz);
    const struct {
        std::size_t fields;
        int unit;
        double scale;
    } forms[] = {{2, 1, 1}, {3, 1, 1e-6}, {3, 2, 2 * pi}};
    for (const auto& [fields, unit, scale] : forms) {
        RootsRequest request;
        request.unit = unit;
        const Form form = form_of<RootsRequest>("ROOTS_DLG", "Roots", std::span(root_fields).first(fields), true);
        FormSheet sheet(form, &request, megahertz, reporter);
        for (std::size_t i = 0; i < 2; ++i) {
            window.files = {"lp.pz"};
            sheet.read_rows(i);
            EXPECT_EQ(window.boxes.back(), "Success:  *** Done ***");
        }
        EXPECT_EQ(request.zeros.rows, 1);
        EXPECT_DOUBLE_EQ(request.zeros(1, 2), 2e6 * scale);
        EXPECT_EQ(request.poles.rows, 2);
        EXPECT_DOUBLE_EQ(request.poles(2, 1), -2.5e5 * scale);
    }
}

// A reader of two-port files of its own: columns f, S11, S21, S12, S22 after the option line.
struct TwoPortFile {
    double R = 0;
    std::vector<std::array<double, 9>> rows;
    std::string comments;
};
TwoPortFile read_two_port(const std::string& text) {
    TwoPortFile file;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line[0] == '!') {
            file.comments += line + '\n';
        } else if (line[0] == '#') {
            EXPECT_EQ(line.substr(0, 14), "# HZ S RI R " + line.substr(12, 2));
            file.R = std::stod(line.substr(12));
        } else {
            std::array<double, 9> row{};
            std::istringstream numbers(line);
            for (double& x : row) EXPECT_TRUE(numbers >> x) << line;
            file.rows.push_back(row);
        }
    }
    return file;
}

// With the reference R on both sides and the load R at port 2, a source E behind Zs at port 1 gives
//     V2 = E R/(Zs + R) S21/(1 - S11 (Zs - R)/(Zs + R)),
// a current source I the load's current I S21/(1 - S11).
TEST(SParameters, GiveTheLossAndPhaseOfTheAnalysis) {
    int compared = 0;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        CircuitMaker maker(seed);
        const bool microwave = seed % 4 == 0;
        Circuit circuit =
            maker.circuit(microwave ? std::vector{inductor, capacitor, lc, unit_element}
                                    : std::vector{inductor, capacitor, lc, lattice_c, equalizer_a, triplet_clc},
                          6, seed % 3 != 0);
        circuit.fs = 2;
        if (microwave) circuit.kind = CircuitKind::microwave;
        const auto frequencies = linear_grid(0.01, 0.9, 40);
        const std::string text =
            transfer_text({.circuit = circuit, .title = "net", .frequencies = frequencies},
                          {.file_type = TransferFileType::touchstone, .dialect = TransferDialect::s_parameters});
        const TwoPortFile file = read_two_port(text);
        const double R1 = circuit.VALUE(1);
        Chain chain;
        ASSERT_EQ(prepare_chain(circuit, {}, chain), ChainVerdict::done);
        EXPECT_EQ(file.R, R1);
        EXPECT_GE(file.rows.size(), 38U);
        EXPECT_EQ(file.comments.find("renormalised") != std::string::npos, chain.R2 != 0) << file.comments;
        EXPECT_EQ(file.comments.find("Singly") != std::string::npos, chain.R2 == 0) << file.comments;
        for (const auto& row : file.rows) {
            ChainPoint point;
            if (!analyze_at(circuit, row[0], point)) continue;
            const Sample s11(row[1], row[2]), s21(row[3], row[4]), s22(row[7], row[8]);
            const Sample expected = 1.0 / Sample(static_cast<double>(point.H.v.re), static_cast<double>(point.H.v.im));
            Sample found;
            if (chain.R2 != 0) {
                const double Zs = chain.R2;
                const Sample V2 = R1 / (Zs + R1) * s21 / (1.0 - s11 * (Zs - R1) / (Zs + R1));
                found = 2 * std::sqrt(Zs / R1) * V2;
            } else {
                found = chain.loss_class == LossClass::voltage ? s21 / (1.0 + s11) : s21 / (1.0 - s11);
            }
            EXPECT_LT(std::abs(found - expected), 1e-9 * std::max(1.0, std::abs(expected))) << text;
            if (microwave) {
                EXPECT_NEAR(std::norm(s11) + std::norm(s21), 1, 1e-12);
                EXPECT_NEAR(std::norm(s22) + std::norm(s21), 1, 1e-12);
            }
            EXPECT_EQ(row[3], row[5]);
            ++compared;
        }
    }
    EXPECT_GT(compared, 12 * 36);
}

TEST(SParameters, CommentsNameTheTerminationsAndLosses) {
    const std::string single = "! Singly terminated: port 2 in 5e+01 ohm, port 1 driven by a ",
                      own = "! Both ports are normalised to the termination of port 2\n";
    const struct {
        std::string_view circuit;
        ElementLoss loss;
        std::string comments;
    } cases[] = {
        {"R 50 | L2 10u | R 50", {}, "! Terminations in ohm: port 1 5e+01, port 2 5e+01\n"},
        {"R 75 | L2 10u | R 50",
         {},
         "! Terminations in ohm: port 1 5e+01, port 2 7.5e+01\n"
         "! Both ports are renormalised to the termination of port 2\n"},
        {"R 50 | L2 10u", {.QL = 100}, single + "voltage\n" + own + "! Inductor Q 1e+02, capacitor Q 0e+00\n"},
        {"R 50 | C3 1n", {.QC = 250}, single + "current\n" + own + "! Inductor Q 0e+00, capacitor Q 2.5e+02\n"}};
    for (const auto& c : cases) {
        const TransferInput input{.circuit = circuit(c.circuit), .title = " net", .frequencies = {}, .loss = c.loss};
        const std::string text =
            transfer_text(input, {.file_type = TransferFileType::touchstone, .dialect = TransferDialect::s_parameters});
        EXPECT_EQ(read_two_port(text).comments,
                  "! net\n! Port 1: source, port 2: load\n" + c.comments + "! frequency, S11, S21, S12, S22\n");
    }
}

}  // namespace
}  // namespace kavrel
