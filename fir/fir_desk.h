// The desk of FIR work: the records that designs and commands go on.
#pragma once

#include <vector>

#include "fir/fir_command_request.h"
#include "fir/fir_filter.h"
#include "fir/fir_request.h"
#include "fir/windows.h"
#include "segment/kept_filter.h"
#include "segment/least_word.h"

namespace kavrel {

// What the Segment keeps from command to command beside the filter.
struct FirState {
    KeptState kept;
    int shown = 1;                      // the function shown last
    std::vector<FoundWord> words = {};  // the least ones that keep the deviations of the function below
    Fingerprint words_of = 0;
    WindowCosines retained;  // a0 to a3, from one windowed design to the next
};

struct FirDesk : Desk {
    FirRequest& request;
    FirFilter& filter;
    FirState& state;
    FirCommandRequest& command;
};

// The function shown last, the first one where that is gone.
[[nodiscard]] constexpr int shown_function(const FirFilter& filter, const FirState& state) {
    return state.shown <= filter.functions ? state.shown : 1;
}

}  // namespace kavrel
