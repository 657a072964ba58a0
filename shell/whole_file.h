// Files that are read and written as a whole, beside other programs that do the same: whoever reads sees the old file
// or the new one, whole. No other room opens files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavrel {

// Which file that is, and its contents of when: another one whenever somebody has written a file of that name.
struct FileMark {
    std::uint64_t device = 0, number = 0, size = 0;
    std::int64_t seconds = 0, nanoseconds = 0;
    bool operator==(const FileMark&) const = default;
};

enum class ReadFault {
    none,
    missing,
    not_regular,  // a pipe, a device: it may never end
    too_large,    // more than 16 MB
    unreadable,   // also a folder
};

struct WholeFile {
    ReadFault fault = ReadFault::none;
    std::string bytes;
    FileMark mark;

    explicit operator bool() const { return fault == ReadFault::none; }
    const std::string& operator*() const { return bytes; }
    const std::string* operator->() const { return &bytes; }
};

// Reads a regular file of at most 16 MB; waits for nobody.
[[nodiscard]] WholeFile read_whole(const std::string& path);

// "File is not a regular file", "File is larger than 16 MB"; for any other fault the text that is given.
[[nodiscard]] std::string complaint_of(ReadFault fault, std::string_view otherwise, std::string_view subject = "File");

// How a file is written: a snapshot of the run's own need not outlive a power failure, and is no link that leads
// elsewhere; any other file does, and may be.
enum class Lasting { no, yes };

// Writes a file beside the old one, with its permissions, and renames it into place: the old one stays whole whatever
// happens. A link stays one; what it leads to is replaced. A pipe, a device, or a name that stands for an open stream
// (under /dev/fd) is written straight. Answers the mark of what was written (a stream has none: it is zero), or
// nothing when it could not be: with nothing changed, or, where only the new name could not be made to last, with the
// new file in place. A program that is killed meanwhile leaves one file, "~name.kavrel-PID.tmp", beside it.
[[nodiscard]] std::optional<FileMark> write_whole(const std::string& path, std::string_view bytes,
                                                  Lasting lasting = Lasting::yes);

// Adds to the end of a file, which is made when there is none. False when that went wrong: the file is as it was.
[[nodiscard]] bool append_to_file(const std::string& path, std::string_view bytes);

// The number of the open stream that a name stands for ("/dev/stdout": 1), or none.
[[nodiscard]] std::optional<int> stream_named(const std::string& path);

// What stands in the way of a file's being replaced.
enum class Guard {
    none,       // no such file, or a stream
    present,    // there is one
    read_only,  // its owner has made it so, or it is another's
};
struct FileState {
    Guard guard = Guard::none;
    FileMark mark;
};
[[nodiscard]] FileState state_of_file(const std::string& path);

// Removes from a folder the files "~name.kavrel-PID.tmp" of programs that were killed.
void remove_abandoned_files(const std::string& folder);

}  // namespace kavrel
