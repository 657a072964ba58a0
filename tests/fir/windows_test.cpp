// Windows and windowed designs against tests/data/fir/windows_golden.txt, and what they refuse.
#include "fir/windows.h"

#include <cmath>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "fir/fir_json.h"
#include "fir/fir_records.h"
#include "fir/window_design.h"
#include "fir/window_figures.h"
#include "tests/fir/fir_room.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct Windows : testing::Test, FirRoom {
    void ask(FirFilterType type, int length, FirWindow shape, double parameter, double lower, double upper) {
        request = {};
        request.filter_length = length;
        request.design_method = FirMethod::windowed;
        request.filter_type = type;
        request.window_type = shape;
        request.lower_frequency = lower;
        request.upper_frequency = upper;
        request.sampling_frequency = 5.0;
        if (parameter != 0) give_parameter(request, parameter);
    }
};

TEST_F(Windows, WindowsAndDesignsAreTheGoldenOnes) {
    std::ifstream file(TEST_DATA "/fir/windows_golden.txt");
    int rows = 0;
    for (std::string line; std::getline(file, line);) {
        SCOPED_TRACE(line.substr(0, 30));
        std::istringstream in(line);
        std::string what;
        int type = 0, index = 0, length = 0, i = 0;
        double parameter = 0, lower = 0, upper = 0, fs = 0, value = 0;
        in >> what;
        WindowValues w;
        if (what == "w") {
            in >> index >> length >> parameter;
            WindowCosines fresh;
            ASSERT_EQ(compute_window(index - 1, {length, parameter}, fresh, w), WindowVerdict::computed);
        } else if (what == "d") {
            in >> type >> length >> index >> parameter >> lower >> upper >> fs;
            ask(static_cast<FirFilterType>(type), length, static_cast<FirWindow>(index), parameter, lower, upper);
            state.retained = {};
            ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
            EXPECT_EQ(filter.FUNCTION(1).taps, type % 2 == 1 ? length : length / 2 * 2 + 1);
        }
        for (; in >> i >> value; ++rows) {
            EXPECT_NEAR(what == "w" ? w(i) : stored_coefficients(filter, 1)[static_cast<std::size_t>(i - 1)], value,
                        1e-12);
        }
    }
    EXPECT_GT(rows, 600);
}

TEST_F(Windows, ChebyshevSideLobesLieOnePlusTheRatioBelow) {
    for (const double loss : {30.0, 40.0, 80.0}) {
        for (const int length : {20, 65, 512}) {
            ask(FirFilterType::low_pass, length, FirWindow::chebyshev, loss, 0, 1);
            ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
            EXPECT_NEAR(window_figures(filter).sidelobe.value(), 20 * std::log10(1 + std::pow(10.0, loss / 20)), 1e-5);
        }
    }
}

TEST_F(Windows, FiguresAreThoseOfTheResponse) {
    session.frequency_scale = 1000;
    const struct {
        FirFilterType type;
        int length;
        FirWindow window;
        double parameter, lower, upper, loss, sidelobe;
        std::vector<double> edges;
    } rows[] = {
        {FirFilterType::low_pass, 101, FirWindow::kaiser, 60, 0.4, 1.1, 60, 41.6, {1100}},  // 0.4 is off there
        {FirFilterType::high_pass, 100, FirWindow::kaiser, 50, 1.6, 0.2, 50, 34.4, {1600}},
        {FirFilterType::high_pass, 101, FirWindow::kaiser, 50, 0, 1.6, 50, 34.4, {1600}},
        {FirFilterType::band_pass, 128, FirWindow::kaiser, 60, 0.9, 1.7, 60, 41.6, {900, 1700}},
        {FirFilterType::band_reject, 128, FirWindow::kaiser, 60, 1.7, 0.9, 60, 41.6, {900, 1700}},
        {FirFilterType::low_pass, 64, FirWindow::triangular, 0, 0, 1.1, 27, 26.5, {1100}},  // has no null
        {FirFilterType::high_pass, 64, FirWindow::triangular, 0, 1.6, 0, 26.5, 26.5, {1600}},
        {FirFilterType::band_pass, 31, FirWindow::hann, 0, 1.2, 1.21, 31.5, 31.5, {1048.8, 1361.2}}};  // 2/32 wide
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        ask(row.type, row.length, row.window, row.parameter, row.lower, row.upper);
        state.retained = {};
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        const WindowFigures figures = window_figures(filter);
        ASSERT_EQ(figures.edges_6db.size(), row.edges.size());
        for (std::size_t i = 0; i < row.edges.size(); ++i) EXPECT_NEAR(figures.edges_6db[i], row.edges[i], 1);
        EXPECT_NEAR(figures.stopband_loss.value(), row.loss, 1.5);
        EXPECT_NEAR(figures.sidelobe.value(), row.sidelobe, 1);
        FixedText<80> title;
        FirFilter again;
        ASSERT_TRUE(read_fir_records(fir_records(filter, title), again, title));
        EXPECT_EQ(window_figures(again).sidelobe, figures.sidelobe) << "of a stored filter, too";
        EXPECT_EQ(fir_part(again, state)["window"].contains("parameter"), row.parameter != 0);
    }
}

// A window keeps what an earlier one gave the coefficients that it does not assign, and the report tells.
TEST_F(Windows, CoefficientsAreRetainedUntilAssigned) {
    ask(FirFilterType::low_pass, 21, FirWindow::hamming, 0, 0, 1);
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_FALSE(reported("Retained"));
    const double alone = filter.COEF(1);
    request.window_type = FirWindow::four_term_b_h;
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    request.window_type = FirWindow::hamming;
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_NEAR(filter.COEF(1) / alone, (0.08 + 0.14128 - 0.01168) / 0.08, 1e-12);
    EXPECT_TRUE(reported("    Retained from an earlier window: a2 =  0.1412800 a3 =  0.0116800"));
    EXPECT_EQ(state.retained, (WindowCosines{0.54, 0.46, 0.14128, 0.01168}));
    request.window_type = FirWindow::sampled_kaiser;
    give_parameter(request, 21);
    EXPECT_EQ(window_design(desk, filter), FirDesignVerdict::refused);
    EXPECT_EQ(state.retained(2), 0.46) << "a refused one leaves no trace";
}

TEST_F(Windows, RectangularIsOfferedOneUntilSomebodyGivesAnother) {
    ask(FirFilterType::low_pass, 21, FirWindow::rectangular, 0, 0, 1);
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_NEAR(filter.COEF(11), 0.4, 1e-15);
    give_parameter(request, 0);
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_EQ(filter.COEF(11), 0);
    EXPECT_TRUE(reported("    **** All coefficients are 0 ****"));
    EXPECT_FALSE(fir_part(filter, state)["window"].contains("sidelobe"));
}

TEST_F(Windows, BadInputIsRefusedAndChangesNothing) {
    ask(FirFilterType::band_pass, 31, FirWindow::hann, 0, 0.5, 1);
    ASSERT_EQ(window_design(desk, filter), FirDesignVerdict::designed);
    const FirRequest good = request;
    const auto before = fingerprint(filter, 1);
    const auto refused = [&](const char* box, auto change) {
        request = good;
        window.boxes.clear();
        change();
        EXPECT_EQ(window_design(desk, filter), FirDesignVerdict::refused);
        EXPECT_EQ(window.boxes, std::vector<std::string>{box});
        EXPECT_EQ(fingerprint(filter, 1), before);
    };
    refused("Error: Filter is too short", [&] { request.filter_length = 2; });
    refused("Error: Error in input data", [&] { request.filter_length = 513; });
    refused("Error: Error in input data", [&] { request.sampling_frequency = 0; });
    refused("Error: Error in input data", [&] { request.filter_type = FirFilterType{5}; });
    refused("Error: Error in input data", [&] { request.window_type = FirWindow::unchosen; });
    for (const FirWindow type : {FirWindow::kaiser, FirWindow::chebyshev, FirWindow::gaussian, FirWindow::taylor}) {
        refused("Error: Error in input data", [&] { request.window_type = type, give_parameter(request, 1e300); });
    }
    for (const double loss : {-3.0, 0.0, 23.0}) {
        refused("Error: Loss value too low",
                [&] { request.window_type = FirWindow::sampled_kaiser, give_parameter(request, loss); });
    }
    filter.request.sampling_frequency = 0;  // of a stored filter
    EXPECT_TRUE(window_figures(filter).edges_6db.empty());
    WindowCosines a;
    WindowValues w;
    for (const int index : {-1, 21}) EXPECT_EQ(compute_window(index, {21}, a, w), WindowVerdict::no_such_window);
    EXPECT_EQ(compute_window(2, {515}, a, w), WindowVerdict::out_of_range);
}

}  // namespace
}  // namespace kavrel
