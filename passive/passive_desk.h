// The desk of passive work: the records that its commands go on.
#pragma once

#include "passive/passive_filter.h"
#include "passive/passive_request.h"
#include "shell/analysis_result.h"
#include "shell/frequency_request.h"
#include "shell/plot.h"
#include "shell/reporter.h"
#include "shell/session.h"
#include "shell/window_layer.h"

namespace kavrel {

// What the Segment keeps from command to command beside the filter.
struct PassiveState {
    int undoTop = 0;            // the snapshot that the next "undo" reads
    int undoCount = 0;          // the highest one in use
    bool opened = false;        // a circuit was opened or recalled: "undo" may lead to one of another file and title
    FixedText<256> stored_for;  // the session's stored file when "sto " was given
    bool recording = false;     // of a macro, into
    FixedText<256> macro_file;  // the file of this name
    bool suppress = false;      // "*** done ***" goes to the report instead of a box, and edits show no circuit
    int lastBranch = 1;         // from which the next show starts
    FrequencyGrid analysed;     // what the last analysis was asked for; of some it may have no row
};

struct PassiveDesk {
    Session& session;
    PassiveFilter& filter;
    PassiveState& state;
    PassiveRequest& command;
    AnalysisResult& results;
    PlotWindow& plot;
    Reporter& reporter;
    WindowLayer& window;
};

}  // namespace kavrel
