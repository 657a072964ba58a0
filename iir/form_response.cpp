#include "iir/form_response.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "iir/circle_point.h"
#include "numeric/complex.h"
#include "numeric/lanes.h"

namespace kavrel {

namespace {

using Lanes = LanesOf<double>::Type;

// What a form answers at a place: H over the constants that all places share (`Constants`). Shares are what is left of
// numerator and denominator where terms cancel, squared: 1 where nothing does.
template <class Real>
struct Answer {
    Complex<Real> h;
    Complex<Real> other{};  // of a form with two outputs
    Real delay{};           // samples
    Real zero_delay{};      // samples, of a numerator that is a sum of terms
    Real numerator_share = Real{} + 1.0;
    Real other_share = Real{} + 1.0;  // of the other output
    Real denominator_share = Real{} + 1.0;
};
struct Constants {
    double decibel = 0;  // of the level that was kept out of H
    double lag = 0;      // samples, as a factor w^lag
    double delay = 0;    // samples beside it
    double turned = 0;   // samples by which `zero_delay` is short of that of the zeros
};

constexpr double tiny = 1e-280;  // beside a square: 0/0 becomes a choice, all else stays

// Below this share what doubles leave of H may have fewer digits than single precision, in which results are kept:
// 2^-30, squared.
constexpr double weak_share = 0x1p-60;

// What is left of a sum within the rounding of its coefficients is nothing, 2^-46, squared.
constexpr double nothing_left = 0x1p-92;

template <class Real>
Real square(Complex<Real> z) {
    return z.re * z.re + z.im * z.im;
}

// a0 + a1 w + a2 w^2 = w G, over a power of two.
struct Factor {
    double a0, a1, a2;
    double difference;
    double at_root = 0;  // where a real root is on the circle: what its delay is short of one sample
    int exponent = 0;
};
template <class Real>
struct FactorValue {
    Complex<Real> g;
    Real square;
    Real slope;  // Im(G'/G) times the square
};

Factor factor_of(double a0, double a1, double a2) {
    Factor f{a0, a1, a2, 0};
    std::frexp(std::max({std::fabs(a0), std::fabs(a1), std::fabs(a2)}), &f.exponent);
    for (double* a : {&f.a0, &f.a1, &f.a2}) *a = std::ldexp(*a, -f.exponent);
    f.difference = f.a0 - f.a2;
    // (1 -+ w)(1 -+ b w) at w = +-1.
    if (f.difference != 0 && f.a0 != 0) f.at_root = 0.5 + f.a2 / f.difference;
    return f;
}

template <class Real>
FactorValue<Real> value_at(const Factor& f, const CirclePoint<Real>& at) {
    const Real beside = beside_point(f.a0, f.a1, f.a2, at);
    FactorValue<Real> value;
    value.g = factor_at(f.a0, f.a1, f.a2, at);
    value.square = square(value.g);
    value.slope = f.difference * (at.near * beside + f.a1 * at.off);
    return value;
}

struct CascadeResponse {
    explicit CascadeResponse(const CascadeForm& form) : sections(section_count(form)) {
        int exponent = 0;
        double level = form.CK;
        for (int k = form.NNUM + 1; k <= sections; ++k) level *= form.SC(k);
        front = std::frexp(level, &exponent);
        for (int k = 1; k <= form.NNUM; ++k) {
            numerators(k) = factor_of(form.SC(k), form.C1N(k), form.C2N(k));
            exponent += numerators(k).exponent;
        }
        for (int k = 1; k <= form.NDEN; ++k) {
            denominators(k) = factor_of(1.0, form.C1D(k), form.C2D(k));
            exponent -= denominators(k).exponent;
        }
        numerator_count = form.NNUM, denominator_count = form.NDEN;
        constants = {.decibel = 20 * std::log10(2.0) * exponent, .lag = static_cast<double>(form.NNUM - form.NDEN)};
    }
    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        Answer<Real> answer{.h = {Real{} + front, Real{}}};
        for (int k = 1; k <= sections; ++k) {
            if (k <= numerator_count) {
                const auto n = value_at(numerators(k), at);
                answer.h *= n.g;
                answer.delay -= (n.slope + numerators(k).at_root * tiny) / (n.square + tiny);
            }
            if (k <= denominator_count) {
                const auto d = value_at(denominators(k), at);
                const Real inverse = 1.0 / d.square;
                answer.h = inverse * (answer.h * conjugate(d.g));
                answer.delay += d.slope * inverse;
            }
        }
        return answer;
    }

    Table<Factor, iir_section_limit> numerators, denominators;
    int numerator_count, denominator_count, sections;
    double front;
    Constants constants;
};

struct ParallelResponse {
    explicit ParallelResponse(const ParallelForm& parallel) : form(parallel) {
        for (int k = 1; k <= form.NPAR; ++k) {
            Factor& f = denominators(k) = factor_of(1.0, form.GA(k), form.DE(k));
            form.AL(k) = std::ldexp(form.AL(k), -f.exponent);
            form.BE(k) = std::ldexp(form.BE(k), -f.exponent);
        }
    }
    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        Answer<Real> answer{.h = {Real{} + form.AO, Real{}}};
        Real terms = Real{} + (form.AO * form.AO + tiny);
        for (int k = 1; k <= form.NPAR; ++k) {  // (AL + BE w)/(w G)
            const auto d = value_at(denominators(k), at);
            const Complex<Real> n{form.AL(k) * at.cosine() + form.BE(k), form.AL(k) * at.sine};
            const Real inverse = 1.0 / d.square;
            answer.h += inverse * (n * conjugate(d.g));
            terms += inverse * square(n);
        }
        answer.numerator_share = square(answer.h) / terms;
        return answer;
    }

    ParallelForm form;
    Table<Factor, 26> denominators;
    Constants constants{};
};

// A polynomial in w of degree n over w^(n/2), and over a power of two: sums of P(t) cos(m theta) and of j Q(t) sin(m
// theta), m = t - 1 or, with an odd n, t - 1/2.
struct TrigonometricSum {
    template <class Real>
    struct Terms {
        Table<Real, 26> P, Q;
    };
    Terms<double> narrow;
    Terms<long double> wide;
    double bound_square = 0;
    int exponent = 0;

    TrigonometricSum(const Table<double, 51>& ascending, int count, int degree) {
        double bound = 0;
        for (int i = 1; i <= count; ++i) bound += std::fabs(ascending(i));
        std::frexp(bound, &exponent);
        bound_square = std::pow(std::ldexp(bound, -exponent), 2);
        const auto c = [&](int k) -> long double {
            return k < count ? std::ldexp(static_cast<long double>(ascending(k + 1)), -exponent) : 0;
        };
        for (int k = degree / 2, t = 1; k >= 0; --k, ++t) {
            const bool middle = 2 * k == degree;
            wide.P(t) = middle ? c(k) : c(k) + c(degree - k);
            wide.Q(t) = middle ? 0 : c(k) - c(degree - k);
            narrow.P(t) = static_cast<double>(wide.P(t));
            narrow.Q(t) = static_cast<double>(wide.Q(t));
        }
    }
    template <class Real>
    [[nodiscard]] const auto& terms() const {
        if constexpr (std::is_same_v<Real, long double>)
            return wide;
        else
            return narrow;
    }
};
template <class Real>
struct SumValue {
    Complex<Real> g{};
    Complex<Real> derivative{};  // by theta

    template <class Term>
    void add(Term p, Term q, double m, Real cosine, Real sine) {
        const Real pc = p * cosine, ps = p * sine, qc = q * cosine, qs = q * sine;
        g += {pc, qs};
        derivative += {-m * ps, m * qc};
    }
    [[nodiscard]] Real slope() const { return derivative.im * g.re - derivative.re * g.im; }
};

struct DirectResponse {
    explicit DirectResponse(const DirectForm& form)
        : degree(std::max({form.JN, form.JD, 1}) - 1),
          numerator(form.ZNUM, form.JN, degree),
          denominator(led_by_one(form.ZDEN), std::max(form.JD, 1), degree) {
        constants.decibel = 20 * std::log10(2.0) * (numerator.exponent - denominator.exponent);
        constants.turned = 0.5 * degree;
    }
    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        const auto& n_terms = numerator.terms<Real>();
        const auto& d_terms = denominator.terms<Real>();
        const bool odd = degree % 2 != 0;
        Complex<Real> turn{odd ? at.half_cosine : Real{} + 1.0, odd ? at.half_sine : Real{}};
        SumValue<Real> n, d;
        double m = odd ? 0.5 : 0;
        for (int t = 1; t <= degree / 2 + 1; ++t, ++m) {
            n.add(n_terms.P(t), n_terms.Q(t), m, turn.re, turn.im);
            d.add(d_terms.P(t), d_terms.Q(t), m, turn.re, turn.im);
            turn *= at.z();
        }
        const Real n_square = square(n.g), d_square = square(d.g), inverse = 1.0 / d_square;
        const Real share = n_square / (numerator.bound_square + tiny);
        return {.h = inverse * (n.g * conjugate(d.g)),
                .delay = d.slope() * inverse,
                .zero_delay = -n.slope() / (n_square + tiny),
                .numerator_share = share,
                .denominator_share = d_square / denominator.bound_square};
    }
    // The first coefficient is not divided out: it counts as 1.
    static Table<double, 51> led_by_one(Table<double, 51> coefficients) {
        coefficients(1) = 1;
        return coefficients;
    }

    int degree;
    TrigonometricSum numerator, denominator;
    Constants constants;
};

// f' = f + k w g, g' = k f + w g from stage to stage; the taps sum g, and the last f is the denominator. Derivatives
// are those by ln w.
struct LatticeResponse {
    explicit LatticeResponse(const LatticeForm& lattice) : form(lattice) {
        double growth = 1, sum = 0;
        for (int i = 1; i <= form.JT; ++i) {
            sum += std::fabs(form.GMTAP(i)) * growth;
            if (i <= form.JM) growth *= 1 + std::fabs(form.GMMUL(i));
        }
        numerator_bound = sum, denominator_bound = growth;
    }
    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        const Complex<Real> w = at.w();
        Complex<Real> f{Real{} + 1.0, Real{}}, g = f, df{}, dg{}, n{}, dn{};
        for (int i = 1; i <= form.JT; ++i) {
            const double tap = form.GMTAP(i);
            n += {tap * g.re, tap * g.im};
            dn += {tap * dg.re, tap * dg.im};
            if (i > form.JM) break;
            const double k = form.GMMUL(i);
            const Complex<Real> u = w * g, du = u + w * dg;
            g = {k * f.re + u.re, k * f.im + u.im};
            dg = {k * df.re + du.re, k * df.im + du.im};
            f += {k * u.re, k * u.im};
            df += {k * du.re, k * du.im};
        }
        const Real n_square = square(n), f_square = square(f), inverse = 1.0 / f_square;
        const Real share = n_square / (numerator_bound * numerator_bound + tiny);
        const auto real_part = [](Complex<Real> a, Complex<Real> b) { return a.re * b.re + a.im * b.im; };
        return {.h = inverse * (n * conjugate(f)),
                .delay = -real_part(df, f) * inverse,
                .zero_delay = real_part(dn, n) / (n_square + tiny),
                .numerator_share = share,
                .denominator_share = f_square / (denominator_bound * denominator_bound)};
    }

    const LatticeForm& form;
    double numerator_bound, denominator_bound;
    Constants constants{};
};

// Each chain is a product of conj(G)/G, in first order times conj(w). Both outputs have the mean of their delays.
struct AllpassResponse {
    AllpassResponse(const AllpassForm& form, AllpassOutput wanted) : filter(wanted) {
        for (int k = 1; k <= form.NTA; ++k) first.factors(++first.count) = factor_of(1.0, form.TA1(k), form.TA2(k));
        for (int k = 1; k <= form.NTB; ++k) second.factors(++second.count) = factor_of(1.0, form.TB1(k), form.TB2(k));
    }
    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        Real delay{};
        const auto a = through(first, at, delay), b = through(second, at, delay);
        const Complex<Real> sum{0.5 * (a.re + b.re), 0.5 * (a.im + b.im)};
        const Complex<Real> difference{0.5 * (b.re - a.re), 0.5 * (b.im - a.im)};
        const bool is_sum = filter == AllpassOutput::sum;
        return {.h = is_sum ? sum : difference,
                .other = is_sum ? difference : sum,
                .delay = 0.5 * delay,
                .numerator_share = is_sum ? square(sum) : square(difference),
                .other_share = is_sum ? square(difference) : square(sum)};
    }

    struct Chain {
        Table<Factor, 13> factors;
        int count = 0;
    };
    template <class Real>
    static Complex<Real> through(const Chain& chain, const CirclePoint<Real>& at, Real& delay) {
        Complex<Real> product{Real{} + 1.0, Real{}};
        for (int k = 1; k <= chain.count; ++k) {
            const auto d = value_at(chain.factors(k), at);
            const Real inverse = 1.0 / d.square;
            const Complex<Real> back = conjugate(d.g);
            product = inverse * (product * (back * back));
            delay += 2.0 * (d.slope * inverse);
            if (chain.factors(k).a2 != 0) continue;
            product *= at.z();
            delay -= 1.0;
        }
        return product;
    }

    Chain first, second;
    AllpassOutput filter;
    Constants constants{};
};

// 1 - |r|^2, 0 within the rounding of a root on the circle.
double inside_of_circle(double re, double im) {
    constexpr double rounding = 4e-16;
    const long double inside = 1 - (static_cast<long double>(re) * re + static_cast<long double>(im) * im);
    return std::fabs(inside) < rounding ? 0 : static_cast<double>(inside);
}

// The product over the roots of u = 1 - r w. The delay of a factor is 1/2 - (1 - |r|^2)/(2 |u|^2): half a sample of a
// root on the circle. Of a linear-phase design such a root has no jump of the phase either.
struct ModesResponse {
    explicit ModesResponse(const IirFilter& filter) {
        const DigitalRoots& roots = filter.roots;
        const bool linear = filter.designed && filter.spec.filterType == linear_phase_low_pass;
        int exponent = 0;
        level = std::frexp(roots.ZMULT / roots.PMULT, &exponent);
        const auto take = [&](double re, double im, int power, Root& root) {
            constexpr double on_circle = 1e-10;
            const double inside = inside_of_circle(re, im);
            int e = 0;
            std::frexp(std::max({1.0, std::fabs(re), std::fabs(im)}), &e);
            root = {std::ldexp(1.0, -e), std::ldexp(re, -e), std::ldexp(im, -e), std::ldexp(0.5 * inside, -2 * e),
                    linear && std::fabs(inside) < 2 * on_circle};
            exponent += power * e;
            (root.flat ? constants.lag : constants.delay) += 0.5 * power;
        };
        for (int i = 1; i <= roots.NZ; ++i) take(roots.ZR(i), roots.ZI(i), 1, zeros(i));
        for (int i = 1; i <= roots.NP; ++i) take(roots.QR(i), roots.PI(i), -1, poles(i));
        constants.decibel = 20 * std::log10(2.0) * exponent;
        zero_count = roots.NZ, pole_count = roots.NP;
    }

    template <class Real>
    [[nodiscard]] Answer<Real> at(const CirclePoint<Real>& at) const {
        Answer<Real> answer{.h = {Real{} + level, Real{}}};
        for (int i = 1; i <= std::max(zero_count, pole_count); ++i) {
            if (i <= zero_count) {
                const Complex<Real> u = factor(zeros(i), at);
                answer.h = zeros(i).flat ? magnitude(u) * answer.h : answer.h * u;
                if (!zeros(i).flat) answer.delay -= zeros(i).inside / (square(u) + tiny);
            }
            if (i <= pole_count) {
                const Complex<Real> u = factor(poles(i), at);
                const Real inverse = 1.0 / square(u);
                answer.h = inverse * (poles(i).flat ? magnitude(u) * answer.h : answer.h * conjugate(u));
                if (!poles(i).flat) answer.delay += poles(i).inside * inverse;
            }
        }
        return answer;
    }

    // Over a power of two: 1, r, and (1 - |r|^2)/2 over its square.
    struct Root {
        double one, re, im;
        double inside;
        bool flat;
    };
    template <class Real>
    static Complex<Real> factor(const Root& r, const CirclePoint<Real>& at) {
        return {(r.one - r.re * at.near) - r.re * at.off - r.im * at.sine, r.re * at.sine - r.im * at.cosine()};
    }
    static Lanes magnitude(Complex<Lanes> u) {
        Lanes s = square(u);
        for (std::size_t i = 0; i < LanesOf<double>::count; ++i) s[i] = std::sqrt(s[i]);
        return s;
    }
    static long double magnitude(Complex<long double> u) { return std::sqrt(square(u)); }

    double level;
    Table<Root, 51> zeros, poles;
    int zero_count = 0, pole_count = 0;
    Constants constants{};
};

template <class Real>
CirclePoint<Real> place_at(double hertz, double fs);
CirclePoint<Lanes> places_at(double hertz0, double hertz1, double fs);
ResponsePoint point_of(double re, double im, double delay, const Constants& constants, double turns, double fs);
template <class Form>
void respond(const Form& form, const IirFilter& filter, std::span<const double> hertz, FormResponse& response);
void settle_zeros(const DigitalRoots& roots, const CirclePoint<long double>& at, double turned,
                  Answer<long double>& answer);
struct ZerosAt {
    double delay = 0;  // samples, half a sample of each zero on the circle
    bool on_one = false;
};
ZerosAt zeros_at_place(const DigitalRoots& roots, const CirclePoint<long double>& at);
template <class Form>
double loss_at(const Form& form, double hertz, double fs);

// Calls act(response) with the response of a form that is made of coefficients.
template <class Act>
void with_coefficients(const IirFilter& filter, Implementation form, const Act& act) {
    switch (form) {
        case Implementation::cascade: return act(CascadeResponse(filter.cascade));
        case Implementation::parallel: return act(ParallelResponse(filter.parallel));
        case Implementation::lattice: return act(LatticeResponse(filter.lattice));
        case Implementation::direct: return act(DirectResponse(filter.direct));
        case Implementation::allpass:
            return act(AllpassResponse(filter.allpass, output_that_is_the_filter(filter.kind)));
        case Implementation::natural_modes: return;
    }
}

}  // namespace

FormResponse form_response(const IirFilter& filter, Implementation form, std::span<const double> hertz) {
    FormResponse response;
    response.has_delay = form != Implementation::parallel;
    response.has_complement = form == Implementation::allpass;
    const auto respond_by = [&](const auto& by) { respond(by, filter, hertz, response); };
    if (form == Implementation::natural_modes) {
        respond_by(ModesResponse(filter));
    } else {
        with_coefficients(filter, form, respond_by);
    }
    return response;
}

std::function<double(double)> loss_of_form(const IirFilter& filter, Implementation form) {
    std::function<double(double)> loss;
    with_coefficients(filter, form, [&](const auto& by) {
        loss = [by, fs = filter.fs](double hertz) { return loss_at(by, hertz, fs); };
    });
    return loss;
}

namespace {

// Two places at a time; where too little is left of a sum, the place by itself in wide numbers.
template <class Form>
void respond(const Form& form, const IirFilter& filter, std::span<const double> hertz, FormResponse& response) {
    const double fs = filter.fs;
    response.count = static_cast<int>(hertz.size());
    constexpr std::size_t lanes = LanesOf<double>::count;
    for (std::size_t i = 0; i < hertz.size(); i += lanes) {
        const double last = hertz[std::min(i + 1, hertz.size() - 1)];
        const Answer<Lanes> both = form.at(places_at(hertz[i], last, fs));
        for (std::size_t j = 0; j < lanes && i + j < hertz.size(); ++j) {
            const int row = static_cast<int>(i + j) + 1;
            const double turns = hertz[i + j] / fs;
            const auto take = [&](auto h, auto other, auto delay) {
                const auto point = [&](auto value) {
                    return point_of(static_cast<double>(value.re), static_cast<double>(value.im),
                                    static_cast<double>(delay), form.constants, turns, fs);
                };
                response.filter(row) = point(h);
                if (response.has_complement) response.complement(row) = point(other);
            };
            const auto is_weak = [j](auto... shares) { return ((shares[j] < weak_share) || ...); };
            if (is_weak(both.numerator_share, both.other_share, both.denominator_share)) {
                const auto at = place_at<long double>(hertz[i + j], fs);
                auto alone = form.at(at);
                settle_zeros(filter.roots, at, form.constants.turned, alone);
                take(alone.h, alone.other, alone.delay + alone.zero_delay);
            } else {
                take(Complex<double>{both.h.re[j], both.h.im[j]}, Complex<double>{both.other.re[j], both.other.im[j]},
                     both.delay[j] + both.zero_delay[j]);
            }
        }
    }
}

// Where nothing is left of a sum, the roots say whether the place is on a zero, and what delay zeros have there. Those
// of the other output nobody knows.
void settle_zeros(const DigitalRoots& roots, const CirclePoint<long double>& at, double turned,
                  Answer<long double>& answer) {
    if (answer.other_share < nothing_left) answer.other = {};
    if (!(answer.numerator_share < nothing_left)) return;
    const ZerosAt zeros = zeros_at_place(roots, at);
    if (zeros.on_one) answer.h = {};
    if (answer.zero_delay != 0) answer.zero_delay = zeros.delay - turned;
}

ZerosAt zeros_at_place(const DigitalRoots& roots, const CirclePoint<long double>& at) {
    constexpr double close = 1e-30;  // 1e-15, squared
    ZerosAt zeros;
    for (int i = 1; i <= roots.NZ; ++i) {
        const Complex<long double> r{roots.ZR(i), roots.ZI(i)};
        const auto distance = static_cast<double>(square(at.z() - r));
        const bool on_it = distance < close;
        if (on_it) zeros.on_one = true;
        zeros.delay += on_it ? 0.5 : 0.5 - 0.5 * inside_of_circle(roots.ZR(i), roots.ZI(i)) / distance;
    }
    return zeros;
}

template <class Real>
CirclePoint<Real> place_at(double hertz, double fs) {
    return circle_point(static_cast<Real>(hertz) / static_cast<Real>(fs));
}

CirclePoint<Lanes> places_at(double hertz0, double hertz1, double fs) {
    const auto a = place_at<double>(hertz0, fs), b = place_at<double>(hertz1, fs);
    return {Lanes{a.near, b.near}, Lanes{a.off, b.off}, Lanes{a.sine, b.sine}, Lanes{a.half_cosine, b.half_cosine},
            Lanes{a.half_sine, b.half_sine}};
}

// 20 log10 of a magnitude.
double decibel_of(double re, double im) {
    constexpr double safe = 1e-280;
    const double power = re * re + im * im;
    return power > safe ? 10 * std::log10(power) : 20 * std::log10(std::hypot(re, im));
}

// In doubles; where too little is left of a sum, in wide numbers.
template <class Form>
double loss_at(const Form& form, double hertz, double fs) {
    const auto loss = [&form](const auto& answer) {
        return 0.0 - decibel_of(static_cast<double>(answer.h.re), static_cast<double>(answer.h.im)) -
               form.constants.decibel;
    };
    const Answer<double> answer = form.at(place_at<double>(hertz, fs));
    if (std::min(answer.numerator_share, answer.denominator_share) < weak_share) {
        return loss(form.at(place_at<long double>(hertz, fs)));
    }
    return loss(answer);
}

// The phase within one turn, and turned around: that of the loss.
ResponsePoint point_of(double re, double im, double delay, const Constants& constants, double turns, double fs) {
    double phase = std::atan2(im, re) * (180 / std::numbers::pi);
    if (constants.lag != 0) phase = std::remainder(phase - 360 * std::remainder(constants.lag * turns, 1.0), 360.0);
    if (re == 0 && im == 0) phase = 0;
    return {.loss = 0.0 - decibel_of(re, im) - constants.decibel,
            .phase = phase <= -180 ? -180.0 : -phase + 0.0,
            .delay = (delay + constants.lag + constants.delay) / fs};
}

}  // namespace

}  // namespace kavrel
