// One attempt at a ladder: from an immittance through its removals to the circuit and the check of its loss.
#pragma once

#include "synthesis/synthesise.h"

namespace kavrel {

// What all attempts at a request share.
struct LadderTask {
    const XPlane& xp;
    const FilterSpec& spec;
    const SynthesisRequest& request;
    const LadderProblem& problem;
    const Circuit& former;  // a new circuit keeps of it what no ladder sets
    Watcher& watcher;
};

inline constexpr double same_ratio = 1e-9;  // of terminations, as difference of logarithms

struct LadderAttempt {
    Direction direction = Direction::forward;  // not automatic
    QuadrupletPlace quadruplets = QuadrupletPlace::first;
    bool searched = false;  // no fixed order of removals: one within the bounds is looked for
    bool dual = false;      // the dual network of the one that is asked for
    SearchBounds bounds{};
};

struct LadderOutcome {
    SynthesisFault fault = SynthesisFault::none;
    SynthesisState state;  // as far as the run went
    Circuit circuit;       // of a run without a fault

    [[nodiscard]] bool came_off() const { return fault == SynthesisFault::none; }
    [[nodiscard]] bool is_trusted() const { return state.loss_error <= trusted_loss; }
};

// Runs an attempt. Where its immittance hides a branch, the one whose circuit is nearest to the loss is taken; where
// none comes near it, the fault is that of the first one.
[[nodiscard]] LadderOutcome run_attempt(const LadderTask& task, const LadderAttempt& attempt);

}  // namespace kavrel
