// Random numbers that are the same on every machine, and the distance of wide numbers.
#pragma once

#include <cmath>
#include <random>

namespace kavrel {

class RandomNumbers {
public:
    explicit RandomNumbers(unsigned long long seed) : engine_(seed) {}
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53;
    }
    double spread(double low, double high) { return low * std::pow(high / low, between(0, 1)); }
    int integer(int low, int high) { return low + static_cast<int>(engine_() % static_cast<unsigned>(high - low + 1)); }
    bool coin() { return integer(0, 1) == 1; }

private:
    std::mt19937_64 engine_;
};

// |a - b|.
inline double gap(long double a, long double b) { return static_cast<double>(std::fabs(a - b)); }

}  // namespace kavrel
