#include "desktop/report_view.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QWheelEvent>
#include <cmath>

#include "desktop/box_drawing.h"
#include "desktop/window_settings.h"

namespace kavrel {

namespace {

// What a block of the document is.
constexpr int line_state = 0;
constexpr int head_state = 1;

}  // namespace

ReportView::ReportView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFrameShape(NoFrame);
    document()->setDocumentMargin(8);
    set_font({}, usual_report_points);
}

void ReportView::append_line(const QString& line) {
    QScrollBar* bar = verticalScrollBar();
    const bool follows = bar->value() == bar->maximum();
    if (!head_.isEmpty()) {
        QTextCharFormat format;
        format.setFontWeight(QFont::Bold);
        format.setForeground(QColor(Qt::darkGray));
        append_block(head_, format, head_state);
        head_.clear();
    }
    append_block(line, {}, line_state);
    if (follows) bar->setValue(bar->maximum());
}

void ReportView::append_block(const QString& text, const QTextCharFormat& format, int state) {
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    if (!is_empty_) end.insertBlock();
    end.insertText(text, format);
    end.block().setUserState(state);
    is_empty_ = false;
}

QString ReportView::report_text() const {
    const QStringList lines = report_lines();
    return lines.isEmpty() ? QString() : lines.join('\n') + '\n';
}

QStringList ReportView::report_lines() const {
    QStringList lines;
    for (QTextBlock block = document()->begin(); block.isValid() && !is_empty_; block = block.next()) {
        if (block.userState() != head_state) lines.append(block.text());
    }
    return lines;
}

void ReportView::set_font(const QString& family, int points) {
    family_ = family;
    points_ = qBound(smallest_report_points, points, largest_report_points);
    QFont font = report_font(family_, points_);
    // Every cell begins on a whole pixel.
    const double advance = QFontMetricsF(font, this).horizontalAdvance(QChar('0'));
    font.setLetterSpacing(QFont::AbsoluteSpacing, std::round(advance) - advance);
    setFont(font);
}

bool ReportView::find_text(const QString& text, bool backwards) {
    const auto flags = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags{};
    QTextCursor found = document()->find(text, textCursor(), flags);
    if (found.isNull()) {
        QTextCursor edge(document());
        if (backwards) edge.movePosition(QTextCursor::End);
        found = document()->find(text, edge, flags);
    }
    if (found.isNull()) return false;
    setTextCursor(found);
    centerCursor();
    return true;
}

// Keys go to the menu's accelerators first, as everywhere else in the window.
bool ReportView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->ignore();
        return false;
    }
    return QPlainTextEdit::event(event);
}

void ReportView::paintEvent(QPaintEvent* event) {
    QPlainTextEdit::paintEvent(event);
    draw_box_lines(event->rect());
}

void ReportView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    if (event->angleDelta().y() != 0) emit zoom_wanted(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

void ReportView::draw_box_lines(const QRect& damaged) {
    QPainter painter(viewport());
    const QTextCursor marked = textCursor();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        QRectF box = blockBoundingGeometry(block).translated(contentOffset());
        if (!block.next().isValid()) box.setHeight(box.height() - document()->documentMargin());
        if (box.top() > damaged.bottom()) break;
        if (box.bottom() < damaged.top() || block.layout()->lineCount() == 0) continue;
        const QString text = block.text();
        const QTextLine line = block.layout()->lineAt(0);
        for (int i = 0; i < text.size(); ++i) {
            if (!is_box_line(text[i])) continue;
            const int left = qRound(box.left() + line.cursorToX(i));
            const int right = qRound(box.left() + line.cursorToX(i + 1));
            const QRect cell(left, qRound(box.top()), right - left, qRound(box.bottom()) - qRound(box.top()));
            const int at = block.position() + i;
            const bool is_marked = at >= marked.selectionStart() && at < marked.selectionEnd();
            const auto group = hasFocus() ? QPalette::Active : QPalette::Inactive;
            draw_box_line(painter, cell, text[i],
                          palette().color(group, is_marked ? QPalette::HighlightedText : QPalette::Text),
                          palette().color(group, is_marked ? QPalette::Highlight : QPalette::Base));
        }
    }
}

}  // namespace kavrel
