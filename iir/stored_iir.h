// How the IIR Segment keeps its filter: the layout of stored files (.qfd) and of snapshots.
#pragma once

#include <array>

#include "iir/iir_filter.h"
#include "segment/kept_filter.h"

namespace kavrel {

extern const std::array<StoredForm<IirFilter>, 1> iir_files;
extern const Keeping<IirFilter> iir_keeping;

[[nodiscard]] Fingerprint fingerprint(const IirFilter& filter);

}  // namespace kavrel
