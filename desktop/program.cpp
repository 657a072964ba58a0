#include "desktop/program.h"

#include <QFileInfo>

#include "desktop/check_badge.h"
#include "desktop/report_view.h"
#include "desktop/text.h"
#include "segment/result_commands.h"
#include "shell/known_files.h"
#include "shell/shown_text.h"
#include "shell/units.h"
#include "workbench/events.h"
#include "workbench/shown.h"
#include "workbench/start_up.h"
#include "workbench/state_json.h"

namespace kavrel {

namespace {

// "Branch > Insert"
QString path_text(const MenuItem& item) { return qt_text(plain_label(item.path)); }

}  // namespace

Program::Program(DesktopWindow& window) : window_(window), bench_(window) {
    connect(&window.main(), &MainWindow::item_chosen, this, &Program::send);
    connect(&window.main(), &MainWindow::close_wanted, this, &Program::leave);
    connect(&window.main(), &MainWindow::check_wanted, this, &Program::show_check);
    connect(&window.main(), &MainWindow::table_wanted, this, &Program::write_table);
    connect(&window.main(), &MainWindow::state_wanted, this, &Program::write_state);
    bench_.session.guards_unsaved = true;
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
    if (const MenuItem* item = item_of(item_id)) window_.main().report().begin_command(path_text(*item));
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
    window_.main().mark_items([this](int id) { return qt_text(hindrance(bench_, id)); });
    window_.main().mark_table(bench_.results.kind == AnalysisResult::Kind::none ? qt_text(no_analysis_results) : "");
    window_.main().set_status(qt_text(units_text(session.units)), QFileInfo(file).fileName());
}

void Program::attend(const std::function<void()>& work) {
    if (busy_) return;
    busy_ = true;
    window_.begin_work();
    window_.main().report().begin_command({});
    work();
    window_.end_work();
    busy_ = false;
}

void Program::show_check() {
    attend([this] {
        const RequestCheck& check = shown_check(bench_);
        window_.main().badge().show_check(check);
        std::string text;
        for (const std::string& line : check_table(check)) text += line + '\n';
        window_.view_text("Does it meet the request?", text);
    });
}

void Program::write_table() {
    attend([this] {
        hand_out({.caption = "Results as CSV", .description = "CSV files", .filter = "*.csv", .to_write = true},
                 table_of_results(bench_));
    });
}

void Program::write_state() {
    attend([this] {
        if (shown_check(bench_).stopped) return;
        hand_out({.caption = "State as JSON", .description = "JSON files", .filter = "*.json", .to_write = true},
                 state_json(bench_));
    });
}

void Program::hand_out(const FileQuery& query, const std::string& text) {
    const std::string name = window_.choose_file(query);
    if (name.empty()) return;
    if (write_known(bench_.session, bench_.reporter, name, name, text) == WriteVerdict::not_written)
        bench_.reporter.message("File could not be written", "Error");
}

}  // namespace kavrel
