// Words and levels of FIR functions.
#include "fir/fir_rows.h"
#include "tests/fir/fir_room.h"
#include "tests/support/in_word.h"

namespace kavrel {
namespace {

struct FirFunctionEdits : testing::Test, FirRoom {
    // An even and an odd symmetry, and none.
    FirFunctionEdits() {
        filter = filter_of({0.1, -0.4, 0.7, -0.4, 0.1});
        for (const std::vector<double>& taps : {std::vector{0.3, 1e-5, -1e-5, -0.3}, {1.0 / 3, -2.5, 1.0 / 7}}) {
            const FirResponse response = response_of(taps);
            EXPECT_TRUE(add_function(filter, response.function, response.coefficients));
        }
        for (int n = 1; n <= 3; ++n) filter.FUNCTION(n).asked = true;
        filter.factors.count = filter.factors.ISER(1) = filter.factors.last_serial = 1;
        filter.factors.function = 2, filter.factors.multiplier = 0.3;
        before = filter;
    }
    // Of a command that does not change the filter, in the words of a box or a line.
    void expect_unchanged(std::string_view word, const std::string& why) {
        const Fingerprint old = fingerprint(filter);
        send(word);
        EXPECT_EQ(boxes() + lines(), why);
        EXPECT_EQ(fingerprint(filter), old);
    }
    // The taps of each function over those before the command.
    void expect_factors(const std::array<double, 3>& factors) {
        for (int n = 1; n <= 3; ++n) {
            const auto old = full_response(before, n), now = full_response(filter, n);
            for (std::size_t i = 0; i < old.size(); ++i)
                EXPECT_NEAR(now[i], old[i] * factors[static_cast<std::size_t>(n) - 1], 1e-15 * std::fabs(now[i])) << n;
        }
    }

    FirFilter before;
};

TEST_F(FirFunctionEdits, TruncateWhatIsStored) {
    for (const auto method : {WordMethod::round, WordMethod::truncate}) {
        for (const auto number_form : {NumberForm::floating_point, NumberForm::fixed_point}) {
            for (const int bits : {2, 11, 47}) {
                for (int n = 1; n <= 3; ++n) {
                    filter = before;
                    command.function_number = n, command.truncated_to = {bits, method, number_form};
                    send("trun");
                    EXPECT_EQ(boxes(), "Success: *** Done ***");
                    EXPECT_EQ(filter.FUNCTION(n).word, command.truncated_to);
                    EXPECT_EQ(filter.factors.function, n == 2 ? 0 : 2);
                    for (int i = 1; i < filter.IST(4); ++i) {
                        const bool own = i >= filter.IST(n) && i < filter.IST(n + 1);
                        EXPECT_EQ(filter.X(i), own ? in_word(before.X(i), command.truncated_to) : before.X(i));
                    }
                }
            }
        }
    }
    send("undo");
    EXPECT_EQ(fingerprint(filter), fingerprint(before));
}

TEST_F(FirFunctionEdits, WordsThatChangeNothing) {
    command.truncated_to.bits = 48;
    expect_unchanged("trun", " A word of 48 bits changes nothing\n");
    command.truncated_to.bits = 12;
    send("trun");
    for (const int bits : {12, 13, 99}) {
        command.truncated_to = {bits, WordMethod::truncate, NumberForm::fixed_point};
        expect_unchanged("trun", " Function already truncated to 12 bits\n");
    }
    command.truncated_to.bits = 1, command.function_number = 2;
    expect_unchanged("trun", "Error: All coefficients would be 0 in so short a word");
}

TEST_F(FirFunctionEdits, FlatGain) {
    command.function_number = 2, command.gain = -6.5;
    send("flat");
    const double factor = std::pow(10, -6.5 / 20);
    EXPECT_EQ(boxes() + lines(), "Success: *** Done ***");
    expect_factors({1, factor, 1});
    EXPECT_EQ(filter.FUNCTION(2).gain, -6.5);
    EXPECT_TRUE(filter.FUNCTION(2).asked && filter.FUNCTION(1).gain == 0);
    EXPECT_TRUE(filter.factors.gain == -6.5 && filter.factors.multiplier == 0.3 * factor);
    command.function_number = 3, command.truncated_to.bits = 9;
    send("trun");
    send("flat");
    EXPECT_EQ(lines(), " Function 3 is no longer truncated to  9 bits\n");
    EXPECT_TRUE(filter.FUNCTION(3).word.bits == fir_untruncated && filter.factors.gain == -6.5);
    send("undo");
    EXPECT_EQ(filter.FUNCTION(3).word.bits, 9);
}

TEST_F(FirFunctionEdits, ScaleToTheLargestOutput) {
    const std::array<double, 3> outputs = {1.7, 0.60002, 2.5 + 1.0 / 3 + 1.0 / 7};
    for (int n = 1; n <= 3; ++n) {
        command.function_number = n;
        send("scal");
        const double output = outputs[static_cast<std::size_t>(n) - 1];
        EXPECT_NEAR(filter.FUNCTION(n).gain, -20 * std::log10(output), 1e-13);
        expect_unchanged("scal",
                         fmt::format(" Function {}: the largest possible output for inputs within 1 is 1\n", n));
    }
    expect_factors({1 / outputs[0], 1 / outputs[1], 1 / outputs[2]});
    EXPECT_NEAR(filter.factors.multiplier, 0.3 / 0.60002, 1e-15);
    filter = before, command.function_number = 1;
    send("scal");
    EXPECT_EQ(lines(),
              " Function 1: the largest possible output for inputs within 1 becomes 1\n"
              " Scale factor =  5.8823529E-01 (  -4.6090 dB)\n");
}

// An equal ripple filter is judged at its new level.
TEST_F(FirFunctionEdits, TheRequestMovesWithTheLevel) {
    design(31, {{0, 0.1, 1, 1}, {0.2, 0.5, 0, 1}});
    Unwatched watcher;
    const double deviation = check_fir(filter, 1, watcher).rows[1].reached;
    command.gain = 20;
    for (const auto* word : {"flat", "scal"}) {
        send(word);
        EXPECT_NEAR(check_fir(filter, 1, watcher).rows[1].reached / deviation, 1, 1e-9);
    }
}

TEST_F(FirFunctionEdits, Refuse) {
    command.gain = 0;
    expect_unchanged("flat", " A gain of 0 dB changes nothing\n");
    for (const double gain : {7000., -7000., 1e150, -1e150, 6165.}) {
        command.gain = gain;
        expect_unchanged("flat", "Error: Gain is out of range");
    }
    for (const int n : {0, 4, 6, -1}) {
        command.function_number = n;
        for (const auto* word : {"flat", "scal", "trun"}) expect_unchanged(word, "Error: Function does not exist");
    }
    command.function_number = 1;
    for (double& h : stored_coefficients(filter, 1)) h = 0;
    expect_unchanged("scal", "Error: All coefficients are 0");
    filter = {};
    const std::pair<const char*, const char*> missing[] = {
        {"flat", "Function does not exist"}, {"scal", "Function does not exist"}, {"trun", "No function to truncate"}};
    for (const auto& [word, why] : missing) expect_unchanged(word, std::string("Error: ") + why);
}

}  // namespace
}  // namespace kavrel
