// The least words of FIR functions, against published numbers and against all words from 1 to 47 bits tried out.
#include "fir/least_words.h"

#include <nlohmann/json.hpp>

#include "fir/fir_deviation.h"
#include "fir/fir_json.h"
#include "fir/fir_rows.h"
#include "fir/fir_task.h"
#include "tests/fir/fir_room.h"
#include "tests/support/in_word.h"

namespace kavrel {
namespace {

struct FirLeastWords : testing::Test, FirRoom {
    Unwatched unwatched;

    bool keeps(const WordLength& word, double allowance) {
        FirTask task;
        FirFilter work = filter;
        EXPECT_EQ(take_task(request, task), nullptr);
        for (double& h : stored_coefficients(work, 1)) h = in_word(h, word);
        double growth = 0;
        for (int b = 1; b <= task.BANDS.NBANDS; ++b)
            growth = std::fmax(
                growth, largest_deviation(task, work, 1, b).weighted / largest_deviation(task, filter, 1, b).weighted);
        return 20 * std::log10(growth) <= allowance;
    }
};

TEST_F(FirLeastWords, AreThoseFoundByTryingAllWords) {
    using Bands = std::vector<std::array<double, 4>>;
    for (const auto& [length, allowance, bands] : {std::tuple(24, 1.0, Bands{{0, 0.1, 1, 1}, {0.2, 0.5, 0, 1}}),
                                                   {31, 0.3, {{0, 0.15, 0, 10}, {0.2, 0.35, 1, 1}, {0.4, 0.5, 0, 1}}},
                                                   {41, 3.0, {{0, 0.3, 0, 1}, {0.35, 0.5, 2, 5}}}}) {
        ask(length, FirSpecification::weights, bands);
        ASSERT_EQ(remez_design(desk, filter), FirDesignVerdict::designed);
        for (const auto method : {WordMethod::round, WordMethod::truncate}) {
            for (const FoundWord& found : least_words(filter, 1, method, allowance, unwatched)) {
                WordLength word = found.word;
                for (word.bits = 47; word.bits > 0 && keeps(word, allowance);) --word.bits;
                EXPECT_EQ(found.word.bits, word.bits + 1) << length << text_of(found.word);
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
    EXPECT_EQ(filter.FUNCTION(1).word, (WordLength{16, WordMethod::round, NumberForm::fixed_point}));
    const auto words = fir_part(filter, state)["word_lengths"];
    ASSERT_TRUE(words.size() == 2 && words[0]["bits"] == 11 && words[1]["bits"] == 16) << words;
    for (const auto& word : words) {
        EXPECT_TRUE(word["stopband_loss"] > 55.25 && word["stopband_loss"] < 56.3) << words;
        EXPECT_TRUE(word["passband_loss"] > 0.0266 && word["passband_loss"] < 0.0301) << words;
    }
    const double reached = check_fir(filter, 1, unwatched).rows[1].reached;
    command.gain = 6;
    send("flat");
    EXPECT_NEAR(check_fir(filter, 1, unwatched).rows[1].reached / reached, 1, 1e-9) << "judged at its new level";
    EXPECT_FALSE(fir_part(filter, state).contains("word_lengths")) << "of another function";

    FirFilter none, dropped = design;
    dropped.FUNCTION(1).asked = false;
    const std::tuple<const FirFilter&, int, double, std::string> unchanged[] = {
        {design, 5, 0, std::string(stopped_line)},
        {design, -1, 1e-12, "fixed point       none\n The function is not truncated: no word keeps its deviations"},
        {dropped, -1, 0, "Error: There is no request that a word could meet: enter a number of bits"},
        {none, -1, 0, "Error: No function to truncate"}};
    for (const auto& [of, stop_at, allowance, shown] : unchanged) {
        filter = of, window.stop_at = stop_at, command.stopband_allowance = allowance;
        EXPECT_TRUE(send("trun").ends_with(shown)) << shown;
        EXPECT_EQ(fingerprint(filter), fingerprint(of));
    }
}

}  // namespace
}  // namespace kavrel
