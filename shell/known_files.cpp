#include "shell/known_files.h"

#include <algorithm>
#include <filesystem>

#include "shell/stored_files.h"

namespace kavrel {

namespace {

// The same for all names of a file.
std::string one_name(const std::string& name);
std::string trouble_with(const Session& session, std::string_view typed, const std::string& name);
KnownFile& known_file(Session& session, const std::string& name);

}  // namespace

bool may_write(const Session& session, Reporter& reporter, std::string_view typed, const std::string& name) {
    const std::string trouble = trouble_with(session, typed, name);
    if (trouble.empty()) return true;
    const std::string question = "File " + name + trouble + "\nDo you want to replace it?";
    if (reporter.message(question, "Warning", Buttons::yes_no) == Answer::yes) return true;
    reporter.message("File was not replaced", "Error");
    return false;
}

void note_known(Session& session, const std::string& name, const FileMark& mark) {
    if (mark != FileMark{}) known_file(session, name).mark = mark;
}

void note_written(Session& session, const std::string& name, const FileMark& mark) {
    note_known(session, name, mark);
    if (mark != FileMark{}) known_file(session, name).written = true;
}

WriteVerdict write_known(Session& session, Reporter& reporter, std::string_view typed, const std::string& name,
                         std::string_view bytes) {
    if (!may_write(session, reporter, typed, name)) return WriteVerdict::refused;
    const auto mark = write_whole(name, bytes);
    if (!mark) return WriteVerdict::not_written;
    note_written(session, name, *mark);
    return WriteVerdict::written;
}

namespace {

std::string one_name(const std::string& name) {
    std::error_code unknown;
    const auto whole = std::filesystem::weakly_canonical(name, unknown);
    return unknown ? name : whole.string();
}

std::string trouble_with(const Session& session, std::string_view typed, const std::string& name) {
    const FileState now = state_of_file(name);
    if (now.guard == Guard::none) return {};
    if (now.guard == Guard::read_only) return " is read-only";
    const auto known = std::ranges::find(session.known_files, one_name(name), &KnownFile::name);
    const bool is_known = known != session.known_files.end();
    if (is_known && known->mark != now.mark) return " was changed by another program";
    const bool own = is_known && known->written;
    return own || !extension_swapped(typed, name) ? "" : " is there already";
}

KnownFile& known_file(Session& session, const std::string& name) {
    const std::string own = one_name(name);
    const auto found = std::ranges::find(session.known_files, own, &KnownFile::name);
    if (found != session.known_files.end()) return *found;
    return session.known_files.emplace_back(KnownFile{.name = own, .mark = {}, .written = false});
}

}  // namespace

}  // namespace kavrel
