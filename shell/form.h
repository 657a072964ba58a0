// Forms as data: a request record, a table of fields, a rule routine that answers which fields are on, and a validator
// that answers a message. Console and desktop live off this description alone, so that a field is written once.
//
//     constexpr Field fields[] = {
//         {.name = "filter_length", .label = "Filter length", .kind = FieldKind::integer, .low = 0, .high = 512,
//          .cell = cell_of<&FirRequest::filter_length>},
//         ...};
//     const Form FIR_DESIGN_DLG = form_of<FirRequest, fir_rules, fir_message>("FIR_DESIGN_DLG", "Design", fields);
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "shell/units.h"

namespace kavrel {

class Reporter;
struct Form;

enum class FieldKind {
    real,     // double, an edit box
    integer,  // int, a spinner from low to high
    radio,    // int, one of the choices as buttons; 0 while nothing is chosen
    choice,   // int, one of the choices as a list to drop down
    flag,     // bool, a tick box
    text,     // FixedText, an edit box
    button,   // opens another form on the same record
    list,     // a table of numbers, a row each
    heading,  // a text above a group
};

struct Choice {
    std::string_view label;
    int value;
    Unit unit = Unit::none;  // whose prefix goes before the unit's name in the label: "in  Hz"
};

struct Column {
    std::string_view label;
    Unit unit = Unit::none;
};

// The numbers of a list field, row by row, 1 <= rows <= capacity of them filled.
struct ListView {
    int* rows;
    double* cells;
    int capacity;
    int columns;

    [[nodiscard]] double& operator()(int row, int column) const { return cells[(row - 1) * columns + column - 1]; }
};

// What a record holds for a list field: up to `Rows` rows of `Columns` numbers.
template <int Rows, int Columns>
struct FormList {
    int rows = 0;
    double cells[static_cast<std::size_t>(Rows * Columns)] = {};

    [[nodiscard]] double operator()(int row, int column) const { return cells[(row - 1) * Columns + column - 1]; }
    [[nodiscard]] double& operator()(int row, int column) { return cells[(row - 1) * Columns + column - 1]; }
    friend bool operator==(const FormList&, const FormList&) = default;
};

struct TextView {
    char* bytes;
    std::size_t size;
};

struct Field {
    std::string_view name;   // of the record's member, or made from the label
    std::string_view label;  // the unit in parentheses is added to it
    FieldKind kind = FieldKind::real;
    Unit unit = Unit::none;
    int low = 0, high = 0;                               // of an integer
    std::span<const Choice> choices = {};                // of a radio or choice
    std::span<const Column> columns = {};                // of a list
    void* (*cell)(void* record) = nullptr;               // double*, int* or bool*, by the kind
    TextView (*text)(void* record) = nullptr;            // of a text
    ListView (*list)(void* record) = nullptr;            // of a list
    const Form* (*opens)(const void* record) = nullptr;  // of a button
    std::string_view instead_of = {};                    // the number that becomes 0 when this one is given
    bool mirrored = false;                               // of a list: a row stands for a root and its mirror images
};

// What the rules make of a form's fields at the moment; everything is on until a rule turns it off.
class FieldStates {
public:
    explicit FieldStates(std::span<const Field> fields) : fields_(fields), states_(fields.size()) {}

    // Turns fields off (or on again) by their names; a name that is in no field ends the program.
    void off(std::string_view name, bool when = true);
    void off(std::initializer_list<std::string_view> names, bool when = true);
    void choice_off(std::string_view name, int value, bool when = true);
    void label(std::string_view name, std::string_view text);

    [[nodiscard]] bool is_on(std::size_t i) const { return states_[i].on; }
    [[nodiscard]] bool is_on(std::size_t i, int value) const;
    [[nodiscard]] std::string_view label_at(std::size_t i) const;

private:
    struct State {
        bool on = true;
        std::vector<int> choices_off = {};
        std::string_view label = {};
    };
    State& state(std::string_view name);

    std::span<const Field> fields_;
    std::vector<State> states_;
};

struct Form {
    std::string_view name;   // "FIR_DESIGN_DLG"
    std::string_view title;  // of its window
    std::span<const Field> fields;
    std::size_t record_size;
    void (*rules)(const void* record, FieldStates& states) = nullptr;
    std::string_view (*message)(const void* record) = nullptr;  // what is wrong with the record, or blank
    bool reads_file = false;                                    // its lists have a button "Read from file"
    std::string_view caption = "Error";                         // of the box that tells what is wrong
};

template <class T>
struct MemberOf;
template <class Record, class Value>
struct MemberOf<Value Record::*> {
    using record = Record;
};

template <auto Member>
constexpr void* cell_of(void* record) {
    return &(static_cast<typename MemberOf<decltype(Member)>::record*>(record)->*Member);
}

template <auto Member>
constexpr TextView text_of(void* record) {
    auto& text = static_cast<typename MemberOf<decltype(Member)>::record*>(record)->*Member;
    return {text.bytes.data(), text.bytes.size()};
}

template <auto Member, int Rows, int Columns>
constexpr ListView list_of(void* record) {
    FormList<Rows, Columns>& list = static_cast<typename MemberOf<decltype(Member)>::record*>(record)->*Member;
    return {&list.rows, list.cells, Rows, Columns};
}

// A form over the record type `Record`, whose rules and validator take the record itself.
template <class Record, auto Rules = nullptr, auto Message = nullptr>
constexpr Form form_of(std::string_view name, std::string_view title, std::span<const Field> fields,
                       bool reads_file = false, std::string_view caption = "Error") {
    static_assert(std::is_trivially_copyable_v<Record>);
    Form form{.name = name,
              .title = title,
              .fields = fields,
              .record_size = sizeof(Record),
              .reads_file = reads_file,
              .caption = caption};
    if constexpr (!std::is_null_pointer_v<decltype(Rules)>) {
        form.rules = [](const void* record, FieldStates& states) {
            Rules(*static_cast<const Record*>(record), states);
        };
    }
    if constexpr (!std::is_null_pointer_v<decltype(Message)>) {
        form.message = [](const void* record) -> std::string_view {
            return Message(*static_cast<const Record*>(record));
        };
    }
    return form;
}

// A form while it is open: what a window layer reads, shows and changes. Field numbers count from 0.
class FormSheet {
public:
    FormSheet(const Form& form, void* record, const UnitSet& units, Reporter& reporter);

    [[nodiscard]] const Form& form() const { return form_; }
    [[nodiscard]] std::size_t size() const { return form_.fields.size(); }
    [[nodiscard]] const Field& field(std::size_t i) const { return form_.fields[i]; }

    // As the rules say at the moment.
    [[nodiscard]] bool is_on(std::size_t i) const { return states_.is_on(i); }
    [[nodiscard]] bool choice_is_on(std::size_t i, int value) const { return states_.is_on(i, value); }
    [[nodiscard]] std::string label(std::size_t i) const;  // with the unit
    [[nodiscard]] std::string_view bare_label(std::size_t i) const { return states_.label_at(i); }
    [[nodiscard]] std::string choice_label(const Choice& choice) const;
    [[nodiscard]] std::string column_label(std::size_t i, int column) const;

    // The value as it is shown: "1.000000E+03", the label of a choice, "yes" or "no", "3 rows".
    [[nodiscard]] std::string shown(std::size_t i) const;

    // Takes what was typed or chosen: a number with or without engineering suffix, the label or the number of a choice,
    // yes or no, a text. Returns what is wrong with it, or blank; what is wrong changes nothing.
    [[nodiscard]] std::string enter(std::size_t i, std::string_view typed);

    [[nodiscard]] ListView list(std::size_t i) const { return field(i).list(record_); }
    // Appends a row to a list; returns what is wrong, or blank.
    [[nodiscard]] std::string append_row(std::size_t i, std::span<const double> row);
    void clear_rows(std::size_t i);

    // Presses a button: the form behind it opens on the same record, and ends, within this call.
    void press(std::size_t i);

    // "Read from file" of a list: asks for the file; a file that does not fit leaves the rows as they were.
    void read_rows(std::size_t i);

    // How often the validator has refused this form since it was opened, and its last words.
    [[nodiscard]] int refusals() const { return refusals_; }

private:
    friend bool run_form(const Form&, void*, const UnitSet&, Reporter&);

    void apply_rules();
    void clear_other(std::size_t i);
    [[nodiscard]] int& whole(std::size_t i) const { return *static_cast<int*>(field(i).cell(record_)); }

    const Form& form_;
    void* record_;
    const UnitSet& units_;
    Reporter& reporter_;
    FieldStates states_;
    int refusals_ = 0;
};

// Opens a form on a record and keeps it open until it is cancelled (false, the record as it was) or passes its
// validator (true). What the validator refuses is told in a box with the form's caption, and the form comes back with
// what was entered.
[[nodiscard]] bool run_form(const Form& form, void* record, const UnitSet& units, Reporter& reporter);

// The number of the field with this name or, failing that, with this label, as it reads or made a name ("Fixed zeros",
// "fixed_zeros"): -1 when there is none, -2 when the label is that of several.
[[nodiscard]] int find_field(const FormSheet& sheet, std::string_view name_or_label);

}  // namespace kavrel
