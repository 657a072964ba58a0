// Menus and forms as rows of text, and the written plans that they are held against.
#pragma once

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

#include "shell/fixed_text.h"
#include "shell/form.h"
#include "workbench/rooms.h"

namespace kavrel {

// The rows of a file of tests/data without its comments and empty lines; a line that begins with a blank continues the
// row before it.
inline std::vector<std::string> plan_rows(const std::string& name) {
    std::ifstream file(std::string(TEST_DATA) + "/" + name);
    std::vector<std::string> rows;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.starts_with('#')) continue;
        if (line.starts_with(' ') && !rows.empty()) {
            rows.back() += " " + std::string(trim(line));
        } else {
            rows.push_back(line);
        }
    }
    return rows;
}

inline std::string_view kind_name(FieldKind kind) {
    constexpr std::string_view names[] = {"real", "integer", "radio", "choice", "flag",
                                          "text", "button",  "list",  "heading"};
    return names[static_cast<std::size_t>(kind)];
}

// What may be entered in a field.
inline std::string values_text(const FormSheet& sheet, std::size_t i) {
    const Field& field = sheet.field(i);
    if (field.kind == FieldKind::integer) return fmt::format("{} to {}", field.low, field.high);
    std::string text;
    for (const Choice& choice : field.choices) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", choice.label, choice.value);
    }
    if (field.kind != FieldKind::list) return text;
    const ListView list = sheet.list(i);
    for (int column = 1; column <= list.columns; ++column) {
        text += (text.empty() ? "" : ", ") + sheet.column_label(i, column);
    }
    return fmt::format("{} rows: {}", list.capacity, text);
}

// The labels of a path without ampersands, as `choose` takes them.
inline std::string choose_path(std::string_view path) {
    std::string text;
    for (int level = 0; level < path_depth(path); ++level) {
        text += (level > 0 ? " > " : "") + plain_label(path_label(path, level));
    }
    return text;
}

}  // namespace kavrel
