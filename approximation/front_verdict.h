// What the steps up to Q and F answer: a verdict with its lines, and notes on what they did that the report tells. The
// steps write nothing themselves.
#pragma once

#include <array>
#include <string_view>
#include <type_traits>

#include "approximation/filter_spec.h"

namespace kavrel {

enum class FrontFault {
    None,
    // the request
    CutoffMissing,
    EdgesEqual,
    FilterTypeIncorrect,
    BandEdgeLossMissing,
    PassbandIncorrect,
    StopbandIncorrect,
    PolynomialIncomplete,
    Unrealistic,        // estimated degree of a delay filter
    TerminationsUnfit,  // of a matching network
    // degree and zeros
    DegreeTooHigh,  // number: the degree
    BandpassStopbandIncorrect,
    MatchingNotNeeded,
    MinimaRootsMissing,
    MinimaNotSettled,
    // the characteristic function
    RippleRootsMissing,
    ParametricRootOutOfRange,
};

struct [[nodiscard]] FrontVerdict {
    FrontFault fault = FrontFault::None;
    int number = 0;  // the value in the line, where it has one

    [[nodiscard]] constexpr bool good() const { return fault == FrontFault::None; }
    [[nodiscard]] constexpr int status() const { return good() ? 0 : -1; }
};

// Sets spec.designError, to 2 for a matching network that is not needed and to 1 for the rest, and answers the verdict.
inline FrontVerdict refuse(FilterSpec& spec, FrontFault fault, int number = 0) {
    spec.designError = fault == FrontFault::MatchingNotNeeded ? 2 : 1;
    return {fault, number};
}

// Lines of a fault, in a box with caption "Error" or on the report; in place of "{}" stands the number.
enum class MessagePlace { Box, Report };
struct FrontMessage {
    FrontFault fault;
    MessagePlace place;
    std::string_view first;
    std::string_view second = {};
    std::string_view third = {};
};

inline constexpr std::string_view box_discontinued = "design discontinued";
inline constexpr std::string_view report_discontinued = " **** design discontinued ****";

inline constexpr std::array<FrontMessage, 16> front_messages = {{
    {FrontFault::CutoffMissing, MessagePlace::Box, "Cut-off frequency(ies) not specified,", box_discontinued},
    {FrontFault::EdgesEqual, MessagePlace::Box, "Passband edge frequencies equal,", box_discontinued},
    {FrontFault::FilterTypeIncorrect, MessagePlace::Box, "Filter type is incorrect,", box_discontinued},
    {FrontFault::BandEdgeLossMissing, MessagePlace::Box, "Band-edge loss is not specified,", box_discontinued},
    {FrontFault::PassbandIncorrect, MessagePlace::Box, "Pass-band specification incorrect,", box_discontinued},
    {FrontFault::StopbandIncorrect, MessagePlace::Box, "Incorrect stop band specification,", box_discontinued},
    {FrontFault::PolynomialIncomplete, MessagePlace::Box, "Incomplete polynomial specification,", box_discontinued},
    {FrontFault::Unrealistic, MessagePlace::Box, "Requirements are unrealistic,", box_discontinued},
    {FrontFault::TerminationsUnfit, MessagePlace::Box, "Terminations may not be equal or zero"},
    {FrontFault::DegreeTooHigh, MessagePlace::Report, " **** Required degree {} is too high, design discontinued ****"},
    {FrontFault::BandpassStopbandIncorrect, MessagePlace::Box, "Incorrect stopband specification"},
    {FrontFault::MatchingNotNeeded, MessagePlace::Report, "Matching network is not needed",
     "or is incorrectly specified"},
    {FrontFault::MinimaRootsMissing, MessagePlace::Report, " Root extraction did not converge in finding zeros for",
     " equal minima stop band", report_discontinued},
    {FrontFault::MinimaNotSettled, MessagePlace::Report,
     " **** Iteration for equal minima stop band did not converge in 10 tries ****", report_discontinued},
    {FrontFault::RippleRootsMissing, MessagePlace::Report,
     " Roots of equal ripple characteristic function numerator have not been found", report_discontinued},
    {FrontFault::ParametricRootOutOfRange, MessagePlace::Report, " **** Parametric function root is out of range ****",
     report_discontinued},
}};

// The message of a fault other than None.
[[nodiscard]] constexpr const FrontMessage& messageOf(FrontFault fault) {
    for (const FrontMessage& message : front_messages) {
        if (message.fault == fault) return message;
    }
    return front_messages.front();
}

// Done on the way; the new values stand in FilterSpec and XPlane.
struct FrontNotes {
    bool preshifted = false;           // spec.lowerPassEdge has been moved by the tangents
    bool freal_modified = false;       // by the rule for unit elements
    bool reset_to_parametric = false;  // a conventional band-pass of odd degree
    bool zeros_shifted = false;        // FZR, FZI: even degree, equal terminations
    bool rescaled = false;             // edges and factors of a functional input
    bool degree_estimated = false;     // from the losses
    bool zeros_found = false;          // FZR, FZI hold the zeros of an equal minima stopband
    double lower_loss_reached =
        0.0;  // dB at the stop edges, or the equal minima; low-pass and high-pass have the upper
    double upper_loss_reached = 0.0;  // one alone; 0 not known
};

inline constexpr std::string_view freal_modified_line = "Freal is modified to";
inline constexpr std::string_view preshifted_word = "Preshifted";
inline constexpr std::string_view rescaled_line = "cutoff frequencies rescaled for better precision";
inline constexpr std::string_view zeros_shifted_line = "transmission zeros have been shifted, new values are";
inline constexpr std::array<std::string_view, 2> reset_to_parametric_box = {
    "Conventional bandpass may not be of odd degree,", "design reset to parametric"};

static_assert(std::is_trivially_copyable_v<FrontNotes> && std::is_trivially_copyable_v<FrontVerdict>);

}  // namespace kavrel
