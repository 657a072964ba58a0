#include "workbench/delay_input_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "shell/stored_files.h"
#include "workbench/stored_list.h"
#include "workbench/units_record.h"

namespace kavrel {

namespace {

// Record 1.
using DelayColumn = std::array<double, delay_row_limit>;
struct DelayTable {
    DelayColumn first{};
    DelayColumn second{};
    std::int32_t rows = 0;
};

constexpr double DelayRequest::*stored_numbers[] = {&DelayRequest::end_of_passband,
                                                    &DelayRequest::start_of_stopband,
                                                    &DelayRequest::center_frequency,
                                                    &DelayRequest::delay,
                                                    &DelayRequest::q_value,
                                                    &DelayRequest::fq_or_fs,
                                                    &DelayRequest::r1,
                                                    &DelayRequest::r2,
                                                    &DelayRequest::normalization_freq};

// The integers of record 3 between the signs and the two at the end.
constexpr int DelayRequest::*stored_integers[] = {
    &DelayRequest::implementation, &DelayRequest::network_type,      &DelayRequest::hurwitz, &DelayRequest::selection,
    &DelayRequest::degree,         &DelayRequest::zeros_at_infinity, &DelayRequest::stopband};

template <int Rows>
DelayTable table_of(const FormList<Rows, 2>& list) {
    DelayTable table;
    table.rows = list.rows;
    for (int row = 1; row <= list.rows; ++row) {
        table.first[static_cast<std::size_t>(row) - 1] = list(row, 1);
        table.second[static_cast<std::size_t>(row) - 1] = list(row, 2);
    }
    return table;
}

template <int Rows>
bool take_table(const DelayTable& table, FormList<Rows, 2>& list) {
    list = {};
    if (table.rows < 0 || table.rows > Rows) return false;
    list.rows = table.rows;
    for (int row = 1; row <= list.rows; ++row) {
        list(row, 1) = table.first[static_cast<std::size_t>(row) - 1];
        list(row, 2) = table.second[static_cast<std::size_t>(row) - 1];
        if (!std::isfinite(list(row, 1)) || !std::isfinite(list(row, 2))) return false;
    }
    return true;
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

bool form_could_hold(const DelayRequest& r) {
    const auto within = [](int value, int low, int high) { return value >= low && value <= high; };
    const auto count = [&](int value) { return value == 0 || within(value, least_delay_degree, delay_degree_limit); };
    return within(r.implementation, 1, 4) && within(r.network_type, 1, 2) && within(r.hurwitz, 1, 2) &&
           within(r.selection, 1, 2) && within(r.stopband, 1, 2) && count(r.degree) && count(r.zeros_at_infinity) &&
           std::ranges::all_of(stored_numbers, [&](auto member) { return std::isfinite(r.*member); });
}

// The last two integers are spare to other writers: without a type of delay a table means an equalizer.
void take_spares(int delay_type, int odd_parametric, bool has_table, DelayRequest& r) {
    const bool told = delay_type >= DelayType::max_flat && delay_type <= DelayType::equalizer;
    r.delay_type = told ? delay_type : has_table ? DelayType::equalizer : DelayType::max_flat;
    r.odd_parametric = odd_parametric != 0;
}

}  // namespace

std::string delay_input_bytes(const DelayRequest& request, const UnitSet& units) {
    const bool equalizer = request.delay_type == DelayType::equalizer;
    const DelayTable table = equalizer ? table_of(request.DELAY_DATA) : table_of(request.TR_ZEROS);
    RecordWriter file;
    file.begin();
    file.put(table.first);
    file.put(table.second);
    file.put(table.rows);
    file.end();

    file.begin();
    for (const auto member : stored_numbers) file.put(request.*member);
    file.end();

    file.begin();
    file.put(sign_bits(request));
    for (const auto member : stored_integers) file.put(request.*member);
    file.put(request.delay_type);
    file.put(request.odd_parametric ? 1 : 0);
    file.end();

    put_units_record(file, units);
    return file.bytes();
}

bool read_delay_input(std::string_view bytes, DelayRequest& request, UnitSet& units) {
    DelayRequest found = request;
    RecordReader file(bytes);
    DelayTable table;
    file.begin();
    file.take(table.first);
    file.take(table.second);
    file.take(table.rows);
    file.end();

    file.begin();
    for (const auto member : stored_numbers) file.take(found.*member);
    file.end();

    std::int32_t signs = 0;
    int delay_type = 0;
    int odd_parametric = 0;
    file.begin();
    file.take(signs);
    for (const auto member : stored_integers) file.take(found.*member);
    file.take(delay_type);
    file.take(odd_parametric);
    file.end();

    const auto found_units = take_units_record(file);
    for (int* group : {&found.network_type, &found.hurwitz, &found.selection, &found.stopband}) settle_choice(*group);
    if (!file.finished() || !found_units || !form_could_hold(found) || !take_signs(signs, found)) return false;
    take_spares(delay_type, odd_parametric, table.rows > 0, found);
    found.DELAY_DATA = {};
    found.TR_ZEROS = {};
    const bool taken = found.delay_type == DelayType::equalizer ? take_table(table, found.DELAY_DATA)
                                                                : take_table(table, found.TR_ZEROS);
    if (!taken) return false;
    request = found;
    units = *found_units;
    return true;
}

}  // namespace kavrel
