// The ways of the kinds of filter through the workbench, a row a kind.
#pragma once

#include "approximation/filter_kinds.h"
#include "workbench/workbench.h"

namespace kavrel {

struct KindRoad {
    FilterKind kind = FilterKind::unchosen;
    AnalysisKind analysed = {};  // as the analysis form numbers it
    // From the finished transfer function on, the filter being titled so; null: it ends there.
    void (*design)(Workbench& bench, std::string_view title) = nullptr;
    void (*from_outside)(Workbench& bench) = nullptr;  // from the finished analysis form on; null: not built
};

// The row of a kind, by either number; an empty one for a kind that has none.
[[nodiscard]] KindRoad kind_road(FilterKind kind);
[[nodiscard]] KindRoad kind_road(AnalysisKind analysed);

}  // namespace kavrel
