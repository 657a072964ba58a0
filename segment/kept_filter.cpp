#include "segment/kept_filter.h"

namespace kavrel {

namespace {

constexpr std::string_view go_on = "Data could not be stored\nDo you want to go on without undo?";
constexpr std::string_view stored_files = "Storage files";  // as selectors describe them

[[nodiscard]] bool refused(const KeptWork& work, std::string_view text) {
    refuse(work.desk, text);
    return false;
}
// After a step that was not to be: all is as it was.
[[nodiscard]] bool taken_back(const KeptWork& work, const std::string& former) {
    static_cast<void>(work.take_snapshot(former));
    return false;
}
bool is_no_file(FileStatus status) { return status == FileStatus::not_regular || status == FileStatus::too_large; }
void take_row(const KeptWork& work);
[[nodiscard]] bool push_undo(const KeptWork& work, const std::string& snapshot);
[[nodiscard]] bool exchange(const KeptWork& work, int level, std::string_view not_read);
[[nodiscard]] bool save_under(const KeptWork& work, std::string_view name, std::string_view typed);
std::optional<std::string> ask_stored_name(const KeptWork& work);
std::optional<std::string> ask_name_to_open(const KeptWork& work);
bool fits(const Session& session, std::string_view name) { return name.size() <= session.filter_file.bytes.size(); }

}  // namespace

bool keep_for_undo(const KeptWork& work) { return push_undo(work, work.snapshot()); }

void keep_former(const KeptWork& work) {
    KeptState& state = work.state;
    take_row(work);
    const bool kept =
        !work.is_empty() && work.desk.temporaries.push_undo(state.undoTop, work.snapshot()) == FileStatus::done;
    state.undoTop = state.undoCount = kept ? std::min(state.undoTop + 1, undo_levels) : 0;
    state.opened = kept;
}

void forget_edits(KeptState& state) {
    state.undoTop = state.undoCount = 0;
    state.opened = false;
}

bool is_unsaved(const KeptWork& work) { return !work.is_empty() && work.fingerprint() != work.state.saved; }

std::string_view cannot_undo(const KeptState& state) { return state.undoTop < 1 ? "Nothing to undo" : ""; }

std::string_view cannot_redo(const KeptState& state) {
    return state.undoTop >= state.undoCount ? "Nothing to redo" : "";
}

std::string_view cannot_recall(const Desk& desk, const KeepingWords& words) {
    return desk.temporaries.has_stored() ? "" : words.nothing_stored;
}

std::string_view cannot_save(const KeptWork& work) { return work.is_empty() ? data_unavailable : ""; }

bool undo(const KeptWork& work) {
    int& top = work.state.undoTop;
    if (const auto why = cannot_undo(work.state); !why.empty()) return refused(work, why);
    if (!exchange(work, top - 1, "Nothing stored\nor error reading data file")) return false;
    --top;
    return true;
}

bool redo(const KeptWork& work) {
    int& top = work.state.undoTop;
    if (const auto why = cannot_redo(work.state); !why.empty()) return refused(work, why);
    if (!exchange(work, top, "File could not be read")) return false;
    ++top;
    return true;
}

bool store(const KeptWork& work) {
    if (work.desk.temporaries.store(work.snapshot()) != FileStatus::done) {
        work.desk.reporter.message(work.words().not_kept, "Warning");
        return false;
    }
    work.state.stored_for = work.desk.session.filter_file;
    return true;
}

bool recall(const KeptWork& work) {
    Session& session = work.desk.session;
    const std::string former = work.snapshot();
    std::string bytes;
    const FileStatus status = work.desk.temporaries.recall(bytes);
    if (status == FileStatus::not_found) return refused(work, work.words().nothing_stored);
    if (is_no_file(status)) return refused(work, message_of(status));
    if (status != FileStatus::done || !work.take_snapshot(bytes)) return refused(work, work.words().not_recalled);
    if (!push_undo(work, former)) return taken_back(work, former);
    work.state.opened = true;
    if (!(session.filter_file == work.state.stored_for)) session.filter_file = "";
    return true;
}

bool save(const KeptWork& work) {
    if (const auto why = cannot_save(work); !why.empty()) return refused(work, why);
    const std::string name = work.desk.session.filter_file.text();
    return name.empty() ? save_as(work) : save_under(work, name, work.file_of(name));
}

bool save_as(const KeptWork& work) {
    const auto name = ask_stored_name(work);
    return name && save_under(work, *name, *name);
}

bool read(const KeptWork& work, bool name_given) {
    Session& session = work.desk.session;
    const auto name = name_given ? session.filter_file.text() : ask_name_to_open(work);
    if (!name) return false;
    const std::string former = work.snapshot();
    FileMark mark;
    const FileStatus status = work.read_from(*name, mark);
    const std::string_view own = status == FileStatus::damaged ? work.words().damaged : "";
    if (!own.empty()) return refused(work, own);
    if (status != FileStatus::done) return refused(work, message_of(status));
    if (!name_given) {
        if (!push_undo(work, former)) return taken_back(work, former);
        work.state.opened = true;
    }
    work.state.saved = work.fingerprint();
    note_known(session, work.file_of(*name), mark);
    session.filter_file = fits(session, *name) ? std::string_view(*name) : std::string_view{};
    return true;
}

namespace {

// The undo files hold the states of one Segment: with the first of another's those of the former are over.
void take_row(const KeptWork& work) {
    KeptState*& owner = work.desk.temporaries.row_of;
    if (owner != nullptr && owner != &work.state) owner->undoTop = owner->undoCount = 0;
    owner = &work.state;
}

// Where the user goes on without it, what could be redone is dropped all the same.
bool push_undo(const KeptWork& work, const std::string& snapshot) {
    KeptState& state = work.state;
    take_row(work);
    if (work.desk.temporaries.push_undo(state.undoTop, snapshot) == FileStatus::done) {
        state.undoTop = std::min(state.undoTop + 1, undo_levels);
    } else if (work.desk.reporter.message(go_on, "Question", Buttons::yes_no) != Answer::yes) {
        return false;
    }
    state.undoCount = state.undoTop;
    return true;
}

// The state in the file of the level becomes the current one, and that goes into the file.
bool exchange(const KeptWork& work, int level, std::string_view not_read) {
    Session& session = work.desk.session;
    const std::string former = work.snapshot();
    const FixedText<80> title = session.TITLE;
    std::string bytes;
    TemporaryFiles& files = work.desk.temporaries;
    const FileStatus status = files.read_undo(level, bytes);
    if (is_no_file(status)) return refused(work, message_of(status));
    if (status != FileStatus::done || !work.take_snapshot(bytes)) return refused(work, not_read);
    if (files.write_undo(level, former) != FileStatus::done) {
        static_cast<void>(taken_back(work, former));
        return refused(work, work.words().not_kept);
    }
    if (work.state.opened) {
        session.filter_file = "";
    } else if (!work.undoes_title()) {
        session.TITLE = title;
    }
    return true;
}

bool save_under(const KeptWork& work, std::string_view name, std::string_view typed) {
    Session& session = work.desk.session;
    if (const auto why = cannot_save(work); !why.empty()) return refused(work, why);
    const std::string file = work.file_of(name);
    if (!may_write(session, work.desk.reporter, typed, file)) return false;
    session.filter_file = name;
    FileMark mark;
    const FileStatus status = work.save_to(name, mark);
    if (status != FileStatus::done) return refused(work, message_of(status));
    note_written(session, file, mark);
    work.state.saved = work.fingerprint();
    return true;
}

std::optional<std::string> ask_stored_name(const KeptWork& work) {
    auto name = ask_file(
        work.desk,
        {.caption = select_file, .description = stored_files, .filter = work.selector_filter(), .to_write = true});
    if (name && !fits(work.desk.session, *name)) {
        refuse(work.desk, "File could not be opened");
        return std::nullopt;
    }
    return name;
}

std::optional<std::string> ask_name_to_open(const KeptWork& work) {
    const Answer answer = work.desk.reporter.message(work.overwrite_warning(), "Warning", Buttons::yes_no);
    if (answer != Answer::yes) return std::nullopt;
    return ask_file(work.desk,
                    {.caption = work.open_caption(), .description = stored_files, .filter = work.selector_filter()});
}

}  // namespace

}  // namespace kavrel
