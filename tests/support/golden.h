// Golden texts: a file of tests/data holds what is expected, byte for byte. KAVREL_WRITE_GOLDEN=1 writes them anew.
#pragma once

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {

inline void expect_golden(const std::string& file, const std::string& text) {
    if (std::getenv("KAVREL_WRITE_GOLDEN") != nullptr) write_text(file, text);
    EXPECT_EQ(text, read_text(file)) << file;
}

}  // namespace kavrel
