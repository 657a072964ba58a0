// What a request record holds for a list field of its form.
#pragma once

#include <cstddef>

namespace kavrel {

// Up to `Rows` rows of `Columns` numbers, both counted from 1.
template <int Rows, int Columns>
struct FormList {
    int rows = 0;
    double cells[static_cast<std::size_t>(Rows * Columns)] = {};

    [[nodiscard]] double operator()(int row, int column) const { return cells[(row - 1) * Columns + column - 1]; }
    [[nodiscard]] double& operator()(int row, int column) { return cells[(row - 1) * Columns + column - 1]; }
    friend bool operator==(const FormList&, const FormList&) = default;
};

}  // namespace kavrel
