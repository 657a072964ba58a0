// Sections that others take the place of, over random circuits: what each keeps of the two-port.
#include "tests/workshop/edited_ladders.h"
#include "workshop/combine.h"
#include "workshop/interchange.h"
#include "workshop/promise.h"
#include "workshop/resonance_exchange.h"
#include "workshop/split.h"
#include "workshop/tee_pi.h"
#include "workshop/three_elements.h"
#include "workshop/unit_elements.h"

namespace kavrel {
namespace {

using testing::Ladder;
using testing::Part;
using testing::source_level;
using testing::two_port_deviation;
using enum BranchId;

// One edit of one shape of section.
struct Shape {
    const char* what;
    std::vector<Part> parts;
    Refusal (*edit)(Circuit& circuit, std::span<const int> k);
    double (*level)(const Circuit& before, const Circuit& after) = nullptr;  // factor of impedances behind
    bool may_end = true;  // also where nothing is behind and there is no source: it ends as it did
};

template <KurodaKind kind>
Refusal kuroda(Circuit& circuit, std::span<const int> k) {
    return kurodaInterchange(circuit, k[0], k[1], kind);
}
constexpr auto lowpass = kuroda<KurodaKind::lowpass_equivalent>;
constexpr auto same = kuroda<KurodaKind::same_kind>;
template <TeePiEnd end>
Refusal tee_pi(Circuit& circuit, std::span<const int> k) {
    int first = k[0];
    return teePi(circuit, first, end);
}
constexpr auto up = tee_pi<TeePiEnd::load>, down = tee_pi<TeePiEnd::source>;
Refusal trade(Circuit& circuit, std::span<const int> k) { return exchangeResonant(circuit, k.front(), k.back()); }
Refusal three(Circuit& circuit, std::span<const int> k) { return exchangeThree(circuit, k.front(), k.back()); }
Refusal three_back(Circuit& circuit, std::span<const int> k) { return exchangeThree(circuit, k.back(), k.front()); }
Refusal halves(Circuit& circuit, std::span<const int> k) {
    return splitBranch(circuit, k[0], half_of_branch(circuit, k[0]));
}
Refusal thirds(Circuit& circuit, std::span<const int> k) { return splitBranch(circuit, k[0], -0.3); }

Refusal swap(Circuit& circuit, std::span<const int> k) { return interchangeBranches(circuit, k.back(), k.front()); }
Refusal combine(Circuit& circuit, std::span<const int> k) { return combineBranches(circuit, k[1], k[0]); }
Refusal squeeze(Circuit& circuit, std::span<const int>) {
    squeezeAll(circuit);
    const Circuit squeezed = circuit;
    squeezeAll(circuit);
    EXPECT_TRUE(circuit == squeezed);
    return {};
}

// Near a circuit that does not exist: its rounded values are no longer the two-port to ten digits.
bool is_extreme(const Circuit& circuit) {
    return std::ranges::any_of(std::span(circuit.VALUE.cells).first(static_cast<std::size_t>(circuit.ilast)),
                               [](double value) { return std::fabs(value) < 1e-5 || std::fabs(value) > 1e5; });
}

const Shape shapes[] = {
    {"half a series L", {{inductor}}, halves},
    {"half a shunt L", {{inductor, true}}, halves},
    {"part of a series C", {{capacitor}}, thirds},
    {"part of a shunt C", {{capacitor, true}}, thirds},
    {"shunt C, line", {{capacitor, true}, {unit_element}}, lowpass, nullptr, false},
    {"series L, line", {{inductor}, {unit_element}}, lowpass, nullptr, false},
    {"line, shunt C", {{unit_element}, {capacitor, true}}, lowpass, nullptr, false},
    {"line, series L", {{unit_element}, {inductor}}, lowpass, nullptr, false},
    {"shunt L, line", {{inductor, true}, {unit_element}}, same, source_level},
    {"series C, line", {{capacitor}, {unit_element}}, same, source_level},
    {"line, shunt L", {{unit_element}, {inductor, true}}, same, source_level},
    {"line, series C", {{unit_element}, {capacitor}}, same, source_level},
    {"pi of L", {{inductor, true}, {inductor}, {inductor, true}}, up, nullptr, false},
    {"tee of L", {{inductor}, {inductor, true}, {inductor}}, up, nullptr, false},
    {"pi of C", {{capacitor, true}, {capacitor}, {capacitor, true}}, down, nullptr, false},
    {"tee of C", {{capacitor}, {capacitor, true}, {capacitor}}, down, nullptr, false},
    {"resonant pi of L, up", {{inductor, true}, {lc}, {inductor, true}}, up, source_level},
    {"resonant pi of L, down", {{inductor, true}, {lc}, {inductor, true}}, down, source_level},
    {"resonant pi of C, up", {{capacitor, true}, {lc}, {capacitor, true}}, up, source_level},
    {"resonant tee of C, down", {{capacitor}, {lc, true}, {capacitor}}, down, source_level},
    {"resonant tee of L, up", {{inductor}, {lc, true}, {inductor}}, up, source_level},
    {"resonant tee of L, down", {{inductor}, {lc, true}, {inductor}}, down, source_level},
    {"traps in series, C", {{lc}, {capacitor, true}, {lc}}, trade, nullptr, false},
    {"traps in series, L", {{lc}, {inductor, true}, {lc}}, trade, nullptr, false},
    {"traps across, L", {{lc, true}, {inductor}, {lc, true}}, trade, nullptr, false},
    {"traps across, C", {{lc, true}, {capacitor}, {lc, true}}, trade, nullptr, false},
    {"shunt lc and C", {{lc, true}, {capacitor, true}}, three},
    {"shunt lc and L", {{inductor, true}, {lc, true}}, three_back},
    {"series lc and C, L between", {{lc}, {inductor}, {capacitor}}, three},
    {"series lc and L", {{lc}, {inductor}}, three},
    {"shunt lcc", {{lcc, true}}, three},
    {"shunt lcl", {{lcl, true}}, three},
    {"series lcc", {{lcc}}, three},
    {"series lcl", {{lcl}}, three},
    {"series branches change places", {{lcc}, {capacitor}, {lcl}}, swap},
    {"shunt branches change places", {{lcc, true}, {capacitor, true}, {lcl, true}}, swap},
    {"series L in one", {{inductor}, {inductor}}, combine},
    {"shunt L in one", {{inductor, true}, {inductor, true}}, combine},
    {"series C in one", {{capacitor}, {capacitor}}, combine},
    {"shunt C in one", {{capacitor, true}, {capacitor, true}}, combine},
    {"all L in one", {{inductor}, {inductor}, {lc, true}, {inductor}}, squeeze},
    {"all C in one", {{capacitor, true}, {capacitor, true}, {lc}, {capacitor, true}}, squeeze},
};

TEST(RewrittenSections, KeepTheTwoPort) {
    for (const Shape& shape : shapes) {
        int done = 0;
        double worst = 0;
        for (unsigned seed = 0; seed < 200; ++seed) {
            SCOPED_TRACE(std::string(shape.what) + " " + std::to_string(seed));
            const double negative_share = seed % 5 < 3 ? 0 : 0.2;
            const Ladder ladder = testing::ladder_about(seed, shape.parts, negative_share);
            const bool source = unpackBranch(ladder.circuit, ladder.circuit.klast).id == resistor;
            if (shape.level != nullptr && !source) continue;
            Circuit edited = ladder.circuit;
            const Refusal wrong = shape.edit(edited, ladder.parts);
            const bool ends = !source && ladder.parts.back() == ladder.circuit.klast;
            if (!wrong.empty()) {
                EXPECT_TRUE(edited == ladder.circuit);
                EXPECT_TRUE(negative_share > 0 || (ends && !shape.may_end)) << wrong.text;
                continue;
            }
            if (is_extreme(edited)) continue;
            ++done;
            EXPECT_FALSE(edited == ladder.circuit);
            const double level = shape.level == nullptr ? 1 : shape.level(ladder.circuit, edited);
            worst = std::max(worst, two_port_deviation(ladder.circuit, edited, level));
        }
        EXPECT_LT(worst, 1e-10) << shape.what;
        EXPECT_GT(done, 80) << shape.what;
    }
}

// Any numbers in circuits of any kinds: what is refused leaves no trace, what is done keeps the loss.
TEST(RewrittenSections, TakeAnyNumbers) {
    constexpr struct {
        Refusal (*edit)(Circuit& circuit, std::span<const int> k);
        Promise promise = Promise::whole_two_port;
    } routines[] = {
        {halves}, {thirds},  {lowpass}, {same, Promise::level}, {up, Promise::level}, {down, Promise::level}, {three},
        {trade},  {combine}, {swap}};
    int done = 0, refused = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        testing::CircuitMaker maker(seed);
        maker.negative_share = 0.1;
        std::vector<BranchId> kinds{inductor, inductor, capacitor, capacitor, lc, lcc, lcl, triplet_ccc, quadruplet};
        kinds.push_back(seed % 2 == 0 ? unit_element : bridged_l);
        Circuit before = maker.circuit(kinds, maker.whole(1, 8), seed % 4 < 2);
        before.kind = seed % 2 == 0 ? CircuitKind::microwave : CircuitKind::lumped;
        before.fs = 2;
        for (const auto& row : routines) {
            for (int i = 0; i < 20; ++i) {
                SCOPED_TRACE(std::to_string(seed) + " routine " + std::to_string(&row - routines));
                const std::array k{maker.whole(i == 0 ? 0 : 1, i == 1 ? 101 : before.klast),
                                   maker.whole(0, before.klast)};
                Circuit edited = before;
                if (!row.edit(edited, k).empty()) {
                    ++refused;
                    EXPECT_TRUE(edited == before);
                } else {
                    ++done;
                    EXPECT_TRUE(is_extreme(edited) || keeps_promise(before, edited, row.promise))
                        << k[0] << ' ' << k[1];
                }
            }
        }
    }
    EXPECT_GT(done, 1000);
    EXPECT_GT(refused, 1000);
}

}  // namespace
}  // namespace kavrel
