// The desk of FIR work: the records that designs and commands go on.
#pragma once

#include "fir/fir_filter.h"
#include "fir/fir_request.h"
#include "segment/desk.h"

namespace kavrel {

// What the small forms of the commands ask for.
struct FirCommandRequest {
    int function_number = 1;  // 1 to 5
    PrintTarget printing_to = PrintTarget::none;
};

struct FirDesk : Desk {
    FirRequest& request;
    FirFilter& filter;
    FirCommandRequest& command;
};

}  // namespace kavrel
