// The script reader and the whole conversation behind it, on short designs.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>

#include "console/runner.h"
#include "workbench/start_up.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    std::string text(reinterpret_cast<const char*>(data), size);
    // No files: a script may name any path.
    for (const char* verb : {"dump", "table", "plot", "save-report", "include", "file"}) {
        if (text.find(verb) != std::string::npos) return 0;
    }
    ConsoleOptions options;
    options.keep_going = true;
    ConsoleScript script;
    std::ostringstream told;
    ConsoleWindow window(script, {.report = told, .screen = told, .out = told, .errors = told, .options = options});
    const auto bench = std::make_unique<Workbench>(window);
    bench->session.keeps_settings = false;
    script.push("fuzz", std::make_unique<std::istringstream>(text));
    Runner(*bench, window).run();
    return 0;
}
