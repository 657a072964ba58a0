// 1-based tables of fixed bounds: the cells of a `Table<double, 150> VALUE` are VALUE(1) to VALUE(150). A table is an
// aggregate and trivially copyable, so that a record which holds tables is copied in one piece. An index out of bounds
// ends the program in every build but release.
#pragma once

#include <array>
#include <cstddef>
#ifdef KAVREL_CHECKED
#include <cstdlib>
#endif

namespace kavrel {

template <class T, int N>
struct Table {
    std::array<T, static_cast<std::size_t>(N)> cells{};

    static constexpr int bound = N;

    [[nodiscard]] constexpr T& operator()(int i) { return cells[place(i)]; }
    [[nodiscard]] constexpr const T& operator()(int i) const { return cells[place(i)]; }

    constexpr void fill(const T& value) { cells.fill(value); }
    [[nodiscard]] constexpr auto begin() { return cells.begin(); }
    [[nodiscard]] constexpr auto begin() const { return cells.begin(); }
    [[nodiscard]] constexpr auto end() { return cells.end(); }
    [[nodiscard]] constexpr auto end() const { return cells.end(); }
    [[nodiscard]] constexpr T* data() { return cells.data(); }
    [[nodiscard]] constexpr const T* data() const { return cells.data(); }

    friend constexpr bool operator==(const Table&, const Table&) = default;

private:
    static constexpr std::size_t place(int i) {
#ifdef KAVREL_CHECKED
        if (i < 1 || i > N) std::abort();
#endif
        return static_cast<std::size_t>(i - 1);
    }
};

}  // namespace kavrel
