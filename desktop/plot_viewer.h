// The window "Analysis results".
#pragma once

#include <QMainWindow>

#include "desktop/window_settings.h"
#include "shell/plot.h"

class QLabel;

namespace kavrel {

class PlotView;

class PlotViewer : public QMainWindow {
    Q_OBJECT

public:
    explicit PlotViewer(WindowSettings& settings);
    ~PlotViewer() override;

    void show_plot(const PlotWindow& plot);
    // Whether the plot is of an earlier filter; zoom and marks stay.
    void mark_earlier(bool earlier);
    void set_shade(Shade shade);
    [[nodiscard]] PlotView& view() { return *view_; }

    // Pictures of what is seen, drawn light; false when the file could not be written.
    [[nodiscard]] bool save_picture(const QString& name) const;
    void copy_picture() const;

signals:
    // The event of the menu's one item.
    void print_wanted(int item_id);

private:
    void make_toolbar();
    void choose_picture_file();
    void show_cursor();

    WindowSettings& settings_;
    PlotView* view_;
    QLabel* cursor_;
    QLabel* difference_;
    int print_id_ = 0;
    QMenu* menu_;
};

}  // namespace kavrel
