// The script reader and the whole conversation behind it, in a folder of its own: whatever a script writes there, it
// may read again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <sstream>

#include "console/runner.h"
#include "tests/support/scratch_folder.h"
#include "workbench/start_up.h"

namespace kavrel {
namespace {

// Presses Ctrl-C in long searches: what is slow under sanitizers alone is no finding, what does not ask is one.
// Analyses and checks, which ask at each point, go on to their end.
class Impatient final : public ConsoleWindow {
public:
    using ConsoleWindow::ConsoleWindow;
    bool progress(std::string_view work, int, int) override {
        constexpr std::string_view searches[] = {"Approximation", "Ladder search", "Remez exchange", "Simulation",
                                                 "Least words",   "Order search",  "Program",        "Factors"};
        return std::ranges::find(searches, work) == std::end(searches) || ++asked_ < 200;
    }

private:
    int asked_ = 0;
};

}  // namespace
}  // namespace kavrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    std::string text(reinterpret_cast<const char*>(data), size);
    std::ranges::replace(text, '/', '_');  // a name without a slash does not lead out of the folder
    const ScratchFolder folder;
    ConsoleOptions options;
    options.keep_going = true;
    ConsoleScript script;
    std::ostringstream shown;
    Impatient window(script, {.report = shown, .screen = shown, .out = shown, .errors = shown, .options = options});
    const auto bench = std::make_unique<Workbench>(window);
    bench->session.keeps_settings = false;
    main_program(*bench, "", "");
    script.push("fuzz", std::make_unique<std::istringstream>(text));
    Runner(*bench, window).run();
    return 0;
}
