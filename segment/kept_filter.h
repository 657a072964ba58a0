// How a Segment keeps its filter: the commands undo, redo, store, recall, save, save as and read, for a filter of any
// type that can be turned into bytes and back.
//
// In the current folder are ten levels of undo and redo, _xxx0.tmp to _xxx9.tmp, and one state that the user stores and
// recalls, ~xxx.tmp. The undo files form a row. Those below `undoTop` hold the states before the edits that can be
// undone, oldest first; those from `undoTop` up to `undoCount` the states behind the edits that can be redone. An undo
// exchanges the current state for that of the file below `undoTop`, a redo for that of the file at it: so ten files
// serve ten edits in both directions.
#pragma once

#include "segment/desk.h"
#include "segment/stored_filter.h"

namespace kavrel {

// What a Segment knows of its kept states from command to command.
struct KeptState {
    int undoTop = 0;            // the level that the next "undo" reads
    int undoCount = 0;          // the highest one in use
    bool opened = false;        // a filter was opened or recalled: "undo" may lead to one of another file and title
    FixedText<256> stored_for;  // the session's stored file when "sto " was given
    Fingerprint saved = 0;      // of the filter as it was last saved or read; 0 when its title is another since
};

// What the boxes of "sto " and "rcl " say, and that of "read" of a damaged file.
struct KeepingWords {
    std::string_view not_kept = "Data could not be stored";
    std::string_view nothing_stored = "Data was not stored";
    std::string_view not_recalled = "Data could not be read";
    std::string_view damaged = {};  // blank: that of all files
};

// How filters of a type are kept.
template <class Filter>
struct Keeping {
    Layout<Filter> snapshot;                    // in the files of undo, redo, store and recall
    std::span<const StoredForm<Filter>> forms;  // in stored files
    bool (*is_empty)(const Filter& filter);     // whether there is nothing to save
    std::string_view open_caption;              // of the selector of "read"
    std::string_view overwrite_warning;         // before it
    KeepingWords words = {};
    bool undoes_title = false;  // a change of the title is an edit
};

// A Segment's filter, whatever its type, with the records that the commands work on. The title is the session's.
class KeptWork {
public:
    KeptWork(Desk& work_desk, KeptState& kept_state) : desk(work_desk), state(kept_state) {}
    virtual ~KeptWork() = default;

    Desk& desk;
    KeptState& state;

    [[nodiscard]] virtual Fingerprint fingerprint() const = 0;
    [[nodiscard]] virtual std::string snapshot() const = 0;
    [[nodiscard]] virtual bool take_snapshot(std::string_view bytes) const = 0;  // as `Layout::take`
    [[nodiscard]] virtual bool is_empty() const = 0;
    [[nodiscard]] virtual std::string file_of(std::string_view name) const = 0;                   // as `file_of_filter`
    [[nodiscard]] virtual FileStatus save_to(std::string_view name, FileMark& mark) const = 0;    // as `save_filter`
    [[nodiscard]] virtual FileStatus read_from(std::string_view name, FileMark& mark) const = 0;  // as `read_filter`
    [[nodiscard]] virtual std::string selector_filter() const = 0;                                // "*.qfp; *.trf"
    [[nodiscard]] virtual std::string_view open_caption() const = 0;
    [[nodiscard]] virtual std::string_view overwrite_warning() const = 0;
    [[nodiscard]] virtual bool undoes_title() const = 0;
    [[nodiscard]] virtual const KeepingWords& words() const = 0;
};

template <class Filter>
class KeptFilter final : public KeptWork {
public:
    KeptFilter(Desk& work_desk, KeptState& kept_state, Filter& filter, const Keeping<Filter>& keeping)
        : KeptWork(work_desk, kept_state), filter_(filter), title_(work_desk.session.TITLE), keeping_(keeping) {}

    Fingerprint fingerprint() const override { return kavrel::fingerprint(keeping_.snapshot, filter_); }
    std::string snapshot() const override { return keeping_.snapshot.bytes(filter_, title_); }
    bool take_snapshot(std::string_view bytes) const override { return keeping_.snapshot.take(bytes, filter_, title_); }
    bool is_empty() const override { return keeping_.is_empty(filter_); }
    std::string file_of(std::string_view name) const override { return file_of_filter<Filter>(name, keeping_.forms); }
    FileStatus save_to(std::string_view name, FileMark& mark) const override {
        return save_filter(name, keeping_.forms, filter_, title_, mark);
    }
    FileStatus read_from(std::string_view name, FileMark& mark) const override {
        return read_filter(name, keeping_.forms, filter_, title_, mark);
    }
    std::string selector_filter() const override {
        std::string filter;
        for (const StoredForm<Filter>& form : keeping_.forms) {
            filter += (filter.empty() ? "*" : "; *") + std::string(EXT(static_cast<int>(form.slot)));
        }
        return filter;
    }
    std::string_view open_caption() const override { return keeping_.open_caption; }
    std::string_view overwrite_warning() const override { return keeping_.overwrite_warning; }
    bool undoes_title() const override { return keeping_.undoes_title; }
    const KeepingWords& words() const override { return keeping_.words; }

private:
    Filter& filter_;
    FixedText<80>& title_;
    const Keeping<Filter>& keeping_;
};

// Before an edit: the current state becomes the newest one to be undone. What could be redone is dropped, and beyond
// ten edits the oldest. Where the state cannot be kept the user is asked whether to go on without undo: false when the
// edit is not to be made.
[[nodiscard]] bool keep_for_undo(const KeptWork& work);

// The same before a filter from elsewhere takes the place of the current one: nothing is asked, a state that cannot be
// kept cannot be had again.
void keep_former(const KeptWork& work);

// A stored filter that is not read by the user's command takes the place of another one: there is no way back.
void forget_edits(KeptState& state);

// Whether the filter, if there is one, is another than was last saved or read.
[[nodiscard]] bool is_unsaved(const KeptWork& work);

// Why a command has nothing to go on, in the words of its refusal; blank otherwise.
[[nodiscard]] std::string_view cannot_undo(const KeptState& state);
[[nodiscard]] std::string_view cannot_redo(const KeptState& state);
[[nodiscard]] std::string_view cannot_recall(const Desk& desk, const KeepingWords& words = {});
[[nodiscard]] std::string_view cannot_save(const KeptWork& work);

// The commands answer whether they were done. Where one was not, a box has said why, and nothing has changed: filter,
// title, state, and every file that is in use.

// "undo": takes the newest edit back. "redo": makes again the edit that was undone last. Where no edit changes the
// title one that was typed in meanwhile remains. Where the step may have led to another filter the title is that one's,
// and it is not saved into the stored file unasked.
[[nodiscard]] bool undo(const KeptWork& work);
[[nodiscard]] bool redo(const KeptWork& work);

// "sto ": keeps the state in place of the one stored before.
[[nodiscard]] bool store(const KeptWork& work);

// "rcl ": takes up the stored state; "undo" brings the former one back. What was stored of the filter of another file
// is not saved into this file unasked.
[[nodiscard]] bool recall(const KeptWork& work);

// "save": into the session's stored file; the name is asked for while there is none. "Save as" asks for a new one
// first.
[[nodiscard]] bool save(const KeptWork& work);
[[nodiscard]] bool save_as(const KeptWork& work);

// "read": with `name_given` the filter of the session's stored file; else the user, warned that the current one is
// lost, chooses a file. "undo" brings the former filter back when it was the user who opened the file here.
[[nodiscard]] bool read(const KeptWork& work, bool name_given);

}  // namespace kavrel
