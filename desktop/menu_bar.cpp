#include "desktop/menu_bar.h"

#include <algorithm>

#include "desktop/text.h"

namespace kavrel {

namespace {

// The submenu with this label under a menu or, for null, in the bar; made when it is not there yet.
QMenu* submenu(QMenuBar& bar, QMenu* parent, std::string_view label) {
    const QList<QAction*> actions = parent == nullptr ? bar.actions() : parent->actions();
    const auto found = std::ranges::find_if(actions, [&](const QAction* action) {
        return action->menu() != nullptr && same_label(utf8_text(action->text()), label);
    });
    if (found != actions.end()) return (*found)->menu();
    return parent == nullptr ? bar.addMenu(qt_text(label)) : parent->addMenu(qt_text(label));
}

}  // namespace

QList<QAction*> items_of(const QMenuBar& bar) {
    QList<QAction*> items;
    for (QList<QAction*> left = bar.actions(); !left.isEmpty();) {
        QAction* action = left.takeFirst();
        if (action->menu() != nullptr) {
            left.append(action->menu()->actions());
        } else if (!action->isSeparator()) {
            items.append(action);
        }
    }
    return items;
}

Accelerators fill_menu_bar(QMenuBar& bar, std::span<const MenuItem> table, const std::function<void(int)>& send) {
    Accelerators accelerators;
    for (const MenuItem& item : table) {
        const int depth = path_depth(item.path);
        QMenu* menu = nullptr;
        for (int level = 0; level + 1 < depth; ++level) menu = submenu(bar, menu, path_label(item.path, level));
        const QString label = qt_text(path_label(item.path, depth - 1));
        QAction* action = menu == nullptr ? bar.addAction(label) : menu->addAction(label);
        action->setStatusTip(qt_text(item.hint));
        action->setData(item.id);
        QObject::connect(action, &QAction::triggered, [send, id = item.id] { send(id); });
        const QKeySequence keys = QKeySequence::fromString(qt_text(item.accelerator));
        if (keys.isEmpty() || accelerators.contains(keys)) continue;
        action->setShortcut(keys);
        accelerators.insert(keys, action);
    }
    return accelerators;
}

}  // namespace kavrel
