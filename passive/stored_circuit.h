// How the passive Segment keeps its circuit.
//
// A stored circuit is made of records (passive/circuit_records.h) and has the extension .qfp. Its text twin
// (passive/circuit_text.h) has the extension .trf. Snapshots are records, too.
#pragma once

#include <array>

#include "passive/passive_filter.h"
#include "segment/kept_filter.h"

namespace kavrel {

extern const std::array<StoredForm<PassiveFilter>, 2> circuit_forms;
extern const Keeping<PassiveFilter> circuit_keeping;

[[nodiscard]] Fingerprint fingerprint(const PassiveFilter& filter);

}  // namespace kavrel
