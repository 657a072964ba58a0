#include "shell/form.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "shell/edit.h"
#include "shell/fixed_text.h"
#include "shell/menu.h"
#include "shell/number_text.h"
#include "shell/reporter.h"
#include "shell/utf8.h"
#include "shell/whole_file.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

using Entry = FormSheet::Typed;

Entry number_entry(std::string_view typed, Unit unit, const UnitSet& units);
Entry real_entry(std::string_view typed, Unit unit, const UnitSet& units);
std::string_view kind_of_number(Unit unit);
Entry integer_entry(const Field& field, std::string_view typed);
Entry choice_entry(const FormSheet& sheet, std::size_t i, std::string_view typed);
Entry flag_entry(std::string_view typed);
void assign_text(TextView cell, std::string_view text);
std::string name_of_label(std::string_view label);
bool is_called(const FormSheet& sheet, std::size_t i, std::string_view text);
bool heads_list(std::string_view comment, std::string_view label);

struct FileRows {
    std::vector<double> cells;
    bool in_hertz = false;  // their heading says "(in Hz)"
};

bool goes_without_saying(double re, double im, std::vector<std::pair<double, double>>& without_image);
std::optional<FileRows> rows_of_text(const std::string& text, const Field& list, const ListView& view);

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

void FieldStates::unit(std::string_view name, Unit unit) { state(name).unit = unit; }

bool FieldStates::is_on(std::size_t i, int value) const {
    return std::ranges::find(states_[i].choices_off, value) == states_[i].choices_off.end();
}

std::string_view FieldStates::label_at(std::size_t i) const {
    return states_[i].label.empty() ? fields_[i].label : states_[i].label;
}

FormSheet::FormSheet(const Form& form, void* record, const UnitSet& units, Reporter& reporter)
    : form_(form), record_(record), units_(units), reporter_(reporter), states_(form.fields) {
    if (form_.follow != nullptr) form_.follow(record_, units_);
    apply_rules();
}

void FormSheet::apply_rules() {
    states_ = FieldStates(form_.fields);
    if (form_.rules != nullptr) form_.rules(record_, states_);
}

std::string FormSheet::label(std::size_t i) const {
    return std::string(states_.label_at(i)) + unit_suffix(units_, field(i).unit);
}

std::string FormSheet::choice_label(const Choice& choice) const {
    std::string label(choice.label);
    if (choice.unit == Unit::none) return label;
    const std::string suffix = unit_suffix(units_, choice.unit);  // " (KHz)"
    const auto name = label.rfind(suffix.substr(3, suffix.size() - 4));
    if (name != std::string::npos && name > 0) label[name - 1] = suffix[2];
    return label;
}

std::string FormSheet::column_label(std::size_t i, int column) const {
    const Column& head = field(i).columns[static_cast<std::size_t>(column) - 1];
    return std::string(head.label) + unit_suffix(units_, head.unit);
}

std::string FormSheet::shown(std::size_t i) const {
    const Field& f = field(i);
    switch (f.kind) {
        case FieldKind::real: return std::string(trim(edit_en(number(i), 15, 6)));
        case FieldKind::integer: return std::to_string(whole(i));
        case FieldKind::radio:
        case FieldKind::choice: {
            const auto chosen = std::ranges::find(f.choices, whole(i), &Choice::value);
            return chosen == f.choices.end() ? "" : choice_label(*chosen);
        }
        case FieldKind::flag: return number(i) != 0 ? "yes" : "no";
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
    Entry entry;
    switch (f.kind) {
        case FieldKind::real: entry = real_entry(typed, states_.unit_at(i), units_); break;
        case FieldKind::integer: entry = integer_entry(f, typed); break;
        case FieldKind::radio:
        case FieldKind::choice: entry = choice_entry(*this, i, typed); break;
        case FieldKind::flag: entry = flag_entry(typed); break;
        case FieldKind::text: assign_text(f.text(record_), typed); break;
        case FieldKind::button: return "is a button";
        case FieldKind::list: return "is a list; its rows are given one by one";
        case FieldKind::heading: return "is a heading";
    }
    if (entry.wrong.empty() && f.set != nullptr) {
        f.set(record_, entry.value);
        if (entry.value != 0) clear_other(f.instead_of);
        if (f.name == form_.leader) {
            follow_leader();
        } else if (!led_) {
            entered_.emplace_back(i, entry.value);
        }
    }
    apply_rules();
    return entry.wrong;
}

bool FormSheet::may_be_scaled(std::size_t i) const {
    if (field(i).kind != FieldKind::real) return false;
    const Unit unit = field(i).unit;
    return unit == Unit::none ? units_.fixed_units == 3 : unit_multiplier(units_, unit) != 1.0;
}

std::string FormSheet::echo(std::size_t i) const {
    const Unit unit = states_.unit_at(i);
    const double multiplier = unit_multiplier(units_, unit);
    if (!may_be_scaled(i) || multiplier == 1.0 || number(i) == 0.0) return {};
    return "= " + quantity_text(number(i) * multiplier, unit);
}

void FormSheet::follow_leader() {
    form_.follow(record_, units_);
    for (const auto& [i, value] : entered_) field(i).set(record_, value);
    entered_.clear();
    led_ = true;
}

void FormSheet::clear_other(std::string_view name) {
    for (const Field& other : form_.fields) {
        if (other.name == name) other.set(record_, 0);
    }
}

std::string FormSheet::append_row(std::size_t i, std::span<const double> row) {
    const ListView view = list(i);
    if (row.size() != static_cast<std::size_t>(view.columns)) {
        return fmt::format("a row has {} numbers, not {}", view.columns, row.size());
    }
    if (*view.rows >= view.capacity) return fmt::format("the list has room for {} rows", view.capacity);
    const auto beyond = std::ranges::find_if_not(row, is_in_range);
    if (beyond != row.end()) return fmt::format("{} is out of range", *beyond);
    ++*view.rows;
    for (int column = 1; column <= view.columns; ++column)
        view(*view.rows, column) = row[static_cast<std::size_t>(column) - 1];
    apply_rules();
    return {};
}

std::string FormSheet::append_typed_row(std::size_t i, std::span<const std::string> cells) {
    std::vector<double> row;
    for (const std::string& one : cells) {
        const Typed typed = cell(i, static_cast<int>(row.size()) + 1, one);
        if (!typed.wrong.empty()) return typed.wrong;
        row.push_back(typed.value);
    }
    return append_row(i, row);
}

FormSheet::Typed FormSheet::cell(std::size_t i, int column, std::string_view typed) const {
    const auto columns = field(i).columns;
    const Column head =
        column <= static_cast<int>(columns.size()) ? columns[static_cast<std::size_t>(column) - 1] : Column{};
    if (head.blank == Blank::zero && trim(typed).empty()) return {};
    return number_entry(typed, column_unit(head), units_);
}

void FormSheet::clear_rows(std::size_t i) {
    const ListView view = list(i);
    std::fill_n(view.cells, view.capacity * view.columns, 0.0);
    *view.rows = 0;
    apply_rules();
}

void FormSheet::press(std::size_t i) {
    const Form* form = field(i).opens(record_);
    // The record stays as it is when the inner form is cancelled, so there is nothing to report to the outer one.
    if (form != nullptr) run_form(*form, record_, units_, reporter_);
    apply_rules();
}

void FormSheet::read_rows(std::size_t i) {
    const std::string name = reporter_.window().choose_file(
        {.caption = "Select a data file", .description = "Data files", .filter = "*.dat;*.pz;*.txt;*.csv"});
    if (name.empty()) return;
    const WholeFile file = read_whole(name);
    if (!file) {
        reporter_.message(complaint_of(file.fault, "File was not found"), "Error");
        return;
    }
    const ListView view = list(i);
    const auto rows = rows_of_text(*file, field(i), view);
    if (!rows) {
        reporter_.message("File contains incorrect data", "Error");
        return;
    }
    clear_rows(i);
    *view.rows = static_cast<int>(rows->cells.size()) / view.columns;
    for (int column = 1; column <= view.columns; ++column) {
        const Column& head = field(i).columns[static_cast<std::size_t>(column) - 1];
        const Unit unit = column_unit(head);
        const double hertz = unit == Unit::radians     ? 0.5 / std::numbers::pi
                             : unit == Unit::frequency ? unit_multiplier(units_, unit)
                                                       : 1.0;
        for (int row = 1; row <= *view.rows; ++row) {
            const int cell = (row - 1) * view.columns + column - 1;
            view(row, column) = rows->cells[static_cast<std::size_t>(cell)] / (rows->in_hertz ? hertz : 1.0);
        }
    }
    apply_rules();
    reporter_.message(" *** Done ***", "Success");
}

// By the column itself, or by the form's choice between the unit of frequency and radians a second.
Unit FormSheet::column_unit(const Column& column) const {
    if (column.unit != Unit::none) return column.unit;
    for (const Field& one : form_.fields) {
        if (std::ranges::find(one.choices, Unit::frequency, &Choice::unit) == one.choices.end()) continue;
        const auto chosen = std::ranges::find(one.choices, whole_part(one.get(record_)), &Choice::value);
        return chosen != one.choices.end() && chosen->unit == Unit::none ? Unit::radians : Unit::frequency;
    }
    return Unit::none;
}

bool FormSheet::passes() {
    refusal_ = form_.refusal == nullptr ? Refusal{} : form_.refusal(record_);
    if (!refusal_.empty()) ++refusals_;
    return refusal_.empty();
}

bool run_form(const Form& form, void* record, const UnitSet& units, Reporter& reporter, const FormWork& work) {
    std::vector<std::byte> taken(form.record_size);
    const auto keep = [&] { std::memcpy(taken.data(), record, form.record_size); };
    keep();
    FormSheet sheet(form, record, units, reporter);
    while (reporter.window().edit_form(sheet)) {
        if (!sheet.passes()) {
            reporter.message(sheet.refusal().text, form.caption);
            continue;
        }
        if (!work) return true;
        keep();
        sheet.refusal_ = reporter.failure_of(work);
        sheet.work_failed_ = !sheet.refusal().empty();
        if (!sheet.work_failed()) return true;
        sheet.apply_rules();
    }
    std::memcpy(record, taken.data(), form.record_size);
    return false;
}

int find_field(const FormSheet& sheet, std::string_view name_or_label) {
    int found = -1;
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        if (sheet.field(i).name == name_or_label) return static_cast<int>(i);
        if (!is_called(sheet, i, name_or_label)) continue;
        found = found == -1 ? static_cast<int>(i) : -2;
    }
    return found;
}

namespace {

Entry number_entry(std::string_view typed, Unit unit, const UnitSet& units) {
    const bool in_hertz = unit == Unit::hertz;
    const auto number = parse_quantity(typed, in_hertz ? UnitSet{} : units);
    if (!number) {
        const std::string_view rest = unknown_unit(typed);
        if (rest.size() > 1) return {.wrong = fmt::format("'{}' is no unit", rest)};
        return {.wrong = fmt::format("'{}' is not a number", typed)};
    }
    if (number->unit != Unit::none && number->unit != (in_hertz ? Unit::frequency : unit))
        return {.wrong = unit == Unit::none ? fmt::format("'{}': no unit is taken here", typed)
                                            : fmt::format("'{}' is no {}", typed, kind_of_number(unit))};
    return {number->value};
}

Entry real_entry(std::string_view typed, Unit unit, const UnitSet& units) {
    Entry entry = number_entry(typed, unit, units);
    if (entry.wrong.empty() && !is_in_range(entry.value)) entry.wrong = fmt::format("{} is out of range", typed);
    return entry;
}

std::string_view kind_of_number(Unit unit) {
    switch (unit) {
        case Unit::frequency:
        case Unit::hertz: return "frequency";
        case Unit::time: return "time";
        case Unit::inductor: return "inductance";
        case Unit::capacitor: return "capacitance";
        case Unit::resistance: return "resistance";
        case Unit::decibel: return "number of dB";
        case Unit::radians: return "frequency in rad/sec";
        case Unit::none: break;
    }
    return {};
}

Entry integer_entry(const Field& field, std::string_view typed) {
    const auto number = parse_integer(typed);
    if (!number) return {.wrong = fmt::format("'{}' is not a whole number", typed)};
    if (*number >= field.low && *number <= field.high) return {static_cast<double>(*number)};
    return {.wrong = fmt::format("{} is outside {} to {}", *number, field.low, field.high)};
}

Entry choice_entry(const FormSheet& sheet, std::size_t i, std::string_view typed) {
    const auto number = parse_integer(typed);
    const auto choices = sheet.field(i).choices;
    const auto chosen = std::ranges::find_if(choices, [&](const Choice& choice) {
        if (number) return choice.value == *number;
        return same_label(choice.label, typed) || same_label(sheet.choice_label(choice), typed);
    });
    if (chosen == choices.end()) return {.wrong = fmt::format("'{}' is none of its choices", typed)};
    if (sheet.choice_is_on(i, chosen->value)) return {static_cast<double>(chosen->value)};
    return {.wrong = fmt::format("'{}' cannot be chosen here", sheet.choice_label(*chosen))};
}

Entry flag_entry(std::string_view typed) {
    if (same_label(typed, "yes") || typed == "1") return {1};
    if (same_label(typed, "no") || typed == "0") return {0};
    return {.wrong = fmt::format("'{}' is neither yes nor no", typed)};
}

void assign_text(TextView cell, std::string_view text) {
    std::memset(cell.bytes, ' ', cell.size);
    const auto kept = head_of(text, cell.size);
    std::memcpy(cell.bytes, kept.data(), kept.size());
}

// A label as a field's name: "No. of sections" is "no_of_sections".
std::string name_of_label(std::string_view label) {
    std::string name;
    for (const char c : label) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        } else if (!name.empty() && name.back() != '_') {
            name += '_';
        }
    }
    if (name.ends_with('_')) name.pop_back();
    return name;
}

// By its name in any case, or by its label, the one it has at the moment or the one it always has, with and without
// the unit, as it reads or made a name.
bool is_called(const FormSheet& sheet, std::size_t i, std::string_view text) {
    if (same_label(sheet.field(i).name, text) || same_label(sheet.label(i), text)) return true;
    return std::ranges::any_of(std::array{sheet.field(i).label, sheet.bare_label(i)}, [&](std::string_view label) {
        return same_label(label, text) || name_of_label(label) == text;
    });
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

// Whether a list of zeros with their mirror images does without a root of a pole-zero file, which lists all of the
// upper half plane: of re + j im and -re + j im the list has the first, and zeros at the origin are counted elsewhere.
bool goes_without_saying(double re, double im, std::vector<std::pair<double, double>>& without_image) {
    if (re == 0 && im == 0) return true;
    if (re == 0) return false;
    const auto image = std::ranges::find(without_image, std::pair{-re, im});
    if (image == without_image.end()) {
        without_image.emplace_back(re, im);
        return false;
    }
    without_image.erase(image);
    return true;
}

// The rows of a data file, a row a line, in free format; none when a line does not hold just a row of numbers or when
// there are too many. Empty lines and comments, which begin with "!", pass; but in a file that holds several lists
// under comments as their headings, the rows are those from the heading with the list's name to the next comment.
std::optional<FileRows> rows_of_text(const std::string& text, const Field& list, const ListView& view) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    if (!lines.empty() && lines.front().starts_with(byte_order_mark)) lines.front().erase(0, byte_order_mark.size());
    const auto is_comment = [](std::string_view line) { return trim(line).starts_with('!'); };
    auto from = std::ranges::find_if(
        lines, [&](std::string_view line) { return is_comment(line) && heads_list(trim(line), list.label); });
    auto to = lines.end();
    FileRows rows;
    const bool headed = from != lines.end();
    if (headed) {
        rows.in_hertz = from->find("(in Hz)") != std::string::npos;
        to = std::find_if(++from, lines.end(), is_comment);
    } else {
        from = lines.begin();
    }

    std::vector<double>& cells = rows.cells;
    std::vector<std::pair<double, double>> without_image;
    bool any = false;
    for (; from != to; ++from) {
        if (is_comment(*from)) continue;
        auto row = parse_free_format(*from);
        if (!row || !std::ranges::all_of(*row, is_in_range)) return std::nullopt;
        if (row->empty()) continue;
        if (row->size() != static_cast<std::size_t>(view.columns)) return std::nullopt;
        any = true;
        if (headed && list.z_plane) {
            // A pole-zero file of a digital filter has its roots with the sign of the real part turned.
            if (row->back() < 0) continue;
            row->front() = 0.0 - row->front();
        }
        if (headed && list.mirrored && goes_without_saying(row->front(), row->back(), without_image)) continue;
        cells.insert(cells.end(), row->begin(), row->end());
        if (static_cast<int>(cells.size()) > view.columns * view.capacity) return std::nullopt;
    }
    if (!any) return std::nullopt;
    return rows;
}

}  // namespace

}  // namespace kavrel
