// Pictures of the program, drawn with lines so that they fit any size and palette.
#pragma once

#include <QColor>
#include <QIcon>

namespace kavrel {

// The picture of a toolbar button, by the id of the item that it sends; a plain page for an unknown one.
[[nodiscard]] QIcon toolbar_icon(int item_id, const QColor& ink);

// The program's own.
[[nodiscard]] QIcon program_icon();

}  // namespace kavrel
