// The units as stored input data carry them: a record of the four multipliers (doubles) and the four indices (integers)
// of frequency, inductor, capacitor and time.
#pragma once

#include <optional>

#include "shell/stored_files.h"
#include "shell/units.h"

namespace kavrel {

void put_units_record(RecordWriter& file, const UnitSet& units);

// None where the record does not fit or holds no multipliers that the units form gives. The multipliers rule, the
// indices follow from them.
[[nodiscard]] std::optional<UnitSet> take_units_record(RecordReader& file);

}  // namespace kavrel
