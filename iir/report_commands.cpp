#include "iir/report_commands.h"

#include "iir/command_tools.h"
#include "iir/pole_zero_text.h"

namespace kavrel {

void show(IirDesk&) {}
void write_text_file(IirDesk&) {}
void display_design(IirDesk&) {}
void display_function(IirDesk& desk) {
    if (const auto why = needs_roots(desk); !why.empty()) return refuse(desk, why);
    report_lines(desk, root_lines(desk.filter));
}
void draw_section(IirDesk&) {}

// A stored file has the title, too: with another one it is no longer what is shown.
void change_title(IirDesk& desk) {
    if (desk.session.TITLE != desk.command.title) desk.state.kept.saved = 0;
    desk.session.TITLE = desk.command.title;
}

void choose_print(IirDesk& desk) { choose_print_mode(desk.command.printing_to, desk.reporter); }

}  // namespace kavrel
