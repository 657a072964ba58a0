#include "desktop/program.h"

#include <QFileInfo>

#include "desktop/check_badge.h"
#include "desktop/text.h"
#include "shell/shown_text.h"
#include "shell/units.h"
#include "workbench/events.h"
#include "workbench/shown.h"
#include "workbench/start_up.h"

namespace kavrel {

Program::Program(DesktopWindow& window) : window_(window), bench_(window) {
    connect(&window.main(), &MainWindow::item_chosen, this, &Program::send);
    connect(&window.main(), &MainWindow::close_wanted, this, &Program::leave);
    connect(&window.main(), &MainWindow::check_wanted, this, &Program::show_check);
}

void Program::start(const std::string& argument, const std::string& executable) {
    busy_ = true;
    window_.begin_work();
    main_program(bench_, argument, executable);
    show_status();
    window_.end_work();
    busy_ = false;
}

void Program::send(int item_id) {
    if (busy_ || window_.is_closed()) return;
    busy_ = true;
    window_.begin_work();
    window_.main().badge().show_nothing();
    dispatch_event(bench_, item_id);
    if (!bench_.session.stopped) show_status();
    window_.end_work();
    busy_ = false;
    if (bench_.session.stopped) window_.close();
}

void Program::leave() {
    if (busy_) {
        emit window_.main().stop_wanted();
        return;
    }
    const int exit = window_.main().item_labelled("Exit");
    send(exit != 0 ? exit : close_window_event);
}

void Program::show_status() {
    const Session& session = bench_.session;
    const QString file = qt_text(shown_text(session.filter_file.trimmed()));
    window_.mark_plot(bench_.plot.earlier);
    window_.main().badge().show_check(shown_check(bench_));
    window_.main().set_status(qt_text(units_text(session.units)), QFileInfo(file).fileName());
}

void Program::show_check() {
    if (busy_) return;
    busy_ = true;
    window_.begin_work();
    const RequestCheck& check = shown_check(bench_);
    window_.main().badge().show_check(check);
    window_.end_work();
    busy_ = false;
    std::string text;
    for (const std::string& line : check_table(check)) text += line + '\n';
    window_.view_text("Does it meet the request?", text);
}

}  // namespace kavrel
