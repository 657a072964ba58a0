// What the IIR Segment reports of a filter: head, tables of its forms, H(z).
#pragma once

#include <string>
#include <vector>

#include "iir/coefficient_text.h"
#include "iir/iir_filter.h"
#include "shell/units.h"

namespace kavrel {

using Lines = std::vector<std::string>;

// What is above every table: z transform, type, word length of a truncated filter, sampling frequency, edges.
[[nodiscard]] Lines header_lines(const IirFilter& filter, const UnitSet& units);

// The numbers of a form as its table shows them.
[[nodiscard]] CoefficientText text_of(const CascadeForm& cascade, DisplayFormat format);
[[nodiscard]] CoefficientText text_of(const ParallelForm& parallel, DisplayFormat format);

// The table of a form, in decimal or hexadecimal numbers; without its form no lines. While the cascade is scaled, its
// numerators are as they are stored, with SC(k) before z**( 0).
[[nodiscard]] Lines cascade_table(const CascadeForm& cascade, DisplayFormat format);
[[nodiscard]] Lines parallel_table(const ParallelForm& parallel, DisplayFormat format);
[[nodiscard]] Lines direct_table(const DirectForm& direct, DisplayFormat format);
[[nodiscard]] Lines lattice_table(const LatticeForm& lattice, DisplayFormat format);
[[nodiscard]] Lines allpass_table(const AllpassForm& allpass, DisplayFormat format);

// The tables of all forms that there are.
[[nodiscard]] Lines form_tables(const IirFilter& filter, DisplayFormat format);

// The header with the cascade.
[[nodiscard]] Lines cascade_lines(const IirFilter& filter, DisplayFormat format, const UnitSet& units);

// H(z) in factored form, as the z step reports it: multiplier prod(1 + c1 z^-1 + c2 z^-2)/prod(1 + d1 z^-1 + d2 z^-2).
[[nodiscard]] Lines factored_lines(const IirFilter& filter, DisplayFormat format);

void append(Lines& lines, const Lines& more);

}  // namespace kavrel
