// Words and levels of FIR functions.
#include "tests/fir/fir_room.h"
#include "tests/support/in_word.h"

namespace kavrel {
namespace {

const std::string done = "Success: *** Done ***";

struct FirFunctionEdits : testing::Test, FirRoom {
    // An even and an odd symmetry, and none; the factors are of the second one.
    FirFunctionEdits() {
        for (const auto& taps :
             {std::vector{0.1, -0.4, 0.7, -0.4, 0.1}, {0.3, 1e-5, -1e-5, -0.3}, {1.0 / 3, -2.5, 1.0 / 7}}) {
            const FirResponse response = response_of(taps);
            EXPECT_TRUE(add_function(filter, response.function, response.coefficients));
        }
        filter.sampling_frequency = 1, filter.factors.function = 2, filter.factors.multiplier = 0.3;
        before = filter;
    }
    // What became of the coefficients of a function; the others stay.
    void expect_only(int n, const std::function<double(double)>& now) {
        for (int k = 1; k < filter.IST(4); ++k) {
            const bool own = k >= filter.IST(n) && k < filter.IST(n + 1);
            EXPECT_NEAR(filter.X(k), own ? now(before.X(k)) : before.X(k), 1e-15 * std::fabs(before.X(k)));
        }
    }
    FirFilter before;
};

TEST_F(FirFunctionEdits, TruncateWhatIsStored) {
    for (int i = 0; i < 36; ++i) {
        filter = before;
        const int n = command.function_number = i % 3 + 1, bits = i / 12 == 0 ? 2 : i / 12 == 1 ? 11 : 47;
        command.truncated_to = {bits, WordMethod{i / 3 % 2 + 1}, NumberForm{i / 6 % 2 + 1}};
        EXPECT_EQ(send("trun"), done);
        EXPECT_EQ(filter.FUNCTION(n).word, command.truncated_to);
        EXPECT_EQ(filter.factors.function, n == 2 ? 0 : 2);
        expect_only(n, [&](double h) { return in_word(h, command.truncated_to); });
    }
}

TEST_F(FirFunctionEdits, MoveTheLevel) {
    command.gain = -6.5;
    for (int i = 0; i < 12; ++i) {
        const bool flat = i / 3 % 2 == 0, truncated = i / 6 == 0;
        const int n = command.function_number = i % 3 + 1;
        filter = before;
        filter.FUNCTION(n).word.bits = truncated ? 12 : 48;
        const double output = n == 1 ? 1.7 : n == 2 ? 0.60002 : 2.5 + 1 / 3.0 + 1 / 7.0;
        const double factor = flat ? std::pow(10, -6.5 / 20) : 1 / output;
        const std::string shown = send(flat ? "flat" : "scal"), line = fmt::format("Scale factor = {:14.7E} (", factor);
        EXPECT_EQ(shown == done, flat && !truncated);
        EXPECT_EQ(shown.ends_with(fmt::format(" Function {} is no longer truncated to 12 bits", n)), truncated);
        EXPECT_EQ(shown.find(line) != shown.npos, !flat) << shown;
        EXPECT_EQ(filter.FUNCTION(n).word.bits, fir_untruncated);
        EXPECT_NEAR(filter.FUNCTION(n).gain, 20 * std::log10(factor), 1e-13);
        EXPECT_EQ(filter.factors.gain, n == 2 ? filter.FUNCTION(n).gain : 0);
        EXPECT_NEAR(filter.factors.multiplier, n == 2 ? 0.3 * factor : 0.3, 1e-15);
        expect_only(n, [&](double h) { return h * factor; });
    }
}

TEST_F(FirFunctionEdits, LeaveAllAsItWas) {
    FirFilter zero = before, truncated = before, scaled = before, huge = before, none;
    huge.X(1) = huge.X(2) = 1e308;
    zero.X(1) = zero.X(2) = zero.X(3) = 0, truncated.FUNCTION(1).word.bits = 12;
    for (int k = 1; k <= 3; ++k) scaled.X(k) /= 1.7;
    const std::string missing = "Error: Function does not exist", far = "Error: Gain is out of range";
    const std::string word_kept = " Function already truncated to 12 bits";
    const std::tuple<const char*, FirFilter, int, double, std::string> cases[] = {
        {"trun", before, 1, 48, " A word of 48 bits changes nothing"},
        {"trun", truncated, 1, 12, word_kept},
        {"trun", truncated, 1, 99, word_kept},
        {"trun", before, 2, 1, "Error: All coefficients would be 0 in so short a word"},
        {"trun", before, 0, 1, missing},
        {"trun", none, 1, 1, "Error: No function to truncate"},
        {"flat", before, 1, 0, " A gain of 0 dB changes nothing"},
        {"flat", before, 1, 7000, far},
        {"flat", before, 1, -3100, far},
        {"flat", before, 1, -1e150, far},
        {"flat", before, 6, 1, missing},
        {"flat", none, 1, 1, missing},
        {"scal", scaled, 1, 0, " Function 1: the largest possible output for inputs within 1 is 1"},
        {"scal", zero, 1, 0, "Error: All coefficients are 0"},
        {"scal", huge, 1, 0, far},
        {"scal", before, 4, 0, missing}};
    for (const auto& [word, of, n, number, shown] : cases) {
        filter = of, command.function_number = n, command.gain = number;
        command.truncated_to = {std::abs(number) < 100 ? static_cast<int>(number) : 1, WordMethod::truncate,
                                NumberForm::fixed_point};
        EXPECT_EQ(send(word), shown);
        EXPECT_EQ(fingerprint(filter), fingerprint(of));
    }
}

TEST(FirFunctions, TellWhatTheyMissWhereTheyAreChangedOrShown) {
    FirRoom room;
    room.ask(9, FirSpecification::ripple_in_db, {{0, 0.1, 1, 1}, {0.3, 0.5, 0, 20}});
    ASSERT_EQ(remez_design(room.desk, room.filter), FirDesignVerdict::designed);
    ASSERT_TRUE(add_function(room.filter, room.filter.FUNCTION(1), std::array<double, 5>{-.03, -.04, .08, .29, .41}));
    room.command.function_number = 2, room.command.truncated_to = {3, WordMethod::round, NumberForm::fixed_point};
    EXPECT_NE(room.send("trun").find(" Function 2:\n  *** pass band up to"), std::string::npos);
    EXPECT_NE(room.send("show").find("\n  *** pass band up to"), std::string::npos);
}

}  // namespace
}  // namespace kavrel
