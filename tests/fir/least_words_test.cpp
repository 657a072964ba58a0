// The least words of FIR functions, against published numbers and against all words from 1 to 47 bits tried out.
#include "fir/least_words.h"

#include <numbers>

#include <nlohmann/json.hpp>

#include "fir/fir_json.h"
#include "fir/fir_rows.h"
#include "tests/fir/fir_room.h"
#include "tests/support/in_word.h"

namespace kavrel {
namespace {

using Bands = std::vector<std::array<double, 4>>;

// The largest deviation from what a band desires, between samples by parabolas.
double deviation(const std::vector<double>& taps, const std::array<double, 4>& band) {
    std::vector<double> v;
    for (int k = 0; k <= 1000; ++k) {
        const double w = 2 * std::numbers::pi * (band[0] + (band[1] - band[0]) * k / 1000);
        double sum = -band[2], late = (1 - static_cast<double>(taps.size())) / 2;
        for (const double h : taps) sum += h * std::cos(w * late++);
        v.push_back(sum);
    }
    double largest = std::max(std::fabs(v.front()), std::fabs(v.back()));
    for (std::size_t i = 1; i + 1 < v.size(); ++i) {
        const double slope = (v[i + 1] - v[i - 1]) / 2, bend = v[i + 1] - 2 * v[i] + v[i - 1];
        if (std::fabs(slope) < std::fabs(bend)) largest = std::max(largest, std::fabs(v[i] - slope * slope / bend / 2));
    }
    return largest;
}

int least_bits(const std::vector<double>& taps, const Bands& bands, WordLength word, double allowance) {
    for (word.bits = 47; word.bits > 0; --word.bits) {
        std::vector<double> work;
        for (const double h : taps) work.push_back(in_word(h, word));
        const auto keeps = [&](const auto& band) {
            return deviation(work, band) <= deviation(taps, band) * std::pow(10, allowance / 20);
        };
        if (!std::ranges::all_of(bands, keeps)) break;
    }
    return word.bits == 47 ? 0 : word.bits + 1;
}

struct FirLeastWords : testing::Test, FirRoom {
    Unwatched unwatched;
};

TEST_F(FirLeastWords, AreThoseFoundByTryingAllWords) {
    for (const auto& [length, allowance, bands] : {std::tuple(24, 1.0, Bands{{0, 0.1, 1, 1}, {0.2, 0.5, 0, 1}}),
                                                   {31, 0.3, {{0, 0.15, 0, 10}, {0.2, 0.35, 1, 1}, {0.4, 0.5, 0, 1}}},
                                                   {41, 3.0, {{0, 0.3, 0, 1}, {0.35, 0.5, 2, 5}}}}) {
        ask(length, FirSpecification::weights, bands);
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        for (const auto method : {WordMethod::round, WordMethod::truncate}) {
            for (const FoundWord& found : least_words(filter, 1, method, allowance, unwatched)) {
                EXPECT_EQ(found.word.bits, least_bits(full_response(filter, 1), bands, found.word, allowance))
                    << length << name_of(found.word.number_form) << name_of(method);
            }
        }
    }
}

// Published: 16 bits in fixed words, 11 in floating ones.
TEST_F(FirLeastWords, OfAnEqualRippleFilter) {
    ask(101, FirSpecification::weights, {{0, 0.2, 1, 1}, {0.23, 0.5, 0, 1}});
    ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
    const FirFilter design = filter;
    command.truncated_to = {0, WordMethod::round, NumberForm::fixed_point};
    EXPECT_NE(send("trun").find("\n    fixed point         16       0.02"), std::string::npos);
    const auto words = fir_part(filter, state)["word_lengths"];
    ASSERT_TRUE(words.size() == 2 && words[0]["bits"] == 11 && words[1]["bits"] == 16) << words;
    for (const auto& word : words) {
        EXPECT_TRUE(word["stopband_loss"] > 55.25 && word["stopband_loss"] < 56.3) << words;
        EXPECT_TRUE(word["passband_loss"] > 0.0266 && word["passband_loss"] < 0.0301) << words;
    }
    EXPECT_EQ(filter.FUNCTION(1).word, (WordLength{16, WordMethod::round, NumberForm::fixed_point}));
    const double reached = check_fir(filter, 1, unwatched).rows[1].reached;
    command.gain = 6;
    send("flat");
    EXPECT_NEAR(check_fir(filter, 1, unwatched).rows[1].reached / reached, 1, 1e-9) << "judged at its new level";
    EXPECT_FALSE(fir_part(filter, state).contains("word_lengths")) << "of another function";

    FirFilter none, dropped = design, windowed = design;
    dropped.FUNCTION(1).asked = false, windowed.origin = FirOrigin::windowed;
    const std::string no_request = "Error: There is no request that a word could meet: enter a number of bits";
    const std::tuple<const FirFilter&, int, double, std::string> unchanged[] = {
        {design, 5, 0, std::string(stopped_line)},
        {design, -1, 1e-12, "fixed point       none\n The function is not truncated: no word keeps its deviations"},
        {dropped, -1, 0, no_request},
        {windowed, -1, 0, no_request},
        {none, -1, 0, "Error: No function to truncate"}};
    for (const auto& [of, stop_at, allowance, shown] : unchanged) {
        filter = of, window.stop_at = stop_at, command.stopband_allowance = allowance;
        EXPECT_TRUE(send("trun").ends_with(shown)) << shown;
        EXPECT_EQ(fingerprint(filter), fingerprint(of));
    }
}

}  // namespace
}  // namespace kavrel
