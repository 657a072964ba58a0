// The response of each form: against mpmath by the roots of scipy's filters, and against sums in long doubles.
#include <fstream>

#include <gtest/gtest.h>

#include "iir/form_response.h"
#include "tests/iir/filters.h"

namespace kavrel {
namespace {

using enum Implementation;
using Wide = long double;
constexpr Wide pi = std::numbers::pi_v<Wide>;

ResponsePoint point_of(const IirFilter& filter, Implementation form, double hertz) {
    return form_response(filter, form, {&hertz, 1}).filter(1);
}

// Loss, phase and delay within `tolerance`: of |H| and in radians, and of the delay, which is in samples here.
void expect_close(const ResponsePoint& point, Point h, Wide samples, double fs, double tolerance) {
    const auto loss = static_cast<double>(-20 * std::log10(std::abs(h)));
    EXPECT_TRUE(point.loss == loss || std::fabs(point.loss - loss) < 9 * tolerance) << point.loss - loss;
    if (std::isinf(loss)) return;
    EXPECT_NEAR(std::remainder(point.phase + static_cast<double>(std::arg(h) * 180 / pi), 360.0), 0, 60 * tolerance);
    EXPECT_TRUE(point.phase >= -180 && point.phase < 180);
    const auto delay = static_cast<double>(samples) / fs;
    EXPECT_NEAR(point.delay, delay, tolerance * (50 / fs + std::fabs(delay)));
}

TEST(FormResponse, ScipysFilters) {
    std::ifstream file(TEST_DATA "/iir/response/responses.txt");
    std::string word, name;
    std::getline(file, word);
    RandomNumbers random(11);
    double fs = 0, gain = 0, f = 0, loss = 0, phase = 0, delay = 0;
    int filters = 0, nz = 0, np = 0, rows = 0;
    for (; file >> word >> name >> fs >> gain >> nz >> np >> rows; ++filters) {
        const auto roots = [&](int n) {
            RootList list;
            for (double re = 0, im = 0; n-- > 0 && file >> re >> im;)
                if (im >= 0) list.push_back({re, im});
            return list;
        };
        const RootList zeros = roots(nz), poles = roots(np);
        IirFilter filter = filter_of(gain, zeros, poles);
        filter.fs = fs;
        make_forms(filter);
        if (filters % 2 == 1) scale(filter, random);
        const bool narrow = name.starts_with("narrow");
        for (int i = 0; i < rows; ++i) {
            file >> f >> loss >> phase >> delay;
            const Point h = std::polar(std::pow(Wide{10}, -Wide(loss) / 20), -Wide(phase) * pi / 180);
            SCOPED_TRACE(testing::Message() << name << " at " << f);
            expect_close(point_of(filter, natural_modes, f), h, delay, fs, narrow ? 2e-12 : 3e-11);
            expect_close(point_of(filter, cascade, f), h, delay, fs, 3e-11);
            if (narrow) continue;
            for (const auto form : {direct, lattice, parallel})
                expect_close(point_of(filter, form, f), h, form == parallel ? 0 : delay, fs, 1e-9);
        }
    }
    EXPECT_EQ(filters, 5);
}

void expect_direct(const IirFilter& filter, double hertz, double tolerance) {
    const DirectForm& d = filter.direct;
    const Point w = std::polar(Wide{1}, -2 * pi * Wide(hertz) / Wide(filter.fs));
    Point n, m, dn, dm, power = 1;
    for (int i = 1; i <= std::max(d.JN, d.JD); ++i, power *= w) {
        const Wide num = i <= d.JN ? d.ZNUM(i) : 0, den = i == 1 ? 1 : i <= d.JD ? d.ZDEN(i) : 0;
        n += num * power, dn += (i - 1) * num * power;
        m += den * power, dm += (i - 1) * den * power;
    }
    SCOPED_TRACE(testing::Message() << d.JN << ' ' << d.JD << " at " << hertz);
    expect_close(point_of(filter, direct, hertz), n / m, (dn / n - dm / m).real(), filter.fs, tolerance);
}

// Odd and even degrees, more zeros than poles and fewer; ZDEN(1) counts as 1.
TEST(FormResponse, DirectByItsPolynomials) {
    RandomNumbers random(7);
    for (const auto& [zeros, poles] : {std::pair{6, 9}, {11, 4}, {8, 8}, {1, 12}}) {
        IirFilter filter = filter_of(1, {}, {});
        DirectForm& d = filter.direct;
        for (; d.JN < zeros + 1;) d.ZNUM(++d.JN) = random.between(-1, 1);
        for (; d.JD < poles + 1;) d.ZDEN(++d.JD) = random.between(-1, 1) / poles;
        d.ZDEN(1) = 3;
        for (int i = 0; i < 41; ++i) expect_direct(filter, 0.031 * i, 1e-13);
    }
    // Coefficients that nearly cancel: poles crowded about z = 1. A sum in doubles has three digits left.
    IirFilter filter =
        filter_of(1e-20, RootList(8, {-1, 0}), {{0.960, 0.042}, {0.930, 0.022}, {0.976, 0.049}, {0.921, 0.007}});
    filter.fs = 1000;
    ASSERT_TRUE(makeDirect(filter).empty());
    for (const double f : {0.0, 0.4, 1.1, 30.0, 480.0}) expect_direct(filter, f, 1e-6);
}

// Zeros and poles far beyond what a product of doubles holds.
TEST(FormResponse, LargeNumbers) {
    const IirFilter filter = filter_of(1e-150, RootList(5, {-1e140, 0}), {{1e80, 1e70}, {1e145, 0}, {0.5, 0}});
    for (const auto form : {natural_modes, cascade}) {
        const ResponsePoint point = point_of(filter, form, 0.25);
        EXPECT_NEAR(point.loss, -20 * (-150 + 5 * 140 - 160 - 145 - std::log10(std::sqrt(1.25))), 1e-9);
        EXPECT_NEAR(point.delay, 5 - 3 - 0.2, 1e-12);
    }
}

// On a zero the loss is infinite and the delay is that of its neighbours; on a pole there is no result.
TEST(FormResponse, RootsOnTheCircle) {
    IirFilter filter = filter_of(0.1, {{0, 1}, {-1, 0}}, {{0.3, 0.4}, {0.5, 0}});
    filter.fs = 8;
    make_forms(filter);
    for (const auto form : {cascade, natural_modes, parallel, direct, lattice}) {
        EXPECT_GT(point_of(filter, form, 4).loss, 1e9);
        EXPECT_GT(point_of(filter, form, 2).loss, 300);
        EXPECT_NEAR(point_of(filter, form, 4).delay, point_of(filter, form, 3.99999).delay, 1e-5);
        EXPECT_NEAR(point_of(filter, form, 2).delay, point_of(filter, form, 2.00001).delay, 1e-5);
    }
    filter.cascade.C1D(1) = 1, filter.cascade.C2D(1) = 0;
    EXPECT_FALSE(std::isfinite(point_of(filter, cascade, 4).delay));
}

// Of a linear-phase design zeros on the circle make no jump, and the delay is the same as ever.
TEST(FormResponse, LinearPhaseHasNoJumps) {
    IirFilter filter = filter_of(1, {{-0.6, 0.8}, {-1, 0}}, {{0.3, 0.2}, {0.4, 0}});
    filter.fs = 2;
    const auto at = [&](double hertz) { return point_of(filter, natural_modes, hertz); };
    const ResponsePoint below = at(0.6), above = at(0.8);  // on either side of the zero
    filter.designed = true, filter.spec.filterType = linear_phase_low_pass;
    EXPECT_NEAR(std::fabs(std::remainder(at(0.6).phase - below.phase - at(0.8).phase + above.phase, 360.0)), 180, 1e-9);
    EXPECT_NEAR(at(0.6).loss, below.loss, 1e-12);
    EXPECT_NEAR(at(0.8).delay, above.delay, 1e-15);
}

}  // namespace
}  // namespace kavrel
