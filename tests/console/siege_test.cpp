// The program under siege: a disk that is full at any one of its calls, a kill at any one, and other programs in its
// folder. Whatever happens, a file is the old one or the new one, and what is not new was said.
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

const std::string scripts = TEST_DATA "/conversations/files/";

using Files = std::map<std::string, std::string>;

Files files_here() {
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(".")) {
        const std::string name = entry.path().lexically_normal().string();
        files[name] = entry.is_regular_file() ? read_text(name) : "";
    }
    return files;
}

// A session in the current folder, which has these files and in the end those.
struct Session {
    int status;
    std::string shown;
    bool came;  // the call that was to fail
    Files files;
};
Session run_session(const Files& before, const std::string& environment = "") {
    const ScratchFolder folder(ScratchFolder::On::memory);
    for (const auto& [name, bytes] : before) write_text(name, bytes);
    const ScratchFolder beside(ScratchFolder::On::memory);
    const std::string command =
        fmt::format("cd {0} && FAIL_LOG={1}/came ASAN_OPTIONS=verify_asan_link_order=0 {2} " PROGRAM_PATH
                    " --settings --quiet --date X session.kav >{1}/shown 2>&1",
                    folder.path().string(), beside.path().string(), environment);
    const int status = std::system(command.c_str());
    Session session{status, read_text("shown"), std::filesystem::exists("came"), {}};
    std::filesystem::current_path(folder.path());
    // What a killed one left goes with the next start.
    if (status != 0) static_cast<void>(std::system(PROGRAM_PATH " </dev/null >/dev/null"));
    session.files = files_here();
    std::filesystem::current_path(beside.path());
    return session;
}

// The circuit in it is another one before than after.
Files first_files() {
    Files files;
    for (const std::string name : {"elements.kav", "session.kav"}) files[name] = read_text(scripts + name);
    std::string& elements = files["elements.kav"];
    Files other = files;
    other["elements.kav"].replace(elements.find("value1 1m"), 9, "value1 3m");
    other = run_session(other).files;
    other["elements.kav"] = elements;
    return other;
}

class Siege : public testing::TestWithParam<std::string> {};

TEST_P(Siege, AFileIsTheOldOneOrTheNewOne) {
    const Files before = first_files();
    const Session whole = run_session(before);
    ASSERT_EQ(whole.status, 0) << whole.shown;
    const std::set<std::string> grows = {"macro.wbt", "print.txt"};  // line by line
    for (int at = 1;; ++at) {
        const Session session =
            run_session(before, fmt::format("LD_PRELOAD=" FAILING_CALLS " FAIL_AT={} FAIL_BY={}", at, GetParam()));
        const std::string where = fmt::format("call {}, status {}\n{}", at, session.status, session.shown);
        for (const auto& [name, bytes] : session.files) {
            const auto old = before.find(name), now = whole.files.find(name);
            ASSERT_TRUE(now != whole.files.end()) << name << " was left behind: " << where;
            const bool is_old = old != before.end() && bytes == old->second;
            // Who goes on without undo comes to other circuits, and the state of the session says so.
            const bool gone_on = session.shown.find("without undo?") != std::string::npos;
            const bool is_part = grows.contains(name) && now->second.starts_with(bytes) && bytes.ends_with('\n');
            EXPECT_TRUE(is_old || is_part || gone_on || bytes == now->second) << name << ": " << where;
        }
        if (GetParam() == "full" && session.files != whole.files) {
            EXPECT_NE(session.shown, whole.shown) << where;
        }
        if (!session.came) {
            EXPECT_GT(at, 100);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Siege, testing::Values("full", "kill"), [](const auto& test) { return test.param; });

// A pipe that nobody writes, an endless device, a file that is too large: each refused at once wherever a file is read.
TEST(Siege, FilesThatAreNone) {
    const ScratchFolder folder(ScratchFolder::On::memory);
    const char* const names[] = {"in.qfp", "in.qai", "in.dat", "in.wbt", "in.txt", "q_qxz", "kavrel.prn"};
    const struct {
        void (*make)(const char* name);
        const char* complaint;
    } rows[] = {
        {[](const char* name) { mkfifo(name, 0600); }, "is not a regular file"},
        {[](const char* name) { std::filesystem::create_symlink("/dev/zero", name); }, "is not a regular file"},
        {[](const char* name) {
             write_text(name, "");
             std::filesystem::resize_file(name, 17 << 20);
         },
         "is larger than 16 MB"},
    };
    const std::string script =
        "choose #130\nfile in.qfp\nchoose Analysis > Filter > Recall\nfile in.qai\n"
        "choose Design > FIR Filter > New\nset filter_length 5\nbutton Details\nbutton \"Read from file\"\nfile "
        "in.dat\ncancel\ncancel\n"
        "include ladder.kav\nchoose Macro > Play\nfile in.wbt\nchoose #129\nfile in.txt\n"
        "choose View > Print\nset printing_to File\nok\nfile in.txt\n";
    for (const char* name : {"ladder.kav", "elements.kav"}) write_text(name, read_text(scripts + name));
    write_text("script.kav", script);
    for (const auto& row : rows) {
        for (const char* name : names) {
            std::filesystem::remove(name);
            row.make(name);
        }
        static_cast<void>(std::system("timeout 20 " PROGRAM_PATH " --settings --keep-going script.kav >shown 2>&1"));
        const std::string shown = read_text("shown");
        int found = 0;
        for (auto at = shown.find(row.complaint); at != std::string::npos; at = shown.find(row.complaint, at + 1))
            ++found;
        EXPECT_EQ(found, 1 + 5 * 2) << "of the settings; of each other file in its box, and beside its line: " << shown;
    }
}

}  // namespace
}  // namespace kavrel
