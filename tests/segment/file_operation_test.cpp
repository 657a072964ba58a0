#include "segment/file_operation.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

TEST(FileOperation, WritesReadsAddsAndRemoves) {
    const ScratchFolder folder;
    const FilePlace place{.stem = "some.dat", .slot = ExtSlot::fir_filter};
    FileMark mark, read_mark;
    const auto write = [&](FileOperation operation, const FilePlace& where, std::string bytes) {
        return file_operation(operation, where, bytes, mark);
    };
    std::string bytes = "untouched";
    EXPECT_EQ(message_of(file_operation(FileOperation::input, place, bytes, mark)), "File was not found");
    EXPECT_EQ(bytes, "untouched");
    EXPECT_EQ(write(FileOperation::append, place, "one "), FileStatus::done);
    EXPECT_EQ(write(FileOperation::append, place, "two"), FileStatus::done);
    EXPECT_EQ(read_text("some.qff"), "one two");
    EXPECT_EQ(write(FileOperation::output, place, "three"), FileStatus::done);
    EXPECT_EQ(file_operation(FileOperation::input, place, bytes, read_mark), FileStatus::done);
    EXPECT_EQ(bytes, "three");
    EXPECT_EQ(read_mark, mark);
    EXPECT_EQ(file_operation(FileOperation::remove, place, bytes, mark), FileStatus::done);
    EXPECT_FALSE(std::filesystem::exists("some.qff"));
    std::filesystem::create_directory("folder.qff");
    const FilePlace blocked{.stem = "folder", .slot = ExtSlot::fir_filter};
    EXPECT_EQ(message_of(file_operation(FileOperation::input, blocked, bytes, mark)), "File could not be opened");
    EXPECT_EQ(message_of(write(FileOperation::output, blocked, "x")), "File could not be written");
}

}  // namespace
}  // namespace kavrel
