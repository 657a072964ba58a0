#include "approximation/functional_input.h"

#include <cmath>
#include <numbers>

#include "approximation/hurwitz_parts.h"
#include "numeric/guarded.h"
#include "numeric/root_order.h"
#include "numeric/scaled_value.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;

constexpr Real least_distance = 1e-6L;  // of an even factor's c0 from 1: its root lies at infinity there

// s^2 + b s + c0.
struct Quadratic {
    Real b = 0;
    Real c0 = 0;
};

// Puts tanh(theta s)/tan(theta) in place of each zero of a factor; does nothing for lumped media.
class MediumMap {
public:
    MediumMap(const FilterSpec& spec, const XPlane& x);
    [[nodiscard]] Quadratic operator()(Quadratic q) const;
    [[nodiscard]] Real operator()(Real c) const { return lumped_ ? c : -mapped({-c, 0}).re; }

private:
    [[nodiscard]] Complex<Real> mapped(Complex<Real> s) const;

    bool lumped_;
    bool inverted_;
    Real theta_ = 0;
    Real tangent_ = 1;
};

Quadratic pair_of(const Table<double, factor_limit>& table, int i);
Real single_of(const Table<double, factor_limit>& table, int degree);
void append_pair(WidePseudoPolynomial& p, Quadratic q, Real a);
void append_single(WidePseudoPolynomial& p, Real c);
Real product_of_zero_distances(const XPlane& x);
Real product_of_zero_squares(const XPlane& x);

}  // namespace

FunctionGiven functionGiven(const FilterSpec& spec) {
    if (spec.passbandType != functional_passband) return FunctionGiven::none;
    return spec.functionMultiplier != 0 ? FunctionGiven::numerator : FunctionGiven::denominator;
}

FunctionalVerdict denominatorFromFactors(const FilterSpec& spec, XPlane& x) {
    const int n = spec.denominatorDegree;
    if (n < 1 || n > max_degree) return {.fault = FunctionalFault::inconsistent};
    const MediumMap map(spec, x);
    x.eFactors = {};
    x.eFactors.multiplier = 1;
    for (int i = 1; i <= n / 2; ++i) append_pair(x.eFactors, map(pair_of(spec.denominatorFactors, i)), x.a);
    if (n % 2 == 1) append_single(x.eFactors, map(single_of(spec.denominatorFactors, n)));
    if (!isHurwitz(x.eFactors, x.a)) return {.fault = FunctionalFault::inconsistent};

    x.ES = fromFactors(x.eFactors, x.a);
    // In conjugate order, as after every extraction; the factors follow.
    if (!toFactors(x.ES, x.a, x.eFactors).good()) return {.fault = FunctionalFault::inconsistent};
    if (!partsOfHurwitz(x.eFactors, x.a, x.eEven, x.eOdd)) return {.fault = FunctionalFault::parts_missing};
    return {};
}

FunctionalVerdict numeratorFromFactors(const FilterSpec& spec, XPlane& x, ExtractionWorkspace& ws) {
    const int given = spec.numeratorDegree;
    const int missing = spec.degree - given;
    if (given < 0 || given > max_degree || missing < 0 || (missing > 0 && spec.filterType != high_pass)) {
        return {.fault = FunctionalFault::inconsistent};
    }

    const MediumMap map(spec, x);
    WidePseudoPolynomial p;
    p.multiplier = static_cast<Real>(spec.functionMultiplier);
    WideRootSet even_roots;
    const auto append = [&](Quadratic q) {
        if (q.b != 0) {
            append_pair(p, q, x.a);
            p.multiplier *= q.b;
            return;
        }
        Real t = 1 - q.c0;
        if (std::fabs(t) < least_distance) t = std::copysign(least_distance, t);
        even_roots.append({(x.a - q.c0) / t, 0});
        p.multiplier *= t;
    };
    for (int i = 1; i <= given / 2; ++i) append(map(pair_of(spec.numeratorFactors, i)));

    // Factors s of the inverted variable: two make a pair without linear term, one beside a single s + c another pair.
    int padding = missing;
    const bool single = given % 2 == 1;
    const Real c = single ? map(single_of(spec.numeratorFactors, given)) : Real{0};
    if (single && padding % 2 == 1) {
        append({c, 0});
        --padding;
    } else if (single || padding % 2 == 1) {
        append_single(p, c);
        padding -= padding % 2;
    }
    for (; padding > 0; padding -= 2) even_roots.append({x.a, 0});

    x.FS = fromFactors(p, x.a);
    x.fEven = {};
    x.fOdd = {};
    if (p.degree == 0) {
        x.fEven.multiplier = p.multiplier;
    } else if (const SolveVerdict solve = solveEvenOdd(p, x.a, false, x.fEven, x.fOdd, ws.parts); !solve.good()) {
        return {.fault = FunctionalFault::parts_missing, .solve = solve};
    }
    for (int i = 1; i <= even_roots.count; ++i) {
        const Complex<Real> root = even_roots.root(i);
        for (WideRootSet* part : {&x.fEven, &x.fOdd}) {
            if (part->multiplier != 0) part->append(root);
        }
        x.FS.append(root);
        x.FS.append(root);
    }
    sortConjugates(x.FS, Reals::last);
    return {};
}

void levelOfNumerator(const FilterSpec& spec, XPlane& x, bool zeros_inverted) {
    const Real level =
        zeros_inverted ? product_of_zero_squares(x) / product_of_zero_distances(x) : 1 / product_of_zero_distances(x);
    x.FS.multiplier *= level * level;
    x.fEven.multiplier *= level;
    x.fOdd.multiplier *= level;
    if (spec.filterType == band_pass) return;

    const ScaledValue<Real> f = scaledProduct(x.FS, {0, 0});
    const ScaledValue<Real> q = scaledProduct(x.QS, {0, 0});
    const Real t = std::fabs(std::ldexp(f.value.re / q.value.re, f.exponent - q.exponent));
    const Real root = std::sqrt(t) + std::sqrt(1 + t);
    x.termRatioLimit = root * root;
}

namespace {

MediumMap::MediumMap(const FilterSpec& spec, const XPlane& x)
    : lumped_(spec.medium == Medium::lumped), inverted_(spec.filterType == high_pass) {
    if (lumped_) return;
    theta_ = std::numbers::pi_v<Real> * x.normFrequency / static_cast<Real>(spec.sampleFrequency);
    tangent_ = std::tan(theta_);
}

Quadratic MediumMap::operator()(Quadratic q) const {
    if (lumped_ || (q.b == 0 && q.c0 == 0)) return q;
    const RootPair<Real> r = rootsOfQuadratic(q.b, q.c0);
    const Complex<Real> first = mapped(r.first);
    if (r.first.im != 0) {
        const Real b = q.b == 0 ? Real{0} : -2 * first.re;
        return {b, first.re * first.re + first.im * first.im};
    }
    const Complex<Real> second = mapped(r.second);
    return {-(first.re + second.re), first.re * second.re};
}

Complex<Real> MediumMap::mapped(Complex<Real> s) const {
    if (s == Complex<Real>{}) return s;
    if (inverted_) s = cinv(s.re, s.im);
    const Real t = std::tanh(s.re * theta_);
    const Real u = std::tan(s.im * theta_);
    const Real divisor = (1 + t * t * u * u) * tangent_;
    s = {t * (1 + u * u) / divisor, u * (1 - t * t) / divisor};
    return inverted_ ? cinv(s.re, s.im) : s;
}

// Factor i of a table, 1 <= i <= degree/2, and the last single one.
Quadratic pair_of(const Table<double, factor_limit>& table, int i) {
    return {static_cast<Real>(table(2 * i - 1)), static_cast<Real>(table(2 * i))};
}
Real single_of(const Table<double, factor_limit>& table, int degree) { return static_cast<Real>(table(degree)); }

// c and d of a factor with a linear term.
void append_pair(WidePseudoPolynomial& p, Quadratic q, Real a) {
    p.degree += 2;
    p.c(p.pairs()) = (q.c0 - a) / q.b;
    p.d(p.pairs()) = (1 - q.c0) / q.b;
}
void append_single(WidePseudoPolynomial& p, Real c) {
    ++p.degree;
    p.c(p.factors()) = c;
    p.d(p.factors()) = 0;
}

// Products over the finite zeros, each pair and each of a conjugate two once: of |1 - wz^2| = (1 - a)/|1 - xz|, and of
// wz^2 = |xz - a|/|1 - xz|.
Real product_of_zero_distances(const XPlane& x) {
    Real product = 1;
    for (int i = 1; i <= x.zeroCount; ++i) {
        const Real distance = (1 - x.a) / cabs(1 - x.ARR(i), x.ARI(i));
        product *= x.ARI(i) == 0 ? distance : distance * distance;
    }
    return product;
}
Real product_of_zero_squares(const XPlane& x) {
    Real product = 1;
    for (int i = 1; i <= x.zeroCount; ++i) {
        const Real square = cabs(x.ARR(i) - x.a, x.ARI(i)) / cabs(1 - x.ARR(i), x.ARI(i));
        product *= x.ARI(i) == 0 ? square : square * square;
    }
    return product;
}

}  // namespace

}  // namespace kavrel
