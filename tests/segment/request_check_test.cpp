// Rows of the request check: what is met, and how it is reported.
#include "segment/request_check.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace kavrel {
namespace {

constexpr double up = std::numeric_limits<double>::infinity();

std::string text(const std::vector<std::string>& lines) { return fmt::format("{}", fmt::join(lines, "\n")); }

TEST(RequestCheck, IsMetWithinATrifleOfTheValueAsked) {
    EXPECT_TRUE(at_most("pass band", {0, 1}, 0.1, 0.1 + 0.9e-6).met);
    EXPECT_FALSE(at_most("pass band", {0, 1}, 0.1, 0.1 + 1.1e-6).met);
    EXPECT_TRUE(at_least("stopband", {2, up}, 60, 60 - 59e-6).met);
    EXPECT_FALSE(at_least("stopband", {2, up}, 60, 60 - 61e-6).met);
    EXPECT_FALSE(equal_to("terminations", 1e-3, 1e-3 + 2e-9).met) << "a ratio has no decibels";
    EXPECT_FALSE(at_most("pass band", {0, 1}, 0.1, std::numeric_limits<double>::quiet_NaN()).met);
    EXPECT_TRUE(shown_value("deviation", {0, 1}, 7).met);
}

TEST(RequestCheck, ReportsWhatIsMissed) {
    const RequestCheck check{

        .rows = {at_most("pass band", {0, 1000}, 0.1, 0.1), at_least("stopband", {2400, up}, 60, 58.0244),
                 at_least("stopband", {0, 500}, 60, 59.99991), equal_to("terminations", 1, 1.35543),
                 at_most("pass band", {2e6, 3.5e9}, 0.1, up), at_most("slope", {1, 2}, 0.1, std::nan(""))}};
    EXPECT_EQ(text(missed_lines(check)),
              "  *** stopband 2400.000 Hz up: 60.00 dB asked, 58.02 dB reached ***\n"
              "  *** stopband up to 500.000 Hz: 60.0000 dB asked, 59.9999 dB reached ***\n"
              "  *** terminations: 1.0000 asked, 1.3554 reached ***\n"
              "  *** pass band 2.000 MHz to 3.500 GHz: 0.10 dB asked, inf dB reached ***\n"
              "  *** slope 1.000 Hz to 2.000 Hz: 0.10 dB asked, no value found ***");
    EXPECT_EQ(check_summary(check), "5 of 6 not met");
    EXPECT_FALSE(check.met());
}

TEST(RequestCheck, SummarisesTheLeastMarginToSpare) {
    const RequestCheck check{.rows = {at_most("pass band", {1, 2}, 0.1, 0.1), at_least("stopband", {4, up}, 60, 72.13),
                                      at_least("stopband", {0, 0.5}, 60, 75)}};
    EXPECT_EQ(check_summary(check), "meets the request (+12.1 dB)");
    EXPECT_EQ(check_summary({.rows = {equal_to("terminations", 1, 1)}}), "meets the request");
    EXPECT_EQ(check_summary({}), "no request");
    EXPECT_FALSE(RequestCheck{}.met());
}

TEST(RequestCheck, NamesWhatIsJudgedWhereThereAreSeveral) {
    RequestCheck check{.rows = {at_most("pass band", {0, 1000}, 0.1, 0.05), at_least("stopband", {2400, up}, 60, 61),
                                at_least("stopband", {2400, up}, 60, 58)}};
    check.rows[0].of = check.rows[1].of = "cascade", check.rows[2].of = "direct";
    EXPECT_EQ(text(missed_lines(check)), "  *** direct: stopband 2400.000 Hz up: 60.00 dB asked, 58.00 dB reached ***");
    check.rows.pop_back();
    EXPECT_EQ(check_summary(check), "meets the request (+1.0 dB)");
}

}  // namespace
}  // namespace kavrel
