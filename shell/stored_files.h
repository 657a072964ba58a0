// Stored files: their names by extension slot, and the unformatted records that they are made of.
//
// A record of an unformatted file is a 32-bit little-endian byte count, the payload, and the same count again. Within a
// record, items follow each other without gaps: doubles as IEEE 754 binary64, integers in 4 bytes little-endian,
// characters padded with blanks.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "shell/fields.h"

namespace kavrel {

// Extension slots, counted from 1; slots 22 to 25 are blank.
enum class ExtSlot {
    factored_data = 1,
    filter_program,
    active_filter,
    fir_filter,
    iir_filter,
    filter_family,
    passive_circuit,
    netlist,
    results_table,
    transfer_text,
    debug,
    lattice,
    second_netlist,
    text,
    switched_capacitor,
    fir_report,
    report,
    requirements,
    matlab,
    pole_zero,
    design,
};

// The extension of a slot as the table holds it, four characters; the slot number is taken modulo 25.
[[nodiscard]] std::string_view EXT(int slot);

// The stem with the slot's extension, in place of another one that it may end in.
[[nodiscard]] std::string file_name(std::string_view stem, ExtSlot slot);

// A name without its extension; what is none of the table or of the other kinds of file that the program writes belongs
// to the name: "lp1.5k" stays as it is.
[[nodiscard]] std::string_view file_stem(std::string_view name);

// Whether the extension that was typed with a name has given way to another one.
[[nodiscard]] bool extension_swapped(std::string_view typed, std::string_view name);

// The two directions of a file of records. A routine that lists the items of a file serves both, being given the one or
// the other: `items` one behind the other, `record` a record of its own; `require` refuses a file by what was read from
// it. A logical (0 or 1) takes 4 bytes, a record that lists its fields takes them (shell/fields.h), a table of such
// records those of each, anything else is stored as it is.
template <class T>
concept TableOfListed = requires(T& table) {
    requires Listed<typename decltype(table.cells)::value_type>;
};

// Gathers the records of an unformatted file.
class RecordWriter {
public:
    static constexpr bool reads = false;

    void begin() { payload_.clear(); }
    void end();
    template <class... Items>
    void items(const Items&... items) {
        (put(items), ...);
    }
    template <class... Items>
    void record(const Items&... items) {
        begin();
        (put(items), ...);
        end();
    }
    void require(bool) {}

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    template <class T>
    void put(const T& item) {
        static_assert(std::is_trivially_copyable_v<T>);
        if constexpr (std::same_as<T, bool>) {
            put(std::int32_t{item});
        } else if constexpr (Listed<T>) {
            for_each_field(item, [&](const auto& field) { put(field); });
        } else if constexpr (TableOfListed<T>) {
            for (const auto& cell : item) put(cell);
        } else {
            payload_.append(reinterpret_cast<const char*>(&item), sizeof item);
        }
    }

    std::string payload_;
    std::string bytes_;
};

// Takes the records of an unformatted file apart. What does not fit (a record that is shorter or longer than what is
// taken from it, bytes that are no record, a logical that is none) spoils the whole file, and whatever is taken then
// stays unchanged: so a caller reads all into a record of its own and asks once, at the end.
class RecordReader {
public:
    static constexpr bool reads = true;

    explicit RecordReader(std::string_view bytes) : rest_(bytes) {}

    void begin();
    void end() { good_ = good_ && payload_.empty(); }
    template <class... Items>
    void items(Items&... items) {
        (take(items), ...);
    }
    template <class... Items>
    void record(Items&... items) {
        begin();
        (take(items), ...);
        end();
    }
    void require(bool fits) { good_ = good_ && fits; }
    // Whether all was good and nothing is left.
    [[nodiscard]] bool finished() const { return good_ && rest_.empty(); }

private:
    template <class T>
    void take(T& item) {
        static_assert(std::is_trivially_copyable_v<T>);
        if constexpr (std::same_as<T, bool>) {
            auto logical = std::int32_t{item};
            take(logical);
            good_ = good_ && (logical == 0 || logical == 1);
            item = logical == 1;
        } else if constexpr (Listed<T>) {
            for_each_field(item, [&](auto& field) { take(field); });
        } else if constexpr (TableOfListed<T>) {
            for (auto& cell : item) take(cell);
        } else {
            if (payload_.size() < sizeof item) good_ = false;
            if (!good_) return;
            std::memcpy(&item, payload_.data(), sizeof item);
            payload_.remove_prefix(sizeof item);
        }
    }

    std::string_view rest_;
    std::string_view payload_;
    bool good_ = true;
};

}  // namespace kavrel
