// The desk of FIR work: the records that designs and commands go on.
#pragma once

#include "fir/fir_filter.h"
#include "fir/fir_request.h"
#include "shell/analysis_result.h"
#include "shell/print_form.h"
#include "shell/reporter.h"
#include "shell/session.h"

namespace kavrel {

// What the small forms of the commands ask for.
struct FirCommandRequest {
    int function_number = 1;  // 1 to 5
    int printing_to = static_cast<int>(PrintTarget::none);
};

struct FirDesk {
    Session& session;
    FirRequest& request;
    FirFilter& filter;
    AnalysisResult& results;
    FirCommandRequest& command;
    Reporter& reporter;
};

}  // namespace kavrel
