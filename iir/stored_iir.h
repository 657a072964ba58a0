// How the IIR Segment keeps its filter: stored files (.qfd) and snapshots are records (iir/iir_records.h).
#pragma once

#include <array>

#include "iir/iir_filter.h"
#include "segment/kept_filter.h"

namespace kavrel {

extern const std::array<StoredForm<IirFilter>, 1> iir_files;
extern const Keeping<IirFilter> iir_keeping;

// Of the filter by its roots and its cascade: the forms that are made of them leave it the filter that it was.
[[nodiscard]] Fingerprint fingerprint(const IirFilter& filter);

}  // namespace kavrel
