#include "forms/filter_request.h"

#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

void take_stopband(const FilterRequest& r, double hz, FilterSpec& spec);
void take_losses(const FilterRequest& r, FilterSpec& spec);
void take_transmission_zeros(const FilterRequest& r, double scale, FilterSpec& spec);
void take_function(const FilterRequest& r, double scale, FilterSpec& spec);

}  // namespace

FilterSpec spec_of(const FilterRequest& r, const UnitSet& units) {
    const double hz = units.frequency_multiplier;
    FilterSpec spec;
    spec.filterType = r.filter_type == TypeChoice::band_pass ? band_pass : static_cast<FilterType>(r.filter_type);
    spec.passbandType = static_cast<PassbandType>(static_cast<int>(r.passband_type) - 1);
    spec.bandpassType = static_cast<BandpassType>(r.bandpass_form);
    spec.lowerPassEdge = r.lower_passband * hz;
    spec.upperPassEdge = r.upper_passband * hz;
    take_stopband(r, hz, spec);
    take_losses(r, spec);
    spec.sourceResistance = r.r1;
    spec.loadResistance = r.r2;
    const double q = std::abs(r.q_predistortion);
    spec.predistortionQ = r.predistortion == PredistortionMode::pass_and_stop_bands ? -q : q;
    spec.sampleFrequency = std::abs(r.fq_or_fs) * hz;
    spec.zerosAtZero = r.zeros_at_zero;
    spec.zerosAtInfinity = r.zeros_at_infinity;
    spec.unitElements = r.unit_elements;
    spec.symmetryFlag = r.zs_parameter;
    spec.centerFrequency = r.center_frequency * hz;
    spec.odd_parametric = r.odd_parametric;
    const double scale = zero_scale(r, units);
    take_transmission_zeros(r, scale, spec);
    const double edge = spec.filterType == high_pass ? spec.lowerPassEdge : spec.upperPassEdge;
    take_function(r, edge > 0.0 ? scale / edge : 0.0, spec);
    return spec;
}

double zero_scale(const FilterRequest& request, const UnitSet& units) {
    return request.zero_unit == ZeroUnitChoice::radians ? 0.5 / std::numbers::pi : units.frequency_multiplier;
}

int zs_parameter_of(const FilterRequest& request) {
    return request.filter_kind > FilterKind::microwave ? -1 : request.zs_parameter;
}

namespace {

// The stopband of a high-pass lies below its pass band.
void take_stopband(const FilterRequest& r, double hz, FilterSpec& spec) {
    const bool functional = r.passband_type == PassbandChoice::functional;
    spec.stopbandType = r.stopband_type == StopbandChoice::monotonic   ? monotonic_stopband
                        : r.stopband_type == StopbandChoice::equal_min ? equal_minima
                        : functional                                   ? functional_stopband
                                                                       : specified_zeros;
    spec.lowerStopEdge = r.lower_stopband * hz;
    spec.upperStopEdge = r.upper_stopband * hz;
    spec.stopbandLoss = r.passband_type == PassbandChoice::sloping ? r.loss_slope
                        : spec.filterType == low_pass              ? r.upper_stop_loss
                                                                   : r.lower_stop_loss;
    spec.upperStopLoss = spec.filterType == band_pass ? r.upper_stop_loss : 0.0;
}

// A reflection of magnitude rho leaves the loss -10 log10(1 - rho^2).
void take_losses(const FilterRequest& r, FilterSpec& spec) {
    const double typed = r.band_edge_loss;
    spec.bandEdgeLoss = typed;
    spec.flatLoss = r.flat_loss;
    if (typed >= 0.0 && typed <= least_return_loss) return;
    spec.reflectionInput = typed;
    const double rho2 = typed < 0.0 ? (typed / 100.0) * (typed / 100.0) : std::pow(10.0, -typed / 10.0);
    spec.bandEdgeLoss = -10.0 * std::log1p(-rho2) / std::numbers::ln10;
}

// A row of zeros is a blank one: zeros at the origin are counted in zeros_at_zero.
void take_transmission_zeros(const FilterRequest& r, double scale, FilterSpec& spec) {
    const bool given = r.stopband_type == StopbandChoice::specified && r.passband_type != PassbandChoice::sloping;
    spec.zeroCount = 0;
    for (int i = 1; given && i <= r.TR_ZEROS.rows; ++i) {
        const double re = r.TR_ZEROS(i, 1) * scale;
        const double im = r.TR_ZEROS(i, 2) * scale;
        if (re == 0.0 && im == 0.0) continue;
        ++spec.zeroCount;
        spec.FZR(spec.zeroCount) = re;
        spec.FZI(spec.zeroCount) = im;
    }
}

// Complex roots with their conjugates first, then the real ones two by two, a last one alone.
void take_function(const FilterRequest& r, double scale, FilterSpec& spec) {
    if (r.passband_type != PassbandChoice::functional) return;
    const bool of_e = r.function_type == FunctionChoice::e;
    auto& factors = of_e ? spec.denominatorFactors : spec.numeratorFactors;
    int& degree = of_e ? spec.denominatorDegree : spec.numeratorDegree;
    spec.functionMultiplier = r.multiplier;
    for (int i = 1; i <= r.DOUBLETS.rows; ++i) {
        const double re = r.DOUBLETS(i, 1) * scale;
        const double im = r.DOUBLETS(i, 2) * scale;
        if (im == 0.0) continue;
        factors(++degree) = -2.0 * re;
        factors(++degree) = re * re + im * im;
    }
    bool half_pair = false;
    for (int i = 1; i <= r.DOUBLETS.rows; ++i) {
        if (r.DOUBLETS(i, 2) != 0.0) continue;
        const double c = -r.DOUBLETS(i, 1) * scale;
        if (half_pair) {
            // (s + first)(s + c)
            const double first = factors(degree);
            factors(degree) = first + c;
            factors(++degree) = first * c;
        } else {
            factors(++degree) = c;
        }
        half_pair = !half_pair;
    }
}

}  // namespace

}  // namespace kavrel
