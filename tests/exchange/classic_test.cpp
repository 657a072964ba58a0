// The classic texts: word for word, and as the circuits that they describe.
#include <numbers>

#include <gtest/gtest.h>

#include "tests/exchange/exchange_helpers.h"
#include "tests/exchange/netlist_solver.h"
#include "tests/support/circuit_literal.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

using namespace testing;
using enum BranchId;

constexpr std::string_view title = "Every branch kind";

// Branches of all kinds with the values 1.1, 1.2, ... in the order of the cells, times the unit of their letter; the
// kinds that are elements of a slot are in both.
Circuit every_kind(CircuitKind kind) {
    const bool lumped = kind == CircuitKind::lumped;
    Circuit made;
    made.kind = kind;
    made.fnorm = 1e6;
    made.fs = 3e9;
    int k = 1, cell = 0;
    const auto append = [&](BranchId id, int parity) {
        std::vector<double> values;
        for (const char letter : branch_kinds[id].cells) {
            const double unit = letter == 'L' ? 1e-6 : letter == 'C' ? 1e-9 : 100;
            values.push_back((1 + 0.1 * (++cell % 9)) * (lumped ? unit : 1));
        }
        k = made.klast + 1;
        if (k % 2 != parity) ++k;
        EXPECT_EQ(insert_values(made, k, id, values), CircuitVerdict::done);
    };
    append(resistor, 1);
    for (const BranchKind& branch : branch_kinds) {
        const bool line = branch.structure == Structure::line;
        if (branch.id == quadruplet || (lumped ? line : !line && !branch.slot_element())) continue;
        append(branch.id, 0);
        if (branch.slot_element()) append(branch.id, 1);
    }
    if (lumped) {
        // A tee of coils that only coupled ones can be, and a triplet that leaves out two of its elements.
        append_literal(made, "triplet:LLLCL -200n 4u 1u 0 1.5u");
        append_literal(made, "triplet:LCLCC 2u 1n 1e30 0 -3n");
        Quadruplet q;
        q.M(1, 2) = q.M(3, 4) = q.M(1, 4) = 1;
        q.XK(1, 2) = 1e6, q.XK(3, 4) = 1.25e6, q.XK(1, 4) = 0.2e6;
        q.XC(2, 3) = 2e-9, q.XC(1, 3) = 0.5e-9;
        q.YK(2) = 0.5e6, q.YC(2) = 1e-9, q.YC(3) = 2e-9;
        k = made.klast + 2;
        EXPECT_EQ(insert_quadruplet(made, k, q), CircuitVerdict::done);
    }
    append(resistor, 1);
    return made;
}

Circuit by_voltage() { return circuit("R 50 | L2 10u | C3 1n | L4 10u"); }
Circuit by_current() { return circuit("R 50 | L2 10u | C3 1n | L4 10u | C5 1n"); }

struct ClassicCase {
    std::string name;
    Circuit circuit;
    TransferRequest request;
};

std::vector<ClassicCase> classic_cases() {
    std::vector<ClassicCase> cases;
    const Circuit lumped = every_kind(CircuitKind::lumped), microwave = every_kind(CircuitKind::microwave);
    for (const TransferTypeRow& type : transfer_types) {
        if (type.file_type == TransferFileType::matlab) continue;
        const std::string label(type.label);
        cases.push_back({label, lumped, {.file_type = type.file_type}});
        if (type.texts[0].lines) cases.push_back({label + ", microwave", microwave, {.file_type = type.file_type}});
        if (type.file_type == TransferFileType::pcfilt) continue;
        cases.push_back({label + ", half-lattices", lumped, {.file_type = type.file_type, .half_lattices = true}});
    }
    cases.push_back(
        {"Touchstone, variables", by_voltage(), {.file_type = TransferFileType::touchstone, .variable_block = true}});
    cases.push_back({"Spice, driven by a voltage", by_voltage(), {.file_type = TransferFileType::spice}});
    cases.push_back({"Spice, driven by a current", by_current(), {.file_type = TransferFileType::spice}});
    return cases;
}

const std::string golden_file = TEST_DATA "/exchange/classic_texts.txt";

TEST(ClassicTexts, EqualTheirGoldenTexts) {
    const auto frequencies = linear_grid(0, 2e6, 201);
    std::string all;
    for (const ClassicCase& c : classic_cases()) {
        const TransferInput input{.circuit = c.circuit, .title = title, .frequencies = frequencies};
        all += "=== " + c.name + "\n" + transfer_text(input, c.request);
    }
    expect_golden(golden_file, all);
}

TEST(ClassicTexts, HoldTheLinesThatFortranWrites) {
    const std::string golden = read_text(golden_file);
    std::istringstream in(read_text(TEST_DATA "/exchange/told_lines.txt"));
    std::string section;
    int lines = 0;
    for (std::string line; std::getline(in, line);) {
        const std::string whole_line = '\n' + line + '\n';
        if (line.starts_with("=== ")) {
            const auto from = golden.find(whole_line);
            ASSERT_NE(from, std::string::npos) << line;
            section = golden.substr(from, golden.find("\n=== ", from + 1) - from + 1);
        } else if (!line.starts_with("#")) {
            EXPECT_NE(section.find(whole_line), std::string::npos) << section.substr(0, section.find('\n', 1)) << line;
            ++lines;
        }
    }
    EXPECT_EQ(lines, 48);
}

// The texts hold 6 to 8 digits of each value; circuits of a few branches do not magnify their rounding by more than a
// few hundred. Ideal transformers of Spice are coils of a reactance 1e6 times the load at the normalisation frequency.
void expect_described(const Circuit& circuit, const NetworkReader& net, double R1, double R2, double tolerance,
                      const std::string& text) {
    EXPECT_EQ(net.foreign, 0) << text;
    for (const double f : {0.05, 0.11, 0.2, 0.37}) {
        ChainPoint point;
        if (!analyze_at(circuit, f, point)) continue;
        const LongComplex analysed = 1.0L / LongComplex(point.H.v.re, point.H.v.im);
        EXPECT_LT(static_cast<double>(std::abs(net.transmission(f, R1, R2) - analysed)), tolerance) << f << "\n"
                                                                                                    << text;
    }
}

TEST(ClassicTexts, DescribeTheCircuit) {
    for (const BranchKind& kind : branch_kinds) {
        if (kind.id == unit_element) continue;
        for (unsigned seed = 1; seed <= 4; ++seed) {
            CircuitMaker maker(1000 * seed + static_cast<unsigned>(kind.id));
            const Circuit circuit = maker.circuit({kind.id, inductor, capacitor, lc}, 4, true);
            const double R1 = circuit.VALUE(1), R2 = circuit.VALUE(circuit.ilast);
            for (const bool half : {false, true}) {
                for (const TransferFileType type :
                     {TransferFileType::scompact, TransferFileType::touchstone, TransferFileType::sstar}) {
                    const std::string text = transfer_text({circuit}, {.file_type = type, .half_lattices = half});
                    const double tolerance = type == TransferFileType::sstar ? 2e-4 : 2e-5;
                    expect_described(circuit, read_classic(text), R1, R2, tolerance, text);
                }
                const std::string text =
                    transfer_text({circuit}, {.file_type = TransferFileType::spice, .half_lattices = half});
                const SpiceReader spice = read_spice(text);
                expect_described(circuit, spice.net, spice.R1, spice.R2, 1e-4, text);
            }
        }
    }
}

TEST(ClassicTexts, TerminationsAloneAreACircuit) {
    const Circuit straight = circuit("R 50 | R 75");
    const std::string text = transfer_text({straight}, {.file_type = TransferFileType::spice});
    expect_described(straight, read_spice(text).net, 50, 75, 1e-5, text);
}

// A tee of coils with a negative arm: the coupling has four digits in SStar, seven in Spice.
TEST(ClassicTexts, CoupledCoilsAreTheTee) {
    const Circuit tee = circuit("R 1 | triplet:LCLCL3 -0.4 0.7 1 0 1.9 | R 1.5");
    const std::string sstar = transfer_text({tee}, {.file_type = TransferFileType::sstar});
    EXPECT_NE(sstar.find(" mui "), std::string::npos);
    expect_described(tee, read_classic(sstar), 1, 1.5, 1e-3, sstar);
    const std::string spice = transfer_text({tee}, {.file_type = TransferFileType::spice});
    EXPECT_NE(spice.find(" k04"), std::string::npos) << spice;
    expect_described(tee, read_spice(spice).net, 1, 1.5, 1e-5, spice);
}

TEST(ClassicTexts, AVariablePairHasBothValues) {
    const Circuit trap = circuit("R 50 | LC2 1u 1n | R 50");
    const std::string text = transfer_text({trap}, {.file_type = TransferFileType::touchstone, .variable_block = true});
    EXPECT_NE(text.find("\n   plc    1   2    l= 1.0000000E-06   c= 1.0000000E-09   ! l01 c01 \n"), std::string::npos)
        << text;
}

// 2 V behind R1 into a short circuit at the other end: by reciprocity the current is 2/(R1 H).
TEST(ClassicTexts, SpiceOfACircuitDrivenByAVoltagePrintsItsCurrent) {
    const Circuit driven = by_voltage();
    const SpiceReader spice = read_spice(transfer_text({driven}, {.file_type = TransferFileType::spice}));
    EXPECT_EQ(spice.print, " .print ac idb( 3, 0) ip( 3, 0)");
    NetworkReader net = spice.net;
    constexpr double small = 1e-6;  // in place of the short circuit
    net.port1 = 2, net.port2 = 99;
    for (auto& arm : net.arms) {
        if (arm.to == 0 && arm.from == 3 && arm.L != 0) arm.to = 99;
    }
    for (const double f : {1e5, 1e6, 3e6}) {
        ChainPoint point;
        ASSERT_TRUE(analyze_at(driven, f, point));
        // transmission() is V2 sqrt(R1/R2) for 2 V, and the current V2/R2.
        const LongComplex current = net.transmission(f, 50, small) / std::sqrt(static_cast<long double>(50 * small));
        const LongComplex expected = 2.0L / (50.0L * LongComplex(point.H.v.re, point.H.v.im));
        EXPECT_LT(static_cast<double>(std::abs(current / expected - 1.0L)), 1e-5) << f;
    }
}

TEST(TransferFile, RefusesWhatATypeCannotCarry) {
    Circuit circuit = every_kind(CircuitKind::microwave);
    std::string text = "kept";
    const auto verdict = [&](TransferFileType type, TransferDialect dialect = TransferDialect::classic) {
        return write_transfer_file({circuit}, {.file_type = type, .dialect = dialect}, text);
    };
    EXPECT_EQ(verdict(TransferFileType::spice), TransferVerdict::microwave_refused);
    EXPECT_EQ(verdict(TransferFileType::sstar, TransferDialect::ngspice), TransferVerdict::microwave_refused);
    EXPECT_EQ(message_of(TransferVerdict::microwave_refused), "Microwave filter, file type is not available");
    EXPECT_EQ(verdict(TransferFileType::matlab), TransferVerdict::no_data);
    EXPECT_EQ(verdict(TransferFileType{7}), TransferVerdict::no_such_type);
    circuit.kind = CircuitKind::wave_digital;
    EXPECT_EQ(verdict(TransferFileType::touchstone, TransferDialect::s_parameters), TransferVerdict::microwave_refused);

    CircuitMaker maker(3);
    circuit = maker.circuit({lattice_c}, 5, true);
    EXPECT_TRUE(has_lattices(circuit));
    EXPECT_EQ(verdict(TransferFileType::touchstone), TransferVerdict::too_many_lattices);
    EXPECT_EQ(message_of(TransferVerdict::too_many_lattices), "Too many lattices, file may not be written");
    circuit.INDX1(unpackBranch(circuit, 1).kn) = 0;
    EXPECT_EQ(verdict(TransferFileType::spice), TransferVerdict::internal_error) << "a broken chain";
    circuit = maker.circuit({inductor, capacitor, lc}, 40, true);
    EXPECT_FALSE(has_lattices(circuit));
    circuit.VALUE(3) = std::nan("");
    EXPECT_EQ(verdict(TransferFileType::scompact), TransferVerdict::internal_error);
    circuit = {};
    EXPECT_EQ(verdict(TransferFileType::pcfilt), TransferVerdict::no_data);
    EXPECT_EQ(text, "kept");
}

TEST(TransferFile, NodesBeyondTheirFieldAreAnInternalErrorAndStarsInATitleAreNot) {
    Circuit wide = circuit("R 1");
    for (int i = 0; i < 21; ++i) append_literal(wide, "compound:LCCLCCL 1 1 1 1 1 1 1");
    std::string text;
    const TransferInput input{.circuit = wide, .title = "** mine **"};
    const TransferRequest request{.file_type = TransferFileType::touchstone};
    EXPECT_EQ(write_transfer_file(input, request, text), TransferVerdict::written);
    for (int i = 0; i < max_quadruplets; ++i) ASSERT_TRUE(CircuitMaker(1).append(wide, quadruplet));
    EXPECT_EQ(write_transfer_file(input, request, text), TransferVerdict::written) << "elements have four digits";
    append_literal(wide, "LC 1 1");
    for (const char* words : {"** mine **", "", "c", "***", "C **"}) {
        EXPECT_EQ(write_transfer_file({.circuit = wide, .title = words}, request, text),
                  TransferVerdict::internal_error)
            << "pairs have two, whatever the title: " << words;
    }
}

TEST(TransferFile, NamesAndFrequencies) {
    EXPECT_EQ(transfer_file_name("lp.qfp", {.file_type = TransferFileType::matlab}), "lp.m");
    EXPECT_EQ(transfer_file_name("lp", {.file_type = TransferFileType::spice, .dialect = TransferDialect::ngspice}),
              "lp.ckt");
    EXPECT_EQ(transfer_file_name("lp.ckt",
                                 {.file_type = TransferFileType::scompact, .dialect = TransferDialect::s_parameters}),
              "lp.s2p");
    FrequencyGrid grid;
    grid.count = 2;
    grid.radians = true;
    grid.frequencies(1) = 1000.1, grid.frequencies(2) = 3e9;
    const double turn = 2 * std::numbers::pi;
    EXPECT_EQ(frequencies_in_hertz(grid), (std::vector<double>{1000.1 / turn, 3e9 / turn}));
}

}  // namespace
}  // namespace kavrel
