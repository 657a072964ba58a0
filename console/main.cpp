// kavrel-cli: the workbench without a screen.

#include <clocale>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "console/script_stream.h"
#include "console/terminal.h"
#include "shell/shown_text.h"
#include "shell/whole_file.h"
#include "workbench/start_up.h"

namespace kavrel {

namespace {

constexpr int file_failure = static_cast<int>(Failure::file);
constexpr int script_failure = static_cast<int>(Failure::script);

int file_trouble(const std::string& name, std::string_view trouble) {
    std::cerr << fmt::format("kavrel-cli: '{}' {}\n", shown_text(name), trouble);
    return file_failure;
}

// Whether nobody reads any more what is written to a pipe.
bool reader_left(int descriptor) {
    pollfd pipe{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return poll(&pipe, 1, 0) == 1 && (pipe.revents & POLLERR) != 0;
}

// A closed standard stream stays closed: no file that is opened takes its number.
void hold_standard_streams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0)
            static_cast<void>(open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
}

std::string own_path() {
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).string();
}

int run(const ConsoleOptions& options) {
    const bool stored = names_stored_filter(options.argument);
    const bool scripted = !options.argument.empty() && !stored;
    const bool interactive = !scripted && isatty(STDIN_FILENO) == 1 && isatty(STDOUT_FILENO) == 1;

    hold_standard_streams();
    for (const int unwritable : {SIGPIPE, SIGXFSZ}) std::signal(unwritable, SIG_IGN);  // the write fails, and says so
    const StopSignals signals(interactive ? StopSignals::Second::waits : StopSignals::Second::ends);
    const auto trouble = [&](const std::string& name, std::string_view what) {
        if (signals.caught() != 0) end_by_signal(signals.caught());
        return file_trouble(name, what);
    };
    ConsoleScript script;
    if (scripted) {
        auto lines = open_script(options.argument, signals);
        if (lines == nullptr) return trouble(options.argument, "could not be read");
        script.push(options.argument, std::move(lines),
                    std::filesystem::absolute(options.argument).parent_path().string());
    } else if (!interactive) {
        script.push("<stdin>", std::make_unique<ScriptStream>(STDIN_FILENO, false, signals));
    }
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0)
        return trouble(options.folder, "could not be entered");
    const ReadFault fault = stored ? read_whole(options.argument).fault : ReadFault::none;
    if (fault != ReadFault::none) return trouble(options.argument, trim(complaint_of(fault, "could not be read", "")));
    // The name of an open stream (/dev/stdout) is that stream: what goes there goes behind each other.
    const std::optional<int> stream = options.report_file.empty() ? STDOUT_FILENO : stream_named(options.report_file);
    std::ofstream report_file;
    if (stream != STDOUT_FILENO && stream != STDERR_FILENO) {
        report_file.open(options.report_file, stream ? std::ios::app : std::ios::out);
        if (!report_file) return trouble(options.report_file, "could not be written");
    }
    const Transcript transcript{.report = stream == STDOUT_FILENO   ? std::cout
                                          : stream == STDERR_FILENO ? std::cerr
                                                                    : report_file,
                                // What is not asked for keeps out of the way of the state.
                                .screen = options.json_file == "-" ? std::cerr : std::cout,
                                .out = std::cout,
                                .errors = std::cerr,
                                .options = options};

    const auto window = interactive ? std::make_unique<Terminal>(script, transcript, signals)
                                    : std::make_unique<ConsoleWindow>(script, transcript, &signals);
    const std::string program = own_path();
    window->set_manual_folders(manual_folders(program));
    const auto bench = std::make_unique<Workbench>(*window);
    // A script means the same in every folder.
    bench->session.keeps_settings = interactive || options.settings;
    Runner runner(*bench, *window);
    main_program(*bench, stored ? options.argument : std::string{}, program);
    if (interactive) {
        static_cast<Terminal&>(*window).converse(*bench, runner);
    } else {
        runner.run();
    }
    const bool interrupted = window->interrupted();
    if (!options.json_file.empty() && !interrupted) {
        runner.dump(options.json_file);
        window->settle();
    }
    bench->temporaries.give_up();
    transcript.report.flush();
    std::cout.flush();
    if (interrupted) end_by_signal(signals.caught());
    if (!std::cout && reader_left(STDOUT_FILENO)) end_by_signal(SIGPIPE);
    if (!std::cout) return trouble("standard output", "could not be written");
    if (!transcript.report) return trouble(options.report_file, "could not be written");
    return interactive ? 0 : window->exit_status();
}

}  // namespace

}  // namespace kavrel

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "");
    kavrel::ConsoleOptions options;
    CLI::App app("Kavrel: design of electronic filters, without a screen", "kavrel-cli");
    app.add_option("SCRIPT", options.argument, "Script to run, or stored filter (.qf?) to open");
    app.add_option("-C", options.folder, "Work in this folder")->option_text("DIR");
    app.add_flag("--settings", options.settings, "A script begins with the units of q_qxz, and Global units writes it");
    app.add_option("-o", options.report_file, "Report to FILE instead of standard output")->option_text("FILE");
    app.add_option("--json", options.json_file, "At the end, write the state as JSON ('-' is standard output)")
        ->option_text("FILE");
    app.add_flag("--keep-going", options.keep_going, "Go on after a failed line");
    app.add_option("--date", options.date, "Text used wherever date and time are stamped")->option_text("TEXT");
    app.add_flag("--quiet", options.quiet, "No echo of the script's own lines");
    app.set_version_flag("--version", std::string("kavrel-cli ") + KAVREL_VERSION);
    try {
        app.parse(argc, argv);
        return kavrel::run(options);
    } catch (const CLI::ParseError& error) {
        std::ostringstream complaint;
        const int status = app.exit(error, std::cout, complaint);
        std::cerr << kavrel::shown_text(complaint.str(), kavrel::ShownAs::lines);
        return status == 0 ? 0 : kavrel::script_failure;
    } catch (const std::exception& error) {
        std::cerr << "kavrel-cli: " << kavrel::shown_text(error.what()) << '\n';
        return kavrel::file_failure;
    }
}
