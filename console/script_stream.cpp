#include "console/script_stream.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kavrel {

ScriptStream::ScriptStream(int descriptor, bool owns, const StopSignals& signals)
    : std::istream(nullptr), bytes_(descriptor, owns, signals) {
    rdbuf(&bytes_);
}

ScriptStream::Bytes::~Bytes() {
    if (owns_) close(descriptor_);
}

ScriptStream::Bytes::int_type ScriptStream::Bytes::underflow() {
    if (!signals_.wait_to_read(descriptor_)) return traits_type::eof();
    const ssize_t count = ::read(descriptor_, buffer_.data(), buffer_.size());
    if (count < 0 && signals_.caught() == 0) throw std::system_error(errno, std::generic_category());
    if (count <= 0) return traits_type::eof();
    setg(buffer_.data(), buffer_.data(), buffer_.data() + count);
    return traits_type::to_int_type(*gptr());
}

std::unique_ptr<std::istream> open_script(const std::string& name, const StopSignals& signals) {
    const int descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return nullptr;
    auto stream = std::make_unique<ScriptStream>(descriptor, true, signals);
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode)) return nullptr;
    return stream;
}

}  // namespace kavrel
