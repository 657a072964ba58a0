#include "workshop/node_scaling.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kavrel {
namespace {

// Random positive definite matrices, chains and full ones, of entries over six decades and with couplings of both
// signs.
TEST(NodeScaling, BringsElementsToGroundToTheirValues) {
    std::mt19937 engine(1);
    const auto uniform = [&](double from, double to) { return std::uniform_real_distribution(from, to)(engine); };
    for (int round = 0; round < 600; ++round) {
        const int n = 1 + round % max_scaled_nodes, kept = n > 1 ? round % 2 : 0;
        const bool chain = round % 3 == 0;
        const auto place = [n](int i, int j) { return static_cast<std::size_t>(i * n + j); };
        std::vector<double> X(place(n, 0)), w, s(static_cast<std::size_t>(n), 1.0), level;
        for (int i = 0; i < n; ++i) {
            level.push_back(std::pow(10, uniform(-3, 3)));
            w.push_back(std::pow(10, uniform(-1, 1)));
        }
        for (int i = 0; i < n; ++i) {
            X[place(i, i)] += uniform(0.01, 1) * level[static_cast<std::size_t>(i)];
            for (int j = i + 1; j < n; ++j) {
                if (chain && j > i + 1) continue;
                const double x = uniform(-0.2, 1) * std::sqrt(level[static_cast<std::size_t>(i)]);
                X[place(i, i)] += std::fabs(x);
                X[place(j, j)] += std::fabs(x);
                X[place(i, j)] = X[place(j, i)] = -x;
            }
        }
        ASSERT_EQ(scale_nodes(X, w, s, kept), NodeScalingVerdict::done) << round;
        EXPECT_TRUE(kept == 0 || s[0] == 1);
        for (int i = kept; i < n; ++i) {
            long double sum = 0, largest = 0;
            for (int j = 0; j < n; ++j) {
                const long double term = static_cast<long double>(X[place(i, j)]) * s[static_cast<std::size_t>(i)] *
                                         s[static_cast<std::size_t>(j)];
                sum += term;
                largest = std::max(largest, std::fabs(term));
            }
            EXPECT_GT(s[static_cast<std::size_t>(i)], 0);
            EXPECT_LT(std::fabs(sum - w[static_cast<std::size_t>(i)]), 1e-14L * largest) << round;
        }
    }
}

TEST(NodeScaling, RefusesWhatIsNotPositiveDefinite) {
    const std::vector<double> w(2, 1);
    for (const std::vector<double>& X :
         {std::vector<double>{1, 2, 2, 1}, {1, -1, -1, 1}, {0, 0, 0, 1}, {-1, 0, 0, 1}}) {
        std::vector<double> s{7, 7};
        EXPECT_EQ(scale_nodes(X, w, s), NodeScalingVerdict::not_positive_definite);
        EXPECT_EQ(s, (std::vector<double>{7, 7}));
        EXPECT_EQ(scale_nodes(X, w, s, 1), NodeScalingVerdict::done);  // the second node alone
    }
}

}  // namespace
}  // namespace kavrel
