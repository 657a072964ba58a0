// Events: the way from a chosen menu item to the code that does the work.
#pragma once

#include "workbench/workbench.h"

namespace kavrel {

inline constexpr int recall_filter_event = 130;

// Serves one event: a menu item, a toolbar button or an accelerator by its id. -1 when it was handled (a box "Command
// not implemented" included), 0 when the window layer is to apply its default.
int dispatch_event(Workbench& bench, int item_id);

// The row of an item, or null; and why it cannot act now, in the words that it would be refused with, or blank.
[[nodiscard]] const MenuItem* item_of(int item_id);
[[nodiscard]] std::string_view hindrance(Workbench& bench, int item_id);

// Opens a stored filter in its Segment, found by the last letter of its name.
void open_stored_filter(Workbench& bench, std::string_view name);

}  // namespace kavrel
