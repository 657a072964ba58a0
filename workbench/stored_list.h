// Parts of a form as stored input data hold them. Of a list there is room for all rows, those beyond the rows in use 0.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "shell/form_list.h"
#include "shell/stored_files.h"

namespace kavrel {

template <int Rows, int Columns>
void put_cells(RecordWriter& file, const FormList<Rows, Columns>& list) {
    FormList<Rows, Columns> stored;
    std::copy_n(list.cells, list.rows * Columns, stored.cells);
    file.put(stored.cells);
}

// A group that is off may have been stored with nothing chosen: then its first choice stands.
inline void settle_choice(int& choice) {
    if (choice == 0) choice = 1;
}

// Whether the form could hold what was taken into a list; what lies beyond its rows is dropped.
template <int Rows, int Columns>
[[nodiscard]] bool settle_list(FormList<Rows, Columns>& list) {
    if (list.rows < 0 || list.rows > Rows) return false;
    const auto used = list.cells + static_cast<std::ptrdiff_t>(list.rows) * Columns;
    std::fill(used, std::end(list.cells), 0.0);
    return std::all_of(std::begin(list.cells), used, [](double cell) { return std::isfinite(cell); });
}

}  // namespace kavrel
