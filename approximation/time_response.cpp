#include "approximation/time_response.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

#include "numeric/complex.h"

namespace kavrel {

namespace {

using Real = long double;
using Root = Complex<Real>;

constexpr int state_bound = max_degree + 1;  // state 0 is the constant input
constexpr Real conjugate_match = 1e-6L;      // of a pair's two roots, relative

// The roots in the upper half plane, each of which represents a pair, and the real ones.
struct Roots {
    int pairs = 0;
    int reals = 0;
    Table<Root, max_degree> pair;
    Table<Real, max_degree> real;
};

// N/D with D = (s - p1)(s - p2) or s - p1, and N of at most that degree, by two zeros, one, or none.
struct Section {
    int order = 2;
    Real sigma1 = 0;  // a pair's real part twice, or two real poles
    Real sigma2 = 0;
    Real omega = 0;  // a pair's imaginary part, or 0
    Real size = 1;   // |p1|
    int zeros = 0;
    Root zero1{};
    Root zero2{};
};

struct Sections {
    int count = 0;
    Table<Section, max_degree> section;
};

using Vector = std::array<Real, state_bound>;

// Blocks of one or two states on the diagonal and nothing above them, as in every product: (i, j) is 0 for j > i + 1.
struct Matrix {
    std::array<Vector, state_bound> row{};
};

struct StateSpace {
    int size = 1;    // states, the input among them
    Matrix A;        // column 0 holds B
    Vector C{};      // C(0) is the direct term
    Real level = 0;  // H = level (C (S - A)^-1 B + C(0)), S = s/unit
    Real unit = 1;   // rad/sec
    Real norm = 0;   // of A, the largest sum of a row
};

// The two answers as they are `now`, in units of 1/unit.
struct Motion {
    Real now = 0;
    Vector struck{};   // after an impulse: x(0+) = B
    Vector stepped{};  // after a step: the input is 1 from now on
    Real reach = 0;    // of E = exp(A reach), 0 before there is one
    Matrix E;
};

[[nodiscard]] TimeVerdict sort_roots(int count, const Table<double, max_degree>& re,
                                     const Table<double, max_degree>& im, Real unit, Roots& roots);
[[nodiscard]] TimeVerdict sort_roots(const TransferFunction& transfer, Real unit, Roots& poles, Roots& zeros);
[[nodiscard]] Real largest_root(const TransferFunction& transfer);
[[nodiscard]] Real level_of(const Roots& poles, const Roots& zeros);
void make_sections(const Roots& poles, Sections& sections);
void deal_zeros(Roots& zeros, Sections& sections);
void build(const Sections& sections, StateSpace& system);
void start(const StateSpace& system, Motion& motion);
void move_to(const StateSpace& system, Real then, Motion& motion);
[[nodiscard]] Real output(const StateSpace& system, const Vector& x);

}  // namespace

std::string_view message_of(TimeVerdict verdict) {
    for (const TimeMessage& row : time_messages) {
        if (row.verdict == verdict) return row.text;
    }
    return {};
}

TimeVerdict time_response(const TransferFunction& transfer, std::span<const double> times, Watcher& watcher,
                          std::span<double> impulse, std::span<double> step) {
    if (impulse.size() != times.size() || step.size() != times.size()) return TimeVerdict::bad_times;
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (!std::isfinite(times[i]) || (i > 0 && times[i] < times[i - 1])) return TimeVerdict::bad_times;
    }
    if (transfer.poleCount < 1) return TimeVerdict::no_modes;
    if (transfer.zeroCount > transfer.poleCount) return TimeVerdict::improper;

    StateSpace system;
    system.unit = largest_root(transfer);
    Roots poles;
    Roots zeros;
    if (const auto verdict = sort_roots(transfer, system.unit, poles, zeros); verdict != TimeVerdict::done) {
        return verdict;
    }
    system.level = level_of(poles, zeros);
    Sections sections;
    make_sections(poles, sections);
    deal_zeros(zeros, sections);
    build(sections, system);

    Motion motion;
    start(system, motion);
    for (std::size_t i = 0; i < times.size(); ++i) {
        if (!watcher.go_on()) return TimeVerdict::stopped;
        if (times[i] < 0) {
            impulse[i] = step[i] = 0;
            continue;
        }
        move_to(system, system.unit * static_cast<Real>(times[i]), motion);
        impulse[i] = static_cast<double>(system.level * system.unit * output(system, motion.struck));
        step[i] = static_cast<double>(system.level * output(system, motion.stepped));
    }
    return TimeVerdict::done;
}

namespace {

Real largest_root(const TransferFunction& transfer) {
    Real largest = 0;
    for (int i = 1; i <= transfer.poleCount; ++i) {
        largest = std::max(largest, static_cast<Real>(std::hypot(transfer.POLES_RE(i), transfer.POLES_IM(i))));
    }
    return largest > 0 ? largest : 1;
}

// |H(jw)|^2 at the level 1.
Real power(const Roots& poles, const Roots& zeros, Real w) {
    const auto product = [w](const Roots& roots) {
        Real square = 1;
        for (int i = 1; i <= roots.pairs; ++i) {
            const Root r = roots.pair(i);
            square *= (r.re * r.re + (w - r.im) * (w - r.im)) * (r.re * r.re + (w + r.im) * (w + r.im));
        }
        for (int i = 1; i <= roots.reals; ++i) square *= roots.real(i) * roots.real(i) + w * w;
        return square;
    };
    return product(zeros) / product(poles);
}

// The largest value between two frequencies, by golden section.
Real summit(const Roots& poles, const Roots& zeros, Real from, Real to) {
    constexpr Real golden = std::numbers::phi_v<Real> - 1;
    Real left = to - golden * (to - from);
    Real right = from + golden * (to - from);
    Real at_left = power(poles, zeros, left);
    Real at_right = power(poles, zeros, right);
    for (int i = 0; i < 60; ++i) {
        if (at_left > at_right) {
            to = std::exchange(right, left);
            at_right = at_left;
            left = to - golden * (to - from);
            at_left = power(poles, zeros, left);
        } else {
            from = std::exchange(left, right);
            at_left = at_right;
            right = from + golden * (to - from);
            at_right = power(poles, zeros, right);
        }
    }
    return std::max(at_left, at_right);
}

// 1 over the largest gain. A summit lies within some widths of a pole; the frequencies around each pole bracket it.
Real level_of(const Roots& poles, const Roots& zeros) {
    constexpr std::array<Real, 10> widths = {0, 0.25, 0.5, 0.75, 1, 1.5, 2, 3, 5, 10};
    std::array<Real, static_cast<std::size_t>(max_degree) * 2 * widths.size() + 1> frequencies{};
    std::size_t count = 1;  // 0 is the first
    const auto around = [&](Root p) {
        for (const Real width : widths) {
            for (const Real w : {p.im + width * p.re, p.im - width * p.re}) {
                frequencies[count++] = std::fabs(w);
            }
        }
    };
    for (int i = 1; i <= poles.pairs; ++i) around(poles.pair(i));
    for (int i = 1; i <= poles.reals; ++i) around({poles.real(i), 0});
    std::sort(frequencies.begin(), frequencies.begin() + static_cast<std::ptrdiff_t>(count));

    Real most = zeros.reals + 2 * zeros.pairs == poles.reals + 2 * poles.pairs ? 1 : 0;  // at infinity
    Real before = 0;
    Real here = power(poles, zeros, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const bool last = i + 1 == count;
        const Real after = last ? 0 : power(poles, zeros, frequencies[i + 1]);
        most = std::max(most, here);
        if (i > 0 && !last && here >= before && here >= after) {
            most = std::max(most, summit(poles, zeros, frequencies[i - 1], frequencies[i + 1]));
        }
        before = std::exchange(here, after);
    }

    // A sign at s = 0 can come from real zeros alone.
    Real sign = 1;
    for (int i = 1; i <= zeros.reals; ++i) sign *= -zeros.real(i);
    return (sign < 0 ? -1 : 1) / std::sqrt(most);
}

TimeVerdict sort_roots(const TransferFunction& transfer, Real unit, Roots& poles, Roots& zeros) {
    const auto verdict = sort_roots(transfer.poleCount, transfer.POLES_RE, transfer.POLES_IM, unit, poles);
    if (verdict != TimeVerdict::done) return verdict;
    return sort_roots(transfer.zeroCount, transfer.ZEROS_RE, transfer.ZEROS_IM, unit, zeros);
}

TimeVerdict sort_roots(int count, const Table<double, max_degree>& re, const Table<double, max_degree>& im, Real unit,
                       Roots& roots) {
    Table<Root, max_degree> lower;
    int lowers = 0;
    for (int i = 1; i <= count; ++i) {
        if (!std::isfinite(re(i)) || !std::isfinite(im(i))) return TimeVerdict::unpaired;
        const Root root{re(i) / unit, im(i) / unit};
        if (root.im > 0) {
            roots.pair(++roots.pairs) = root;
        } else if (root.im < 0) {
            lower(++lowers) = conjugate(root);
        } else {
            roots.real(++roots.reals) = root.re;
        }
    }
    if (lowers != roots.pairs) return TimeVerdict::unpaired;
    for (int i = 1; i <= roots.pairs; ++i) {
        int nearest = i;
        for (int k = i; k <= lowers; ++k) {
            if (largest_part(lower(k) - roots.pair(i)) < largest_part(lower(nearest) - roots.pair(i))) nearest = k;
        }
        std::swap(lower(i), lower(nearest));
        if (largest_part(lower(i) - roots.pair(i)) > conjugate_match * largest_part(roots.pair(i))) {
            return TimeVerdict::unpaired;
        }
    }
    return TimeVerdict::done;
}

// Pairs by their sharpness, the sharpest and the dullest by turns, so that the gain from any section to any later one
// stays small; then the real poles by twos, neighbours together.
void make_sections(const Roots& poles, Sections& sections) {
    Roots sorted = poles;
    const auto blunt = [](Root p) { return -p.re / std::hypot(p.re, p.im); };
    std::sort(sorted.pair.begin(), sorted.pair.begin() + sorted.pairs,
              [&](Root p, Root q) { return blunt(p) < blunt(q); });
    std::sort(sorted.real.begin(), sorted.real.begin() + sorted.reals);
    for (int first = 1, last = sorted.pairs; first <= last;) {
        const Root p = sections.count % 2 == 0 ? sorted.pair(first++) : sorted.pair(last--);
        sections.section(++sections.count) = {
            .sigma1 = p.re, .sigma2 = p.re, .omega = p.im, .size = std::hypot(p.re, p.im)};
    }
    for (int i = 1; i <= sorted.reals; i += 2) {
        const Real p = sorted.real(i);  // the larger one of the two
        const Real size = p != 0 ? std::fabs(p) : 1;
        if (i == sorted.reals) {
            sections.section(++sections.count) = {.order = 1, .sigma1 = p, .size = size};
        } else {
            const Real q = sorted.real(i + 1);
            sections.section(++sections.count) = {.sigma1 = p, .sigma2 = q, .size = size};
        }
    }
}

// Each pair of zeros to the free section whose poles lie nearest, nearest first; then the real ones, the smallest
// first, one for each section that has room, and round again.
void deal_zeros(Roots& zeros, Sections& sections) {
    for (int left = zeros.pairs; left > 0; --left) {
        int zero = 1;
        int place = 0;
        Real least = std::numeric_limits<Real>::infinity();
        for (int i = 1; i <= left; ++i) {
            for (int k = 1; k <= sections.count; ++k) {
                const Section& s = sections.section(k);
                if (s.order != 2 || s.zeros != 0) continue;
                const Real distance = std::hypot(zeros.pair(i).re - s.sigma1, zeros.pair(i).im - s.omega);
                if (distance < least) {
                    least = distance;
                    zero = i;
                    place = k;
                }
            }
        }
        Section& s = sections.section(place);
        s.zeros = 2;
        s.zero1 = zeros.pair(zero);
        s.zero2 = conjugate(s.zero1);
        zeros.pair(zero) = zeros.pair(left);
    }
    std::sort(zeros.real.begin(), zeros.real.begin() + zeros.reals,
              [](Real a, Real b) { return std::fabs(a) < std::fabs(b); });
    for (int i = 1, k = 1; i <= zeros.reals; k = k % sections.count + 1) {
        Section& s = sections.section(k);
        if (s.zeros == s.order) continue;
        (s.zeros == 0 ? s.zero1 : s.zero2) = {zeros.real(i++), 0};
        ++s.zeros;
    }
}

// x1' = sigma1 x1 - (omega^2/size) x2 + u,  x2' = size x1 + sigma2 x2:  X1 = (s - sigma2)/D U, X2 = size/D U, and with
// N = d D + c1 (s - sigma2) + c2 the section gives d u + c1 x1 + (c2/size) x2. Two coinciding poles are a Jordan block.
struct Output {
    Real d = 0, c1 = 0, c2 = 0;
};
Output output_of(const Section& s) {
    if (s.order == 1) return s.zeros == 0 ? Output{0, 1, 0} : Output{1, s.sigma1 - s.zero1.re, 0};
    if (s.zeros == 0) return {0, 0, 1 / s.size};
    if (s.zeros == 1) return {0, 1, (s.sigma2 - s.zero1.re) / s.size};
    const Real a = s.sigma2 - s.zero1.re;
    const Real b = s.sigma2 - s.zero2.re;
    return {1, s.sigma1 + s.sigma2 - s.zero1.re - s.zero2.re,
            (a * b + (s.zero1.im - s.omega) * (s.zero1.im + s.omega)) / s.size};
}

void build(const Sections& sections, StateSpace& system) {
    Vector input{};  // of the section to come, by the states
    input[0] = 1;
    for (int k = 1; k <= sections.count; ++k) {
        const Section& s = sections.section(k);
        Output out = output_of(s);
        const Real scale = std::max({std::fabs(out.d), std::fabs(out.c1) / s.size, std::fabs(out.c2) / s.size});
        out = {out.d / scale, out.c1 / scale, out.c2 / scale};
        system.level *= scale;

        const auto i = static_cast<std::size_t>(system.size);
        system.A.row[i] = input;
        system.A.row[i][i] = s.sigma1;
        if (s.order == 2) {
            system.A.row[i][i + 1] = -s.omega * (s.omega / s.size);
            system.A.row[i + 1][i] = s.size;
            system.A.row[i + 1][i + 1] = s.sigma2;
        }
        for (Real& x : input) x *= out.d;
        input[i] = out.c1;
        if (s.order == 2) input[i + 1] = out.c2;
        system.size += s.order;
    }
    system.C = input;
    for (const Vector& row : system.A.row) {
        Real sum = 0;
        for (const Real a : row) sum += std::fabs(a);
        system.norm = std::max(system.norm, sum);
    }
}

Matrix product(const Matrix& a, const Matrix& b, int size) {
    const auto n = static_cast<std::size_t>(size);
    Matrix c;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t k = 0; k < std::min(i + 2, n); ++k) {
            for (std::size_t j = 0; j < std::min(k + 2, n); ++j) c.row[i][j] += a.row[i][k] * b.row[k][j];
        }
    }
    return c;
}

// exp(A t) by its series at t/2^k, squared k times.
void exponential(const StateSpace& system, Real t, Matrix& E) {
    int doublings = 0;
    for (; system.norm * t > 0.5L; t /= 2) ++doublings;
    const auto n = static_cast<std::size_t>(system.size);
    Matrix term{};
    for (std::size_t i = 0; i < n; ++i) term.row[i][i] = 1;
    E = term;
    Real bound = 1;
    for (int power = 1; bound > 1e-25L; ++power) {
        bound *= system.norm * t / static_cast<Real>(power);
        term = product(system.A, term, system.size);
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < std::min(i + 2, n); ++j) {
                term.row[i][j] *= t / static_cast<Real>(power);
                E.row[i][j] += term.row[i][j];
            }
        }
    }
    for (; doublings > 0; --doublings) E = product(E, E, system.size);
}

Vector product(const Matrix& a, const Vector& x, int size) {
    const auto n = static_cast<std::size_t>(size);
    Vector y{};
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < std::min(i + 2, n); ++j) y[i] += a.row[i][j] * x[j];
    }
    return y;
}

// exp(A t) x by the series, for |t| of about 1/norm.
void advance_little(const StateSpace& system, Real t, Vector& x) {
    Vector term = x;
    Real bound = 1;
    for (int power = 1; bound > 1e-25L && t != 0; ++power) {
        bound *= system.norm * std::fabs(t) / static_cast<Real>(power);
        term = product(system.A, term, system.size);
        for (std::size_t i = 0; i < x.size(); ++i) {
            term[i] *= t / static_cast<Real>(power);
            x[i] += term[i];
        }
    }
}

void start(const StateSpace& system, Motion& motion) {
    for (std::size_t i = 1; i < static_cast<std::size_t>(system.size); ++i) motion.struck[i] = system.A.row[i][0];
    motion.stepped[0] = 1;
}

// Equal steps, and those that rounding makes a little unequal, share one exponential.
void move_to(const StateSpace& system, Real then, Motion& motion) {
    Real rest = then - motion.now;
    motion.now = then;
    if (system.norm * rest > 1) {
        if (motion.reach == 0 || system.norm * std::fabs(rest - motion.reach) > 1) {
            motion.reach = rest;
            exponential(system, rest, motion.E);
        }
        motion.struck = product(motion.E, motion.struck, system.size);
        motion.stepped = product(motion.E, motion.stepped, system.size);
        rest -= motion.reach;
    }
    advance_little(system, rest, motion.struck);
    advance_little(system, rest, motion.stepped);
}

Real output(const StateSpace& system, const Vector& x) {
    return std::inner_product(x.begin(), x.end(), system.C.begin(), Real{0});
}

}  // namespace

}  // namespace kavrel
