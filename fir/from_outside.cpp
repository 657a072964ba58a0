#include "fir/from_outside.h"

#include <algorithm>
#include <vector>

#include "fir/command_tools.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

constexpr std::string_view not_enough_data = "Not enough data";

Refusal take_function(const FirFunction& function, std::span<const double> coefficients, FirFilter& filter);

}  // namespace

Refusal take_coefficients(std::span<const double> given, FirSymmetry symmetry, int length, FirFilter& filter) {
    const int rows = static_cast<int>(given.size());
    const int taps = length == 0 ? rows : length;
    const int cells = stored_cells(taps, symmetry);
    if (taps > (symmetry == FirSymmetry::none ? fir_store : fir_given_limit)) return warning(no_space, "filter_length");
    if (rows == 0 || cells == 0) return {not_enough_data, "data"};
    const bool has_centre = symmetry == FirSymmetry::odd && taps % 2 == 1;
    const bool is_half = rows == cells || (has_centre && rows == cells + 1);
    if (rows != taps && !is_half) return {"Filter length and number of coefficients differ", "filter_length"};

    std::vector<double> coefficients(given.begin(), given.begin() + cells);
    if (rows == taps && symmetry != FirSymmetry::none) {
        if (!is_mirrored(given, symmetry)) return {"Coefficients do not have this symmetry", "data"};
        coefficients = half_of(given, symmetry);
    } else if (has_centre && rows == cells + 1 && given.back() != 0) {
        return {"The centre coefficient is not 0", "data"};
    }
    return take_function({.taps = taps, .symmetry = symmetry}, coefficients, filter);
}

Refusal take_quadratics(std::span<const QuadraticRow> rows, FirFilter& filter) {
    if (rows.empty()) return {not_enough_data, "data"};
    if (rows.size() > static_cast<std::size_t>(fir_factor_limit)) return warning(no_space, "data");
    if (std::ranges::any_of(rows, [](QuadraticRow row) { return zeros_of(row) == 0; })) {
        return {"Values not permitted", "data"};
    }
    filter.factors = factors_of(rows);
    filter.factors.function = 1;
    const auto [function, coefficients] = response_of(product_of(filter.factors));
    return take_function(function, coefficients, filter);
}

namespace {

Refusal take_function(const FirFunction& function, std::span<const double> coefficients, FirFilter& filter) {
    if (!is_finite(coefficients)) return {"Values of the filter are out of range", "data"};
    filter.origin = FirOrigin::given;
    return add_function(filter, function, coefficients) ? Refusal() : warning(no_space, "data");
}

}  // namespace

}  // namespace kavrel
