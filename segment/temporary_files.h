// The files that a run keeps for itself: undo and redo, and the stored state.
//
// They are _xxx0.tmp to _xxx9.tmp and ~xxx.tmp in the current folder for the one program that holds the lock of that
// folder. Any other program has them in a folder of its own there, _xxx.PID.tmp, which it locks likewise. A lock leaves
// no file, and ends with its program: so what nobody holds the lock of is nobody's, and may be removed. Where there are
// no locks everybody has a folder of his own, and removes only that one.
#pragma once

#include <string>

#include "segment/file_operation.h"

namespace kavrel {

inline constexpr int undo_levels = 10;

// A lock on a folder, if it was free and can be had; it is held until it is dropped or the program ends.
class FolderLock {
public:
    FolderLock() = default;
    explicit FolderLock(const std::string& folder);
    ~FolderLock();
    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;

    [[nodiscard]] bool held() const { return folder_ >= 0; }
    [[nodiscard]] bool is_anothers() const { return anothers_; }

private:
    int folder_ = -1;  // descriptor
    bool anothers_ = false;
};

struct KeptState;

// Without `take_folder`, as in tests, the files are those of the lock's holder, and stay.
class TemporaryFiles {
public:
    TemporaryFiles() = default;
    ~TemporaryFiles() { give_up(); }
    TemporaryFiles(const TemporaryFiles&) = delete;
    TemporaryFiles& operator=(const TemporaryFiles&) = delete;

    // Takes the current folder's lock, or a folder of its own, and removes what programs that were killed have left.
    void take_folder();

    // Removes all the files, and the folder of their own.
    void give_up();

    // Store and recall. `not_written` and any fault of reading leave files and bytes as they were.
    [[nodiscard]] FileStatus store(const std::string& bytes);
    [[nodiscard]] FileStatus recall(std::string& bytes) const;
    [[nodiscard]] bool has_stored() const;

    // Writes a new undo file at the level; at level 10 all files first move one down, and it is 9.
    [[nodiscard]] FileStatus push_undo(int level, const std::string& bytes);
    [[nodiscard]] FileStatus read_undo(int level, std::string& bytes) const;
    [[nodiscard]] FileStatus write_undo(int level, const std::string& bytes);

    KeptState* row_of = nullptr;  // whose states the undo files hold

    [[nodiscard]] std::string undo_file(int level) const { return home_ + "_xxx" + std::to_string(level) + ".tmp"; }
    [[nodiscard]] std::string store_file() const { return home_ + "~xxx.tmp"; }

private:
    void remove_files() const;
    [[nodiscard]] bool has_home();

    FolderLock lock_;        // of the current folder, or of the own one
    std::string home_;       // blank, or the own folder with a '/'
    bool taken_ = false;     // the files are ours to remove
    bool homeless_ = false;  // the own folder could not be made yet
};

}  // namespace kavrel
