#include "iir/report_commands.h"

#include "approximation/filter_report.h"
#include "iir/command_tools.h"
#include "iir/iir_report.h"
#include "iir/pole_zero_text.h"
#include "iir/section_diagram.h"

namespace kavrel {

namespace {

constexpr std::string_view before_transformation = " Before spectral transformation:";
constexpr std::string_view which_form = "Use the parallel implementation?";
constexpr std::string_view no_section = "Section does not exist";

Lines all_lines(const IirDesk& desk);
Lines design_lines(const IirDesk& desk);

}  // namespace

void show(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    report_lines(desk, all_lines(desk));
}

void write_text_file(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    if (write_lines(desk, all_lines(desk), ExtSlot::text)) report_done(desk);
}

void display_design(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    report_lines(desk, design_lines(desk));
}

void display_function(IirDesk& desk) {
    if (const auto why = needs_roots(desk); !why.empty()) return refuse(desk, why);
    report_lines(desk, root_lines(desk.filter));
}

void draw_section(IirDesk& desk) {
    const IirFilter& filter = desk.filter;
    const IirRequest& request = desk.command;
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    SectionOf form = SectionOf::cascade;
    if (is_there(filter.parallel) && desk.reporter.message(which_form, "Question", Buttons::yes_no) == Answer::yes) {
        form = SectionOf::parallel;
    }
    const Lines lines = section_diagram(filter, form, request.section, request.diagram, request.display_format);
    if (lines.empty()) return refuse(desk, Refusal(no_section, "section"));
    report_lines(desk, lines);
}

// A stored file has the title, too: with another one it is no longer what is shown.
void change_title(IirDesk& desk) {
    if (desk.session.TITLE == desk.command.title) return;
    if (has_filter(desk.filter) && !keep_for_undo(kept(desk))) return;
    desk.state.kept.saved = 0;
    desk.session.TITLE = desk.command.title;
}

void choose_print(IirDesk& desk) { choose_print_mode(desk.command.printing_to, desk.reporter); }

namespace {

Lines all_lines(const IirDesk& desk) {
    Lines lines = header_lines(desk.filter, desk.session.units);
    append(lines, form_tables(desk.filter, desk.command.display_format));
    append(lines, design_lines(desk));
    return lines;
}

// The report of the analog prototype; of a filter without one H(z).
Lines design_lines(const IirDesk& desk) {
    const IirFilter& filter = desk.filter;
    if (!filter.designed) return factored_lines(filter, desk.command.display_format);
    Lines lines;
    if (filter.spectral != SpectralKind::none) lines.emplace_back(before_transformation);
    append(lines, kept_design_lines(filter.spec, filter.background, filter.transfer, desk.session.units));
    append(lines, transfer_function_lines(filter.transfer, filter.spec.medium));
    return lines;
}

}  // namespace

}  // namespace kavrel
