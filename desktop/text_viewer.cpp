#include "desktop/text_viewer.h"

#include <QShortcut>
#include <QVBoxLayout>

#include "desktop/find_bar.h"
#include "desktop/icons.h"
#include "desktop/report_view.h"
#include "desktop/window_fit.h"

namespace kavrel {

TextViewer::TextViewer(WindowSettings& settings) : settings_(settings), view_(new ReportView(this)) {
    setObjectName("text_window");
    setWindowIcon(program_icon());
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* find_bar = new FindBar(*view_, centre);
    layout->addWidget(view_, 1);
    layout->addWidget(find_bar);
    setCentralWidget(centre);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, find_bar, &FindBar::open);
    connect(new QShortcut(QKeySequence(Qt::Key_F3), this), &QShortcut::activated, find_bar,
            [find_bar] { find_bar->find(false); });
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &QWidget::close);
    connect(view_, &ReportView::zoom_wanted, this,
            [this](int steps) { view_->set_font(view_->family(), view_->points() + steps); });
    if (!settings_.restore("text", *this)) resize(QSize(820, 640).boundedTo(most_of_screen(*this)));
}

TextViewer::~TextViewer() { settings_.keep("text", *this); }

void TextViewer::show_text(const QString& name, const QString& text) {
    setWindowTitle(name);
    view_->set_font(settings_.report_family(), settings_.report_points());
    view_->setPlainText(text);
    show();
    raise();
    view_->setFocus();
}

}  // namespace kavrel
