// The ngspice text, run unedited, against the analysis.
#include <map>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "circuit/parts_list.h"
#include "shell/edit.h"
#include "tests/exchange/exchange_helpers.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

using namespace testing;
using enum BranchId;

struct Net {
    std::string name;
    Circuit circuit;
    double low, high;
    bool half_lattices = false;
};

Circuit scaled(Circuit circuit, double R, double f) {
    for (int k = 1; k != 0; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        const auto values = branch_values(circuit, branch);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const char letter = branch_kinds[branch.id].cells[i];
            if (std::fabs(values[i]) >= absent_inductor) continue;
            values[i] *= letter == 'L' ? R / (2 * pi * f) : letter == 'C' ? 1 / (R * 2 * pi * f) : R;
        }
    }
    for (int i = 1; i <= circuit.quadruplet_count; ++i) {
        Quadruplet& q = circuit.QUADRUPLETS(i);
        for (double& x : q.XK.cells) x *= 2 * pi * f / R;
        for (double& x : q.XC.cells) x /= R * 2 * pi * f;
        for (int j = 2; j <= 3; ++j) q.YK(j) *= 2 * pi * f / R, q.YC(j) /= R * 2 * pi * f;
    }
    circuit.fnorm = f;
    return circuit;
}

std::vector<Net> nets() {
    std::vector<Net> all;
    const std::vector<BranchId> plain = {resistor, inductor, capacitor, lc, lcc, lcl};
    // A ladder of degree 30, alternating coils and capacitors as a low-pass has them.
    CircuitMaker maker(11);
    for (const bool source : {true, false}) {
        for (const int count : {5, 12, 30}) {
            Circuit ladder = circuit("R 1");
            for (int i = 1; i <= count; ++i) {
                append_literal(ladder, fmt::format("{}{} {}", i % 2 == 1 ? 'L' : 'C', i + 1, maker.uniform(0.8, 2)));
            }
            if (source) append_literal(ladder, "R 1.5");
            all.push_back({"low-pass", scaled(ladder, 50, 1e6), 1e4, 1.5e6});
            if (!source) {
                int last = ladder.klast;
                (void)deleteBranch(ladder, last);
                all.push_back({"low-pass of the other end", scaled(ladder, 600, 1e3), 10, 1500});
            }
        }
    }
    for (unsigned seed = 1; seed <= 6; ++seed) {
        CircuitMaker random(seed);
        random.negative_share = seed % 2 == 0 ? 0.2 : 0;
        all.push_back({"ladder", scaled(random.circuit(plain, 8, seed % 3 != 0), 75, 1e5), 1e3, 3e5});
    }
    for (const BranchKind& kind : branch_kinds) {
        if (kind.simple()) continue;
        const int id = static_cast<int>(kind.id);
        CircuitMaker random(static_cast<unsigned>(100 + id));
        const bool lattice = kind.structure == Structure::lattice;
        for (const bool half : {false, true}) {
            if (half && !lattice) continue;
            Circuit circuit = random.circuit({kind.id}, 1, id % 3 != 0);
            all.push_back({"kind " + std::to_string(id), scaled(circuit, 300, 2e4), 100, 6e4, half});
            circuit = random.circuit({kind.id, inductor, capacitor}, 6, true);
            all.push_back({"kinds with " + std::to_string(id), scaled(circuit, 1e3, 2e4), 100, 6e4, half});
        }
    }
    for (unsigned seed = 1; seed <= 8; ++seed) {
        CircuitMaker random(40 + seed);
        Circuit circuit =
            random.circuit({inductor, capacitor, lc, unit_element, unit_element, lcc, lcl}, 7, seed % 3 != 0);
        circuit.kind = CircuitKind::microwave;
        circuit.fs = 4e9;
        all.push_back({"microwave", circuit, 1e7, 1.97e9});
    }
    return all;
}

TEST(Ngspice, RunsTheNetlistAndAgreesWithTheAnalysis) {
    if (!has_program("ngspice")) GTEST_SKIP() << "ngspice is not installed";
    const ScratchFolder folder;
    double worst_loss = 0, worst_phase = 0;
    int compared = 0;
    for (const Net& net : nets()) {
        const auto frequencies = linear_grid(net.low, net.high, 200);
        const TransferInput input{.circuit = net.circuit, .title = net.name, .frequencies = frequencies};
        const std::string text = transfer_text(input, {.file_type = TransferFileType::spice,
                                                       .dialect = TransferDialect::ngspice,
                                                       .half_lattices = net.half_lattices});
        EXPECT_TRUE(text.starts_with("* " + net.name + "\n")) << text;
        write_text("net.cir", text);
        const ProgramRun run = run_program("ngspice -b net.cir");
        const auto rows = printed_rows(run.output);
        ASSERT_EQ(rows.size(), frequencies.size()) << net.name << "\n" << text << run.output;
        for (const PrintedRow& row : rows) {
            ChainPoint point;
            if (!analyze_at(net.circuit, row.f, point)) continue;
            const double loss = std::fabs(row.decibels + static_cast<double>(point.loss));
            const double phase = std::fabs(turned(row.degrees - static_cast<double>(point.phase)));
            EXPECT_LT(loss, 1e-4) << net.name << " at " << row.f << "\n" << text;
            EXPECT_LT(phase, 1e-3) << net.name << " at " << row.f;
            if (!(loss < 1e-4) || !(phase < 1e-3)) break;
            worst_loss = std::max(worst_loss, loss);
            worst_phase = std::max(worst_phase, phase);
            ++compared;
        }
    }
    EXPECT_GT(compared, 190 * static_cast<int>(nets().size()));
    RecordProperty("worst_loss_dB", std::to_string(worst_loss));
    RecordProperty("worst_phase_degrees", std::to_string(worst_phase));
}

TEST(Ngspice, ASweepFromZeroPrintsDecibels) {
    if (!has_program("ngspice")) GTEST_SKIP() << "ngspice is not installed";
    const ScratchFolder folder;
    const auto frequencies = linear_grid(0, 4e5, 5);
    for (const auto& [net, blocks] : {std::pair{"R 50 | L2 100u | R 50", false},
                                      {"R 50 | C2 10n | R 50", true},
                                      {"R 50 | L3 100u | R 50", true},
                                      {"R 50 | C3 10n | R 50", false}}) {
        const Circuit made = circuit(net);
        write_text("net.cir",
                   transfer_text({.circuit = made, .frequencies = frequencies},
                                 {.file_type = TransferFileType::spice, .dialect = TransferDialect::ngspice}));
        const auto rows = printed_rows(run_program("ngspice -b net.cir").output);
        ASSERT_EQ(rows.size(), frequencies.size()) << net;
        EXPECT_EQ(rows[0].decibels < -1000, blocks) << net;
        for (std::size_t i = 1; i < rows.size(); ++i) {
            EXPECT_DOUBLE_EQ(rows[i].f, frequencies[i]);
            EXPECT_GT(rows[i].decibels, -40);
        }
    }
}

TEST(Ngspice, ElementsBearTheNamesOfThePartsList) {
    CircuitMaker maker(5);
    const Circuit circuit = maker.circuit(
        {inductor, lc, twin_t_trap, lattice_c, equalizer_a, equalizer_b, triplet_lll, quadruplet}, 8, true);
    ASSERT_TRUE(has_lattices(circuit));
    for (const bool half : {false, true}) {
        std::istringstream in(transfer_text(
            {circuit},
            {.file_type = TransferFileType::spice, .dialect = TransferDialect::ngspice, .half_lattices = half}));
        std::string names, expected;
        std::getline(in, names);
        names.clear();
        for (std::string line; std::getline(in, line);) {
            if (std::string_view("rlc").find(line[0]) != std::string_view::npos) names += line.substr(0, 3);
        }
        std::map<char, int> numbers;
        for (const CircuitPart& part : list_parts(circuit, half)) {
            expected += part.letter + edit_i(part.number, 2, 2);
            EXPECT_EQ(part.number, ++numbers[part.letter]);
        }
        EXPECT_EQ(names, expected);
    }
}

}  // namespace
}  // namespace kavrel
