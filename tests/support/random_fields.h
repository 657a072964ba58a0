// Records with something in every field, and their comparison to the last bit.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include "approximation/filter_spec.h"
#include "shell/stored_files.h"

namespace kavrel::testing {

// Every field, byte for byte.
struct FieldBytes {
    std::string bytes;

    void operator()(const auto&... items) { (add(items), ...); }
    template <class T>
    void add(const T& item) {
        if constexpr (Listed<T>) {
            for_each_field(item, [&](const auto& field) { add(field); });
        } else if constexpr (TableOfListed<T>) {
            for (const auto& cell : item) add(cell);
        } else {
            bytes.append(reinterpret_cast<const char*>(&item), sizeof item);
        }
    }
};

struct RandomFields {
    std::mt19937& engine;

    int whole(int from, int to) { return std::uniform_int_distribution<int>(from, to)(engine); }

    // Any finite double: of any exponent, subnormal and negative zero among them.
    double any_double() {
        for (;;) {
            const auto number = std::bit_cast<double>(static_cast<std::uint64_t>(engine()) << 32U | engine());
            if (whole(0, 20) == 0) return std::copysign(0.0, number);
            if (std::isfinite(number)) return number;
        }
    }

    void fill_all(auto&... items) { (fill(items), ...); }
    template <Listed Record>
    void fill(Record& record) {
        for_each_field(record, [&](auto& field) { fill(field); });
    }
    void fill(double& item) { item = any_double(); }
    void fill(int& item) { item = static_cast<int>(engine()); }
    void fill(bool& item) { item = whole(0, 1) == 1; }
    void fill(char& item) { item = "PMAI"[whole(0, 3)]; }
    template <class Choice>
    requires std::is_enum_v<Choice>
    void fill(Choice&) {}  // settled
    template <std::size_t N>
    void fill(FixedText<N>& item) {
        for (char& c : item.bytes) c = static_cast<char>(whole(' ', '~'));
    }
    template <class T, int N>
    void fill(Table<T, N>& item) {
        for (T& cell : item) fill(cell);
    }

    // Choices and counts that there are.
    void settle(FilterSpec& s) {
        s.filterType = FilterType{whole(1, 6)}, s.medium = Medium{whole(0, 2)};
        s.passbandType = PassbandType{whole(0, 3)}, s.stopbandType = StopbandType{whole(0, 4)};
        s.bandpassType = BandpassType{whole(1, 3)};
        s.numeratorDegree = whole(0, factor_limit), s.denominatorDegree = whole(0, factor_limit);
        s.zeroCount = whole(0, finite_zero_limit), s.degree = whole(0, max_degree);
    }
    void settle(TransferFunction& transfer) {
        transfer.zeroCount = whole(0, max_degree), transfer.poleCount = whole(0, max_degree);
    }
};

}  // namespace kavrel::testing
