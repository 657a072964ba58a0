#include "forms/filter_input_file.h"

#include <cstring>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

FilterRequest full_request() {
    FilterRequest r;
    r.filter_kind = FilterKind::microwave;
    r.filter_type = TypeChoice::band_pass;
    r.passband_type = PassbandChoice::functional;
    r.function_type = FunctionChoice::f;
    r.stopband_type = StopbandChoice::specified;
    r.bandpass_form = BandpassChoice::parametric;
    double number = 1.25;
    for (double* cell : {&r.lower_passband, &r.upper_passband, &r.fq_or_fs, &r.band_edge_loss, &r.loss_slope,
                         &r.flat_loss, &r.multiplier, &r.lower_stopband, &r.upper_stopband, &r.lower_stop_loss,
                         &r.upper_stop_loss, &r.r1, &r.r2, &r.q_predistortion, &r.center_frequency}) {
        *cell = number++;
    }
    r.zeros_at_zero = 3;
    r.zeros_at_infinity = 50;
    r.unit_elements = -1;
    r.zs_parameter = -1;
    r.odd_parametric = true;
    r.lower_movable = 4;
    r.upper_movable = 15;
    r.TR_ZEROS = {.rows = 2, .cells = {0.0, 3.0, 1.0, 0.0}};
    r.DOUBLETS = {.rows = 3, .cells = {-1.0, 2.0, 0.0, 4.0, 0.0, 0.0}};
    r.PLACER_REQS = {.rows = 2, .cells = {1.0, 40.0, 2.0, 60.0}};
    r.FIXED_ZEROS = {.rows = 1, .cells = {3.0, 2.0}};
    r.MOVABLE_ZEROS = {.rows = 2, .cells = {4.0, 1.0, 5.0, 1.0}};
    return r;
}

UnitSet kilohertz() {
    UnitSet units;
    units.frequency_index = 2;
    settle_units(units);
    return units;
}

double double_at(const std::string& bytes, std::size_t at) {
    double value = 0.0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

int integer_at(const std::string& bytes, std::size_t at) {
    int value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

// Where the payloads of the four records begin.
constexpr std::size_t record_1 = 4;
constexpr std::size_t record_2 = record_1 + 16 * 8 + 8;
constexpr std::size_t record_3 = record_2 + 14 * 4 + 8;
constexpr std::size_t record_4 = record_3 + 1600 + 8;
constexpr std::size_t file_size = record_4 + 4 * 8 + 4 * 4 + 4;

TEST(FilterInputFile, FourRecordsInTheirOrder) {
    const std::string bytes = filter_input_bytes(full_request(), kilohertz());
    ASSERT_EQ(bytes.size(), file_size);
    EXPECT_EQ(integer_at(bytes, 0), 128);
    for (std::size_t i = 0; i < 15; ++i) EXPECT_EQ(double_at(bytes, record_1 + 8 * i), 1.25 + static_cast<double>(i));
    EXPECT_EQ(double_at(bytes, record_1 + 15 * 8), 0.0) << "4.25 dB is a loss";
    const int integers[] = {2, 4, 3, 2, 3, 4, 2, 3, 50, -1, -1, 1, 4, 15};
    for (std::size_t i = 0; i < 14; ++i) EXPECT_EQ(integer_at(bytes, record_2 + 4 * i), integers[i]) << i;
    EXPECT_EQ(double_at(bytes, record_3 + 240 + 8), 3.0);          // imaginary part of the first transmission zero
    EXPECT_EQ(double_at(bytes, record_3 + 240 + 400), 3.0);        // first fixed zero
    EXPECT_EQ(double_at(bytes, record_3 + 240 + 400 + 160), 4.0);  // first movable zero
    EXPECT_EQ(double_at(bytes, record_3 + 1600 - 400), -1.0);      // real parts of DOUBLETS
    EXPECT_EQ(double_at(bytes, record_3 + 1600 - 200), 2.0);       // imaginary parts
    EXPECT_EQ(double_at(bytes, record_4), 1000.0);
    EXPECT_EQ(integer_at(bytes, record_4 + 32), 2);

    FilterRequest reflecting = full_request();
    reflecting.band_edge_loss = -20.0;
    EXPECT_EQ(double_at(filter_input_bytes(reflecting, kilohertz()), record_1 + 15 * 8), -20.0);
}

TEST(FilterInputFile, TheSpareIntegerIsARowCountIfItCanBe) {
    const FilterRequest written = full_request();
    const struct { int spare, rows; } table[] = {{3, 3}, {25, 25}, {0, 2}, {26, 2}, {-1, 2}, {12345, 2}};
    for (const auto& row : table) {
        std::string bytes = filter_input_bytes(written, kilohertz());
        std::memcpy(bytes.data() + record_2 + 4 * 4, &row.spare, sizeof row.spare);
        FilterRequest read;
        UnitSet units;
        ASSERT_TRUE(read_filter_input(bytes, read, units)) << row.spare;
        EXPECT_EQ(read.DOUBLETS.rows, row.rows) << row.spare;
    }
}

// Files of writers that store a group that is off with nothing chosen.
TEST(FilterInputFile, GroupsWithNothingChosenComeBackAtTheirFirstChoice) {
    std::string bytes = filter_input_bytes(full_request(), kilohertz());
    for (const std::size_t group : {0U, 3U, 5U, 6U}) std::memset(bytes.data() + record_2 + 4 * group, 0, 4);
    FilterRequest read;
    UnitSet units;
    ASSERT_TRUE(read_filter_input(bytes, read, units));
    EXPECT_EQ(read.filter_kind, FilterKind::unchosen) << "a kind that is not chosen is asked for";
    EXPECT_EQ(read.function_type, FunctionChoice::e);
    EXPECT_EQ(read.stopband_type, StopbandChoice::monotonic);
    EXPECT_EQ(read.bandpass_form, BandpassChoice::conventional);
}

TEST(FilterInputFile, ZerosInRadiansAreStoredInTheFrequencyUnit) {
    FilterRequest written = full_request();
    written.zero_unit = ZeroUnitChoice::radians;
    written.TR_ZEROS = {.rows = 1, .cells = {0.0, 2000.0 * std::numbers::pi}};
    FilterRequest read = written;
    UnitSet units;
    ASSERT_TRUE(read_filter_input(filter_input_bytes(written, kilohertz()), read, units));
    EXPECT_EQ(read.zero_unit, ZeroUnitChoice::hertz);
    EXPECT_DOUBLE_EQ(read.TR_ZEROS(1, 2), 1.0);
}

TEST(FilterInputFile, ACellOfAListThatIsNotFiniteIsRefused) {
    const std::string good = filter_input_bytes(full_request(), kilohertz());
    constexpr double infinite = std::numeric_limits<double>::infinity();
    for (std::size_t at = record_3; at < record_4 - 8; at += sizeof infinite) {
        std::string bytes = good;
        std::memcpy(bytes.data() + at, &infinite, sizeof infinite);
        FilterRequest request;
        UnitSet units;
        EXPECT_FALSE(read_filter_input(bytes, request, units)) << at;
    }
}

}  // namespace
}  // namespace kavrel
