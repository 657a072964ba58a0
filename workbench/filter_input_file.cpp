#include "workbench/filter_input_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "shell/stored_files.h"
#include "workbench/stored_list.h"
#include "workbench/units_record.h"

namespace kavrel {

namespace {

constexpr int stored_band_pass = 4;

template <int Rows>
using Pairs = std::array<double, static_cast<std::size_t>(2 * Rows)>;
using RootColumn = std::array<double, finite_zero_limit>;

// Record 3.
struct StoredLists {
    Pairs<requirement_limit> requirements{};
    Pairs<finite_zero_limit> transmission_zeros{};
    Pairs<stored_fixed_zeros> fixed_zeros{};
    Pairs<finite_zero_limit> movable_zeros{};
    RootColumn doublets_re{};
    RootColumn doublets_im{};
};
static_assert(sizeof(StoredLists) == 1600);

constexpr double FilterRequest::*stored_numbers[] = {&FilterRequest::lower_passband,
                                                     &FilterRequest::upper_passband,
                                                     &FilterRequest::fq_or_fs,
                                                     &FilterRequest::band_edge_loss,
                                                     &FilterRequest::loss_slope,
                                                     &FilterRequest::flat_loss,
                                                     &FilterRequest::multiplier,
                                                     &FilterRequest::lower_stopband,
                                                     &FilterRequest::upper_stopband,
                                                     &FilterRequest::lower_stop_loss,
                                                     &FilterRequest::upper_stop_loss,
                                                     &FilterRequest::r1,
                                                     &FilterRequest::r2,
                                                     &FilterRequest::q_predistortion,
                                                     &FilterRequest::center_frequency};

// An integer of record 2 and the range in which the form holds it.
struct StoredInteger {
    int FilterRequest::*member;
    int low, high;
};
constexpr StoredInteger leading_integers[] = {{&FilterRequest::filter_kind, 0, 4},  // 0 while nothing is chosen
                                              {&FilterRequest::filter_type, 1, 3},
                                              {&FilterRequest::passband_type, 1, 4},
                                              {&FilterRequest::function_type, 1, 2}};
constexpr StoredInteger middle_integers[] = {
    {&FilterRequest::stopband_type, 1, 4},   {&FilterRequest::bandpass_form, 1, 3},
    {&FilterRequest::zeros_at_zero, 0, 50},  {&FilterRequest::zeros_at_infinity, 0, 50},
    {&FilterRequest::unit_elements, -1, 50}, {&FilterRequest::zs_parameter, -1, 1}};
constexpr StoredInteger trailing_integers[] = {{&FilterRequest::lower_movable, 0, 15},
                                               {&FilterRequest::upper_movable, 0, 15}};

// A reflection coefficient or return loss as typed; 0 where the band-edge value is a loss.
double reflection_input(const FilterRequest& r) {
    return r.band_edge_loss < 0.0 || r.band_edge_loss > least_return_loss ? r.band_edge_loss : 0.0;
}

template <int Rows, std::size_t Cells>
void to_pairs(const FormList<Rows, 2>& list, std::array<double, Cells>& pairs, double scale = 1.0) {
    const auto cells = std::min(Cells, static_cast<std::size_t>(2 * list.rows));
    for (std::size_t i = 0; i < cells; ++i) pairs[i] = list.cells[i] * scale;
}

template <int Rows, std::size_t Cells>
void from_pairs(const std::array<double, Cells>& pairs, FormList<Rows, 2>& list) {
    list = {};
    std::ranges::copy(pairs, list.cells);
    for (std::size_t row = 1; row <= Cells / 2; ++row) {
        if (pairs[2 * row - 2] != 0.0 || pairs[2 * row - 1] != 0.0) list.rows = static_cast<int>(row);
    }
}

StoredLists lists_of(const FilterRequest& r, const UnitSet& units) {
    const double scale = zero_scale(r, units) / units.frequency_multiplier;
    StoredLists lists;
    to_pairs(r.PLACER_REQS, lists.requirements);
    to_pairs(r.TR_ZEROS, lists.transmission_zeros, scale);
    to_pairs(r.FIXED_ZEROS, lists.fixed_zeros);
    to_pairs(r.MOVABLE_ZEROS, lists.movable_zeros);
    for (int row = 1; row <= r.DOUBLETS.rows; ++row) {
        lists.doublets_re[static_cast<std::size_t>(row) - 1] = r.DOUBLETS(row, 1) * scale;
        lists.doublets_im[static_cast<std::size_t>(row) - 1] = r.DOUBLETS(row, 2) * scale;
    }
    return lists;
}

// A function may have a zero at 0, which a row of zeros at the end of the list stands for: hence the count of its rows.
// It stands in a spare integer, which another writer may have used for something else.
void take_lists(const StoredLists& lists, int function_rows, FilterRequest& r) {
    from_pairs(lists.requirements, r.PLACER_REQS);
    from_pairs(lists.transmission_zeros, r.TR_ZEROS);
    from_pairs(lists.fixed_zeros, r.FIXED_ZEROS);
    from_pairs(lists.movable_zeros, r.MOVABLE_ZEROS);
    r.zero_unit = ZeroUnitChoice::hertz;
    r.DOUBLETS = {};
    for (int row = 1; row <= finite_zero_limit; ++row) {
        r.DOUBLETS(row, 1) = lists.doublets_re[static_cast<std::size_t>(row) - 1];
        r.DOUBLETS(row, 2) = lists.doublets_im[static_cast<std::size_t>(row) - 1];
        if (r.DOUBLETS(row, 1) != 0.0 || r.DOUBLETS(row, 2) != 0.0) r.DOUBLETS.rows = row;
    }
    if (function_rows <= finite_zero_limit) r.DOUBLETS.rows = std::max(r.DOUBLETS.rows, function_rows);
}

bool form_could_hold(const FilterRequest& r, const StoredLists& lists) {
    const auto in_range = [&](const StoredInteger& integer) {
        return r.*integer.member >= integer.low && r.*integer.member <= integer.high;
    };
    const auto finite = [](double v) { return std::isfinite(v); };
    return std::ranges::all_of(leading_integers, in_range) && std::ranges::all_of(middle_integers, in_range) &&
           std::ranges::all_of(trailing_integers, in_range) &&
           std::ranges::all_of(stored_numbers, [&](auto member) { return finite(r.*member); }) &&
           std::ranges::all_of(lists.requirements, finite) && std::ranges::all_of(lists.transmission_zeros, finite) &&
           std::ranges::all_of(lists.fixed_zeros, finite) && std::ranges::all_of(lists.movable_zeros, finite) &&
           std::ranges::all_of(lists.doublets_re, finite) && std::ranges::all_of(lists.doublets_im, finite);
}

}  // namespace

double zero_scale(const FilterRequest& request, const UnitSet& units) {
    return request.zero_unit == ZeroUnitChoice::radians ? 0.5 / std::numbers::pi : units.frequency_multiplier;
}

std::string filter_input_bytes(const FilterRequest& request, const UnitSet& units) {
    FilterRequest stored = request;
    if (stored.filter_type == TypeChoice::band_pass) stored.filter_type = stored_band_pass;
    RecordWriter file;
    const auto put_integers = [&](const auto& integers) {
        for (const StoredInteger& integer : integers) file.put(stored.*integer.member);
    };
    file.begin();
    for (const auto member : stored_numbers) file.put(request.*member);
    file.put(reflection_input(request));
    file.end();

    file.begin();
    put_integers(leading_integers);
    file.put(request.DOUBLETS.rows);
    put_integers(middle_integers);
    file.put(request.odd_parametric ? 1 : 0);
    put_integers(trailing_integers);
    file.end();

    file.begin();
    file.put(lists_of(request, units));
    file.end();

    put_units_record(file, units);
    return file.bytes();
}

bool read_filter_input(std::string_view bytes, FilterRequest& request, UnitSet& units) {
    FilterRequest found = request;
    RecordReader file(bytes);
    const auto take_integers = [&](const auto& integers) {
        for (const StoredInteger& integer : integers) file.take(found.*integer.member);
    };
    file.begin();
    for (const auto member : stored_numbers) file.take(found.*member);
    double dropped = 0.0;
    file.take(dropped);
    file.end();

    file.begin();
    int function_rows = 0;
    int odd_parametric = 0;
    take_integers(leading_integers);
    file.take(function_rows);
    take_integers(middle_integers);
    file.take(odd_parametric);
    take_integers(trailing_integers);
    file.end();

    file.begin();
    StoredLists lists;
    file.take(lists);
    file.end();

    const auto found_units = take_units_record(file);

    // 4 is how it is stored, and the form never stores 3.
    if (found.filter_type == stored_band_pass) found.filter_type = TypeChoice::band_pass;
    for (int* group : {&found.function_type, &found.stopband_type, &found.bandpass_form}) settle_choice(*group);
    if (!file.finished() || !found_units || !form_could_hold(found, lists)) return false;
    found.odd_parametric = odd_parametric != 0;
    take_lists(lists, function_rows, found);
    request = found;
    units = *found_units;
    return true;
}

}  // namespace kavrel
