#include "fir/command_tools.h"

#include <memory>

#include "fir/fir_records.h"
#include "segment/result_commands.h"

namespace kavrel {

namespace {

bool can_be_kept(const FirFilter& filter);

}  // namespace

Refusal warning(std::string_view text, std::string_view field) {
    Refusal refusal(text, field);
    refusal.caption = "Warning";
    return refusal;
}

KeptFilter<FirFilter> kept(FirDesk& desk) { return {desk, desk.state.kept, desk.filter, fir_keeping}; }

std::string_view needs_filter(const FirDesk& desk) { return desk.filter.functions > 0 ? "" : data_unavailable; }

std::string_view needs_factors(const FirDesk& desk) { return desk.filter.factors.count > 0 ? "" : no_factored_form; }

std::string_view needs_frequency_results(const FirDesk& desk) {
    return desk.results.frequency_count > 0 ? "" : no_analysis_results;
}

std::string_view needs_time_results(const FirDesk& desk) {
    return desk.results.time_count > 0 ? "" : no_analysis_results;
}

std::string_view needs_function_to_show(const FirDesk& desk) {
    return desk.filter.functions > 0 ? "" : "No function to show";
}
std::string_view needs_function_to_analyze(const FirDesk& desk) {
    return desk.filter.functions > 0 ? "" : "No function to analyze";
}
std::string_view needs_function_to_truncate(const FirDesk& desk) {
    return desk.filter.functions > 0 ? "" : "No function to truncate";
}
std::string_view needs_function(const FirDesk& desk) { return desk.filter.functions > 0 ? "" : no_such_function; }

bool has_function(FirDesk& desk, std::string_view hindrance) {
    const int n = desk.command.function_number;
    if (desk.filter.functions == 0 && !hindrance.empty()) {
        refuse(desk, hindrance);
    } else if (n < 1 || n > desk.filter.functions) {
        refuse(desk, Refusal(no_such_function, "function_number"));
    } else {
        return true;
    }
    return false;
}

bool is_of_filter(const FirFilter& filter, Fingerprint analysed) {
    for (int n = 1; n <= filter.functions; ++n) {
        if (fingerprint(filter, n) == analysed) return true;
    }
    return false;
}

void tabulate_results(FirDesk& desk, Fingerprint analysed, Lines& lines) {
    mark_earlier(analysed, is_of_filter(desk.filter, analysed) ? analysed : 0, lines);
    if (tabulate(desk, lines)) report_edit_done(desk);
}

void report_edit_done(FirDesk& desk) { desk.reporter.message("*** Done ***", "Success"); }

bool make_edit(FirDesk& desk, FirEdit edit) {
    if (const auto why = needs_filter(desk); !why.empty()) {
        refuse(desk, why);
        return false;
    }
    const auto filter = std::make_unique<FirFilter>(desk.filter);
    Lines lines;
    if (const Refusal wrong = edit(*filter, desk.command, lines); !wrong.empty()) {
        refuse(desk, wrong);
        report_lines(desk, lines);
        return false;
    }
    return take_edited(desk, *filter, lines);
}

bool take_edited(FirDesk& desk, const FirFilter& edited, const Lines& lines) {
    if (fingerprint(edited) == fingerprint(desk.filter)) {
        report_lines(desk, lines);
        return false;
    }
    if (!can_be_kept(edited)) {
        refuse(desk, "Values of the filter are out of range");
        return false;
    }
    if (!keep_for_undo(kept(desk))) return false;
    desk.filter = edited;
    lines.empty() ? report_edit_done(desk) : report_lines(desk, lines);
    return true;
}

namespace {

bool can_be_kept(const FirFilter& filter) {
    const auto again = std::make_unique<FirFilter>();
    FixedText<80> title;
    return read_fir_records(fir_records(filter, title), *again, title);
}

}  // namespace

}  // namespace kavrel
