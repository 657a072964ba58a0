// The window that shows a text file.
#pragma once

#include <QMainWindow>

#include "desktop/window_settings.h"

namespace kavrel {

class ReportView;

class TextViewer : public QMainWindow {
    Q_OBJECT

public:
    explicit TextViewer(WindowSettings& settings);
    ~TextViewer() override;

    void show_text(const QString& name, const QString& text);
    [[nodiscard]] ReportView& view() { return *view_; }

private:
    WindowSettings& settings_;
    ReportView* view_;
};

}  // namespace kavrel
