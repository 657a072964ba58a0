#include "iir/command_tools.h"

#include "iir/iir_report.h"
#include "segment/result_commands.h"
#include "shell/finite.h"

namespace kavrel {

KeptFilter<IirFilter> kept(IirDesk& desk) { return {desk, desk.state.kept, desk.filter, iir_keeping}; }

std::string_view needs_filter(const IirDesk& desk) { return has_filter(desk.filter) ? "" : data_unavailable; }

std::string_view needs_roots(const IirDesk& desk) {
    return desk.filter.roots.NP + desk.filter.roots.NZ > 0 ? "" : data_unavailable;
}

std::string_view needs_frequency_results(const IirDesk& desk) {
    return desk.results.frequency_count > 0 ? "" : no_analysis_results;
}

std::string_view needs_time_results(const IirDesk& desk) {
    return desk.results.time_count > 0 ? "" : no_analysis_results;
}

void make_edit(IirDesk& desk, IirEdit edit) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    IirFilter filter = desk.filter;
    if (const Refusal wrong = edit(filter, desk.command, desk.session.units); !wrong.empty()) {
        return refuse(desk, wrong);
    }
    if (fingerprint(filter) == fingerprint(desk.filter)) return;
    if (!keep_for_undo(kept(desk))) return;
    filter.Modified = true;
    desk.filter = filter;
    report_lines(desk, cascade_lines(desk.filter, desk.command.display_format, desk.session.units));
}

}  // namespace kavrel
