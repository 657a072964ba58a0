// The desk of FIR work: the records that designs and commands go on.
#pragma once

#include <vector>

#include "fir/fir_command_request.h"
#include "fir/fir_filter.h"
#include "fir/fir_request.h"
#include "fir/windows.h"
#include "segment/kept_filter.h"

namespace kavrel {

// The least word that keeps a function's deviations, 0 where none does, and what it does with it.
struct FirLeastWord {
    WordLength word;
    double passband_loss = 0;  // dB, the highest in the pass bands
    double stopband_loss = 0;  // the least in the stopbands
};

// What the Segment keeps from command to command beside the filter.
struct FirState {
    KeptState kept;
    int shown = 1;                         // the function shown last
    std::vector<FirLeastWord> words = {};  // of the function below
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
