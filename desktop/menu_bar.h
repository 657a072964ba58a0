// A menu table as menus: access keys, accelerators and hints as the table says.
#pragma once

#include <QKeySequence>
#include <QMap>
#include <QMenuBar>
#include <functional>
#include <span>

#include "shell/menu.h"

namespace kavrel {

// The items of a menu bar, whatever submenus they are in.
[[nodiscard]] QList<QAction*> items_of(const QMenuBar& bar);

// Which action an accelerator belongs to: of several items with one accelerator, the first in the table.
using Accelerators = QMap<QKeySequence, QAction*>;

// Fills a menu bar from a table. `send` gets the id of an item that is chosen; an action bears its id as its data.
Accelerators fill_menu_bar(QMenuBar& bar, std::span<const MenuItem> table, const std::function<void(int)>& send);

}  // namespace kavrel
