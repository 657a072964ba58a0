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
    note_known(bench.session, name, bytes.mark);
    return true;
}

bool save_input(Workbench& bench, const InputFileKind& kind, std::string_view bytes, const AcceptBytes& is_own) {
    const auto former = bench.session.input_file;
    std::string typed = former.text();
    const WholeFile current = read_whole(typed);
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
        typed = name;
        bench.session.input_file.assign(whole);
    }
    const std::string file = bench.session.input_file.text();
    const WriteVerdict verdict = write_known(bench.session, bench.reporter, typed, file, bytes);
    if (verdict == WriteVerdict::not_written) bench.reporter.message("File could not be written", "Error");
    if (verdict == WriteVerdict::not_written) bench.session.input_file = {};
    if (verdict == WriteVerdict::refused) bench.session.input_file = former;
    return verdict == WriteVerdict::written;
}

namespace {

// A name that is cut would be that of another file.
bool fits(const Workbench& bench, std::string_view name) {
    return name.size() <= bench.session.input_file.bytes.size();
}

}  // namespace

}  // namespace kavrel
