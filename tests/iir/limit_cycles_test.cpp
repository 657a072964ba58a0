// Bounds of limit cycles against all that canonical sections of short words do by themselves, effective values against
// the response of their denominators.
#include "iir/limit_cycles.h"

#include <map>
#include <unordered_map>

#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

LimitCycle of_section(double c1, double c2) { return limit_cycles(factored_filter(1, 1, {}, {{c1, c2}})).at(0); }

// The highest cycle that any two words of at most `reach` steps lead to; coefficients are c1, c2 times 2^bits.
double highest_cycle(long c1, long c2, int bits, WordMethod method, long reach) {
    const long half = method == WordMethod::round ? 1L << (bits - 1) : 0;
    const auto q = [&](long product) { return product < 0 ? -((half - product) >> bits) : (half + product) >> bits; };
    using State = std::pair<long, long>;  // one and two samples ago
    const auto next = [&](const State& s) { return State(q(-c1 * s.first) + q(-c2 * s.second), s.first); };
    std::unordered_map<long, int> runs;  // the run that came to a state first
    const auto run_of = [&](const State& s) -> int& { return runs[s.first * 65536 + s.second]; };
    long highest = 0;
    int run = 0;
    for (State start(0, 0); start.first <= reach; ++start.first) {  // the others are mirror images
        for (start.second = -reach; start.second <= reach; ++start.second) {
            State state = start;
            for (++run; run_of(state) == 0; state = next(state)) run_of(state) = run;
            if (run_of(state) != run) continue;
            const State first = state;
            do highest = std::max(highest, std::labs(state.first)), state = next(state);
            while (state != first);
        }
    }
    return static_cast<double>(highest);
}

TEST(LimitCycles, AreNeverBeyondTheirBounds) {
    std::map<std::string, double> nearest;  // by the kind of poles: of the bound, what was found
    for (const auto& [bits, every] : {std::pair(6, 5), {7, 11}, {8, 23}}) {
        const int one = 1 << bits;
        for (int c2 = 1 - one + every / 2; c2 < one; c2 += every) {
            for (int c1 = 1 - 2 * one; c1 < 2 * one; c1 += every) {
                const double b = 1.0 * c2 / one, a = 1.0 * std::abs(c1) / one;
                const LimitCycle cycle = of_section(1.0 * c1 / one, b);
                const double bound = cycle.amplitude_bound;
                if (bound > 150) continue;
                double peak = 0;  // of the denominator's response
                for (int i = 0; i <= 2000; ++i) {
                    const auto z = std::polar(1.0, std::numbers::pi * i / 2000);
                    peak = std::max(peak, 1 / std::abs(1.0 + a * z + b * z * z));
                }
                EXPECT_NEAR(cycle.rms, peak - 0.5, 0.5 + 1e-3 * peak) << c1 << ' ' << c2 << ' ' << bits;
                const auto kind = b < 0 ? "b < 0" : a * a >= 4 * b ? "real" : "complex";
                for (const auto method : {WordMethod::round, WordMethod::truncate}) {
                    const double found = highest_cycle(c1, c2, bits, method, std::min(25L, 2 * std::lround(bound) + 2));
                    ASSERT_LE(found, bound) << c1 << ' ' << c2 << ' ' << bits << name_of(method);
                    double& nearer = nearest[fmt::format("{}, {}, {}", kind, name_of(method), c1 > 0)];
                    nearer = std::max(nearer, found / bound);
                }
            }
        }
    }
    EXPECT_EQ(nearest.size(), 12U);
    for (const auto& [kind, near] : nearest) {
        EXPECT_GE(near, kind.starts_with("complex") ? 0.3 : kind.starts_with("b < 0, trunc") ? 0 : 0.6) << kind;
    }
}

TEST(LimitCycles, Report) {
    IirRoom room;
    room.filter = factored_filter(8000, 1, {{-1, 1}}, {});
    room.send("lim ");
    EXPECT_EQ(room.boxes(), "Error: No cascade form, operation illegal");
    const Factors poles = {{-1.2, 0.81}, {1.2, 0.81}, {-0.75, 0}, {-0.8, 0.17}, {2.5, 1.5}, {-1.99999, 0.99999003}};
    room.filter = factored_filter(8000, 0.25, {{-1, 1}, {1, 0}, {4, 2}}, poles);
    room.filter.cascade.SC(3) = 2;
    room.send("lim ");
    EXPECT_EQ(room.lines().substr(0, room.lines().find("This data")), R"(
        **** limit-cycle information ****
   sect.    freq.         amplitude     output
            (hz)       bound     rms
     1    1.071E+03      13        7        2
     2    2.929E+03      13        7        5
     3    0.000E+00       4        4       32
     4    0.000E+00       2        2        2
     5    4.000E+03  no bound: a pole is not inside the unit circle
     6    2.204E-01  ******   ******   ******
)");
    EXPECT_TRUE(room.state.words.limit_cycles.of == fingerprint(room.filter) && room.boxes().empty());
}

}  // namespace
}  // namespace kavrel
