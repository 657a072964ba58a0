// The desk of passive work: the records that its commands go on.
#pragma once

#include "passive/passive_filter.h"
#include "passive/passive_request.h"
#include "segment/kept_filter.h"
#include "shell/frequency_request.h"
#include "workshop/equal_values.h"

namespace kavrel {

// What the Segment keeps from command to command beside the filter.
struct PassiveState {
    KeptState kept;
    bool recording = false;     // of a macro, into
    FixedText<256> macro_file;  // the file of this name
    bool suppress = false;      // "*** done ***" goes to the report instead of a box, and edits show no circuit
    int lastBranch = 1;         // from which the next show starts
    FrequencyGrid analysed;     // what the last analysis was asked for; of some it may have no row
    ComputedRatios computed;    // by "lce " or "ecm ", for "tr  "
};

struct PassiveDesk : Desk {
    PassiveFilter& filter;
    PassiveState& state;
    PassiveRequest& command;
};

}  // namespace kavrel
