#include "iir/command_tools.h"

#include "iir/edits.h"
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

std::string_view needs_cascade(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    return desk.filter.cascade.NDEN > 0 ? "" : no_cascade;
}

std::string_view needs_place_for_factor(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    const DigitalRoots& roots = desk.filter.roots;
    return roots.NZ < iir_root_limit || roots.NP < iir_root_limit ? "" : degree_too_high;
}

std::string_view needs_factor(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    return section_count(desk.filter.cascade) > 0 ? "" : no_such_factor;
}

std::string_view needs_factors_to_permute(const IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return why;
    const int sections = section_count(desk.filter.cascade);
    return sections == 0 ? no_cascade : sections == 1 ? too_few_to_permute : "";
}

void make_edit(IirDesk& desk, IirEdit edit) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    IirFilter filter = desk.filter;
    Lines lines;
    if (const Refusal wrong = edit(filter, desk.command, desk.session.units, lines); !wrong.empty()) {
        return refuse(desk, wrong);
    }
    take_edited(desk, filter, lines);
}

bool take_edited(IirDesk& desk, const IirFilter& edited, const Lines& lines) {
    if (fingerprint(edited) == fingerprint(desk.filter)) {
        report_lines(desk, lines);
        return false;
    }
    if (!is_finite(edited) && is_finite(desk.filter)) {
        refuse(desk, "Values of the filter are out of range");
        return false;
    }
    if (!keep_for_undo(kept(desk))) return false;
    desk.filter = edited;
    desk.filter.Modified = true;
    report_lines(desk, lines);
    report_lines(desk, cascade_lines(desk.filter, desk.command.display_format, desk.session.units));
    return true;
}

}  // namespace kavrel
