// The program at work: events of the windows to the workbench, and what the status line shows of it.
#pragma once

#include <QObject>
#include <functional>

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
    void write_table();
    void write_state();
    // Asks for a name and writes what the user hands out.
    void hand_out(const FileQuery& query, const std::string& text);
    // Does what is no event of a menu, unless one is being served.
    void attend(const std::function<void()>& work);

    DesktopWindow& window_;
    Workbench bench_;
    bool busy_ = false;
};

}  // namespace kavrel
