// The driver of a filter design: from the request in Hz to the transfer function and its report.
#pragma once

#include <string_view>

#include "approximation/approximate.h"
#include "approximation/filter_kinds.h"
#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"
#include "shell/reporter.h"
#include "shell/units.h"

namespace kavrel {

// What a design leaves behind.
struct FilterDesign {
    FilterSpec worked;  // as the approximation left it: edges of the normalised problem, a high-pass turned over
    XPlane x_plane;
    TransferFunction transfer;
    FilterSpec request;        // as the approximation was asked, which is reported beside what was found
    ApproximationNotes notes;  // what it did on the way
};

enum class FilterDesignVerdict {
    designed,      // FilterSpec::implementation says who takes it over
    discontinued,  // reported in a box or a line
};

// Frequencies of a sampled or microwave filter that its medium cannot serve.
inline constexpr std::string_view sampling_too_low = "Sampling frequency too low";
inline constexpr std::string_view quarter_wave_too_low = "Quarter-wave frequency too low";

// Designs `spec`. Of a request it takes the edges, losses, types, counts and zeros, the requested Q, the functional
// input and the terminations; implementation, medium and what they bring along are set here. A symmetryFlag of 0
// follows from the terminations, another one stays. sampleFrequency of a microwave filter is the quarter-wave
// frequency (and twice that afterwards). Designed: `spec` holds the degree, counts, zeros and losses that were found,
// frequencies in Hz as typed, a shifted band-pass in place of its low-pass; `design` is new and the report is written.
// Discontinued: spec.designError is set, `design` stays as it was.
[[nodiscard]] FilterDesignVerdict designFilter(FilterKind kind, FilterSpec& spec, FilterDesign& design,
                                               const UnitSet& units, Reporter& reporter);

}  // namespace kavrel
