#include "shell/whole_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "shell/utf8.h"

namespace kavrel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largest_file = 16 << 20;
constexpr std::string_view own_mark = ".kavrel-", ending = ".tmp";  // of temporaries, about the process number

// An open file, closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { static_cast<void>(close_now()); }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&&) = delete;

    [[nodiscard]] bool is_open() const { return number_ >= 0; }
    [[nodiscard]] int operator*() const { return number_; }
    // What could not be written before may be known only now.
    [[nodiscard]] bool close_now() {
        const bool closed = number_ < 0 || close(number_) == 0 || errno == EINTR;
        number_ = -1;
        return closed;
    }

private:
    int number_;
};

// A write past the limit of a file's size, or into a pipe that nobody reads, fails and does not end the program.
class WriteSignalsHeld {
public:
    WriteSignalsHeld();
    ~WriteSignalsHeld();
    WriteSignalsHeld(const WriteSignalsHeld&) = delete;
    WriteSignalsHeld& operator=(const WriteSignalsHeld&) = delete;

private:
    sigset_t held_{}, before_{};
};

// Where a name leads: to a file, which need not be there, or to a stream of this program; links in a circle to none.
struct Place {
    std::string path;
    std::optional<int> stream;
};
Place place_of(std::string path);

std::string_view last_part(std::string_view path) { return path.substr(path.find_last_of('/') + 1); }
std::string folder_of(std::string_view path) {
    const std::size_t name = path.size() - last_part(path).size();
    return name == 0 ? "." : std::string(path.substr(0, name));
}
std::optional<struct stat> status_of(const std::string& path);
FileMark mark_from(const struct stat& status);
ReadFault fault_of(const struct stat& status);
bool write_bytes(int file, std::string_view bytes);
void take_back(int file, off_t former_size, std::size_t most);
std::optional<FileMark> write_straight(const std::string& path, std::string_view bytes);
// A file of this program alone, locked for as long as it is open: nobody removes it.
struct Temporary {
    std::string path;
    Descriptor file;
};
Temporary temporary_beside(const std::string& path, const struct stat* old);
std::string temporary_name(const std::string& path, int attempt);
bool take_permissions(int file, const struct stat& old);
std::optional<FileMark> fill(int file, std::string_view bytes, Lasting lasting);
bool keep(int file);
bool is_temporary(std::string_view name);
bool is_named(int file, const char* path);

}  // namespace

WholeFile read_whole(const std::string& path) {
    const auto failed = [](ReadFault fault) { return WholeFile{.fault = fault, .bytes = {}, .mark = {}}; };
    // To open a device is to do something with it already.
    const auto before = status_of(path);
    if (!before) return failed(errno == ENOENT || errno == ENOTDIR ? ReadFault::missing : ReadFault::unreadable);
    if (fault_of(*before) != ReadFault::none) return failed(fault_of(*before));
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!file.is_open() || fstat(*file, &status) != 0) return failed(ReadFault::unreadable);
    if (fault_of(status) != ReadFault::none) return failed(fault_of(status));

    WholeFile whole{.fault = ReadFault::none, .bytes = {}, .mark = mark_from(status)};
    constexpr std::size_t piece = 1 << 16;
    while (whole.bytes.size() <= largest_file) {
        const std::size_t had = whole.bytes.size();
        whole.bytes.resize(had + piece);
        const ssize_t got = read(*file, whole.bytes.data() + had, piece);
        if (got < 0 && errno != EINTR) return failed(ReadFault::unreadable);
        whole.bytes.resize(had + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got == 0) return whole;
    }
    return failed(ReadFault::too_large);  // it grows while it is read
}

std::string complaint_of(ReadFault fault, std::string_view otherwise, std::string_view subject) {
    if (fault == ReadFault::not_regular) return std::string(subject) + " is not a regular file";
    if (fault == ReadFault::too_large) return std::string(subject) + " is larger than 16 MB";
    return std::string(otherwise);
}

std::optional<FileMark> write_whole(const std::string& path, std::string_view bytes, Lasting lasting) {
    const Place place = lasting == Lasting::yes ? place_of(path) : Place{.path = path, .stream = std::nullopt};
    if (place.stream) return write_bytes(*place.stream, bytes) ? std::optional<FileMark>(FileMark{}) : std::nullopt;
    const auto old = lasting == Lasting::yes ? status_of(path) : std::nullopt;
    if (place.path.empty() || (old && S_ISDIR(old->st_mode))) return std::nullopt;
    if (old && !S_ISREG(old->st_mode)) return write_straight(path, bytes);

    Temporary beside = temporary_beside(place.path, old ? &*old : nullptr);
    if (!beside.file.is_open()) return std::nullopt;
    const auto mark = fill(*beside.file, bytes, lasting);
    if (!mark || std::rename(beside.path.c_str(), place.path.c_str()) != 0) {
        std::remove(beside.path.c_str());
        return std::nullopt;
    }
    if (lasting == Lasting::no) return mark;
    // Nothing is wrong with a folder that may be written and not read.
    const Descriptor folder(open(folder_of(place.path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return !folder.is_open() || keep(*folder) ? mark : std::nullopt;
}

bool append_to_file(const std::string& path, std::string_view bytes) {
    if (const Place place = place_of(path); place.stream) return write_bytes(*place.stream, bytes);
    if (const auto old = status_of(path); old && !S_ISREG(old->st_mode)) return write_straight(path, bytes).has_value();
    constexpr mode_t for_all = 0666;
    Descriptor file(open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, for_all));
    struct stat before {};
    if (!file.is_open() || fstat(*file, &before) != 0 || !S_ISREG(before.st_mode)) return false;
    if (write_bytes(*file, bytes)) return file.close_now();
    take_back(*file, before.st_size, bytes.size());
    return false;
}

std::optional<int> stream_named(const std::string& path) { return place_of(path).stream; }

FileState state_of_file(const std::string& path) {
    if (place_of(path).stream) return {};
    const auto status = status_of(path);
    if (!status || !S_ISREG(status->st_mode)) return {};
    const bool writable = (status->st_mode & S_IWUSR) != 0 && access(path.c_str(), W_OK) == 0;
    return {.guard = writable ? Guard::present : Guard::read_only, .mark = mark_from(*status)};
}

void remove_abandoned_files(const std::string& folder) {
    std::error_code unknown;
    for (fs::directory_iterator at(folder, unknown), end; !unknown && at != end; at.increment(unknown)) {
        if (!is_temporary(at->path().filename().string()) || !at->is_regular_file(unknown)) continue;
        const Descriptor file(open(at->path().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        // Before it was locked its program may have finished it, and begun another one of that name.
        if (file.is_open() && flock(*file, LOCK_EX | LOCK_NB) == 0 && is_named(*file, at->path().c_str()))
            std::remove(at->path().c_str());
    }
}

namespace {

WriteSignalsHeld::WriteSignalsHeld() {
    sigset_t pending;
    sigpending(&pending);
    sigemptyset(&held_);
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        if (sigismember(&pending, signal) == 0) sigaddset(&held_, signal);
    }
    pthread_sigmask(SIG_BLOCK, &held_, &before_);
}

WriteSignalsHeld::~WriteSignalsHeld() {
    const int fault = errno;
    const timespec at_once{};
    while (sigtimedwait(&held_, nullptr, &at_once) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = fault;
}

Place place_of(std::string path) {
    std::error_code unknown;
    const fs::path streams = fs::canonical("/proc/self/fd", unknown);
    constexpr int most_links = 40;
    for (int i = 0; i < most_links; ++i) {
        const std::string folder = folder_of(path);
        const std::string_view name = last_part(path);
        int number = 0;
        const auto [rest, fault] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (fault == std::errc{} && rest == name.data() + name.size() && !streams.empty() &&
            fs::canonical(folder, unknown) == streams) {
            return {.path = path, .stream = number};
        }
        const fs::path link = fs::read_symlink(path, unknown);
        if (unknown) return {.path = path, .stream = std::nullopt};
        path = (fs::path(folder) / link).string();
    }
    return {.path = {}, .stream = std::nullopt};
}

std::optional<struct stat> status_of(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

FileMark mark_from(const struct stat& status) {
    return {.device = static_cast<std::uint64_t>(status.st_dev),
            .number = static_cast<std::uint64_t>(status.st_ino),
            .size = static_cast<std::uint64_t>(status.st_size),
            .seconds = status.st_mtim.tv_sec,
            .nanoseconds = status.st_mtim.tv_nsec};
}

ReadFault fault_of(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) return ReadFault::unreadable;
    if (!S_ISREG(status.st_mode)) return ReadFault::not_regular;
    return static_cast<std::size_t>(status.st_size) > largest_file ? ReadFault::too_large : ReadFault::none;
}

bool write_bytes(int file, std::string_view bytes) {
    const WriteSignalsHeld held;
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (written < 0 && errno == EAGAIN) {  // a pipe that is full
            pollfd ready{.fd = file, .events = POLLOUT, .revents = 0};
            if (poll(&ready, 1, -1) < 0) return false;
        } else if (written < 0 && errno != EINTR) {
            return false;
        }
    }
    return true;
}

// The part that went in before the disk was full, unless another program has added something since.
void take_back(int file, off_t former_size, std::size_t most) {
    struct stat now {};
    if (fstat(file, &now) != 0 || now.st_size >= former_size + static_cast<off_t>(most)) return;
    [[maybe_unused]] const int done = ftruncate(file, former_size);
}

// Opened so that a pipe which nobody reads is refused at once.
std::optional<FileMark> write_straight(const std::string& path, std::string_view bytes) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    const bool written = file.is_open() && write_bytes(*file, bytes) && file.close_now();
    return written ? std::optional<FileMark>(FileMark{}) : std::nullopt;
}

Temporary temporary_beside(const std::string& path, const struct stat* old) {
    constexpr mode_t for_all = 0666, for_owner = 0600;
    constexpr int most_attempts = 100;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        const std::string name = temporary_name(path, attempt);
        Descriptor file(
            open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, old ? for_owner : for_all));
        if (!file.is_open() && errno != EEXIST) break;
        if (!file.is_open()) continue;
        struct stat own {};
        const bool others = flock(*file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        if (others || fstat(*file, &own) != 0 || own.st_nlink == 0) continue;  // removed before it was locked
        if (old == nullptr || take_permissions(*file, *old)) return {.path = name, .file = std::move(file)};
        std::remove(name.c_str());
        break;
    }
    return {.path = {}, .file = Descriptor(-1)};
}

// Owner and group too, as far as they can be given; a group that cannot be gets no more than everybody has.
bool take_permissions(int file, const struct stat& old) {
    constexpr mode_t group = 0070, permissions = 0777;
    mode_t mode = old.st_mode & permissions;
    struct stat own {};
    if (fstat(file, &own) != 0) return false;
    const bool same_owner = own.st_uid == old.st_uid && own.st_gid == old.st_gid;
    if (!same_owner && fchown(file, old.st_uid, old.st_gid) != 0 &&
        fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0) {
        mode &= ~group | (mode << 3);
    }
    return fchmod(file, mode) == 0;
}

std::optional<FileMark> fill(int file, std::string_view bytes, Lasting lasting) {
    struct stat status {};
    if (!write_bytes(file, bytes) || (lasting == Lasting::yes && !keep(file))) return std::nullopt;
    // Some file systems say only at a close what could not be written.
    if (Descriptor again(dup(file)); !again.is_open() || !again.close_now()) return std::nullopt;
    return fstat(file, &status) == 0 ? std::optional(mark_from(status)) : std::nullopt;
}

// Until it is on the disk; not every kind of file system knows how.
bool keep(int file) {
    while (fsync(file) != 0) {
        if (errno != EINTR) return errno == EINVAL || errno == ENOTSUP;
    }
    return true;
}

// "folder/~name.kavrel-PID.tmp", with the beginning of a name that is long.
std::string temporary_name(const std::string& path, int attempt) {
    constexpr std::size_t longest_name = 100;  // most folders take 255, some 143
    const std::string_view whole = last_part(path);
    std::size_t size = std::min(whole.size(), longest_name);
    while (size > 0 && size < whole.size() && !utf8_starts(whole[size])) --size;
    const std::string again = attempt == 0 ? "" : "-" + std::to_string(attempt);
    return path.substr(0, path.size() - whole.size()) + '~' + std::string(whole.substr(0, size)) + again +
           std::string(own_mark) + std::to_string(getpid()) + std::string(ending);
}

bool is_temporary(std::string_view name) {
    const std::size_t mark = name.find_last_of('.', name.size() - std::min(name.size(), ending.size() + 1));
    if (!name.starts_with('~') || !name.ends_with(ending) || mark == std::string_view::npos) return false;
    std::string_view number = name.substr(mark);
    if (!number.starts_with(own_mark)) return false;
    number = number.substr(own_mark.size(), number.size() - own_mark.size() - ending.size());
    return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

// Whether an open file is still the one of that name.
bool is_named(int file, const char* path) {
    struct stat open {
    }, named{};
    return fstat(file, &open) == 0 && lstat(path, &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

}  // namespace

}  // namespace kavrel
