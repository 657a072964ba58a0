// Lattices against the nodes of the sections that they were made of.
#include "workshop/lattice_section.h"

#include <map>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/support/circuit_literal.h"
#include "tests/workshop/edited_ladders.h"

namespace kavrel {
namespace {

using testing::CircuitMaker;
using testing::two_port_deviation;

// Sections with letters for values: random ones, the same where the letter is the same.
std::string literal_of(CircuitMaker& maker, std::string_view shape) {
    std::map<char, double> values;
    std::string text;
    for (const char c : shape) {
        if (c < 'a' || c > 'm') {
            text += c;
        } else {
            if (!values.contains(c)) values[c] = maker.value();
            text += fmt::format(" {:.17g}", values[c]);
        }
    }
    return text;
}

TEST(Lattice, IsTheSectionItWasMadeOf) {
    const char* shapes[] = {"C3 a | L4 b | C5 a",          "L3 a | C4 b | L5 a",
                            "L2 a | C3 b | L4 a",          "C2 a | L3 b | C4 a",
                            "C3 a | LC4 b c | C5 a",       "L2 a | LC3 b c | L4 a",
                            "C2 a | LCC3 b c d | C4 a",    "C3 a | LCC4 b c d | C5 a",
                            "COMPOUND:LCCL3 a b c a",      "COMPOUND:CLLC3 a b c a",
                            "LATTICE:LCCLCC3 a b c d e f", "LATTICE:LCLLCL3 a b 1E30 0 c d",
                            "TRIPLET:CCLCC3 a b c d a",    "C2 a"};
    for (unsigned seed = 0; seed < 30; ++seed) {
        for (const char* shape : shapes) {
            CircuitMaker maker(seed);
            maker.negative_share = 0.05 * (seed % 3);
            const std::string text = "R 1.3 | " + literal_of(maker, shape) + " | C 0.9 | L 0.4 | R 2";
            const Circuit former = circuit(text);
            const int first = unpackBranch(former, 1).kn;
            int last = former.klast;
            for (int i = 0; i < 3; ++i) last = unpackBranch(former, last).kp;
            Circuit after = former;
            int place = 0;
            ASSERT_EQ(toLattice(after, last, first, place).text, "") << text;
            EXPECT_LT(two_port_deviation(former, after), 1e-10) << text;
            EXPECT_EQ(branch_kinds[unpackBranch(after, place).id].structure, Structure::lattice);
        }
    }
}

// A symmetrical pi and a transformer of n in one: three elements and two inductors, and what it leaves to be scaled.
TEST(Lattice, ScalesWhatIsBehindASectionOfTwoLevels) {
    for (unsigned seed = 0; seed < 30; ++seed) {
        CircuitMaker maker(seed);
        const double n = maker.uniform(1.1, 3), C = maker.value(), L = maker.value();
        const Circuit before =
            circuit(fmt::format("R 1.3 | L2 0.2 | C3 {} | L5 {} | L6 {} | L7 {} | C9 {} | L10 1.4 | C11 1.1 | R13 2", C,
                                L / (1 - n), L / n, L / (n * n - n), n * n * C));
        Circuit after = before;
        int place = 0;
        ASSERT_EQ(toLattice(after, 3, 9, place).text, "") << seed;
        EXPECT_LT(two_port_deviation(before, after, n * n), 1e-10) << seed;
    }
}

TEST(Lattice, TakesInWhatItsNeighboursHaveInCommon) {
    const char* shapes[] = {
        "C3 a | LATTICE:LCCLCC5 b c d e f g | C7 h",    "C2 a | LATTICE:LCCLCC4 b c d e f g | C6 h",
        "L3 a | LATTICE:LCLLCL5 b c d e f g | L7 h",    "L2 a | LATTICE:LCLLCL4 b c d e f g | L6 h",
        "C3 a | LATTICE:LCCLCC5 b c 0 e f g | C7 a",    "C2 a | LATTICE:LCCLCC4 b c 0 e f g | C6 a",
        "L3 a | LATTICE:LCLLCL5 b c 1E30 e f g | L7 a", "L2 a | LATTICE:LCLLCL4 b c 1E30 0 f g | L6 a",
    };
    for (unsigned seed = 0; seed < 40; ++seed) {
        for (const std::string_view shape : shapes) {
            CircuitMaker maker(seed);
            const Circuit before = circuit("R 1.3 | " + literal_of(maker, shape) + " | LC 0.9 0.3 | R 2");
            Circuit after = before;
            ASSERT_EQ(includeIntoLattice(after, shape[1] == '3' ? 5 : 4).text, "") << shape;
            EXPECT_LT(two_port_deviation(before, after), 1e-10) << seed << ' ' << shape;
            EXPECT_EQ(testing::branch_count(after), shape.ends_with('a') ? 4 : 5) << shape;
        }
    }
}

}  // namespace
}  // namespace kavrel
