// The program itself: options, exit status, the examples, and a person at a terminal.
#include <array>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "tests/support/examples.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct Ended {
    int status;
    std::string output;
};

// Its standard error goes to the file "errors".
Ended run_program(const std::string& arguments, const std::string& input = "") {
    write_text("input", input);
    FILE* pipe = popen((PROGRAM_PATH " " + arguments + " <input 2>errors").c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer;
    for (std::size_t n = 0; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) output.append(buffer.data(), n);
    return {WEXITSTATUS(pclose(pipe)), output};
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

class Examples : public testing::TestWithParam<std::string> {};

TEST_P(Examples, RunToTheirEndWithTheirReport) {
    const ScratchFolder folder;
    const Ended ended =
        run_program("--json state.json -o report.txt --date 2026-01-01 " EXAMPLES "/" + GetParam() + ".kav");
    EXPECT_EQ(ended.status, 0) << ended.output << read_text("errors");
    EXPECT_NE(nlohmann::json::parse(read_text("state.json"))["design"], "discontinued");
    expect_golden(TEST_DATA "/console/" + GetParam() + ".txt", read_text("report.txt"));
}

INSTANTIATE_TEST_SUITE_P(All, Examples, testing::ValuesIn(example_files()),
                         [](const auto& test) { return test.param; });

std::string result_of(const std::string& example, const std::string& options = "") {
    const Ended ended = run_program(options + " --json state.json -o report.txt --date 2026-01-01 " + example);
    return std::to_string(ended.status) + ended.output + read_text("report.txt") + read_text("state.json");
}

TEST(Program, AnExampleComesOutTheSameWhateverRanBefore) {
    std::map<std::string, std::string> fresh;
    for (const std::string& name : example_files()) {
        const ScratchFolder folder;
        fresh[EXAMPLES "/" + name + ".kav"] = result_of(EXAMPLES "/" + name + ".kav");
    }
    const ScratchFolder folder;
    for (const char* options : {"", "--settings"}) {
        for (const auto& [example, result] : fresh) EXPECT_TRUE(result_of(example, options) == result) << example;
        write_text("q_qxz", "1.0D+6 1.0D-6 1.0D-9 1.0D-6\n3 3 4 3 3 1\n");
    }
    EXPECT_FALSE(std::filesystem::exists("_xxx0.tmp")) << "undo files end with their run";
}

TEST(Program, AScriptHasUnitsOfItsOwn) {
    const ScratchFolder folder;
    const std::string kilohertz = "1000.0 1.0 1.0 1.0\n2 1 1 1 0 1\n";
    const std::string megahertz = "choose File > Global units\nset frequency_index MHz\nok\n";
    const struct {
        std::string options, script;
        double frequency;
        bool is_kept;
    } rows[] = {{"", "", 1.0, true},
                {"", megahertz, 1e6, true},
                {"--settings", "", 1e3, true},
                {"--settings", megahertz, 1e6, false}};
    for (const auto& row : rows) {
        write_text("q_qxz", kilohertz);
        const auto state = nlohmann::json::parse(run_program(row.options + " --json -", row.script).output);
        EXPECT_EQ(state["units"]["frequency"], row.frequency) << row.options << row.script;
        EXPECT_EQ(read_text("q_qxz") == kilohertz, row.is_kept) << row.options << row.script;
    }
}

TEST(Program, EndsWithAStatus) {
    const ScratchFolder folder;
    write_text("filter.qff", "");
    write_text("many.kav", std::string(400'000, '\n'));
    write_text("large.kav", std::string(17 << 20, '\n'));
    const struct {
        std::string arguments, input;
        int status;
        std::string output, errors;
    } rows[] = {
        {"--version", "", 0, "kavrel-cli " KAVREL_VERSION "\n", ""},
        {"--help", "", 0, "--keep-going", ""},
        {"--frobnicate", "", 2, "", "frobnicate"},
        {"missing.kav", "", 3, "", "'missing.kav' could not be read"},
        {"filter.dat", "", 3, "", "'filter.dat' could not be read"},  // anything but .qf? is a script
        {"filter.qfp", "", 3, "", "'filter.qfp' could not be read"},
        {"filter.qff", "", 1, "filter.qff", ""},  // stored FIR filters are not read yet
        {"-C missing", "", 3, "", "'missing' could not be entered"},
        {"-o missing/report.txt", "", 3, "", "'missing/report.txt' could not be written"},
        {"--json missing/state.json", "", 3, "", "'missing/state.json' could not be written"},
        {"", "frobnicate\n", 2, "== Kavrel - MAIN MENU\n> frobnicate\n", "<stdin>:1: unknown verb 'frobnicate'\n"},
        {"--quiet", "echo quiet\n", 0, "quiet\n", ""},
        {"-o report.txt >&-", "", 3, "", "'standard output' could not be written"},
        {"", "include /dev/zero\n", 3, "", "<stdin>:1: '/dev/zero' is not a regular file"},
        {"", "include large.kav\n", 3, "", "'large.kav' is larger than 16 MB"},
        {"", "include many.kav\ninclude many.kav\ninclude many.kav\n", 2, "", "<stdin>:3: 'many.kav' is one too many"},
        {"--keep-going /dev/zero", "", 2, "", "/dev/zero:1: the line is longer than 65536 bytes"},
    };
    for (const auto& row : rows) {
        const Ended ended = run_program(row.arguments, row.input);
        EXPECT_EQ(ended.status, row.status) << row.arguments;
        EXPECT_TRUE(holds(ended.output, row.output)) << row.arguments << ": " << ended.output;
        EXPECT_TRUE(holds(read_text("errors"), row.errors)) << row.arguments << ": " << read_text("errors");
    }
}

TEST(Program, ReportAndStateGoWhereTheyAreAskedFor) {
    const ScratchFolder folder;
    std::filesystem::create_directory("work");
    std::filesystem::copy_file(EXAMPLES "/stored_lowpass.qfp", "work/a.qfp");
    std::filesystem::create_directory("sub");
    write_text("sub/spread.kav", "choose View > Spread\nexpect Inductors\n");
    write_text("sub/main.kav", "choose File > Recall\nfile a.qfp\ninclude spread.kav\nchoose #195\n");
    for (const char* arguments : {"a.qfp", "sub/main.kav"}) {  // a file of the folder, a script of this one
        const bool script = arguments[0] == 's';
        const Ended ended = run_program(std::string("-C work -o report.txt --json - --quiet ") + arguments,
                                        script ? "" : "include ../sub/spread.kav\n");
        EXPECT_EQ(ended.status, script ? 1 : 0) << read_text("errors");
        EXPECT_EQ(holds(read_text("errors"), "sub/main.kav:4: Default: Command not implemented"), script);
        const auto state = nlohmann::json::parse(ended.output);  // boxes and echo keep out of it
        EXPECT_EQ(state["segment"], "passive");
        EXPECT_EQ(state["circuit"]["branches"].size(), 9U);
        std::string report;
        for (const auto& line : state["report"]) report += line.get<std::string>() + '\n';
        EXPECT_EQ(read_text("work/report.txt"), report);
        EXPECT_TRUE(holds(report, "Capacitors:"));
    }
    write_text("kept", "kept\n");
    run_program("-C work -o /dev/stdout --json /dev/fd/1 --quiet a.qfp >>kept");
    EXPECT_TRUE(read_text("kept").starts_with("kept\n") && read_text("kept").ends_with("]\n}\n"));
}

// Types lines into a program on a terminal of its own, each when it is asked for; what the terminal shows.
std::string typed(const std::string& lines, std::vector<const char*> command = {PROGRAM_PATH}) {
    int terminal = -1;
    const winsize size{.ws_row = 50, .ws_col = 200, .ws_xpixel = 0, .ws_ypixel = 0};
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        setenv("TERM", "dumb", 1);
        command.push_back(nullptr);
        execv(command[0], const_cast<char**>(command.data()));
        _exit(127);
    }
    std::string shown;
    std::array<char, 4096> buffer;
    for (std::size_t at = 0;;) {
        const bool asks = shown.size() > 1 && shown.back() == ' ' && std::strchr(":>#$", shown[shown.size() - 2]);
        pollfd output{.fd = terminal, .events = POLLIN, .revents = 0};
        if (poll(&output, 1, asks ? 20 : 8000) > 0) {
            const ssize_t n = read(terminal, buffer.data(), buffer.size());
            if (n <= 0) break;
            shown.append(buffer.data(), static_cast<std::size_t>(n));
        } else if (at < lines.size()) {
            const std::size_t length = lines.find('\n', at) + 1 - at;
            if (write(terminal, lines.data() + at, length) < 0) break;
            at += length;
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    return shown;
}

TEST(Program, APersonAtATerminalGoesFromTheMenuToTheReport) {
    const ScratchFolder folder;
    std::filesystem::copy(TEST_DATA "/conversations/files", ".");
    write_text("echo.kav", "echo from a script\n");
    std::string shown;
    for (const char* name : {"terminal_ladder", "terminal"}) {
        const std::string session = typed(read_text(fmt::format(TEST_DATA "/console/{}.lines", name)));
        shown += session.substr(session.find('\n') + 1);  // behind the version
    }
    std::erase(shown, '\r');
    for (std::size_t end = 0; (end = shown.find("\x1b[K")) != std::string::npos;) {  // progress, on a slow machine
        const std::size_t begin = shown.rfind('\n', end) + 1;
        shown.erase(begin, end + 3 - begin);
    }
    expect_golden(TEST_DATA "/console/terminal.txt", shown);
    EXPECT_TRUE(holds(read_text("report.txt"), "Filter length =   5")) << shown;
    EXPECT_TRUE(std::filesystem::exists("q_qxz"));
}

TEST(Program, AShellStopsItAndTakesItUpAgain) {
    const ScratchFolder folder;
    const std::string shown =
        typed(PROGRAM_PATH "\necho before\n\x1a\nfg\necho after\nquit\nexit\n", {"/bin/sh", "-im"});
    const auto stopped = shown.find("Stopped", shown.find("\nbefore"));
    EXPECT_NE(shown.find("\nafter", stopped), std::string::npos) << shown;
}

// It waits at a pipe for the rest of its script, an undo file in the folder, when the signal comes.
TEST(Program, ASignalEndsAScriptInGoodOrder) {
    const std::string script =
        "choose File > Recall\nfile " EXAMPLES "/stored_lowpass.qfp\nchoose Branch > Delete\nset branch 3\nok\n";
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const ScratchFolder folder;
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        const pid_t child = fork();
        if (child == 0) {
            dup2(ends[0], STDIN_FILENO);
            std::signal(number, SIG_DFL);  // that of a run behind an "&" may be ignored
            execl("/bin/sh", "sh", "-c", "exec " PROGRAM_PATH " --json state.json >output",
                  static_cast<char*>(nullptr));
            _exit(127);
        }
        ASSERT_EQ(write(ends[1], script.data(), script.size()), static_cast<ssize_t>(script.size()));
        for (int i = 0; i < 1000 && !std::filesystem::exists("_xxx0.tmp"); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        kill(child, number);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(WIFSIGNALED(status) ? WTERMSIG(status) : 0, number);
        EXPECT_FALSE(std::filesystem::exists("_xxx0.tmp") || std::filesystem::exists("state.json"));
        EXPECT_TRUE(holds(read_text("output"), "> ok"));
        close(ends[0]);
        close(ends[1]);
    }
}

}  // namespace
}  // namespace kavrel
