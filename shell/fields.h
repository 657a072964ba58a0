// The fields of a record, listed once beside its struct, in the order of their declaration; a table with the count of
// its cells in use:
//
//     template <ListedAs<Curve> Record, class Visit>
//     constexpr void fields_of(Record& curve, Visit&& visit) {
//         visit("name", curve.name);
//         visit("rows", curve.rows);
//         visit("ORDINATE", curve.ORDINATE, curve.rows);
//     }
//     static_assert(lists_each_field<Curve>);
//
// What is stored, looked through or written as JSON walks the list. A field that is left out does not compile.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kavrel {

// Record is T, const or not.
template <class Record, class T>
concept ListedAs = std::same_as<std::remove_const_t<Record>, T>;

// Record has a list.
template <class Record>
concept Listed = std::is_class_v<Record> && requires(Record& record) {
    fields_of(record, [](std::string_view, const auto&, auto...) {});
};

// Calls visit(field) for each field of a record, const or not.
template <Listed Record, class Visit>
constexpr void for_each_field(Record& record, const Visit& visit) {
    fields_of(record, [&](std::string_view, auto& field, auto...) { visit(field); });
}

// Whether no table has more cells in use than it has; records that are members are looked through, too.
template <Listed Record>
[[nodiscard]] constexpr bool counts_fit(const Record& record) {
    bool good = true;
    fields_of(record, [&](std::string_view, const auto& field, auto... count) {
        if constexpr (Listed<std::remove_cvref_t<decltype(field)>>) {
            good = good && counts_fit(field);
        } else {
            good = good && ((count >= 0 && count <= field.bound) && ...);
        }
    });
    return good;
}

// Members of an aggregate: it takes so many initialisers.
struct AnyMember {
    template <class T>
    constexpr operator T() const;  // NOLINT: serves as a member of any type
};
template <class Record, class... Members>
consteval std::size_t member_count() {
    if constexpr (requires { Record{Members{}..., AnyMember{}}; }) {
        return member_count<Record, Members..., AnyMember>();
    } else {
        return sizeof...(Members);
    }
}

// Each member is listed, and none twice.
template <Listed Record>
inline constexpr bool lists_each_field = [] {
    constexpr Record record{};
    std::array<const void*, member_count<Record>()> found{};
    std::size_t fields = 0;
    bool distinct = true;
    for_each_field(record, [&](const auto& field) {
        for (std::size_t i = 0; i < fields; ++i) distinct = distinct && found[i] != &field;
        if (fields < found.size()) found[fields] = &field;
        ++fields;
    });
    return distinct && fields == found.size();
}();

}  // namespace kavrel
