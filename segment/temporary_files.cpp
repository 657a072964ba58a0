#include "segment/temporary_files.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kavrel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view own_folder = "_xxx.", ending = ".tmp";

bool is_own_folder(const fs::directory_entry& entry);
FileStatus write(const std::string& path, const std::string& bytes);
void rename_file(const std::string& from, const std::string& to);

}  // namespace

FolderLock::FolderLock(const std::string& folder)
    : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
    if (folder_ < 0) return;
    struct stat locked {
    }, named{};
    const bool ours = flock(folder_, LOCK_EX | LOCK_NB) == 0;
    // Whoever held it before may have removed the folder.
    const bool gone =
        ours && (fstat(folder_, &locked) != 0 || stat(folder.c_str(), &named) != 0 || locked.st_ino != named.st_ino);
    anothers_ = gone || (!ours && errno == EWOULDBLOCK);
    if (!ours || gone) close(std::exchange(folder_, -1));
}

FolderLock::~FolderLock() {
    if (folder_ >= 0) close(folder_);
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : folder_(std::exchange(other.folder_, -1)), anothers_(other.anothers_) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    std::swap(folder_, other.folder_);
    anothers_ = other.anothers_;
    return *this;
}

void TemporaryFiles::take_folder() {
    give_up();
    remove_abandoned_files(".");
    std::error_code unknown;
    for (fs::directory_iterator at(".", unknown), end; !unknown && at != end; at.increment(unknown)) {
        if (!is_own_folder(*at)) continue;
        TemporaryFiles abandoned;
        abandoned.lock_ = FolderLock(at->path().string());
        if (!abandoned.lock_.held()) continue;
        abandoned.home_ = at->path().string() + '/';
        abandoned.taken_ = true;
    }
    lock_ = FolderLock(".");
    taken_ = true;
    homeless_ = !lock_.held();
    if (lock_.held()) remove_files();  // so that no stale chain of undo files is taken up
    static_cast<void>(has_home());     // without it every snapshot fails, and says so
}

void TemporaryFiles::give_up() {
    if (taken_ && !homeless_) remove_files();
    home_.clear();
    lock_ = FolderLock();
    taken_ = homeless_ = false;
}

FileStatus TemporaryFiles::store(const std::string& bytes) {
    return has_home() ? write(store_file(), bytes) : FileStatus::not_written;
}

bool TemporaryFiles::has_stored() const {
    std::error_code unknown;
    return std::filesystem::exists(store_file(), unknown);
}

FileStatus TemporaryFiles::recall(std::string& bytes) const { return read_file(store_file(), bytes); }

// The new file is written before the others move, so that they stay in place when it cannot be. Where one does not move
// it is missing: no other takes its place.
FileStatus TemporaryFiles::push_undo(int level, const std::string& bytes) {
    if (!has_home()) return FileStatus::not_written;
    const FileStatus status = write(undo_file(level), bytes);
    if (status != FileStatus::done || level < undo_levels) return status;
    const std::string oldest = undo_file(0);
    if (std::rename(undo_file(1).c_str(), oldest.c_str()) != 0 && std::remove(oldest.c_str()) != 0 && errno != ENOENT) {
        std::remove(undo_file(level).c_str());
        return FileStatus::not_written;
    }
    for (int i = 2; i < level; ++i) rename_file(undo_file(i), undo_file(i - 1));
    if (std::rename(undo_file(level).c_str(), undo_file(level - 1).c_str()) == 0) return FileStatus::done;
    return write(undo_file(level - 1), bytes);
}

FileStatus TemporaryFiles::read_undo(int level, std::string& bytes) const { return read_file(undo_file(level), bytes); }

FileStatus TemporaryFiles::write_undo(int level, const std::string& bytes) { return write(undo_file(level), bytes); }

void TemporaryFiles::remove_files() const {
    std::remove(store_file().c_str());
    // The newest of eleven has a name of its own until the others have moved.
    for (int level = 0; level <= undo_levels; ++level) std::remove(undo_file(level).c_str());
    if (home_.empty()) return;
    remove_abandoned_files(home_);
    rmdir(home_.c_str());
}

// Makes the own folder where it is needed; one that another has the lock of is being removed.
bool TemporaryFiles::has_home() {
    constexpr mode_t for_owner = 0700;
    constexpr int most_attempts = 100;
    for (int attempt = 0; homeless_ && attempt < most_attempts; ++attempt) {
        const std::string again = attempt == 0 ? "" : "-" + std::to_string(attempt);
        home_ = std::string(own_folder) + std::to_string(getpid()) + again + std::string(ending);
        const bool is_made = mkdir(home_.c_str(), for_owner) == 0;
        if (!is_made && errno != EEXIST) return false;
        if (!is_made) continue;
        lock_ = FolderLock(home_);
        home_ += '/';
        homeless_ = lock_.is_anothers();
    }
    return !homeless_;
}

namespace {

// "_xxx.PID.tmp", "_xxx.PID-1.tmp"
bool is_own_folder(const fs::directory_entry& entry) {
    std::error_code unknown;
    const std::string file = entry.path().filename().string();
    std::string_view name = file;
    if (!name.starts_with(own_folder) || !name.ends_with(ending) || entry.is_symlink(unknown)) return false;
    name.remove_prefix(own_folder.size());
    return name.substr(0, name.size() - std::min(name.size(), ending.size())).find_first_not_of("0123456789-") ==
               std::string_view::npos &&
           entry.is_directory(unknown);
}

FileStatus write(const std::string& path, const std::string& bytes) {
    return write_whole(path, bytes, Lasting::no) ? FileStatus::done : FileStatus::not_written;
}

void rename_file(const std::string& from, const std::string& to) {
    if (std::rename(from.c_str(), to.c_str()) != 0) std::remove(to.c_str());
}

}  // namespace

}  // namespace kavrel
