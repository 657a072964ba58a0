// The one routine through which Segments keep their data in files.
//
// An operation moves all the bytes of a file at once, so nothing stays open between two of them, and a file that is
// written replaces the old one only when it is complete. That is why the codes 3 to 6, 10 and 11 (of units that are
// rewound, closed, or opened unless they are open) have no operation.
#pragma once

#include <string>
#include <string_view>

#include "shell/stored_files.h"
#include "shell/whole_file.h"

namespace kavrel {

inline constexpr int undo_levels = 10;

enum class FileOperation {
    output = 1,         // writes the file that stem and slot name, in place of the one of that name
    input = 2,          // reads it
    store = 7,          // writes ~xxx.tmp
    recall = 8,         // reads it
    remove_stored = 9,  // removes it
    remove = 12,        // removes the file that stem and slot name
    new_undo = 13,      // writes the undo file of the level; at level 10 all files first move one down, and it is 9
    undo = 14,          // reads the undo file of the level
    append = 17,        // adds to the file that stem and slot name
};

enum class FileStatus {
    done,
    not_found,    // there is no such file
    not_opened,   // there is one, but it cannot be read
    not_regular,  // there is one that may never end
    too_large,    // there is one of more than 16 MB
    not_written,  // the old one, if any, is as it was
    damaged,      // what was read is not such a file: found by those who take its bytes apart
};

// What a Segment's box says; blank when it is done.
[[nodiscard]] std::string_view message_of(FileStatus status);

// Which file is meant.
struct FilePlace {
    std::string_view stem = {};
    ExtSlot slot = ExtSlot::text;
    int undo_count = 0;  // undo files: 0 to 9; a new one: 0 to 10
};

// Performs the operation with the bytes that are to be written, or into the bytes that are read; what fails leaves
// files and bytes as they were.
[[nodiscard]] FileStatus file_operation(FileOperation operation, const FilePlace& place, std::string& bytes);

// Undo files are _xxx0.tmp to _xxx9.tmp in the current folder.
[[nodiscard]] std::string undo_file(int level);
inline constexpr const char* store_file = "~xxx.tmp";

// Removes the undo files, whole or not.
void remove_undo_files();

// Removes what an earlier run left of all these files, whole or not.
void remove_temporary_files();

}  // namespace kavrel
