// The one routine through which Segments keep their data in files that the user names; undo and store files are those
// of `TemporaryFiles`.
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

enum class FileOperation {
    output = 1,   // writes the file that stem and slot name, in place of the one of that name
    input = 2,    // reads it
    remove = 12,  // removes it
    append = 17,  // adds to it
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
};

// Performs the operation with the bytes that are to be written, or into the bytes that are read; what fails leaves
// files and bytes as they were. The mark is that of the file as it was written or read.
[[nodiscard]] FileStatus file_operation(FileOperation operation, const FilePlace& place, std::string& bytes,
                                        FileMark& mark);

// Reads a file of any name.
[[nodiscard]] FileStatus read_file(const std::string& path, std::string& bytes, FileMark* mark = nullptr);

}  // namespace kavrel
