// Items of input data files, for both directions: `File` is a RecordWriter or a RecordReader, and what is stored const
// or not accordingly. A reader refuses what the form could not hold.
//
// A kind of file is a class with one routine that lists its items:
//
//     struct Items {
//         template <class File, class Request, class Units>
//         static void list(File& file, Request& request, Units& units);
//     };
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "shell/form_list.h"
#include "shell/number_text.h"
#include "shell/stored_files.h"
#include "shell/units.h"

namespace kavrel {

template <class Items, class Request>
[[nodiscard]] std::string input_bytes(const Request& request, const UnitSet& units) {
    RecordWriter file;
    Items::list(file, request, units);
    return file.bytes();
}

// False, with request and units as they were, when the bytes are not such a file or hold what the form could not.
template <class Items, class Request>
[[nodiscard]] bool read_input(std::string_view bytes, Request& request, UnitSet& units) {
    Request found = request;
    UnitSet found_units = units;
    RecordReader file(bytes);
    Items::list(file, found, found_units);
    if (!file.finished()) return false;
    request = found;
    units = found_units;
    return true;
}

// Of a number or an array of numbers: what a form could hold.
template <class Number>
[[nodiscard]] bool fits_form(const Number& number) {
    if constexpr (std::is_floating_point_v<Number>) {
        return is_in_range(number);
    } else {
        return std::ranges::all_of(number, is_in_range);
    }
}

// Numbers and arrays of numbers.
template <class File, class... Numbers>
void numbers(File& file, Numbers&... given) {
    file.items(given...);
    file.require((fits_form(given) && ...));
}

// A whole number, or a choice, from low to high.
template <class File, class Whole>
void whole(File& file, Whole& value, int low, int high) {
    file.items(value);
    file.require(static_cast<int>(value) >= low && static_cast<int>(value) <= high);
}

// A choice from 1 to last. A group that is off may have been stored with nothing chosen: then its first choice holds.
template <class File, class Choice>
void choice(File& file, Choice& value, int last) {
    whole(file, value, 0, last);
    if constexpr (File::reads) {
        if (static_cast<int>(value) == 0) value = static_cast<Choice>(1);
    }
}

// Of a list there is room for all rows, those beyond the rows in use 0; the reader passes over what lies there.
template <int Rows, int Columns>
void cells(RecordWriter& file, const FormList<Rows, Columns>& list) {
    FormList<Rows, Columns> stored;
    std::copy_n(list.cells, list.rows * Columns, stored.cells);
    file.items(stored.cells);
}
template <int Rows, int Columns>
void cells(RecordReader& file, FormList<Rows, Columns>& list) {
    file.items(list.cells);
}
template <class File, int Rows, int Columns>
void settle_rows(File& file, FormList<Rows, Columns>& list) {
    const bool fits = list.rows >= 0 && list.rows <= Rows;
    file.require(fits);
    if (!fits) return;
    std::fill(list.cells + static_cast<std::ptrdiff_t>(list.rows) * Columns, std::end(list.cells), 0.0);
    file.require(fits_form(list.cells));
}

// The cells of lists, then the number of rows of each.
template <class File, class... Lists>
void lists(File& file, Lists&... given) {
    (cells(file, given), ...);
    file.items(given.rows...);
    if constexpr (File::reads) (settle_rows(file, given), ...);
}

// The units as a file carries them, of frequency, inductor, capacitor and time. The multipliers rule: none that the
// units form does not give is taken.
struct StoredUnits {
    std::array<double, 4> multipliers{};
    std::array<int, 4> indices{};
};
[[nodiscard]] StoredUnits stored_units(const UnitSet& units);
[[nodiscard]] bool take_stored_units(const StoredUnits& stored, UnitSet& units);

// The record of the units.
template <class File, class Units>
void units_record(File& file, Units& units) {
    StoredUnits stored = stored_units(units);
    file.record(stored.multipliers, stored.indices);
    if constexpr (File::reads) file.require(take_stored_units(stored, units));
}

}  // namespace kavrel
