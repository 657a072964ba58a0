// From the records of a script to a circuit.
//
// Branch 1 is the resistor R1 of the input ("in"), the last branch R2 of the output ("out"), whichever end the
// extraction began at. Normalised values belong to the own end's resistor R and to s = j at the upper band edge:
//
//   lumped                L = v R/w, C = v/(w R), w = 2 pi f of s = j
//   high-pass, lumped     a prototype in 1/s: its series L is a series C = 1/(w R v), its shunt C a shunt L = R/(w v)
//   microwave             stubs in tan(theta): v R/t and v/(t R), t = tan of the angle of s = j; lines Z R
#pragma once

#include "circuit/circuit.h"
#include "synthesis/script.h"

namespace kavrel {

// Values of one record.
struct DenormalisedBranch {
    BranchId id{};  // L, C or both, a compound branch, a line
    bool series = false;
    bool merges = false;  // with a neighbour that is the same single element in the same place
    int count = 0;
    Table<double, 7> values;  // in order of their cells
};

// Record k with the own end's resistor; a compound branch with its port towards the input first.
[[nodiscard]] DenormalisedBranch denormalised(const LadderProblem& problem, const LadderState& state, int k,
                                              double resistance);

// Both ends' resistors. With one termination the far one is 0.
struct Terminations {
    double own = 0;
    double far = 0;
};

// Builds the circuit; `far` 0 leaves that end without a resistor. Verdict of the store when it is full; the circuit is
// unfinished then.
[[nodiscard]] CircuitVerdict storeResult(const LadderProblem& problem, const LadderState& state,
                                         const Terminations& terminations, Circuit& circuit);

// A port at which the far end is open or short does not see a branch right before it. When the reactance is used up and
// one zero of transmission at 0 or infinity is left, that branch is found from the terminated immittance, as the far
// resistor is, and recorded. False when something else is left, or it does not come out.
[[nodiscard]] bool record_hidden_branch(const LadderProblem& problem, LadderState& state);

// The far resistor that the ladder asks for: at a frequency of the pass band the chain matrix of the branches leads the
// input immittance of the transfer function back to it. False when that frequency lies on a pole of a branch.
[[nodiscard]] bool far_termination(const LadderProblem& problem, const LadderState& state, double own, double& far);

}  // namespace kavrel
