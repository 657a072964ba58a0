// How large a window is to be and may be.
#pragma once

#include <QFontMetrics>
#include <QScreen>
#include <QWidget>

namespace kavrel {

// The width at which its title is read whole: in the bold type of many window managers, with room for their icon and
// buttons.
[[nodiscard]] inline int title_bar_width(const QWidget& window) {
    constexpr int icon_and_buttons = 140;
    QFont type = window.font();
    type.setBold(true);
    return QFontMetrics(type).horizontalAdvance(window.windowTitle()) + icon_and_buttons;
}

// The most that its screen has room for, within the frame of any window manager.
[[nodiscard]] inline QSize most_of_screen(const QWidget& window) {
    constexpr QSize frame(16, 48);
    return window.screen()->availableSize() - frame;
}

}  // namespace kavrel
