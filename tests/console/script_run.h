// A script run in this process, in a folder of its own.
#pragma once

#include <memory>
#include <sstream>
#include <string>

#include "console/console_window.h"
#include "console/runner.h"
#include "tests/support/scratch_folder.h"
#include "workbench/start_up.h"

namespace kavrel {

struct ScriptRun {
    ConsoleOptions options;
    ConsoleScript script;
    std::ostringstream report;
    std::ostringstream screen;
    std::ostringstream out;
    std::ostringstream errors;
    ConsoleWindow window{script,
                         {.report = report, .screen = screen, .out = out, .errors = errors, .options = options}};
    Workbench bench{window};
    Runner runner{bench, window};

    explicit ScriptRun(const std::string& text, bool keep_going = false) {
        options.keep_going = keep_going;
        options.date = "2026-01-01";
        main_program(bench, "", "/usr/bin/kavrel-cli");
        run(text);
    }

    int run(const std::string& text) {
        script.push("test.kav", std::make_unique<std::istringstream>(text));
        runner.run();
        return status();
    }

    [[nodiscard]] int status() const { return window.exit_status(); }
};

// The head of a script that opens the FIR form, and the bands of a small low-pass.
inline const std::string open_fir = "choose Design > FIR Filter > New\n";
inline const std::string low_pass_bands =
    "button Details\nrow 0 1k 1 1\nrow 2k 5k 0 10\nok\nset specification_type Weights\n";

}  // namespace kavrel
