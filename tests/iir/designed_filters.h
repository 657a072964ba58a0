// Digital filters that tests design: of every z transform, function and type, at 1 Hz.
#pragma once

#include "iir/cascade_pairing.h"
#include "tests/approximation/digital_cases.h"

namespace kavrel {

struct Band {
    FilterType type;
    DigitalKind kind;
    double lower, upper, lower_stop, upper_stop;  // Hz of 8 kHz
    SpectralKind spectral = SpectralKind::none;   // to 1500 and 2600 Hz
};
inline constexpr Band bands[] = {{low_pass, DigitalKind::low_pass, 0, 1000, 0, 2000},
                                 {high_pass, DigitalKind::high_pass, 2500, 0, 1700, 0},
                                 {band_pass, DigitalKind::band_pass, 900, 1400, 600, 2100},
                                 {low_pass, DigitalKind::low_pass, 0, 1000, 0, 2000, SpectralKind::to_lowpass},
                                 {low_pass, DigitalKind::high_pass, 0, 1000, 0, 2000, SpectralKind::to_highpass},
                                 {low_pass, DigitalKind::band_pass, 0, 1000, 0, 2000, SpectralKind::to_bandpass},
                                 {low_pass, DigitalKind::band_reject, 0, 1000, 0, 2000, SpectralKind::to_bandreject}};

inline IirFilter designed_filter(ZTransform transform, std::string_view function, const Band& band, int degree) {
    test::DigitalCase asked{.spec = {}, .transform = transform, .target = {}};
    asked.target = {.kind = band.spectral, .lower = 1500, .upper = 2600};
    asked.spec.filterType = band.type, asked.spec.bandEdgeLoss = 0.5;
    asked.spec.lowerPassEdge = band.lower, asked.spec.upperPassEdge = band.upper;
    asked.spec.lowerStopEdge = band.lower_stop, asked.spec.upperStopEdge = band.upper_stop;
    test::take_function(function, degree, asked.spec);
    IirFilter filter;
    filter.fs = filter.T = 1, filter.kind = band.kind;
    take_function(test::designed(asked).function, filter);
    return filter;
}

// Elliptic: 0.1 dB up to 4 of 48 kHz, 60 dB from the stopband edge, which has to be what the degree can do, on.
inline IirFilter elliptic_low_pass(int degree, double stopband) {
    test::DigitalCase asked{.spec = {}, .target = {}, .fs = 48000};
    asked.spec.filterType = low_pass, asked.spec.bandEdgeLoss = 0.1;
    asked.spec.upperPassEdge = 4000, asked.spec.upperStopEdge = stopband;
    test::take_function("elliptic", degree, asked.spec);
    asked.spec.stopbandLoss = 60;
    IirFilter filter;
    filter.fs = 48000, filter.T = 1 / filter.fs, filter.kind = DigitalKind::low_pass;
    take_function(test::designed(asked).function, filter);
    filter.asked.count = 2;
    filter.asked.rows(1) = {.from = 0, .to = 4000, .loss = 0.1};
    filter.asked.rows(2) = {.stopband = true, .from = stopband, .to = 24000, .loss = 60};
    return filter;
}

}  // namespace kavrel
