// The response of each form: against mpmath by the roots of scipy's filters, and against plain sums of the form's own
// coefficients in long doubles.
#include <cmath>
#include <complex>
#include <fstream>
#include <functional>
#include <numbers>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

#include "iir/direct_form.h"
#include "iir/form_response.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "tests/iir/filter_of.h"

namespace kavrel {
namespace {

using Wide = long double;
using Z = std::complex<Wide>;
constexpr Wide pi = std::numbers::pi_v<Wide>;

using Root = std::complex<double>;

RootList upper(const std::vector<Root>& roots) {
    RootList list;
    for (const Root& r : roots) {
        if (r.imag() >= 0) list.push_back({r.real(), r.imag()});
    }
    return list;
}

struct Value {
    Z h;
    Wide delay;  // samples
};
Z w_at(Wide turns) { return std::polar(Wide{1}, -2 * pi * turns); }
Wide delay_of(Z value, Z by_ln_w) { return (by_ln_w / value).real(); }

// Loss, phase and delay at `hertz` within `tolerance` of the value: of |H| and in radians, and of the delay.
void expect_close(const ResponsePoint& point, const Value& value, double fs, double tolerance,
                  const std::string& what) {
    const Wide loss = -20 * std::log10(std::abs(value.h)), phase = -std::arg(value.h) * 180 / pi;
    const double lost = static_cast<double>(loss);
    EXPECT_TRUE(point.loss == lost || std::fabs(point.loss - lost) < 9 * tolerance) << what << ' ' << point.loss - lost;
    if (std::isinf(lost)) return;
    EXPECT_NEAR(std::remainder(point.phase - static_cast<double>(phase), 360.0), 0, 60 * tolerance) << what;
    EXPECT_GE(point.phase, -180) << what;
    EXPECT_LT(point.phase, 180) << what;
    const auto delay = static_cast<double>(value.delay) / fs;
    EXPECT_NEAR(point.delay, delay, tolerance * (50 / fs + std::fabs(delay))) << what;
}

TEST(FormResponse, ScipysFilters) {
    std::ifstream file(TEST_DATA "/iir/response/responses.txt");
    std::string line, word, name;
    std::getline(file, line);
    int filters = 0;
    double fs = 0, gain = 0;
    std::size_t nz = 0, np = 0, rows = 0;
    for (; file >> word >> name >> fs >> gain >> nz >> np >> rows; ++filters) {
        const auto roots = [&](std::size_t n) {
            std::vector<Root> list;
            for (double re = 0, im = 0; list.size() < n && file >> re >> im;) list.emplace_back(re, im);
            return list;
        };
        const auto zeros = roots(nz), poles = roots(np);
        IirFilter filter = filter_of(gain, upper(zeros), upper(poles));
        filter.fs = fs;
        EXPECT_EQ(makeDirect(filter).text, "");
        EXPECT_EQ(makeParallel(filter).text, "");
        EXPECT_EQ(makeLattice(filter).outcome, LatticeOutcome::made) << name;
        const bool narrow = name.starts_with("narrow");
        for (std::size_t i = 0; i < rows; ++i) {
            double f = 0, loss = 0, phase = 0, delay = 0;
            file >> f >> loss >> phase >> delay;
            const Value value{std::polar(std::pow(Wide{10}, -Wide(loss) / 20), -Wide(phase) * pi / 180), delay};
            const std::string what = name + " at " + std::to_string(f);
            const auto point = [&](Implementation form) { return form_response(filter, form, {&f, 1}).filter(1); };
            expect_close(point(Implementation::natural_modes), value, fs, narrow ? 2e-12 : 3e-11, what + ", modes");
            expect_close(point(Implementation::cascade), value, fs, 3e-11, what + ", cascade");
            if (narrow) continue;
            expect_close(point(Implementation::direct), value, fs, 1e-9, what + ", direct");
            expect_close(point(Implementation::lattice), value, fs, 1e-9, what + ", lattice");
            Value without_delay = value;
            without_delay.delay = 0;
            expect_close(point(Implementation::parallel), without_delay, fs, 1e-9, what + ", parallel");
        }
    }
    EXPECT_EQ(filters, 5);
}

// Degrees to 30, H of each form against that of the roots, over the largest; delays where H is more than a thousandth.
TEST(FormResponse, FormsOfOneFilter) {
    RandomNumbers random(11);
    std::vector<double> hertz;
    for (int i = 0; i <= 100; ++i) hertz.push_back(0.005 * i);
    for (int degree = 2; degree <= 30; ++degree) {
        IirFilter filter = random_filter(random, degree);
        ASSERT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
        ASSERT_EQ(makeLattice(filter).outcome, LatticeOutcome::made);
        const FormResponse truth = form_response(filter, Implementation::natural_modes, hertz);
        const auto h = [](const ResponsePoint& p) {
            return std::polar(std::pow(10, -p.loss / 20), -p.phase * std::numbers::pi / 180);
        };
        double peak = 0;
        for (int i = 1; i <= truth.count; ++i) peak = std::max(peak, std::abs(h(truth.filter(i))));
        for (const auto form :
             {Implementation::cascade, Implementation::parallel, Implementation::lattice, Implementation::direct}) {
            const FormResponse response = form_response(filter, form, hertz);
            double worst = 0, worst_delay = 0;
            for (int i = 1; i <= truth.count; ++i) {
                const ResponsePoint &is = response.filter(i), &was = truth.filter(i);
                worst = std::max(worst, std::abs(h(is) - h(was)) / peak);
                if (!response.has_delay || std::abs(h(was)) < 1e-3 * peak) continue;
                worst_delay = std::max(worst_delay, std::fabs(is.delay - was.delay));
            }
            EXPECT_LT(worst, 1e-12) << degree << ", form " << static_cast<int>(form);
            EXPECT_LT(worst_delay, 1e-9) << degree << ", form " << static_cast<int>(form);
        }
    }
}

// Coefficients of any kind: the forms are functions of their own numbers, whatever filter that is.
struct RandomForms : testing::Test {
    std::mt19937 random{7};
    IirFilter filter;

    RandomForms() { filter.fs = 10; }
    double number(double from, double to) { return std::uniform_real_distribution(from, to)(random); }
    // Of 1 + c1 w + c2 w^2, its roots within `radius`, every third factor of first order.
    template <int N>
    void factors(int n, double radius, Table<double, N>& c1, Table<double, N>& c2, int& count) {
        for (count = 0; count < n;) {
            ++count;
            const double r = number(0.3, radius);
            c1(count) = count % 3 == 0 ? r : -2 * r * std::cos(number(0, 3.14));
            c2(count) = count % 3 == 0 ? 0 : r * r;
        }
    }
    void expect_form(Implementation form, double tolerance, const std::function<Value(Z w)>& expected,
                     const std::function<Value(Z w)>& complement = {}) {
        std::vector<double> hertz;
        for (int i = 0; i < 41; ++i) hertz.push_back(0.31 * i);
        const FormResponse response = form_response(filter, form, hertz);
        ASSERT_EQ(response.count, 41);
        EXPECT_EQ(response.has_delay, form != Implementation::parallel);
        for (int i = 1; i <= 41; ++i) {
            const Wide turns = Wide(hertz[static_cast<std::size_t>(i - 1)]) / filter.fs;
            const std::string what = "form " + std::to_string(static_cast<int>(form)) + ", row " + std::to_string(i);
            expect_close(response.filter(i), expected(w_at(turns)), filter.fs, tolerance, what);
            if (complement)
                expect_close(response.complement(i), complement(w_at(turns)), filter.fs, tolerance, what + " other");
        }
    }
};

TEST_F(RandomForms, CascadeTakesTheScaleFactors) {
    CascadeForm& c = filter.cascade;
    factors(7, 1.2, c.C1N, c.C2N, c.NNUM);
    factors(10, 0.97, c.C1D, c.C2D, c.NDEN);
    for (int k = 1; k <= c.NDEN; ++k) c.SC(k) = std::ldexp(number(0.5, 1), 3 * k - 9);
    c.C1N(1) = c.SC(1), c.C2N(1) = 0, c.CK = -1e-3, c.SCALED = true;
    expect_form(Implementation::cascade, 2e-13, [&](Z w) {
        Z h = c.CK;
        Wide delay = 0;
        for (int k = c.NNUM + 1; k <= c.NDEN; ++k) h *= Wide(c.SC(k));
        for (int k = 1; k <= c.NNUM; ++k) {
            const Z n = Wide(c.SC(k)) + Wide(c.C1N(k)) * w + Wide(c.C2N(k)) * w * w;
            h *= n, delay += delay_of(n, Wide(c.C1N(k)) * w + Wide(2 * c.C2N(k)) * w * w);
        }
        for (int k = 1; k <= c.NDEN; ++k) {
            const Z d = Wide{1} + Wide(c.C1D(k)) * w + Wide(c.C2D(k)) * w * w;
            h /= d, delay -= delay_of(d, Wide(c.C1D(k)) * w + Wide(2 * c.C2D(k)) * w * w);
        }
        return Value{h, delay};
    });
}

TEST_F(RandomForms, ParallelIsTheSumOfItsBlocks) {
    ParallelForm& p = filter.parallel;
    factors(9, 0.95, p.GA, p.DE, p.NPAR);
    for (int k = 1; k <= p.NPAR; ++k) p.AL(k) = number(-1, 1), p.BE(k) = number(-1, 1);
    p.AO = 0.7;
    expect_form(Implementation::parallel, 1e-12, [&](Z w) {
        Z h = p.AO;
        for (int k = 1; k <= p.NPAR; ++k) {
            h += (Wide(p.AL(k)) + Wide(p.BE(k)) * w) / (Wide{1} + Wide(p.GA(k)) * w + Wide(p.DE(k)) * w * w);
        }
        return Value{h, 0};
    });
}

// Odd and even degrees, more zeros than poles and fewer; ZDEN(1) counts as 1.
TEST_F(RandomForms, DirectByItsPolynomials) {
    for (const auto& [zeros, poles] : {std::pair{6, 9}, {11, 4}, {8, 8}, {1, 12}}) {
        DirectForm& d = filter.direct = {};
        for (d.JN = 0; d.JN < zeros + 1;) d.ZNUM(++d.JN) = number(-1, 1);
        for (d.JD = 0; d.JD < poles + 1;) d.ZDEN(++d.JD) = number(-1, 1) / poles;
        d.ZDEN(1) = 3;
        expect_form(Implementation::direct, 1e-13, [&](Z w) {
            Z n, dn, m = 1, dm, power = 1;
            for (int i = 1; i <= d.JN; ++i, power *= w)
                n += Wide(d.ZNUM(i)) * power, dn += (i - Wide{1}) * Wide(d.ZNUM(i)) * power;
            power = w;
            for (int i = 2; i <= d.JD; ++i, power *= w)
                m += Wide(d.ZDEN(i)) * power, dm += (i - Wide{1}) * Wide(d.ZDEN(i)) * power;
            return Value{n / m, delay_of(n, dn) - delay_of(m, dm)};
        });
    }
}

TEST_F(RandomForms, AllpassPairHasTwoOutputs) {
    AllpassForm& a = filter.allpass;
    factors(3, 0.95, a.TA1, a.TA2, a.NTA);
    factors(4, 0.95, a.TB1, a.TB2, a.NTB);
    const auto chain = [](Z w, const auto& c1, const auto& c2, int count, Wide& delay) {
        Z h = 1;
        for (int k = 1; k <= count; ++k) {
            const Z d = Wide{1} + Wide(c1(k)) * w + Wide(c2(k)) * w * w, dd = Wide(c1(k)) * w + Wide(2 * c2(k)) * w * w;
            const bool first = c2(k) == 0;
            const Z n = first ? Wide(c1(k)) + w : Wide(c2(k)) + Wide(c1(k)) * w + w * w;
            h *= n / d;
            delay += delay_of(n, first ? w : Wide(c1(k)) * w + Wide{2} * w * w) - delay_of(d, dd);
        }
        return h;
    };
    for (const DigitalKind kind : {DigitalKind::low_pass, DigitalKind::high_pass, DigitalKind::band_reject}) {
        filter.kind = kind;
        const auto output = [&](bool sum, Z w) {
            Wide delay = 0;
            const Z x = chain(w, a.TA1, a.TA2, a.NTA, delay), y = chain(w, a.TB1, a.TB2, a.NTB, delay);
            return Value{sum ? (x + y) / Wide{2} : (y - x) / Wide{2}, delay / 2};
        };
        const bool is_sum = kind != DigitalKind::high_pass;
        expect_form(
            Implementation::allpass, 1e-12, [&](Z w) { return output(is_sum, w); },
            [&](Z w) { return output(!is_sum, w); });
    }
}

// Coefficients that nearly cancel: degree 8, its poles crowded about z = 1. A sum in doubles has three digits left.
TEST(FormResponse, DirectWhereLittleIsLeft) {
    IirFilter filter =
        filter_of(1e-20, RootList(8, {-1, 0}), {{0.960, 0.042}, {0.930, 0.022}, {0.976, 0.049}, {0.921, 0.007}});
    filter.fs = 1000;
    ASSERT_EQ(makeDirect(filter).text, "");
    const DirectForm& d = filter.direct;
    for (const double f : {0.0, 0.4, 1.1, 30.0, 480.0}) {
        const Z w = w_at(Wide(f) / 1000);
        Z n, m, dn, dm, power = 1;
        for (int i = 1; i <= 9; ++i, power *= w) {
            n += Wide(d.ZNUM(i)) * power, dn += (i - Wide{1}) * Wide(d.ZNUM(i)) * power;
            m += Wide(d.ZDEN(i)) * power, dm += (i - Wide{1}) * Wide(d.ZDEN(i)) * power;
        }
        expect_close(form_response(filter, Implementation::direct, {&f, 1}).filter(1),
                     {n / m, delay_of(n, dn) - delay_of(m, dm)}, 1000, 1e-6, "direct at " + std::to_string(f));
    }
}

// Zeros and poles far beyond what a product of doubles holds.
TEST(FormResponse, LargeNumbers) {
    IirFilter filter = filter_of(1e-150, RootList(5, {-1e140, 0}), {{1e80, 1e70}, {1e145, 0}, {0.5, 0}});
    const double f = 0.25;
    for (const auto form : {Implementation::natural_modes, Implementation::cascade}) {
        const ResponsePoint point = form_response(filter, form, {&f, 1}).filter(1);
        EXPECT_NEAR(point.loss, -20 * (-150 + 5 * 140 - 160 - 145 - std::log10(std::sqrt(1.25))), 1e-9);
        EXPECT_NEAR(point.delay, 5 - 3 - 0.2, 1e-12);
    }
}

// On a zero the loss is infinite and the delay is that of its neighbours; on a pole there is no result.
TEST(FormResponse, RootsOnTheCircle) {
    IirFilter filter = filter_of(0.1, {{0, 1}, {-1, 0}}, {{0.3, 0.4}, {0.5, 0}});
    filter.fs = 8;
    ASSERT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
    ASSERT_EQ(makeLattice(filter).outcome, LatticeOutcome::made);
    const double hertz[] = {4, 3.99999, 2, 2.00001};
    for (const auto form : {Implementation::cascade, Implementation::natural_modes, Implementation::parallel,
                            Implementation::direct, Implementation::lattice}) {
        const FormResponse response = form_response(filter, form, hertz);
        for (const int i : {1, 3}) {
            EXPECT_GT(response.filter(i).loss, i == 1 ? 1e9 : 300) << i;
            EXPECT_NEAR(response.filter(i).delay, response.filter(i + 1).delay, 1e-5) << i;
        }
    }
    filter.cascade.C1D(1) = 1;
    filter.cascade.C2D(1) = 0;
    EXPECT_FALSE(std::isfinite(form_response(filter, Implementation::cascade, hertz).filter(1).delay));
}

// Of a linear-phase design zeros on the circle make no jump, and the delay is the same as ever.
TEST(FormResponse, LinearPhaseHasNoJumps) {
    IirFilter filter = filter_of(1, {{-0.6, 0.8}, {-1, 0}}, {{0.3, 0.2}, {0.4, 0}});
    filter.fs = 2;
    const double hertz[] = {0.6, 0.8};  // on either side of the zero
    const auto at = [&](int i) { return form_response(filter, Implementation::natural_modes, hertz).filter(i); };
    const ResponsePoint below = at(1), above = at(2);
    filter.designed = true;
    filter.spec.filterType = linear_phase_low_pass;
    EXPECT_NEAR(
        std::fabs(std::remainder(at(1).phase - below.phase, 360.0) - std::remainder(at(2).phase - above.phase, 360.0)),
        180, 1e-9);
    EXPECT_NEAR(at(1).loss, below.loss, 1e-12);
    EXPECT_NEAR(at(2).delay, above.delay, 1e-15);
}

}  // namespace
}  // namespace kavrel
