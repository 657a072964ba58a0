// Forms as data: a request record, a table of fields, a rule routine that answers which fields are on, and a validator
// that answers what is wrong and in which field. Console and desktop live off this description alone, so that a field
// is written once. A table is written with the makers of shell/field_table.h, a row a field.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/refusal.h"
#include "shell/units.h"
#include "shell/whole_part.h"

namespace kavrel {

class Reporter;
struct Form;

enum class FieldKind {
    real,     // an edit box
    integer,  // a spinner from low to high
    radio,    // one of the choices as buttons; 0 while nothing is chosen
    choice,   // one of the choices as a list to drop down
    flag,     // a tick box
    text,     // an edit box
    button,   // opens another form on the same record
    list,     // a table of numbers, a row each
    heading,  // a text above a group
};

// A text for each type, to compare types by. (Addresses cannot be compared at compile time under the sanitizers.)
using TypeTag = std::string_view;
template <class T>
consteval TypeTag text_of_type() {
    return __PRETTY_FUNCTION__;
}
template <class T>
inline constexpr TypeTag type_tag = text_of_type<T>();

// An enumerator (or, where the choices are numbered rows of a table, an int) and how it reads.
struct Choice {
    std::string_view label;
    int value = 0;
    Unit unit = Unit::none;  // whose prefix goes before the unit's name in the label: "in  Hz"
    TypeTag type = {};       // of the value

    constexpr Choice() = default;
    template <class Value>
    constexpr Choice(std::string_view text, Value enumerator, Unit prefix = Unit::none)
        : label(text), value(static_cast<int>(enumerator)), unit(prefix), type(type_tag<Value>) {}
};

// What a blank cell of a column means in a row that is not blank: that a number is missing, or 0.
enum class Blank { missing, zero };

struct Column {
    std::string_view label;
    Unit unit = Unit::none;
    Blank blank = Blank::missing;
};

// The numbers of a list field, row by row, 1 <= rows <= capacity of them filled.
struct ListView {
    int* rows;
    double* cells;
    int capacity;
    int columns;

    [[nodiscard]] double& operator()(int row, int column) const { return cells[(row - 1) * columns + column - 1]; }
};

struct TextView {
    char* bytes;
    std::size_t size;
};

// Made by the makers of shell/field_table.h, which know the member that a field shows.
struct Field {
    std::string_view name;   // of the record's member, or made from the label
    std::string_view label;  // the unit in parentheses is added to it
    FieldKind kind = FieldKind::heading;
    Unit unit = Unit::none;
    int low = 0, high = 0;                               // of an integer
    std::span<const Choice> choices = {};                // of a radio or choice
    std::span<const Column> columns = {};                // of a list
    double (*get)(const void* record) = nullptr;         // a real, integer, radio, choice, or flag (1 yes, 0 no)
    void (*set)(void* record, double value) = nullptr;   // the same; what it is given, the member can hold
    TextView (*text)(void* record) = nullptr;            // of a text
    ListView (*list)(void* record) = nullptr;            // of a list
    const Form* (*opens)(const void* record) = nullptr;  // of a button
    std::string_view instead_of = {};                    // the number that becomes 0 when this one is given
    bool mirrored = false;                               // of a list: a row is a root and its mirror images
    bool z_plane = false;                                // of a list: a row is a root of z with its conjugate
    TypeTag record = {};                                 // whose field it is; none of a heading or a plain button
};

// What the rules make of a form's fields at the moment; everything is on until a rule turns it off.
class FieldStates {
public:
    explicit FieldStates(std::span<const Field> fields) : fields_(fields), states_(fields.size()) {}

    // Turns fields off (or on again) by their names; a name that is in no field ends the program.
    void off(std::string_view name, bool when = true);
    void off(std::initializer_list<std::string_view> names, bool when = true);
    void choice_off(std::string_view name, int value, bool when = true);
    template <class Value>
    void choice_off(std::string_view name, Value value, bool when = true) {
        choice_off(name, static_cast<int>(value), when);
    }
    void label(std::string_view name, std::string_view text);
    void unit(std::string_view name, Unit unit);

    [[nodiscard]] bool is_on(std::size_t i) const { return states_[i].on; }
    [[nodiscard]] bool is_on(std::size_t i, int value) const;
    [[nodiscard]] std::string_view label_at(std::size_t i) const;
    [[nodiscard]] Unit unit_at(std::size_t i) const { return states_[i].unit.value_or(fields_[i].unit); }

private:
    struct State {
        bool on = true;
        std::vector<int> choices_off = {};
        std::string_view label = {};
        std::optional<Unit> unit = {};
    };
    State& state(std::string_view name);

    std::span<const Field> fields_;
    std::vector<State> states_;
};

struct Form {
    std::string_view name;   // "FIR_DESIGN_DLG"
    std::string_view title;  // of its window
    std::span<const Field> fields;
    TypeTag record;
    std::size_t record_size;
    void (*rules)(const void* record, FieldStates& states) = nullptr;
    Refusal (*refusal)(const void* record) = nullptr;  // what is wrong with the record
    // What the entry of the field `leader` (and the opening of the form) brings along: it fills in others.
    std::string_view leader = {};
    void (*follow)(void* record, const UnitSet& units) = nullptr;
    bool reads_file = false;             // its lists have a button "Read from file"
    std::string_view caption = "Error";  // of the box that says what is wrong
};

using FormWork = std::function<void()>;

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

    // Takes what was typed or chosen: a number with or without unit and engineering suffix, the label or the number of
    // a choice, yes or no, a text. Returns what is wrong with it, or blank; what is wrong changes nothing.
    [[nodiscard]] std::string enter(std::size_t i, std::string_view typed);

    // Whether a number may be in a unit of the user's that is no plain one (to a field without one the rules may give
    // it), and what it is in that: "= 1 MHz", or blank.
    [[nodiscard]] bool may_be_scaled(std::size_t i) const;
    [[nodiscard]] std::string echo(std::size_t i) const;

    [[nodiscard]] ListView list(std::size_t i) const { return field(i).list(record_); }
    // Appends a row to a list; returns what is wrong, or blank.
    [[nodiscard]] std::string append_row(std::size_t i, std::span<const double> row);
    [[nodiscard]] std::string append_typed_row(std::size_t i, std::span<const std::string> cells);

    // What was typed for a number, or what is wrong with it. In a cell of a list, a blank may be 0 (`Blank`).
    struct Typed {
        double value = 0;
        std::string wrong = {};
    };
    [[nodiscard]] Typed cell(std::size_t i, int column, std::string_view typed) const;
    void clear_rows(std::size_t i);

    // Presses a button: the form behind it opens on the same record, and ends, within this call.
    void press(std::size_t i);

    // "Read from file" of a list: asks for the file; a file that does not fit leaves the rows as they were.
    void read_rows(std::size_t i);

    // Whether the validator takes the record as it is; what it says otherwise is the form's refusal.
    [[nodiscard]] bool passes();
    // What the validator, or the work that was done with the record, said last.
    [[nodiscard]] const Refusal& refusal() const { return refusal_; }
    // How often the validator has refused this form since it was opened.
    [[nodiscard]] int refusals() const { return refusals_; }
    // Whether the form was taken, and the work that followed has failed.
    [[nodiscard]] bool work_failed() const { return work_failed_; }

private:
    friend bool run_form(const Form&, void*, const UnitSet&, Reporter&, const FormWork&);

    void apply_rules();
    void follow_leader();
    void clear_other(std::string_view name);
    [[nodiscard]] Unit column_unit(const Column& column) const;
    [[nodiscard]] double number(std::size_t i) const { return field(i).get(record_); }
    [[nodiscard]] int whole(std::size_t i) const { return whole_part(number(i)); }

    const Form& form_;
    void* record_;
    const UnitSet& units_;
    Reporter& reporter_;
    FieldStates states_;
    std::vector<std::pair<std::size_t, double>> entered_;  // numbers that came before the leader: it leaves them alone
    bool led_ = false;
    Refusal refusal_;
    int refusals_ = 0;
    bool work_failed_ = false;
};

// Opens a form on a record and keeps it open until it is cancelled (false, the record as it was) or passes its
// validator (true). What the validator refuses is reported in a box with the form's caption, unless the window layer
// has shown it in the form, and the form comes back with what was entered.
//
// `work` is what the form was opened for: once the record is taken it is done, and where it fails (an "Error" box, or
// `Reporter::fail`) the form is opened again, if the window layer has it. A form that is cancelled after that is false,
// too, its record as it was last taken.
bool run_form(const Form& form, void* record, const UnitSet& units, Reporter& reporter, const FormWork& work = {});

// The number of the field with this name or, failing that, with this label, as it reads or made a name ("Fixed zeros",
// "fixed_zeros"): -1 when there is none, -2 when the label is that of several.
[[nodiscard]] int find_field(const FormSheet& sheet, std::string_view name_or_label);

}  // namespace kavrel
