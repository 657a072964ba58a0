#include "desktop/desktop_window.h"

#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <algorithm>

#include "desktop/file_selector.h"
#include "desktop/form_dialog.h"
#include "desktop/help_viewer.h"
#include "desktop/icons.h"
#include "desktop/message_boxes.h"
#include "desktop/plot_viewer.h"
#include "desktop/report_view.h"
#include "desktop/text.h"
#include "desktop/text_viewer.h"
#include "shell/form.h"
#include "shell/whole_file.h"
#include "workbench/menus.h"

namespace kavrel {

namespace {

constexpr qint64 breath = 40;     // milliseconds between two looks at events during long work
constexpr qint64 patience = 200;  // milliseconds that work may take before it shows; until then what is typed waits

}  // namespace

DesktopWindow::DesktopWindow(const std::vector<std::string>& manual_folders)
    : manual_(manual_folders), main_(settings_) {
    use_shade(settings_.shade());
    main_.setWindowIcon(program_icon());
    connect_main();
    work_.start();
    last_breath_.start();
}

DesktopWindow::~DesktopWindow() = default;

void DesktopWindow::show_line(std::string_view line) {
    main_.report().append_line(qt_text(line));
    if (last_breath_.elapsed() < breath) return;
    QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    last_breath_.restart();
}

// The work waits for the answer, and shows anew when it goes on.
template <class Question>
auto DesktopWindow::ask(const Question& question) {
    main_.end_progress();
    const auto answer = question();
    work_.start();
    return answer;
}

Answer DesktopWindow::message(std::string_view text, std::string_view caption, Buttons buttons) {
    return ask([&] { return show_message(text, caption, buttons, front()); });
}

int DesktopWindow::choose(const ChoiceBox& box) {
    return ask([&] { return show_choices(box, front()); });
}

bool DesktopWindow::edit_form(FormSheet& sheet) {
    stop_wanted_ = false;  // what was stopped is over
    FormDialog dialog(sheet, settings_, front());
    QObject::connect(&dialog, &FormDialog::help_wanted, &main_,
                     [this](const QString& form) { show_place(manual_.place_of(form)); });
    return ask([&] { return dialog.exec() == QDialog::Accepted; });
}

std::string DesktopWindow::choose_file(const FileQuery& query) {
    return ask([&] { return run_file_selector(query, front()); });
}

void DesktopWindow::set_menu(std::span<const MenuItem> menu, std::string_view title) {
    std::vector<MenuItem> others;  // designs and analyses begin anywhere
    for (const MenuItem& item : main_menu) {
        const bool is_own = std::ranges::any_of(
            menu, [&](const MenuItem& own) { return path_label(own.path, 0) == path_label(item.path, 0); });
        if (!is_own && path_depth(item.path) > 2) others.push_back(item);
    }
    main_.set_menu(menu, qt_text(title), others);
    if (!main_.isVisible()) main_.show();  // not before it has a menu
}

void DesktopWindow::set_toolbar(std::span<const ToolbarItem> toolbar) { main_.set_toolbar(toolbar); }

void DesktopWindow::show_plot(const PlotWindow& window) { plot().show_plot(window); }

PrintOutcome DesktopWindow::print_page(const PrintPage& page) { return printing_.print_page(page, front()); }

PrintOutcome DesktopWindow::print_plot(const PlotWindow& window) {
    QWidget* wished_here = plot_ && plot_->isActiveWindow() ? plot_.get() : front();
    return printing_.print_plot(window, wished_here);
}

void DesktopWindow::copy_text() { main_.report().copy(); }

void DesktopWindow::view_text(std::string_view name, std::string_view text) {
    if (!text_) text_ = std::make_unique<TextViewer>(settings_);
    text_->show_text(qt_text(name), qt_text(text));
}

void DesktopWindow::close_text_view() {
    if (text_) text_->close();
}

bool DesktopWindow::open_help(std::string_view page) {
    if (!manual_.has_page(qt_text(page))) return false;
    help().show_place({.page = qt_text(page), .heading = {}});
    return true;
}

std::string DesktopWindow::date_and_time() {
    return date_.empty() ? utf8_text(QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss")) : date_;
}

bool DesktopWindow::progress(std::string_view work, int done, int total) {
    if (last_breath_.elapsed() < breath) return !stop_wanted_;
    if (work_.elapsed() < patience) {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    } else {
        main_.show_progress(qt_text(work), done, total);
        QApplication::processEvents();
    }
    last_breath_.restart();
    return !stop_wanted_;
}

bool DesktopWindow::own_event(int item_id) {
    if (item_id != close_window_event) return false;
    close();
    return true;
}

void DesktopWindow::begin_work() {
    stop_wanted_ = false;
    work_.start();
    last_breath_.start();
}

void DesktopWindow::end_work() { main_.end_progress(); }

void DesktopWindow::mark_plot(bool earlier) {
    if (plot_) plot_->mark_earlier(earlier);
}

void DesktopWindow::close() {
    closed_ = true;
    if (plot_) plot_->close();
    if (help_) help_->close();
    if (text_) text_->close();
    main_.close_now();
}

PlotViewer& DesktopWindow::plot() {
    if (!plot_) {
        plot_ = std::make_unique<PlotViewer>(settings_);
        QObject::connect(plot_.get(), &PlotViewer::print_wanted, &main_, &MainWindow::item_chosen);
    }
    return *plot_;
}

HelpViewer& DesktopWindow::help() {
    if (!help_) help_ = std::make_unique<HelpViewer>(manual_, settings_);
    return *help_;
}

void DesktopWindow::connect_main() {
    QObject::connect(&main_, &MainWindow::stop_wanted, &main_, [this] { stop_wanted_ = true; });
    QObject::connect(&main_, &MainWindow::item_help_wanted, &main_,
                     [this](int id) { show_place(manual_.place_of(id)); });
    QObject::connect(&main_, &MainWindow::save_report_wanted, &main_, [this] { save_report(); });
    QObject::connect(&main_, &MainWindow::pdf_report_wanted, &main_, [this] { save_report_as_pdf(); });
    QObject::connect(&main_, &MainWindow::print_report_wanted, &main_,
                     [this] { printing_.print_report(main_.report().report_lines(), &main_); });
    QObject::connect(&main_, &MainWindow::shade_chosen, &main_, [this](Shade shade) {
        settings_.set_shade(shade);
        use_shade(shade);
    });
}

void DesktopWindow::use_shade(Shade shade) {
    QApplication::setPalette(window_palette(shade));
    if (plot_) plot_->set_shade(shade);
}

void DesktopWindow::show_place(const ManualPlace& place) {
    if (manual_.has_page(place.page)) help().show_place(place);
}

void DesktopWindow::save_report() {
    const std::string name = run_file_selector(
        {.caption = "Save report", .description = "Text files", .filter = "*.txt", .to_write = true}, &main_);
    if (name.empty() || write_whole(name, utf8_text(main_.report().report_text()))) return;
    static_cast<void>(show_message("File could not be written", "Error", Buttons::ok, &main_));
}

void DesktopWindow::save_report_as_pdf() {
    const std::string name = run_file_selector(
        {.caption = "Report as PDF", .description = "PDF files", .filter = "*.pdf", .to_write = true}, &main_);
    if (name.empty() || printing_.report_to_pdf(main_.report().report_lines(), qt_text(name))) return;
    static_cast<void>(show_message("File could not be written", "Error", Buttons::ok, &main_));
}

QWidget* DesktopWindow::front() {
    QWidget* modal = QApplication::activeModalWidget();
    return modal != nullptr ? modal : &main_;
}

}  // namespace kavrel
