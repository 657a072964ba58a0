// The band-reject example, its netlist run by ngspice.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/console/script_run.h"
#include "tests/exchange/exchange_helpers.h"

namespace kavrel {
namespace {

TEST(BandRejectExample, HasItsEdgesInNgspice) {
    if (!testing::has_program("ngspice")) GTEST_SKIP() << "ngspice is not installed";
    const ScratchFolder folder;
    ScriptRun run;
    ASSERT_EQ(run.run(read_text(EXAMPLES "/band_reject.kav")), 0) << run.shown.str();
    const auto rows = testing::printed_rows(testing::run_program("ngspice -b band_reject.ckt").output);
    ASSERT_EQ(rows.size(), 41U);
    int edges = 0;
    for (const auto& row : rows) {
        const double loss = -row.decibels;
        // p = kappa s/(s^2 + w0^2) of the low-pass, in kHz: 0.5 dB up to 1, 40 dB from 2 on.
        const double p = std::abs(1.0 * row.f * 1e3 / (9.5e3 * 10.5e3 - row.f * row.f));
        if (std::abs(row.f - 9500) < 1 || std::abs(row.f - 10500) < 1) {
            EXPECT_NEAR(loss, 0.5, 1e-9);
            ++edges;
        }
        EXPECT_TRUE(p > 1 || loss < 0.5 + 1e-9) << row.f;
        EXPECT_TRUE(p < 2 || loss > 40) << row.f;
    }
    EXPECT_EQ(edges, 2);
}

}  // namespace
}  // namespace kavrel
