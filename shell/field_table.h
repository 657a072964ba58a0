// Building tables of fields from parts that several forms share.
#pragma once

#include <array>

#include "shell/form.h"

namespace kavrel {

// The cell of a member (`Inner`) of a record that is itself a member (`Outer`) of a form's record.
template <auto Outer, auto Inner>
constexpr void* nested_cell(void* record) {
    return &((static_cast<typename MemberOf<decltype(Outer)>::record*>(record)->*Outer).*Inner);
}

// The fields of both tables, those of `first` before those of `second`.
template <std::size_t N, std::size_t M>
constexpr std::array<Field, N + M> joined(const std::array<Field, N>& first, const std::array<Field, M>& second) {
    std::array<Field, N + M> fields{};
    for (std::size_t i = 0; i < N; ++i) fields[i] = first[i];
    for (std::size_t i = 0; i < M; ++i) fields[N + i] = second[i];
    return fields;
}

}  // namespace kavrel
