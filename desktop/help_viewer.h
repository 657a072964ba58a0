// The manual in a window of its own: pages at the left, the page, and a line to search all of them.
#pragma once

#include <QMainWindow>

#include "desktop/manual.h"
#include "desktop/window_settings.h"

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QTextBrowser;
class QToolBar;

namespace kavrel {

class HelpViewer : public QMainWindow {
    Q_OBJECT

public:
    HelpViewer(const Manual& manual, WindowSettings& settings);
    ~HelpViewer() override;

    void show_place(const ManualPlace& place);
    [[nodiscard]] QString shown_page() const;
    [[nodiscard]] QTextBrowser& browser() { return *browser_; }

protected:
    bool event(QEvent* event) override;

private:
    void make_toolbar();
    void list_pages();
    void list_hits(const QString& words);
    void open_item(const QListWidgetItem* item);
    void open_next_hit();
    void went_to_page(const QUrl& page);
    void scroll_to_heading(const QString& heading);
    void mark_words(const QString& line);

    const Manual& manual_;
    WindowSettings& settings_;
    QListWidget* list_;
    QTextBrowser* browser_;
    QLineEdit* words_ = nullptr;
};

}  // namespace kavrel
