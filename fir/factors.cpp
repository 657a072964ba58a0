#include "fir/factors.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <iterator>
#include <numeric>

#include "numeric/complex.h"

namespace kavrel {

namespace {

std::vector<QuadraticRow> rows_of(const FirFactors& factors);
std::vector<std::size_t> leja_order(std::span<const QuadraticRow> rows);

// multiplier (1 + linear z^-1 + quadratic z^-2).
struct ScaledRow {
    Wide multiplier = 1, linear = 0, quadratic = 0;
};
ScaledRow reflected(QuadraticRow row, CircleSide from);

}  // namespace

FirFactors factors_of(std::span<const QuadraticRow> rows) {
    FirFactors factors;
    for (const QuadraticRow& row : rows.first(std::min(rows.size(), std::size_t{fir_factor_limit}))) {
        const int k = ++factors.count;
        factors.A1(k) = row.linear;
        factors.A2(k) = row.quadratic;
        factors.ISER(k) = ++factors.last_serial;
    }
    return factors;
}

std::vector<double> product_of(const FirFactors& factors) {
    const auto rows = rows_of(factors);
    std::vector<Wide> product = {1};
    for (const std::size_t k : leja_order(rows)) {
        const Wide a = rows[k].linear, b = rows[k].quadratic;
        product.insert(product.end(), static_cast<std::size_t>(zeros_of(rows[k])), Wide{0});
        for (std::size_t i = product.size(); i-- > 0;) {
            if (i >= 1) product[i] += a * product[i - 1];
            if (i >= 2) product[i] += b * product[i - 2];
        }
    }
    std::vector<double> taps(static_cast<std::size_t>(factors.delay), 0.0);
    for (const Wide value : product) taps.push_back(static_cast<double>(factors.multiplier * value));
    taps.resize(taps.size() + static_cast<std::size_t>(factors.trailing), 0.0);
    return taps;
}

int reflect_zeros(FirFactors& factors, CircleSide from) {
    int changed = 0;
    Wide multiplier = factors.multiplier;
    for (int k = 1; k <= factors.count; ++k) {
        const ScaledRow made = reflected({factors.A1(k), factors.A2(k)}, from);
        if (made.multiplier == 1) continue;
        multiplier *= made.multiplier;
        factors.A1(k) = static_cast<double>(made.linear);
        factors.A2(k) = static_cast<double>(made.quadratic);
        ++changed;
    }
    factors.multiplier = static_cast<double>(multiplier);
    return changed;
}

namespace {

std::vector<QuadraticRow> rows_of(const FirFactors& factors) {
    std::vector<QuadraticRow> rows;
    for (int k = 1; k <= factors.count; ++k) rows.push_back({factors.A1(k), factors.A2(k)});
    return rows;
}

// The zeros of a factor in z, the real ones of the larger magnitude first.
struct FactorZeros {
    int count = 0;
    std::complex<double> zero[2];
};
FactorZeros zeros_in_z(QuadraticRow row) {
    const double half = -row.linear / 2, rest = half * half - row.quadratic;
    if (zeros_of(row) < 2) return {zeros_of(row), {2 * half}};
    if (rest < 0) return {2, {{half, std::sqrt(-rest)}, {half, -std::sqrt(-rest)}}};
    const double larger = half + std::copysign(std::sqrt(rest), half);
    return {2, {larger, row.quadratic / larger}};
}

constexpr double coincident = 1e-16;  // square of a distance

// The order in which products do not grow beyond the whole one: each next factor is the one whose zeros are the
// farthest from those before it, as a geometric mean; one that coincides with another is as if it were a little apart.
// Source: L. Reichel, "Newton interpolation at Leja points", BIT 30 (1990).
std::vector<std::size_t> leja_order(std::span<const QuadraticRow> rows) {
    std::vector<FactorZeros> zeros;
    std::ranges::transform(rows, std::back_inserter(zeros), zeros_in_z);
    std::vector<double> apart;  // log of the distances from the zeros that are taken, at first from 0
    std::ranges::transform(zeros, std::back_inserter(apart),
                           [](const FactorZeros& own) { return std::log(std::norm(own.zero[0])); });
    std::vector<std::size_t> left(rows.size()), order;
    std::iota(left.begin(), left.end(), std::size_t{0});
    while (!left.empty()) {
        const auto farthest = std::ranges::max_element(left, {}, [&](std::size_t k) { return apart[k]; });
        const FactorZeros& taken = zeros[*farthest];
        if (order.empty()) std::ranges::fill(apart, 0.0);
        order.push_back(*farthest);
        left.erase(farthest);
        for (const std::size_t k : left) {
            for (int i = 0; i < zeros[k].count * taken.count; ++i) {
                const auto distance = zeros[k].zero[i / taken.count] - taken.zero[i % taken.count];
                apart[k] += std::log(std::max(coincident, std::norm(distance))) / zeros[k].count;
            }
        }
    }
    return order;
}

ScaledRow reflected(QuadraticRow row, CircleSide from) {
    const auto is_there = [from](Wide radius) {
        return from == CircleSide::inside ? radius < 1 - Wide{factor_circle} : radius > 1 + Wide{factor_circle};
    };
    const Wide a = row.linear, b = row.quadratic, half = -a / 2, rest = half * half - b;
    if (zeros_of(row) == 1) return is_there(std::fabs(a)) ? ScaledRow{a, 1 / a, 0} : ScaledRow{1, a, 0};
    if (zeros_of(row) == 0) return {};
    const ScaledRow all{b, a / b, 1 / b};
    if (rest < 0) return is_there(std::sqrt(b)) ? all : ScaledRow{1, a, b};
    const Wide larger = half + std::copysign(std::sqrt(rest), half), smaller = b / larger;
    const bool takes_larger = is_there(std::fabs(larger)), takes_smaller = is_there(std::fabs(smaller));
    if (takes_larger == takes_smaller) return takes_larger ? all : ScaledRow{1, a, b};
    const Wide moved = takes_larger ? larger : smaller, kept = takes_larger ? smaller : larger;
    return {-moved, -(1 / moved + kept), kept / moved};
}

}  // namespace

}  // namespace kavrel
