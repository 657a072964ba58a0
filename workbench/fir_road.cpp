#include "workbench/fir_road.h"

#include "fir/fir_design.h"
#include "shell/stored_files.h"
#include "workbench/fir_form.h"
#include "workbench/fir_input_file.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

// Loads the form from a file that the user names; false when there is none to load from.
bool recall_input(Workbench& bench) {
    const std::string name = bench.window.choose_file(
        {.caption = "Recall a previous design data set", .description = "Stored input data files", .filter = "*.qfi"});
    if (name.empty()) return false;
    const auto bytes = read_whole(name);
    if (!bytes) {
        bench.reporter.message("File was not found", "Error");
        return false;
    }
    if (!read_fir_input(*bytes, bench.fir_request)) {
        bench.reporter.message("File contains incorrect data", "Error");
        return false;
    }
    bench.session.input_file.assign(name);
    return true;
}

// Writes the form to the current input file, after asking for its name when it has none. False when that went wrong.
bool save_input(Workbench& bench) {
    if (bench.session.input_file.is_blank()) {
        const std::string name = bench.window.choose_file({.caption = "Select a file name",
                                                           .description = "Stored input data files",
                                                           .filter = "*.qfi",
                                                           .to_write = true});
        if (name.empty()) return true;
        bench.session.input_file.assign(name.ends_with(".qfi") ? name : std::string(file_stem(name)) + ".qfi");
    }
    if (write_whole(bench.session.input_file.text(), fir_input_bytes(bench.fir_request))) return true;
    bench.session.input_file = {};
    bench.reporter.message("File could not be written", "Error");
    return false;
}

void design(Workbench& bench) {
    FirDesk desk{.session = bench.session,
                 .request = bench.fir_request,
                 .filter = bench.fir,
                 .results = bench.results,
                 .command = bench.fir_command,
                 .reporter = bench.reporter};
    switch (remez_design(desk)) {
        case FirDesignVerdict::designed:
            bench.design = DesignOutcome::done;
            bench.session.entry(SegmentId::fir) = 0;
            enter_segment(bench, SegmentId::fir);
            break;
        case FirDesignVerdict::stopped: bench.reporter.report_line(" **** design discontinued ****"); [[fallthrough]];
        case FirDesignVerdict::refused:
            bench.design = DesignOutcome::discontinued;
            ++bench.discontinued_designs;
            break;
        case FirDesignVerdict::unbuilt: not_implemented(bench); break;
    }
}

}  // namespace

void fir_design_road(Workbench& bench, FormStart start) {
    if (start == FormStart::stored_data && !recall_input(bench)) return;
    if (!run_form(FIR_DESIGN_DLG, &bench.fir_request, bench.session.units, bench.reporter)) return;
    bench.session.design_class = "filter";
    if (bench.fir_request.save_design && !save_input(bench)) return;
    design(bench);
}

}  // namespace kavrel
