#include "fir/fir_filter.h"

#include <algorithm>
#include <cmath>

namespace kavrel {

namespace {

constexpr double mirrored = 1e-12;  // of the peak

template <class Filter>
auto cells_of(Filter& filter, int n) {
    const int first = filter.IST(n);
    return std::span(filter.X.cells)
        .subspan(static_cast<std::size_t>(first - 1), static_cast<std::size_t>(filter.IST(n + 1) - first));
}
double sign_of(FirSymmetry symmetry) { return symmetry == FirSymmetry::odd ? -1.0 : 1.0; }

}  // namespace

std::span<const double> stored_coefficients(const FirFilter& filter, int n) { return cells_of(filter, n); }
std::span<double> stored_coefficients(FirFilter& filter, int n) { return cells_of(filter, n); }

int free_cells(const FirFilter& filter) {
    return filter.functions == 0 ? fir_store : fir_store + 1 - filter.IST(filter.functions + 1);
}

bool add_function(FirFilter& filter, const FirFunction& function, std::span<const double> coefficients) {
    const int cells = static_cast<int>(coefficients.size());
    if (filter.functions == fir_function_limit || cells > free_cells(filter)) return false;
    if (filter.functions == 0) filter.IST(1) = 1;
    const int n = ++filter.functions;
    filter.FUNCTION(n) = function;
    filter.IST(n + 1) = filter.IST(n) + cells;
    std::ranges::copy(coefficients, stored_coefficients(filter, n).begin());
    return true;
}

void keep_functions(FirFilter& filter, int count) {
    if (filter.functions <= count) return;
    if (filter.factors.function > count) filter.factors.function = 0;
    for (int i = filter.IST(count + 1); i < filter.IST(filter.functions + 1); ++i) filter.X(i) = 0;
    for (int n = count + 1; n <= filter.functions; ++n) {
        filter.FUNCTION(n) = {};
        filter.IST(n + 1) = 0;
    }
    filter.functions = count;
}

std::vector<double> full_response(const FirFilter& filter, int n) {
    const auto stored = stored_coefficients(filter, n);
    const auto [taps, symmetry, word, gain, asked] = filter.FUNCTION(n);
    std::vector<double> response(static_cast<std::size_t>(taps), 0.0);
    if (symmetry != FirSymmetry::none) {
        const double sign = sign_of(symmetry);
        std::ranges::transform(stored, response.rbegin(), [sign](double h) { return sign * h; });
    }
    std::ranges::copy(stored, response.begin());
    return response;
}

bool is_mirrored(std::span<const double> taps, FirSymmetry symmetry) {
    double peak = 0;
    for (const double h : taps) peak = std::fmax(peak, std::fabs(h));
    for (std::size_t i = 0, j = taps.size() - 1; i < taps.size(); ++i, --j) {
        if (!(std::fabs(taps[i] - sign_of(symmetry) * taps[j]) <= mirrored * peak)) return false;
    }
    return true;
}

std::vector<double> half_of(std::span<const double> taps, FirSymmetry symmetry) {
    std::vector<double> half(taps.begin(), taps.begin() + stored_cells(static_cast<int>(taps.size()), symmetry));
    for (std::size_t i = 0; i < half.size(); ++i) {
        half[i] = (taps[i] + sign_of(symmetry) * taps[taps.size() - 1 - i]) / 2;
    }
    return half;
}

FirResponse response_of(std::span<const double> taps) {
    FirResponse response;
    FirFunction& function = response.function;
    function.taps = static_cast<int>(taps.size());
    function.symmetry = is_mirrored(taps, FirSymmetry::even)  ? FirSymmetry::even
                        : is_mirrored(taps, FirSymmetry::odd) ? FirSymmetry::odd
                                                              : FirSymmetry::none;
    if (function.symmetry == FirSymmetry::none) {
        response.coefficients.assign(taps.begin(), taps.end());
    } else {
        response.coefficients = half_of(taps, function.symmetry);
    }
    return response;
}

Fingerprint fingerprint(const FirFilter& filter, int n) {
    std::vector<double> numbers = full_response(filter, n);
    numbers.push_back(filter.sampling_frequency);
    return fingerprint_of({reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(double)});
}

}  // namespace kavrel
