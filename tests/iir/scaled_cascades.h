// Cascades with what is known of the noise within them.
#pragma once

#include <fstream>
#include <string>

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

}  // namespace kavrel
