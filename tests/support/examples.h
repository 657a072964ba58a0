// The scripts of examples/, by their names.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace kavrel {

inline std::vector<std::string> example_files() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        if (entry.path().extension() == ".kav") files.push_back(entry.path().stem());
    }
    std::ranges::sort(files);
    return files;
}

}  // namespace kavrel
