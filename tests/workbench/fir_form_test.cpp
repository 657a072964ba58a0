#include "workbench/fir_form.h"

#include <set>

#include <gtest/gtest.h>

#include "shell/stored_files.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/fir_input_file.h"

namespace kavrel {
namespace {

FirRequest filter_request(std::initializer_list<std::array<double, 4>> rows) {
    FirRequest r;
    r.filter_length = 21;
    for (const auto& row : rows) {
        ++r.QUADRUPLETS.rows;
        for (int column = 1; column <= 4; ++column) {
            r.QUADRUPLETS(r.QUADRUPLETS.rows, column) = row[static_cast<std::size_t>(column) - 1];
        }
    }
    return r;
}

FirRequest windowed_request(int filter_type, double lower, double upper, double sampling, int window = 3) {
    FirRequest r;
    r.design_method = 2;
    r.filter_length = 21;
    r.filter_type = filter_type;
    r.lower_frequency = lower;
    r.upper_frequency = upper;
    r.sampling_frequency = sampling;
    r.window_type = window;
    return r;
}

FirRequest typed_request(int type, double lower, double upper, double sampling, double slope) {
    FirRequest r = windowed_request(1, lower, upper, sampling);
    r.design_method = 1;
    r.fir_type = type;
    r.slope = slope;
    return r;
}

template <class Change>
FirRequest with(FirRequest r, Change change) {
    change(r);
    return r;
}

TEST(FirForm, ValidatorGoodAndBadSideBySide) {
    const auto low_pass = filter_request({{0, 1, 1, 1}, {2, 5, 0, 1}});
    const auto length = [](int taps) { return [taps](FirRequest& r) { r.filter_length = taps; }; };
    const struct {
        FirRequest request;
        const char* message;
    } rows[] = {
        {low_pass, ""},
        {with(low_pass, length(0)), ""},
        {filter_request({}), "Incorrect frequency band specification"},
        {filter_request({{0, 1, 1, 1}}), "Incorrect frequency band specification"},
        {filter_request({{0, 1, 1, 1}, {2, 0, 0, 1}}), "Incorrect frequency band specification"},
        {filter_request({{0, 1, 1, 1}, {-2, 5, 0, 1}}), "Incorrect frequency band specification"},
        {with(filter_request({{0, 1, 1, 1}, {2, 3, 0, 1}, {4, 5, 1, 1}}), length(0)),
         "Only lowpass can have zero length"},
        {filter_request({{0, 1, 1, 1}, {2, 3, 0, 1}, {4, 5, 1, 1}}), ""},
        {typed_request(2, 0, 4, 10, 1), ""},
        {typed_request(2, 0, 0, 10, 1), "Missing data"},
        {typed_request(2, 0, 4, 10, 0), "Missing data"},
        {typed_request(3, 1, 4, 10, 0), ""},
        {typed_request(3, 0, 4, 10, 0), "Missing data"},
        {typed_request(3, 1, 4, 0, 0), "Missing data"},
        {windowed_request(1, 0, 4, 10), ""},
        {with(windowed_request(1, 0, 4, 10), length(2)), "Filter length too low"},
        {with(windowed_request(1, 0, 4, 10), length(0)), "Filter length too low"},
        {windowed_request(1, 0, 4, 0), "Sampling frequency missing"},
        {windowed_request(1, 0, 5, 10), "Incorrect frequency band specification"},
        {windowed_request(2, 4, 0, 10), ""},
        {windowed_request(2, 0, 4, 10), "Incorrect frequency band specification"},
        {windowed_request(3, 1, 4, 10), ""},
        {windowed_request(4, 1, 6, 10), "Incorrect frequency band specification"},
        {windowed_request(1, 0, 4, 10, 17), "Parameter missing"},
        {with(windowed_request(1, 0, 4, 10, 17), [](FirRequest& r) { r.parameter = 60; }), ""},
        {with(windowed_request(1, 0, 4, 10, 21), [](FirRequest& r) { r.parameter = -1; }), "Parameter missing"},
        {windowed_request(1, 0, 4, 10, 16), ""},
        {windowed_request(2, 5, 0, 10), "Incorrect frequency band specification"},
        {windowed_request(3, 0, 4, 10), "Incorrect frequency band specification"},
        {windowed_request(3, 6, 4, 10), "Incorrect frequency band specification"},
        {windowed_request(4, 4, 1, 10), ""},
        {typed_request(2, 0, 4, 0, 1), "Missing data"},
        {typed_request(2, 0, 4, 10, -1), "Missing data"},
        {with(typed_request(3, 1, 4, 10, 0), length(0)), ""},
        {with(windowed_request(1, 0, 0, 0), length(2)), "Filter length too low"},
        {windowed_request(1, 0, 0, 0, 17), "Sampling frequency missing"},
        {windowed_request(1, 0, 5, 10, 17), "Incorrect frequency band specification"},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(FIR_DESIGN_DLG.message(&rows[i].request), rows[i].message) << "row " << i;
    }
}

TEST(FirForm, FieldsAreOnForWhatTheDesignUses) {
    const auto on = [](const FirRequest& r) {
        FieldStates states(FIR_DESIGN_DLG.fields);
        FIR_DESIGN_DLG.rules(&r, states);
        std::set<std::string_view> names;
        for (std::size_t i = 0; i < FIR_DESIGN_DLG.fields.size(); ++i) {
            if (states.is_on(i)) names.insert(FIR_DESIGN_DLG.fields[i].name);
        }
        return names;
    };
    using Names = std::set<std::string_view>;
    const auto common = [](Names more) {
        more.insert({"filter_length", "design_method", "save_design"});
        return more;
    };
    EXPECT_EQ(on(filter_request({})), common({"fir_type", "specification_type", "details", "shaped_passband"}));
    EXPECT_EQ(on(typed_request(2, 0, 0, 0, 0)), common({"fir_type", "upper_frequency", "sampling_frequency", "slope"}));
    EXPECT_EQ(on(typed_request(3, 0, 0, 0, 0)),
              common({"fir_type", "lower_frequency", "upper_frequency", "sampling_frequency"}));
    EXPECT_EQ(on(windowed_request(1, 0, 0, 0)),
              common({"filter_type", "window_type", "upper_frequency", "sampling_frequency"}));
    EXPECT_EQ(on(windowed_request(4, 0, 0, 0, 17)), common({"filter_type", "window_type", "lower_frequency",
                                                            "upper_frequency", "sampling_frequency", "parameter"}));
}

TEST(FirInputFile, ComesBackBitForBit) {
    FirRequest request = filter_request({{0, 0.1, 1, 0.1}, {2, 5, 0, 60}});
    request.shape.rows = 2;
    request.shape(1, 1) = 0.1;
    request.shape(2, 2) = -3.3;
    request.slope = 1.0 / 3.0;
    request.window_type = 21;
    const std::string bytes = fir_input_bytes(request);
    EXPECT_EQ(bytes.size(), 8U + 320U + 2U * 2004U + 4U + 8U + 64U);
    FirRequest back;
    ASSERT_TRUE(read_fir_input(bytes, back));
    EXPECT_EQ(back.QUADRUPLETS, request.QUADRUPLETS);
    EXPECT_EQ(back.slope, request.slope);
    EXPECT_EQ(back.window_type, 21);
    EXPECT_EQ(back.shape.rows, 2);
    EXPECT_EQ(back.shape(2, 2), static_cast<double>(-3.3F)) << "the shape is kept in single precision";
    EXPECT_EQ(fir_input_bytes(back), bytes);
}

TEST(FirInputFile, WhatDoesNotFitChangesNothing) {
    const std::string good = fir_input_bytes(filter_request({{0, 1, 1, 1}, {2, 5, 0, 1}}));
    FirRequest request = filter_request({{1, 2, 3, 4}});
    const FirRequest before = request;
    const auto refused = [&](std::string_view bytes) {
        const bool read = read_fir_input(bytes, request);
        return !read && request.QUADRUPLETS == before.QUADRUPLETS && request.filter_length == before.filter_length;
    };
    for (const std::size_t kept : {0U, 3U, 4U, 100U, 4340U, 4344U, 4411U})
        EXPECT_TRUE(refused(good.substr(0, kept))) << kept;
    EXPECT_TRUE(refused(good + good));
    EXPECT_TRUE(refused(std::string(4412, 'x')));
    const std::size_t first_integer = good.size() - 4 - 6 * 4;
    for (std::size_t i = 0; i < 6; ++i) {
        std::string bad = good;
        bad[first_integer + 4 * i + 1] = 100;
        EXPECT_TRUE(refused(bad)) << "choice " << i;
    }
    std::string not_finite = good;
    not_finite.replace(4, 8, std::string("\0\0\0\0\0\0\xf8\x7f", 8));
    EXPECT_TRUE(refused(not_finite));
}

}  // namespace
}  // namespace kavrel
