#include "segment/file_operation.h"

#include <array>
#include <cstdio>

namespace kavrel {

namespace {

struct FileMessage {
    FileStatus status;
    std::string_view text;
};
constexpr std::array<FileMessage, 7> file_messages = {{
    {FileStatus::done, ""},
    {FileStatus::not_found, "File was not found"},
    {FileStatus::not_opened, "File could not be opened"},
    {FileStatus::not_regular, "File is not a regular file"},
    {FileStatus::too_large, "File is larger than 16 MB"},
    {FileStatus::not_written, "File could not be written"},
    {FileStatus::damaged, "Error encountered in reading the file"},
}};

FileStatus write(const std::string& path, const std::string& bytes, FileMark& mark);

}  // namespace

std::string_view message_of(FileStatus status) {
    for (const FileMessage& row : file_messages) {
        if (row.status == status) return row.text;
    }
    return {};
}

FileStatus file_operation(FileOperation operation, const FilePlace& place, std::string& bytes, FileMark& mark) {
    const std::string name = file_name(place.stem, place.slot);
    switch (operation) {
        case FileOperation::output: return write(name, bytes, mark);
        case FileOperation::input: return read_file(name, bytes, &mark);
        case FileOperation::remove: return std::remove(name.c_str()) == 0 ? FileStatus::done : FileStatus::not_found;
        case FileOperation::append: return append_to_file(name, bytes) ? FileStatus::done : FileStatus::not_written;
    }
    return FileStatus::not_opened;
}

FileStatus read_file(const std::string& path, std::string& bytes, FileMark* mark) {
    WholeFile found = read_whole(path);
    switch (found.fault) {
        case ReadFault::none: break;
        case ReadFault::missing: return FileStatus::not_found;
        case ReadFault::not_regular: return FileStatus::not_regular;
        case ReadFault::too_large: return FileStatus::too_large;
        case ReadFault::unreadable: return FileStatus::not_opened;
    }
    bytes = std::move(found.bytes);
    if (mark != nullptr) *mark = found.mark;
    return FileStatus::done;
}

namespace {

FileStatus write(const std::string& path, const std::string& bytes, FileMark& mark) {
    const auto written = write_whole(path, bytes);
    if (written) mark = *written;
    return written ? FileStatus::done : FileStatus::not_written;
}

}  // namespace

}  // namespace kavrel
