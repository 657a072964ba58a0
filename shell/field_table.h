// Tables of fields: a maker for each kind, a row a field. The member that a field shows is a template argument, a
// member of a member a path of them, and its type must be the kind's:
//
//     using R = FirRequest;
//     constexpr Choice methods[] = {{"Equal ripple", FirMethod::equal_ripple}, {"Windowed", FirMethod::windowed}};
//     constexpr Field fields[] = {
//         integer<&R::filter_length>("filter_length", "Filter length", 0, max_fir_taps),
//         radio<&R::design_method>("design_method", "Design method", methods),
//         real<&R::slope>("slope", "Slope (dB/oct)"),
//         button<FIR_QUADS_DLG>("details", "Details"),
//     };
//     constexpr Form FIR_DESIGN_DLG = form_of<R, fir_rules, fir_message>("FIR_DESIGN_DLG", "FIR filter design",
//     fields);
#pragma once

#include <array>
#include <type_traits>

#include "shell/fixed_text.h"
#include "shell/form.h"
#include "shell/form_list.h"
#include "shell/whole_part.h"

namespace kavrel {

template <class>
struct PointedTo;
template <class Owner, class Member>
struct PointedTo<Member Owner::*> {
    using Record = Owner;
    using Value = Member;
};

// A member of a record or, along a path of them, a member of its member; and how a form reads and writes it.
template <auto First, auto... Rest>
struct MemberAt {
    using Record = typename PointedTo<decltype(First)>::Record;
    using Value = typename MemberAt<Rest...>::Value;
    static constexpr auto& in(auto& record) { return MemberAt<Rest...>::in(record.*First); }
};
template <auto First>
struct MemberAt<First> {
    using Record = typename PointedTo<decltype(First)>::Record;
    using Value = typename PointedTo<decltype(First)>::Value;
    static constexpr auto& in(auto& record) { return record.*First; }
};

template <class Member>
constexpr Field field_of(std::string_view name, std::string_view label, FieldKind kind) {
    return {.name = name, .label = label, .kind = kind, .record = type_tag<typename Member::Record>};
}

// A field over a number: what is got and set is the member's value.
template <class Member>
constexpr Field number_field(std::string_view name, std::string_view label, FieldKind kind) {
    using Record = typename Member::Record;
    using Value = typename Member::Value;
    using Number = std::conditional_t<std::is_enum_v<Value>, int, Value>;
    Field field = field_of<Member>(name, label, kind);
    field.get = [](const void* record) {
        return static_cast<double>(static_cast<Number>(Member::in(*static_cast<const Record*>(record))));
    };
    field.set = [](void* record, double value) {
        Value& member = Member::in(*static_cast<Record*>(record));
        if constexpr (std::is_same_v<Number, int>) {
            member = static_cast<Value>(whole_part(value));
        } else {
            member = static_cast<Number>(value);
        }
    };
    return field;
}

template <class Member>
constexpr Field choice_field(std::string_view name, std::string_view label, FieldKind kind,
                             std::span<const Choice> choices) {
    using Value = typename Member::Value;
    static_assert(std::is_same_v<Value, int> || std::is_enum_v<Value>);
    for (const Choice& choice : choices) {
        if (choice.type != type_tag<Value>) throw "a choice of another type than the member's";
    }
    Field field = number_field<Member>(name, label, kind);
    field.choices = choices;
    return field;
}

template <std::size_t N>
constexpr TextView view_of(FixedText<N>& text) {
    return {text.bytes.data(), text.bytes.size()};
}

template <int Rows, int Columns>
constexpr ListView view_of(FormList<Rows, Columns>& list) {
    return {&list.rows, list.cells, Rows, Columns};
}

template <int Rows, int Columns>
constexpr std::size_t columns_of(const FormList<Rows, Columns>*) {
    return Columns;
}

// ---- makers ----

// The number that becomes 0 when this one is given.
struct InsteadOf {
    std::string_view name = {};
};

// What a row of a list means: itself, a root and its mirror images, or a root of a digital filter with its conjugate.
enum class ListRows { plain, mirrored, z_plane };

template <auto... Path>
constexpr Field real(std::string_view name, std::string_view label, Unit unit = Unit::none, InsteadOf other = {}) {
    static_assert(std::is_same_v<typename MemberAt<Path...>::Value, double>);
    Field field = number_field<MemberAt<Path...>>(name, label, FieldKind::real);
    field.unit = unit;
    field.instead_of = other.name;
    return field;
}

// A real that a record answers and takes by routines, double (const Record&) and void (Record&, double).
template <class Record, double (*get)(const Record&), void (*set)(Record&, double)>
constexpr Field real_by(std::string_view name, std::string_view label, Unit unit = Unit::none) {
    return {.name = name,
            .label = label,
            .kind = FieldKind::real,
            .unit = unit,
            .get = [](const void* record) { return get(*static_cast<const Record*>(record)); },
            .set = [](void* record, double value) { set(*static_cast<Record*>(record), value); },
            .record = type_tag<Record>};
}

template <auto... Path>
constexpr Field integer(std::string_view name, std::string_view label, int low, int high, InsteadOf other = {}) {
    static_assert(std::is_same_v<typename MemberAt<Path...>::Value, int>);
    Field field = number_field<MemberAt<Path...>>(name, label, FieldKind::integer);
    field.low = low;
    field.high = high;
    field.instead_of = other.name;
    return field;
}

template <auto... Path>
constexpr Field radio(std::string_view name, std::string_view label, std::span<const Choice> choices) {
    return choice_field<MemberAt<Path...>>(name, label, FieldKind::radio, choices);
}

template <auto... Path>
constexpr Field choice(std::string_view name, std::string_view label, std::span<const Choice> choices) {
    return choice_field<MemberAt<Path...>>(name, label, FieldKind::choice, choices);
}

template <auto... Path>
constexpr Field flag(std::string_view name, std::string_view label) {
    static_assert(std::is_same_v<typename MemberAt<Path...>::Value, bool>);
    return number_field<MemberAt<Path...>>(name, label, FieldKind::flag);
}

template <auto... Path>
constexpr Field text(std::string_view name, std::string_view label) {
    using Member = MemberAt<Path...>;
    Field field = field_of<Member>(name, label, FieldKind::text);
    field.text = [](void* record) { return view_of(Member::in(*static_cast<typename Member::Record*>(record))); };
    return field;
}

// A head for each column of the member.
template <auto... Path>
constexpr Field list(std::string_view name, std::string_view label, std::span<const Column> columns,
                     ListRows rows = ListRows::plain) {
    using Member = MemberAt<Path...>;
    if (columns.size() != columns_of(static_cast<typename Member::Value*>(nullptr))) throw "a head for each column";
    Field field = field_of<Member>(name, label, FieldKind::list);
    field.columns = columns;
    field.list = [](void* record) { return view_of(Member::in(*static_cast<typename Member::Record*>(record))); };
    field.mirrored = rows == ListRows::mirrored;
    field.z_plane = rows == ListRows::z_plane;
    return field;
}

// Opens `Opened`, a form on the same record.
template <const Form& Opened>
constexpr Field button(std::string_view name, std::string_view label) {
    return {.name = name, .label = label, .kind = FieldKind::button, .opens = [](const void*) { return &Opened; }};
}

template <class Record>
constexpr Record record_of(const Form* (*)(const Record& record));

// Opens the form that `Choose` answers, a routine const Form* (const Record&).
template <auto Choose>
constexpr Field button(std::string_view name, std::string_view label) {
    using Record = decltype(record_of(Choose));
    return {.name = name,
            .label = label,
            .kind = FieldKind::button,
            .opens = [](const void* record) { return Choose(*static_cast<const Record*>(record)); },
            .record = type_tag<Record>};
}

constexpr Field heading(std::string_view name, std::string_view label) {
    return {.name = name, .label = label, .kind = FieldKind::heading};
}

// The fields of both tables, those of `first` before those of `second`.
template <std::size_t N, std::size_t M>
constexpr std::array<Field, N + M> joined(const std::array<Field, N>& first, const std::array<Field, M>& second) {
    std::array<Field, N + M> fields{};
    for (std::size_t i = 0; i < N; ++i) fields[i] = first[i];
    for (std::size_t i = 0; i < M; ++i) fields[N + i] = second[i];
    return fields;
}

// ---- forms ----

// A form over the record type `Record`, whose rules and validator take the record itself.
template <class Record, auto Rules = nullptr, auto Judge = nullptr>
constexpr Form form_of(std::string_view name, std::string_view title, std::span<const Field> fields,
                       bool reads_file = false, std::string_view caption = "Error") {
    static_assert(std::is_trivially_copyable_v<Record>);
    for (const Field& field : fields) {
        if (!field.record.empty() && field.record != type_tag<Record>) throw "a field of another record";
    }
    Form form{.name = name,
              .title = title,
              .fields = fields,
              .record = type_tag<Record>,
              .record_size = sizeof(Record),
              .reads_file = reads_file,
              .caption = caption};
    if constexpr (!std::is_null_pointer_v<decltype(Rules)>) {
        form.rules = [](const void* record, FieldStates& states) {
            Rules(*static_cast<const Record*>(record), states);
        };
    }
    if constexpr (!std::is_null_pointer_v<decltype(Judge)>) {
        form.refusal = [](const void* record) -> Refusal { return Judge(*static_cast<const Record*>(record)); };
    }
    return form;
}

// The same form with a field whose entry fills in others by a routine void (Record&, const UnitSet&).
template <class Record, auto Follow>
constexpr Form led_by(std::string_view leader, Form form) {
    if (form.record != type_tag<Record>) throw "a form of another record";
    form.leader = leader;
    form.follow = [](void* record, const UnitSet& units) { Follow(*static_cast<Record*>(record), units); };
    return form;
}

// The same form, which a routine void (Record&, const UnitSet&) fills in where it is opened.
template <class Record, auto Open>
constexpr Form opened_by(Form form) {
    return led_by<Record, Open>({}, form);
}

}  // namespace kavrel
