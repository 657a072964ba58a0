#include "forms/fir_form.h"

#include <set>

#include <gtest/gtest.h>

#include "shell/stored_files.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"

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
    r.design_method = FirMethod::windowed;
    r.filter_length = 21;
    r.filter_type = static_cast<FirFilterType>(filter_type);
    r.lower_frequency = lower;
    r.upper_frequency = upper;
    r.sampling_frequency = sampling;
    r.window_type = static_cast<FirWindow>(window);
    return r;
}

FirRequest typed_request(int type, double lower, double upper, double sampling, double slope) {
    FirRequest r = windowed_request(1, lower, upper, sampling);
    r.design_method = FirMethod::equal_ripple;
    r.fir_type = static_cast<FirType>(type);
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

}  // namespace
}  // namespace kavrel
