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

FileStatus write(const std::string& path, const std::string& bytes);
FileStatus read(const std::string& path, std::string& bytes);
FileStatus remove(const std::string& path);
FileStatus push_undo_file(int level, const std::string& bytes);
FileStatus append(const std::string& path, const std::string& bytes);

}  // namespace

std::string_view message_of(FileStatus status) {
    for (const FileMessage& row : file_messages) {
        if (row.status == status) return row.text;
    }
    return {};
}

FileStatus file_operation(FileOperation operation, const FilePlace& place, std::string& bytes) {
    const auto named = [&] { return file_name(place.stem, place.slot); };
    switch (operation) {
        case FileOperation::output: return write(named(), bytes);
        case FileOperation::input: return read(named(), bytes);
        case FileOperation::store: return write(store_file, bytes);
        case FileOperation::recall: return read(store_file, bytes);
        case FileOperation::remove_stored: return remove(store_file);
        case FileOperation::remove: return remove(named());
        case FileOperation::new_undo: return push_undo_file(place.undo_count, bytes);
        case FileOperation::undo: return read(undo_file(place.undo_count), bytes);
        case FileOperation::append: return append(named(), bytes);
    }
    return FileStatus::not_opened;
}

void remove_undo_files() {
    // The newest of eleven has a name of its own until the others have moved.
    for (int level = 0; level <= undo_levels; ++level) std::remove(undo_file(level).c_str());
}

void remove_temporary_files() {
    std::remove(store_file);
    remove_undo_files();
    remove_abandoned_files(".");
}

std::string undo_file(int level) { return "_xxx" + std::to_string(level) + ".tmp"; }

namespace {

FileStatus write(const std::string& path, const std::string& bytes) {
    return write_whole(path, bytes) ? FileStatus::done : FileStatus::not_written;
}

FileStatus read(const std::string& path, std::string& bytes) {
    WholeFile found = read_whole(path);
    switch (found.fault) {
        case ReadFault::none: bytes = std::move(found.bytes); return FileStatus::done;
        case ReadFault::missing: return FileStatus::not_found;
        case ReadFault::not_regular: return FileStatus::not_regular;
        case ReadFault::too_large: return FileStatus::too_large;
        case ReadFault::unreadable: break;
    }
    return FileStatus::not_opened;
}

FileStatus remove(const std::string& path) {
    return std::remove(path.c_str()) == 0 ? FileStatus::done : FileStatus::not_found;
}

// The new file is written before the others move, so that they stay in place when it cannot be.
FileStatus push_undo_file(int level, const std::string& bytes) {
    if (!write_whole(undo_file(level), bytes)) return FileStatus::not_written;
    if (level < undo_levels) return FileStatus::done;
    std::remove(undo_file(0).c_str());
    for (int i = 1; i < level; ++i) std::rename(undo_file(i).c_str(), undo_file(i - 1).c_str());
    const bool moved = std::rename(undo_file(level).c_str(), undo_file(level - 1).c_str()) == 0;
    return moved ? FileStatus::done : FileStatus::not_written;
}

FileStatus append(const std::string& path, const std::string& bytes) {
    return append_to_file(path, bytes) ? FileStatus::done : FileStatus::not_written;
}

}  // namespace

}  // namespace kavrel
