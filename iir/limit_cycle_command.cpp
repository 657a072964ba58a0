#include "iir/limit_cycle_command.h"

#include "iir/command_tools.h"
#include "iir/limit_cycles.h"
#include "segment/result_commands.h"

namespace kavrel {

void report_limit_cycles(IirDesk& desk) {
    if (const auto why = needs_cascade(desk); !why.empty()) return refuse(desk, why);
    desk.state.words.limit_cycles = {limit_cycles(desk.filter), fingerprint(desk.filter)};
    report_lines(desk, limitCycleReport(desk.state.words.limit_cycles.result));
}

}  // namespace kavrel
