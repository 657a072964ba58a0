#include "iir/noise_gain.h"

#include <cmath>

namespace kavrel {

namespace {

SectionFactor numerator_of(const CascadeForm& c, int k) {
    return k <= c.NNUM ? SectionFactor{c.SC(k), c.C1N(k), c.C2N(k)} : SectionFactor{};
}
SectionFactor denominator_of(const CascadeForm& c, int k) {
    return k <= c.NDEN ? SectionFactor{1, c.C1D(k), c.C2D(k)} : SectionFactor{};
}

// Divides a row by its mean, which it answers.
double divide_by_mean(const std::vector<double>& weights, std::vector<double>& row) {
    const double mean = sumSquares(weights, row);
    for (double& value : row) value /= mean;
    return mean;
}

}  // namespace

double decibel_of(double power) { return 10 * std::log10(power); }

SectionPowers::SectionPowers(const CascadeForm& cascade) : count(section_count(cascade)) {
    std::vector<SectionFactor> denominators;
    for (int k = 1; k <= count; ++k) denominators.push_back(denominator_of(cascade, k));
    CircleNodes nodes = circle_nodes(denominators);
    weights = std::move(nodes.weights);
    for (int k = 1; k <= count; ++k) {
        const SectionFactor numerator = numerator_of(cascade, k), denominator = denominator_of(cascade, k);
        auto& n = numerators.emplace_back();
        auto& d = inverses.emplace_back();
        for (const CirclePoint<double>& point : nodes.points) {
            n.push_back(square_of(numerator, point));
            d.push_back(1 / square_of(denominator, point));
        }
        numerator_means.push_back(divide_by_mean(weights, n));
        inverse_means.push_back(divide_by_mean(weights, d));
    }
}

bool is_stable(const CascadeForm& cascade) {
    for (int k = 1; k <= cascade.NDEN; ++k) {
        if (!has_poles_inside(cascade.C1D(k), cascade.C2D(k))) return false;
    }
    return true;
}

std::optional<CascadeNoise> noiseCore(const CascadeForm& cascade) {
    if (!is_stable(cascade)) return std::nullopt;
    const SectionPowers powers(cascade);
    const auto sections = static_cast<std::size_t>(powers.count);
    const auto multiply = [](std::vector<double>& product, const std::vector<double>& row) {
        for (std::size_t i = 0; i < row.size(); ++i) product[i] *= row[i];
    };
    const std::vector<double> ones(powers.weights.size(), 1.0);
    CascadeNoise noise;
    std::vector<double> product = ones;
    double level = 1;  // root of the means within the product
    for (std::size_t k = 0; k < sections; ++k) {
        multiply(product, powers.inverses[k]);
        level *= std::sqrt(powers.inverse_means[k]);
        noise.F(static_cast<int>(k) + 1) = level * std::sqrt(sumSquares(powers.weights, product));
        multiply(product, powers.numerators[k]);
        level *= std::sqrt(powers.numerator_means[k]);
    }
    product = ones;
    level = 1;
    for (std::size_t k = sections; k-- > 0;) {
        multiply(product, powers.inverses[k]);
        multiply(product, powers.numerators[k]);
        level *= std::sqrt(powers.inverse_means[k] * powers.numerator_means[k]);
        noise.G(static_cast<int>(k) + 1) = level * std::sqrt(sumSquares(powers.weights, product));
    }
    return noise;
}

std::optional<double> noiseGain(const CascadeForm& cascade) {
    const auto noise = noiseCore(cascade);
    if (!noise) return std::nullopt;
    double others = 0;
    for (int k = 2; k <= section_count(cascade); ++k) others += noise->G(k) * noise->G(k);
    return decibel_of(noise_power(noise->G(1) * noise->G(1), others));
}

std::optional<ScaleFactors> l_two_factors(const CascadeForm& cascade) {
    const auto noise = noiseCore(cascade);
    if (!noise) return std::nullopt;
    const int sections = section_count(cascade);
    ScaleFactors SC = ones<iir_section_limit>();
    for (int k = 2; k <= sections; ++k) SC(k - 1) = noise->F(k - 1) / noise->F(k);
    SC(sections) = noise->F(sections) * cascade.CK;
    return SC;
}

}  // namespace kavrel
