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

#ifdef __SANITIZE_ADDRESS__
constexpr bool under_sanitizers = true;
#else
constexpr bool under_sanitizers = false;
#endif

// Above degree 16 one row a degree, its kinds by turns. The numbers are the same under sanitizers, and take ten times
// as long: fewer degrees there.
std::vector<ClosedForm> rows_to_check() {
    std::ifstream file(std::string(TEST_DATA) + "/synthesis/all_pole_ladders.txt");
    std::map<int, std::vector<ClosedForm>> of_degree;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        std::istringstream words(line);
        ClosedForm row;
        words >> row.kind >> row.degree >> row.ratio;
        for (double v = 0; words >> v;) row.g.push_back(v);
        of_degree[row.degree].push_back(row);
    }
    std::vector<ClosedForm> taken;
    for (const auto& [degree, rows] : of_degree) {
        if (under_sanitizers && degree % 7 != 1) continue;
        const auto turn = static_cast<std::size_t>(degree / 2) % rows.size();
        if (degree <= 16 || under_sanitizers)
            taken.insert(taken.end(), rows.begin(), rows.end());
        else
            taken.push_back(rows[turn]);
    }
    return taken;
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
    const auto next = [&](int k) { return from_source ? unpackBranch(circuit, k).kp : unpackBranch(circuit, k).kn; };
    Reading reading;
    const int first = next(from_source ? circuit.klast : 1);
    for (int k = first; k != 0 && unpackBranch(circuit, k).id != BranchId::resistor; k = next(k)) {
        const Branch branch = unpackBranch(circuit, k);
        const long double value = circuit.VALUE(branch.i1);
        const bool in_turn = reading.g.size() % 2 == static_cast<std::size_t>(std::abs(first - k)) % 2;
        reading.kinds_in_turn =
            reading.kinds_in_turn && in_turn && branch.id == (k % 2 == 0 ? BranchId::inductor : BranchId::capacitor);
        reading.g.push_back(branch.id == BranchId::inductor ? value * w / near : value * w * near);
    }
    reading.ratio = first % 2 == 0 ? far / near : near / far;
    return reading;
}

double deviation(const Reading& reading, const ClosedForm& row) {
    if (!reading.kinds_in_turn || reading.g.size() != row.g.size()) return 1e9;
    long double worst = 0;
    for (std::size_t i = 0; i < row.g.size(); ++i) worst = std::fmax(worst, std::fabs(reading.g[i] / row.g[i] - 1));
    return static_cast<double>(worst);
}

TEST(ClosedForms, ElementValuesOfAllPoleLadders) {
    std::set<int> degrees;
    std::set<std::pair<std::string, double>> kinds;  // of the larger ones
    for (const ClosedForm& row : rows_to_check()) {
        degrees.insert(row.degree);
        if (row.degree > 20) kinds.insert({row.kind, row.ratio});
        SCOPED_TRACE(fmt::format("{} {} ratio {}", row.kind, row.degree, row.ratio));
        const double tolerance = row.degree <= 30 ? 1e-9 : 1e-7;
        double best = 1e9;
        // Unequal terminations: either resistor may be the larger one, and either end the first; one of these is the
        // row.
        for (const double load : row.ratio > 0 ? std::vector<double>{150, 37.5} : std::vector<double>{75}) {
            if (best < tolerance) break;
            const Ladder run = run_of(fmt::format("low {} {} R 75 {}", row.kind == "flat" ? "flat" : "ripple",
                                                  row.degree, row.ratio == 0 ? 0 : load));
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
    }
    if (!under_sanitizers) {
        EXPECT_EQ(degrees.size(), 50U);
        EXPECT_EQ(kinds.size(), 8U);
    }
}

}  // namespace
}  // namespace kavrel::test
