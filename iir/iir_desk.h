// The desk of IIR work: the records that its commands go on.
#pragma once

#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "iir/word_results.h"
#include "segment/kept_filter.h"

namespace kavrel {

// What the Segment keeps from command to command beside the filter.
struct IirState {
    KeptState kept;
    WordResults words;
};

struct IirDesk : Desk {
    IirFilter& filter;
    IirState& state;
    IirRequest& command;
};

}  // namespace kavrel
