#include "fir/stored_fir.h"

#include <cmath>

#include <gtest/gtest.h>

#include "fir/fir_records.h"
#include "tests/support/random_fields.h"
#include "tests/support/scratch_folder.h"

namespace kavrel {
namespace {

using testing::RandomFields;

// Something in every field, as a filter may have it.
FirFilter random_filter(std::mt19937& engine) {
    RandomFields fields{engine};
    const auto whole = [&](int from, int to) { return fields.whole(from, to); };
    FirFilter f;
    fields.fill_all(f.COEF, f.deviation, f.factors.A1, f.factors.A2, f.factors.multiplier, f.factors.gain);
    f.sampling_frequency = 1e3 * whole(1, 1000);
    f.NFCNS = whole(0, 258), f.NODD = whole(0, 1), f.NEG = whole(0, 1), f.origin = FirOrigin{whole(0, 2)};
    for (int n = whole(1, fir_function_limit); n > 0; --n) {
        FirFunction function{.taps = whole(2, 100),
                             .symmetry = FirSymmetry{whole(0, 2)},
                             .word = {whole(1, fir_untruncated), WordMethod{whole(1, 2)}, NumberForm{whole(1, 2)}},
                             .gain = fields.any_double(),
                             .asked = whole(0, 1) == 1};
        std::vector<double> cells(static_cast<std::size_t>(stored_cells(function.taps, function.symmetry)));
        for (double& h : cells) h = fields.any_double();
        EXPECT_TRUE(add_function(f, function, cells));
    }
    FirFactors& factors = f.factors;
    factors.count = whole(0, fir_factor_limit), factors.last_serial = factors.count + whole(0, 9);
    for (int k = 1; k <= factors.count; ++k) factors.ISER(k) = factors.last_serial + 1 - k, factors.A1(k) = k;
    factors.function = whole(0, f.functions), factors.delay = whole(0, 9), factors.trailing = whole(0, 9);
    factors.asked = whole(0, 1) == 1;
    FirRequest& r = f.request;
    r.design_method = FirMethod{whole(1, 2)}, r.fir_type = FirType::filter, r.filter_type = FirFilterType{whole(1, 4)};
    r.specification_type = FirSpecification::weights, r.window_type = FirWindow{whole(1, 21)};
    r.filter_length = whole(0, 512), r.slope = fields.any_double(), r.parameter = fields.any_double();
    r.lower_frequency = whole(0, 9), r.upper_frequency = whole(0, 9), r.sampling_frequency = whole(9, 99);
    for (r.QUADRUPLETS.rows = 0; r.QUADRUPLETS.rows < 4;) {
        const int row = ++r.QUADRUPLETS.rows;
        r.QUADRUPLETS(row, 1) = 2 * row, r.QUADRUPLETS(row, 2) = 2 * row + 1;
        r.QUADRUPLETS(row, 3) = whole(0, 1), r.QUADRUPLETS(row, 4) = whole(1, 9);
    }
    r.shape.rows = whole(0, 1) * whole(0, max_shape_points);
    for (int i = 1; i <= r.shape.rows; ++i) r.shape(i, 1) = fields.any_double(), r.shape(i, 2) = fields.any_double();
    return f;
}

std::string bytes_of(const FirFilter& filter) { return fir_records(filter, {}); }

// Reads the bytes over a filter, and asks that a refusal leaves it and its title alone.
bool reads(std::string_view bytes, bool snapshot = false) {
    std::mt19937 engine(3);
    FirFilter found = random_filter(engine);
    const std::string before = bytes_of(found);
    FixedText<80> title = "untouched";
    const bool good = (snapshot ? read_fir_snapshot : read_fir_records)(bytes, found, title);
    EXPECT_TRUE(good || (bytes_of(found) == before && title == std::string_view("untouched")));
    return good;
}

TEST(StoredFir, ComesBackToTheLastBit) {
    const ScratchFolder folder;
    std::mt19937 engine(2);
    for (int round = 0; round < 50; ++round) {
        const FirFilter filter = random_filter(engine);
        FixedText<80> title, found_title;
        RandomFields{engine}.fill(title);
        FileMark mark;
        FirFilter found = random_filter(engine);
        ASSERT_EQ(save_filter<FirFilter>("some", fir_files, filter, title, mark), FileStatus::done) << round;
        ASSERT_EQ(read_filter<FirFilter>("some.qff", fir_files, found, found_title, mark), FileStatus::done) << round;
        EXPECT_TRUE(fir_records(found, found_title) == fir_records(filter, title)) << round;
        EXPECT_EQ(full_response(found, 1), full_response(filter, 1));
        EXPECT_EQ(found.FUNCTION(1).gain, filter.FUNCTION(1).gain);
    }
}

// The lengths of the first three records, and a file that ends anywhere.
TEST(StoredFir, TruncatedAndLongerFilesAreRefused) {
    std::mt19937 engine(1);
    FirFilter filter = random_filter(engine);
    filter.request.shape.rows = 2;
    const std::string bytes = bytes_of(filter);
    constexpr std::size_t lengths[] = {2064, 2 * 4368 + 4144 + 8, 24 + 20 + 20 + 5 * 4, 501 * 16};
    std::size_t at = 0;
    for (const std::size_t length : lengths) {
        std::uint32_t found = 0;
        std::memcpy(&found, bytes.data() + at, sizeof found);
        EXPECT_EQ(found, length);
        at += length + 8;
    }
    EXPECT_EQ(at, bytes.size());
    for (std::size_t size = 0; size < bytes.size(); size += size % 512 == 0 || bytes.size() - size < 9 ? 1 : 7) {
        ASSERT_FALSE(reads(bytes.substr(0, size))) << size;
    }
    EXPECT_FALSE(reads(bytes + bytes.back()));
}

TEST(StoredFir, WhatNoFilterCouldBeIsRefused) {
    void (*const damages[])(FirFilter & f) = {
        [](FirFilter& f) { f.functions = 6; },
        [](FirFilter& f) { f.functions = -1; },
        [](FirFilter& f) { f.IST(1) = 2; },
        [](FirFilter& f) { f.IST(2) += 1; },
        [](FirFilter& f) { f.FUNCTION(1).taps += 2; },
        [](FirFilter& f) { f.FUNCTION(1).symmetry = FirSymmetry{3}; },
        [](FirFilter& f) { f.FUNCTION(1).word.bits = 0; },
        [](FirFilter& f) { f.FUNCTION(1).word.number_form = NumberForm{0}; },
        [](FirFilter& f) { f.FUNCTION(1).gain = NAN; },
        [](FirFilter& f) { f.X(518) = HUGE_VAL; },
        [](FirFilter& f) { f.COEF(258) = NAN; },
        [](FirFilter& f) { f.sampling_frequency = 0; },
        [](FirFilter& f) { f.deviation = NAN; },
        [](FirFilter& f) { f.origin = FirOrigin{3}; },
        [](FirFilter& f) { f.factors.count = 257; },
        [](FirFilter& f) { f.factors.ISER(2) = f.factors.ISER(1); },
        [](FirFilter& f) { f.factors.ISER(2) = f.factors.last_serial + 1; },
        [](FirFilter& f) { f.factors.last_serial = INT_MAX; },
        [](FirFilter& f) { f.factors.A1(2) = f.factors.A2(2) = 0; },
        [](FirFilter& f) { f.factors.A2(273) = NAN; },
        [](FirFilter& f) { f.factors.multiplier = HUGE_VAL; },
        [](FirFilter& f) { f.factors.function = f.functions + 1; },
        [](FirFilter& f) { f.factors.delay = -1; },
        [](FirFilter& f) { f.request.QUADRUPLETS.rows = 11; },
        [](FirFilter& f) { f.request.shape.rows = -1; },
        [](FirFilter& f) { f.request.window_type = FirWindow{22}; },
        [](FirFilter& f) { f.origin = FirOrigin::equal_ripple, f.request.QUADRUPLETS(1, 1) = -1e9; },
        [](FirFilter& f) { f.origin = FirOrigin::equal_ripple, f.request.QUADRUPLETS(2, 4) = 0; },
        [](FirFilter& f) { f.origin = FirOrigin::windowed, f.request.sampling_frequency = 0; },
    };
    std::mt19937 engine(4);
    FirFilter full = random_filter(engine);
    full.factors.count = 2, full.origin = FirOrigin::given;
    for (std::size_t i = 0; i < std::size(damages); ++i) {
        FirFilter filter = full;
        damages[i](filter);
        EXPECT_FALSE(reads(bytes_of(filter)) || reads(bytes_of(filter), true)) << i;
    }
    EXPECT_TRUE(!reads(bytes_of({})) && reads(bytes_of({}), true)) << "no filter is a state, but no file";
}

}  // namespace
}  // namespace kavrel
