#include "desktop/check_badge.h"

#include <QApplication>

#include "desktop/palettes.h"
#include "desktop/text.h"

namespace kavrel {

CheckBadge::CheckBadge(QWidget* parent) : QPushButton(parent) {
    setObjectName("check_badge");
    setFlat(true);
    setFocusPolicy(Qt::NoFocus);
    setToolTip(tr("Does it meet the request? A click shows the list"));
    show_check({});
}

void CheckBadge::show_check(const RequestCheck& check) {
    const State state = !check.has_request() ? State::unknown : check.met() ? State::met : State::missed;
    show_state(state, qt_text(check_summary(check)));
}

void CheckBadge::show_nothing() { show_state(State::unknown, QStringLiteral("\u2026")); }

void CheckBadge::show_state(State state, const QString& text) {
    state_ = state;
    setText(text);
    colour();
}

void CheckBadge::colour() {
    const QPalette colours = QApplication::palette();
    const bool known = state_ != State::unknown;
    const bool met = state_ == State::met;
    const QColor paper = !known ? colours.color(QPalette::Midlight) : met ? good_paper(colours) : alarm_paper(colours);
    const QColor text = !known ? colours.color(QPalette::WindowText) : met ? good_text(colours) : alarm_text(colours);
    const QString style =
        QStringLiteral("QPushButton { background: %1; color: %2; border: none; border-radius: 3px; padding: 1px 8px; }")
            .arg(paper.name(), text.name());
    if (style != styleSheet()) setStyleSheet(style);
}

}  // namespace kavrel
