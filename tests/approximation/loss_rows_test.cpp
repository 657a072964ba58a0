// The rows that a request asks of a loss, against E/Q of the design on a grid, and closed forms.
#include "approximation/loss_rows.h"

#include <cmath>

#include <gtest/gtest.h>

#include "approximation/filter_driver.h"
#include "approximation/power_loss.h"
#include "tests/approximation/request.h"
#include "tests/support/fake_window.h"

namespace kavrel {
namespace {

struct Designed {
    FilterSpec found;
    FilterDesign design;

    explicit Designed(const std::string& text, FilterKind kind = FilterKind::lc) : found(request(text)) {
        FakeWindow window;
        Journal journal;
        PrintState print;
        Reporter reporter(window, journal, print);
        EXPECT_EQ(designFilter(kind, found, design, {}, reporter), FilterDesignVerdict::designed) << text;
    }
    [[nodiscard]] double loss(double hertz) const { return lossAt(design.worked, design.x_plane, hertz); }
    [[nodiscard]] RequestCheck check() const {
        Unwatched unwatched;
        return check_function(design.request, found, design.transfer, design.notes.predistortion.used_q, unwatched);
    }
};

const std::string ends = " sourceResistance 50 loadResistance 50 ";

TEST(LossRows, AreThoseOfTheClosedForms) {
    const Designed chebyshev(
        "equal_ripple monotonic_stopband upperPassEdge 1000 upperStopEdge 1500 bandEdgeLoss 0.1"
        " stopbandLoss 35" +
        ends);
    const auto rows = chebyshev.check().rows;
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_NEAR(rows[0].reached, 0.1, 1e-12);
    const double beyond = std::cosh(chebyshev.found.degree * std::acosh(1.5));
    EXPECT_NEAR(rows[1].reached, 10 * std::log10(1 + std::expm1(std::log(10) / 100) * beyond * beyond), 1e-9);
    EXPECT_TRUE(rows[1].met);
    const Designed shallow(
        "maximally_flat monotonic_stopband upperPassEdge 1000 upperStopEdge 1500 bandEdgeLoss 0.1"
        " stopbandLoss 0.5" +
        ends);
    EXPECT_EQ(shallow.check().rows.size(), 2U);

    // A ratio of terminations that an odd degree cannot serve without loss: that much is the design's.
    const Designed mismatched(
        "equal_ripple monotonic_stopband upperPassEdge 1000 upperStopEdge 1500 bandEdgeLoss 0.1"
        " stopbandLoss 40 sourceResistance 50 loadResistance 200");
    EXPECT_NEAR(mismatched.check().rows[0].reached, 0.1, 1e-9);
    EXPECT_GT(mismatched.loss(10), 1.9) << "(1 + 4)^2/16 in dB";
}

TEST(LossRows, FindTheExtremesOfEveryKindOfFilter) {
    struct Case {
        const char* text;
        FilterKind kind = FilterKind::lc;
        std::size_t rows = 2;
    };
    const Case cases[] = {
        {"equal_ripple equal_minima upperPassEdge 1000 upperStopEdge 1030 bandEdgeLoss 0.01 stopbandLoss 90"},
        {"high_pass maximally_flat equal_minima lowerPassEdge 1000 lowerStopEdge 700 bandEdgeLoss 1 stopbandLoss 60"},
        {"band_pass equal_ripple equal_minima lowerPassEdge 990 upperPassEdge 1000 lowerStopEdge 985 upperStopEdge 1006"
         " bandEdgeLoss 0.1 stopbandLoss 50 upperStopLoss 40",
         FilterKind::lc, 3},
        {"band_pass equal_ripple parametric specified_zeros lowerPassEdge 800 upperPassEdge 1000 bandEdgeLoss 0.1"
         " zerosAtZero 2 zerosAtInfinity 3 FZI 1300 freal 500",
         FilterKind::lc, 1},
        {"equal_ripple monotonic_stopband upperPassEdge 400 upperStopEdge 700 bandEdgeLoss 0.1 stopbandLoss 50"
         " sampleFrequency 1000 unitElements 3",
         FilterKind::microwave},
        {"band_pass maximally_flat monotonic_stopband lowerPassEdge 800 upperPassEdge 1000 lowerStopEdge 500"
         " upperStopEdge 1500 bandEdgeLoss 3 stopbandLoss 30 upperStopLoss 40 sampleFrequency 8000",
         FilterKind::iir_digital, 3}};
    for (const Case& c : cases) {
        const Designed filter(c.text + ends, c.kind);
        const RequestCheck check = filter.check();
        ASSERT_EQ(check.rows.size(), c.rows) << c.text;
        for (const CheckRow& row : check.rows) {
            EXPECT_TRUE(row.met) << row.what << ' ' << row.reached << ": " << c.text;
            const bool largest = row.what == "pass band";
            const double to = std::isinf(row.band.to) ? 30 * row.band.from : row.band.to;
            double extreme = largest ? 0 : 1e9;
            for (int i = 0; i < 4000; ++i) {
                const double loss = filter.loss(row.band.from + (to - row.band.from) * i / 3999.999);
                extreme = largest ? std::max(extreme, loss) : std::min(extreme, loss);
            }
            EXPECT_LE((extreme - row.reached) * (largest ? 1 : -1), 1e-8 * row.reached) << row.what << ": " << c.text;
            EXPECT_NEAR(extreme, row.reached, 0.02 * row.reached) << row.what << ": " << c.text;
        }
    }
}

TEST(LossRows, AreTheSameOfARequestWhoseFrequenciesAreScaled) {
    const Designed filter(
        "equal_ripple equal_minima upperPassEdge 1000 upperStopEdge 1300 bandEdgeLoss 0.1"
        " stopbandLoss 50" +
        ends);
    RequestCheck scaled;
    const FilterSpec asked = scaled_request(filter.design.request, 7), found = scaled_request(filter.found, 7);
    TransferFunction transfer = filter.design.transfer;
    transfer.normFrequency *= 7;
    for (auto* roots : {&transfer.ZEROS_RE, &transfer.ZEROS_IM, &transfer.POLES_RE, &transfer.POLES_IM}) {
        for (double& part : *roots) part *= 7;
    }
    Unwatched unwatched;
    add_loss_rows({.loss = [&](double hertz) { return filter.loss(hertz / 7); },
                   .request = asked,
                   .found = found,
                   .transfer = transfer,
                   .watcher = unwatched},
                  scaled);
    const auto rows = filter.check().rows;
    ASSERT_EQ(scaled.rows.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_DOUBLE_EQ(scaled.rows[i].band.to, 7 * rows[i].band.to);
        EXPECT_NEAR(scaled.rows[i].reached, rows[i].reached, 1e-6 * rows[i].reached);
    }
}

}  // namespace
}  // namespace kavrel
