// The questions between an analog design and a digital filter, what is refused, and what was asked of the result.
#include "iir/digital_design.h"

#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "approximation/s_plane.h"
#include "iir/roots_loss.h"
#include "tests/approximation/request.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;

struct DigitalDesign : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    FilterSpec found;
    std::unique_ptr<FilterDesign> design = std::make_unique<FilterDesign>();
    IirRequest asked;
    std::unique_ptr<IirFilter> filter = std::make_unique<IirFilter>();

    void analog(const std::string& change, const std::string& start = elliptic) {
        found = request(start + change);
        ASSERT_EQ(designFilter(FilterKind::iir_digital, found, *design, {}, reporter), FilterDesignVerdict::designed);
        window.lines.clear();
    }
    void form(const Entries& entries) {
        window.forms.emplace_back([entries](FormSheet& sheet) {
            for (const auto& [name, text] : entries) {
                EXPECT_EQ(sheet.enter(static_cast<std::size_t>(find_field(sheet, name)), text), "") << name;
            }
            return true;
        });
    }
    DigitalDesignOutcome run() { return digitalDesign(found, *design, asked, {}, reporter, *filter); }
    [[nodiscard]] double loss(double hertz) const { return loss_of_roots(*filter, hertz); }

    static constexpr const char* elliptic =
        "equal_ripple equal_minima upperPassEdge 1000 upperStopEdge 2000 bandEdgeLoss 0.5 stopbandLoss 40 "
        "sampleFrequency 8000 ";
};

TEST_F(DigitalDesign, BilinearKeepsTheDesign) {
    analog("");
    form({});
    form({});
    ASSERT_EQ(run(), DigitalDesignOutcome::done);
    EXPECT_TRUE(window.boxes.empty() && window.forms.empty());
    EXPECT_EQ(filter->fs, 8000);
    EXPECT_EQ(filter->T, 1 / 8000.0);
    EXPECT_EQ(filter->kind, DigitalKind::low_pass);
    EXPECT_EQ(filter->FilterTypeText.trimmed(), "lowpass");
    EXPECT_EQ(filter->FHI, 1000);
    EXPECT_EQ(filter->z_transform, ZTransform::bilinear);
    EXPECT_TRUE(filter->designed);
    EXPECT_EQ(filter->transfer.level, design->transfer.level);
    EXPECT_NEAR(loss(1000), 0.5, 1e-10);
    ASSERT_EQ(filter->asked.count, 2);
    EXPECT_TRUE(!filter->asked.rows(1).stopband && filter->asked.rows(1).to == 1000 &&
                filter->asked.rows(1).loss == 0.5);
    EXPECT_TRUE(filter->asked.rows(2).stopband && filter->asked.rows(2).from == 2000 &&
                filter->asked.rows(2).to == 4000);
    EXPECT_NEAR(filter->asked.flat_loss, 0, 1e-9);
    EXPECT_GT(loss(2000), 40);
}

// Other transforms, and other sampling frequencies, have a prototype of their own; the time 125 us is 8 kHz.
TEST_F(DigitalDesign, RunsAgainWithTheEdgesAsAsked) {
    const struct {
        Entries entries;
        Medium medium;
        double fs;
        bool again;
    } rows[] = {
        {{{"sampling", "0.000125"}}, sampled_data, 8000, false},
        {{{"z_transform_type", "Matched"}}, lumped, 8000, true},
        {{{"z_transform_type", "Impulse-invariant"}, {"sampling", "10000"}}, lumped, 10000, true},
        {{{"sampling", "12000"}}, sampled_data, 12000, true},
        {{{"z_transform_type", "Bilinear"}, {"sampling", "1e-4"}}, sampled_data, 10000, true},
    };
    for (const auto& row : rows) {
        asked = {};
        analog("");
        form(row.entries);
        form({});
        ASSERT_EQ(run(), DigitalDesignOutcome::done);
        EXPECT_EQ(filter->spec.medium, row.medium);
        EXPECT_EQ(filter->spec.implementation, 'I');
        EXPECT_EQ(filter->fs, row.fs);
        EXPECT_EQ(found.medium, row.medium);
        const bool again = std::ranges::any_of(
            window.lines, [](const std::string& line) { return line.starts_with(" Approximation "); });
        EXPECT_EQ(again, row.again);
        EXPECT_NEAR(loss(0), 0.5, 1e-9);
        if (row.medium == sampled_data) {
            EXPECT_NEAR(loss(1000), 0.5, 1e-9);
        }
        EXPECT_EQ(filter->asked.rows(2).to, row.fs / 2);
    }
}

// Pass band edges are those wanted; at the edges of a stopband the loss is that of the low-pass at its own.
TEST_F(DigitalDesign, SpectralTransformationsMoveWhatWasAsked) {
    analog("");
    const double at_stop_edge = loss_of_function(found, design->transfer, 2000);
    struct Band {
        double from, to;  // of a stopband only which of them are ends of the range
        bool stopband = false;
    };
    const struct {
        const char *to, *lower, *upper;
        DigitalKind kind;
        const char* text;
        std::vector<Band> bands;
    } rows[] = {
        {"Lowpass-to-lowpass", "0", "2000", DigitalKind::low_pass, "lowpass", {{0, 2000}, {1, 4000, true}}},
        {"Lowpass-to-highpass", "2000", "0", DigitalKind::high_pass, "highpass", {{2000, 4000}, {0, 1, true}}},
        {"Lowpass-to-bandpass",
         "1500",
         "2500",
         DigitalKind::band_pass,
         "bandpass",
         {{1500, 2500}, {0, 1, true}, {1, 4000, true}}},
        {"Lowpass-to-bandreject",
         "1000",
         "3000",
         DigitalKind::band_reject,
         "band reject",
         {{0, 1000}, {3000, 4000}, {1, 1, true}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.to);
        asked = {};
        analog("");
        form({});
        form({{"frequency_transformation", row.to}, {"lower_passband", row.lower}, {"upper_passband", row.upper}});
        ASSERT_EQ(run(), DigitalDesignOutcome::done);
        EXPECT_EQ(filter->kind, row.kind);
        EXPECT_EQ(filter->FilterTypeText.trimmed(), row.text);
        ASSERT_EQ(filter->asked.count, static_cast<int>(row.bands.size()));
        for (int i = 1; i <= filter->asked.count; ++i) {
            const IirRequestRow& band = filter->asked.rows(i);
            const Band& expected = row.bands[static_cast<std::size_t>(i) - 1];
            EXPECT_EQ(band.stopband, expected.stopband);
            EXPECT_EQ(band.loss, band.stopband ? 40 : 0.5);
            for (const auto& [edge, wanted] : {std::pair(band.from, expected.from), std::pair(band.to, expected.to)}) {
                const bool end = wanted == 0 || wanted == 4000;
                if (end || !band.stopband) {
                    EXPECT_EQ(edge, wanted);
                }
                if (!end) {
                    EXPECT_NEAR(loss(edge), band.stopband ? at_stop_edge : 0.5, 1e-9);
                }
            }
        }
    }
}

TEST_F(DigitalDesign, RefusalsLeaveTheAnalogDesign) {
    const std::string low = "Error: Incorrect lower passband edge", high = "Error: Incorrect upper passband edge";
    const std::string sampling = "Error:  Unacceptable, sampling rate must be greater than 2.000000 KHz";
    const struct {
        Entries transform, spectral;
        std::string box;
        std::string degree = "";
    } rows[] = {
        {{{"sampling", "0"}}, {}, sampling},
        {{{"sampling", "-8000"}}, {}, sampling},
        {{{"sampling", "2000"}}, {}, sampling},
        {{{"sampling", "0.0005"}}, {}, sampling},
        {{{"z_transform_type", "Matched"}, {"sampling", "1999"}}, {}, sampling},
        {{}, {{"frequency_transformation", "2"}, {"upper_passband", "4000"}}, high},
        {{}, {{"frequency_transformation", "2"}, {"upper_passband", "0"}}, high},
        {{}, {{"frequency_transformation", "3"}, {"lower_passband", "4000"}}, low},
        {{}, {{"frequency_transformation", "3"}, {"lower_passband", "-1"}}, low},
        {{}, {{"frequency_transformation", "4"}, {"lower_passband", "1000"}, {"upper_passband", "4000"}}, high},
        {{}, {{"frequency_transformation", "4"}, {"lower_passband", "2000"}, {"upper_passband", "1000"}}, high},
        {{}, {{"frequency_transformation", "5"}, {"lower_passband", "0"}, {"upper_passband", "1000"}}, low},
        {{}, {{"frequency_transformation", "5"}, {"lower_passband", "900"}, {"upper_passband", "900"}}, high},
        {{},
         {{"frequency_transformation", "4"}, {"lower_passband", "900"}, {"upper_passband", "1000"}},
         "Error:  The resulting filter degree would be too high",
         "specified_zeros zerosAtInfinity 26"},
    };
    for (const auto& row : rows) {
        asked = {};
        window.boxes.clear();
        analog(row.degree);
        const FilterSpec before = found;
        form(row.transform);
        form(row.spectral);
        EXPECT_EQ(run(), DigitalDesignOutcome::cancelled) << row.box;
        ASSERT_EQ(window.boxes.size(), 1U) << row.box;
        EXPECT_EQ(window.boxes[0], row.box);
        EXPECT_FALSE(has_filter(*filter));
        EXPECT_EQ(found.medium, before.medium);
        EXPECT_EQ(found.degree, before.degree);
        window.forms.clear();
    }
    EXPECT_FALSE(
        refusal_of_spectral({.kind = SpectralKind::to_bandpass, .fs = 8000, .edge = 1, .lower = 5, .upper = NAN}, 3)
            .empty());
    EXPECT_FALSE(refusal_of_sampling(design->transfer, NAN, {}).empty());
}

TEST_F(DigitalDesign, OtherTypesHaveNoSpectralForm) {
    analog("",
           "high_pass equal_ripple equal_minima lowerPassEdge 1500 lowerStopEdge 1000 bandEdgeLoss 0.1 stopbandLoss 30 "
           "sampleFrequency 8000 ");
    form({});
    ASSERT_EQ(run(), DigitalDesignOutcome::done);
    EXPECT_EQ(filter->kind, DigitalKind::high_pass);
    EXPECT_EQ(filter->FLO, 1500);
    EXPECT_EQ(filter->FHI, 0);
    EXPECT_TRUE(filter->asked.rows(2).stopband && filter->asked.rows(2).to == 1000);
    EXPECT_NEAR(loss(1500), 0.1, 1e-9);

    analog("",
           "band_pass sloping_passband specified_zeros lowerPassEdge 500 upperPassEdge 2000 bandEdgeLoss 0.2 "
           "stopbandLoss 3 zerosAtZero 3 zerosAtInfinity 3 flatLoss 1 sampleFrequency 8000 ");
    form({});
    ASSERT_EQ(run(), DigitalDesignOutcome::done);
    EXPECT_TRUE(filter->asked.sloping);
    EXPECT_EQ(filter->asked.slope, 3);
    EXPECT_EQ(filter->asked.flat_loss, 1);
    ASSERT_EQ(filter->asked.count, 1);
    EXPECT_NEAR(loss(1000) - loss(500), 3, 0.2);
    EXPECT_NEAR(loss(2000) - loss(1000), 3, 0.2);
}

// A given function is taken by the bilinear transform; nobody is asked, and nothing was asked of it.
TEST_F(DigitalDesign, GivenFunctionsAreNotAskedAbout) {
    const std::string given =
        "functional_passband functional_stopband bandEdgeLoss 0 upperPassEdge 1000 zerosAtInfinity 3 sampleFrequency "
        "8000 "
        "denominatorFactors 1 1 1 denominatorDegree 3 ";
    analog("", given);
    form({});
    ASSERT_EQ(run(), DigitalDesignOutcome::done);
    EXPECT_EQ(filter->z_transform, ZTransform::bilinear_of_function);
    EXPECT_EQ(filter->roots.NP, 3);
    EXPECT_EQ(filter->asked.count, 0);
    EXPECT_FALSE(filter->allpass.ALLPASS_OK);
}

}  // namespace
}  // namespace kavrel
