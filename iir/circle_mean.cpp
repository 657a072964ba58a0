#include "iir/circle_mean.h"

#include <cmath>
#include <numbers>

#include "numeric/gauss_rule.h"
#include "numeric/lanes.h"

namespace kavrel {

namespace {

constexpr double pi = std::numbers::pi;

bool is_clear(double centre, double half, std::span<const NearPole> poles);

}  // namespace

double square_of(const SectionFactor& f, const CirclePoint<double>& at) {
    const auto [real, imaginary] = factor_at(f.c0, f.c1, f.c2, at);
    return real * real + imaginary * imaginary;
}

std::vector<NearPole> poles_of(std::span<const SectionFactor> denominators) {
    std::vector<NearPole> poles;
    for (const SectionFactor& d : denominators) {
        const double h = -d.c1 / 2, square = h * h - d.c2;
        if (square < 0) {
            poles.push_back({std::atan2(std::sqrt(-square), h), -std::log(d.c2) / 2});
            continue;
        }
        const double larger = h < 0 ? h - std::sqrt(square) : h + std::sqrt(square);
        if (larger == 0) continue;
        for (const double pole : {larger, d.c2 / larger}) {
            if (pole != 0) poles.push_back({pole < 0 ? pi : 0, -std::log(std::fabs(pole))});
        }
    }
    return poles;
}

CircleNodes circle_nodes(std::span<const SectionFactor> denominators) {
    constexpr double widest = pi / 4;    // so that 50 turns of numerators are followed
    constexpr double narrowest = 1e-13;  // an angle has no more digits
    const auto rule = gauss_rule<24>();
    const std::vector<NearPole> poles = poles_of(denominators);
    CircleNodes nodes;
    // The pieces from left to right: the one that is not clear gives way to its halves.
    for (std::vector<double> ends{pi, 0}; ends.size() > 1;) {
        const double from = ends.back(), to = ends[ends.size() - 2];
        const double centre = (from + to) / 2, half = (to - from) / 2;
        if (2 * half > narrowest && (2 * half > widest || !is_clear(centre, half, poles))) {
            ends.insert(ends.end() - 1, centre);
            continue;
        }
        ends.pop_back();
        for (std::size_t i = 0; i < rule.at.size(); ++i) {
            nodes.points.push_back(circle_point((centre + half * rule.at[i]) / (2 * pi)));
            nodes.weights.push_back(rule.weight[i] * half / pi);
        }
    }
    return nodes;
}

double sumSquares(std::span<const double> weights, std::span<const double> squares) {
    using Lanes = LanesOf<double>;
    Lanes::Type even{}, odd{};
    std::size_t i = 0;
    for (; i + 2 * Lanes::count <= weights.size(); i += 2 * Lanes::count) {
        even += Lanes::load(&weights[i]) * Lanes::load(&squares[i]);
        odd += Lanes::load(&weights[i + Lanes::count]) * Lanes::load(&squares[i + Lanes::count]);
    }
    double sum = Lanes::sum(even + odd);
    for (; i < weights.size(); ++i) sum += weights[i] * squares[i];
    return sum;
}

namespace {

// Whether each pole is outside of the ellipse: the distances from the ends of the piece sum up to more than its axis.
bool is_clear(double centre, double half, std::span<const NearPole> poles) {
    constexpr double rho = 2.5;
    for (const auto& [theta, distance] : poles) {
        const double off = theta - centre;
        if (std::hypot(off - half, distance) + std::hypot(off + half, distance) < (rho + 1 / rho) * half) return false;
    }
    return true;
}

}  // namespace

}  // namespace kavrel
