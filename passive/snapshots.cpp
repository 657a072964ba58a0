#include "passive/snapshots.h"

#include <algorithm>
#include <array>
#include <string>

#include "passive/circuit_records.h"
#include "shell/file_operation.h"

namespace kavrel {

namespace {

struct SnapshotMessage {
    SnapshotVerdict verdict;
    std::string_view text;
};
constexpr std::array<SnapshotMessage, 8> snapshot_messages = {{
    {SnapshotVerdict::done, ""},
    {SnapshotVerdict::nothing_to_undo, "Nothing to undo"},
    {SnapshotVerdict::nothing_to_redo, "Nothing to redo"},
    {SnapshotVerdict::undo_not_read, "Nothing stored\nor error reading data file"},
    {SnapshotVerdict::redo_not_read, "File could not be read"},
    {SnapshotVerdict::not_kept, "Data could not be stored"},
    {SnapshotVerdict::not_recalled, "Data could not be read"},
    {SnapshotVerdict::nothing_stored, "Data was not stored"},
}};

std::string snapshot_of(const PassiveFilter& filter, const FixedText<80>& title) {
    return circuit_records(filter, title, CircuitRecords::snapshot);
}

bool take_snapshot(std::string_view bytes, PassiveFilter& filter, FixedText<80>& title) {
    return read_circuit_records(bytes, filter, title, CircuitRecords::snapshot);
}

SnapshotVerdict exchange(int level, PassiveFilter& filter, FixedText<80>& title, SnapshotVerdict not_read);

}  // namespace

std::string_view message_of(SnapshotVerdict verdict) {
    for (const SnapshotMessage& row : snapshot_messages) {
        if (row.verdict == verdict) return row.text;
    }
    return {};
}

SnapshotVerdict push_undo(const PassiveFilter& filter, const FixedText<80>& title, PassiveState& state) {
    std::string bytes = snapshot_of(filter, title);
    const FilePlace place{.undo_count = state.undoTop};
    if (file_operation(FileOperation::new_undo, place, bytes) != FileStatus::done) return SnapshotVerdict::not_kept;
    state.undoTop = std::min(state.undoTop + 1, undo_levels);
    state.undoCount = state.undoTop;
    return SnapshotVerdict::done;
}

SnapshotVerdict undo(PassiveFilter& filter, FixedText<80>& title, PassiveState& state) {
    if (state.undoTop < 1) return SnapshotVerdict::nothing_to_undo;
    const SnapshotVerdict verdict = exchange(state.undoTop - 1, filter, title, SnapshotVerdict::undo_not_read);
    if (verdict == SnapshotVerdict::done) --state.undoTop;
    return verdict;
}

SnapshotVerdict redo(PassiveFilter& filter, FixedText<80>& title, PassiveState& state) {
    if (state.undoTop >= state.undoCount) return SnapshotVerdict::nothing_to_redo;
    const SnapshotVerdict verdict = exchange(state.undoTop, filter, title, SnapshotVerdict::redo_not_read);
    if (verdict == SnapshotVerdict::done) ++state.undoTop;
    return verdict;
}

SnapshotVerdict store(const PassiveFilter& filter, const FixedText<80>& title) {
    std::string bytes = snapshot_of(filter, title);
    const bool kept = file_operation(FileOperation::store, {}, bytes) == FileStatus::done;
    return kept ? SnapshotVerdict::done : SnapshotVerdict::not_kept;
}

SnapshotVerdict recall(PassiveFilter& filter, FixedText<80>& title) {
    std::string bytes;
    const FileStatus status = file_operation(FileOperation::recall, {}, bytes);
    if (status == FileStatus::not_found) return SnapshotVerdict::nothing_stored;
    if (status != FileStatus::done || !take_snapshot(bytes, filter, title)) return SnapshotVerdict::not_recalled;
    return SnapshotVerdict::done;
}

namespace {

// The state in the file becomes the current one, and that goes into the file; `not_read` is what is answered where
// the file cannot be used.
SnapshotVerdict exchange(int level, PassiveFilter& filter, FixedText<80>& title, SnapshotVerdict not_read) {
    PassiveFilter other;
    FixedText<80> other_title;
    std::string bytes;
    if (file_operation(FileOperation::undo, {.undo_count = level}, bytes) != FileStatus::done ||
        !take_snapshot(bytes, other, other_title)) {
        return not_read;
    }
    if (!write_whole(undo_file(level), snapshot_of(filter, title))) return SnapshotVerdict::not_kept;
    filter = other;
    title = other_title;
    return SnapshotVerdict::done;
}

}  // namespace

}  // namespace kavrel
