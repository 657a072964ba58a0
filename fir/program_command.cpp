#include "fir/program_command.h"

#include "fir/command_tools.h"
#include "fir/program_dialects.h"
#include "segment/program_file.h"

namespace kavrel {

void write_program(FirDesk& desk) {
    if (!has_function(desk)) return;
    const FirDialectRow& row = fir_dialect_row(desk.command.dialect);
    FirProgramInput input{
        .filter = desk.filter, .function = desk.command.function_number, .title = desk.session.TITLE.trimmed()};
    if (const Refusal wrong = row.refusal(input); !wrong.empty()) return refuse(desk, wrong);
    const auto lines = [&](std::string_view name) {
        input.name = name;
        return row.write(input);
    };
    if (!write_program_file(desk, row.extension, lines)) return;
    if (const auto note = row.note(input); !note.empty()) desk.reporter.report_line(note);
    report_edit_done(desk);
}

}  // namespace kavrel
