// The least words of FIR functions, against published numbers and against all words from 1 to 47 bits tried out.
#include "fir/least_words.h"

#include <complex>
#include <numbers>

#include <nlohmann/json.hpp>

#include "fir/fir_json.h"
#include "tests/fir/fir_room.h"
#include "tests/support/in_word.h"

namespace kavrel {
namespace {

// The largest deviation from what a row desires, its frequencies over those of the sampling, a parabola through the
// three highest of many samples.
double deviation(const std::vector<double>& taps, const std::array<double, 4>& band) {
    constexpr int samples = 1000;
    const auto off = [&](double f) {
        double sum = 0;
        const double middle = (static_cast<double>(taps.size()) - 1) / 2;
        for (std::size_t i = 0; i < taps.size(); ++i)
            sum += taps[i] * std::cos(2 * std::numbers::pi * f * (static_cast<double>(i) - middle));
        return sum - band[2];
    };
    std::vector<double> v;
    const double step = (band[1] - band[0]) / samples;
    for (int i = 0; i <= samples; ++i) v.push_back(off(band[0] + step * i));
    double largest = std::max(std::fabs(v.front()), std::fabs(v.back()));
    for (std::size_t i = 1; i + 1 < v.size(); ++i) {
        const double slope = (v[i + 1] - v[i - 1]) / 2, bend = v[i + 1] - 2 * v[i] + v[i - 1];
        largest = std::max(largest, std::fabs(v[i]));
        if ((v[i] - v[i - 1]) * (v[i + 1] - v[i]) < 0)
            largest = std::max(largest, std::fabs(v[i] - slope * slope / bend / 2));
    }
    return largest;
}

using Bands = std::vector<std::array<double, 4>>;

int least_bits(const std::vector<double>& taps, const Bands& bands, WordLength word, double allowance) {
    std::vector<double> limits, work = taps;
    for (const auto& band : bands) limits.push_back(deviation(taps, band) * std::pow(10, allowance / 20));
    const auto keeps = [&] {
        std::ranges::transform(taps, work.begin(), [&](double h) { return in_word(h, word); });
        return std::ranges::equal(bands, limits, [&](auto& band, double d) { return deviation(work, band) <= d; });
    };
    for (word.bits = 47; word.bits > 0 && keeps();) --word.bits;
    return word.bits == 47 ? 0 : word.bits + 1;
}

TEST(FirLeastWords, AreThoseFoundByTryingAllWords) {
    const struct {
        int length;
        Bands bands;
        double allowance;
    } cases[] = {{24, {{0, 0.1, 1, 1}, {0.2, 0.5, 0, 1}}, 1},
                 {31, {{0, 0.15, 0, 10}, {0.2, 0.35, 1, 1}, {0.4, 0.5, 0, 1}}, 0.3},
                 {41, {{0, 0.3, 0, 1}, {0.35, 0.5, 2, 5}}, 3}};
    for (const auto& [length, bands, allowance] : cases) {
        FirRoom room;
        room.request.filter_length = length, room.request.specification_type = FirSpecification::weights;
        for (const auto& band : bands) {
            const int row = ++room.request.QUADRUPLETS.rows;
            for (int i = 0; i < 4; ++i) room.request.QUADRUPLETS(row, i + 1) = band[static_cast<std::size_t>(i)];
        }
        ASSERT_EQ(remez_design(room.desk, room.filter), FirDesignVerdict::designed);
        for (const auto method : {WordMethod::round, WordMethod::truncate}) {
            Unwatched watcher;
            for (const FoundWord& found : least_words(room.filter, 1, method, allowance, watcher)) {
                EXPECT_EQ(found.word.bits, least_bits(full_response(room.filter, 1), bands, found.word, allowance))
                    << length << name_of(found.word.number_form) << name_of(method);
            }
        }
    }
}

// Published: 16 bits in fixed words, 11 in floating ones.
struct FirLeastWord : testing::Test, FirRoom {
    FirLeastWord() {
        design(101, {{0, 0.2, 1, 1}, {0.23, 0.5, 0, 1}});
        command.truncated_to = {0, WordMethod::round, NumberForm::fixed_point};
    }
};

TEST_F(FirLeastWord, OfAnEqualRippleFilter) {
    filter.factors.function = 1;
    send("trun");
    const nlohmann::ordered_json words = fir_part(filter, state)["word_lengths"];
    ASSERT_EQ(words.size(), 2U);
    EXPECT_TRUE(words[0]["number_form"] == "floating point" && words[0]["bits"] == 11) << words;
    EXPECT_TRUE(words[1]["number_form"] == "fixed point" && words[1]["bits"] == 16) << words;
    for (const auto& word : words) {
        const double stopband = word["stopband_loss"], d = std::pow(10, -56.26 / 20), e = d * std::pow(10, 0.05);
        EXPECT_TRUE(stopband > 55.25 && stopband < 56.27) << stopband;
        EXPECT_LE(word["passband_loss"], 20 * std::log10((1 + e) / (1 - e)) + 1e-4);
        EXPECT_GE(word["passband_loss"], 20 * std::log10((1 + d) / (1 - d)) - 1e-4);
    }
    EXPECT_TRUE(reported("    fixed point         16       0.02")) << lines();
    EXPECT_EQ(filter.FUNCTION(1).word, (WordLength{16, WordMethod::round, NumberForm::fixed_point}));
    EXPECT_EQ(filter.factors.function, 0);
    command.gain = 6;
    send("flat");
    EXPECT_FALSE(fir_part(filter, state).contains("word_lengths")) << "of another function";
}

TEST_F(FirLeastWord, LeavesAllAsItWas) {
    const auto refused = [&](int stop_at, const std::string& expected) {
        const Fingerprint before = fingerprint(filter);
        window.stop_at = stop_at;
        send("trun");
        EXPECT_EQ(fingerprint(filter), before);
        EXPECT_TRUE((boxes() + lines()).find(expected) != std::string::npos) << boxes() << lines();
    };
    const std::string no_request = "Error: There is no request that a word could meet: enter a number of bits";
    refused(5, std::string(stopped_line) + '\n');
    EXPECT_TRUE(state.words.empty());
    command.stopband_allowance = 1e-12;
    refused(-1, "    fixed point       none\n The function is not truncated: no word keeps its deviations\n");
    filter.FUNCTION(1).asked = false;
    refused(-1, no_request);
    filter.FUNCTION(1).asked = true, filter.origin = FirOrigin::windowed;
    refused(-1, no_request);
    filter = {};
    refused(-1, "Error: No function to truncate");
}

}  // namespace
}  // namespace kavrel
