// Digital filters for tests, made without the routines that are tested: roots, the cascade of their pairs, and the
// coefficients of the direct form in long doubles.
#pragma once

#include <complex>
#include <vector>

#include "iir/iir_filter.h"

namespace kavrel {

using Root = std::complex<double>;

// Conjugate pairs lie next to each other, the positive imaginary part first.
inline IirFilter digital_filter(const std::vector<Root>& zeros, const std::vector<Root>& poles, double gain,
                                double fs) {
    IirFilter filter;
    filter.fs = fs;
    filter.T = 1 / fs;
    DigitalRoots& roots = filter.roots;
    CascadeForm& cascade = filter.cascade;
    roots.ZMULT = cascade.CK = gain;
    for (const Root& r : zeros) ++roots.NZ, roots.ZR(roots.NZ) = r.real(), roots.ZI(roots.NZ) = r.imag();
    for (const Root& r : poles) ++roots.NP, roots.QR(roots.NP) = r.real(), roots.PI(roots.NP) = r.imag();
    const auto factors = [](const std::vector<Root>& list, auto& c1, auto& c2, int& count) {
        for (std::size_t i = 0; i < list.size(); i += 2) {
            const Root a = list[i], b = i + 1 < list.size() ? list[i + 1] : Root{};
            ++count, c1(count) = -(a + b).real(), c2(count) = (a * b).real();
        }
    };
    factors(zeros, cascade.C1N, cascade.C2N, cascade.NNUM);
    factors(poles, cascade.C1D, cascade.C2D, cascade.NDEN);
    return filter;
}

inline std::vector<long double> expanded(const std::vector<Root>& roots, long double gain) {
    std::vector<std::complex<long double>> c{gain};
    for (const Root& r : roots) {
        c.emplace_back();
        for (std::size_t k = c.size() - 1; k > 0; --k) c[k] -= std::complex<long double>(r) * c[k - 1];
    }
    std::vector<long double> real;
    for (const auto& x : c) real.push_back(x.real());
    return real;
}

inline void make_direct_of(const std::vector<Root>& zeros, const std::vector<Root>& poles, double gain,
                           DirectForm& direct) {
    for (const long double c : expanded(zeros, gain)) direct.ZNUM(++direct.JN) = static_cast<double>(c);
    for (const long double c : expanded(poles, 1)) direct.ZDEN(++direct.JD) = static_cast<double>(c);
}

}  // namespace kavrel
