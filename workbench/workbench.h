// The whole state of a run. `main` makes one; every test makes its own.
#pragma once

#include "approximation/filter_driver.h"
#include "fir/fir_desk.h"
#include "forms/analysis_form.h"
#include "forms/delay_form.h"
#include "forms/filter_request.h"
#include "forms/fir_analysis_form.h"
#include "passive/passive_desk.h"
#include "shell/analysis_result.h"
#include "shell/journal.h"
#include "shell/reporter.h"
#include "shell/session.h"
#include "synthesis/ladder_desk.h"

namespace kavrel {

// What became of the last design.
enum class DesignOutcome { none, done, discontinued };

struct Workbench {
    explicit Workbench(WindowLayer& window_layer) : window(window_layer), reporter(window_layer, journal, print) {}
    Workbench(const Workbench&) = delete;
    Workbench& operator=(const Workbench&) = delete;

    WindowLayer& window;
    Journal journal;
    PrintState print;
    Reporter reporter;

    Session session;
    DesignOutcome design = DesignOutcome::none;
    int discontinued_designs = 0;  // of the run
    AnalysisResult results;

    FilterRequest filter_request;
    FilterSpec filter_spec;  // the request of the last filter design, with what was found for it
    FilterDesign filter;     // of the last one that came off

    LadderWork ladder;  // of the last synthesis

    DelayRequest delay_request;
    FilterAnalysisRequest analysis_request;
    FirAnalysisRequest fir_analysis_request;

    FirRequest fir_request;
    FirFilter fir;
    FirCommandRequest fir_command;

    PassiveFilter passive;
    PassiveState passive_state;
    PassiveRequest passive_command;
    PlotWindow plot;
};

}  // namespace kavrel
