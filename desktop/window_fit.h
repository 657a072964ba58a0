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

// The most room that its screen has for it, within the frame of any window manager.
[[nodiscard]] inline QRect room_of_screen(const QWidget& window) {
    return window.screen()->availableGeometry().adjusted(8, 40, -8, -8);
}
[[nodiscard]] inline QSize most_of_screen(const QWidget& window) { return room_of_screen(window).size(); }

// Makes a window no larger than its screen has room for, and brings it there whole. One that fits stays: where its
// frame is, which it has only when it is shown, is not asked.
inline void fit_to_screen(QWidget& window) {
    const QRect room = room_of_screen(window);
    QRect place(window.geometry().topLeft(), window.size().boundedTo(room.size()));
    place.moveTo(std::max(room.left(), std::min(place.left(), room.right() + 1 - place.width())),
                 std::max(room.top(), std::min(place.top(), room.bottom() + 1 - place.height())));
    if (place != window.geometry()) window.setGeometry(place);
}

}  // namespace kavrel
