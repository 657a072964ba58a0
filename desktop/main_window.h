// The one main window: menu bar and title of the current Segment, toolbar, report, status line.
#pragma once

#include <QMainWindow>
#include <functional>
#include <span>
#include <vector>

#include "desktop/menu_bar.h"
#include "desktop/window_settings.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace kavrel {

class CheckBadge;
class FindBar;
class ReportView;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    explicit MainWindow(WindowSettings& settings);
    ~MainWindow() override;

    // The menu of a Segment; between its last menus those of `others` that can be had from everywhere.
    void set_menu(std::span<const MenuItem> table, const QString& title, std::span<const MenuItem> others = {});
    // Makes the items grey that cannot act, by the reason that is found for an id, and gives it to them as tip.
    using Hindrance = std::function<QString(int id)>;
    void mark_items(const Hindrance& hindrance);
    void mark_table(const QString& why);  // the same of the window's own "Results as CSV"
    void set_toolbar(std::span<const ToolbarItem> toolbar);
    void set_status(const QString& units, const QString& file);

    // Long work: a bar (without an end, but with a count, when `total` is 0) and a button to stop it, while the menus
    // wait. It is over, or waits itself for an answer, when the bar is gone.
    void show_progress(const QString& work, int done, int total);
    void end_progress();

    [[nodiscard]] ReportView& report() { return *report_; }
    [[nodiscard]] CheckBadge& badge() { return *badge_; }

    // The item with this label at the end of its path in the current menu: its id, or 0.
    [[nodiscard]] int item_labelled(std::string_view label) const;

    // Closes for good; otherwise closing is only a wish.
    void close_now();

signals:
    void item_chosen(int id);
    void stop_wanted();
    void close_wanted();
    void check_wanted();
    // A page of the manual for a menu item's id.
    void item_help_wanted(int id);
    void save_report_wanted();
    void print_report_wanted();
    void pdf_report_wanted();
    void table_wanted();
    void state_wanted();
    void shade_chosen(kavrel::Shade shade);

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    // What the window itself does, apart from the menu tables.
    struct OwnAction {
        QAction* action;
        std::vector<QKeySequence> keys;  // of which those count that no accelerator of the menu is
    };
    void make_own_actions();
    void place_own_menu();
    void add_menus(std::span<const MenuItem> others);
    void set_report_points(int points);
    void choose_font();

    WindowSettings& settings_;
    ReportView* report_;
    FindBar* find_bar_;
    QToolBar* toolbar_;
    CheckBadge* badge_;
    QLabel* segment_;
    QLabel* units_;
    QLabel* file_;
    QLabel* work_;
    QProgressBar* bar_;
    QPushButton* stop_;
    QMenu* own_menu_;
    QAction* table_action_ = nullptr;
    std::vector<OwnAction> own_actions_;
    std::span<const MenuItem> table_;
    std::span<const ToolbarItem> buttons_;
    Accelerators accelerators_;
    bool closing_ = false;
};

}  // namespace kavrel
