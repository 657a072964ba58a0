#include "forms/filter_input_file.h"

#include "forms/input_items.h"

namespace kavrel {

namespace {

struct Items {
    template <class File, class Request, class Units>
    static void list(File& file, Request& r, Units& units);
};

}  // namespace

std::string filter_input_bytes(const FilterRequest& request, const UnitSet& units) {
    return input_bytes<Items>(request, units);
}

bool read_filter_input(std::string_view bytes, FilterRequest& request, UnitSet& units) {
    return read_input<Items>(bytes, request, units);
}

namespace {

// As in FilterType; the form has 3.
constexpr auto stored_band_pass = static_cast<TypeChoice>(4);

template <int Rows>
using Pairs = std::array<double, static_cast<std::size_t>(2 * Rows)>;
using RootColumn = std::array<double, finite_zero_limit>;

// What the file holds in another shape than the request.
struct Stored {
    double reflection = 0.0;
    TypeChoice filter_type{};
    int function_rows = 0;
    int zs_parameter = 0;
    int odd_parametric = 0;
    Pairs<requirement_limit> requirements{};
    Pairs<finite_zero_limit> transmission_zeros{};
    Pairs<stored_fixed_zeros> fixed_zeros{};
    Pairs<finite_zero_limit> movable_zeros{};
    RootColumn doublets_re{};
    RootColumn doublets_im{};
};
Stored stored_of(const FilterRequest& r, const UnitSet& units);
void take_stored(const Stored& stored, FilterRequest& r);

template <class File, class Request, class Units>
void Items::list(File& file, Request& r, Units& units) {
    Stored stored = stored_of(r, units);
    file.begin();
    numbers(file, r.lower_passband, r.upper_passband, r.fq_or_fs, r.band_edge_loss, r.loss_slope, r.flat_loss,
            r.multiplier, r.lower_stopband, r.upper_stopband, r.lower_stop_loss, r.upper_stop_loss, r.r1, r.r2,
            r.q_predistortion, r.center_frequency);
    file.items(stored.reflection);
    file.end();

    file.begin();
    whole(file, r.filter_kind, 0, 4);  // 0 while nothing is chosen
    whole(file, stored.filter_type, 1, 4);
    whole(file, r.passband_type, 1, 4);
    choice(file, r.function_type, 2);
    file.items(stored.function_rows);
    choice(file, r.stopband_type, 4);
    choice(file, r.bandpass_form, 3);
    whole(file, r.zeros_at_zero, 0, 50);
    whole(file, r.zeros_at_infinity, 0, 50);
    whole(file, r.unit_elements, -1, 50);
    whole(file, stored.zs_parameter, -1, 1);
    file.items(stored.odd_parametric);
    whole(file, r.lower_movable, 0, 15);
    whole(file, r.upper_movable, 0, 15);
    file.end();

    file.begin();
    numbers(file, stored.requirements, stored.transmission_zeros, stored.fixed_zeros, stored.movable_zeros,
            stored.doublets_re, stored.doublets_im);
    file.end();

    units_record(file, units);
    if constexpr (File::reads) take_stored(stored, r);
}

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

Stored stored_of(const FilterRequest& r, const UnitSet& units) {
    const double scale = zero_scale(r, units) / units.frequency_multiplier;
    Stored stored;
    stored.reflection = reflection_input(r);
    stored.filter_type = r.filter_type == TypeChoice::band_pass ? stored_band_pass : r.filter_type;
    stored.function_rows = r.DOUBLETS.rows;
    stored.zs_parameter = zs_parameter_of(r);
    stored.odd_parametric = r.odd_parametric ? 1 : 0;
    to_pairs(r.PLACER_REQS, stored.requirements);
    to_pairs(r.TR_ZEROS, stored.transmission_zeros, scale);
    to_pairs(r.FIXED_ZEROS, stored.fixed_zeros);
    to_pairs(r.MOVABLE_ZEROS, stored.movable_zeros);
    for (int row = 1; row <= r.DOUBLETS.rows; ++row) {
        stored.doublets_re[static_cast<std::size_t>(row) - 1] = r.DOUBLETS(row, 1) * scale;
        stored.doublets_im[static_cast<std::size_t>(row) - 1] = r.DOUBLETS(row, 2) * scale;
    }
    return stored;
}

// A function may have a zero at 0, which a row of zeros at the end of the list means: hence the count of its rows. It
// is kept in a spare integer, which another writer may have used for something else.
void take_stored(const Stored& stored, FilterRequest& r) {
    r.filter_type = stored.filter_type == stored_band_pass ? TypeChoice::band_pass : stored.filter_type;
    r.zs_parameter = stored.zs_parameter;
    r.odd_parametric = stored.odd_parametric != 0;
    r.zero_unit = ZeroUnitChoice::hertz;
    from_pairs(stored.requirements, r.PLACER_REQS);
    from_pairs(stored.transmission_zeros, r.TR_ZEROS);
    from_pairs(stored.fixed_zeros, r.FIXED_ZEROS);
    from_pairs(stored.movable_zeros, r.MOVABLE_ZEROS);
    r.DOUBLETS = {};
    for (int row = 1; row <= finite_zero_limit; ++row) {
        r.DOUBLETS(row, 1) = stored.doublets_re[static_cast<std::size_t>(row) - 1];
        r.DOUBLETS(row, 2) = stored.doublets_im[static_cast<std::size_t>(row) - 1];
        if (r.DOUBLETS(row, 1) != 0.0 || r.DOUBLETS(row, 2) != 0.0) r.DOUBLETS.rows = row;
    }
    if (stored.function_rows <= finite_zero_limit) r.DOUBLETS.rows = std::max(r.DOUBLETS.rows, stored.function_rows);
}

}  // namespace

}  // namespace kavrel
