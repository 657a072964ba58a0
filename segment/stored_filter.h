// Stored files: they keep a Segment's filter and its title between runs, under a name that the user gives, in one of
// the forms that the Segment has.
#pragma once

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "segment/file_operation.h"
#include "shell/fingerprint.h"
#include "shell/fixed_text.h"

namespace kavrel {

// A layout of bytes that holds a filter and its title, in both directions.
template <class Filter>
struct Layout {
    std::string (*bytes)(const Filter& filter, const FixedText<80>& title);
    // False, with filter and title as they were, for bytes that are not of this layout or hold what no filter could be.
    bool (*take)(std::string_view bytes, Filter& filter, FixedText<80>& title);
};

// Of the filter, whatever its title is: the same again when an edit was undone.
template <class Filter>
[[nodiscard]] Fingerprint fingerprint(const Layout<Filter>& layout, const Filter& filter) {
    return fingerprint_of(layout.bytes(filter, {}));
}

// A kind of stored file.
template <class Filter>
struct StoredForm {
    ExtSlot slot;  // its extension
    Layout<Filter> layout;
};

// All forms of a Segment's files; the first is that of a name which has the extension of none.
template <class Filter>
using StoredForms = std::type_identity_t<std::span<const StoredForm<Filter>>>;

// Takes a filter from bytes of any form; false, with all as it was, when they are of none.
template <class Filter>
[[nodiscard]] bool take_form(StoredForms<Filter> forms, std::string_view bytes, Filter& filter, FixedText<80>& title) {
    return std::ranges::any_of(forms,
                               [&](const StoredForm<Filter>& form) { return form.layout.take(bytes, filter, title); });
}

// Of the form whose extension the name has.
template <class Filter>
[[nodiscard]] const StoredForm<Filter>& form_of_name(StoredForms<Filter> forms, std::string_view name) {
    const auto found = std::ranges::find_if(
        forms, [&](const StoredForm<Filter>& form) { return trim(name).ends_with(EXT(static_cast<int>(form.slot))); });
    return found == forms.end() ? forms.front() : *found;
}

// The name of the file that a filter is saved to under this name.
template <class Filter>
[[nodiscard]] std::string file_of_filter(std::string_view name, StoredForms<Filter> forms) {
    return file_name(name, form_of_name<Filter>(forms, name).slot);
}

// Writes to the file of this name, in the form of its extension; that of the first form takes the place of any other. A
// filter that could not be read again, having numbers that are not finite, is not written: `not_written`. So no good
// file is given up for one that cannot be read.
template <class Filter>
[[nodiscard]] FileStatus save_filter(std::string_view name, StoredForms<Filter> forms, const Filter& filter,
                                     const FixedText<80>& title, FileMark& mark) {
    const StoredForm<Filter>& form = form_of_name<Filter>(forms, name);
    std::string bytes = form.layout.bytes(filter, title);
    Filter again;
    FixedText<80> title_again;
    if (!take_form(forms, bytes, again, title_again)) return FileStatus::not_written;
    return file_operation(FileOperation::output, {.stem = name, .slot = form.slot}, bytes, mark);
}

// Reads the file of this name, completed by the first form's extension unless it ends in that of another. A form is
// known by its bytes, whatever the name is. `not_found`, `not_opened` or `damaged` leave filter and title as they were.
template <class Filter>
[[nodiscard]] FileStatus read_filter(std::string_view name, StoredForms<Filter> forms, Filter& filter,
                                     FixedText<80>& title, FileMark& mark) {
    std::string bytes;
    const FilePlace place{.stem = name, .slot = form_of_name<Filter>(forms, name).slot};
    const FileStatus status = file_operation(FileOperation::input, place, bytes, mark);
    if (status != FileStatus::done) return status;
    return take_form(forms, bytes, filter, title) ? FileStatus::done : FileStatus::damaged;
}

}  // namespace kavrel
