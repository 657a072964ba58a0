// The report of a filter design: the request with what was found for it, and the transfer function at its end.
#pragma once

#include <string>
#include <vector>

#include "approximation/design_background.h"
#include "shell/units.h"

namespace kavrel {

// What is reported.
struct DesignFacts {
    const FilterSpec& request;  // as typed
    const FilterSpec& found;    // the same with counts, degree, zeros and losses as designed; frequencies in Hz
    const FilterSpec& worked;   // as the approximation left it: edges of the normalised problem
    const FrontNotes& notes;
};

// Heading, pass band, media, stopband, counts, transmission zeros. Labels are 7 or 10 blanks in, every equals sign in
// one column; frequencies are in the user's units.
[[nodiscard]] std::vector<std::string> filter_design_lines(const DesignFacts& facts, const UnitSet& units);

// Requested and minimum Q; nothing where none was requested.
[[nodiscard]] std::vector<std::string> predistortion_lines(const PredistortionNotes& notes);

// The Q that the poles were moved for, and what it costs in dB; nothing where they were not.
[[nodiscard]] std::vector<std::string> predistorted_lines(const FilterSpec& request, const FilterSpec& found,
                                                          const TransferFunction& transfer, double used_q);

// Zeros, poles and the gain constant. The roots of a lumped filter are in rad/s, those of the other media in the plane
// of the warped variable.
[[nodiscard]] std::vector<std::string> transfer_function_lines(const TransferFunction& transfer, Medium medium);

// Of a design that a Segment keeps: all of these but the transfer function.
[[nodiscard]] std::vector<std::string> kept_design_lines(const FilterSpec& found, const DesignBackground& background,
                                                         const TransferFunction& transfer, const UnitSet& units);

}  // namespace kavrel
