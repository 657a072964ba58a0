#include "forms/fir_input_file.h"

#include <limits>

#include "fir/windows.h"
#include "forms/input_items.h"

namespace kavrel {

namespace {

struct Items {
    template <class File, class Request, class Units>
    static void list(File& file, Request& r, Units& units);
};

}  // namespace

std::string fir_input_bytes(const FirRequest& request, const UnitSet& units) {
    return input_bytes<Items>(request, units);
}

bool read_fir_input(std::string_view bytes, FirRequest& request, UnitSet& units) {
    return read_input<Items>(bytes, request, units);
}

namespace {

// The shape, in single precision.
using ShapeColumn = std::array<float, max_shape_points>;
struct StoredShape {
    ShapeColumn frequency{};
    ShapeColumn value{};
};
StoredShape stored_shape(const FirRequest& r);
void take_shape(const StoredShape& stored, FirRequest& r);
int band_rows(const FirRequest& r);

template <class File, class Request, class Units>
void Items::list(File& file, Request& r, Units&) {
    StoredShape stored = stored_shape(r);
    double parameter = parameter_of(r);
    file.begin();
    numbers(file, r.QUADRUPLETS.cells, stored.frequency, stored.value);
    whole(file, r.shape.rows, 0, max_shape_points);
    file.end();

    file.begin();
    numbers(file, r.lower_frequency, r.upper_frequency, r.sampling_frequency, parameter, r.slope);
    choice(file, r.fir_type, 3);
    choice(file, r.filter_type, 4);
    whole(file, r.design_method, 1, 2);
    choice(file, r.specification_type, 2);
    whole(file, r.filter_length, 0, max_fir_taps);
    choice(file, r.window_type, fir_window_count);
    file.end();

    if constexpr (File::reads) {
        take_shape(stored, r);
        r.parameter = parameter;
        const bool was_on =
            r.design_method == FirMethod::windowed && parameter_kind(r.window_type) != WindowParameter::none;
        r.parameter_given = parameter != 0 || was_on;
        r.QUADRUPLETS.rows = band_rows(r);
    }
}

// The nearest single-precision number.
float single(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -largest, largest));
}

StoredShape stored_shape(const FirRequest& r) {
    StoredShape stored;
    for (int row = 1; row <= r.shape.rows; ++row) {
        stored.frequency[static_cast<std::size_t>(row) - 1] = single(r.shape(row, 1));
        stored.value[static_cast<std::size_t>(row) - 1] = single(r.shape(row, 2));
    }
    return stored;
}

void take_shape(const StoredShape& stored, FirRequest& r) {
    for (int row = 1; row <= max_shape_points; ++row) {
        r.shape(row, 1) = static_cast<double>(stored.frequency[static_cast<std::size_t>(row) - 1]);
        r.shape(row, 2) = static_cast<double>(stored.value[static_cast<std::size_t>(row) - 1]);
    }
}

// A row with upper edge 0 ends the band table.
int band_rows(const FirRequest& r) {
    int rows = 0;
    while (rows < max_fir_bands && r.QUADRUPLETS(rows + 1, 2) != 0.0) ++rows;
    return rows;
}

}  // namespace

}  // namespace kavrel
