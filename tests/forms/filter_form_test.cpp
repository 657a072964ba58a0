// What rows of tests/data/forms cannot say of the filter form.
#include "forms/filter_form.h"

#include <gtest/gtest.h>

#include "shell/reporter.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

TEST(FilterForm, LabelsAndChoicesBearTheUnitOfFrequency) {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    UnitSet units;
    units.frequency_index = 2;
    units.frequency_multiplier = 1e3;
    FilterRequest request;
    const FormSheet filter(DESIGN_FILTER_DLG, &request, units, reporter);
    EXPECT_EQ(filter.label(static_cast<std::size_t>(find_field(filter, "fq_or_fs"))),
              "Quarter-wave/Sampling freq (KHz)");

    FormSheet zeros(SPECIFIED_ZEROS_DLG, &request, units, reporter);
    const auto unit = static_cast<std::size_t>(find_field(zeros, "frequency_unit"));
    EXPECT_EQ(zeros.shown(unit), "in KHz");
    for (const char* label : {"rad/sec", "in  Hz", "rad/sec", "in KHz", "rad/sec", "in Hz"}) {
        EXPECT_EQ(zeros.enter(unit, label), "") << label;
        EXPECT_EQ(zeros.shown(unit), label[0] == 'r' ? "rad/sec" : "in KHz") << label;
    }
}

TEST(FilterRequestInForce, WhatIsOffDoesNotCount) {
    FilterRequest r;
    r.lower_passband = 1000.0;
    r.upper_stop_loss = 60.0;
    r.unit_elements = 3;
    r.zeros_at_infinity = 7;
    r.fq_or_fs = 1e6;
    r.predistortion = PredistortionMode::pass_and_stop_bands;
    r.bandpass_form = BandpassChoice::parametric;
    const FilterRequest low = in_force(r);
    EXPECT_EQ(low.lower_passband, 0.0);
    EXPECT_EQ(low.upper_stop_loss, 60.0);
    EXPECT_EQ(low.unit_elements, 0);
    EXPECT_EQ(low.zeros_at_infinity, 0);
    EXPECT_EQ(low.fq_or_fs, 0.0);
    EXPECT_EQ(low.predistortion, PredistortionMode::passband_only);
    EXPECT_EQ(low.bandpass_form, BandpassChoice::conventional);
    r.passband_type = PassbandChoice::functional;
    EXPECT_EQ(in_force(r).stopband_type, StopbandChoice::specified) << "a function has no monotonic stopband";
    EXPECT_EQ(in_force(r).zeros_at_infinity, 7);
}

}  // namespace
}  // namespace kavrel
