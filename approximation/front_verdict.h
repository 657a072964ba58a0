// What the steps up to Q and F answer: a verdict with its lines, and notes on what they did for the report. The
// steps write nothing themselves.
#pragma once

#include <array>
#include <string_view>
#include <type_traits>

#include "approximation/filter_spec.h"
#include "shell/fields.h"

namespace kavrel {

enum class FrontFault {
    none,
    // the request
    cutoff_missing,
    edges_equal,
    filter_type_incorrect,
    band_edge_loss_missing,
    passband_incorrect,
    stopband_incorrect,
    polynomial_incomplete,
    unrealistic,         // estimated degree of a delay filter
    out_of_range,        // a number of the design is not finite
    terminations_unfit,  // of a matching network
    // degree and zeros
    degree_too_high,  // number: the degree
    bandpass_stopband_incorrect,
    matching_not_needed,
    minima_roots_missing,
    minima_not_settled,
    // the characteristic function
    ripple_roots_missing,
    parametric_root_out_of_range,
};

struct [[nodiscard]] FrontVerdict {
    FrontFault fault = FrontFault::none;
    int number = 0;  // the value in the line, where it has one

    [[nodiscard]] constexpr bool good() const { return fault == FrontFault::none; }
    [[nodiscard]] constexpr int status() const { return good() ? 0 : -1; }
};

// Sets spec.designError, to 2 for a matching network that is not needed and to 1 for the rest, and answers the verdict.
inline FrontVerdict refuse(FilterSpec& spec, FrontFault fault, int number = 0) {
    spec.designError = fault == FrontFault::matching_not_needed ? 2 : 1;
    return {fault, number};
}

// Lines of a fault, in a box with caption "Error" or on the report; in place of "{}" the number.
enum class MessagePlace { box, report };
struct FrontMessage {
    FrontFault fault;
    MessagePlace place;
    std::string_view first;
    std::string_view second = {};
    std::string_view third = {};
};

inline constexpr std::string_view box_discontinued = "design discontinued";
inline constexpr std::string_view report_discontinued = " **** design discontinued ****";

inline constexpr std::array<FrontMessage, 17> front_messages = {{
    {FrontFault::cutoff_missing, MessagePlace::box, "Cut-off frequency(ies) not specified,", box_discontinued},
    {FrontFault::edges_equal, MessagePlace::box, "Passband edge frequencies equal,", box_discontinued},
    {FrontFault::filter_type_incorrect, MessagePlace::box, "Filter type is incorrect,", box_discontinued},
    {FrontFault::band_edge_loss_missing, MessagePlace::box, "Band-edge loss is not specified,", box_discontinued},
    {FrontFault::passband_incorrect, MessagePlace::box, "Pass-band specification incorrect,", box_discontinued},
    {FrontFault::stopband_incorrect, MessagePlace::box, "Incorrect stop band specification,", box_discontinued},
    {FrontFault::polynomial_incomplete, MessagePlace::box, "Incomplete polynomial specification,", box_discontinued},
    {FrontFault::unrealistic, MessagePlace::box, "Requirements are unrealistic,", box_discontinued},
    {FrontFault::out_of_range, MessagePlace::box, "Numbers of the design are out of range,", box_discontinued},
    {FrontFault::terminations_unfit, MessagePlace::box, "Terminations may not be equal or zero"},
    {FrontFault::degree_too_high, MessagePlace::report,
     " **** Required degree {} is too high, design discontinued ****"},
    {FrontFault::bandpass_stopband_incorrect, MessagePlace::box, "Incorrect stopband specification"},
    {FrontFault::matching_not_needed, MessagePlace::report, "Matching network is not needed",
     "or is incorrectly specified"},
    {FrontFault::minima_roots_missing, MessagePlace::report, " Root extraction did not converge in finding zeros for",
     " equal minima stop band", report_discontinued},
    {FrontFault::minima_not_settled, MessagePlace::report,
     " **** Iteration for equal minima stop band did not converge in 10 tries ****", report_discontinued},
    {FrontFault::ripple_roots_missing, MessagePlace::report,
     " Roots of equal ripple characteristic function numerator have not been found", report_discontinued},
    {FrontFault::parametric_root_out_of_range, MessagePlace::report,
     " **** Parametric function root is out of range ****", report_discontinued},
}};

// The message of a fault other than none.
[[nodiscard]] constexpr const FrontMessage& messageOf(FrontFault fault) {
    for (const FrontMessage& message : front_messages) {
        if (message.fault == fault) return message;
    }
    return front_messages.front();
}

// Done on the way; the new values are in FilterSpec and XPlane.
struct FrontNotes {
    bool preshifted = false;           // spec.lowerPassEdge has been moved by the tangents
    bool freal_modified = false;       // by the rule for unit elements
    bool reset_to_parametric = false;  // a conventional band-pass of odd degree
    bool zeros_shifted = false;        // FZR, FZI: even degree, equal terminations
    bool rescaled = false;             // edges and factors of a functional input
    bool degree_estimated = false;     // from the losses
    bool zeros_found = false;          // FZR, FZI hold the zeros of an equal minima stopband
    double lower_loss_reached = 0.0;   // dB at the stop edges, or the equal minima; 0 not known
    double upper_loss_reached = 0.0;   // the only one of low-pass and high-pass
};
template <ListedAs<FrontNotes> Record, class Visit>
constexpr void fields_of(Record& notes, Visit&& visit) {
    visit("preshifted", notes.preshifted);
    visit("freal_modified", notes.freal_modified);
    visit("reset_to_parametric", notes.reset_to_parametric);
    visit("zeros_shifted", notes.zeros_shifted);
    visit("rescaled", notes.rescaled);
    visit("degree_estimated", notes.degree_estimated);
    visit("zeros_found", notes.zeros_found);
    visit("lower_loss_reached", notes.lower_loss_reached);
    visit("upper_loss_reached", notes.upper_loss_reached);
}
static_assert(lists_each_field<FrontNotes>);

inline constexpr std::string_view freal_modified_line = "Freal is modified to";
inline constexpr std::string_view rescaled_line = "cutoff frequencies rescaled for better precision";
inline constexpr std::string_view zeros_shifted_line = "transmission zeros have been shifted, new values are";
inline constexpr std::array<std::string_view, 2> reset_to_parametric_box = {
    "Conventional bandpass may not be of odd degree,", "design reset to parametric"};

static_assert(std::is_trivially_copyable_v<FrontNotes> && std::is_trivially_copyable_v<FrontVerdict>);

}  // namespace kavrel
