#include "fir/fir_segment.h"

#include "fir/fir_report.h"
#include "fir/fir_time_response.h"
#include "shell/edit.h"
#include "shell/field_table.h"

namespace kavrel {

namespace {

constexpr int ordinary_command = 1;

constexpr std::string_view nothing_to_show = "No function to show";
constexpr std::string_view nothing_to_analyze = "No function to analyze";

bool has_function(FirDesk& desk, std::string_view without_any);
std::string_view cannot_show(const FirDesk& desk) { return desk.filter.functions == 0 ? nothing_to_show : ""; }
std::string_view cannot_analyze(const FirDesk& desk) { return desk.filter.functions == 0 ? nothing_to_analyze : ""; }
void show(FirDesk& desk);
void time(FirDesk& desk);

void print(FirDesk& desk) { choose_print_mode(desk.command.printing_to, desk.reporter); }

constexpr CommandTable commands({Command<FirDesk>{"read"},
                                 {"show", show, cannot_show},
                                 {"time", time, cannot_analyze},
                                 {"trun"},
                                 {"freq"},
                                 {"fac "},
                                 {"flip"},
                                 {"prf "},
                                 {"sqr "},
                                 {"mult"},
                                 {"scal"},
                                 {"save"},
                                 {"pltf"},
                                 {"add "},
                                 {"del "},
                                 {"sto "},
                                 {"rcl "},
                                 {"ch  "},
                                 {"lbl "},
                                 {"file"},
                                 {"prog"},
                                 {"ffac"},
                                 {"undo"},
                                 {"pri ", print},
                                 {"pltt"},
                                 {"tabf"},
                                 {"tabt"},
                                 {"plpr"},
                                 {"clr "},
                                 {"disp"},
                                 {"redo"},
                                 {"flat"},
                                 {"min "},
                                 {"rset"}});

constexpr Field function_fields[] = {
    integer<&FirCommandRequest::function_number>("function_number", "Function number", 1, fir_function_limit)};
constexpr Field print_fields[] = {print_field<&FirCommandRequest::printing_to>};

}  // namespace

constexpr Form FIR_FUNCTION_DLG = form_of<FirCommandRequest>("FIR_FUNCTION_DLG", "Function", function_fields);
constexpr Form FIR_PRINT_DLG = form_of<FirCommandRequest>("PRINT_DLG", "Printing to", print_fields);

CommandWords fir_words() { return commands.words(); }

std::string_view fir_hindrance(const FirDesk& desk, const CommandKeyword& word) {
    return commands.hindrance(desk, word);
}

void firSegment(FirDesk& desk) {
    commands.run(desk, desk.session.word(SegmentId::fir));
    desk.session.entry(SegmentId::fir) = ordinary_command;
}

namespace {

// Whether the function that the command's form names is there; a box says so if not.
bool has_function(FirDesk& desk, std::string_view without_any) {
    const int n = desk.command.function_number;
    if (desk.filter.functions == 0) {
        desk.reporter.message(without_any, "Error");
    } else if (n < 1 || n > desk.filter.functions) {
        desk.reporter.message("Function does not exist", "Error");
    } else {
        return true;
    }
    return false;
}

void show(FirDesk& desk) {
    if (!has_function(desk, nothing_to_show)) return;
    const int n = desk.command.function_number;
    desk.reporter.report_line(" " + desk.session.TITLE.text());
    desk.reporter.report_line(" Function number " + edit_i(n, 2) + ", length " +
                              edit_i(fir_taps(desk.filter.LENGTH(n), desk.filter.NODD, desk.filter.NEG), 3));
    report_impulse_response(desk.filter, n, desk.reporter);
}

void time(FirDesk& desk) {
    if (!has_function(desk, nothing_to_analyze)) return;
    const int n = desk.command.function_number;
    if (!fir_time_response(desk.filter, n, desk.results)) {
        desk.reporter.message(results_out_of_range, "Error");
        return;
    }
    const int taps = fir_taps(desk.filter.LENGTH(n), desk.filter.NODD, desk.filter.NEG);
    desk.results.TITLE = desk.session.TITLE.trimmed();
    if (taps > desk.results.time_count) {
        desk.reporter.report_line(" Time response: first " + edit_i(desk.results.time_count, 3) + " of " +
                                  edit_i(taps, 3) + " samples");
    }
}

}  // namespace

}  // namespace kavrel
