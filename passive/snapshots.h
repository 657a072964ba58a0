// Snapshots of the filter in the current folder: one that the user stores and recalls, ~xxx.tmp, and ten for undo and
// redo, _xxx0.tmp to _xxx9.tmp. A snapshot is made of records (passive/circuit_records.h) and holds the whole filter
// and its title.
//
// The undo files form a row. Those below `undoTop` hold the states before the edits that can be undone, oldest first;
// those from `undoTop` up to `undoCount` the states behind the edits that can be redone. An undo exchanges the current
// state for that of the file below `undoTop`, a redo for that of the file at it: so ten files serve ten edits in both
// directions.
#pragma once

#include <string_view>

#include "passive/passive_desk.h"

namespace kavrel {

enum class SnapshotVerdict {
    done,
    nothing_to_undo,
    nothing_to_redo,
    undo_not_read,   // the undo file is missing or damaged
    redo_not_read,   // likewise for a redo
    not_kept,        // a snapshot could not be written
    not_recalled,    // the stored one is damaged
    nothing_stored,  // there is none
};

[[nodiscard]] std::string_view message_of(SnapshotVerdict verdict);

// None of the routines changes anything (filter, title, state, or a file that is in use) unless it answers `done`.

// Before an edit: keeps the state as the newest one to be undone, and drops what could be redone. Beyond ten edits the
// oldest is dropped. `not_kept` is no more than a warning: the edit cannot be undone.
[[nodiscard]] SnapshotVerdict push_undo(const PassiveFilter& filter, const FixedText<80>& title, PassiveState& state);

// Takes the newest edit back; `nothing_to_undo`, `undo_not_read`, or `not_kept`, when the current state could not be
// kept for a redo.
[[nodiscard]] SnapshotVerdict undo(PassiveFilter& filter, FixedText<80>& title, PassiveState& state);

// Makes again the edit that was undone last; `nothing_to_redo`, `redo_not_read`, `not_kept`.
[[nodiscard]] SnapshotVerdict redo(PassiveFilter& filter, FixedText<80>& title, PassiveState& state);

// "sto ": keeps the state in place of the one stored before; `not_kept`.
[[nodiscard]] SnapshotVerdict store(const PassiveFilter& filter, const FixedText<80>& title);

// "rcl ": takes up the stored state; `nothing_stored` or `not_recalled`.
[[nodiscard]] SnapshotVerdict recall(PassiveFilter& filter, FixedText<80>& title);

}  // namespace kavrel
