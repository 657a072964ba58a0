// The report of a filter design: the request with what was found for it, and the transfer function at its end.
#pragma once

#include "approximation/approximate.h"
#include "approximation/filter_spec.h"
#include "shell/reporter.h"
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
void report_filter_design(const DesignFacts& facts, const UnitSet& units, Reporter& reporter);

// Requested and minimum Q; nothing where none was requested.
void report_predistortion(const PredistortionNotes& notes, Reporter& reporter);

// The Q that the poles were moved for, and what it costs in dB; nothing where they were not.
void report_predistorted(const FilterSpec& request, const FilterSpec& found, const TransferFunction& transfer,
                         double used_q, Reporter& reporter);

// Zeros, poles and the gain constant. The roots of a lumped filter are in rad/s, those of the other media in the plane
// of the warped variable.
void report_transfer_function(const TransferFunction& transfer, Medium medium, Reporter& reporter);

}  // namespace kavrel
