#include "segment/kept_filter.h"

namespace kavrel {

namespace {

constexpr std::string_view not_kept = "Data could not be stored";
constexpr std::string_view stored_files = "Storage files";  // as selectors describe them

[[nodiscard]] bool refused(const KeptWork& work, std::string_view text) {
    refuse(work.desk, text);
    return false;
}
void push_undo(const KeptWork& work, std::string snapshot);
[[nodiscard]] bool exchange(const KeptWork& work, int level, std::string_view not_read);
[[nodiscard]] bool ask_stored_name(const KeptWork& work);
std::optional<std::string> ask_name_to_open(const KeptWork& work);
bool fits(const Session& session, std::string_view name) { return name.size() <= session.filter_file.bytes.size(); }

}  // namespace

void keep_for_undo(const KeptWork& work) { push_undo(work, work.snapshot()); }

bool undo(const KeptWork& work) {
    int& top = work.state.undoTop;
    if (top < 1) return refused(work, "Nothing to undo");
    if (!exchange(work, top - 1, "Nothing stored\nor error reading data file")) return false;
    --top;
    return true;
}

bool redo(const KeptWork& work) {
    int& top = work.state.undoTop;
    if (top >= work.state.undoCount) return refused(work, "Nothing to redo");
    if (!exchange(work, top, "File could not be read")) return false;
    ++top;
    return true;
}

bool store(const KeptWork& work) {
    std::string bytes = work.snapshot();
    if (file_operation(FileOperation::store, {}, bytes) != FileStatus::done) {
        work.desk.reporter.message(not_kept, "Warning");
        return false;
    }
    work.state.stored_for = work.desk.session.filter_file;
    return true;
}

bool recall(const KeptWork& work) {
    Session& session = work.desk.session;
    std::string former = work.snapshot();
    std::string bytes;
    const FileStatus status = file_operation(FileOperation::recall, {}, bytes);
    if (status == FileStatus::not_found) return refused(work, "Data was not stored");
    if (status != FileStatus::done || !work.take_snapshot(bytes)) return refused(work, "Data could not be read");
    push_undo(work, std::move(former));
    work.state.opened = true;
    if (!(session.filter_file == work.state.stored_for)) session.filter_file = "";
    return true;
}

bool save(const KeptWork& work) {
    Session& session = work.desk.session;
    if (work.is_empty()) return refused(work, data_unavailable);
    if (session.filter_file.is_blank() && !ask_stored_name(work)) return false;
    const std::string_view name = session.filter_file.trimmed();
    const FileStatus status = work.save_to(name);
    if (status != FileStatus::done) return refused(work, message_of(status));
    note_written(session, work.file_of(name));
    return true;
}

bool save_as(const KeptWork& work) { return ask_stored_name(work) && save(work); }

bool read(const KeptWork& work, bool name_given) {
    Session& session = work.desk.session;
    const auto name = name_given ? session.filter_file.text() : ask_name_to_open(work);
    if (!name) return false;
    std::string former = work.snapshot();
    const FileStatus status = work.read_from(*name);
    if (status != FileStatus::done) return refused(work, message_of(status));
    if (!name_given) {
        push_undo(work, std::move(former));
        work.state.opened = true;
    }
    session.filter_file = fits(session, *name) ? std::string_view(*name) : std::string_view{};
    return true;
}

namespace {

void push_undo(const KeptWork& work, std::string snapshot) {
    KeptState& state = work.state;
    if (file_operation(FileOperation::new_undo, {.undo_count = state.undoTop}, snapshot) != FileStatus::done) {
        work.desk.reporter.message(not_kept, "Warning");
        return;
    }
    state.undoTop = std::min(state.undoTop + 1, undo_levels);
    state.undoCount = state.undoTop;
}

// The state in the file of the level becomes the current one, and that goes into the file.
bool exchange(const KeptWork& work, int level, std::string_view not_read) {
    Session& session = work.desk.session;
    const std::string former = work.snapshot();
    const FixedText<80> title = session.TITLE;
    std::string bytes;
    if (file_operation(FileOperation::undo, {.undo_count = level}, bytes) != FileStatus::done ||
        !work.take_snapshot(bytes)) {
        return refused(work, not_read);
    }
    if (!write_whole(undo_file(level), former)) {
        static_cast<void>(work.take_snapshot(former));
        return refused(work, not_kept);
    }
    if (work.state.opened) {
        session.filter_file = "";
    } else {
        session.TITLE = title;
    }
    return true;
}

bool ask_stored_name(const KeptWork& work) {
    Session& session = work.desk.session;
    const auto name = ask_file(
        work.desk,
        {.caption = select_file, .description = stored_files, .filter = work.selector_filter(), .to_write = true});
    if (!name) return false;
    if (!fits(session, *name)) return refused(work, "File could not be opened");
    if (!may_write(session, work.desk.reporter, *name, work.file_of(*name))) return false;
    session.filter_file = std::string_view(*name);
    return true;
}

std::optional<std::string> ask_name_to_open(const KeptWork& work) {
    const Answer answer = work.desk.reporter.message(work.overwrite_warning(), "Warning", Buttons::yes_no);
    if (answer != Answer::yes) return std::nullopt;
    return ask_file(work.desk,
                    {.caption = work.open_caption(), .description = stored_files, .filter = work.selector_filter()});
}

}  // namespace

}  // namespace kavrel
