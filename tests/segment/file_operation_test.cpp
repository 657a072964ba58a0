#include "segment/file_operation.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

FileStatus write(FileOperation operation, const FilePlace& place, std::string bytes) {
    return file_operation(operation, place, bytes);
}

TEST(FileOperation, WritesReadsAddsAndRemoves) {
    const ScratchFolder folder;
    const FilePlace place{.stem = "some.dat", .slot = ExtSlot::fir_filter};
    std::string bytes = "untouched";
    EXPECT_EQ(message_of(file_operation(FileOperation::input, place, bytes)), "File was not found");
    EXPECT_EQ(bytes, "untouched");
    EXPECT_EQ(write(FileOperation::append, place, "one "), FileStatus::done);
    EXPECT_EQ(write(FileOperation::append, place, "two"), FileStatus::done);
    EXPECT_EQ(read_text("some.qff"), "one two");
    EXPECT_EQ(write(FileOperation::output, place, "three"), FileStatus::done);
    EXPECT_EQ(file_operation(FileOperation::input, place, bytes), FileStatus::done);
    EXPECT_EQ(bytes, "three");
    EXPECT_EQ(file_operation(FileOperation::remove, place, bytes), FileStatus::done);
    EXPECT_FALSE(std::filesystem::exists("some.qff"));

    EXPECT_EQ(file_operation(FileOperation::recall, {}, bytes), FileStatus::not_found);
    EXPECT_EQ(write(FileOperation::store, {}, "kept"), FileStatus::done);
    EXPECT_EQ(file_operation(FileOperation::recall, {}, bytes), FileStatus::done);
    EXPECT_EQ(bytes, "kept");
    EXPECT_EQ(file_operation(FileOperation::remove_stored, {}, bytes), FileStatus::done);
    EXPECT_FALSE(std::filesystem::exists("~xxx.tmp"));
    std::filesystem::create_directory("folder.qff");
    const FilePlace blocked{.stem = "folder", .slot = ExtSlot::fir_filter};
    EXPECT_EQ(message_of(file_operation(FileOperation::input, blocked, bytes)), "File could not be opened");
    EXPECT_EQ(message_of(write(FileOperation::output, blocked, "x")), "File could not be written");
}

TEST(FileOperation, TheEleventhUndoFileMovesTheOthersDown) {
    const ScratchFolder folder;
    for (int level = 0; level < 10; ++level) {
        EXPECT_EQ(write(FileOperation::new_undo, {.undo_count = level}, std::to_string(level)), FileStatus::done);
    }
    std::filesystem::remove("_xxx1.tmp");  // a gap moves with the others
    EXPECT_EQ(write(FileOperation::new_undo, {.undo_count = 10}, "10"), FileStatus::done);
    std::string bytes;
    for (int level = 0; level < 10; ++level) {
        const FileStatus status = file_operation(FileOperation::undo, {.undo_count = level}, bytes);
        EXPECT_EQ(status, level == 0 ? FileStatus::not_found : FileStatus::done) << level;
        if (status == FileStatus::done) {
            EXPECT_EQ(bytes, std::to_string(level + 1));
        }
    }
    EXPECT_FALSE(std::filesystem::exists("_xxx10.tmp"));
}

}  // namespace
}  // namespace kavrel
