#include "fir/stored_fir.h"

#include <cmath>

#include <gtest/gtest.h>

#include "fir/fir_records.h"
#include "tests/support/random_fields.h"

namespace kavrel {
namespace {

// Something in every field, as a filter may have it.
FirFilter random_filter(std::mt19937& engine) {
    testing::RandomFields fields{engine};
    const auto whole = [&](int from, int to) { return fields.whole(from, to); };
    FirFilter f;
    FirFactors& factors = f.factors;
    FirRequest& r = f.request;
    fields.fill_all(f.COEF, f.deviation, factors.A1, factors.A2, factors.multiplier, factors.gain, r.slope,
                    r.parameter);
    f.sampling_frequency = 1e3 * whole(1, 1000), f.origin = FirOrigin{whole(0, 2)};
    f.NFCNS = whole(0, 258), f.NODD = whole(0, 1), f.NEG = whole(0, 1);
    for (int n = whole(2, fir_function_limit); n > 0; --n) {
        const WordLength word{whole(1, fir_untruncated), WordMethod{whole(1, 2)}, NumberForm{whole(1, 2)}};
        const FirFunction function{whole(2, 100), FirSymmetry{whole(0, 2)}, word, fields.any_double(),
                                   whole(0, 1) == 1};
        std::vector<double> cells(static_cast<std::size_t>(stored_cells(function.taps, function.symmetry)));
        for (double& h : cells) h = fields.any_double();
        EXPECT_TRUE(add_function(f, function, cells));
    }
    factors.count = whole(2, fir_factor_limit), factors.last_serial = factors.count + whole(0, 9);
    for (int k = 1; k <= factors.count; ++k) factors.ISER(k) = factors.last_serial + 1 - k, factors.A1(k) = k;
    factors.function = whole(0, f.functions), factors.delay = whole(0, 9), factors.asked = whole(0, 1) == 1;
    r.fir_type = FirType::filter, r.specification_type = FirSpecification::weights, r.filter_length = whole(0, 512);
    r.filter_type = FirFilterType{whole(1, 4)}, r.window_type = FirWindow{whole(1, 21)}, r.sampling_frequency = 9;
    for (int row = r.QUADRUPLETS.rows = 3; row > 0; --row) {
        r.QUADRUPLETS(row, 1) = 2 * row, r.QUADRUPLETS(row, 2) = 2 * row + 1, r.QUADRUPLETS(row, 4) = whole(1, 9);
    }
    r.shape.rows = whole(0, 1) * whole(0, max_shape_points);
    for (int i = 1; i <= r.shape.rows; ++i) r.shape(i, 1) = fields.any_double(), r.shape(i, 2) = fields.any_double();
    return f;
}

// Reads the bytes over a filter, and asks that a refusal leaves it and its title alone.
bool reads(std::string_view bytes, bool snapshot = false) {
    std::mt19937 engine(3);
    FirFilter found = random_filter(engine);
    FixedText<80> title = "untouched";
    const std::string before = fir_records(found, title);
    const bool good = (snapshot ? read_fir_snapshot : read_fir_records)(bytes, found, title);
    EXPECT_TRUE(good || fir_records(found, title) == before);
    return good;
}

TEST(StoredFir, ComesBackToTheLastBitOrIsRefused) {
    std::mt19937 engine(2);
    for (int round = 0; round < 50; ++round) {
        FirFilter filter = random_filter(engine), found = random_filter(engine);
        FixedText<80> title;
        const std::string bytes = fir_records(filter, "title");
        ASSERT_TRUE(read_fir_records(bytes, found, title) && fir_records(found, title) == bytes) << round;
        for (int n = 1; n <= filter.functions; ++n) EXPECT_EQ(fingerprint(found, n), fingerprint(filter, n));
        EXPECT_EQ(bytes.size(), (2064 + 12888 + 84) + 3 * 8 + (filter.request.shape.rows > 0 ? 8016 + 8 : 0));
        for (std::size_t size = static_cast<std::size_t>(round); size < bytes.size(); size += 997) {
            ASSERT_FALSE(reads(bytes.substr(0, size))) << size;
        }
        EXPECT_FALSE(reads(bytes + bytes.back()));
    }
}

TEST(StoredFir, WhatNoFilterCouldBeIsRefused) {
    using F = FirFilter;
    // clang-format off
    void (*const damages[])(F&) = {
        [](F& f) { f.functions = 6; }, [](F& f) { f.IST(2) += 1; }, [](F& f) { f.FUNCTION(1).taps += 2; },
        [](F& f) { f.FUNCTION(1).symmetry = FirSymmetry{3}; }, [](F& f) { f.FUNCTION(1).word.bits = 0; },
        [](F& f) { f.FUNCTION(1).gain = NAN; }, [](F& f) { f.X(518) = HUGE_VAL; }, [](F& f) { f.sampling_frequency = 0; },
        [](F& f) { f.factors.count = 257; }, [](F& f) { f.factors.ISER(2) = f.factors.ISER(1); },
        [](F& f) { f.factors.last_serial = 514; }, [](F& f) { f.factors.A1(2) = f.factors.A2(2) = 0; },
        [](F& f) { f.factors.A2(273) = NAN; }, [](F& f) { f.factors.function = f.functions + 1; },
        [](F& f) { f.request.window_type = FirWindow{22}; },
        [](F& f) { f.origin = FirOrigin::equal_ripple, f.request.QUADRUPLETS(1, 1) = -1e9; },
        [](F& f) { f.origin = FirOrigin::equal_ripple, f.request.QUADRUPLETS(2, 4) = 0; },
        [](F& f) { f.origin = FirOrigin::windowed, f.request.sampling_frequency = 0; },
    };
    // clang-format on
    std::mt19937 engine(4);
    const FirFilter full = random_filter(engine);
    for (std::size_t i = 0; i < std::size(damages); ++i) {
        FirFilter filter = full;
        damages[i](filter);
        EXPECT_FALSE(reads(fir_records(filter, "")) || reads(fir_records(filter, ""), true)) << i;
    }
    EXPECT_TRUE(!reads(fir_records({}, "")) && reads(fir_records({}, ""), true)) << "no filter is a state, but no file";
}

}  // namespace
}  // namespace kavrel
