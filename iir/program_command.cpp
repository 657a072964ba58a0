#include "iir/program_command.h"

#include "iir/command_tools.h"
#include "iir/program_dialects.h"
#include "segment/program_file.h"

namespace kavrel {

namespace {

bool is_difference(AllpassOutput output, DigitalKind kind);
std::string_view no_such_form(Implementation form);

}  // namespace

void write_program(IirDesk& desk) {
    if (const auto why = needs_filter(desk); !why.empty()) return refuse(desk, why);
    const IirRequest& request = desk.command;
    const ProgramDialectRow& row = row_of(request.dialect);
    ProgramInput input{.filter = desk.filter,
                       .form = row.is_of_cascade() ? Implementation::cascade : request.programmed,
                       .difference = is_difference(request.program_output, desk.filter.kind),
                       .title = desk.session.TITLE.trimmed()};
    if (!is_available(desk.filter, input.form))
        return refuse(desk, Refusal(no_such_form(input.form), "implementation"));
    if (!row.knows(input.form)) return refuse(desk, Refusal("Dialect has no lattice form", "dialect"));
    WindowWatcher watcher(desk.window, "Program");
    const Refusal wrong = row.refusal(input, watcher);
    if (watcher.stopped()) return desk.reporter.report_line(stopped_line);
    if (!wrong.empty()) return refuse(desk, wrong);
    const auto lines = [&](std::string_view name) {
        input.name = name;
        return row.write(input);
    };
    if (write_program_file(desk, row.extension, lines)) report_done(desk);
}

namespace {

bool is_difference(AllpassOutput output, DigitalKind kind) {
    return (output == AllpassOutput::filter ? output_that_is_the_filter(kind) : output) == AllpassOutput::difference;
}

std::string_view no_such_form(Implementation form) {
    switch (form) {
        case Implementation::parallel: return "Parallel form does not exist";
        case Implementation::direct: return "Direct form does not exist";
        case Implementation::lattice: return "Lattice form does not exist";
        case Implementation::allpass: return "Diff. allpass form does not exist";
        case Implementation::cascade:
        case Implementation::natural_modes: break;
    }
    return data_unavailable;
}

}  // namespace

}  // namespace kavrel
