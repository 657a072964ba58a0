// Who watches long work, and may stop it. Each loop whose length comes from data, or that goes on until something
// settles, asks once a turn, so often that a tenth of a second never passes between two questions.
#pragma once

#include <string_view>

#include "shell/window_layer.h"

namespace kavrel {

// The report's line of work that was stopped.
inline constexpr std::string_view stopped_line = " **** Stopped ****";

class Watcher {
public:
    // False: the work is to end, and stays so. Whoever is told so leaves its results as they were.
    [[nodiscard]] bool go_on() {
        stopped_ = stopped_ || !asked();
        return !stopped_;
    }
    [[nodiscard]] bool stopped() const { return stopped_; }

protected:
    ~Watcher() = default;

private:
    [[nodiscard]] virtual bool asked() = 0;

    bool stopped_ = false;
};

// Nobody watches: the work runs to its end.
class Unwatched final : public Watcher {
    bool asked() override { return true; }
};

// Shows the window layer how far the work has come, and asks it whether to stop.
class WindowWatcher final : public Watcher {
public:
    WindowWatcher(WindowLayer& window, std::string_view work) : window_(window), work_(work) {}

private:
    bool asked() override { return window_.progress(work_, ++turns_, 0); }

    WindowLayer& window_;
    std::string_view work_;
    int turns_ = 0;
};

}  // namespace kavrel
