#include "approximation/angle_sum.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

namespace kavrel {

namespace {

using Real = XPlane::Real;

// theta - target and its slope in ln eta.
struct AngleAndSlope {
    double excess = 0;
    double slope = 0;
};
AngleAndSlope angle_at(const AngleSum& angles, double eta, int half_turns);
Real angle_excess(const AngleSum& angles, Real eta, int half_turns);

}  // namespace

// Newton in ln eta within a bracket, in double, then polished
// in the wide type, where the slope in double is good enough.
Real root_of_angle(const AngleSum& angles, int half_turns, int total, Real above, Real start) {
    double low = static_cast<double>(above);
    double high = 0;  // none yet
    auto eta = static_cast<double>(start);
    if (!(eta > low)) eta = low > 0 ? 1.5 * low : std::tan(std::numbers::pi / 2 * half_turns / total);
    AngleAndSlope at;
    for (int step = 1; step <= 200; ++step) {
        at = angle_at(angles, eta, half_turns);
        (at.excess > 0 ? high : low) = eta;
        if (std::fabs(at.excess) < 1e-13) break;
        double next = at.slope > 0 ? eta * std::exp(std::clamp(-at.excess / at.slope, -3.0, 3.0)) : 0;
        if (!(next > low) || (high > 0 && !(next < high))) {
            next = high == 0 ? 2 * eta : low > 0 ? std::sqrt(low) * std::sqrt(high) : high / 4;
        }
        if (next == eta) break;
        eta = next;
    }
    Real fine = eta;
    for (int step = 1; step <= 2; ++step) {
        fine *= 1 - angle_excess(angles, fine, half_turns) / static_cast<Real>(at.slope);
    }
    return fine;
}

namespace {

// An angle as the argument of a product, with the whole turns that the product has gone through: one arctangent for
// all.
class Turning {
public:
    // Adds the angle of re + j im, between -pi and pi, weight times.
    void turn(double re, double im, int weight) {
        const double scale = 1.0 / (std::fabs(re) + std::fabs(im));
        re *= scale;
        im *= weight > 0 ? scale : -scale;
        for (int k = std::abs(weight); k > 0; --k) {
            const double before = im_;
            const double product = re_ * re - im_ * im;
            im_ = re_ * im + im_ * re;
            re_ = product;
            if (im >= 0 ? before >= 0 && im_ < 0 : before < 0 && im_ >= 0) turns_ += im >= 0 ? 1 : -1;
        }
    }
    [[nodiscard]] double angle() const { return std::atan2(im_, re_) + 2 * std::numbers::pi * turns_; }

private:
    double re_ = 1;
    double im_ = 0;
    int turns_ = 0;
};

AngleAndSlope angle_at(const AngleSum& angles, double eta, int half_turns) {
    Turning theta;
    AngleAndSlope sum;
    for (int i = 1; i <= angles.count; ++i) {
        const auto re = static_cast<double>(angles.term(i).m.re), im = static_cast<double>(angles.term(i).m.im);
        const int weight = angles.term(i).weight;
        const auto slope_of = [&](double height) { return weight * eta * re / (re * re + height * height); };
        sum.slope += slope_of(eta + im);
        if (im == 0) {
            theta.turn(re, eta, weight);
        } else {
            // (re + j (eta + im)) (re + j (eta - im))
            theta.turn(re * re - (eta - im) * (eta + im), 2 * re * eta, weight);
            sum.slope += slope_of(eta - im);
        }
    }
    sum.excess = theta.angle() - std::numbers::pi / 2 * half_turns;
    return sum;
}

// theta - target, once it is small, from the product of the factors: tan of it, so that no angle has to be taken.
Real angle_excess(const AngleSum& angles, Real eta, int half_turns) {
    Complex<Real> product{1, 0};
    for (int i = 1; i <= angles.count; ++i) {
        const Complex<Real> m = angles.term(i).m;
        Complex<Real> factor{m.re, eta + m.im};
        if (m.im != 0) factor *= Complex<Real>{m.re, eta - m.im};
        const int weight = angles.term(i).weight;
        for (int k = 1; k <= std::abs(weight); ++k) product *= weight > 0 ? factor : conjugate(factor);
    }
    return half_turns % 2 == 0 ? product.im / product.re : -product.re / product.im;
}

}  // namespace

}  // namespace kavrel
