// The desk of ladder synthesis: the records that its Segment goes on.
#pragma once

#include "approximation/filter_driver.h"
#include "circuit/circuit.h"
#include "shell/reporter.h"
#include "shell/session.h"
#include "synthesis/synthesis_form.h"

namespace kavrel {

enum class SynthesisOutcome {
    none,
    done,       // LadderWork::circuit is the ladder
    failed,     // for the reason on the report
    cancelled,  // the form was left
    unbuilt,    // what the form asks for is not there yet
};

struct LadderWork {
    SynthesisForm form;
    SynthesisOutcome outcome = SynthesisOutcome::none;
    SynthesisState state;  // of the last run that led to a circuit
    Circuit circuit;       // empty before the first one
};

// Gives up the last circuit. The form opens with its last values all the same.
inline void forget(LadderWork& work) {
    work.state = {};
    work.circuit = {};
}

struct LadderDesk {
    Session& session;
    const FilterDesign& design;
    LadderWork& work;
    Reporter& reporter;
};

}  // namespace kavrel
