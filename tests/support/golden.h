// Golden texts: a file of tests/data holds what is expected, byte for byte. KAVREL_WRITE_GOLDEN=1 writes it anew. Its
// first lines may say where it comes from, each behind a "#": they are no part of the text, and stay.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {

inline void expect_golden(const std::string& file, const std::string& text) {
    const std::string golden = read_text(file);
    std::size_t head = 0;
    while (!text.starts_with('#') && golden.compare(head, 1, "#") == 0) head = golden.find('\n', head) + 1;
    if (std::getenv("KAVREL_WRITE_GOLDEN") != nullptr) {
        write_text(file, golden.substr(0, head) + text);
    } else {
        EXPECT_EQ(text, golden.substr(head)) << file;
    }
}

inline std::string text_of(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
}

}  // namespace kavrel
