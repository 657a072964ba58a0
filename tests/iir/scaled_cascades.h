// Cascades with what is known of the noise within them, and the canonical cascade at work.
#pragma once

#include <fstream>
#include <string>

#include "numeric/quantise.h"
#include "tests/iir/filters.h"

namespace kavrel {

struct NoiseCase {
    std::string name;
    CascadeForm cascade;
    std::vector<double> F, G;
    double decibel = 0;  // after L-two scaling
};

inline std::vector<NoiseCase> noise_golden() {
    std::ifstream in(TEST_DATA "/iir/noise_golden.txt");
    std::string line;
    while (in.peek() == '#') std::getline(in, line);
    std::vector<NoiseCase> cases;
    for (NoiseCase one; in >> one.name; cases.push_back(one)) {
        CascadeForm& c = one.cascade = {};
        in >> c.CK >> c.NNUM;
        for (int k = 1; k <= c.NNUM; ++k) in >> c.C1N(k) >> c.C2N(k);
        in >> c.NDEN;
        for (int k = 1; k <= c.NDEN; ++k) in >> c.C1D(k) >> c.C2D(k);
        for (auto* row : {&one.F, &one.G}) {
            row->resize(static_cast<std::size_t>(section_count(c)));
            for (double& value : *row) in >> value;
        }
        in >> one.decibel;
    }
    return cases;
}

// Denominators first; sections without a numerator or a denominator have 0 where it would be.
template <class Arithmetic>
struct CanonicalCascade {
    double step(double x) {
        double u = in.product(c.CK, x);
        for (std::size_t i = 0; i < w.size(); ++i) {
            const int k = static_cast<int>(i) + 1;
            w[i] = u - in.product(c.C1D(k), last[i]) - in.product(c.C2D(k), before[i]);
            u = in.product(c.SC(k), w[i]) + in.product(c.C1N(k), last[i]) + in.product(c.C2N(k), before[i]);
            before[i] = last[i], last[i] = w[i];
        }
        return u;
    }

    CascadeForm c;
    Arithmetic in;
    std::vector<double> w = std::vector<double>(static_cast<std::size_t>(section_count(c)));  // [k - 1] of section k
    std::vector<double> last = w, before = w;                                                 // one and two samples ago
};

}  // namespace kavrel
