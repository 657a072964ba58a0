#include "iir/section_order.h"

#include "iir/noise_gain.h"
#include "tests/iir/scaled_cascades.h"

namespace kavrel {
namespace {

OrderSearch search_of(const CascadeForm& cascade, std::uint32_t seed, int threads = 2) {
    Unwatched watcher;
    return *orderSections(cascade, seed, threads, watcher);
}

double noise_of(CascadeForm cascade, const Assignment& assignment) {
    apply_order(cascade, assignment);
    rescale(cascade, *l_two_factors(cascade));
    return *noiseGain(cascade);
}

TEST(SectionOrder, IsTheSameOnAnyNumberOfThreadsAndBetterThanTheNaturalOne) {
    const CascadeForm cascade = noise_golden()[2].cascade;
    const Lines lines = order_lines(search_of(cascade, 7, 1));
    for (const int threads : {0, 2, 3}) EXPECT_EQ(order_lines(search_of(cascade, 7, threads)), lines) << threads;
    EXPECT_NE(order_lines(search_of(cascade, 8)), lines);
    const OrderSearch search = search_of(cascade, 7);
    EXPECT_EQ(lines[0], " Best assignment found in  6 random starts");
    for (const Assignment& best : search.rounds) {
        EXPECT_NEAR(noise_of(cascade, best), decibel_of(best.noise), 1e-9);
        EXPECT_GE(best.noise, search.rounds[search.best].noise);
    }
    EXPECT_LT(search.rounds[search.best].noise, 0.5 * search.natural);
}

// Of two sections every assignment is a start or its exchange; one has no choice.
TEST(SectionOrder, OfFewSectionsIsTheBestThereIs) {
    const CascadeForm two = factored_filter(1, 0.01, {{0.3, 1}}, {{-1.6, 0.7}, {-1.2, 0.95}}).cascade;
    double least = HUGE_VAL;
    for (const std::vector<int>& n : {std::vector{1, 2}, {2, 1}})
        for (const std::vector<int>& d : {std::vector{1, 2}, {2, 1}}) least = std::min(least, noise_of(two, {n, d}));
    EXPECT_NEAR(noise_of(two, search_of(two, 1).rounds[14]), least, 1e-9);
    const CascadeForm one = factored_filter(1, 0.5, {{0.3, 1}}, {{-1.6, 0.7}}).cascade;
    const Lines lines = order_lines(search_of(one, 1));
    const auto noise = noiseCore(one);
    EXPECT_NEAR(search_of(one, 1).natural / (0.75 * std::pow(noise->F(1) * noise->G(1), 2) + 2), 1, 1e-13);
    EXPECT_EQ(lines[1] + lines[2], "  1     1        1");
}

}  // namespace
}  // namespace kavrel
