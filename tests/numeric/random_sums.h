// Random sums kA product (x - a) + kB product (x - b) of the kinds that filter design makes, the same on every machine.
#pragma once

#include <cmath>

#include "numeric/root_order.h"
#include "numeric/root_set.h"
#include "tests/support/numbers.h"

namespace kavrel::testing {

struct RandomSum {
    WideRootSet A;
    WideRootSet B;
};

enum class SumKind {
    General,     // roots of both all over the plane, about the unit circle
    Mirrored,    // A(y) +- A(-y), as for the equal ripple functions
    Pass,        // F + Q: a double root for each ripple in the pass band x < 0, transmission zeros x > 0
    Wide,        // magnitudes over six decades
    Cancelling,  // equal degree and leading terms that cancel
};
inline constexpr int sum_kinds = 5;

// Conjugate pairs, real roots with the probability `reals`, of magnitude 10^-decades to 10^decades.
inline WideRootSet random_set(RandomNumbers& random, int count, double decades, double reals) {
    WideRootSet set;
    set.multiplier = (random.coin() ? 1 : -1) * std::pow(10.0, random.between(-2, 2));
    while (set.count < count) {
        const double size = std::pow(10.0, random.between(-decades, decades));
        if (set.count + 1 == count || random.between(0, 1) < reals) {
            set.append({random.coin() ? size : -size, 0});
            continue;
        }
        const double angle = random.between(0.02, 3.12);
        set.append({size * std::cos(angle), size * std::sin(angle)});
        set.append(conjugate(set.root(set.count)));
    }
    return set;
}

inline RandomSum random_sum(RandomNumbers& random, SumKind kind, int degree) {
    RandomSum sum;
    switch (kind) {
        case SumKind::General:
            sum.A = random_set(random, degree, 0.5, 0.3);
            sum.B = random_set(random, random.integer(0, degree), 0.5, 0.3);
            if (random.coin()) std::swap(sum.A, sum.B);
            break;
        case SumKind::Mirrored: {
            sum.A = random_set(random, degree, 0.7, 0.3);
            for (int i = 1; i <= degree; ++i) sum.A.re(i) = -std::fabs(sum.A.re(i));
            sum.B = sum.A;
            for (int i = 1; i <= degree; ++i) sum.B.re(i) = -sum.B.re(i);
            if (random.coin()) sum.B.multiplier = -sum.B.multiplier;
            break;
        }
        case SumKind::Pass:
            sum.A.multiplier = std::pow(10.0, random.between(-3, 0));
            while (sum.A.count + 1 < degree) {
                const double ripple = -std::pow(10.0, random.between(-1.5, 1.0));
                sum.A.append({ripple, 0});
                sum.A.append({ripple, 0});
            }
            if (sum.A.count < degree) sum.A.append({0, 0});
            sum.B.multiplier = degree % 2 == 0 ? 1 : -1;
            while (sum.B.count < degree / 2) sum.B.append({1, 0});
            while (sum.B.count < degree) {
                const double zero = random.between(1.01, 2.0);
                sum.B.append({zero, 0});
                if (sum.B.count < degree) sum.B.append({zero, 0});
            }
            break;
        case SumKind::Wide:
            sum.A = random_set(random, degree, 3, 0.4);
            sum.B = random_set(random, random.integer(0, degree), 3, 0.4);
            break;
        case SumKind::Cancelling:
            sum.A = random_set(random, degree, 0.5, 0.3);
            sum.B = random_set(random, degree, 0.5, 0.3);
            sum.B.multiplier = -sum.A.multiplier;
            break;
    }
    return sum;
}

}  // namespace kavrel::testing
