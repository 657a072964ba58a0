// A folder of a test's own, current while it lives and gone after it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace kavrel {

class ScratchFolder {
public:
    enum class On { disk, memory };  // where thousands of files are written

    explicit ScratchFolder(On on = On::disk) : before_(std::filesystem::current_path()) {
        const std::filesystem::path memory = "/dev/shm";
        const bool in_memory = on == On::memory && access(memory.c_str(), W_OK) == 0;
        std::string name = ((in_memory ? memory : std::filesystem::temp_directory_path()) / "kavrel-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        path_ = name;
        std::filesystem::current_path(path_);
    }
    ~ScratchFolder() {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(path_);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path before_;
    std::filesystem::path path_;
};

inline void write_text(const std::string& name, const std::string& text) {
    std::ofstream(name, std::ios::binary) << text;
}

inline std::string read_text(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kavrel
