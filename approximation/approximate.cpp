#include "approximation/approximate.h"

#include <algorithm>
#include <cmath>

#include "approximation/characteristic.h"
#include "approximation/closed_form.h"
#include "approximation/equal_minima.h"
#include "approximation/factor_signs.h"
#include "approximation/frequency_variable.h"
#include "approximation/front_part.h"
#include "approximation/functional_input.h"
#include "approximation/hurwitz_factors.h"
#include "approximation/hurwitz_parts.h"
#include "approximation/immittance.h"
#include "approximation/predistortion.h"
#include "approximation/scaling.h"
#include "approximation/sloped_passband.h"
#include "approximation/stopband_floor.h"
#include "numeric/scaled_value.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

using Real = XPlane::Real;
using Fault = ApproximationFault;

// Deviation of F that the parts of f may have: at the first another f is tried, at the second none is delivered.
constexpr Real good_parts = 1e-12L;
constexpr Real usable_parts = 1e-9L;

// One run. Each step answers Fault::none or why the design ends.
class Run {
public:
    Run(FilterSpec& spec, XPlane& xp, ApproximationNotes& notes, ApproximationQuestions& questions)
        : spec_(spec), xp_(xp), notes_(notes), questions_(questions) {}

    Fault design();
    [[nodiscard]] ApproximationVerdict verdict(Fault fault) const { return {fault, front_, solve_}; }

private:
    // The ways to E; each goes on with one of the ends.
    Fault from_characteristic();
    Fault from_given_denominator();
    Fault from_given_numerator();
    Fault from_slope();

    // The ends: with f from the front part, with f still to be found from E, for one termination.
    Fault end_with_known_f();
    Fault end_with_new_f();
    Fault end_single_with_new_e();

    Fault take(FrontVerdict verdict);
    Fault take(SolveVerdict verdict, Fault unsolved);
    Fault take(const FunctionalVerdict& verdict, Fault inconsistent);
    Fault find_late_zeros(const WideRootSet& given);
    void note_floor(StopbandFloor floor);
    Fault split_e();
    enum class Moved { yes, no };
    Fault predistort_e(Moved& moved);
    Fault find_f(bool scale);
    Fault split_f();
    [[nodiscard]] bool superpose_f();
    Fault serve_terminations();
    Fault find_immittances();

    [[nodiscard]] bool single_termination() const { return spec_.loadResistance == 0; }
    [[nodiscard]] bool is_band_pass() const { return spec_.filterType == band_pass; }
    [[nodiscard]] bool is_high_pass() const { return spec_.filterType == high_pass; }
    [[nodiscard]] bool predistortion_due() const {
        const bool to_be_shifted = spec_.filterType == low_pass && spec_.centerFrequency > 0;
        return spec_.predistortionQ > 0 && !to_be_shifted;
    }

    FilterSpec& spec_;
    XPlane& xp_;
    ApproximationNotes& notes_;
    ApproximationQuestions& questions_;
    ExtractionWorkspace ws_;
    FrontVerdict front_;
    SolveVerdict solve_;
    WideRootSet odd_f0_;    // odd part of an f without even one, before E is raised for the terminations
    Real level_of_e0_ = 0;  // multiplier of E then
};

}  // namespace

ApproximationVerdict approximate(FilterSpec& spec, XPlane& xp, ApproximationNotes& notes,
                                 ApproximationQuestions& questions) {
    spec.designError = 0;
    notes = {};
    Run run(spec, xp, notes, questions);
    const Fault fault = run.design();
    if (fault == Fault::none) {
        notes.has_pole_chains = assignPoleChains(spec, xp);
    } else if (spec.designError == 0) {
        spec.designError = 1;
    }
    return run.verdict(fault);
}

namespace {

Fault Run::design() {
    xp_ = {};
    if (const Fault fault = take(runFront(spec_, xp_, notes_.front)); fault != Fault::none) return fault;
    if (!is_finite(spec_)) return take(refuse(spec_, FrontFault::out_of_range));
    spec_.runFlag = 0;
    xp_.requested_ratio = terminationRatio(spec_.sourceResistance, spec_.loadResistance);
    if (!questions_.go_on()) return Fault::stopped;

    if (spec_.passbandType == sloping_passband) return from_slope();
    if (!xp_.equal_minima_due) {
        if (const Fault fault = take(buildQ(spec_, xp_, notes_.front)); fault != Fault::none) return fault;
    }
    switch (functionGiven(spec_)) {
        case FunctionGiven::denominator: return from_given_denominator();
        case FunctionGiven::numerator: return from_given_numerator();
        case FunctionGiven::none: break;
    }
    return from_characteristic();
}

Fault Run::from_characteristic() {
    if (!closedPoles(spec_, xp_)) {
        if (const Fault fault = take(feldtkeller(xp_, ws_), Fault::poles_missing); fault != Fault::none) return fault;
    }
    if (!toFactors(xp_.ES, xp_.a, xp_.eFactors).good()) return Fault::pole_on_axis;
    if (!questions_.go_on()) return Fault::stopped;
    if (!predistortion_due()) return end_with_known_f();

    Moved moved = Moved::no;
    if (const Fault fault = predistort_e(moved); fault != Fault::none) return fault;
    if (moved == Moved::no) return end_with_known_f();
    return single_termination() ? end_single_with_new_e() : end_with_new_f();
}

Fault Run::from_given_numerator() {
    if (const Fault fault = take(numeratorFromFactors(spec_, xp_, ws_), Fault::f_inconsistent); fault != Fault::none) {
        return fault;
    }
    const bool late_zeros = xp_.equal_minima_due;
    if (const Fault fault = find_late_zeros(xp_.FS); fault != Fault::none) return fault;
    if (xp_.FS.count != overall_degree(spec_, xp_)) return Fault::f_inconsistent;
    levelOfNumerator(spec_, xp_, is_high_pass() && late_zeros);
    if (late_zeros) note_floor(stopbandFloor(xp_));
    return from_characteristic();
}

Fault Run::from_given_denominator() {
    if (const Fault fault = take(denominatorFromFactors(spec_, xp_), Fault::e_inconsistent); fault != Fault::none) {
        return fault;
    }
    const bool late_zeros = xp_.equal_minima_due;
    if (const Fault fault = find_late_zeros(xp_.ES); fault != Fault::none) return fault;
    if (xp_.ES.count != overall_degree(spec_, xp_)) return Fault::e_inconsistent;
    scaleByMaximum(xp_, is_band_pass());
    if (late_zeros) note_floor(stopbandFloorOfE(xp_));
    if (spec_.medium == Medium::sampled_data) return Fault::none;
    if (single_termination()) return end_single_with_new_e();
    if (predistortion_due()) {
        Moved moved = Moved::no;
        if (const Fault fault = predistort_e(moved); fault != Fault::none) return fault;
    }
    return end_with_new_f();
}

Fault Run::from_slope() {
    const SlopeVerdict verdict = slopedPassband(spec_, xp_, notes_.front, ws_);
    switch (verdict.fault) {
        case SlopeFault::none: break;
        case SlopeFault::zero_too_low: return Fault::slope_zero_too_low;
        case SlopeFault::infinity_too_low: return Fault::slope_infinity_too_low;
        case SlopeFault::no_function: return take(verdict.front);
        case SlopeFault::no_poles: return take(verdict.solve, Fault::poles_missing);
        case SlopeFault::pole_on_axis: return Fault::pole_on_axis;
    }
    if (!questions_.go_on()) return Fault::stopped;
    if (const Fault fault = split_e(); fault != Fault::none) return fault;
    if (!single_termination()) return end_with_new_f();
    scaleByMaximum(xp_, is_band_pass());
    scaleE(xp_, std::pow(Real{10}, static_cast<Real>(spec_.flatLoss) / 10));
    return end_single_with_new_e();
}

Fault Run::end_with_known_f() {
    if (single_termination()) return Fault::none;
    if (const Fault fault = split_e(); fault != Fault::none) return fault;
    if (const Fault fault = serve_terminations(); fault != Fault::none) return fault;
    return find_immittances();
}

Fault Run::end_with_new_f() {
    if (const Fault fault = find_f(true); fault != Fault::none) return fault;
    if (const Fault fault = serve_terminations(); fault != Fault::none) return fault;
    return find_immittances();
}

// Nothing asks for the f of an E that was not made from one; what is there belongs to another E.
Fault Run::end_single_with_new_e() {
    xp_.FS = {};
    xp_.fFactors = {};
    xp_.fEven = {};
    xp_.fOdd = {};
    return Fault::none;
}

// ---------------------------------------------------------------------------------------------------------------------

Fault Run::take(FrontVerdict verdict) {
    front_ = verdict;
    return verdict.good() ? Fault::none : Fault::front;
}

Fault Run::take(SolveVerdict verdict, Fault unsolved) {
    solve_ = verdict;
    return verdict.good() ? Fault::none : unsolved;
}

Fault Run::take(const FunctionalVerdict& verdict, Fault inconsistent) {
    solve_ = verdict.solve;
    switch (verdict.fault) {
        case FunctionalFault::none: return Fault::none;
        case FunctionalFault::inconsistent: return inconsistent;
        case FunctionalFault::parts_missing: break;
    }
    return Fault::given_parts_missing;
}

// The zeros of an equal minima stopband that a given function asks for.
Fault Run::find_late_zeros(const WideRootSet& given) {
    return xp_.equal_minima_due ? take(equalMinimaIteration(given, spec_, xp_, notes_.front)) : Fault::none;
}

void Run::note_floor(StopbandFloor floor) { notes_.front.upper_loss_reached = static_cast<double>(floor.upper); }

Fault Run::split_e() {
    return partsOfHurwitz(xp_.eFactors, xp_.a, xp_.eEven, xp_.eOdd) ? Fault::none : Fault::e_parts_missing;
}

// E with its poles moved by the losses, or unchanged when the answer is to do without.
Fault Run::predistort_e(Moved& moved) {
    PredistortionNotes& noted = notes_.predistortion;
    const LossyPlane plane{.tan_edge = spec_.medium == microwave ? xp_.warp * xp_.normFrequency : 0,
                           .high_pass = is_high_pass()};
    xp_.q1 = spec_.predistortionQ;
    xp_.qMin = q_of_share(xp_.eFactors, xp_.a, plane, attainable_share);
    noted.requested = true;
    noted.requested_q = static_cast<double>(xp_.q1);
    noted.minimum_q = static_cast<double>(xp_.qMin);
    Real q = std::max(xp_.q1, xp_.qMin);
    if (qOutOfReach(xp_)) {
        noted.not_possible = true;
        switch (questions_.predistortion_choice(noted)) {
            case PredistortionChoice::no_q: return Fault::none;
            case PredistortionChoice::minimum_q: q = q_of_share(xp_.eFactors, xp_.a, plane, chosen_share); break;
            case PredistortionChoice::cancel: return Fault::cancelled;
        }
    }
    noted.used_q = static_cast<double>(q);
    predistort(xp_.eFactors, xp_.a, q, plane);
    moved = Moved::yes;
    if (const Fault fault = split_e(); fault != Fault::none) return fault;
    xp_.ES = fromFactors(xp_.eFactors, xp_.a);
    return toFactors(xp_.ES, xp_.a, xp_.eFactors).good() ? Fault::none : Fault::pole_on_axis;
}

// F = E - Q and its factors. With `scale` E is first brought to its level; where F then has zeros on the real
// frequency axis, E is raised a little more.
Fault Run::find_f(bool scale) {
    for (;;) {
        if (!questions_.go_on()) return Fault::stopped;
        if (scale) {
            scaleByMaximum(xp_, is_band_pass());
            if (spec_.passbandType == sloping_passband) {
                scaleE(xp_, std::pow(Real{10}, static_cast<Real>(spec_.flatLoss) / 10));
            }
        }
        if (const Fault fault = take(characteristicFromE(xp_, ws_), Fault::f_missing); fault != Fault::none)
            return fault;
        if (toFactors(xp_.FS, xp_.a, xp_.fFactors).good()) return split_f();
        if (++xp_.passes >= scaling_pass_limit) return Fault::f_zeros_wrong;
        scale = true;
    }
}

// Even and odd part of f, with the zeros of f on the sides that serve the network.
Fault Run::split_f() {
    int mirrored = 0;
    if (is_band_pass() && spec_.bandpassType == parametric && xp_.fFactors.degree % 2 == 0) {
        mirrored = mirrorRealZero(xp_);  // that of predistorted poles is gone
        if (mirrored == 0 && notes_.predistortion.used_q == 0) return Fault::f_zeros_wrong;
    }
    const bool keep_hurwitz =
        is_band_pass() && spec_.bandpassType == conventional && spec_.passbandType != functional_passband;
    const WidePseudoPolynomial left_zeros = xp_.fFactors;
    xp_.factor_sign.fill(keep_hurwitz ? 1 : 0);
    if (!keep_hurwitz) signRoots(xp_, is_high_pass(), mirrored);
    if (superpose_f()) return Fault::none;
    const Fault parts =
        take(solveEvenOdd(xp_.fFactors, xp_.a, false, xp_.fEven, xp_.fOdd, ws_.parts), Fault::f_parts_missing);
    if (parts == Fault::none && deviationOfParts(xp_) <= good_parts) return Fault::none;
    if (mirrored != 0) return parts;

    // Roots of the parts coincide so far that they cannot be separated: those of an f without zeros in the right half
    // plane never do.
    xp_.fFactors = left_zeros;
    xp_.factor_sign.fill(1);
    if (!partsOfHurwitz(xp_.fFactors, xp_.a, xp_.fEven, xp_.fOdd)) return Fault::f_parts_missing;
    solve_ = {};
    return Fault::none;
}

// After the terminations have raised an E whose f0 was odd; F0 = E0 - Q.
bool Run::superpose_f() {
    if (odd_f0_.multiplier == 0) return false;
    const Real raised = xp_.ES.multiplier / level_of_e0_;
    return raised > 1 && superposeParts(evenPartOfQ(spec_, xp_), odd_f0_, raised, xp_) &&
           deviationOfParts(xp_) <= good_parts;
}

Fault Run::serve_terminations() {
    if (spec_.filterType >= band_pass || xp_.matched) return Fault::none;
    const bool odd_f = xp_.fEven.multiplier == 0 && xp_.ES.count % 2 == 1 && spec_.unitElements % 2 == 0;
    odd_f0_ = odd_f ? xp_.fOdd : WideRootSet{};
    level_of_e0_ = xp_.ES.multiplier;
    while (raiseForTerminations(xp_, xp_.requested_ratio)) {
        if (const Fault fault = find_f(false); fault != Fault::none) return fault;
    }
    return Fault::none;
}

Fault Run::find_immittances() {
    if (!questions_.go_on()) return Fault::stopped;
    if (!(deviationOfParts(xp_) <= usable_parts)) return Fault::f_parts_missing;
    return take(immittancePolynomials(xp_, ws_), Fault::immittance_missing);
}

}  // namespace

}  // namespace kavrel
