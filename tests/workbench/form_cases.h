// Rules and validators: tests/data/forms/<form>.txt, a case a row, each on a fresh record.
//
//     entries | expectation | expectation ...
//     name := entries
//
// The entries, separated by ", ", are made in their order:
//     field=value      as it is typed; a list gets rows appended, "(0,1.3e3)(0,2e3)"
//     name             the entries under that name
//     no field         without the entries of the field so far
// and what is expected is one of
//     off: a b c:X     the fields that are off, and the choices X of the others
//     label a: text    how a field reads, without its unit
//     opens a: b c     the fields of the form behind a button
//     text             what the validator says of the record, "good" for nothing
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "shell/fixed_text.h"
#include "shell/number_text.h"
#include "tests/workbench/form_plan.h"
#include "workbench/all_forms.h"

namespace kavrel {

inline std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        parts.emplace_back(trim(text.substr(0, end)));
        if (end != std::string_view::npos) text.remove_prefix(end + separator.size());
    }
    return parts;
}

struct Entry {
    std::string field, value;
};

class FormCases {
public:
    FormCases(const Form& form, Workbench& bench)
        : form_(form),
          bench_(bench),
          record_(static_cast<char*>(record_of(form, bench))),
          fresh_(record_, record_ + form.record_size) {}

    void check(const std::string& row) {
        if (name_entries(row)) return;
        const auto cells = split(row, "|");
        fill_in(cells[0]);
        FormSheet sheet = sheet_of(form_);
        EXPECT_GE(cells.size(), 2U) << "a row that expects nothing";
        for (std::size_t i = 1; i < cells.size(); ++i) expect(sheet, cells[i]);
    }

    // Whether the row gives its entries a name.
    bool name_entries(const std::string& row) {
        const auto sign = row.find(" := ");
        if (sign != std::string::npos) named_[row.substr(0, sign)] = entries_of(row.substr(sign + 4));
        return sign != std::string::npos;
    }

    // A fresh record with the entries.
    void fill_in(const std::string& entries) {
        std::ranges::copy(fresh_, record_);
        FormSheet sheet = sheet_of(form_);
        for (const Entry& entry : entries_of(entries)) enter(sheet, entry);
    }

private:
    FormSheet sheet_of(const Form& form) { return {form, record_, bench_.session.units, bench_.reporter}; }

    std::vector<Entry> entries_of(std::string_view text) const {
        std::vector<Entry> entries;
        if (text.empty()) return entries;
        for (const std::string& part : split(text, ", ")) {
            const auto sign = part.find('=');
            const auto named = named_.find(part);
            if (sign != std::string::npos) {
                entries.push_back({part.substr(0, sign), part.substr(sign + 1)});
            } else if (named != named_.end()) {
                entries.insert(entries.end(), named->second.begin(), named->second.end());
            } else if (part.starts_with("no ")) {
                EXPECT_GT(std::erase_if(entries, [&](const Entry& e) { return e.field == part.substr(3); }), 0U)
                    << part;
            } else {
                ADD_FAILURE() << "no entry: " << part;
            }
        }
        return entries;
    }

    // In the form itself or in one behind its buttons, on the same record.
    void enter(FormSheet& sheet, const Entry& entry) {
        if (const int field = find_field(sheet, entry.field); field >= 0) {
            return enter(sheet, static_cast<std::size_t>(field), entry.value);
        }
        for (const Form* other : all_forms()) {
            if (other->record != form_.record) continue;
            FormSheet inner = sheet_of(*other);
            const int field = find_field(inner, entry.field);
            if (field >= 0) return enter(inner, static_cast<std::size_t>(field), entry.value);
        }
        ADD_FAILURE() << "no field: " << entry.field;
    }

    static void enter(FormSheet& sheet, std::size_t field, const std::string& value) {
        if (sheet.field(field).kind != FieldKind::list) {
            EXPECT_EQ(sheet.enter(field, value), "") << value;
            return;
        }
        for (const std::string& row : split(std::string_view(value).substr(1, value.size() - 2), ")(")) {
            EXPECT_EQ(sheet.append_row(field, parse_free_format(row).value()), "") << row;
        }
    }

    void expect(const FormSheet& sheet, const std::string& cell) const {
        const auto colon = std::min(cell.find(':'), cell.size());
        const auto words = split(cell.substr(0, colon), " ");
        const auto text = colon < cell.size() ? trim(std::string_view(cell).substr(colon + 1)) : std::string_view{};
        if (words[0] == "off") {
            EXPECT_EQ(off(sheet), text);
        } else if (words[0] == "label" || words[0] == "opens") {
            const int number = find_field(sheet, words.at(1));
            ASSERT_GE(number, 0) << cell;
            const auto field = static_cast<std::size_t>(number);
            const bool label = words[0] == "label";
            ASSERT_TRUE(label || sheet.field(field).opens != nullptr) << cell;
            EXPECT_EQ(label ? std::string(sheet.bare_label(field)) : joined(sheet.field(field).opens(record_)->fields),
                      text);
        } else {
            const Refusal refusal = form_.refusal == nullptr ? "" : form_.refusal(record_);
            EXPECT_EQ(refusal.empty() ? "good" : refusal.text, cell);
            EXPECT_LE(refusal.text.size(), 60U);
            if (!refusal.empty()) expect_names_a_field(sheet, refusal);
        }
    }

    // One that is on, so that the window can turn to it.
    static void expect_names_a_field(const FormSheet& sheet, const Refusal& refusal) {
        const int field = find_field(sheet, refusal.field);
        ASSERT_GE(field, 0) << refusal.field;
        EXPECT_TRUE(sheet.is_on(static_cast<std::size_t>(field))) << refusal.field;
    }

    static std::string off(const FormSheet& sheet) {
        std::string text;
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            if (!sheet.is_on(i)) text += fmt::format(" {}", field.name);
            for (const Choice& choice : field.choices) {
                const bool left_out = sheet.is_on(i) && !sheet.choice_is_on(i, choice.value);
                if (left_out) text += fmt::format(" {}:{}", field.name, choice.label);
            }
        }
        return std::string(trim(text));
    }

    static std::string joined(std::span<const Field> fields) {
        std::string text;
        for (const Field& field : fields) text += fmt::format("{}{}", text.empty() ? "" : " ", field.name);
        return text;
    }

    const Form& form_;
    Workbench& bench_;
    char* record_;
    std::vector<char> fresh_;
    std::map<std::string, std::vector<Entry>> named_;
};

}  // namespace kavrel
