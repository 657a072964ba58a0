// The scripts of a folder, examples/ above all, by their names.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace kavrel {

inline std::vector<std::string> scripts_of(const std::string& folder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".kav") files.push_back(entry.path().stem());
    }
    std::ranges::sort(files);
    return files;
}
inline std::vector<std::string> example_files() { return scripts_of(EXAMPLES); }

}  // namespace kavrel
