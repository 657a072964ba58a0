// Poles in closed form against those that the extraction finds, for every image of the low-passes; and which functions
// have none.
#include "approximation/closed_form.h"

#include <cmath>

#include <gtest/gtest.h>

#include "approximation/characteristic.h"
#include "approximation/elliptic.h"
#include "approximation/front_part.h"
#include "approximation/hurwitz_factors.h"
#include "numeric/guarded.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel {
namespace {

struct Poles {
    bool closed = false;
    int count = 0;
    long double apart = 0;  // largest relative distance from the extracted ones, in the order of both
};
Poles poles_of(FilterSpec spec) {
    const auto xp = std::make_unique<XPlane>();
    const auto ws = std::make_unique<ExtractionWorkspace>();
    FrontNotes notes;
    EXPECT_TRUE(runFront(spec, *xp, notes).good() && buildQ(spec, *xp, notes).good());
    Poles poles{.closed = closedPoles(spec, *xp), .count = xp->ES.count};
    const WideRootSet closed = xp->ES;
    EXPECT_TRUE(feldtkeller(*xp, *ws).good());
    for (int i = 1; i <= closed.count; ++i) {
        poles.apart = std::max(poles.apart, cabs(closed.root(i) - xp->ES.root(i)) / cabs(xp->ES.root(i)));
    }
    return poles;
}

TEST(ClosedForm, HasThePolesOfTheExtraction) {
    for (const PassbandType passband : {maximally_flat, equal_ripple}) {
        for (const int n : {1, 2, 3, 6, 17, 50}) {
            for (const double loss : {1e-3, 3.0}) {
                for (const int symmetry : {-2, -1, 0, 1}) {  // -2: all zeros at the ends
                    for (const FilterType type : {low_pass, high_pass, band_pass}) {
                        if (type == band_pass && n % 2 == 1) continue;
                        FilterSpec s = symmetry == -2 ? test::all_pole(type, passband, n)
                                                      : test::with_minima(type, passband, n, symmetry);
                        s.bandEdgeLoss = loss;
                        const Poles poles = poles_of(s);
                        EXPECT_TRUE(poles.closed && poles.count == n && poles.apart < 1e-16L)
                            << passband << ' ' << n << ' ' << loss << ' ' << symmetry << ' ' << type << ": "
                            << poles.closed << ' ' << poles.count << ' ' << static_cast<double>(poles.apart);
                    }
                }
            }
        }
    }
    FilterSpec parametric = test::all_pole(band_pass, equal_ripple, 7);
    parametric.bandpassType = BandpassType::parametric;
    EXPECT_FALSE(poles_of(parametric).closed);
    FilterSpec unbalanced = test::all_pole(band_pass, maximally_flat, 6);
    unbalanced.zerosAtZero = 4, unbalanced.zerosAtInfinity = 2;
    EXPECT_FALSE(poles_of(unbalanced).closed);
}

// Values of mpmath: K(1/2) twice, R_F(1, 2, 4), and the functions at 0.6/(pi/2) of the quarter period.
TEST(Elliptic, IntegralsAndFunctions) {
    const long double k = 0.5L, kc = std::sqrt(1 - k * k);
    const JacobiFunctions functions(k, kc);
    const auto at = functions.at(std::sin(0.6L), std::cos(0.6L));
    const struct {
        long double found, value;
    } rows[] = {{carlson_rf(0, kc * kc, 1), 1.6857503548125960428712036578L},
                {std::acos(-1.0L) / (2 * functions.mean()), 1.6857503548125960428712036578L},
                {carlson_rf(1, 2, 4), 0.685085816633435973965511443692L},
                {at.sn, 0.592136488823205688201826999805L},
                {at.cn, 0.805837687505446474508178783293L},
                {at.dn, 0.955166788917533188157705034198L}};
    for (const auto& row : rows) EXPECT_LT(std::fabs(row.found / row.value - 1), 1e-18L) << row.value;
}

}  // namespace
}  // namespace kavrel
