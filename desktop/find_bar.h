// The line under a text in which one looks for something.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

namespace kavrel {

class ReportView;

class FindBar : public QWidget {
    Q_OBJECT

public:
    FindBar(ReportView& view, QWidget* parent);

    // Shows the bar, with the marked text (if it lies in one line) to look for.
    void open();
    void find(bool backwards);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void leave();
    void show_found(bool found);

    ReportView& view_;
    QLineEdit* text_;
    QLabel* outcome_;
};

}  // namespace kavrel
