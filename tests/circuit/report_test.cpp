// Drawings, lists and tables of one circuit of each kind, against texts that were read line by line.
#include <cmath>
#include <memory>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

#include "circuit/drawing.h"
#include "circuit/element_formulas.h"
#include "circuit/element_statistics.h"
#include "circuit/listing.h"
#include "circuit/parts_list.h"
#include "circuit/performance_table.h"
#include "tests/circuit/random_circuits.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

using enum BranchId;
using testing::CircuitMaker;

const std::string goldens = TEST_DATA "/circuit/";

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

// Value i of a branch: 1, 2, 3, ... in mH, nF or ohm, so that each row says which cell it shows.
std::vector<double> counting_values(const BranchKind& kind, bool microwave) {
    std::vector<double> values;
    for (const char letter : kind.cells) {
        const double n = static_cast<double>(values.size() + 1);
        values.push_back(microwave       ? (letter == 'C' ? 1 / n : n)
                         : letter == 'L' ? n * 1e-3
                         : letter == 'C' ? n * 1e-9
                                         : n);
    }
    return values;
}

Quadruplet counting_quadruplet() {
    Quadruplet q;
    int n = 0;
    for (int i = 1; i <= 4; ++i) {
        for (int j = i + 1; j <= 4; ++j) {
            ++n;
            q.M(i, j) = n % 2;
            (n % 2 == 1 ? q.XK(i, j) : q.XC(i, j)) = n % 2 == 1 ? 1 / (n * 1e-3) : n * 1e-9;
        }
    }
    q.YK(2) = 1 / 7e-3;
    q.YC(2) = 8e-9;
    q.YC(3) = 1e-8;  // no inductor at node 3
    q.FRES(1) = 12000;
    q.FRES(2) = 34000;
    return q;
}

// Branches of all kinds that a circuit of this sort may have, slot elements in both slots.
Circuit circuit_of_kinds(BranchId first, BranchId last, bool microwave) {
    Circuit circuit;
    circuit.kind = microwave ? CircuitKind::microwave : CircuitKind::lumped;
    circuit.fa = 9e3;
    circuit.fb = 11e3;
    circuit.fnorm = 1e4;
    circuit.fs = microwave ? 2e9 : 0;
    int k = 1;
    EXPECT_EQ(insertBranch(circuit, k, 50, 0, resistor), CircuitVerdict::done);
    for (const BranchKind& kind : branch_kinds) {
        if (kind.id < first || kind.id > last) continue;
        const auto values = counting_values(kind, microwave);
        for (int parity = 0; parity < (kind.slot_element() ? 2 : 1); ++parity) {
            k = circuit.klast + (circuit.klast % 2 == parity ? 2 : 1);
            const auto verdict = kind.id == quadruplet ? insert_quadruplet(circuit, k, counting_quadruplet())
                                                       : insert_values(circuit, k, kind.id, values);
            EXPECT_EQ(verdict, CircuitVerdict::done);
        }
    }
    k = circuit.klast % 2 == 1 ? circuit.klast + 2 : circuit.klast + 1;
    EXPECT_EQ(insertBranch(circuit, k, 75, 0, resistor), CircuitVerdict::done);
    return circuit;
}

std::vector<std::string> all_reports(const Circuit& circuit, const UnitSet& units, bool half_lattices) {
    std::vector<std::string> lines = showCircuit(circuit, 1, units);
    append(lines, listCircuit(circuit));
    append(lines, partsList(circuit, half_lattices, units));
    ElementStatistics statistics;
    EXPECT_TRUE(elementStatistics(circuit, statistics));
    append(lines, statistics_lines(statistics, circuit.kind, units));
    return lines;
}

TEST(Reports, GoldenTexts) {
    const struct {
        const char* name;
        BranchId first, last;
        bool microwave, half_lattices;
    } texts[] = {
        {"plain", resistor, lc, false, false},
        {"compound", bridged_l, twin_t_trap, false, false},
        {"lattices", lattice_c, equalizer_b, false, true},
        {"coupled", triplet_lll, quadruplet, false, false},
        {"microwave", resistor, lc, true, false},
        {"microwave_sections", unit_element, lcl, true, false},
    };
    for (const auto& [name, first, last, microwave, half_lattices] : texts) {
        const Circuit made = circuit_of_kinds(first, last, microwave);
        expect_golden(goldens + name + ".txt", text_of(all_reports(made, UnitSet{}, half_lattices)));
    }
}

TEST(Reports, UnitsAndEmptyCircuits) {
    UnitSet units;
    units.frequency_index = 2;
    units.inductor_index = 3;
    units.capacitor_index = 4;
    settle_units(units);
    const auto lines = showCircuit(circuit_of_kinds(lc, lc, false), 2, units);
    ASSERT_EQ(lines.size(), 6u);  // from branch 2 on: 3 rows in series, 2 across, the source
    EXPECT_EQ(lines[1], "  2 │     L  C     1000.000000 uH     112.539540 KHz  res. frequency");

    const Circuit none;
    EXPECT_TRUE(showCircuit(none, 1, units).empty());
    EXPECT_EQ(listCircuit(none), std::vector<std::string>{" no circuit"});
    ElementStatistics statistics;
    EXPECT_FALSE(elementStatistics(none, statistics));
}

// Two like arms of a lattice are two parts; what a triplet leaves out is none.
TEST(Reports, CountsOfParts) {
    EXPECT_EQ(list_parts(circuit_of_kinds(lattice_c, lattice_c, false), false).size(), 2u + 12u);
    Circuit made = circuit_of_kinds(triplet_lll, triplet_lll, false);
    made.VALUE(unpackBranch(made, 4).i1 + 2) = absent_inductor;
    EXPECT_EQ(list_parts(made, false).size(), 2u + 4u);
    ElementStatistics statistics;
    ASSERT_TRUE(elementStatistics(made, statistics));
    EXPECT_EQ(statistics.inductors.count, 3);
    EXPECT_EQ(statistics.inductors.maximum, 5e-3);
}

TEST(Reports, PerformanceTable) {
    Circuit circuit = circuit_of_kinds(lc, lc, false);
    std::vector<double> frequencies;
    for (int i = 0; i < 60; ++i) frequencies.push_back(80e3 + 1e3 * i);
    auto performance = std::make_unique<Performance>();
    ASSERT_EQ(testing::analyse_unwatched(circuit, {.frequencies = frequencies}, *performance), ChainVerdict::done);
    std::vector<std::string> lines = performance_lines(*performance, "A trap and a shunt resonator");

    int k = circuit.klast;
    ASSERT_EQ(deleteBranch(circuit, k), CircuitVerdict::done);
    frequencies = {1e4, 1.00001e4};
    ASSERT_EQ(
        testing::analyse_unwatched(
            circuit, {.frequencies = frequencies, .radians = true, .loss = {.QL = 100, .QC = -200}}, *performance),
        ChainVerdict::done);
    append(lines, performance_lines(*performance, std::string(90, 'x')));
    k = circuit.klast + 1;
    ASSERT_EQ(insertBranch(circuit, k, 1e-3, 0, inductor), CircuitVerdict::done);
    ASSERT_EQ(testing::analyse_unwatched(circuit, {.frequencies = frequencies, .radians = true}, *performance),
              ChainVerdict::done);
    append(lines, performance_lines(*performance, "Driven by a voltage"));
    expect_golden(goldens + "performance.txt", text_of(lines));
    for (const std::string& line : lines) EXPECT_LE(line.size(), 80u);
}

// The stepped stub that a report names has the impedance of the branch, at any value of the variable.
TEST(Reports, StubSections) {
    CircuitMaker make(21);
    for (const BranchId id : {lc, lcc, lcl}) {
        for (int trial = 0; trial < 200; ++trial) {
            const bool series = trial % 2 == 0;
            const auto values = make.values(id);
            const StubSection section = stub_section(branch_kinds[id], values, series);
            const double t = make.uniform(0.1, 4);  // tan(theta), the variable being j t
            ElementPoint point;
            point.inductor = point.capacitor = {{0, t}, {0, 1}};
            Jet branch;
            const auto verdict = series ? series_impedance(branch_kinds[id], values, point, branch)
                                        : shunt_admittance(branch_kinds[id], values, point, branch);
            ASSERT_EQ(verdict, PointVerdict::computed);
            if (!series) branch = reciprocal(branch);

            // X of a reactance jX; a line turns it into z (X + z t)/(z - X t).
            const auto line = [t](double z, double X) { return z * (X + z * t) / (z - X * t); };
            const auto stub = [&](double z) { return section.open ? -z / t : z * t; };
            double X = line(section.z1, stub(section.z2));
            if (id != lc) X = line(section.z1, line(section.z2, stub(section.z3)));
            EXPECT_NEAR(X, static_cast<double>(branch.v.im), 1e-9 * (1 + X * X)) << branch_kinds[id].name << series;
            EXPECT_GT(section.z1, 0);
            EXPECT_GT(section.z2, 0);
        }
    }
}

// At its zero a triplet lets nothing through, and nowhere near it.
TEST(Reports, TripletZeros) {
    CircuitMaker make(22);
    int found = 0;
    for (const BranchKind& kind : branch_kinds) {
        if (kind.structure != Structure::triplet) continue;
        for (int trial = 0; trial < 50; ++trial) {
            const auto values = make.values(kind.id);
            std::array<double, 2> zeros{};
            const int count = triplet_zeros(kind, values, zeros);
            for (int i = 0; i < count; ++i) {
                const auto transfer = [&](double f) {
                    ElementPoint point;
                    const Wide omega = 2 * std::numbers::pi_v<Wide> * f;
                    (void)element_point(Circuit{}, {}, omega, point);
                    PiArms arms;
                    if (network_arms(kind, values, point, arms) != PointVerdict::computed) return 0.0L;
                    return std::sqrt(1 / squared_magnitude(arms.ZB.v));
                };
                const double zero = zeros[static_cast<std::size_t>(i)];
                EXPECT_LT(transfer(zero), 1e-6L * transfer(zero * 1.3)) << kind.cells;
                ++found;
            }
        }
    }
    EXPECT_GT(found, 200);
}

TEST(Reports, ResonanceOfStubs) {
    Circuit circuit;
    EXPECT_NEAR(resonant_frequency(circuit, 1e-3, 1e-9), 159154.943, 1e-3);
    EXPECT_EQ(resonant_frequency(circuit, -1, 1), 0);
    circuit.kind = CircuitKind::microwave;
    circuit.fs = 2e9;
    EXPECT_NEAR(resonant_frequency(circuit, 1, 1), 0.5e9, 1);  // tan = 1 halfway to the quarter-wave frequency
}

}  // namespace
}  // namespace kavrel
