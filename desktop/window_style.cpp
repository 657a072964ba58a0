#include "desktop/window_style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

#include "desktop/palettes.h"

namespace kavrel {

namespace {

void draw_outline(const QStyleOption& option, QPainter& painter, bool is_round) {
    if (!is_dark(option.palette)) return;
    const bool has_focus = (option.state & QStyle::State_HasFocus) != 0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(option.palette.color(has_focus ? QPalette::Highlight : QPalette::Mid));
    painter.setBrush(Qt::NoBrush);
    const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    is_round ? painter.drawEllipse(box) : painter.drawRoundedRect(box, 2.0, 2.0);
    painter.restore();
}

}  // namespace

WindowStyle::WindowStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* data) const {
    switch (hint) {
        case SH_DialogButtonBox_ButtonsHaveIcons: return 0;
        case SH_Menu_AllowActiveAndDisabled: return 1;  // the arrow keys stop at grey items, too: the hint says why
        default: return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
        case PE_IndicatorRadioButton: draw_outline(*option, *painter, true); break;
        case PE_IndicatorCheckBox:
        case PE_FrameLineEdit: draw_outline(*option, *painter, false); break;
        default: break;
    }
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                     const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_SpinBox || control == CC_ComboBox) draw_outline(*option, *painter, false);
}

// A grey item that the arrow keys are at has a frame.
void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    QProxyStyle::drawControl(element, option, painter, widget);
    const QStyle::State here = option->state & (State_Selected | State_Enabled);
    if (element != CE_MenuItem || here != State_Selected) return;
    painter->setPen(option->palette.color(QPalette::Active, QPalette::Highlight));
    painter->drawRect(option->rect.adjusted(1, 0, -2, -1));
}

}  // namespace kavrel
