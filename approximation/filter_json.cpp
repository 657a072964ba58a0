#include "approximation/filter_json.h"

#include "approximation/immittance.h"
#include "approximation/loss_rows.h"
#include "approximation/s_plane.h"
#include "shell/record_json.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

namespace {

template <int N>
Json roots(const Table<double, N>& re, const Table<double, N>& im, int count);
Json root_set(const WideRootSet& wide);
bool is_empty(const WideRootSet& set) { return set.count == 0 && set.multiplier == 0; }
const char* variable_name(FilterType type);

}  // namespace

Json spec_part(const FilterSpec& spec) { return spec.title.is_blank() ? Json{} : record_json(spec); }

Json transfer_part(const FilterSpec& request, const FilterSpec& found, const TransferFunction& transfer,
                   double used_q) {
    if (transfer.poleCount == 0) return {};
    Json part{{"zeros", roots(transfer.ZEROS_RE, transfer.ZEROS_IM, transfer.zeroCount)},
              {"poles", roots(transfer.POLES_RE, transfer.POLES_IM, transfer.poleCount)},
              {"multiplier", transfer.multiplier},
              {"norm_frequency", transfer.normFrequency},
              {"gain_constant", transfer.gainConstant},
              {"zeros_at_zero", transfer.zerosAtZero},
              {"zeros_at_infinity", transfer.zerosAtInfinity},
              {"degree", transfer.poleCount},
              {"level", level_of_roots(found.medium, transfer)}};
    if (used_q == 0) return part;
    part["used_q"] = used_q;
    part["flat_loss"] = flat_loss_of_predistortion(request, found, transfer, used_q);
    return part;
}

Json x_plane_part(const FilterSpec& worked, const XPlane& x_plane) {
    if (is_empty(x_plane.ES)) return {};
    Json part{{"type", variable_name(worked.filterType)}, {"a", static_cast<double>(x_plane.a)}};
    // F is not there where nothing asked for it.
    const auto add = [&](const char* name, const WideRootSet& set) {
        if (!is_empty(set)) part[name] = root_set(set);
    };
    add("E", x_plane.ES);
    add("F", x_plane.FS);
    add("Q", x_plane.QS);
    return part;
}

Json immittance_part(const XPlane& x_plane) {
    XPlane plane = x_plane;
    const auto missing = [&] { return is_empty(plane.es) && is_empty(plane.os); };
    if (missing() && (is_empty(plane.ES) || !immittanceOfDenominator(plane))) return {};
    if (missing()) return {};
    return {
        {"es", root_set(plane.es)}, {"os", root_set(plane.os)}, {"ed", root_set(plane.ed)}, {"od", root_set(plane.od)}};
}

namespace {

template <int N>
Json roots(const Table<double, N>& re, const Table<double, N>& im, int count) {
    Json list = Json::array();
    for (int i = 1; i <= count; ++i) list.push_back(Json::array({re(i), im(i)}));
    return list;
}

Json root_set(const WideRootSet& wide) {
    RootSet set;
    copyRootSet(wide, set);
    return {{"multiplier", set.multiplier}, {"roots", roots(set.re, set.im, set.count)}};
}

// Of the frequency variable: that of a matching network of unit elements alone is a high-pass's.
const char* variable_name(FilterType type) {
    return type == band_pass ? "band_pass" : type == high_pass ? "high_pass" : "low_pass";
}

}  // namespace

}  // namespace kavrel
