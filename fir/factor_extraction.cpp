#include "fir/factor_extraction.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <utility>

#include "fir/series_zeros.h"

namespace kavrel {

namespace {

using Point = Complex<Wide>;

constexpr double good_product = 1e-10;  // of the peak
constexpr Wide zero_value = 0x1p-110L;  // of the sum of the magnitudes: a polynomial is 0 at 1 or -1
constexpr Wide is_real = 1e-13L;        // imaginary part that a real zero may be left with
constexpr Wide tap_noise = 0x1p-53L;    // of a response's value, from the rounding of its taps
constexpr Wide nearly_double = 1e-3L;   // distance of zeros that may be one

// The zeros in z of a response: real ones, and of each complex pair the factor z^2 + linear z + quadratic.
struct WideRow {
    Wide linear = 0, quadratic = 0;
};
struct ResponseZeros {
    std::vector<Wide> real;
    std::vector<WideRow> pairs;
};

// A response without its zeros at 1 and -1, first tap first.
struct Deflated {
    std::vector<TapReal> taps;
    std::vector<Wide> zeros;
};
Deflated without_unit_zeros(std::span<const double> taps);
bool is_mirrored(std::span<const double> taps);

// Zeros of a series with real terms.
struct SplitZeros {
    std::vector<Wide> real;    // ascending
    std::vector<Point> upper;  // of each pair the one with the positive imaginary part
};
SplitZeros split(const std::vector<Point>& zeros, bool of_cosines);

ResponseZeros zeros_of_cosines(const TapSeries& cosines, const SplitZeros& x, bool onto_circle);
ResponseZeros zeros_of_powers(const SplitZeros& z);
void put_onto_circle(ResponseZeros& zeros);
std::vector<QuadraticRow> rows_of(const ResponseZeros& zeros);

// Factors, and what their product misses the taps by, over the peak.
struct Extraction {
    FirFactors factors;
    double missed = HUGE_VAL;
};
void extract_by(SeriesKind kind, std::span<const double> core, const Deflated& rest, Watcher& watcher,
                Extraction& best);
void consider(ResponseZeros zeros, bool onto_circle, std::span<const double> core, const Deflated& rest,
              Extraction& best);
double relative_difference(std::span<const double> product, std::span<const double> taps);

}  // namespace

ExtractionVerdict extract_factors(std::span<const double> taps, Watcher& watcher, FirFactors& factors) {
    const auto is_tap = [](double h) { return h != 0; };
    const auto first = std::ranges::find_if(taps, is_tap);
    if (first == taps.end() || !std::ranges::all_of(taps, [](double h) { return std::isfinite(h); })) {
        return ExtractionVerdict::all_zero;
    }
    const auto behind = std::find_if(taps.rbegin(), taps.rend(), is_tap).base();
    const std::span<const double> core(first, behind);
    if (core.size() > fir_factor_taps) return ExtractionVerdict::too_long;

    const Deflated rest = without_unit_zeros(core);
    Extraction made;
    if (is_mirrored(core) && rest.taps.size() % 2 == 1) extract_by(SeriesKind::cosines, core, rest, watcher, made);
    if (!(made.missed <= good_product)) extract_by(SeriesKind::powers, core, rest, watcher, made);
    if (watcher.stopped()) return ExtractionVerdict::stopped;
    if (!(made.missed <= product_tolerance)) return ExtractionVerdict::not_found;
    factors = made.factors;
    factors.delay = static_cast<int>(first - taps.begin());
    factors.trailing = static_cast<int>(taps.end() - behind);
    return ExtractionVerdict::extracted;
}

namespace {

void extract_by(SeriesKind kind, std::span<const double> core, const Deflated& rest, Watcher& watcher,
                Extraction& best) {
    const bool of_cosines = kind == SeriesKind::cosines;
    const auto outer = static_cast<std::ptrdiff_t>(rest.taps.size() / 2);
    const TapSeries series{kind, {rest.taps.rbegin() + (of_cosines ? outer : 0), rest.taps.rend()}};
    const SeriesZeros found = zeros_of(series, watcher);
    if (!of_cosines) {
        const SeriesZeros multiple = as_multiple_zeros(series, found);
        consider(zeros_of_powers(split(multiple.at, of_cosines)), true, core, rest, best);
    }
    const SplitZeros all = split(found.at, of_cosines);
    for (const bool onto_circle : {true, false}) {
        if (watcher.stopped() || best.missed <= good_product) return;
        ResponseZeros zeros = of_cosines ? zeros_of_cosines(series, all, onto_circle) : zeros_of_powers(all);
        consider(std::move(zeros), onto_circle, core, rest, best);
    }
}

void consider(ResponseZeros zeros, bool onto_circle, std::span<const double> core, const Deflated& rest,
              Extraction& best) {
    zeros.real.insert(zeros.real.end(), rest.zeros.begin(), rest.zeros.end());
    if (onto_circle) put_onto_circle(zeros);
    Extraction made{factors_of(rows_of(zeros))};
    made.factors.multiplier = core.front();
    made.missed = relative_difference(product_of(made.factors), core);
    if (made.missed < best.missed) best = made;
}

double relative_difference(std::span<const double> product, std::span<const double> taps) {
    if (product.size() != taps.size()) return HUGE_VAL;
    double peak = 0, difference = 0;
    for (std::size_t i = 0; i < taps.size(); ++i) {
        peak = std::max(peak, std::fabs(taps[i]));
        if (!std::isfinite(product[i])) return HUGE_VAL;
        difference = std::max(difference, std::fabs(product[i] - taps[i]));
    }
    return difference / peak;
}

Deflated without_unit_zeros(std::span<const double> taps) {
    Deflated rest{{taps.begin(), taps.end()}, {}};
    TapReal sum = 0;
    for (const double h : taps) sum += std::fabs(h);
    for (const int zero : {1, -1}) {
        while (rest.taps.size() > 1) {
            std::vector<TapReal> quotient = rest.taps;
            for (std::size_t i = 1; i < quotient.size(); ++i) quotient[i] += zero * quotient[i - 1];
            if (abs(quotient.back()) > TapReal(zero_value) * sum) break;
            quotient.pop_back();
            rest = {std::move(quotient), std::move(rest.zeros)};
            rest.zeros.push_back(zero);
        }
    }
    return rest;
}

bool is_mirrored(std::span<const double> taps) {
    const double sign = taps.front() == taps.back() ? 1 : -1;
    return std::equal(taps.begin(), taps.end(), taps.rbegin(), [&](double a, double b) { return a == sign * b; });
}

SplitZeros split(const std::vector<Point>& zeros, bool of_cosines) {
    SplitZeros all;
    std::vector<Point> lower;
    for (const Point& z : zeros) {
        const Wide size = std::hypot(z.re, z.im);
        if (std::fabs(z.im) <= is_real * (of_cosines ? std::max(size, Wide{1}) : size)) {
            all.real.push_back(z.re);
        } else {
            (z.im > 0 ? all.upper : lower).push_back(z);
        }
    }
    // Of a cluster that rounding has left a side may have more: those are real.
    std::vector<Point> paired;
    for (const Point& z : all.upper) {
        const auto partner = std::ranges::min_element(
            lower, {}, [&](const Point& other) { return std::hypot(other.re - z.re, other.im + z.im); });
        if (partner == lower.end()) {
            all.real.push_back(z.re);
            continue;
        }
        paired.push_back({(z.re + partner->re) / 2, (z.im - partner->im) / 2});
        lower.erase(partner);
    }
    for (const Point& z : lower) all.real.push_back(z.re);
    all.upper = paired;
    std::ranges::sort(all.real);
    return all;
}

// The zeros of 1 - x z^-1 + z^-2: a pair on the circle, or a zero and its inverse.
void add_real(Wide x, ResponseZeros& zeros) {
    if (std::fabs(x) <= 2) {
        zeros.pairs.push_back({-x, 1});
        return;
    }
    const Wide half = x / 2, outer = half + std::copysign(std::sqrt((half - 1) * (half + 1)), half);
    zeros.real.push_back(outer);
    zeros.real.push_back(1 / outer);
}
void add_pair(Point x, ResponseZeros& zeros) {
    const std::complex<Wide> half(x.re / 2, x.im / 2);
    const std::complex<Wide> root = std::sqrt(half - Wide{1}) * std::sqrt(half + Wide{1});
    const std::complex<Wide> outer = std::norm(half + root) > 1 ? half + root : half - root;
    const Wide square = std::norm(outer), linear = -2 * outer.real();
    zeros.pairs.push_back({linear, square});
    zeros.pairs.push_back({linear / square, 1 / square});
}

ResponseZeros zeros_of_cosines(const TapSeries& cosines, const SplitZeros& x, bool onto_circle) {
    ResponseZeros zeros;
    const auto is_double = [&](Wide middle, Wide apart) {
        return onto_circle && apart <= nearly_double && std::fabs(middle) <= 2 &&
               level_at(cosines, middle) <= tap_noise;
    };
    const auto add_double = [&](Wide middle) { zeros.pairs.insert(zeros.pairs.end(), 2, {-middle, 1}); };
    for (std::size_t i = 0; i < x.real.size(); ++i) {
        const bool last = i + 1 == x.real.size();
        const Wide middle = last ? x.real[i] : (x.real[i] + x.real[i + 1]) / 2;
        if (!last && is_double(middle, x.real[i + 1] - x.real[i])) {
            add_double(middle);
            ++i;
        } else {
            add_real(x.real[i], zeros);
        }
    }
    for (const Point& pair : x.upper) {
        is_double(pair.re, 2 * pair.im) ? add_double(pair.re) : add_pair(pair, zeros);
    }
    return zeros;
}

ResponseZeros zeros_of_powers(const SplitZeros& z) {
    ResponseZeros zeros{z.real, {}};
    for (const Point& pair : z.upper) zeros.pairs.push_back({-2 * pair.re, pair.re * pair.re + pair.im * pair.im});
    return zeros;
}

void put_onto_circle(ResponseZeros& zeros) {
    for (Wide& zero : zeros.real) {
        if (zero == std::copysign(Wide{1}, zero) || std::fabs(std::fabs(zero) - 1) > factor_circle) continue;
        zero = std::copysign(Wide{1}, zero);
    }
    for (auto& [linear, quadratic] : zeros.pairs) {
        const Wide radius = std::sqrt(quadratic);
        if (radius == 1 || std::fabs(radius - 1) > factor_circle) continue;
        linear /= radius;
        quadratic = 1;
    }
}

// Real zeros inside the circle, on it and outside go two by two; those that are left over share a factor only where
// there would be too many.
std::vector<WideRow> with_real_zeros(const ResponseZeros& zeros) {
    std::vector<WideRow> rows = zeros.pairs;
    const auto side = [](Wide zero) { return std::fabs(zero) < 1 ? 0 : std::fabs(zero) > 1 ? 2 : 1; };
    std::vector<Wide> sides[3], left;
    for (const Wide zero : zeros.real) sides[side(zero)].push_back(zero);
    const auto add_two = [&](Wide a, Wide b) { rows.push_back({-(a + b), a * b}); };
    for (std::vector<Wide>& own : sides) {
        std::ranges::sort(own);
        for (std::size_t i = 0; i + 1 < own.size(); i += 2) add_two(own[i], own[i + 1]);
        if (own.size() % 2 == 1) left.push_back(own.back());
    }
    if (left.size() >= 2 && rows.size() + left.size() > fir_factor_limit) {
        add_two(left[0], left[1]);
        left.erase(left.begin(), left.begin() + 2);
    }
    for (const Wide zero : left) rows.push_back({-zero, 0});
    return rows;
}

std::vector<QuadraticRow> rows_of(const ResponseZeros& zeros) {
    std::vector<WideRow> rows = with_real_zeros(zeros);
    const auto angle = [](const WideRow& row) {
        const Wide half = -row.linear / 2;
        return std::atan2(std::sqrt(std::max(Wide{0}, row.quadratic - half * half)), half);
    };
    std::ranges::sort(rows, {}, [&](const WideRow& row) { return std::pair(angle(row), row.quadratic); });
    std::vector<QuadraticRow> rounded;
    for (const auto& [linear, quadratic] : rows) {
        rounded.push_back({static_cast<double>(linear), static_cast<double>(quadratic)});
    }
    return rounded;
}

}  // namespace

}  // namespace kavrel
