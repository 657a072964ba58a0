// The request of a design and what it leaves behind.
#pragma once

#include <type_traits>

#include "numeric/root_set.h"
#include "shell/fields.h"
#include "shell/fixed_text.h"
#include "shell/table.h"

namespace kavrel {

// The choices of a design. Files hold their numbers.
enum class FilterType : int {
    low_pass = 1,
    high_pass = 2,
    linear_phase_low_pass = 3,
    band_pass = 4,
    band_reject = 5,      // these two are designed by no driver: circuits are such that were typed in,
    delay_equalizer = 6,  // or made of a low-pass
};
enum class PassbandType : int { maximally_flat = 0, equal_ripple = 1, functional_passband = 2, sloping_passband = 3 };
enum class BandpassType : int { conventional = 1, parametric = 2, impedance_matching = 3 };
enum class StopbandType : int {
    monotonic_stopband = 0,
    equal_minima = 1,
    specified_zeros = 2,
    functional_stopband = 4
};
enum class Medium : int { lumped = 0, sampled_data = 1, microwave = 2 };
using enum FilterType;
using enum PassbandType;
using enum BandpassType;
using enum StopbandType;
using enum Medium;

inline constexpr int finite_zero_limit = 25;
inline constexpr int factor_limit = 100;

// Frequencies in Hz, losses in dB, resistances in ohm.
struct FilterSpec {
    FixedText<80> title;
    FilterType filterType = low_pass;
    PassbandType passbandType = maximally_flat;
    BandpassType bandpassType = conventional;
    StopbandType stopbandType = monotonic_stopband;
    Medium medium = lumped;
    char implementation = 'P';  // P passive LC, M microwave, A active RC, I IIR digital
    double lowerPassEdge = 0.0;
    double upperPassEdge = 0.0;
    double lowerStopEdge = 0.0;
    double upperStopEdge = 0.0;
    double bandEdgeLoss = 0.0;
    double stopbandLoss = 0.0;        // band-pass: of the lower stopband; sloping: loss slope in dB/octave
    double upperStopLoss = 0.0;       // band-pass: of the upper stopband; delay filters: the delay in seconds
    double sourceResistance = 0.0;    // R1
    double loadResistance = 0.0;      // R2; 0 means single termination
    double predistortionQ = 0.0;      // above 0 pass band only, below 0 pass and stop bands, 0 none
    double freal = 0.0;               // parametric frequency, 0 when not used
    double functionMultiplier = 0.0;  // of a given characteristic numerator
    Table<double, factor_limit> numeratorFactors;  // functional input: pairs of coefficients (linear, constant) of the
    Table<double, factor_limit> denominatorFactors;  // second-order factors s^2 + b s + c0; a last single factor s + c
    int numeratorDegree = 0;
    int denominatorDegree = 0;
    double reflectionInput = 0.0;  // as typed: negative reflection coefficient in percent, above 9.5 return loss
    double flatLoss = 0.0;
    double sampleFrequency = 0.0;  // microwave: twice the quarter-wave frequency
    int zerosAtZero = 0;
    int zerosAtInfinity = 0;  // sampled: at half the sampling frequency; microwave: at the quarter wave
    int unitElements = 0;
    int zeroCount = 0;                     // finite transmission zeros, as given in FZR, FZI
    Table<double, finite_zero_limit> FZR;  // [i] real part, Hz
    Table<double, finite_zero_limit> FZI;  // [i] imaginary part, Hz
    int degree = 0;                        // 0 asks for the estimate; at most 50
    int degreeParity = 0;                  // 0 even, 1 odd
    int symmetryFlag = 0;                  // 1 equal terminations, 0 others, -1 no zero need lie at infinity
    int runFlag = 0;                       // -1 while a placed design is fed in
    int designError = 0;                   // 0 good, 1 discontinued, 2 and 3 for the matching estimate
    double centerFrequency = 0.0;          // of a shifted band-pass, 0 when none
    bool odd_parametric = false;           // of a shifted band-pass
};
template <ListedAs<FilterSpec> Record, class Visit>
constexpr void fields_of(Record& spec, Visit&& visit) {
    visit("title", spec.title);
    visit("filterType", spec.filterType);
    visit("passbandType", spec.passbandType);
    visit("bandpassType", spec.bandpassType);
    visit("stopbandType", spec.stopbandType);
    visit("medium", spec.medium);
    visit("implementation", spec.implementation);
    visit("lowerPassEdge", spec.lowerPassEdge);
    visit("upperPassEdge", spec.upperPassEdge);
    visit("lowerStopEdge", spec.lowerStopEdge);
    visit("upperStopEdge", spec.upperStopEdge);
    visit("bandEdgeLoss", spec.bandEdgeLoss);
    visit("stopbandLoss", spec.stopbandLoss);
    visit("upperStopLoss", spec.upperStopLoss);
    visit("sourceResistance", spec.sourceResistance);
    visit("loadResistance", spec.loadResistance);
    visit("predistortionQ", spec.predistortionQ);
    visit("freal", spec.freal);
    visit("functionMultiplier", spec.functionMultiplier);
    visit("numeratorFactors", spec.numeratorFactors, spec.numeratorDegree);
    visit("denominatorFactors", spec.denominatorFactors, spec.denominatorDegree);
    visit("numeratorDegree", spec.numeratorDegree);
    visit("denominatorDegree", spec.denominatorDegree);
    visit("reflectionInput", spec.reflectionInput);
    visit("flatLoss", spec.flatLoss);
    visit("sampleFrequency", spec.sampleFrequency);
    visit("zerosAtZero", spec.zerosAtZero);
    visit("zerosAtInfinity", spec.zerosAtInfinity);
    visit("unitElements", spec.unitElements);
    visit("zeroCount", spec.zeroCount);
    visit("FZR", spec.FZR, spec.zeroCount);
    visit("FZI", spec.FZI, spec.zeroCount);
    visit("degree", spec.degree);
    visit("degreeParity", spec.degreeParity);
    visit("symmetryFlag", spec.symmetryFlag);
    visit("runFlag", spec.runFlag);
    visit("designError", spec.designError);
    visit("centerFrequency", spec.centerFrequency);
    visit("odd_parametric", spec.odd_parametric);
}
static_assert(lists_each_field<FilterSpec>);

// Poles and zeros in the s plane, complete with conjugates. Lumped: rad/s. Sampled data and microwave:
// the plane of the warped variable tan(pi f/fs), in units of its value at the band edge, so that the edge is 1.
struct TransferFunction {
    int zeroCount = 0;  // entries of ZEROS
    int poleCount = 0;  // entries of POLES: the degree
    Table<double, max_degree> ZEROS_RE;
    Table<double, max_degree> ZEROS_IM;
    Table<double, max_degree> POLES_RE;  // negative
    Table<double, max_degree> POLES_IM;
    double multiplier = 1.0;
    double normFrequency = 0.0;  // rad/s
    double gainConstant = 0.0;   // dB
    double lossConstant = 0.0;   // dB, for the analyses of the Segments
    int zerosAtZero = 0;
    int zerosAtInfinity = 0;
    double level = 0.0;  // H = level prod(s - zero)/prod(s - pole), roots and s so that the band edge is at 1
};
template <ListedAs<TransferFunction> Record, class Visit>
constexpr void fields_of(Record& transfer, Visit&& visit) {
    visit("zeroCount", transfer.zeroCount);
    visit("poleCount", transfer.poleCount);
    visit("ZEROS_RE", transfer.ZEROS_RE, transfer.zeroCount);
    visit("ZEROS_IM", transfer.ZEROS_IM, transfer.zeroCount);
    visit("POLES_RE", transfer.POLES_RE, transfer.poleCount);
    visit("POLES_IM", transfer.POLES_IM, transfer.poleCount);
    visit("multiplier", transfer.multiplier);
    visit("normFrequency", transfer.normFrequency);
    visit("gainConstant", transfer.gainConstant);
    visit("lossConstant", transfer.lossConstant);
    visit("zerosAtZero", transfer.zerosAtZero);
    visit("zerosAtInfinity", transfer.zerosAtInfinity);
    visit("level", transfer.level);
}
static_assert(lists_each_field<TransferFunction>);

static_assert(std::is_trivially_copyable_v<FilterSpec> && std::is_trivially_copyable_v<TransferFunction>);

}  // namespace kavrel
