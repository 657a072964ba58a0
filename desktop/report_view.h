// Text in a fixed pitch, line by line: the report of the main window and the text viewer's page. It can be read,
// marked, copied, searched and made larger, not written.
#pragma once

#include <QPlainTextEdit>

namespace kavrel {

class ReportView : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit ReportView(QWidget* parent = nullptr);

    // The next line gets a head that names the command it is of; heads are shown only, no part of the report.
    void begin_command(const QString& name) { head_ = name; }

    // Adds a line; the view follows it when its end was in sight.
    void append_line(const QString& line);

    // All lines, each with its line end.
    [[nodiscard]] QString report_text() const;
    [[nodiscard]] QStringList report_lines() const;

    void set_font(const QString& family, int points);
    [[nodiscard]] int points() const { return points_; }
    [[nodiscard]] QString family() const { return family_; }

    // Marks the next (or the former) place of a text, any case; goes round at the end. False when there is none.
    [[nodiscard]] bool find_text(const QString& text, bool backwards);

signals:
    void zoom_wanted(int steps);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void append_block(const QString& text, const QTextCharFormat& format, int state);
    void draw_box_lines(const QRect& damaged);

    QString family_;
    int points_ = 0;
    QString head_;          // that waits for its line
    bool is_empty_ = true;  // not even a blank line has come
};

}  // namespace kavrel
