#include "approximation/band_shift.h"

#include <numbers>

namespace kavrel {

namespace {

constexpr int shiftable_degree = max_degree / 2;

void shift_zeros(const FilterSpec& low, FilterSpec& band);
void shift_poles(const FilterSpec& low, const TransferFunction& poles, FilterSpec& band);

}  // namespace

std::string_view shiftComplaint(const FilterSpec& low) {
    const int limit = low.odd_parametric ? shiftable_degree - 1 : shiftable_degree;
    if (low.degree > limit) return "Degree too high, no shifted bandpass";
    for (int i = 1; i <= low.zeroCount; ++i) {
        if (low.FZI(i) >= low.centerFrequency) return "Band center frequency is too low";
    }
    if (2.0 * low.upperPassEdge >= low.centerFrequency) return "Center frequency too low, no shifted bandpass";
    return {};
}

FilterSpec shiftedBandpass(const FilterSpec& low, const TransferFunction& poles) {
    FilterSpec band = low;
    const double centre = low.centerFrequency;
    band.filterType = band_pass;
    band.passbandType = functional_passband;
    band.bandpassType = low.odd_parametric ? parametric : conventional;
    band.stopbandType = functional_stopband;
    band.lowerPassEdge = centre - low.upperPassEdge;
    band.upperPassEdge = centre + low.upperPassEdge;
    band.lowerStopEdge = low.upperStopEdge > 0.0 ? centre - low.upperStopEdge : 0.0;
    band.upperStopEdge = low.upperStopEdge > 0.0 ? centre + low.upperStopEdge : 0.0;
    band.upperStopLoss = low.stopbandLoss;
    band.zerosAtZero = (low.zerosAtInfinity + 1) / 2;
    band.zerosAtInfinity = 2 * low.zerosAtInfinity - band.zerosAtZero + (low.odd_parametric ? 1 : 0);
    band.degree = 2 * low.degree + (low.odd_parametric ? 1 : 0);
    band.centerFrequency = 0.0;
    shift_zeros(low, band);
    shift_poles(low, poles, band);
    return band;
}

namespace {

void shift_zeros(const FilterSpec& low, FilterSpec& band) {
    const auto add = [&](double re, double im) {
        ++band.zeroCount;
        band.FZR(band.zeroCount) = re;
        band.FZI(band.zeroCount) = im;
    };
    band.zeroCount = 0;
    for (int i = 1; i <= low.zeroCount; ++i) {
        add(low.FZR(i), low.centerFrequency - low.FZI(i));
        // A pair on the real axis becomes four.
        if (low.FZI(i) != 0.0) add(low.FZR(i), low.centerFrequency + low.FZI(i));
    }
}

// (s - p)(s - p*) of each pole moved up, in units of the upper edge.
void shift_poles(const FilterSpec& low, const TransferFunction& poles, FilterSpec& band) {
    const double upper = 2.0 * std::numbers::pi * band.upperPassEdge;
    const double centre = 2.0 * std::numbers::pi * low.centerFrequency;
    int& degree = band.denominatorDegree;
    degree = 0;
    for (int i = 1; i <= poles.poleCount; ++i) {
        const double re = poles.POLES_RE(i) / upper;
        const double im = (centre + poles.POLES_IM(i)) / upper;
        band.denominatorFactors(++degree) = -2.0 * re;
        band.denominatorFactors(++degree) = re * re + im * im;
    }
    if (low.odd_parametric) band.denominatorFactors(++degree) = 1.0;
    band.numeratorDegree = 0;
    band.functionMultiplier = 0.0;
}

}  // namespace

}  // namespace kavrel
