#include "shell/form.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <fmt/format.h>

#include "shell/edit.h"
#include "shell/fixed_text.h"
#include "shell/menu.h"
#include "shell/number_text.h"
#include "shell/reporter.h"
#include "shell/utf8.h"

namespace kavrel {

namespace {

std::string enter_number(double& cell, std::string_view typed) {
    const auto number = parse_number(typed);
    if (!number) return fmt::format("'{}' is not a number", typed);
    cell = *number;
    return {};
}

std::string enter_integer(int& cell, const Field& field, std::string_view typed) {
    const auto number = parse_integer(typed);
    if (!number) return fmt::format("'{}' is not a whole number", typed);
    if (*number < field.low || *number > field.high) {
        return fmt::format("{} is outside {} to {}", *number, field.low, field.high);
    }
    cell = *number;
    return {};
}

std::string enter_flag(bool& cell, std::string_view typed) {
    if (same_label(typed, "yes") || typed == "1") {
        cell = true;
    } else if (same_label(typed, "no") || typed == "0") {
        cell = false;
    } else {
        return fmt::format("'{}' is neither yes nor no", typed);
    }
    return {};
}

void assign_text(TextView cell, std::string_view text) {
    std::memset(cell.bytes, ' ', cell.size);
    const auto kept = head_of(text, cell.size);
    std::memcpy(cell.bytes, kept.data(), kept.size());
}

// Whether a comment line, "! Zeros (in Hz):", bears the name of a list, "Transmission zeros": both name their rows by
// the same word, the first here and the last there.
bool heads_list(std::string_view comment, std::string_view label) {
    const auto from = comment.find_first_not_of("! ");
    if (from == std::string_view::npos) return false;
    comment.remove_prefix(from);
    const auto blank = label.find_last_of(' ');
    return same_label(comment.substr(0, comment.find(' ')),
                      label.substr(blank == std::string_view::npos ? 0 : blank + 1));
}

// The rows of a data file, a row a line, in free format; none when a line does not hold just a row of numbers or when
// there are too many. Empty lines and comments, which begin with "!", pass; but in a file that holds several lists
// under comments as their headings, the rows are those from the heading with the list's name to the next comment.
std::optional<std::vector<double>> rows_of_file(std::istream& file, std::string_view label, int columns, int capacity) {
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    if (!lines.empty() && lines.front().starts_with(byte_order_mark)) lines.front().erase(0, byte_order_mark.size());
    const auto is_comment = [](std::string_view line) { return trim(line).starts_with('!'); };
    auto from = std::ranges::find_if(
        lines, [&](std::string_view line) { return is_comment(line) && heads_list(trim(line), label); });
    auto to = lines.end();
    if (from == lines.end()) {
        from = lines.begin();
    } else {
        to = std::find_if(++from, lines.end(), is_comment);
    }

    std::vector<double> cells;
    for (; from != to; ++from) {
        if (is_comment(*from)) continue;
        const auto row = parse_free_format(*from);
        if (!row) return std::nullopt;
        if (row->empty()) continue;
        if (row->size() != static_cast<std::size_t>(columns)) return std::nullopt;
        cells.insert(cells.end(), row->begin(), row->end());
        if (static_cast<int>(cells.size()) > columns * capacity) return std::nullopt;
    }
    if (cells.empty()) return std::nullopt;
    return cells;
}

}  // namespace

FieldStates::State& FieldStates::state(std::string_view name) {
    const auto found = std::ranges::find(fields_, name, &Field::name);
    if (found == fields_.end()) std::abort();
    return states_[static_cast<std::size_t>(found - fields_.begin())];
}

void FieldStates::off(std::string_view name, bool when) {
    if (when) state(name).on = false;
}

void FieldStates::off(std::initializer_list<std::string_view> names, bool when) {
    for (const auto name : names) off(name, when);
}

void FieldStates::choice_off(std::string_view name, int value, bool when) {
    if (when) state(name).choices_off.push_back(value);
}

void FieldStates::label(std::string_view name, std::string_view text) { state(name).label = text; }

bool FieldStates::is_on(std::size_t i, int value) const {
    return std::ranges::find(states_[i].choices_off, value) == states_[i].choices_off.end();
}

std::string_view FieldStates::label_at(std::size_t i) const {
    return states_[i].label.empty() ? fields_[i].label : states_[i].label;
}

FormSheet::FormSheet(const Form& form, void* record, const UnitSet& units, Reporter& reporter)
    : form_(form), record_(record), units_(units), reporter_(reporter), states_(form.fields) {
    apply_rules();
}

void FormSheet::apply_rules() {
    states_ = FieldStates(form_.fields);
    if (form_.rules != nullptr) form_.rules(record_, states_);
}

std::string FormSheet::label(std::size_t i) const {
    return std::string(states_.label_at(i)) + unit_suffix(units_, field(i).unit);
}

std::string FormSheet::column_label(std::size_t i, int column) const {
    const Column& head = field(i).columns[static_cast<std::size_t>(column) - 1];
    return std::string(head.label) + unit_suffix(units_, head.unit);
}

std::string FormSheet::shown(std::size_t i) const {
    const Field& f = field(i);
    switch (f.kind) {
        case FieldKind::real: return std::string(trim(edit_en(*static_cast<double*>(f.cell(record_)), 15, 6)));
        case FieldKind::integer: return std::to_string(whole(i));
        case FieldKind::radio:
        case FieldKind::choice: {
            const auto chosen = std::ranges::find(f.choices, whole(i), &Choice::value);
            return chosen == f.choices.end() ? "" : std::string(chosen->label);
        }
        case FieldKind::flag: return *static_cast<bool*>(f.cell(record_)) ? "yes" : "no";
        case FieldKind::text: {
            const TextView view = f.text(record_);
            return std::string(trim_right({view.bytes, view.size}));
        }
        case FieldKind::list: return fmt::format("{} rows", *list(i).rows);
        case FieldKind::button:
        case FieldKind::heading: break;
    }
    return {};
}

std::string FormSheet::enter(std::size_t i, std::string_view typed) {
    const Field& f = field(i);
    std::string wrong;
    switch (f.kind) {
        case FieldKind::real: wrong = enter_number(*static_cast<double*>(f.cell(record_)), typed); break;
        case FieldKind::integer: wrong = enter_integer(whole(i), f, typed); break;
        case FieldKind::radio:
        case FieldKind::choice: {
            const auto number = parse_integer(typed);
            const auto chosen = std::ranges::find_if(f.choices, [&](const Choice& choice) {
                return number ? choice.value == *number : same_label(choice.label, typed);
            });
            if (chosen == f.choices.end()) {
                wrong = fmt::format("'{}' is none of its choices", typed);
            } else if (!choice_is_on(i, chosen->value)) {
                wrong = fmt::format("'{}' cannot be chosen here", chosen->label);
            } else {
                whole(i) = chosen->value;
            }
            break;
        }
        case FieldKind::flag: wrong = enter_flag(*static_cast<bool*>(f.cell(record_)), typed); break;
        case FieldKind::text: assign_text(f.text(record_), typed); break;
        case FieldKind::button: return "is a button";
        case FieldKind::list: return "is a list; its rows are given one by one";
        case FieldKind::heading: return "is a heading";
    }
    apply_rules();
    return wrong;
}

std::string FormSheet::append_row(std::size_t i, std::span<const double> row) {
    const ListView view = list(i);
    if (row.size() != static_cast<std::size_t>(view.columns)) {
        return fmt::format("a row has {} numbers, not {}", view.columns, row.size());
    }
    if (*view.rows >= view.capacity) return fmt::format("the list has room for {} rows", view.capacity);
    ++*view.rows;
    for (int column = 1; column <= view.columns; ++column)
        view(*view.rows, column) = row[static_cast<std::size_t>(column) - 1];
    apply_rules();
    return {};
}

void FormSheet::clear_rows(std::size_t i) {
    const ListView view = list(i);
    std::fill_n(view.cells, view.capacity * view.columns, 0.0);
    *view.rows = 0;
    apply_rules();
}

void FormSheet::press(std::size_t i) {
    const Form* form = field(i).opens(record_);
    // The record stays as it is when the inner form is cancelled, so there is nothing to tell the outer one.
    if (form != nullptr) static_cast<void>(run_form(*form, record_, units_, reporter_));
    apply_rules();
}

void FormSheet::read_rows(std::size_t i) {
    const std::string name = reporter_.window().choose_file(
        {.caption = "Select a data file", .description = "Data files", .filter = "*.dat;*.pz;*.txt;*.csv"});
    if (name.empty()) return;
    std::ifstream file(name);
    if (!file) {
        reporter_.message("File was not found", "Error");
        return;
    }
    const ListView view = list(i);
    const auto rows = rows_of_file(file, field(i).label, view.columns, view.capacity);
    if (!rows) {
        reporter_.message("File contains incorrect data", "Error");
        return;
    }
    clear_rows(i);
    std::ranges::copy(*rows, view.cells);
    *view.rows = static_cast<int>(rows->size()) / view.columns;
    apply_rules();
    reporter_.message(" *** Done ***", "Success");
}

bool run_form(const Form& form, void* record, const UnitSet& units, Reporter& reporter) {
    std::vector<std::byte> before(form.record_size);
    std::memcpy(before.data(), record, form.record_size);
    FormSheet sheet(form, record, units, reporter);
    while (reporter.window().edit_form(sheet)) {
        const std::string_view wrong = form.message == nullptr ? std::string_view{} : form.message(record);
        if (wrong.empty()) return true;
        ++sheet.refusals_;
        reporter.message(wrong, form.caption);
    }
    std::memcpy(record, before.data(), form.record_size);
    return false;
}

int find_field(const FormSheet& sheet, std::string_view name_or_label) {
    int found = -1;
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        if (sheet.field(i).name == name_or_label) return static_cast<int>(i);
        if (!same_label(sheet.field(i).label, name_or_label) && !same_label(sheet.label(i), name_or_label)) continue;
        found = found == -1 ? static_cast<int>(i) : -2;
    }
    return found;
}

}  // namespace kavrel
