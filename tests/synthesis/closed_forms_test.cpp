// All-pole ladders against their closed forms, degrees 1 to 50.
#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

struct ClosedForm {
    std::string kind;
    int degree = 0;
    double ratio = 0;
    std::vector<double> g;
};

std::vector<ClosedForm> closed_forms() {
    std::ifstream file(std::string(TEST_DATA) + "/synthesis/all_pole_ladders.txt");
    std::vector<ClosedForm> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        std::istringstream words(line);
        ClosedForm row;
        words >> row.kind >> row.degree >> row.ratio;
        for (double v = 0; words >> v;) row.g.push_back(v);
        rows.push_back(row);
    }
    return rows;
}

FilterSpec request_of(const ClosedForm& row, double load) {
    FilterSpec s = all_pole(low_pass, row.kind == "flat" ? maximally_flat : equal_ripple, row.degree);
    s.bandEdgeLoss = 0.1;
    s.sourceResistance = 75;
    s.loadResistance = load;
    return s;
}

// Branches in order from one end, normalised to that end's resistor.
struct Reading {
    std::vector<long double> g;
    bool kinds_in_turn = true;  // series L and shunt C
    double ratio = 0;  // closed form that the ladder has to be: far over near resistor, inverse for a shunt C first
};
Reading reading_of(const LadderRun& run, bool from_source) {
    const long double w = 2 * std::numbers::pi_v<long double> * run.design.xp.normFrequency;
    const Circuit& circuit = run.circuit;
    const double near = from_source ? circuit.R2 : circuit.R1;
    const double far = from_source ? circuit.R1 : circuit.R2;
    Reading reading;
    bool series = false;
    int k = from_source ? circuit.klast : 1;
    for (;;) {
        k = from_source ? unpackBranch(circuit, k).kp : unpackBranch(circuit, k).kn;
        if (k == 0) break;
        const Branch branch = unpackBranch(circuit, k);
        if (branch.id == BranchId::resistor) break;
        const long double value = circuit.VALUE(branch.i1);
        if (reading.g.empty()) series = k % 2 == 0;
        const bool in_turn = (reading.g.size() % 2 == 0) == (series == (k % 2 == 0));
        reading.kinds_in_turn =
            reading.kinds_in_turn && in_turn && branch.id == (k % 2 == 0 ? BranchId::inductor : BranchId::capacitor);
        reading.g.push_back(branch.id == BranchId::inductor ? value * w / near : value * w * near);
    }
    reading.ratio = series ? far / near : near / far;
    return reading;
}

double deviation(const Reading& reading, const ClosedForm& row) {
    if (!reading.kinds_in_turn || reading.g.size() != row.g.size()) return 1e9;
    long double worst = 0;
    for (std::size_t i = 0; i < row.g.size(); ++i) worst = std::fmax(worst, std::fabs(reading.g[i] / row.g[i] - 1));
    return static_cast<double>(worst);
}

#ifdef __SANITIZE_ADDRESS__
constexpr bool under_sanitizers = true;
#else
constexpr bool under_sanitizers = false;
#endif

// Above degree 16 one row a degree, its kinds by turns.
std::vector<ClosedForm> rows_to_check(const std::vector<ClosedForm>& all) {
    std::map<int, int> of_degree, seen;
    for (const ClosedForm& row : all) ++of_degree[row.degree];
    std::vector<ClosedForm> taken;
    for (const ClosedForm& row : all) {
        const int place = seen[row.degree]++;
        // The numbers are the same under sanitizers, and take ten times as long.
        const bool turn = place == row.degree / 2 % of_degree[row.degree];
        if (under_sanitizers ? row.degree % 7 == 1 : row.degree <= 16 || turn) taken.push_back(row);
    }
    return taken;
}

TEST(ClosedForms, ElementValuesOfAllPoleLadders) {
    const std::vector<ClosedForm> all = closed_forms();
    ASSERT_GT(all.size(), 340u);
    const std::vector<ClosedForm> rows = rows_to_check(all);
    double worst = 0;
    std::set<int> degrees;
    std::set<std::pair<std::string, double>> kinds;  // of the larger ones
    for (const ClosedForm& row : rows) {
        degrees.insert(row.degree);
        if (row.degree > 20) kinds.insert({row.kind, row.ratio});
        SCOPED_TRACE(row.kind + " " + std::to_string(row.degree) + " ratio " + std::to_string(row.ratio));
        const double tolerance = row.degree <= 30 ? 1e-9 : 1e-7;
        double best = 1e9;
        // Unequal terminations: either resistor may be the larger one, and either end the first; one of these is the
        // row.
        for (const double load : row.ratio > 0 ? std::vector<double>{150, 37.5} : std::vector<double>{75}) {
            if (best < tolerance) break;
            auto run = std::make_unique<LadderRun>();
            run->run(request_of(row, row.ratio == 0 ? 0 : load));
            // The closed forms of unequal terminations have all zeros of f on one side, the design has them by turns.
            if (row.ratio > 0) {
                ASSERT_TRUE(run->take_hurwitz_f());
            }
            ASSERT_TRUE(run->verdict.good());
            for (const bool from_source : {false, true}) {
                if (from_source && row.ratio <= 0) continue;
                const Reading reading = reading_of(*run, from_source);
                if (row.ratio > 0 && std::fabs(reading.ratio / row.ratio - 1) > 1e-12) continue;
                best = std::fmin(best, deviation(reading, row));
            }
        }
        EXPECT_LT(best, tolerance);
        worst = std::fmax(worst, best);
    }
    if (!under_sanitizers) {
        EXPECT_EQ(degrees.size(), 50u);
        EXPECT_EQ(kinds.size(), 8u);
    }
    std::printf("%zu ladders, worst relative deviation %.2g\n", rows.size(), worst);
}

// From the output the same network comes out, in the same places.
TEST(ClosedForms, BothDirectionsGiveOneNetwork) {
    for (const int n : {2, 5, 8, 19, 34, 50}) {
        for (const auto passband : {maximally_flat, equal_ripple}) {
            auto forward = std::make_unique<LadderRun>();
            auto reverse = std::make_unique<LadderRun>();
            reverse->request.direction = Direction::reverse;
            forward->run(all_pole(low_pass, passband, n));
            reverse->run(all_pole(low_pass, passband, n));
            ASSERT_TRUE(forward->verdict.good() && reverse->verdict.good()) << n << " " << passband;
            ASSERT_EQ(forward->circuit.klast, reverse->circuit.klast);
            for (int i = 1; i <= forward->circuit.ilast; ++i) {
                EXPECT_NEAR(reverse->circuit.VALUE(i) / forward->circuit.VALUE(i), 1, 1e-13) << n << " cell " << i;
            }
        }
    }
}

}  // namespace
}  // namespace kavrel::test
