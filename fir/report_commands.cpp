#include "fir/report_commands.h"

#include "fir/command_tools.h"
#include "fir/design_lines.h"

namespace kavrel {

namespace {

Refusal keep_first(FirFilter& filter, const FirCommandRequest& request, Lines& lines);
Refusal forget_factors(FirFilter& filter, const FirCommandRequest& request, Lines& lines);

}  // namespace

void show_function(FirDesk& desk) {
    if (!has_function(desk, needs_function_to_show(desk))) return;
    const int n = desk.state.shown = desk.command.function_number;
    report_lines(desk, function_lines(desk.filter, n, desk.session.TITLE.trimmed()));
}

void display_design(FirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    report_lines(desk, design_lines(desk.filter, desk.session.TITLE.trimmed()));
}

void write_text_report(FirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    const std::string_view title = desk.session.TITLE.trimmed();
    Lines lines = design_lines(desk.filter, title);
    for (int n = 1; n <= desk.filter.functions; ++n) {
        lines.emplace_back("");
        const Lines function = function_lines(desk.filter, n, title);
        lines.insert(lines.end(), function.begin(), function.end());
    }
    if (write_lines(desk, lines, ExtSlot::fir_report)) report_edit_done(desk);
}

void change_title(FirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (desk.session.TITLE == desk.command.title) return;
    if (!keep_for_undo(kept(desk))) return;
    desk.session.TITLE = desk.command.title;
    report_edit_done(desk);
}

void choose_print(FirDesk& desk) { choose_print_mode(desk.command.printing_to, desk.reporter); }

void clear_functions(FirDesk& desk) {
    if (make_edit(desk, keep_first)) desk.state.shown = desk.command.function_number = 1;
}

void return_to_first(FirDesk& desk) {
    make_edit(desk, forget_factors);
    desk.state.shown = desk.command.function_number = 1;
}

namespace {

Refusal keep_first(FirFilter& filter, const FirCommandRequest&, Lines& lines) {
    if (filter.functions == 1) lines.emplace_back(" There is no function but the first");
    keep_functions(filter, 1);
    return {};
}

Refusal forget_factors(FirFilter& filter, const FirCommandRequest&, Lines& lines) {
    if (filter.factors.count == 0) lines.emplace_back(" There are no factors");
    filter.factors = {};
    return {};
}

}  // namespace

}  // namespace kavrel
