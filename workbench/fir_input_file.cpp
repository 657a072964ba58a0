#include "workbench/fir_input_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "shell/stored_files.h"
#include "workbench/stored_list.h"

namespace kavrel {

namespace {

using ShapeColumn = std::array<float, max_shape_points>;

bool within(int value, int low, int high) { return value >= low && value <= high; }

bool form_could_hold(const FirRequest& r) {
    const bool choices = within(r.fir_type, 1, 3) && within(r.filter_type, 1, 4) && within(r.design_method, 1, 2) &&
                         within(r.specification_type, 1, 2) && within(r.window_type, 1, 21) &&
                         within(r.filter_length, 0, max_fir_taps) && within(r.shape.rows, 0, max_shape_points);
    const auto finite = [](double v) { return std::isfinite(v); };
    return choices && std::ranges::all_of(r.QUADRUPLETS.cells, finite) && std::ranges::all_of(r.shape.cells, finite) &&
           std::ranges::all_of(
               std::array{r.lower_frequency, r.upper_frequency, r.sampling_frequency, r.parameter, r.slope}, finite);
}

// The nearest single-precision number.
float single(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -largest, largest));
}

// A row with upper edge 0 ends the band table.
int band_rows(const FirRequest& r) {
    int rows = 0;
    while (rows < max_fir_bands && r.QUADRUPLETS(rows + 1, 2) != 0.0) ++rows;
    return rows;
}

}  // namespace

std::string fir_input_bytes(const FirRequest& request) {
    ShapeColumn frequency{};
    ShapeColumn value{};
    for (int row = 1; row <= request.shape.rows; ++row) {
        frequency[static_cast<std::size_t>(row) - 1] = single(request.shape(row, 1));
        value[static_cast<std::size_t>(row) - 1] = single(request.shape(row, 2));
    }
    RecordWriter file;
    file.begin();
    file.put(request.QUADRUPLETS.cells);
    file.put(frequency);
    file.put(value);
    file.put(request.shape.rows);
    file.end();
    file.begin();
    for (const double number : {request.lower_frequency, request.upper_frequency, request.sampling_frequency,
                                request.parameter, request.slope}) {
        file.put(number);
    }
    for (const int number : {request.fir_type, request.filter_type, request.design_method, request.specification_type,
                             request.filter_length, request.window_type}) {
        file.put(number);
    }
    file.end();
    return file.bytes();
}

bool read_fir_input(std::string_view bytes, FirRequest& request) {
    FirRequest found = request;
    ShapeColumn frequency{};
    ShapeColumn value{};
    RecordReader file(bytes);
    file.begin();
    file.take(found.QUADRUPLETS.cells);
    file.take(frequency);
    file.take(value);
    file.take(found.shape.rows);
    file.end();
    file.begin();
    for (double* number :
         {&found.lower_frequency, &found.upper_frequency, &found.sampling_frequency, &found.parameter, &found.slope}) {
        file.take(*number);
    }
    for (int* number : {&found.fir_type, &found.filter_type, &found.design_method, &found.specification_type,
                        &found.filter_length, &found.window_type}) {
        file.take(*number);
    }
    file.end();
    for (int* group : {&found.fir_type, &found.filter_type, &found.specification_type, &found.window_type}) {
        settle_choice(*group);
    }
    for (int row = 1; row <= max_shape_points; ++row) {
        found.shape(row, 1) = static_cast<double>(frequency[static_cast<std::size_t>(row) - 1]);
        found.shape(row, 2) = static_cast<double>(value[static_cast<std::size_t>(row) - 1]);
    }
    if (!file.finished() || !form_could_hold(found)) return false;
    found.QUADRUPLETS.rows = band_rows(found);
    request = found;
    return true;
}

}  // namespace kavrel
