#include "desktop/box_drawing.h"

#include <algorithm>

namespace kavrel {

namespace {

// From the middle of the cell to which of its edges a character reaches.
struct BoxArms {
    char16_t character;
    bool left, right, up, down;
};

constexpr BoxArms arms_of_characters[] = {
    {u'─', true, true, false, false}, {u'│', false, false, true, true}, {u'┌', false, true, false, true},
    {u'┐', true, false, false, true}, {u'└', false, true, true, false}, {u'┘', true, false, true, false},
    {u'├', false, true, true, true},  {u'┤', true, false, true, true},  {u'┬', true, true, false, true},
    {u'┴', true, true, true, false},  {u'┼', true, true, true, true},
};

const BoxArms* arms_of(QChar character) {
    const auto found = std::ranges::find(arms_of_characters, character.unicode(), &BoxArms::character);
    return found == std::end(arms_of_characters) ? nullptr : &*found;
}

}  // namespace

bool is_box_line(QChar character) { return arms_of(character) != nullptr; }

void draw_box_line(QPainter& painter, const QRect& cell, QChar character, const QColor& ink, const QColor& paper) {
    const BoxArms* arms = arms_of(character);
    if (arms == nullptr) return;
    const int thick = std::max(1, cell.height() / 15);
    const int x = cell.left() + (cell.width() - thick) / 2;  // of the upright line,
    const int y = cell.top() + (cell.height() - thick) / 2;  // of the level one
    painter.fillRect(cell, paper);
    if (arms->left) painter.fillRect(QRect(QPoint(cell.left(), y), QPoint(x + thick - 1, y + thick - 1)), ink);
    if (arms->right) painter.fillRect(QRect(QPoint(x, y), QPoint(cell.right(), y + thick - 1)), ink);
    if (arms->up) painter.fillRect(QRect(QPoint(x, cell.top()), QPoint(x + thick - 1, y + thick - 1)), ink);
    if (arms->down) painter.fillRect(QRect(QPoint(x, y), QPoint(x + thick - 1, cell.bottom())), ink);
}

}  // namespace kavrel
