#include "desktop/find_bar.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "desktop/palettes.h"
#include "desktop/report_view.h"

namespace kavrel {

FindBar::FindBar(ReportView& view, QWidget* parent)
    : QWidget(parent), view_(view), text_(new QLineEdit(this)), outcome_(new QLabel(this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(new QLabel(tr("Find:"), this));
    layout->addWidget(text_, 1);
    text_->setObjectName("find_text");
    text_->setMaximumWidth(360);
    text_->setClearButtonEnabled(true);
    const auto add_button = [&](Qt::ArrowType arrow, const QString& tip, bool backwards) {
        auto* button = new QToolButton(this);
        button->setArrowType(arrow);
        button->setToolTip(tip);
        button->setAutoRaise(true);
        connect(button, &QToolButton::clicked, this, [this, backwards] { find(backwards); });
        layout->addWidget(button);
    };
    add_button(Qt::UpArrow, tr("Former place (Shift+Enter)"), true);
    add_button(Qt::DownArrow, tr("Next place (Enter)"), false);
    outcome_->setObjectName("find_outcome");
    layout->addWidget(outcome_);
    layout->addStretch(1);
    auto* close = new QToolButton(this);
    close->setText("×");
    close->setToolTip(tr("Close (Esc)"));
    close->setAutoRaise(true);
    connect(close, &QToolButton::clicked, this, &FindBar::leave);
    layout->addWidget(close);
    connect(text_, &QLineEdit::textEdited, this, [this](const QString& text) {
        QTextCursor start = view_.textCursor();
        start.setPosition(start.selectionStart());
        view_.setTextCursor(start);
        show_found(text.isEmpty() || view_.find_text(text, false));
    });
    hide();
}

void FindBar::open() {
    const QString marked = view_.textCursor().selectedText();
    if (!marked.isEmpty() && !marked.contains(QChar::ParagraphSeparator)) text_->setText(marked.trimmed());
    show();
    text_->setFocus();
    text_->selectAll();
}

void FindBar::find(bool backwards) {
    if (text_->text().isEmpty()) {
        open();
    } else {
        show_found(view_.find_text(text_->text(), backwards));
    }
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape: leave(); break;
        case Qt::Key_Return:
        case Qt::Key_Enter: find((event->modifiers() & Qt::ShiftModifier) != 0); break;
        default: QWidget::keyPressEvent(event);
    }
}

void FindBar::leave() {
    hide();
    view_.setFocus();
}

void FindBar::show_found(bool found) {
    QPalette colours = palette();
    if (!found) colours.setColor(QPalette::Base, alarm_paper(colours));
    text_->setPalette(colours);
    outcome_->setText(found ? QString() : tr("Not found"));
}

}  // namespace kavrel
