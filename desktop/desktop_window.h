// The window layer of the desktop: every question of the logic becomes a window.
#pragma once

#include <QElapsedTimer>
#include <memory>
#include <string>
#include <vector>

#include "desktop/main_window.h"
#include "desktop/manual.h"
#include "desktop/printing.h"
#include "desktop/window_settings.h"
#include "shell/window_layer.h"

namespace kavrel {

class HelpViewer;
class PlotViewer;
class TextViewer;

class DesktopWindow final : public WindowLayer {
public:
    explicit DesktopWindow(const std::vector<std::string>& manual_folders);
    ~DesktopWindow() override;
    DesktopWindow(const DesktopWindow&) = delete;
    DesktopWindow& operator=(const DesktopWindow&) = delete;

    void show_line(std::string_view line) override;
    Answer message(std::string_view text, std::string_view caption, Buttons buttons) override;
    int choose(const ChoiceBox& box) override;
    bool edit_form(FormSheet& sheet) override;
    void refuse_form(std::string_view, std::string_view) override {}  // it comes back and says so itself
    std::string choose_file(const FileQuery& query) override;
    void set_menu(std::span<const MenuItem> menu, std::string_view title) override;
    void set_toolbar(std::span<const ToolbarItem> toolbar) override;
    void show_plot(const PlotWindow& plot) override;
    PrintOutcome print_page(const PrintPage& page) override;
    PrintOutcome print_plot(const PlotWindow& plot) override;
    void copy_text() override;
    void view_text(std::string_view name, std::string_view text) override;
    void close_text_view() override;
    bool open_help(std::string_view page) override;
    std::string date_and_time() override;
    bool progress(std::string_view work, int done, int total) override;
    bool own_event(int item_id) override;

    // An event's work has begun or ended: what was pressed to stop an earlier one stops no other.
    void begin_work();
    void end_work();

    [[nodiscard]] bool is_closed() const { return closed_; }
    void close();

    // The date and time of reports from now on, so that they can be compared.
    void set_date(std::string text) { date_ = std::move(text); }

    // Whether the plot that is open is of an earlier filter.
    void mark_plot(bool earlier);

    [[nodiscard]] MainWindow& main() { return main_; }
    [[nodiscard]] PlotViewer& plot();
    [[nodiscard]] HelpViewer& help();
    [[nodiscard]] Printing& printing() { return printing_; }
    [[nodiscard]] TextViewer* text_viewer() { return text_.get(); }

private:
    template <class Question>
    auto ask(const Question& question);
    void connect_main();
    void use_shade(Shade shade);
    void show_place(const ManualPlace& place);
    void save_report();
    void save_report_as_pdf();
    // The window that a box or form belongs to: the innermost one that is open.
    [[nodiscard]] QWidget* front();

    WindowSettings settings_;
    Manual manual_;
    MainWindow main_;
    Printing printing_;
    std::unique_ptr<PlotViewer> plot_;  // made when they are first wanted
    std::unique_ptr<HelpViewer> help_;
    std::unique_ptr<TextViewer> text_;
    std::string date_;
    QElapsedTimer work_;         // since it began, or went on behind a question
    QElapsedTimer last_breath_;  // since events were last looked at
    bool stop_wanted_ = false;
    bool closed_ = false;
};

}  // namespace kavrel
