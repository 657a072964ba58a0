#include "console/form_verbs.h"

#include <algorithm>
#include <array>

#include <fmt/format.h>

#include "shell/menu.h"
#include "shell/number_text.h"
#include "shell/shown_text.h"

namespace kavrel {

namespace {

constexpr std::array<std::string_view, 8> verbs = {"set", "row", "clear", "list", "button", "fields", "ok", "cancel"};
constexpr std::string_view read_button = "Read from file";

std::string no_field(const FormSheet& sheet, std::string_view name, int found);
std::string rows_text(const FormSheet& sheet, std::size_t i);

}  // namespace

bool is_form_verb(std::string_view verb) { return std::ranges::find(verbs, verb) != verbs.end(); }

FormFiller::FormFiller(FormSheet& sheet) : sheet_(sheet) {
    for (std::size_t i = sheet.size(); i-- > 0;) {
        if (sheet.field(i).kind == FieldKind::list) list_ = static_cast<int>(i);
    }
}

FormStep FormFiller::perform(const ScriptLine& line, std::ostream& screen) {
    const auto verb = line.verb();
    if (verb == "set") return {.wrong = set(line)};
    if (verb == "row") return {.wrong = row(line)};
    if (verb == "list") return {.wrong = turn_to_list(line)};
    if (verb == "button") return {.wrong = button(line)};
    if (line.words.size() > 1) return {.wrong = fmt::format("'{}' stands alone", verb)};
    if (verb == "clear") return {.wrong = clear()};
    if (verb == "fields") {
        screen << form_text(sheet_);
        return {};
    }
    return {.wrong = {}, .closed = true, .accepted = verb == "ok"};
}

std::string FormFiller::set(const ScriptLine& line) {
    if (line.words.size() < 3) return "set FIELD VALUE";
    const std::string& name = line.words[1].text;
    const int found = find_field(sheet_, name);
    if (found < 0) return no_field(sheet_, name, found);
    const std::string wrong = sheet_.enter(static_cast<std::size_t>(found), line.rest(2));
    return wrong.empty() ? wrong : fmt::format("{}: {}", name, wrong);
}

std::string FormFiller::row(const ScriptLine& line) {
    if (list_ < 0) return fmt::format("{} has no list", sheet_.form().name);
    std::vector<std::string> cells;
    for (std::size_t i = 1; i < line.words.size(); ++i) cells.push_back(line.words[i].text);
    return sheet_.append_typed_row(static_cast<std::size_t>(list_), cells);
}

std::string FormFiller::clear() {
    if (list_ < 0) return fmt::format("{} has no list", sheet_.form().name);
    sheet_.clear_rows(static_cast<std::size_t>(list_));
    return {};
}

std::string FormFiller::turn_to_list(const ScriptLine& line) {
    const std::string name = line.rest();
    const int found = find_field(sheet_, name);
    if (found < 0) return no_field(sheet_, name, found);
    if (sheet_.field(static_cast<std::size_t>(found)).kind != FieldKind::list)
        return fmt::format("'{}' is no list", name);
    list_ = found;
    return {};
}

std::string FormFiller::button(const ScriptLine& line) {
    const std::string name = line.rest();
    if (sheet_.form().reads_file && list_ >= 0 && same_label(name, read_button)) {
        sheet_.read_rows(static_cast<std::size_t>(list_));
        return {};
    }
    const int found = find_field(sheet_, name);
    if (found < 0) return no_field(sheet_, name, found);
    const auto i = static_cast<std::size_t>(found);
    if (sheet_.field(i).kind != FieldKind::button) return fmt::format("'{}' is no button", name);
    if (!sheet_.is_on(i)) return fmt::format("the button '{}' is off", name);
    sheet_.press(i);
    return {};
}

std::string choices_text(const FormSheet& sheet, std::size_t field) {
    std::string text;
    for (const Choice& choice : sheet.field(field).choices) {
        if (!sheet.choice_is_on(field, choice.value)) continue;
        if (!text.empty()) text += ", ";
        text += fmt::format("{} {}", choice.value, sheet.choice_label(choice));
    }
    return text;
}

std::string form_text(const FormSheet& sheet) {
    std::string text = fmt::format("{}: {}\n", sheet.form().name, sheet.form().title);
    for (std::size_t i = 0; i < sheet.size(); ++i) {
        const Field& field = sheet.field(i);
        if (field.kind == FieldKind::heading) {
            text += fmt::format("  -- {} --\n", sheet.label(i));
            continue;
        }
        text += fmt::format("  {:<20} {:<36} {:<16}", field.name, sheet.label(i), sheet.shown(i));
        if (!field.choices.empty()) text += fmt::format(" ({})", choices_text(sheet, i));
        if (field.kind == FieldKind::integer) text += fmt::format(" ({} to {})", field.low, field.high);
        if (field.kind == FieldKind::button) text += " (button)";
        if (!sheet.is_on(i)) text += " off";
        text += '\n';
        if (field.kind == FieldKind::list) text += rows_text(sheet, i);
    }
    return shown_text(text, ShownAs::lines);
}

namespace {

std::string no_field(const FormSheet& sheet, std::string_view name, int found) {
    return found == -2 ? fmt::format("'{}' is the label of several fields of {}, use a name", name, sheet.form().name)
                       : fmt::format("{} has no field '{}'", sheet.form().name, name);
}

std::string rows_text(const FormSheet& sheet, std::size_t i) {
    const ListView list = sheet.list(i);
    std::string text;
    for (int column = 1; column <= list.columns; ++column) {
        text += fmt::format("{:>26}", sheet.column_label(i, column));
    }
    text += '\n';
    for (int row = 1; row <= *list.rows; ++row) {
        for (int column = 1; column <= list.columns; ++column) text += fmt::format("{:>26}", list(row, column));
        text += '\n';
    }
    return text;
}

}  // namespace

}  // namespace kavrel
