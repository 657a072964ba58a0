#include "forms/delay_form.h"

#include <set>

#include <gtest/gtest.h>

#include "shell/reporter.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

using T = DelayType;
using I = DelayImplementation;
using N = DelayNetwork;
using S = DelayStopband;
using R = DelayRequest;

template <class Change>
R with(R r, Change change) {
    change(r);
    return r;
}

R request_of(T type, I implementation, N network = N::filter, S stopband = S::equal_min) {
    R r;
    r.delay_type = type;
    r.implementation = implementation;
    r.network_type = network;
    r.stopband = stopband;
    return r;
}

// A request of each family that passes, all its numbers given.
R good(T type, I implementation, N network = N::filter, S stopband = S::equal_min) {
    R r = request_of(type, implementation, network, stopband);
    r.delay = 1e-3;
    r.degree = 5;
    r.end_of_passband = 1000.0;
    r.start_of_stopband = 3000.0;
    r.zeros_at_infinity = 3;
    r.fq_or_fs = 10e3;
    return r;
}

TEST(DelayForm, FieldsAreOnForWhatTheDesignUses) {
    using Names = std::set<std::string_view>;
    const auto on = [](const R& r) {
        FieldStates states(DELAY_DESIGN_DLG.fields);
        DELAY_DESIGN_DLG.rules(&r, states);
        Names names;
        for (std::size_t i = 0; i < DELAY_DESIGN_DLG.fields.size(); ++i) {
            if (states.is_on(i)) names.insert(DELAY_DESIGN_DLG.fields[i].name);
        }
        for (const char* always : {"delay_type", "implementation", "save_design"}) {
            EXPECT_EQ(names.erase(always), 1U) << always;
        }
        return names;
    };
    const Names shift = {"shifted_bandpass_trans", "center_frequency", "odd_parametric"};
    const auto joined = [](Names names, const Names& more) {
        names.insert(more.begin(), more.end());
        return names;
    };
    const Names resistors = {"terminations", "r1", "r2", "q_value", "hurwitz"};
    const struct {
        R request;
        Names names;
    } rows[] = {
        {request_of(T::max_flat, I::lc),
         joined(joined({"network_type", "delay", "stopband", "start_of_stopband", "degree"}, resistors), shift)},
        {request_of(T::max_flat, I::lc, N::filter, S::specified),
         joined(joined({"network_type", "delay", "stopband", "zeros_at_infinity", "transm_zeros"}, resistors), shift)},
        {request_of(T::max_flat, I::lc, N::delay_line),
         {"network_type", "delay", "degree", "terminations", "r1", "r2", "shifted_bandpass_trans", "center_frequency"}},
        {request_of(T::equal_ripple, I::active_rc),
         joined({"network_type", "delay", "stopband", "end_of_passband", "start_of_stopband", "degree"}, shift)},
        {request_of(T::equal_ripple, I::iir_digital, N::delay_line),
         {"fq_or_fs", "network_type", "delay", "end_of_passband", "degree"}},
        {request_of(T::equal_ripple, I::microwave, N::filter, S::specified),
         joined(
             {"fq_or_fs", "network_type", "delay", "stopband", "end_of_passband", "zeros_at_infinity", "transm_zeros"},
             resistors)},
        {request_of(T::equalizer, I::lc), {"data", "normalization_freq", "degree", "terminations", "r1", "r2"}},
        {request_of(T::equalizer, I::iir_digital, N::delay_line, S::specified),
         {"data", "fq_or_fs", "normalization_freq", "degree"}},
        {with(request_of(T::equal_ripple, I::active_rc), [](R& r) { r.hurwitz = HurwitzType::non_hurwitz; }),
         joined({"network_type", "delay", "stopband", "end_of_passband", "start_of_stopband", "degree"}, shift)},
        {with(request_of(T::max_flat, I::lc, N::filter, S::specified),
              [](R& r) { r.hurwitz = HurwitzType::non_hurwitz; }),
         joined(
             joined({"network_type", "delay", "stopband", "zeros_at_infinity", "transm_zeros", "selection"}, resistors),
             shift)},
        {with(request_of(T::max_flat, I::lc, N::filter, S::specified),
              [](R& r) { r.hurwitz = HurwitzType::non_hurwitz, r.selection = SignSelection::manual; }),
         joined(joined({"network_type", "delay", "stopband", "zeros_at_infinity", "transm_zeros", "selection",
                        "indicators"},
                       resistors),
                shift)},
    };
    int n = 0;
    for (const auto& row : rows) EXPECT_EQ(on(row.request), row.names) << "row " << n++;
}

TEST(DelayForm, ValidatorGoodAndBadSideBySide) {
    const auto no_delay = [](R& r) { r.delay = 0.0; };
    const auto no_degree = [](R& r) { r.degree = 0; };
    const auto no_pass_edge = [](R& r) { r.end_of_passband = 0.0; };
    const auto no_stop_edge = [](R& r) { r.start_of_stopband = 0.0; };
    const auto no_zeros = [](R& r) { r.zeros_at_infinity = 0; };
    const auto no_medium = [](R& r) { r.fq_or_fs = 0.0; };
    const struct {
        R request;
        const char* wrong;
    } rows[] = {
        {{}, "Delay data missing"},
        // maximally flat
        {good(T::max_flat, I::lc), ""},
        {with(good(T::max_flat, I::lc), no_delay), "Delay data missing"},
        {with(good(T::max_flat, I::lc), [](R& r) { r.delay = -1.0; }), "Delay data missing"},
        {with(good(T::max_flat, I::lc), no_degree), "Missing data"},
        {with(good(T::max_flat, I::lc), no_stop_edge), "Missing data"},
        {with(good(T::max_flat, I::lc), no_zeros), ""},
        {with(good(T::max_flat, I::lc), no_pass_edge), ""},
        {with(good(T::max_flat, I::lc, N::delay_line), no_stop_edge), ""},
        {with(good(T::max_flat, I::lc, N::delay_line), no_degree), "Filter degree missing"},
        {with(good(T::max_flat, I::lc, N::delay_line), no_delay), "Delay data missing"},
        {with(good(T::max_flat, I::lc, N::filter, S::specified), no_degree), ""},
        {with(good(T::max_flat, I::lc, N::filter, S::specified), no_zeros), "Zero at infinity should be nonzero"},
        {with(good(T::max_flat, I::active_rc, N::filter, S::specified), no_zeros), ""},
        {with(good(T::max_flat, I::microwave, N::filter, S::specified), no_zeros), ""},
        // equal ripple
        {good(T::equal_ripple, I::lc), ""},
        {with(good(T::equal_ripple, I::lc), no_delay), "Delay data missing"},
        {with(good(T::equal_ripple, I::lc), no_pass_edge), "Data missing"},
        {with(good(T::equal_ripple, I::lc), no_stop_edge), "Data missing"},
        {with(good(T::equal_ripple, I::lc), no_degree), "Data missing"},
        {with(good(T::equal_ripple, I::lc), [](R& r) { r.end_of_passband = r.start_of_stopband = -1.0; }),
         "Data missing"},
        {with(good(T::equal_ripple, I::lc, N::filter, S::specified), no_degree), ""},
        {with(good(T::equal_ripple, I::lc, N::filter, S::specified), no_pass_edge), "Passband edge missing"},
        {with(good(T::equal_ripple, I::lc, N::filter, S::specified), no_zeros), "Zero at infinity should be nonzero"},
        {with(good(T::equal_ripple, I::iir_digital, N::filter, S::specified), no_zeros), ""},
        {with(good(T::equal_ripple, I::lc, N::delay_line), no_stop_edge), ""},
        {with(good(T::equal_ripple, I::lc, N::delay_line), no_degree), "Degree missing"},
        {with(good(T::equal_ripple, I::lc, N::delay_line), no_pass_edge), "Degree missing"},
        // equalizers
        {with(good(T::equalizer, I::lc), no_delay), ""},
        {with(good(T::equalizer, I::lc), no_degree), "Data missing"},
        {with(good(T::equalizer, I::lc), no_medium), ""},
        {with(good(T::equalizer, I::active_rc), no_medium), ""},
        {good(T::equalizer, I::microwave), ""},
        {with(good(T::equalizer, I::microwave), no_medium), "Sampling/quarter-wave frequency missing"},
        {with(good(T::equalizer, I::iir_digital), no_medium), "Sampling/quarter-wave frequency missing"},
        {with(good(T::equalizer, I::iir_digital, N::delay_line), no_degree), "Data missing"},
    };
    int n = 0;
    for (const auto& row : rows) EXPECT_EQ(DELAY_DESIGN_DLG.message(&row.request), row.wrong) << "row " << n++;
}

TEST(DelayForm, AnEqualizersTableNeedsARowMoreThanPoles) {
    const struct {
        int degree, rows;
        const char* wrong;
    } rows[] = {{0, 0, "Not enough data"},
                {0, 3, "Not enough data"},
                {0, 4, ""},
                {3, 4, ""},
                {4, 4, "Not enough data"},
                {4, 5, ""},
                {40, 40, "Not enough data"},
                {40, 41, ""}};
    for (const auto& row : rows) {
        R r;
        r.degree = row.degree;
        r.DELAY_DATA.rows = row.rows;
        EXPECT_EQ(ZEROS_DLG.message(&r), row.wrong) << row.degree << ' ' << row.rows;
    }
}

TEST(DelayForm, RefusalsKeepWhatWasEntered) {
    FakeWindow window;
    Journal journal;
    PrintState print;
    Reporter reporter(window, journal, print);
    R r = request_of(T::equalizer, I::lc);
    const UnitSet units;
    FormSheet sheet(DELAY_DESIGN_DLG, &r, units, reporter);
    const auto add_rows = [](int count) {
        return [count](FormSheet& list) {
            for (int i = 1; i <= count; ++i) EXPECT_EQ(list.append_row(0, std::array{1.0 * i, 1e-3}), "");
            return true;
        };
    };
    window.forms = {add_rows(3), add_rows(1)};
    sheet.press(static_cast<std::size_t>(find_field(sheet, "Data")));
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Warning: Not enough data"});
    EXPECT_EQ(r.DELAY_DATA.rows, 4) << "the three rows of the first try are still there";
}

}  // namespace
}  // namespace kavrel
