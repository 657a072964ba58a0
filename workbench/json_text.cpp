#include "workbench/json_text.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "shell/shown_text.h"
#include "shell/utf8.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

namespace {

void write(const Json& value, int indent, std::string& out);
void append_escaped(std::string_view text, std::string& out);

}  // namespace

std::string json_text(const Json& value) {
    std::string text;
    write(value, 0, text);
    return text + '\n';
}

namespace {

void write(const Json& value, int indent, std::string& out) {
    if (value.is_object() && !value.empty()) {
        out += '{';
        const char* separator = "\n";
        for (const auto& [key, member] : value.items()) {
            out += separator + std::string(static_cast<std::size_t>(indent) + 2, ' ') + Json(key).dump() + ": ";
            write(member, indent + 2, out);
            separator = ",\n";
        }
        out += '\n' + std::string(static_cast<std::size_t>(indent), ' ') + '}';
    } else if (value.is_array()) {
        const bool of_lines = !value.empty() && (value[0].is_string() || value[0].is_object());
        const std::string gap = of_lines ? '\n' + std::string(static_cast<std::size_t>(indent) + 2, ' ') : " ";
        out += '[';
        for (std::size_t i = 0; i < value.size(); ++i) {
            if (i > 0) out += ',';
            if (i > 0 || of_lines) out += gap;
            write(value[i], indent + 2, out);
        }
        if (of_lines) out += '\n' + std::string(static_cast<std::size_t>(indent), ' ');
        out += ']';
    } else if (value.is_number_float()) {
        const double number = value.get<double>();
        out += std::isfinite(number) ? fmt::format("{:.17g}", number) : "null";
    } else {
        append_escaped(value.dump(-1, ' ', false, Json::error_handler_t::replace), out);
    }
}

// Escapes, too, what JSON takes as it is and a terminal would obey.
void append_escaped(std::string_view text, std::string& out) {
    while (!text.empty()) {
        const Utf8Character character = utf8_character(text);
        const std::size_t bytes = std::max<std::size_t>(character.bytes, 1);
        if (character.bytes != 0 && is_obeyed(character.code)) {
            out += fmt::format("\\u{:04x}", static_cast<unsigned>(character.code));
        } else {
            out += text.substr(0, bytes);
        }
        text.remove_prefix(bytes);
    }
}

}  // namespace

}  // namespace kavrel
