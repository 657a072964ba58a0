// How large a window is to be and may be.
#pragma once

#include <QFontMetrics>
#include <QScreen>
#include <QWidget>
#include <algorithm>

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

// Makes a window no larger than its screen has room for, and brings it there whole.
inline void fit_to_screen(QWidget& window) {
    const QRect room = window.screen()->availableGeometry();
    window.resize(window.size().boundedTo(most_of_screen(window)));
    const QPoint last = room.bottomRight() - QPoint(window.width(), window.height()) - QPoint(16, 48);
    const QPoint at = window.pos();
    window.move(std::max(room.left(), std::min(at.x(), last.x())), std::max(room.top(), std::min(at.y(), last.y())));
}

}  // namespace kavrel
