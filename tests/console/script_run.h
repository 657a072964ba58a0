// A script run in this process, in the folder that is current; all that it shows is one text, in its order.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "console/console_window.h"
#include "console/runner.h"
#include "tests/support/scratch_folder.h"
#include "workbench/start_up.h"

namespace kavrel {

// Long work is stopped at its n-th question.
struct StoppingWindow : ConsoleWindow {
    using ConsoleWindow::ConsoleWindow;
    int questions = 0;
    int stop_at = 0;  // 0: never

    bool progress(std::string_view work, int done, int total) override {
        return ++questions != stop_at && ConsoleWindow::progress(work, done, total);
    }
};

struct ScriptRun {
    ConsoleOptions options;
    ConsoleScript script;
    std::ostringstream shown;
    StoppingWindow window;
    Workbench bench{window};
    Runner runner{bench, window};

    explicit ScriptRun(bool keep_going = false, bool quiet = false, const StopSignals* signals = nullptr)
        : window(script, {.report = shown, .screen = shown, .out = shown, .errors = shown, .options = options},
                 signals) {
        options.keep_going = keep_going;
        options.quiet = quiet;
        options.date = "2026-01-01";
        bench.session.keeps_settings = false;
        main_program(bench, "", "/usr/bin/kavrel-cli");
    }

    int run(const std::string& text) {
        script.push("test.kav", std::make_unique<std::istringstream>(text));
        runner.run();
        return window.exit_status();
    }
};

}  // namespace kavrel
