#include "synthesis/synthesis_json.h"

#include <nlohmann/json.hpp>

namespace kavrel {

using Json = nlohmann::ordered_json;

// Of a circuit the ratios R2/R1; before there is one the larger resistance over the smaller. The loss at frequency zero
// (high-pass: infinity) bounds it. A band-pass has none there that counts, and a matching network is made for its
// ratio.
Json terminations_part(const FilterSpec& worked, const XPlane& x_plane, const SynthesisState* synthesis) {
    if (x_plane.ES.count == 0 || worked.sourceResistance == 0.0 || worked.loadResistance == 0.0) return {};
    Json part{{"requested_ratio", static_cast<double>(x_plane.requested_ratio)}};
    if (synthesis != nullptr) {
        return {{"requested_ratio", synthesis->requested_ratio}, {"nearest_ratio", synthesis->available_ratio}};
    }
    const bool bound = worked.filterType != band_pass && !x_plane.matched;
    if (bound) part["nearest_ratio"] = static_cast<double>(x_plane.termRatioLimit);
    return part;
}

Json synthesis_part(const SynthesisState& state) {
    return {{"direction", state.direction()}, {"arithmetic", state.arithmetic()}, {"loss_error", state.loss_error}};
}

}  // namespace kavrel
