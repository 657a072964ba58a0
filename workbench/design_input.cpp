#include "workbench/design_input.h"

#include "segment/desk.h"
#include "shell/stored_files.h"
#include "shell/whole_file.h"

namespace kavrel {

namespace {

bool fits(const Workbench& bench, std::string_view name);

}  // namespace

void take_units(const UnitSet& units, Session& session) {
    session.units = units;
    session.frequency_scale = units.frequency_multiplier;
    session.inductor_scale = units.inductor_multiplier;
    session.capacitor_scale = units.capacitor_multiplier;
    session.time_scale = units.time_multiplier;
}

bool recall_input(Workbench& bench, const InputFileKind& kind, const AcceptBytes& take) {
    const std::string name = bench.window.choose_file(
        {.caption = kind.recall_caption, .description = kind.description, .filter = kind.filter});
    if (name.empty()) return false;
    const WholeFile bytes = read_whole(name);
    if (!bytes) {
        bench.reporter.message(complaint_of(bytes.fault, "File was not found"), "Error");
        return false;
    }
    if (!take(*bytes)) {
        bench.reporter.message("File contains incorrect data", "Error");
        return false;
    }
    bench.session.input_file = fits(bench, name) ? std::string_view(name) : std::string_view{};
    return true;
}

bool save_input(Workbench& bench, const InputFileKind& kind, std::string_view bytes, const AcceptBytes& is_own) {
    const WholeFile current = read_whole(bench.session.input_file.text());
    if (bench.session.input_file.is_blank() || (current && !is_own(*current))) {
        const std::string name = bench.window.choose_file({.caption = "Select a file name",
                                                           .description = kind.description,
                                                           .filter = kind.filter,
                                                           .to_write = true});
        if (name.empty()) return true;
        const std::string whole = std::string(file_stem(name)) + std::string(kind.extension);
        if (!fits(bench, whole)) {
            bench.reporter.message("File could not be written", "Error");
            return false;
        }
        if (!may_write(bench.session, bench.reporter, name, whole)) return false;
        bench.session.input_file.assign(whole);
    }
    if (write_whole(bench.session.input_file.text(), bytes)) {
        note_written(bench.session, bench.session.input_file.text());
        return true;
    }
    bench.session.input_file = {};
    bench.reporter.message("File could not be written", "Error");
    return false;
}

namespace {

// A name that is cut would be that of another file.
bool fits(const Workbench& bench, std::string_view name) {
    return name.size() <= bench.session.input_file.bytes.size();
}

}  // namespace

}  // namespace kavrel
