// How the FIR Segment keeps its filter: stored files (.qff) and snapshots are records (fir/fir_records.h).
#pragma once

#include <array>

#include "fir/fir_filter.h"
#include "segment/kept_filter.h"

namespace kavrel {

extern const std::array<StoredForm<FirFilter>, 1> fir_files;
extern const Keeping<FirFilter> fir_keeping;

// Of all its functions and its factors.
[[nodiscard]] Fingerprint fingerprint(const FirFilter& filter);

}  // namespace kavrel
