#include "fir/exchange.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace kavrel {

namespace {

constexpr int max_extrema = max_fir_functions + 1;

// Sums over the extrema run in two lanes, in every build the same.
using Pair = double __attribute__((vector_size(16)));
constexpr std::size_t lanes = 2;

// A(x) by its values at the extremal abscissae.
class Interpolant {
public:
    // Deviation and interpolant with equal alternating error on `extrema`. False when points coincide.
    [[nodiscard]] bool fit(const FirGrid& grid, const Table<int, max_extrema + 1>& extrema, int count);
    [[nodiscard]] double operator()(double x) const;

    [[nodiscard]] double deviation() const { return dev; }
    [[nodiscard]] int first_sign() const { return nu; }  // sign of the error A - DES at the first point
    [[nodiscard]] int count() const { return nodes; }
    [[nodiscard]] double abscissa(int j) const { return x_node[static_cast<std::size_t>(j - 1)]; }
    [[nodiscard]] double ordinate(int j) const { return y[static_cast<std::size_t>(j - 1)]; }

private:
    using Row = std::array<double, (max_extrema + lanes - 1) / lanes * lanes>;

    [[nodiscard]] static Pair pair(const Row& row, std::size_t j) { return Pair{row[j], row[j + 1]}; }
    void lagrange_weights();
    [[nodiscard]] double at_node(double x) const;

    int nodes = 0, nu = 1;
    std::size_t padded = 0;
    double dev = 0;
    alignas(Pair) Row x_node{}, ad{}, y{};  // abscissae, Lagrange weights, ordinates; the padding has weight 0
};

// The extremal points of one pass and the search for the next ones.
class ExtremaSearch {
public:
    ExtremaSearch(const FirGrid& on_grid, int nfcns);

    [[nodiscard]] bool fit() { return interpolant.fit(grid, iext, nz); }
    [[nodiscard]] bool improve();  // false when no point moves
    [[nodiscard]] const Interpolant& approximation() const { return interpolant; }
    [[nodiscard]] int operator()(int j) const { return iext(j); }

private:
    struct Peak {
        int k;         // grid index, 0: none
        double value;  // weighted error there
    };

    [[nodiscard]] double error(int k) const { return (interpolant(grid.X(k)) - grid.DES(k)) * grid.WT(k); }
    [[nodiscard]] int sign_at(int j) const { return j % 2 == 1 ? interpolant.first_sign() : -interpolant.first_sign(); }
    [[nodiscard]] Peak climb(int k, double value, int step, int stop, int sign) const;
    [[nodiscard]] Peak first_above(double level, int from, int step, int stop, int sign) const;
    bool move_to_peaks(double& first_value, double& last_value);
    bool exchange_ends(int lowest, int highest, double first_value, double last_value);
    bool move_anywhere();
    bool take(int j, int k, double error_at_k);

    const FirGrid& grid;
    const int nz;
    Table<int, max_extrema + 1> iext{};  // [nz+1] = NGRID + 1, a sentinel
    Interpolant interpolant;
};

void cosine_series(const FirGrid& grid, const Interpolant& a, int nfcns, ExchangeResult& result);
struct Variable {  // x' = aa x + bb runs over -1 to 1 where x runs over the grid
    double aa = 1, bb = 0;
};
Variable choose_variable(const FirGrid& grid, int nfcns);
using Series = std::array<double, max_fir_functions + 2>;
void sample(const Interpolant& a, Variable v, const Series& cosine, int nfcns, Series& values);
void inverse_transform(const Series& cosine, const Series& values, int nfcns, Series& coefficients);
void back_to_cosines(Variable v, int nfcns, Series& coefficients);

}  // namespace

ExchangeStatus exchange(const FirGrid& grid, int nfcns, ExchangeWatcher& watcher, ExchangeResult& result) {
    result = {};
    const auto ends_as = [&result](ExchangeStatus status) { return result.status = status; };
    if (nfcns < 1 || nfcns > max_fir_functions || grid.NGRID <= nfcns || grid.NGRID > max_fir_grid) {
        return ends_as(ExchangeStatus::degenerate);
    }

    ExtremaSearch extrema(grid, nfcns);
    ExchangeStatus status = ExchangeStatus::limit_reached;
    double previous = -1;
    while (status == ExchangeStatus::limit_reached && result.iterations < max_exchange_passes) {
        ++result.iterations;
        if (!watcher.pass(result.iterations)) return ends_as(ExchangeStatus::stopped);
        if (!extrema.fit()) return ends_as(ExchangeStatus::degenerate);
        result.DEV = extrema.approximation().deviation();
        if (result.DEV < previous) {
            status = ExchangeStatus::deviation_fell;
        } else if (!extrema.improve()) {
            status = ExchangeStatus::converged;
        }
        previous = result.DEV;
    }

    for (int j = 1; j <= nfcns + 1; ++j) result.IEXT(j) = extrema(j);
    cosine_series(grid, extrema.approximation(), nfcns, result);
    return ends_as(status);
}

HalfResponse impulse_response(const FirPlan& plan, const ExchangeResult& result) {
    const auto& alpha = result.ALPHA;
    const int nfcns = plan.NFCNS, nz = nfcns + 1;
    const auto above = [&](int i) { return i <= nfcns ? alpha(i) : 0.0; };
    HalfResponse h;
    if (plan.NEG == 0 && plan.NODD == 1) {
        for (int j = 1; j < nfcns; ++j) h(j) = 0.5 * alpha(nz - j);
        h(nfcns) = alpha(1);
        return h;
    }
    const double sign = plan.NEG == 0 ? 1 : -1;
    const int apart = plan.NEG == 1 && plan.NODD == 1 ? 2 : 1;
    for (int j = 1; j < nfcns; ++j) h(j) = 0.25 * (alpha(nz - j) + sign * above(nz - j + apart));
    h(nfcns) = 0.5 * alpha(1) + sign * 0.25 * above(1 + apart);
    return h;
}

namespace {

// ---------------------------------------------------------------------------------------------------- interpolation

bool Interpolant::fit(const FirGrid& grid, const Table<int, max_extrema + 1>& extrema, int count) {
    nodes = count;
    const auto n = static_cast<std::size_t>(nodes);
    padded = (n + lanes - 1) / lanes * lanes;
    for (std::size_t j = 0; j < n; ++j) x_node[j] = grid.X(extrema(static_cast<int>(j) + 1));
    for (std::size_t j = n; j < padded; ++j) x_node[j] = 4, ad[j] = 0, y[j] = 0;
    lagrange_weights();

    // DES + alternating DEV / WT is a polynomial of degree nodes - 2: its divided difference over all nodes is zero
    double dnum = 0, dden = 0, sign = 1;
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        const int k = extrema(static_cast<int>(j) + 1);
        dnum += ad[j] * grid.DES(k);
        dden += sign * ad[j] / grid.WT(k);
    }
    dev = dnum / dden;
    nu = dev > 0 ? -1 : 1;
    dev = -nu * dev;
    sign = nu;
    for (std::size_t j = 0; j < n; ++j, sign = -sign) {
        const int k = extrema(static_cast<int>(j) + 1);
        y[j] = grid.DES(k) + sign * dev / grid.WT(k);
    }
    return std::isfinite(dev);
}

// ad(k) = 1 / prod 2 (x(k) - x(j)), j not k. The factors are taken in strides, so that near and far ones mix and no
// partial product runs out of range; the factor 2 balances the capacity 1/2 of the interval -1 to 1.
void Interpolant::lagrange_weights() {
    const auto n = static_cast<std::size_t>(nodes);
    const std::size_t jet = (n - 2) / 15 + 1;
    std::fill_n(ad.begin(), n, 1.0);
    for (std::size_t first = 0; first < jet; ++first) {
        for (std::size_t j = first; j < n; j += jet) {
            const double xj = x_node[j];
            for (std::size_t k = 0; k < j; ++k) ad[k] *= 2 * (x_node[k] - xj);
            for (std::size_t k = j + 1; k < n; ++k) ad[k] *= 2 * (x_node[k] - xj);
        }
    }
    for (std::size_t k = 0; k < n; ++k) ad[k] = 1 / ad[k];
}

// A(x) = sum (ad y / (x - x_node)) / sum (ad / (x - x_node))
double Interpolant::operator()(double x) const {
    Pair num{}, den{};
    for (std::size_t j = 0; j < padded; j += lanes) {
        const Pair term = pair(ad, j) / (x - pair(x_node, j));
        den += term;
        num += term * pair(y, j);
    }
    const double a = (num[0] + num[1]) / (den[0] + den[1]);
    return std::isfinite(a) ? a : at_node(x);
}

double Interpolant::at_node(double x) const {
    const auto end = x_node.begin() + nodes;
    const auto node = std::find(x_node.begin(), end, x);
    return node == end ? std::nan("") : y[static_cast<std::size_t>(node - x_node.begin())];
}

// --------------------------------------------------------------------------------------------------------- search

ExtremaSearch::ExtremaSearch(const FirGrid& on_grid, int nfcns) : grid(on_grid), nz(nfcns + 1) {
    const double spacing = static_cast<double>(grid.NGRID - 1) / nfcns;
    for (int j = 1; j <= nfcns; ++j) iext(j) = static_cast<int>((j - 1) * spacing + 1);
    iext(nz) = grid.NGRID;
    iext(nz + 1) = grid.NGRID + 1;
}

// A point whose neighbours both have smaller errors stays. Only when all stay is the rest of the grid looked at.
bool ExtremaSearch::improve() {
    const int old_first = iext(1), old_last = iext(nz);
    double first_value = 0, last_value = 0;
    const bool moved = move_to_peaks(first_value, last_value);
    const int lowest = std::min(old_first, iext(1)), highest = std::max(old_last, iext(nz));
    const bool replaced = exchange_ends(lowest, highest, first_value, last_value);
    return moved || replaced || move_anywhere();
}

// Each point climbs from its place to the next peak, upward if the error rises there, else downward, between the new
// place of the point below and the old place of the point above.
bool ExtremaSearch::move_to_peaks(double& first_value, double& last_value) {
    bool moved = false;
    for (int j = 1, below = 0; j <= nz; ++j) {
        const int k = iext(j), above = iext(j + 1), sign = sign_at(j);
        Peak peak = climb(k, interpolant.deviation(), +1, above, sign);
        if (peak.k == k) peak = climb(k, interpolant.deviation(), -1, below, sign);
        moved = moved || peak.k != k;
        if (j == 1) first_value = peak.value;
        last_value = peak.value;
        below = iext(j) = peak.k;
    }
    return moved;
}

// A further extremum below the first or above the last point replaces the one at the other end, when it is larger than
// that one and larger than the other newcomer.
bool ExtremaSearch::exchange_ends(int lowest, int highest, double first_value, double last_value) {
    constexpr double margin = 1.00001;
    const Peak low = first_above(last_value * margin, 1, +1, lowest, -sign_at(1));
    const double rival = low.k != 0 ? std::max(first_value, low.value) : first_value;
    const Peak high = first_above(rival * margin, grid.NGRID, -1, highest, -sign_at(nz));
    if (high.k != 0) {
        for (int j = 1; j < nz; ++j) iext(j) = iext(j + 1);
        iext(nz) = high.k;
    } else if (low.k != 0) {
        for (int j = nz; j > 1; --j) iext(j) = iext(j - 1);
        iext(1) = low.k;
    }
    return high.k != 0 || low.k != 0;
}

// The first grid point with a larger error than the deviation, wherever it lies, draws that one of its neighbours to
// its peak whose sign it has.
bool ExtremaSearch::move_anywhere() {
    for (int k = 1, j = 0; k <= grid.NGRID; ++k) {  // j: the last extremum at or below k
        if (iext(j + 1) == k) {
            ++j;
        } else if (take(j, k, error(k))) {
            return true;
        }
    }
    return false;
}

bool ExtremaSearch::take(int j, int k, double error_at_k) {
    if (!(std::abs(error_at_k) - interpolant.deviation() > 0)) return false;
    const int owner = j > 0 && sign_at(j) * error_at_k > 0 ? j : j + 1;
    if (owner > nz || !(sign_at(owner) * error_at_k > 0)) return false;  // an end that exchange_ends left as it was
    const int step = owner == j ? +1 : -1, stop = owner == j ? iext(j + 1) : (j == 0 ? 0 : iext(j));
    iext(owner) = climb(k, std::abs(error_at_k), step, stop, sign_at(owner)).k;
    return true;
}

// From grid point k, where the error is `value`, in direction `step` as long as it rises; `stop` is out of bounds.
ExtremaSearch::Peak ExtremaSearch::climb(int k, double value, int step, int stop, int sign) const {
    for (int next = k + step; step * (stop - next) > 0; next += step) {
        const double there = sign * error(next);
        if (!(there - value > 0)) break;
        k = next;
        value = there;
    }
    return {k, value};
}

// The peak that follows the first error above `level` on the way from `from` to `stop` (exclusive).
ExtremaSearch::Peak ExtremaSearch::first_above(double level, int from, int step, int stop, int sign) const {
    for (int k = from; step * (stop - k) > 0; k += step) {
        const double there = sign * error(k);
        if (there - level > 0) return climb(k, there, step, stop, sign);
    }
    return {0, level};
}

// --------------------------------------------------------------------------------------------------- coefficients

// A is sampled at the NFCNS abscissae x' = cos(2 pi i / n), n = 2 NFCNS - 1, and transformed. Where the grid covers
// only a part of 0 to 0.5, A may be huge in the rest: there x' is the grid's own variable, and its series is rewritten
// in x.
void cosine_series(const FirGrid& grid, const Interpolant& a, int nfcns, ExchangeResult& result) {
    const double n = 2 * nfcns - 1;
    Series cosine{}, values{}, coefficients{};
    for (int i = 0; i < nfcns; ++i) cosine[static_cast<std::size_t>(i)] = std::cos(fir_two_pi * i / n);

    const Variable v = choose_variable(grid, nfcns);
    sample(a, v, cosine, nfcns, values);
    inverse_transform(cosine, values, nfcns, coefficients);
    if (v.aa != 1 || v.bb != 0) back_to_cosines(v, nfcns, coefficients);
    for (int i = 1; i <= nfcns; ++i) result.ALPHA(i) = coefficients[static_cast<std::size_t>(i - 1)];
}

Variable choose_variable(const FirGrid& grid, int nfcns) {
    if (nfcns < 4 || (grid.GRID(1) < 0.01 && grid.GRID(grid.NGRID) > 0.49)) return {};
    const double high = grid.X(1), low = grid.X(grid.NGRID);
    return {.aa = 2 / (high - low), .bb = -(high + low) / (high - low)};
}

// The samples and the extremal abscissae both descend.
void sample(const Interpolant& a, Variable v, const Series& cosine, int nfcns, Series& values) {
    constexpr double coincidence = 1.0e-12;
    int j = 1;
    for (std::size_t i = 0; i < static_cast<std::size_t>(nfcns); ++i) {
        const double x = (cosine[i] - v.bb) / v.aa;
        while (j < a.count() && a.abscissa(j) - x >= coincidence) ++j;
        values[i] = std::abs(a.abscissa(j) - x) < coincidence ? a.ordinate(j) : a(x);
    }
}

// c(k) = (2 / n) (v(0) + 2 sum of v(i) cos(2 pi i k / n), i = 1..NFCNS-1), half of it for k = 0
void inverse_transform(const Series& cosine, const Series& values, int nfcns, Series& coefficients) {
    const int n = 2 * nfcns - 1;
    for (int k = 0; k < nfcns; ++k) {
        double sum = 0;
        for (int i = 1, m = k; i < nfcns; ++i) {  // m = i k modulo n; cos(2 pi m / n) is even about n / 2
            sum += values[static_cast<std::size_t>(i)] * cosine[static_cast<std::size_t>(std::min(m, n - m))];
            m += k;
            if (m >= n) m -= n;
        }
        const double scale = k == 0 ? 1 : 2;
        coefficients[static_cast<std::size_t>(k)] = scale * (2 * sum + values[0]) / n;
    }
}

// Clenshaw's recurrence b(k) = c(k) + 2 x' b(k+1) - b(k+2) with x' = aa x + bb and the b held as cosine series in x,
// where x cos(i w) = (cos((i+1) w) + cos((i-1) w)) / 2. The sum is c(0) + x' b(1) - b(2).
void back_to_cosines(Variable v, int nfcns, Series& coefficients) {
    Series b1{}, b2{}, b{};
    for (int k = nfcns - 1; k >= 0; --k) {
        const double twice = k == 0 ? 1 : 2;
        const auto degree = static_cast<std::size_t>(nfcns - 1 - k);  // of the new b; b1 and b2 are 0 from there on
        for (std::size_t i = 0; i <= degree; ++i) {
            const double lower = i == 0 ? 0 : (i == 1 ? 2 : 1) * b1[i - 1];
            b[i] = twice * (0.5 * v.aa * (lower + b1[i + 1]) + v.bb * b1[i]) - b2[i];
        }
        b[0] += coefficients[static_cast<std::size_t>(k)];
        b2 = b1;
        b1 = b;
    }
    coefficients = b1;
}

}  // namespace

}  // namespace kavrel
