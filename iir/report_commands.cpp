#include "iir/report_commands.h"

namespace kavrel {

void show(IirDesk&) {}
void write_text_file(IirDesk&) {}
void display_design(IirDesk&) {}
void display_function(IirDesk&) {}
void draw_section(IirDesk&) {}

// A stored file has the title, too: with another one it is no longer what is shown.
void change_title(IirDesk& desk) {
    if (desk.session.TITLE != desk.command.title) desk.state.kept.saved = 0;
    desk.session.TITLE = desk.command.title;
}

void choose_print(IirDesk& desk) { choose_print_mode(desk.command.printing_to, desk.reporter); }

}  // namespace kavrel
