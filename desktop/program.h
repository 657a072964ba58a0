// The program at work: events of the windows to the workbench, and what the status line shows of it.
#pragma once

#include <QObject>

#include "desktop/desktop_window.h"
#include "workbench/workbench.h"

namespace kavrel {

class Program : public QObject {
    Q_OBJECT

public:
    explicit Program(DesktopWindow& window);

    // From the start of the process to the first event; afterwards the windows deliver events.
    void start(const std::string& argument, const std::string& executable);

    // Serves one event, unless another one is being served.
    void send(int item_id);

    [[nodiscard]] Workbench& bench() { return bench_; }

private:
    // The user wishes to close the main window: what "Exit" of the current menu does.
    void leave();
    void show_status();
    void show_check();

    DesktopWindow& window_;
    Workbench bench_;
    bool busy_ = false;
};

}  // namespace kavrel
