// Ladder synthesis, polynomials to checked circuit, by degree, from one end and from both; and what share of it the
// removals take.
#include <memory>

#include <benchmark/benchmark.h>

#include "synthesis/synthesise.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {

namespace {

FilterSpec request(int n, bool elliptic) {
    FilterSpec s =
        elliptic ? test::with_minima(low_pass, equal_ripple, n, 1) : test::all_pole(low_pass, maximally_flat, n);
    s.loadResistance = 50;
    return s;
}

// Third argument: 0 from the input, 1 from both ends.
void synthesis(benchmark::State& state) {
    auto design = std::make_unique<test::Design>();
    design->spec = request(static_cast<int>(state.range(0)), state.range(1) != 0);
    design->run();
    auto left = std::make_unique<SynthesisState>();
    auto circuit = std::make_unique<Circuit>();
    SynthesisRequest asked;
    asked.direction = state.range(2) != 0 ? Direction::two_way : Direction::forward;
    for (auto _ : state) {
        const SynthesisVerdict verdict = synthesise(design->xp, design->spec, asked, *left, *circuit);
        if (!verdict.good()) state.SkipWithError("synthesis failed");
    }
    state.counters["loss_error_dB"] = left->loss_error;
}
BENCHMARK(synthesis)
    ->ArgNames({"degree", "elliptic", "two_way"})
    ->ArgsProduct({{10, 20, 30, 50}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

void removals(benchmark::State& state) {
    auto design = std::make_unique<test::Design>();
    design->spec = request(static_cast<int>(state.range(0)), false);
    design->run();
    auto problem = std::make_unique<LadderProblem>();
    Selection selection;
    Unwatched unwatched;
    if (!ladder_problem(design->xp, design->spec, unwatched, *problem) ||
        chooseImmittance(*problem, false, false, selection) != ChoiceFault::none) {
        state.SkipWithError("no problem");
        return;
    }
    const Script script = automatic_script(*problem, selection);
    for (auto _ : state) {
        LadderState ladder = start_state(*problem, selection);
        if (!runScript(*problem, script, unwatched, ladder).good()) state.SkipWithError("script refused");
    }
}
BENCHMARK(removals)->Arg(10)->Arg(20)->Arg(30)->Arg(50)->Unit(benchmark::kMillisecond);

// Two complex zeros that the fixed orders leave with a negative capacitor: the search through all orders beside it.
void search(benchmark::State& state) {
    auto design = std::make_unique<test::Design>();
    FilterSpec& s = design->spec = test::all_pole(low_pass, equal_ripple, 1);
    s.loadResistance = 50;
    s.zeroCount = 2 + static_cast<int>(state.range(0));
    s.FZR(1) = 2500, s.FZI(1) = 1500;
    s.FZR(2) = 1200, s.FZI(2) = 2600;
    for (int i = 3; i <= s.zeroCount; ++i) s.FZI(i) = 3300 + 300 * i;
    s.zerosAtInfinity = 3;
    design->run();
    auto left = std::make_unique<SynthesisState>();
    auto circuit = std::make_unique<Circuit>();
    for (auto _ : state) {
        if (!synthesise(design->xp, design->spec, {}, *left, *circuit).good()) state.SkipWithError("synthesis failed");
    }
    state.counters["searched"] = left->searched ? 1 : 0;
    state.counters["negative"] = left->negative_elements;
}
BENCHMARK(search)->Arg(0)->Arg(2)->Arg(6)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace kavrel
