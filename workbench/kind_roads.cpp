#include "workbench/kind_roads.h"

#include <algorithm>

#include "workbench/analysis_road.h"
#include "workbench/iir_road.h"
#include "workbench/ladder_road.h"

namespace kavrel {

namespace {

constexpr KindRoad roads[] = {
    {FilterKind::lc, AnalysisKind::passive_lc, ladder_road, typed_circuit_road},
    {FilterKind::microwave, AnalysisKind::microwave, ladder_road, typed_circuit_road},
    {FilterKind::active_rc, AnalysisKind::active_rc},
    {FilterKind::iir_digital, AnalysisKind::iir_digital, iir_road, typed_digital_road},
};

template <class Kind>
KindRoad find_road(Kind kind, Kind KindRoad::*column) {
    const auto road = std::ranges::find(roads, kind, column);
    return road == std::end(roads) ? KindRoad{} : *road;
}

}  // namespace

KindRoad kind_road(FilterKind kind) { return find_road(kind, &KindRoad::kind); }

KindRoad kind_road(AnalysisKind analysed) { return find_road(analysed, &KindRoad::analysed); }

}  // namespace kavrel
