// Preloaded into a program (LD_PRELOAD): the FAIL_AT-th of its calls that change files fails, as on a disk that is
// full, or kills it (FAIL_BY=kill). The file FAIL_LOG gets a letter when that call came.
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int calls = 0;

template <class Call>
Call next(Call, const char* name) {
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, name));
}

// Whether this one is to fail.
bool fails() {
    const char* at = std::getenv("FAIL_AT");
    if (at == nullptr || ++calls != std::atoi(at)) return false;
    const int log = next(&open, "open")(std::getenv("FAIL_LOG"), O_WRONLY | O_CREAT, 0600);
    static_cast<void>(next(&write, "write")(log, "x", 1) + next(&close, "close")(log));
    const char* by = std::getenv("FAIL_BY");
    if (by != nullptr && std::strcmp(by, "kill") == 0) raise(SIGKILL);
    errno = ENOSPC;
    return true;
}

bool is_file(int file) {
    struct stat status {};
    return file > STDERR_FILENO && fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
           (fcntl(file, F_GETFL) & O_ACCMODE) != O_RDONLY;
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if ((flags & O_ACCMODE) != O_RDONLY && fails()) return -1;
    return next(&open, "open")(path, flags, mode);
}

// Half of it goes in before the disk is full.
ssize_t write(int file, const void* bytes, size_t size) {
    const auto real = next(&write, "write");
    if (!is_file(file) || !fails()) return real(file, bytes, size);
    static_cast<void>(real(file, bytes, size / 2));
    errno = ENOSPC;
    return -1;
}

int fsync(int file) { return fails() ? -1 : next(&fsync, "fsync")(file); }
int fchmod(int file, mode_t mode) noexcept { return fails() ? -1 : next(&fchmod, "fchmod")(file, mode); }
int ftruncate(int file, off_t size) noexcept { return fails() ? -1 : next(&ftruncate, "ftruncate")(file, size); }
int mkdir(const char* path, mode_t mode) noexcept { return fails() ? -1 : next(&mkdir, "mkdir")(path, mode); }
int rename(const char* from, const char* to) noexcept { return fails() ? -1 : next(&rename, "rename")(from, to); }

int close(int file) {
    const bool failed = is_file(file) && fails();
    const int closed = next(&close, "close")(file);
    return failed ? -1 : closed;
}

}  // extern "C"
