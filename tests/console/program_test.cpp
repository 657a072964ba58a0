// The program itself: options, exit status, the examples, and a person at a terminal.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <pty.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

struct Ended {
    int status;
    std::string output;  // and errors
};

Ended run_program(const std::string& arguments, const std::string& input = "") {
    write_text("input", input);
    const std::string command = std::string(PROGRAM_PATH) + " " + arguments + " < input" +
                                (arguments.find("2>") == std::string::npos ? " 2>&1" : "");
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> buffer;
    for (std::size_t n = 0; (n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) output.append(buffer.data(), n);
    const int status = pclose(pipe);
    return {WEXITSTATUS(status), output};
}

class Examples : public testing::TestWithParam<std::string> {};

std::vector<std::string> example_files() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES)) {
        if (entry.path().extension() == ".kav") files.push_back(entry.path().stem());
    }
    std::ranges::sort(files);
    return files;
}

// Reports are golden: KAVREL_WRITE_GOLDEN=1 writes them anew.
TEST_P(Examples, RunsToItsEndWithItsReport) {
    const ScratchFolder folder;
    const std::string name = GetParam();
    const Ended ended = run_program("--json state.json -o report.txt --date 2026-01-01 " EXAMPLES "/" + name + ".kav");
    EXPECT_EQ(ended.status, 0) << ended.output;
    const auto state = nlohmann::json::parse(read_text("state.json"));
    EXPECT_EQ(state["format"], 1);
    EXPECT_NE(state["design"], "discontinued");
    const std::string golden = TEST_DATA "/console/" + name + ".txt";
    if (std::getenv("KAVREL_WRITE_GOLDEN") != nullptr) write_text(golden, read_text("report.txt"));
    EXPECT_EQ(read_text("report.txt"), read_text(golden));
}

INSTANTIATE_TEST_SUITE_P(All, Examples, testing::ValuesIn(example_files()),
                         [](const auto& test) { return test.param; });

constexpr const char* small_design =
    "choose Design > FIR Filter > New\nset filter_length 5\nset specification_type Weights\nbutton Details\n"
    "row 0 1k 1 1\nrow 3k 5k 0 10\nok\nok\n";

TEST(Program, OptionsAndStatus) {
    const ScratchFolder folder;
    EXPECT_EQ(run_program("--version").output, "kavrel-cli " KAVREL_VERSION "\n");
    EXPECT_NE(run_program("--help").output.find("--keep-going"), std::string::npos);
    EXPECT_EQ(run_program("--frobnicate").status, 2);
    EXPECT_EQ(run_program("missing.kav").status, 3);
    EXPECT_EQ(run_program("-C missing").status, 3);
    EXPECT_EQ(run_program("-o missing/report.txt").status, 3);
    EXPECT_EQ(run_program("--json missing/state.json").status, 3);
    EXPECT_EQ(run_program("", "frobnicate\n").output,
              "== Kavrel - MAIN MENU\n> frobnicate\n<stdin>:1: unknown verb 'frobnicate'\n");
    EXPECT_EQ(run_program("", "choose #195\n").status, 1);
    EXPECT_EQ(run_program("filter.dat", "").status, 3) << "any other argument is a script";
    EXPECT_EQ(run_program("filter.qfp", "").status, 3);
    write_text("filter.qff", "");
    EXPECT_EQ(run_program("filter.qff", "").status, 1) << "stored FIR filters are not read yet";
    EXPECT_NE(run_program("filter.qff --quiet", "").output.find("filter.qff"), std::string::npos);
}

TEST(Program, ReportGoesToAFileAndTheStateToStandardOutput) {
    const ScratchFolder folder;
    std::filesystem::create_directory("work");
    write_text("design.kav", small_design);
    const Ended ended = run_program("-C work -o report.txt --json - --quiet design.kav");
    EXPECT_EQ(ended.status, 0) << ended.output;
    const auto state = nlohmann::json::parse(ended.output);
    EXPECT_EQ(state["segment"], "fir");
    EXPECT_EQ(state["fir"]["length"], 5);
    EXPECT_EQ(state["fir"]["fs"], 10000.0);
    EXPECT_EQ(state["fir"]["impulse"].size(), 5U);
    EXPECT_EQ(state["time"]["step"].size(), 5U);
    EXPECT_EQ(state["boxes"].size(), 0U);
    std::string report;
    for (const auto& line : state["report"]) report += line.get<std::string>() + '\n';
    EXPECT_EQ(read_text("work/report.txt"), report);
    EXPECT_TRUE(std::filesystem::exists("work/q_qxz"));
    EXPECT_NE(ended.output.find("\"fs\": 10000,"), std::string::npos);
}

TEST(Program, AStoredFilterOpensFromTheCommandLine) {
    const ScratchFolder folder;
    std::filesystem::create_directory("work");
    std::filesystem::copy_file(EXAMPLES "/stored_lowpass.qfp", "work/a.qfp");
    const Ended ended = run_program("-C work -o report.txt --json - --quiet a.qfp 2>errors",
                                    "choose View > Spread\nexpect Inductors\n");
    EXPECT_EQ(ended.status, 0) << read_text("errors");
    const auto state = nlohmann::json::parse(ended.output);
    EXPECT_EQ(state["segment"], "passive");
    EXPECT_EQ(state["circuit"]["branches"].size(), 9U);
    const auto report = state["report"].get<std::vector<std::string>>();
    EXPECT_NE(std::ranges::find(report, "a.qfp"), report.end());
    EXPECT_NE(report.back().find("Capacitors:"), std::string::npos);
}

TEST(Program, FoldersOfScriptsAndStatesOnStandardOutput) {
    const ScratchFolder folder;
    std::filesystem::create_directories("work");
    std::filesystem::create_directories("sub");
    write_text("sub/design.kav", small_design);
    write_text("sub/main.kav", "include design.kav\nchoose #195\n");
    const Ended ended = run_program("-C work --quiet -o report.txt --json - sub/main.kav 2>errors");
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(nlohmann::json::parse(ended.output)["fir"]["length"], 5) << "boxes keep out of the state";
    EXPECT_NE(read_text("errors").find("sub/main.kav:2: Default: Command not implemented"), std::string::npos);
}

// Types lines into the program on a terminal of its own and returns what it shows.
std::string converse(const std::vector<std::string>& lines) {
    int terminal = -1;
    const winsize size{.ws_row = 50, .ws_col = 200, .ws_xpixel = 0, .ws_ypixel = 0};
    const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
    if (child == 0) {
        setenv("TERM", "dumb", 1);
        execl(PROGRAM_PATH, "kavrel-cli", static_cast<char*>(nullptr));
        _exit(127);
    }
    std::thread typist([&] {
        for (const auto& line : lines) {
            const std::string typed = line + "\n";
            if (write(terminal, typed.data(), typed.size()) < 0) return;
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
        }
    });
    std::string shown;
    std::array<char, 4096> buffer;
    for (ssize_t n = 0; (n = read(terminal, buffer.data(), buffer.size())) > 0;) {
        shown.append(buffer.data(), static_cast<std::size_t>(n));
    }
    typist.join();
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    return shown;
}

TEST(Program, APersonAtATerminalGoesFromTheMenuToTheReport) {
    const ScratchFolder folder;
    write_text("echo.kav", "echo from a script\n");
    const std::string shown = converse({"design",
                                        "3",
                                        "1",  // Design > FIR Filter > New
                                        "5",
                                        "",
                                        "",
                                        "Weights",  // length, method, type, specification
                                        "yes",
                                        "0 1k 1 1",
                                        "3k 5k 0",
                                        "3k 5k 0 10",
                                        "",
                                        "ok",  // Details, with a row too short
                                        "ok",  // leaves the rest as it stands
                                        "",
                                        "view",
                                        "show",
                                        "2",
                                        "",
                                        "1",
                                        "",
                                        "save-report report.txt",
                                        "include echo.kav",
                                        "expect never",
                                        "quit"});
    EXPECT_NE(shown.find("1 File"), std::string::npos) << "the menu is shown";
    EXPECT_NE(shown.find("Filter length (0 to 512) [0]:"), std::string::npos);
    EXPECT_NE(shown.find("a row has 4 numbers, not 3"), std::string::npos);
    EXPECT_EQ(shown.find("Window type"), std::string::npos) << "fields that are off are not asked for";
    EXPECT_NE(shown.find("[Error] Function does not exist"), std::string::npos);
    EXPECT_NE(shown.find("from a script"), std::string::npos);
    EXPECT_NE(shown.find("<terminal>:"), std::string::npos) << "typed lines fail under their own name";
    EXPECT_NE(read_text("report.txt").find("Filter length =   5"), std::string::npos) << shown;
}

}  // namespace
}  // namespace kavrel
