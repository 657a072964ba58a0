#include "workshop/node_scaling.h"

#include <cmath>

#include <Eigen/Cholesky>

namespace kavrel {

namespace {

using Real = long double;
using Matrix = Eigen::Matrix<Real, Eigen::Dynamic, Eigen::Dynamic>;
using Vector = Eigen::Matrix<Real, Eigen::Dynamic, 1>;

constexpr int most_steps = 100;
constexpr Real smallest_pivot = 1e-15L;  // of a matrix with ones in its diagonal, that is still positive definite

// (1/2) u'K u + b'u - sum w log u of the nodes that are free.
struct Problem {
    Matrix K;
    Vector b;  // what the kept nodes add
    Vector w;

    [[nodiscard]] Real value(const Vector& u) const {
        return u.dot(K * u) / 2 + b.dot(u) - (w.array() * u.array().log()).sum();
    }
    [[nodiscard]] Vector gradient(const Vector& u) const { return K * u + b - w.cwiseQuotient(u); }
    [[nodiscard]] Matrix hessian(const Vector& u) const {
        Matrix H = K;
        H.diagonal() += w.cwiseQuotient(u.cwiseAbs2());
        return H;
    }
};

bool is_positive_definite(const Matrix& K, const Vector& w);
bool minimise(const Problem& problem, Vector& u);
Real longest_step(const Vector& u, const Vector& direction);

}  // namespace

NodeScalingVerdict scale_nodes(std::span<const double> X, std::span<const double> w, std::span<double> s, int kept) {
    const auto n = static_cast<Eigen::Index>(s.size());
    const auto x = [&](Eigen::Index i, Eigen::Index j) -> Real { return X[static_cast<std::size_t>(i * n + j)]; };

    // u_i = s_i / sqrt(w_i/x_ii): then K has w in its diagonal, and the start is 1.
    const Eigen::Index count = n - kept;
    Vector unit(count);
    Problem problem{Matrix(count, count), Vector::Zero(count), Vector(count)};
    for (Eigen::Index i = 0; i < count; ++i) {
        problem.w(i) = w[static_cast<std::size_t>(i + kept)];
        if (!(x(i + kept, i + kept) > 0)) return NodeScalingVerdict::not_positive_definite;
        unit(i) = std::sqrt(problem.w(i) / x(i + kept, i + kept));
    }
    for (Eigen::Index i = 0; i < count; ++i) {
        for (Eigen::Index j = 0; j < count; ++j) problem.K(i, j) = x(i + kept, j + kept) * unit(i) * unit(j);
        for (Eigen::Index j = 0; j < kept; ++j)
            problem.b(i) += x(i + kept, j) * static_cast<Real>(s[static_cast<std::size_t>(j)]) * unit(i);
    }
    if (!is_positive_definite(problem.K, problem.w)) return NodeScalingVerdict::not_positive_definite;
    Vector u = Vector::Ones(count);
    if (!minimise(problem, u)) return NodeScalingVerdict::no_convergence;
    for (Eigen::Index i = 0; i < count; ++i)
        s[static_cast<std::size_t>(i + kept)] = static_cast<double>(u(i) * unit(i));
    return NodeScalingVerdict::done;
}

namespace {

bool is_positive_definite(const Matrix& K, const Vector& w) {
    const Vector r = w.cwiseSqrt().cwiseInverse();
    const Eigen::LLT<Matrix> factors(r.asDiagonal() * K * r.asDiagonal());
    if (factors.info() != Eigen::Success) return false;
    const Matrix L = factors.matrixL();
    return L.diagonal().cwiseAbs2().minCoeff() > smallest_pivot;  // false for what is no number
}

bool minimise(const Problem& problem, Vector& u) {
    const Real scale = problem.w.sum();
    for (int i = 0; i < most_steps; ++i) {
        const Vector gradient = problem.gradient(u);
        const Vector direction = -problem.hessian(u).llt().solve(gradient);
        const Real slope = gradient.dot(direction);
        if (!std::isfinite(slope)) return false;
        Real step = longest_step(u, direction);
        if (-slope < 1e-10L * scale) {  // so near that the function's rounding would decide
            u += step * direction;
            if (-slope < 1e-28L * scale) return true;
            continue;
        }
        const Real value = problem.value(u);
        while (step > 1e-12L && problem.value(u + step * direction) > value + 1e-4L * step * slope) step /= 2;
        u += step * direction;
    }
    return false;
}

Real longest_step(const Vector& u, const Vector& direction) {
    Real longest = 1;
    for (Eigen::Index i = 0; i < u.size(); ++i) {
        if (direction(i) < 0) longest = std::min(longest, -0.95L * u(i) / direction(i));
    }
    return longest;
}

}  // namespace

}  // namespace kavrel
