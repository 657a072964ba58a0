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
    for (NoiseCase one; in >> one.name >> one.cascade.CK;) {
        CascadeForm& c = one.cascade;
        in >> c.NNUM;
        for (int k = 1; k <= c.NNUM; ++k) in >> c.C1N(k) >> c.C2N(k);
        in >> c.NDEN;
        for (int k = 1; k <= c.NDEN; ++k) in >> c.C1D(k) >> c.C2D(k);
        for (auto* row : {&one.F, &one.G}) {
            row->resize(static_cast<std::size_t>(section_count(c)));
            for (double& value : *row) in >> value;
        }
        in >> one.decibel;
        cases.push_back(one);
    }
    return cases;
}

// Denominators first, each product rounded.
template <class Arithmetic = Unquantised>
struct CanonicalCascade {
    explicit CanonicalCascade(const CascadeForm& form, Arithmetic arithmetic = {})
        : c(form), in(arithmetic), w(static_cast<std::size_t>(section_count(form))), last(w), before(w) {}

    double step(double x) {
        double u = in.product(c.CK, x);
        for (std::size_t i = 0; i < w.size(); ++i) {
            const int k = static_cast<int>(i) + 1;
            const double d1 = k <= c.NDEN ? c.C1D(k) : 0, d2 = k <= c.NDEN ? c.C2D(k) : 0;
            const double n1 = k <= c.NNUM ? c.C1N(k) : 0, n2 = k <= c.NNUM ? c.C2N(k) : 0;
            w[i] = u - in.product(d1, last[i]) - in.product(d2, before[i]);
            u = in.product(c.SC(k), w[i]) + in.product(n1, last[i]) + in.product(n2, before[i]);
            before[i] = last[i], last[i] = w[i];
        }
        return u;
    }

    CascadeForm c;
    Arithmetic in;
    std::vector<double> w, last, before;  // [k - 1] at the delays of section k: now, one sample ago, two
};

}  // namespace kavrel
