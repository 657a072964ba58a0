// Digital filters that tests make: a request with its steps, as one record.
#pragma once

#include <complex>
#include <numbers>

#include "approximation/s_plane.h"
#include "approximation/spectral_transform.h"
#include "approximation/z_transform.h"
#include "tests/approximation/transfer_cases.h"

namespace kavrel::test {

struct DigitalCase {
    FilterSpec spec;
    ZTransform transform = ZTransform::bilinear;
    SpectralRequest target;  // its edge and fs are those of the rest
    double fs = 8000;
};

// The classic functions by their names in the golden data, each zero where it is deepest.
inline void take_function(std::string_view kind, int degree, FilterSpec& s) {
    const bool low = s.filterType == low_pass, high = s.filterType == high_pass;
    s.degree = degree, s.degreeParity = degree % 2, s.symmetryFlag = -1;
    s.sourceResistance = 1, s.loadResistance = 0;
    s.passbandType = kind == "chebyshev" || kind == "elliptic" ? equal_ripple : maximally_flat;
    if (kind == "elliptic" || kind == "inverse_chebyshev") {
        s.stopbandType = equal_minima;
        s.stopbandLoss = s.upperStopLoss = 40;
    } else {
        s.stopbandType = specified_zeros;
        s.zerosAtInfinity = low ? degree : high ? 0 : degree / 2;
        s.zerosAtZero = degree - s.zerosAtInfinity;
    }
}

// A low-pass of the pass band edge 1 kHz.
inline DigitalCase low_pass_case(ZTransform transform, std::string_view kind, int degree, double loss = 0.5) {
    DigitalCase c{.spec = {}, .transform = transform, .target = {}};
    c.spec.filterType = low_pass, c.spec.upperPassEdge = 1000, c.spec.bandEdgeLoss = loss;
    if (kind == "elliptic" || kind == "inverse_chebyshev") c.spec.upperStopEdge = 1700;
    take_function(kind, degree, c.spec);
    return c;
}

struct DigitalDesign {
    std::unique_ptr<Design> analog;
    TransferFunction prototype;
    DigitalFunction low;  // before its spectral transformation
    DigitalFunction function;
};
inline DigitalDesign designed(const DigitalCase& asked) {
    FilterSpec s = asked.spec;
    const bool warped = asked.transform == ZTransform::bilinear;
    s.medium = warped ? sampled_data : lumped;
    s.sampleFrequency = warped ? asked.fs : 0;
    DigitalDesign d{.analog = designed(s), .prototype = {}, .low = {}, .function = {}};
    d.prototype = xToFrequencyPlane(d.analog->spec, d.analog->xp);
    // What the driver calls the request with what was found for it.
    FilterSpec found = s;
    found.medium = d.analog->spec.medium;
    if (!zTransform(asked.transform, found, d.prototype, asked.fs, d.low)) throw std::runtime_error("no z transform");
    if (warped && d.analog->notes.has_pole_chains) takePoleChains(found, d.analog->xp, asked.fs, d.low);
    SpectralRequest target = asked.target;
    target.edge = s.upperPassEdge, target.fs = asked.fs;
    d.function = spectralTransform(target, d.low);
    return d;
}

inline std::complex<long double> h_at(const DigitalFunction& f, std::complex<long double> z) {
    const Complex<Wide> h = value_at(f, {z.real(), z.imag()});
    return {h.re, h.im};
}

}  // namespace kavrel::test
