// From the request to E, f and the immittance polynomials, all in x: the order of work of a design.
#pragma once

#include <array>
#include <string_view>

#include "approximation/filter_spec.h"
#include "approximation/front_verdict.h"
#include "approximation/x_plane.h"
#include "numeric/solve_verdict.h"
#include "shell/fields.h"

namespace kavrel {

enum class ApproximationFault {
    none,
    front,      // a step up to Q and F refused: FrontVerdict says why
    cancelled,  // by the answer to the predistortion choice
    stopped,    // by the watcher
    e_inconsistent,
    f_inconsistent,
    poles_missing,
    pole_on_axis,
    e_parts_missing,
    f_parts_missing,
    f_zeros_wrong,
    f_missing,
    immittance_missing,
    given_parts_missing,
    slope_zero_too_low,      // a sloping pass band with too few zeros at zero
    slope_infinity_too_low,  // ... or at infinity
};

struct [[nodiscard]] ApproximationVerdict {
    ApproximationFault fault = ApproximationFault::none;
    FrontVerdict front;  // of fault `front`
    SolveVerdict solve;  // of a fault that began with an extraction of roots: its lines come first

    [[nodiscard]] constexpr bool good() const { return fault == ApproximationFault::none; }
};

// Lines of a fault, in a box with caption "Error". `front` has the lines of its own verdict; cancelled and stopped have
// none.
struct ApproximationMessage {
    ApproximationFault fault;
    std::string_view first;
    std::string_view second = {};
    std::string_view third = {};
};
inline constexpr std::array<ApproximationMessage, 12> approximation_messages = {{
    {ApproximationFault::e_inconsistent, "Inconsistency in specifying e(.),", box_discontinued},
    {ApproximationFault::f_inconsistent, "Inconsistency in specifying f(.),", box_discontinued},
    {ApproximationFault::poles_missing, "Transfer function poles could not be found,design discontinued"},
    {ApproximationFault::pole_on_axis, "Transfer function pole on imaginary axis,", box_discontinued},
    {ApproximationFault::e_parts_missing, "Even and odd parts of denominator were not found,", box_discontinued},
    {ApproximationFault::f_parts_missing, "Even and odd parts of f(.) were not found,", box_discontinued},
    {ApproximationFault::f_zeros_wrong, "Characteristic function numerator has wrong zeros,", box_discontinued},
    {ApproximationFault::f_missing, "Zeros of new characteristic polynomial", "were not found, design discontinued"},
    {ApproximationFault::immittance_missing, "Roots of one of the immittance polynomials",
     "could not be found, design discontinued"},
    {ApproximationFault::given_parts_missing, " **** Zeros of the even and odd parts of the specified",
     " e(.) or f(.) have not been found ****", box_discontinued},
    {ApproximationFault::slope_zero_too_low, "Multiplicity at zero too low for given slope"},
    {ApproximationFault::slope_infinity_too_low, "Multiplicity at infinity too low for given slope"},
}};
[[nodiscard]] constexpr ApproximationMessage messageOf(ApproximationFault fault) {
    for (const ApproximationMessage& message : approximation_messages) {
        if (message.fault == fault) return message;
    }
    return {fault, {}};
}

// What is reported of a predistortion.
struct PredistortionNotes {
    bool requested = false;
    bool not_possible = false;  // the Q asked for is out of reach; a choice was made
    double requested_q = 0.0;
    double minimum_q = 0.0;
    double used_q = 0.0;  // 0: none, the poles are unchanged
};
template <ListedAs<PredistortionNotes> Record, class Visit>
constexpr void fields_of(Record& notes, Visit&& visit) {
    visit("requested", notes.requested);
    visit("not_possible", notes.not_possible);
    visit("requested_q", notes.requested_q);
    visit("minimum_q", notes.minimum_q);
    visit("used_q", notes.used_q);
}
static_assert(lists_each_field<PredistortionNotes>);
inline constexpr std::string_view predistortion_head = "Predistortion requested";
inline constexpr std::string_view requested_q_label = "requested Q =";
inline constexpr std::string_view minimum_q_label = "minimum Q   =";
inline constexpr std::string_view used_q_label = "used Q      =";
inline constexpr std::string_view flat_loss_label = "flat loss   =";
inline constexpr std::string_view predistortion_not_possible = " Predistortion with specified Q is not possible";

struct ApproximationNotes {
    FrontNotes front;
    PredistortionNotes predistortion;
    bool has_pole_chains = false;  // LARR is set: an allpass form exists
};
template <ListedAs<ApproximationNotes> Record, class Visit>
constexpr void fields_of(Record& notes, Visit&& visit) {
    visit("front", notes.front);
    visit("predistortion", notes.predistortion);
    visit("has_pole_chains", notes.has_pole_chains);
}
static_assert(lists_each_field<ApproximationNotes>);

// The one question of the calculation.
enum class PredistortionChoice { no_q = 0, minimum_q = 1, cancel = 2 };
inline constexpr std::string_view predistortion_choice_head = "Select:";
inline constexpr std::array<std::string_view, 3> predistortion_choices = {"Q = 0", "Q = Qmin", "Cancel"};

class ApproximationQuestions {
public:
    virtual ~ApproximationQuestions() = default;
    // The Q asked for cannot be had; `notes` holds both values.
    [[nodiscard]] virtual PredistortionChoice predistortion_choice(const PredistortionNotes& notes) = 0;
    // Before each of the longer steps; false ends the design.
    [[nodiscard]] virtual bool go_on() { return true; }
};

// Runs the whole calculation. `spec` is changed to the normalised problem (frequency_variable.h), designError is 1
// after a fault (2 for a matching network that is not needed). On success xp holds Q, F, E with their factors and
// parts, and unless the medium is sampled the immittance polynomials. After a single termination these and the parts of
// e are left to immittanceOfDenominator, and with predistortion, a given e, or a slope nor are F, its factors and
// parts: empty, as nothing reads them. Parts of f that do not make F up to 1e-9 of E are refused (f_parts_missing). f
// takes zeros of alternating sides unless its parts are not accurate enough then, as with an odd number of unit
// elements and unequal terminations from degree 20 on: then all zeros lie on the left, factor_sign is 1 throughout. A
// low-pass that is to be shifted to a band-pass is left without predistortion: that is done on the band-pass.
ApproximationVerdict approximate(FilterSpec& spec, XPlane& xp, ApproximationNotes& notes,
                                 ApproximationQuestions& questions);

}  // namespace kavrel
