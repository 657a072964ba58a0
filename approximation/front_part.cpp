#include "approximation/front_part.h"

#include "approximation/degree_estimate.h"
#include "approximation/equal_minima.h"
#include "approximation/frequency_variable.h"

namespace kavrel {

namespace {

bool has_given_function(const FilterSpec& spec) {
    return spec.filterType == linear_phase_low_pass || spec.passbandType == functional_passband;
}
FrontVerdict place_zeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes);
void take_given_degree(FilterSpec& spec);

}  // namespace

FrontVerdict runFront(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    xp.equal_minima_due = xp.matched = false;
    xp.zeroCount = 0;
    if (spec.filterType == band_pass && spec.bandpassType == impedance_matching) {
        return estimateMatching(spec, xp, notes);
    }
    if (const FrontVerdict verdict = normaliseEdges(spec, xp, notes); !verdict.good()) return verdict;
    if (const FrontVerdict verdict = place_zeros(spec, xp, notes); !verdict.good()) return verdict;
    if (xp.equal_minima_due) {
        take_given_degree(spec);
    } else {
        settleBandpass(spec, xp, notes);
    }
    if (spec.passbandType == functional_passband && spec.functionMultiplier == 0) {
        rescaleForPrecision(spec, xp, notes);
    }
    return {};
}

namespace {

FrontVerdict place_zeros(FilterSpec& spec, XPlane& xp, FrontNotes& notes) {
    const bool equal = spec.stopbandType == equal_minima && spec.passbandType != sloping_passband;
    if (equal && has_given_function(spec)) {
        if (spec.filterType == band_pass || !(xp.upper_stop > 1)) return refuse(spec, FrontFault::stopband_incorrect);
        xp.equal_minima_due = true;
        return {};
    }
    if (equal) {
        return spec.filterType == band_pass ? bandpassEqualMinimaZeros(spec, xp, notes)
                                            : equalMinimaZeros(spec, xp, notes);
    }
    const bool monotonic = spec.stopbandType == monotonic_stopband && spec.passbandType != sloping_passband;
    if (monotonic && !has_given_function(spec)) return estimateMonotonicDegree(spec, xp, notes);
    zerosToX(spec, xp);
    return {};
}

// The zeros will be as many as the degree of the given function asks for.
void take_given_degree(FilterSpec& spec) {
    if (spec.passbandType == functional_passband) {
        spec.degree = spec.functionMultiplier != 0 ? spec.numeratorDegree : spec.denominatorDegree;
    }
    spec.degreeParity = spec.degree % 2;
}

}  // namespace

}  // namespace kavrel
