// The questions between an analog design and a digital filter, what is refused, and what was asked of the result.
#include "iir/digital_design.h"

#include <memory>

#include <gtest/gtest.h>

#include "approximation/s_plane.h"
#include "iir/roots_loss.h"
#include "tests/approximation/request.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

using Turned = SpectralChoice;

struct DigitalDesign : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    FilterSpec found;
    std::unique_ptr<FilterDesign> design = std::make_unique<FilterDesign>();
    std::unique_ptr<IirFilter> filter = std::make_unique<IirFilter>();

    void analog(const std::string& asked) {
        found = request(asked);
        ASSERT_EQ(designFilter(FilterKind::iir_digital, found, *design, {}, reporter), FilterDesignVerdict::designed);
        window.lines.clear();
    }
    // Presses OK in so many forms, the first of which opens with the sampling frequency of the design.
    DigitalDesignOutcome run(IirRequest asked = {}, std::size_t forms = 2) {
        window.forms.assign(forms, [](FormSheet&) { return true; });
        window.forms[0] = [sampling = asked.sampling](FormSheet& sheet) {
            const auto field = static_cast<std::size_t>(find_field(sheet, "sampling"));
            return sampling == 0 || sheet.enter(field, std::to_string(sampling * 1e6) + "u").empty();
        };
        return digitalDesign(found, *design, asked, {}, reporter, *filter);
    }
    [[nodiscard]] double loss(double hertz) const { return loss_of_roots(*filter, hertz); }

    static constexpr const char* elliptic =
        "equal_ripple equal_minima upperPassEdge 1000 upperStopEdge 2000 bandEdgeLoss 0.5 stopbandLoss 40 "
        "sampleFrequency 8000 ";
};

// Other transforms, and other sampling frequencies, have a prototype of their own; the time 125 us is 8 kHz.
TEST_F(DigitalDesign, RunsAgainWithTheEdgesAsAsked) {
    const struct {
        bool bilinear;
        double sampling, fs;
        bool again;
    } rows[] = {{true, 0.000125, 8000, false}, {false, 10000, 10000, true}, {true, 12000, 12000, true}};
    for (const auto& [bilinear, sampling, fs, again] : rows) {
        analog(elliptic);
        const auto kind = bilinear ? ZTransformChoice::bilinear : ZTransformChoice::impulse_invariant;
        ASSERT_EQ(run({.z_transform_type = kind, .sampling = sampling}), DigitalDesignOutcome::done);
        EXPECT_TRUE(window.boxes.empty() && window.forms.empty());
        EXPECT_EQ(found.medium, bilinear ? sampled_data : lumped);
        EXPECT_TRUE(filter->spec.medium == found.medium && filter->spec.implementation == 'I' && filter->designed);
        EXPECT_TRUE(filter->fs == fs && filter->T == 1 / fs && filter->FHI == 1000);
        EXPECT_EQ(filter->transfer.level, design->transfer.level);
        EXPECT_EQ(std::ranges::any_of(window.lines, [](auto& line) { return line.starts_with(" Approximation "); }),
                  again);
        EXPECT_NEAR(loss(bilinear ? 1000 : 0), 0.5, 1e-9);
        ASSERT_EQ(filter->asked.count, 2);
        const IirRequestRow &pass = filter->asked.rows(1), &stop = filter->asked.rows(2);
        EXPECT_TRUE(!pass.stopband && pass.to == 1000 && pass.loss == 0.5);
        EXPECT_TRUE(stop.stopband && stop.from == 2000 && stop.to == fs / 2 && stop.loss == 40);
    }
}

// Pass band edges are those wanted; at the edges of a stopband the loss is that of the low-pass at its own.
TEST_F(DigitalDesign, SpectralTransformationsMoveWhatWasAsked) {
    analog(elliptic);
    const double at_stop_edge = loss_of_function(found, design->transfer, 2000);
    const struct {
        Turned to;
        double lower, upper;
        DigitalKind kind;
        std::vector<IirRequestRow> bands;  // of a stopband only which of its edges are ends of the range
    } rows[] = {
        {Turned::to_lowpass, 0, 2000, DigitalKind::low_pass, {{false, 0, 2000}, {true, 1, 4000}}},
        {Turned::to_highpass, 2000, 0, DigitalKind::high_pass, {{false, 2000, 4000}, {true, 0, 1}}},
        {Turned::to_bandpass, 1500, 2500, DigitalKind::band_pass, {{false, 1500, 2500}, {true, 0, 1}, {true, 1, 4000}}},
        {Turned::to_bandreject, 1e3, 3e3, DigitalKind::band_reject, {{false, 0, 1e3}, {false, 3e3, 4e3}, {true, 1, 1}}},
    };
    for (const auto& [to, lower, upper, kind, bands] : rows) {
        SCOPED_TRACE(kind_name(kind));
        analog(elliptic);
        ASSERT_EQ(run({.frequency_transformation = to, .lower_passband = lower, .upper_passband = upper}),
                  DigitalDesignOutcome::done);
        EXPECT_EQ(filter->kind, kind);
        ASSERT_EQ(filter->asked.count, static_cast<int>(bands.size()));
        for (int i = 1; i <= filter->asked.count; ++i) {
            const IirRequestRow &band = filter->asked.rows(i), &wanted = bands[static_cast<std::size_t>(i) - 1];
            EXPECT_TRUE(band.stopband == wanted.stopband && band.loss == (band.stopband ? 40 : 0.5));
            for (const auto& [edge, at] : {std::pair(band.from, wanted.from), std::pair(band.to, wanted.to)}) {
                const bool end = at == 0 || at == 4000;
                EXPECT_TRUE(edge == at || (band.stopband && !end));
                EXPECT_LT(end ? 0 : std::fabs(loss(edge) - (band.stopband ? at_stop_edge : 0.5)), 1e-9);
            }
        }
    }
}

TEST_F(DigitalDesign, OtherTypesHaveNoSpectralForm) {
    analog(
        "band_pass sloping_passband specified_zeros lowerPassEdge 500 upperPassEdge 2000 bandEdgeLoss 0.2 "
        "stopbandLoss 3 zerosAtZero 3 zerosAtInfinity 3 flatLoss 1 sampleFrequency 8000 ");
    ASSERT_EQ(run({}, 1), DigitalDesignOutcome::done);
    const IirAsked& asked = filter->asked;
    EXPECT_TRUE(asked.sloping && asked.slope == 3 && asked.flat_loss == 1 && asked.count == 1);
    EXPECT_NEAR(loss(1000) - loss(500), 3, 0.2);
    // A given function is taken by the bilinear transform; nobody is asked, and nothing was asked of it.
    analog(
        "functional_passband functional_stopband bandEdgeLoss 0 upperPassEdge 1000 zerosAtInfinity 3 "
        "sampleFrequency 8000 denominatorFactors 1 1 1 denominatorDegree 3 ");
    ASSERT_EQ(run({}, 1), DigitalDesignOutcome::done);
    EXPECT_EQ(filter->z_transform, ZTransform::bilinear_of_function);
    EXPECT_TRUE(filter->roots.NP == 3 && filter->asked.count == 0 && !filter->allpass.ALLPASS_OK);
}

// What the forms let pass and a script does not show.
TEST_F(DigitalDesign, RefusesWhatNoFilterHas) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    TransferFunction kilohertz;
    kilohertz.normFrequency = 2000 * std::numbers::pi;
    for (const double typed : {0.0, -8000.0, nan, 1999.0, 1e-3}) {
        EXPECT_EQ(refusal_of_sampling(kilohertz, sampling_frequency_of(typed, 8000), {}).field, "sampling") << typed;
    }
    const auto refused = [](double lower, double upper, int degree) {
        return refusal_of_spectral({SpectralKind::to_bandpass, 8000, 1000, lower, upper}, degree).field;
    };
    EXPECT_EQ(refused(nan, 500, 5), "lower_passband");
    EXPECT_EQ(refused(100, nan, 5), "upper_passband");
    EXPECT_EQ(refused(100, 500, 26), "frequency_transformation");
    EXPECT_EQ(refused(100, 500, 25), "");
}

}  // namespace
}  // namespace kavrel
