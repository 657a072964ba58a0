#include "segment/temporary_files.h"

#include <filesystem>
#include <set>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

std::set<std::string> files_here() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
        names.insert(entry.path().lexically_normal().string());
    }
    return names;
}

TEST(TemporaryFiles, TheEleventhUndoFileMovesTheOthersDown) {
    const ScratchFolder folder;
    TemporaryFiles files;
    for (int level = 0; level < 10; ++level) {
        EXPECT_EQ(files.push_undo(level, std::to_string(level)), FileStatus::done);
    }
    std::filesystem::remove("_xxx1.tmp");  // a gap moves with the others
    EXPECT_EQ(files.push_undo(10, "10"), FileStatus::done);
    std::string bytes;
    for (int level = 0; level < 10; ++level) {
        const FileStatus status = files.read_undo(level, bytes);
        EXPECT_EQ(status, level == 0 ? FileStatus::not_found : FileStatus::done) << level;
        if (status == FileStatus::done) {
            EXPECT_EQ(bytes, std::to_string(level + 1));
        }
    }
    EXPECT_FALSE(std::filesystem::exists("_xxx10.tmp"));
}

TEST(TemporaryFiles, BelongToTheProgramThatHoldsTheirLock) {
    const ScratchFolder folder;
    const std::string own = "_xxx." + std::to_string(getpid()) + ".tmp";
    std::filesystem::create_directory("_xxx.1.tmp");  // of a program that was killed
    for (const char* name : {"_xxx.1.tmp/_xxx3.tmp", "_xxx.1.tmp/~xxx.tmp", "~xxx.tmp", "~a.kavrel-1.tmp"}) {
        write_text(name, "stale");
    }
    std::filesystem::create_directory("_xxx.my.tmp");
    const std::set<std::string> users = {"_xxx.my.tmp", "_xxx.2.tmp", "_xxx.2.tmp/mine"};
    std::filesystem::create_directory("_xxx.2.tmp");
    write_text("_xxx.2.tmp/mine", "");
    TemporaryFiles first;
    first.take_folder();
    EXPECT_EQ(files_here(), users) << "what is no temporary stays";

    TemporaryFiles second, third;
    second.take_folder();
    third.take_folder();
    TemporaryFiles* const all[] = {&first, &second, &third};
    for (TemporaryFiles* files : all) {
        EXPECT_EQ(files->store(files->store_file()), FileStatus::done);
        EXPECT_EQ(files->push_undo(0, files->undo_file(0)), FileStatus::done);
    }
    std::string bytes;
    for (TemporaryFiles* files : all) {
        EXPECT_EQ(files->recall(bytes), FileStatus::done);
        EXPECT_EQ(bytes, files->store_file());
        EXPECT_EQ(files->read_undo(0, bytes), FileStatus::done);
        EXPECT_EQ(bytes, files->undo_file(0));
    }
    EXPECT_EQ(first.store_file(), "~xxx.tmp");
    EXPECT_EQ(second.store_file(), own + "/~xxx.tmp");
    first.give_up();
    EXPECT_FALSE(std::filesystem::exists("~xxx.tmp"));
    first.take_folder();
    EXPECT_EQ(first.recall(bytes), FileStatus::not_found);
    EXPECT_EQ(second.recall(bytes), FileStatus::done) << "a start leaves those of a living program alone";
    for (TemporaryFiles* files : all) files->give_up();
    EXPECT_EQ(files_here(), users) << "nothing is left behind";
}

}  // namespace
}  // namespace kavrel
