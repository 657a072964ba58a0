// Whole designs, judged by the frequency response of the taps that they deliver.
#include <algorithm>
#include <cmath>
#include <complex>

#include "fir/fir_deviation.h"
#include "fir/fir_task.h"
#include "tests/fir/fir_room.h"

namespace kavrel {
namespace {

constexpr double pi = 3.14159265358979323846;

struct FirDesign : testing::Test, FirRoom {
    // Zero-phase response at a frequency in the request's unit.
    [[nodiscard]] double response(double f) const {
        const auto taps = full_response(filter, 1);
        const double middle = (static_cast<double>(taps.size()) - 1.0) / 2.0;
        std::complex<double> sum = 0.0;
        for (std::size_t i = 0; i < taps.size(); ++i) {
            sum +=
                taps[i] * std::polar(1.0, 2.0 * pi * f / filter.sampling_frequency * (middle - static_cast<double>(i)));
        }
        return filter.NEG == 1 ? sum.imag() : sum.real();
    }
    // Largest |response - wanted| over a band.
    template <class Wanted>
    [[nodiscard]] double deviation(double low, double high, Wanted wanted) const {
        double largest = 0.0;
        for (int i = 0; i <= 2000; ++i) {
            const double f = low + (high - low) * i / 2000.0;
            const double e = std::abs(response(f) - wanted(f));
            if (!(e <= largest) && !std::isnan(largest)) largest = e;  // not a number stays
        }
        return largest;
    }
    [[nodiscard]] bool reports(std::string_view text) const {
        return std::ranges::any_of(window.lines,
                                   [&](const auto& line) { return line.find(text) != std::string::npos; });
    }
};

TEST_F(FirDesign, RipplesInDecibelWeighTheBands) {
    ask(61, FirSpecification::ripple_in_db, {{0, 8, 1, 0.5}, {10, 24, 0, 50}});
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    const double pass = deviation(0, 8, [](double) { return 1.0; });
    const double stop = deviation(10, 24, [](double) { return 0.0; });
    const double asked_pass = (std::pow(10.0, 0.025) - 1.0) / (std::pow(10.0, 0.025) + 1.0);
    const double asked_stop = std::pow(10.0, -2.5);
    EXPECT_NEAR((pass / stop) / (asked_pass / asked_stop), 1.0, 0.01);
    EXPECT_LT(pass, asked_pass) << "a filter of this length holds its ripples";
    EXPECT_NEAR(filter.deviation / stop, 1.0, 0.01) << "the first stopband's deviation is handed over";
    EXPECT_EQ(filter.sampling_frequency, 48.0) << "twice the last edge";
}

TEST_F(FirDesign, TheReportTellsWhatTheTapsDo) {
    session.frequency_scale = 1000.0;
    ask(40, FirSpecification::weights,
        {{0, 0.5, 0, 10}, {1, 1.5, 1, 1}, {1.8, 2.5, 0, 3}, {3, 3.6, 1, 2}, {4.1, 4.5, 0, 5}});
    request.QUADRUPLETS(5, 2) = 5.0;
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    std::string deviations;
    int heads = 0;
    for (const auto& line : window.lines) {
        if (line.starts_with("  Deviation  ")) deviations += line.substr(17);
        if (line.find("band  5") != std::string::npos) heads += line.find("band  1") == std::string::npos ? 1 : 100;
    }
    EXPECT_EQ(heads, 1) << "bands are in groups of four";
    ASSERT_EQ(deviations.size(), 5U * 15U);
    for (int b = 1; b <= 5; ++b) {
        const double told_value = std::stod(deviations.substr(static_cast<std::size_t>(15 * (b - 1)), 15));
        const double wanted = request.QUADRUPLETS(b, 3);
        const double found = deviation(1000.0 * request.QUADRUPLETS(b, 1), 1000.0 * request.QUADRUPLETS(b, 2),
                                       [=](double) { return wanted; });
        EXPECT_NEAR(told_value / found, 1.0, 0.01) << "band " << b;
    }
    const std::string_view order[] = {"Finite impulse response (FIR)",
                                      "Linear phase digital filter design",
                                      "<New Filter>",
                                      "Remez exchange algorithm",
                                      "Bandpass filter",
                                      "Filter length =  40",
                                      "H(  1) = ",
                                      "H( 20) = ",
                                      "Lower band edge",
                                      "Upper band edge",
                                      "Desired value",
                                      "Weighting",
                                      "Deviation  ",
                                      "Deviation in db",
                                      "*****"};
    auto at = window.lines.begin();
    for (const auto text : order) {
        at = std::find_if(at, window.lines.end(),
                          [&](const auto& line) { return line.find(text) != std::string::npos; });
        ASSERT_NE(at, window.lines.end()) << text;
    }
}

// The two lengths below miss, so that every shorter one does: it could be padded.
TEST_F(FirDesign, LengthZeroIsTheLeastThatHoldsTheRipples) {
    const struct {
        double pass, stop, ripple, loss, high = 0;
    } rows[] = {{8, 10, 0.1, 60}, {4, 5.5, 0.5, 40},  {10, 11, 0.2, 50},      {2, 4, 0.05, 70}, {15, 19, 1.5, 20},
                {1, 4, 2, 90},    {9, 9.9, 0.01, 25}, {6, 10, 0.2, 0.3, 0.7}, {20, 21, 1, 15}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.loss);
        const auto holds = [&](int length) {
            ask(length, FirSpecification::ripple_in_db,
                {{0, row.pass, 1, row.ripple}, {row.stop, 24, row.high, row.loss}});
            EXPECT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
            const auto allowed = [](double db) {
                return (std::pow(10.0, db / 20.0) - 1) / (std::pow(10.0, db / 20.0) + 1);
            };
            const double pass = deviation(0, row.pass, [](double) { return 1.0; });
            const double stop = deviation(row.stop, 24, [&](double) { return row.high; });
            return pass <= allowed(row.ripple) &&
                   stop <= (row.high != 0 ? allowed(row.loss) : std::pow(10.0, -row.loss / 20.0));
        };
        EXPECT_TRUE(holds(0));
        const int least = request.filter_length;
        EXPECT_TRUE(reports(" Estimated degree = "));
        EXPECT_TRUE(reports("Filter length determined by approximation"));
        EXPECT_TRUE(reports("Lowpass filter"));
        EXPECT_EQ(full_response(filter, 1).size(), static_cast<std::size_t>(least));
        EXPECT_FALSE(holds(least - 2));
        EXPECT_FALSE(holds(least - 1));
    }
    EXPECT_TRUE(reports("Bandpass filter")) << "a filter of given length";
    EXPECT_FALSE(reports("not met"));
}

TEST_F(FirDesign, RipplesBeyondTheLongestFilterAreToldAsMissed) {
    ask(0, FirSpecification::ripple_in_db, {{0, 10, 1, 0.01}, {10.1, 24, 0, 80}});
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_TRUE(reports(" is too high. reset to:  512"));
    EXPECT_TRUE(reports(" The ripples are not met with 512 taps"));
    EXPECT_EQ(request.filter_length, 512);
    EXPECT_EQ(results.time_count, 0) << "more than 501 taps leave no time results";
    ask(0, FirSpecification::ripple_in_db, {{0, 10, 1, 0.01}, {10, 24, 0, 80}});
    EXPECT_EQ(remez_design(desk, filter), FirDesignVerdict::refused) << "no transition band at all";
}

TEST_F(FirDesign, ShapedPassBandFollowsItsPolygon) {
    ask(81, FirSpecification::weights, {{0, 8, 1, 1}, {10, 24, 0, 1}});
    const double points[][2] = {{8, 3}, {0, 0}, {4, -2}, {9, 3}};
    for (const auto& point : points) {
        ++request.shape.rows;
        request.shape(request.shape.rows, 1) = point[0];
        request.shape(request.shape.rows, 2) = point[1];
    }
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_NEAR(response(0.0), 1.0, 0.02);
    EXPECT_NEAR(response(4.0), std::pow(10.0, -0.1), 0.03) << "the corner of the polygon";
    EXPECT_NEAR(response(2.0), (1.0 + std::pow(10.0, -0.1)) / 2.0, 0.02) << "linear between the points";
    EXPECT_NEAR(response(8.0), std::pow(10.0, 0.15), 0.02);
    EXPECT_EQ(request.shape(1, 1), 8.0) << "the request keeps its dB and its order";
}

TEST_F(FirDesign, AntisymmetricTypesAreWhatTheyAreCalled) {
    for (const int length : {30, 31}) {
        request = {};
        request.fir_type = FirType::differentiator;
        request.filter_length = length;
        request.sampling_frequency = 10.0;
        request.upper_frequency = length == 30 ? 5.0 : 4.5;
        request.slope = 2.0;
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        // The slope counts per cycle of the sampling frequency; a differentiator's error is relative.
        for (const double f : {0.5, 1.7, 3.1, 4.3}) EXPECT_NEAR(response(f) / (2.0 * f / 10.0), 1.0, 0.02) << f;
        const auto taps = full_response(filter, 1);
        ASSERT_EQ(taps.size(), static_cast<std::size_t>(length));
        EXPECT_EQ(taps.front(), -taps.back());
        EXPECT_TRUE(reports("Desired slope"));
        request.fir_type = FirType::hilbert;
        request.lower_frequency = 0.6;
        request.upper_frequency = length == 30 ? 5.0 : 4.4;
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        EXPECT_LT(deviation(0.6, request.upper_frequency, [](double) { return 1.0; }), 0.05);
        EXPECT_EQ(filter.deviation, 0.0) << "no stopband";
    }
}

TEST_F(FirDesign, LargestDeviationsAreThoseOfADenseGrid) {
    const auto expect_dense = [&](const char* what, int band, double asked, double between_points = 2e-4) {
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed) << what;
        FirTask task;
        ASSERT_EQ(take_task(request, task), nullptr);
        const double low = std::max(task.BANDS.EDGE(2 * band - 1), 1e-7), high = task.BANDS.EDGE(2 * band);
        double dense = 0.0;
        for (int i = 0; i <= 20000; ++i) {
            const double f = low + (high - low) * i / 20000.0;
            dense = std::max(dense, weight(task, f, band) *
                                        std::abs(response(f * filter.sampling_frequency) - desired(task, f, band)));
        }
        const FirDeviation found = largest_deviation(task, filter, 1, band);
        EXPECT_GE(found.weighted, dense * (1.0 - 1e-9)) << what;
        EXPECT_LE(found.weighted, dense * (1.0 + between_points)) << what;
        EXPECT_NEAR(largest_deviation(task, filter, 1).weighted / found.weighted, 1.0, 1e-3) << what << ": level";
        EXPECT_TRUE(asked == 0.0 || found.weighted < asked) << what;
    };
    ask(61, FirSpecification::ripple_in_db, {{0, 8, 1, 0.5}, {10, 24, 0, 50}});
    expect_dense("ripples that are held are below 1", 2, 1.0);
    ask(40, FirSpecification::weights, {{0, 0.5, 0, 10}, {1, 1.5, 1, 1}, {1.8, 2.5, 0, 3}, {3, 5, 0.5, 2}});
    expect_dense("even length: nothing at half the sampling frequency", 4, 0.0);
    request.filter_length = 41;
    expect_dense("four bands", 3, 0.0);
    for (const FirType type : {FirType::differentiator, FirType::hilbert}) {
        for (const int length : {30, 31}) {
            request = {};
            request.fir_type = type;
            request.filter_length = length;
            request.sampling_frequency = 10.0;
            request.lower_frequency = 0.6;
            request.upper_frequency = 4.4;
            request.slope = 2.0;
            expect_dense("antisymmetric", 1, 0.05);
        }
    }
    ask(81, FirSpecification::weights, {{0, 8, 2, 1}, {10, 24, 0, 1}});
    request.fir_type = FirType::filter;
    for (const auto& [f, gain] : {std::pair{2.0, 0.0}, {4.0, -2.0}, {6.0, -1.0}}) {
        const int row = ++request.shape.rows;
        request.shape(row, 1) = f, request.shape(row, 2) = gain;
    }
    expect_dense("a shape that jumps at its ends, a weight of 1000 where it falls to 0.001", 1, 0.0, 0.02);
}

// 400 taps have gains of hundreds between bands that 50 fill to the last place.
TEST_F(FirDesign, LessRippleThanDoublesHoldIsReachedByFewerTaps) {
    ask(400, FirSpecification::weights, {{0, 4, 1, 1}, {20, 24, 0, 1}});
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_FALSE(reports("Failure to converge"));
    EXPECT_TRUE(reports("Taps without zeros at both ends =  50"));
    EXPECT_TRUE(reports("Gain outside the bands limited:  1.000, deviation"));
    EXPECT_EQ(full_response(filter, 1).size(), 400U);
    EXPECT_EQ(filter.X(175), 0.0);
    EXPECT_NE(filter.X(176), 0.0);
    EXPECT_LT(deviation(0, 4, [](double) { return 1.0; }), 1e-14);
    EXPECT_LT(deviation(20, 24, [](double) { return 0.0; }), 1e-14);
    EXPECT_LT(deviation(4, 20, [](double) { return 0.0; }), 1.01);
    EXPECT_GT(filter.deviation, 1e-17) << "what the taps do, not what the exchange leveled";
    EXPECT_LT(filter.deviation, 1e-14);
}

TEST_F(FirDesign, SegmentShowsAndAnalysesAFunction) {
    const auto send = [&](std::string_view word) {
        window.boxes.clear();
        session.word(SegmentId::fir) = word;
        firSegment(desk);
        EXPECT_TRUE(session.word(SegmentId::fir).is_blank());
    };
    send("show");
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: No function to show"});
    send("time");
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: No function to analyze"});
    ask(512, FirSpecification::weights, {{0, 8, 1, 1}, {8.2, 24, 0, 1}});
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    EXPECT_EQ(results.time_count, 0);
    send("time");
    EXPECT_EQ(results.time_count, 501);
    EXPECT_TRUE(reports(" Time response: first 501 of 512 samples"));
    EXPECT_NEAR(results.STEP(501), 1.0F, 0.01F);
    EXPECT_FLOAT_EQ(results.TIME(2), 1.0F / 48.0F);
    EXPECT_FLOAT_EQ(results.IMPULSE(20), static_cast<float>(filter.X(20)));
    command.function_number = 2;
    send("show");
    EXPECT_EQ(window.boxes, std::vector<std::string>{"Error: Function does not exist"});
    send("zzzz");
    EXPECT_TRUE(window.boxes.empty()) << "a word of no table is ignored";
}

}  // namespace
}  // namespace kavrel
