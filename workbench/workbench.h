// The whole state of a run. `main` makes one; every test makes its own.
#pragma once

#include <optional>

#include "approximation/filter_driver.h"
#include "fir/fir_desk.h"
#include "forms/analysis_form.h"
#include "forms/delay_form.h"
#include "forms/filter_request.h"
#include "forms/fir_analysis_form.h"
#include "iir/iir_desk.h"
#include "passive/passive_desk.h"
#include "segment/request_check.h"
#include "segment/temporary_files.h"
#include "shell/analysis_result.h"
#include "shell/journal.h"
#include "shell/reporter.h"
#include "shell/session.h"
#include "synthesis/ladder_desk.h"

namespace kavrel {

// A filter design that came off.
struct DesignedFilter {
    FilterSpec found;  // its request, with what was found for it
    FilterDesign design;
};

// What became of the last design.
enum class DesignOutcome { none, done, discontinued };

struct Workbench {
    explicit Workbench(WindowLayer& window_layer) : window(window_layer), reporter(window_layer, journal, print) {
        passive_command.circuit = &passive.circuit;
    }
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    WindowLayer& window;
    Journal journal;
    PrintState print;
    Reporter reporter;

    Session session;
    TemporaryFiles temporaries;  // gone with the run
    DesignOutcome design = DesignOutcome::none;
    int discontinued_designs = 0;  // of the run
    AnalysisResult results;

    std::optional<RequestCheck> check;  // of what is shown, once somebody looked; every event drops it

    FilterRequest filter_request;
    DesignedFilter filter;   // the last one that came off
    DesignedFilter drafted;  // on its way: takes the place of `filter` when its synthesis, if there is one, comes off
    std::optional<FilterSpec> discontinued_request;  // of the last design, when it did not come off

    LadderWork ladder;  // of the last synthesis that came off

    DelayRequest delay_request;
    FilterAnalysisRequest analysis_request;
    FirAnalysisRequest fir_analysis_request;

    FirRequest fir_request;
    FirFilter fir;
    FirState fir_state;
    FirCommandRequest fir_command;

    IirFilter iir;
    IirState iir_state;
    IirRequest iir_command;

    PassiveFilter passive;
    PassiveState passive_state;
    PassiveRequest passive_command;
    PlotWindow plot;
};

}  // namespace kavrel
