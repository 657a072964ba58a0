#include "workshop/node_scaling.h"

#include <algorithm>
#include <random>
#include <vector>

#include <Eigen/Core>
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
        const int reach = round % 3 == 0 ? 1 : n;
        Eigen::MatrixXd X = Eigen::MatrixXd::Zero(n, n);
        std::vector<double> w, s(static_cast<std::size_t>(n), 1.0);
        for (int i = 0; i < n; ++i) {
            const double level = std::pow(10, uniform(-3, 3));
            w.push_back(std::pow(10, uniform(-1, 1)));
            X(i, i) += uniform(0.01, 1) * level;
            for (int j = i + 1; j < std::min(n, i + reach + 1); ++j) {
                const double x = uniform(-0.2, 1) * std::sqrt(level);
                X(i, i) += std::fabs(x);
                X(j, j) += std::fabs(x);
                X(i, j) = X(j, i) = -x;
            }
        }
        ASSERT_EQ(scale_nodes({X.data(), X.data() + X.size()}, w, s, kept), NodeScalingVerdict::done) << round;
        EXPECT_TRUE(std::ranges::min(s) > 0 && (kept == 0 || s[0] == 1));
        const auto wide = Eigen::Map<Eigen::VectorXd>(s.data(), n).cast<long double>().eval();
        for (int i = kept; i < n; ++i) {
            const auto terms = (X.row(i).transpose().cast<long double>().array() * wide.array() * wide(i)).eval();
            EXPECT_LT(std::fabs(terms.sum() - w[static_cast<std::size_t>(i)]), 1e-14L * terms.abs().maxCoeff())
                << round;
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
