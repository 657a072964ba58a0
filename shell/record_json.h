// JSON of a record whose keys are the names of its fields (shell/fields.h). For .cpp files alone: it brings the whole
// library along.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "shell/fields.h"
#include "shell/fixed_text.h"
#include "shell/table.h"

namespace kavrel {

// A field: a text or a letter as a text, a choice as its number, of a table the cells in use.
template <class T>
nlohmann::ordered_json field_json(const T& value) {
    return value;
}
inline nlohmann::ordered_json field_json(char letter) { return std::string(1, letter); }
template <std::size_t N>
nlohmann::ordered_json field_json(const FixedText<N>& text) {
    return text.text();
}
template <class T, int N>
nlohmann::ordered_json field_json(const Table<T, N>& table, int count) {
    auto list = nlohmann::ordered_json::array();
    for (int i = 1; i <= count; ++i) list.push_back(table(i));
    return list;
}

template <Listed Record>
nlohmann::ordered_json record_json(const Record& record) {
    nlohmann::ordered_json object;
    fields_of(record, [&](const char* name, const auto&... field) { object[name] = field_json(field...); });
    return object;
}

}  // namespace kavrel
