// The forms of designed filters, of every z transform, function and type, against their roots in long numbers.
#include "tests/iir/designed_filters.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "iir/allpass_form.h"
#include "iir/form_response.h"
#include "tests/iir/filters.h"

namespace kavrel {
namespace {

using enum Implementation;

// What doubles give. The lattice and the chains of a differential allpass keep nearly all digits at every degree; a
// cascade loses some; partial fractions lose what they are larger than their sum, coefficients that are multiplied out
// all of a high degree.
double limit(const IirFilter& filter, Implementation form, double peak) {
    if (form == allpass) return 2e-14;
    if (form == cascade) return filter.roots.NP <= 16 ? 1e-12 : 1e-9;
    if (form == direct) return filter.roots.NP <= 9 ? 1e-11 : HUGE_VAL;
    double fractions = 0;
    const ParallelForm& p = filter.parallel;
    for (int k = 1; k <= p.NPAR; ++k) fractions += std::fabs(p.AL(k)) + std::fabs(p.BE(k));
    return 1e-14 + 1e-15 * fractions / peak;
}

// Of the outputs of two chains one is H, and the other has all the power that it lacks.
void expect_chains(const IirFilter& filter) {
    std::vector<double> hertz;
    for (int i = 0; i <= 50; ++i) hertz.push_back(0.01 * i);
    const FormResponse truth = form_response(filter, natural_modes, hertz);
    const FormResponse chains = form_response(filter, allpass, hertz);
    const auto h_of = [](const ResponsePoint& p) {
        return std::polar(std::pow(10, -p.loss / 20), -p.phase * std::numbers::pi / 180);
    };
    for (int i = 1; i <= truth.count; ++i) {
        const ResponsePoint &other = chains.complement(i), &is = chains.filter(i);
        EXPECT_LT(std::abs(h_of(is) - h_of(truth.filter(i))), 1e-12) << hertz[static_cast<std::size_t>(i - 1)];
        EXPECT_NEAR(std::norm(h_of(is)) + std::norm(h_of(other)), 1, 1e-13);
        EXPECT_NEAR(std::abs(h_of(is) + h_of(other)), 1, 1e-13) << "a chain alone";
        EXPECT_EQ(other.delay, is.delay);
        EXPECT_NEAR(is.delay, truth.filter(i).delay, is.loss < 60 ? 1e-8 * is.delay : HUGE_VAL);
    }
}

TEST(DesignedFilters, HaveOneImpulseResponseInAllForms) {
    for (const auto transform : {ZTransform::impulse_invariant, ZTransform::matched, ZTransform::bilinear}) {
        for (const auto* function : {"butterworth", "chebyshev", "inverse_chebyshev", "elliptic"}) {
            for (const Band& band : bands) {
                if (transform == ZTransform::impulse_invariant && band.type == high_pass) continue;
                for (const int degree : {2, 3, 6, 9, 16, 30}) {
                    if (band.type == band_pass && degree % 2 == 1) continue;
                    if (band.spectral != SpectralKind::none && degree > 9) continue;
                    SCOPED_TRACE(fmt::format("{} {} {} {}", z_transform_text(transform), function, kind_name(band.kind),
                                             degree));
                    IirFilter filter = designed_filter(transform, function, band, degree);
                    const std::vector<double> truth = direct_impulse(filter.roots, 200);
                    EXPECT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
                    const int odd = band.type == band_pass ? degree / 2 % 2 : degree % 2;
                    const bool two_chains = transform == ZTransform::bilinear && odd == 1 && degree > 2;
                    EXPECT_EQ(makeAllpass(filter).text, two_chains ? "" : not_symmetrical);
                    for (const auto form : {cascade, parallel, direct, allpass}) {
                        if (!is_available(filter, form)) continue;
                        EXPECT_LT(deviation(filter, form, truth), limit(filter, form, peak_of(truth)))
                            << structure_name(form);
                    }
                    if (two_chains) expect_chains(filter);
                    filter.roots.ZMULT /= 100;  // what is aliased may bring a tap to 1
                    EXPECT_TRUE(makeLattice(filter).outcome == LatticeOutcome::made);
                    EXPECT_LT(deviation(filter, lattice, direct_impulse(filter.roots, 200)), 2e-14);
                }
            }
        }
    }
}

}  // namespace
}  // namespace kavrel
