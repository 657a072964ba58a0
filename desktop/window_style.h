// How the widgets of all windows are drawn: the platform-independent style, with what it leaves out.
#pragma once

#include <QProxyStyle>

namespace kavrel {

// The buttons of boxes bear words alone, as those of forms do, whatever the desktop's theme has for them. On dark
// windows entries and what is to be ticked have a light outline; the style's own is darker than the window.
class WindowStyle final : public QProxyStyle {
    Q_OBJECT

public:
    WindowStyle();

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
};

}  // namespace kavrel
