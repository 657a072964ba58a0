#include "shell/whole_file.h"

#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

std::set<std::string> files_here() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(".")) names.insert(entry.path().filename().string());
    return names;
}

mode_t mode_of(const std::string& name) {
    struct stat status {};
    return stat(name.c_str(), &status) == 0 ? status.st_mode & 07777U : 0;
}

TEST(WholeFile, IsReplacedWholeOrNotAtAll) {
    const ScratchFolder folder;
    const std::string longest(255, 'x');
    std::filesystem::create_directory("b");
    write_text("b/inside", "");
    write_text("private", "old");
    write_text("fixed", "old");
    chmod("private", 0600);
    chmod("fixed", 0444);
    std::filesystem::create_symlink("../private", "b/link");
    std::filesystem::create_symlink("b/link", "link");
    std::filesystem::create_symlink("b/missing", "dangling");
    std::filesystem::create_symlink("circle", "circle");
    // A temporary of a program that was killed, and had our number: it may be a link to somebody's own file.
    std::filesystem::create_symlink("b/inside", "~a.kavrel-" + std::to_string(getpid()) + ".tmp");
    const mode_t mask = umask(027);
    for (const std::string bytes : {"old", "new one"}) {
        for (const std::string& name : {std::string("a"), longest, std::string("link"), std::string("dangling"),
                                        std::string("fixed"), std::filesystem::absolute("a").string()}) {
            const auto mark = write_whole(name, bytes);
            ASSERT_TRUE(mark) << name;
            EXPECT_EQ(*read_whole(name), bytes) << name;
            EXPECT_EQ(state_of_file(name).mark, *mark) << name;
        }
    }
    umask(mask);
    EXPECT_TRUE(std::filesystem::is_symlink("link") && std::filesystem::is_symlink("dangling"));
    EXPECT_EQ(read_text("private") + read_text("b/missing") + read_text("b/inside"), "new onenew one");
    EXPECT_EQ(mode_of("private"), 0600U);
    EXPECT_EQ(mode_of("fixed"), 0444U);
    EXPECT_EQ(mode_of("a"), 0640U);
    EXPECT_EQ(state_of_file("fixed").guard, Guard::read_only);
    EXPECT_EQ(state_of_file("a").guard, Guard::present);
    for (const char* name : {"missing/a", "b", "", "private/a", "circle"}) EXPECT_FALSE(write_whole(name, "x")) << name;
    const FileMark before = state_of_file("a").mark;
    ASSERT_TRUE(append_to_file("a", ", more") && append_to_file("added", "some"));
    EXPECT_NE(state_of_file("a").mark, before);
    EXPECT_EQ(read_text("a") + read_text("added"), "new one, moresome");

    // A limit of the file's size is reached in the middle: a signal that ends a program unless it is held.
    const std::set<std::string> files = files_here();
    const rlimit free{RLIM_INFINITY, RLIM_INFINITY}, tight{100, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &tight);
    EXPECT_FALSE(write_whole("a", std::string(200, 'x')));
    EXPECT_FALSE(append_to_file("a", std::string(200, 'x')));
    setrlimit(RLIMIT_FSIZE, &free);
    EXPECT_EQ(read_text("a"), "new one, more");
    EXPECT_EQ(files_here(), files) << "nothing is left behind";
}

TEST(WholeFile, IsReadOnlyWhereItIsAFileThatEnds) {
    const ScratchFolder folder;
    write_text("largest", "");
    write_text("larger", "");
    std::filesystem::resize_file("largest", 16 << 20);
    std::filesystem::resize_file("larger", (16 << 20) + 1);
    mkfifo("pipe", 0600);
    std::filesystem::create_symlink("/dev/zero", "link");
    const struct {
        const char* name;
        ReadFault fault;
        const char* complaint;
    } rows[] = {
        {"missing", ReadFault::missing, "otherwise"},
        {"largest/x", ReadFault::missing, "otherwise"},
        {".", ReadFault::unreadable, "otherwise"},
        {"pipe", ReadFault::not_regular, "File is not a regular file"},
        {"link", ReadFault::not_regular, "File is not a regular file"},
        {"/dev/tty", ReadFault::not_regular, "File is not a regular file"},
        {"larger", ReadFault::too_large, "File is larger than 16 MB"},
        {"largest", ReadFault::none, "otherwise"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(read_whole(row.name).fault, row.fault) << row.name;
        EXPECT_EQ(complaint_of(row.fault, "otherwise"), row.complaint);
    }
    EXPECT_EQ(read_whole("largest")->size(), std::size_t{16} << 20);
    EXPECT_EQ(read_whole("/proc/self/statm").fault, ReadFault::none) << "whose size is 0 until it is read";

    const std::jthread writer([] {
        for (int i = 0; i < 40; ++i) static_cast<void>(append_to_file("growing", std::string(1 << 20, 'x')));
    });
    WholeFile growing = read_whole("growing");
    for (; growing.fault == ReadFault::none || growing.fault == ReadFault::missing; growing = read_whole("growing")) {
        EXPECT_LE(growing->size(), std::size_t{16} << 20);
    }
    EXPECT_EQ(growing.fault, ReadFault::too_large);
}

TEST(WholeFile, GoesStraightIntoWhatIsNoFile) {
    const ScratchFolder folder;
    mkfifo("pipe", 0600);
    EXPECT_FALSE(write_whole("pipe", "x")) << "nobody reads: refused at once";
    const int reader = open("pipe", O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(write_whole("pipe", "one "));
    EXPECT_TRUE(append_to_file("pipe", "two"));
    char got[16]{};
    EXPECT_EQ(read(reader, got, sizeof got), 7);
    EXPECT_STREQ(got, "one two");
    close(reader);
    EXPECT_TRUE(write_whole("/dev/null", "x"));
    EXPECT_TRUE(std::filesystem::is_fifo("pipe") && std::filesystem::is_character_file("/dev/null"));

    const int log = open("log", O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(write(log, "kept ", 5), 5);
    const std::string number = std::to_string(log);
    std::filesystem::create_symlink("/proc/self/fd/" + number, "stream");
    EXPECT_TRUE(write_whole("/dev/fd/" + number, "1") && write_whole("stream", "2") &&
                append_to_file("/dev/../dev/fd/" + number, "3"));
    EXPECT_EQ(state_of_file("stream").guard, Guard::none);
    EXPECT_FALSE(write_whole("/dev/fd/77", "x"));
    close(log);
    EXPECT_EQ(read_text("log"), "kept 123");
}

}  // namespace
}  // namespace kavrel
