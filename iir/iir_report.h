// What the IIR Segment reports of a filter: head, tables of its forms, lists of roots.
#pragma once

#include <string>
#include <vector>

#include "iir/iir_filter.h"
#include "iir/iir_request.h"
#include "shell/units.h"

namespace kavrel {

using Lines = std::vector<std::string>;

// What stands above every table: z transform, type, sampling frequency, edges.
[[nodiscard]] Lines header_lines(const IirFilter& filter, const UnitSet& units);

// The table of a form, in decimal or hexadecimal numbers; without its form no lines.
[[nodiscard]] Lines cascade_table(const CascadeForm& cascade, DisplayFormat format);
[[nodiscard]] Lines parallel_table(const ParallelForm& parallel, DisplayFormat format);
[[nodiscard]] Lines direct_table(const DirectForm& direct, DisplayFormat format);
[[nodiscard]] Lines lattice_table(const LatticeForm& lattice, DisplayFormat format);
[[nodiscard]] Lines allpass_table(const AllpassForm& allpass, DisplayFormat format);

// The header with the cascade.
[[nodiscard]] Lines cascade_lines(const IirFilter& filter, DisplayFormat format, const UnitSet& units);

// H(z) in factored form, as the z step reports it.
[[nodiscard]] Lines factored_lines(const IirFilter& filter, DisplayFormat format);

}  // namespace kavrel
