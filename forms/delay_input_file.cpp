#include "forms/delay_input_file.h"

#include <cstdint>

#include "forms/input_items.h"

namespace kavrel {

namespace {

struct Items {
    template <class File, class Request, class Units>
    static void list(File& file, Request& r, Units& units);
};

}  // namespace

std::string delay_input_bytes(const DelayRequest& request, const UnitSet& units) {
    return input_bytes<Items>(request, units);
}

bool read_delay_input(std::string_view bytes, DelayRequest& request, UnitSet& units) {
    return read_input<Items>(bytes, request, units);
}

namespace {

using DelayColumn = std::array<double, delay_row_limit>;

// What the file holds in another shape than the request.
struct Stored {
    DelayColumn first{};
    DelayColumn second{};
    std::int32_t rows = 0;
    std::int32_t signs = 0;
    DelayType delay_type{};
    int odd_parametric = 0;
};
Stored stored_of(const DelayRequest& r);
bool take_stored(const Stored& stored, DelayRequest& r);

// 0, or within the limits of a degree.
template <class File, class Count>
void count(File& file, Count& value) {
    whole(file, value, 0, delay_degree_limit);
    file.require(value == 0 || value >= least_delay_degree);
}

template <class File, class Request, class Units>
void Items::list(File& file, Request& r, Units& units) {
    Stored stored = stored_of(r);
    file.record(stored.first, stored.second, stored.rows);

    file.begin();
    numbers(file, r.end_of_passband, r.start_of_stopband, r.center_frequency, r.delay, r.q_value, r.fq_or_fs, r.r1,
            r.r2, r.normalization_freq);
    file.end();

    file.begin();
    file.items(stored.signs);
    whole(file, r.implementation, 1, 4);
    choice(file, r.network_type, 2);
    choice(file, r.hurwitz, 2);
    choice(file, r.selection, 2);
    count(file, r.degree);
    count(file, r.zeros_at_infinity);
    choice(file, r.stopband, 2);
    file.items(stored.delay_type, stored.odd_parametric);
    file.end();

    units_record(file, units);
    if constexpr (File::reads) file.require(take_stored(stored, r));
}

template <int Rows>
void to_columns(const FormList<Rows, 2>& list, Stored& stored) {
    stored.rows = list.rows;
    for (int row = 1; row <= list.rows; ++row) {
        stored.first[static_cast<std::size_t>(row) - 1] = list(row, 1);
        stored.second[static_cast<std::size_t>(row) - 1] = list(row, 2);
    }
}

template <int Rows>
bool from_columns(const Stored& stored, FormList<Rows, 2>& list) {
    if (stored.rows < 0 || stored.rows > Rows) return false;
    list.rows = stored.rows;
    for (int row = 1; row <= list.rows; ++row) {
        list(row, 1) = stored.first[static_cast<std::size_t>(row) - 1];
        list(row, 2) = stored.second[static_cast<std::size_t>(row) - 1];
    }
    return fits_form(list.cells);
}

std::int32_t sign_bits(const DelayRequest& r) {
    std::int32_t bits = 0;
    for (int row = 1; row <= r.PLUS_MIN.rows; ++row) {
        if (r.PLUS_MIN(row, 1) < 1.0) bits |= std::int32_t{1} << (row - 1);
    }
    return bits;
}

// Signs behind the last minus are plus, given or not.
bool take_signs(std::int32_t bits, DelayRequest& r) {
    r.PLUS_MIN = {};
    if (bits < 0 || bits >= std::int32_t{1} << sign_limit) return false;
    for (int row = 1; bits != 0; ++row, bits >>= 1) {
        r.PLUS_MIN(row, 1) = (bits & 1) != 0 ? -1.0 : 1.0;
        r.PLUS_MIN.rows = row;
    }
    return true;
}

Stored stored_of(const DelayRequest& r) {
    Stored stored;
    r.delay_type == DelayType::equalizer ? to_columns(r.DELAY_DATA, stored) : to_columns(r.TR_ZEROS, stored);
    stored.signs = sign_bits(r);
    stored.delay_type = r.delay_type;
    stored.odd_parametric = r.odd_parametric ? 1 : 0;
    return stored;
}

// The last two integers are spare to other writers: without a type of delay a table means an equalizer.
bool take_stored(const Stored& stored, DelayRequest& r) {
    const bool typed = stored.delay_type >= DelayType::max_flat && stored.delay_type <= DelayType::equalizer;
    r.delay_type = typed ? stored.delay_type : stored.rows > 0 ? DelayType::equalizer : DelayType::max_flat;
    r.odd_parametric = stored.odd_parametric != 0;
    r.DELAY_DATA = {};
    r.TR_ZEROS = {};
    const bool equalizer = r.delay_type == DelayType::equalizer;
    const bool has_table = equalizer ? from_columns(stored, r.DELAY_DATA) : from_columns(stored, r.TR_ZEROS);
    return has_table && take_signs(stored.signs, r);
}

}  // namespace

}  // namespace kavrel
