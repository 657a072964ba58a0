#include "forms/filter_form.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

#include "shell/reporter.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

struct Choices {
    FilterKind kind;
    TypeChoice type;
    PassbandChoice passband;
    FunctionChoice function;
    StopbandChoice stopband;
    BandpassChoice form = BandpassChoice::conventional;
};

FilterRequest request_of(const Choices& choices) {
    FilterRequest r;
    r.filter_kind = choices.kind;
    r.filter_type = choices.type;
    r.passband_type = choices.passband;
    r.function_type = choices.function;
    r.stopband_type = choices.stopband;
    r.bandpass_form = choices.form;
    return r;
}

struct FilterForm : testing::Test {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter{window, journal, print};
    UnitSet units;

    // The fields that are off and, after a colon, the choices that are, in the order of the form.
    std::string off(FilterRequest request) {
        FormSheet sheet(DESIGN_FILTER_DLG, &request, units, reporter);
        std::string text;
        for (std::size_t i = 0; i < sheet.size(); ++i) {
            const Field& field = sheet.field(i);
            if (!sheet.is_on(i)) {
                text += std::string(field.name) + ' ';
                continue;
            }
            for (const Choice& choice : field.choices) {
                if (!sheet.choice_is_on(i, choice.value))
                    text += std::string(field.name) + ':' + std::string(choice.label) + ' ';
            }
        }
        return text;
    }
    std::string label(FilterRequest request, std::string_view name) {
        FormSheet sheet(DESIGN_FILTER_DLG, &request, units, reporter);
        return sheet.label(static_cast<std::size_t>(find_field(sheet, name)));
    }
};

using K = FilterKind;
using T = TypeChoice;
using P = PassbandChoice;
using F = FunctionChoice;
using S = StopbandChoice;
using B = BandpassChoice;

TEST_F(FilterForm, RulesTurnOffWhatDoesNotApply) {
    const struct {
        Choices choices;
        const char* off;
    } rows[] = {
        {{K::lc, T::low_pass, P::max_flat, F::e, S::monotonic},
         "fq_or_fs lower_passband passband_type:Sloping loss_slope flat_loss function_type multiplier lower_stopband "
         "lower_stop_loss detail_parameters zeros_at_zero zeros_at_infinity unit_elements bandpass_form zs_parameter "
         "predistortion "},
        {{K::iir_digital, T::low_pass, P::equal_ripple, F::e, S::equal_min},
         "lower_passband passband_type:Sloping loss_slope flat_loss function_type multiplier lower_stopband "
         "lower_stop_loss "
         "detail_parameters zeros_at_zero zeros_at_infinity unit_elements bandpass_form r1 r2 q_predistortion "
         "predistortion "
         "shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::active_rc, T::high_pass, P::max_flat, F::e, S::equal_min},
         "fq_or_fs upper_passband passband_type:Sloping loss_slope flat_loss function_type multiplier upper_stopband "
         "upper_stop_loss detail_parameters zeros_at_zero zeros_at_infinity unit_elements bandpass_form r1 r2 "
         "q_predistortion predistortion shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::microwave, T::band_pass, P::equal_ripple, F::e, S::equal_min},
         "loss_slope flat_loss function_type multiplier detail_parameters zeros_at_zero zeros_at_infinity zs_parameter "
         "predistortion shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::microwave, T::high_pass, P::equal_ripple, F::e, S::specified},
         "upper_passband passband_type:Sloping loss_slope flat_loss function_type multiplier lower_stopband "
         "lower_stop_loss "
         "upper_stopband upper_stop_loss zeros_at_infinity bandpass_form predistortion shifted_bandpass_trans "
         "center_frequency odd_parametric "},
        {{K::lc, T::band_pass, P::max_flat, F::e, S::placer, B::matching},
         "fq_or_fs loss_slope flat_loss function_type multiplier lower_stopband lower_stop_loss upper_stopband "
         "upper_stop_loss zeros_at_zero unit_elements zs_parameter predistortion shifted_bandpass_trans "
         "center_frequency "
         "odd_parametric "},
        {{K::lc, T::band_pass, P::max_flat, F::e, S::specified, B::parametric},
         "fq_or_fs loss_slope flat_loss function_type multiplier lower_stopband lower_stop_loss upper_stopband "
         "upper_stop_loss unit_elements zs_parameter predistortion shifted_bandpass_trans center_frequency "
         "odd_parametric "},
        {{K::lc, T::band_pass, P::sloping, F::e, S::specified, B::matching},
         "fq_or_fs function_type multiplier stopband_type lower_stopband lower_stop_loss upper_stopband "
         "upper_stop_loss "
         "detail_parameters unit_elements bandpass_form zs_parameter predistortion shifted_bandpass_trans "
         "center_frequency "
         "odd_parametric "},
        {{K::lc, T::low_pass, P::functional, F::e, S::equal_min},
         "fq_or_fs lower_passband passband_type:Sloping band_edge_loss loss_slope flat_loss multiplier "
         "stopband_type:Monotonic stopband_type:Placer lower_stopband lower_stop_loss upper_stop_loss zeros_at_zero "
         "unit_elements bandpass_form predistortion "},
        {{K::lc, T::high_pass, P::functional, F::f, S::equal_min},
         "fq_or_fs upper_passband passband_type:Sloping band_edge_loss loss_slope flat_loss stopband_type:Monotonic "
         "stopband_type:Placer lower_stop_loss upper_stopband upper_stop_loss zeros_at_infinity unit_elements "
         "bandpass_form "
         "predistortion shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::lc, T::low_pass, P::functional, F::f, S::specified},
         "fq_or_fs lower_passband passband_type:Sloping band_edge_loss loss_slope flat_loss stopband_type:Monotonic "
         "stopband_type:Placer lower_stopband lower_stop_loss upper_stopband upper_stop_loss zeros_at_zero "
         "unit_elements "
         "bandpass_form zs_parameter predistortion "},
        {{K::lc, T::band_pass, P::equal_ripple, F::e, S::specified, B::matching},
         "fq_or_fs loss_slope flat_loss function_type multiplier lower_stopband lower_stop_loss upper_stopband "
         "upper_stop_loss zeros_at_zero unit_elements zs_parameter predistortion shifted_bandpass_trans "
         "center_frequency odd_parametric "},
        {{K::active_rc, T::high_pass, P::max_flat, F::e, S::placer},
         "fq_or_fs upper_passband passband_type:Sloping loss_slope flat_loss function_type multiplier lower_stopband "
         "lower_stop_loss upper_stopband upper_stop_loss zeros_at_infinity unit_elements bandpass_form r1 r2 "
         "zs_parameter q_predistortion predistortion shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::lc, T::low_pass, P::equal_ripple, F::e, S::specified},
         "fq_or_fs lower_passband passband_type:Sloping loss_slope flat_loss function_type multiplier lower_stopband "
         "lower_stop_loss upper_stopband upper_stop_loss zeros_at_zero unit_elements bandpass_form predistortion "},
        {{K::iir_digital, T::high_pass, P::functional, F::e, S::specified},
         "upper_passband passband_type:Sloping band_edge_loss loss_slope flat_loss multiplier "
         "stopband_type:Monotonic stopband_type:Placer lower_stopband lower_stop_loss upper_stopband upper_stop_loss "
         "zeros_at_infinity unit_elements bandpass_form r1 r2 zs_parameter q_predistortion predistortion "
         "shifted_bandpass_trans center_frequency odd_parametric "},
        {{K::lc, T::band_pass, P::functional, F::f, S::equal_min},
         "fq_or_fs band_edge_loss loss_slope flat_loss stopband_type lower_stopband lower_stop_loss upper_stopband "
         "upper_stop_loss unit_elements bandpass_form:Matching zs_parameter predistortion shifted_bandpass_trans "
         "center_frequency odd_parametric "},
    };
    for (const auto& row : rows) EXPECT_EQ(off(request_of(row.choices)), row.off);
}

TEST_F(FilterForm, PredistortionIsAskedForWithAPlacerAndAQ) {
    FilterRequest r = request_of({K::lc, T::low_pass, P::max_flat, F::e, S::placer});
    EXPECT_NE(off(r).find(" predistortion "), std::string::npos);
    r.q_predistortion = 150.0;
    EXPECT_EQ(off(r).find(" predistortion "), std::string::npos);
    r.filter_kind = K::active_rc;
    EXPECT_NE(off(r).find(" predistortion "), std::string::npos);
}

TEST_F(FilterForm, LabelsFollowTheKindAndTheUnit) {
    units.frequency_index = 2;
    units.frequency_multiplier = 1e3;
    const auto of_kind = [](K kind) { return request_of({kind, T::low_pass, P::max_flat, F::e, S::specified}); };
    EXPECT_EQ(label(of_kind(K::lc), "fq_or_fs"), "Quarter-wave/Sampling freq (KHz)");
    EXPECT_EQ(label(of_kind(K::microwave), "fq_or_fs"), "Quarter-wave frequency (KHz)");
    EXPECT_EQ(label(of_kind(K::iir_digital), "fq_or_fs"), "Sampling frequency (KHz)");
    EXPECT_EQ(label(of_kind(K::active_rc), "zeros_at_infinity"), "# of zeros at infinity");
    EXPECT_EQ(label(of_kind(K::iir_digital), "zeros_at_infinity"), "# of zeros at FQ or FS/2");

    FilterRequest zeros;
    FormSheet sheet(SPECIFIED_ZEROS_DLG, &zeros, units, reporter);
    const auto unit = static_cast<std::size_t>(find_field(sheet, "frequency_unit"));
    EXPECT_EQ(sheet.shown(unit), "in KHz");
    for (const char* label : {"rad/sec", "in  Hz", "rad/sec", "in KHz", "rad/sec", "in Hz"}) {
        EXPECT_EQ(sheet.enter(unit, label), "") << label;
        EXPECT_EQ(sheet.shown(unit), label[0] == 'r' ? "rad/sec" : "in KHz") << label;
    }
}

TEST_F(FilterForm, DetailParametersAskForWhatTheCaseNeeds) {
    const struct {
        Choices choices;
        const Form* form;
        const char* lists;
    } rows[] = {
        {{K::lc, T::low_pass, P::max_flat, F::e, S::specified}, &SPECIFIED_ZEROS_DLG, "TR_ZEROS "},
        {{K::lc, T::low_pass, P::max_flat, F::e, S::placer}, &PLACER_DLG, "PLACER_REQS FIXED_ZEROS MOVABLE_ZEROS "},
        {{K::lc, T::low_pass, P::functional, F::e, S::equal_min}, &FUNCTION_ZEROS_DLG, "DOUBLETS "},
        {{K::lc, T::low_pass, P::functional, F::e, S::specified}, &DOUBLETS_DLG, "DOUBLETS TR_ZEROS "},
        {{K::lc, T::band_pass, P::functional, F::e, S::equal_min}, &DOUBLETS_DLG, "DOUBLETS TR_ZEROS "},
    };
    for (const auto& row : rows) {
        FilterRequest request = request_of(row.choices);
        FormSheet sheet(DESIGN_FILTER_DLG, &request, units, reporter);
        const Form* opened = nullptr;
        window.forms = {[&](FormSheet& inner) {
            opened = &inner.form();
            std::string lists;
            for (const Field& field : inner.form().fields) {
                if (field.kind == FieldKind::list) lists += std::string(field.name) + ' ';
            }
            EXPECT_EQ(lists, row.lists);
            return true;
        }};
        sheet.press(static_cast<std::size_t>(find_field(sheet, "Detail Parameters")));
        EXPECT_EQ(opened, row.form) << row.lists;
    }
}

// A request that passes, of each family, to be spoilt one number at a time.
FilterRequest good_low_pass() {
    FilterRequest r;
    r.upper_passband = 1000.0;
    r.band_edge_loss = 0.1;
    r.upper_stopband = 1500.0;
    r.upper_stop_loss = 60.0;
    return r;
}

FilterRequest good_high_pass() {
    FilterRequest r = good_low_pass();
    r.filter_type = T::high_pass;
    r.lower_passband = 1000.0;
    r.lower_stopband = 500.0;
    r.lower_stop_loss = 60.0;
    return r;
}

FilterRequest good_band_pass() {
    FilterRequest r = good_high_pass();
    r.filter_type = T::band_pass;
    r.upper_passband = 2000.0;
    r.upper_stopband = 4000.0;
    return r;
}

FilterRequest good_placer(T type) {
    FilterRequest r = good_band_pass();
    r.filter_type = type;
    r.stopband_type = S::placer;
    r.PLACER_REQS = {.rows = 2, .cells = {500.0, 40.0, 4000.0, 40.0}};
    return r;
}

FilterRequest good_functional(S stopband) {
    FilterRequest r = good_low_pass();
    r.passband_type = P::functional;
    r.stopband_type = stopband;
    r.band_edge_loss = 0.0;
    return r;
}

FilterRequest good_matching() {
    FilterRequest r = good_band_pass();
    r.bandpass_form = B::matching;
    r.lower_stopband = r.lower_stop_loss = r.upper_stopband = r.upper_stop_loss = 0.0;
    r.r2 = 75.0;
    return r;
}

FilterRequest good_zeros(double frequency) {
    FilterRequest r = good_low_pass();
    r.stopband_type = S::specified;
    r.TR_ZEROS = {.rows = 2, .cells = {0.0, 1200.0, 0.0, frequency}};
    return r;
}

template <class Change>
FilterRequest changed(FilterRequest r, Change change) {
    change(r);
    return r;
}

TEST(FilterValidator, GoodAndBadRequests) {
    using R = FilterRequest;
    const auto kind = [](K k, double fs) { return [=](R& r) { r.filter_kind = k, r.fq_or_fs = fs; }; };
    const struct {
        FilterRequest request;
        const char* wrong;
    } rows[] = {
        {{}, "Stopband not specified or incorrect"},
        {good_low_pass(), ""},
        {good_high_pass(), ""},
        {good_band_pass(), ""},
        // media
        {changed(good_low_pass(), kind(K::iir_digital, 3000.0)), ""},
        {changed(good_low_pass(), kind(K::iir_digital, 2999.0)), "Sampling frequency too low"},
        {changed(good_low_pass(), kind(K::iir_digital, -3000.0)), ""},
        {changed(good_low_pass(), kind(K::iir_digital, 0.0)), "Sampling frequency too low"},
        {changed(good_high_pass(), kind(K::iir_digital, 2001.0)), ""},
        {changed(good_high_pass(), kind(K::iir_digital, 2000.0)), "Sampling frequency too low"},
        {changed(good_low_pass(), kind(K::microwave, 1500.0)), ""},
        {changed(good_low_pass(), kind(K::microwave, 1499.0)), "Quarter-wave frequency too low"},
        {changed(good_low_pass(), kind(K::lc, 1.0)), ""},
        // zeros in the media
        {changed(good_zeros(1499.0), kind(K::iir_digital, 3000.0)), ""},
        {changed(good_zeros(1500.0), kind(K::iir_digital, 3000.0)), "Sampling frequency too low"},
        {changed(good_zeros(-1600.0), kind(K::iir_digital, 3000.0)), "Sampling frequency too low"},
        {changed(good_zeros(1499.0), kind(K::microwave, 1500.0)), ""},
        {changed(good_zeros(1500.0), kind(K::microwave, 1500.0)), "Quarter-wave frequency too low"},
        {changed(good_zeros(1600.0), kind(K::lc, 1500.0)), ""},
        {changed(good_low_pass(),
                 [](R& r) { r.filter_kind = K::iir_digital, r.fq_or_fs = 3e3, r.TR_ZEROS = good_zeros(2e3).TR_ZEROS; }),
         ""},
        // shifted band
        {changed(good_low_pass(), [](R& r) { r.center_frequency = 3000.0; }), ""},
        {changed(good_low_pass(), [](R& r) { r.center_frequency = 2999.0; }), "Center frequency too low"},
        {changed(good_low_pass(), [](R& r) { r.center_frequency = 2999.0, r.upper_stopband = 1400.0; }), ""},
        {changed(good_zeros(1500.0), [](R& r) { r.center_frequency = 1999.0; }), "Center frequency too low"},
        {changed(good_zeros(1500.0), [](R& r) { r.center_frequency = 2000.0; }), ""},
        {changed(good_high_pass(), [](R& r) { r.center_frequency = 1.0; }), ""},
        // matching
        {good_matching(), ""},
        {changed(good_matching(), [](R& r) { r.lower_passband = 0.0; }), ""},
        {changed(good_matching(), [](R& r) { r.lower_passband = r.upper_passband = 0.0; }),
         "Passband is not specified"},
        {changed(good_matching(), [](R& r) { r.r2 = r.r1; }), "Terminations may not be equal or zero"},
        {changed(good_matching(), [](R& r) { r.r2 = 0.0; }), "Terminations may not be equal or zero"},
        {changed(good_matching(), [](R& r) { r.upper_stopband = 4000.0; }), "Stopband not specified or incorrect"},
        {changed(good_matching(), [](R& r) { r.upper_stopband = 4000.0, r.upper_stop_loss = 40.0; }), ""},
        // placed zeros
        {good_placer(T::low_pass), ""},
        {good_placer(T::high_pass), ""},
        {good_placer(T::band_pass), ""},
        {changed(good_placer(T::low_pass), [](R& r) { r.PLACER_REQS.rows = 0; }), "No upper band breakpoint"},
        {changed(good_placer(T::high_pass), [](R& r) { r.PLACER_REQS(1, 1) = 3000.0; }), "No lower band breakpoint"},
        {changed(good_placer(T::band_pass), [](R& r) { r.PLACER_REQS.rows = 1; }), "Breakpoints are missing"},
        {changed(good_placer(T::band_pass), [](R& r) { r.PLACER_REQS(1, 1) = 0.0; }), "Breakpoints are missing"},
        // estimated stopbands
        {changed(good_low_pass(), [](R& r) { r.upper_stopband = 1000.0; }), "Stopband not specified or incorrect"},
        {changed(good_low_pass(), [](R& r) { r.upper_stop_loss = 0.0; }), "Stopband not specified or incorrect"},
        {changed(good_low_pass(), [](R& r) { r.upper_passband = 0.0; }), "Passband not specified or incorrect"},
        {changed(good_low_pass(), [](R& r) { r.stopband_type = S::specified, r.upper_stopband = 0.0; }), ""},
        {changed(good_high_pass(), [](R& r) { r.lower_stopband = 1000.0; }), "Stopband not specified or incorrect"},
        {changed(good_high_pass(), [](R& r) { r.upper_passband = r.upper_stopband = 0.0; }), ""},
        {changed(good_band_pass(), [](R& r) { r.lower_stopband = 1000.0; }), "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.upper_stop_loss = -1.0; }), "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.lower_passband = r.lower_stopband = -1.0; }),
         "Stopband not specified or incorrect"},
        {changed(good_high_pass(), [](R& r) { r.lower_stop_loss = 0.0; }), "Stopband not specified or incorrect"},
        {changed(good_high_pass(), [](R& r) { r.lower_stopband = 0.0; }), "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.lower_stop_loss = 0.0; }), "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.upper_stopband = 2000.0; }), "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.upper_passband = -2.0, r.upper_stopband = -1.0; }),
         "Stopband not specified or incorrect"},
        {changed(good_low_pass(), [](R& r) { r.upper_passband = -2.0, r.upper_stopband = -1.0; }),
         "Passband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.stopband_type = S::equal_min, r.upper_stopband = 0.0; }),
         "Stopband not specified or incorrect"},
        {changed(good_band_pass(), [](R& r) { r.stopband_type = S::specified, r.lower_stopband = 0.0; }), ""},
        {changed(good_functional(S::equal_min), [](R& r) { r.filter_type = T::high_pass, r.lower_passband = 0.0; }),
         "Passband not specified or incorrect"},
        {changed(good_functional(S::equal_min), [](R& r) { r.filter_type = T::high_pass, r.lower_passband = 1.0; }),
         ""},
        {good_functional(S::equal_min), ""},
        {good_functional(S::specified), ""},
        {good_functional(S::monotonic), ""},
        {changed(good_functional(S::equal_min), [](R& r) { r.upper_stopband = r.upper_passband; }), ""},
        {changed(good_functional(S::equal_min), [](R& r) { r.upper_passband = 0.0; }),
         "Passband not specified or incorrect"},
        // losses
        {changed(good_low_pass(), [](R& r) { r.band_edge_loss = 0.0; }), "Passband loss is zero"},
        {changed(good_low_pass(), [](R& r) { r.band_edge_loss = -15.0; }), ""},
        {changed(good_low_pass(), [](R& r) { r.band_edge_loss = -100.0; }),
         "Reflection coefficient of 100 percent or more"},
        {changed(good_band_pass(), [](R& r) { r.passband_type = P::sloping; }), "Loss slope is zero"},
        {changed(good_band_pass(), [](R& r) { r.passband_type = P::sloping, r.loss_slope = -6.0; }), ""},
        // parities
        {changed(good_band_pass(), [](R& r) { r.bandpass_form = B::parametric, r.stopband_type = S::specified; }),
         "Incorrect parametric specification"},
        {changed(good_band_pass(),
                 [](R& r) { r.bandpass_form = B::parametric, r.stopband_type = S::specified, r.zeros_at_zero = 3; }),
         ""},
        {changed(good_low_pass(), [](R& r) { r.bandpass_form = B::parametric; }), ""},
        {changed(good_band_pass(), [](R& r) { r.bandpass_form = B::parametric; }), ""},
        {changed(good_band_pass(), [](R& r) { r.bandpass_form = B::parametric, r.stopband_type = S::equal_min; }), ""},
        {changed(good_band_pass(),
                 [](R& r) { r.bandpass_form = B::parametric, r.stopband_type = S::specified, r.zeros_at_zero = 2; }),
         "Incorrect parametric specification"},
        {changed(good_band_pass(),
                 [](R& r) { r.bandpass_form = B::parametric, r.stopband_type = S::specified, r.unit_elements = 1; }),
         "Incorrect parametric specification"},  // lumped: their field is off
        {changed(good_placer(T::band_pass), [](R& r) { r.bandpass_form = B::parametric; }),
         "Incorrect parametric specification"},
        {changed(good_placer(T::band_pass), [](R& r) { r.bandpass_form = B::parametric, r.zeros_at_infinity = 1; }),
         ""},
        // of several reasons the first in the order of the tests
        {changed(good_low_pass(),
                 [](R& r) { r.filter_kind = K::microwave, r.upper_stop_loss = r.band_edge_loss = 0.0; }),
         "Quarter-wave frequency too low"},
        {changed(good_low_pass(), [](R& r) { r.center_frequency = 1.0, r.upper_stop_loss = 0.0; }),
         "Center frequency too low"},
        {changed(good_low_pass(), [](R& r) { r.upper_stop_loss = r.upper_passband = r.band_edge_loss = 0.0; }),
         "Stopband not specified or incorrect"},
        {changed(good_low_pass(), [](R& r) { r.upper_passband = r.band_edge_loss = 0.0; }),
         "Passband not specified or incorrect"},
        // terminations
        {changed(good_low_pass(), [](R& r) { r.r1 = -50.0; }), "Terminations may not be negative"},
        {changed(good_matching(), [](R& r) { r.r2 = -75.0; }), "Terminations may not be negative"},
        {changed(good_low_pass(), [](R& r) { r.r2 = 0.0; }), ""},
        {changed(good_low_pass(), [](R& r) { r.filter_kind = K::active_rc, r.r1 = -50.0; }), ""},
        // choices left behind by another one
        {changed(good_low_pass(), [](R& r) { r.passband_type = P::sloping, r.loss_slope = 6.0; }),
         "A sloping pass band needs a band pass"},
        {changed(good_matching(), [](R& r) { r.passband_type = P::functional; }), "Matching cannot be functional"},
    };
    int n = 0;
    for (const auto& row : rows) {
        EXPECT_EQ(DESIGN_FILTER_DLG.message(&row.request), row.wrong) << "row " << n;
        EXPECT_LE(DESIGN_FILTER_DLG.message(&row.request).size(), 60U);
        ++n;
    }
}

TEST(FilterRequestInForce, WhatIsOffDoesNotCount) {
    FilterRequest r = good_band_pass();
    r.filter_type = T::low_pass;
    r.unit_elements = 3;
    r.zeros_at_infinity = 7;
    r.fq_or_fs = 1e6;
    r.predistortion = PredistortionMode::pass_and_stop_bands;
    r.bandpass_form = B::parametric;
    const FilterRequest low = in_force(r);
    EXPECT_EQ(low.lower_passband, 0.0);
    EXPECT_EQ(low.upper_stop_loss, 60.0);
    EXPECT_EQ(low.unit_elements, 0);
    EXPECT_EQ(low.zeros_at_infinity, 0);
    EXPECT_EQ(low.fq_or_fs, 0.0);
    EXPECT_EQ(low.predistortion, PredistortionMode::passband_only);
    EXPECT_EQ(low.bandpass_form, B::conventional);
    r.passband_type = P::functional;
    EXPECT_EQ(in_force(r).stopband_type, S::specified) << "a function has no monotonic stopband of its own";
    EXPECT_EQ(in_force(r).zeros_at_infinity, 7);
}

}  // namespace
}  // namespace kavrel
