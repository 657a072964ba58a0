#include "workbench/filter_json.h"

namespace kavrel {

namespace {

using Json = nlohmann::ordered_json;

// Fields of a record: texts, letters, numbers, logicals, and the cells of a table that are in use.
template <std::size_t N>
Json json_of(const FixedText<N>& text) {
    return text.text();
}
Json json_of(char letter) { return std::string(1, letter); }
template <class T>
Json json_of(const T& value) {
    return value;
}
template <class T, int N>
Json json_of(const Table<T, N>& table, int count) {
    Json list = Json::array();
    for (int i = 1; i <= count; ++i) list.push_back(table(i));
    return list;
}

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
const char* variable_name(FilterType filter_type) {
    return filter_type == band_pass ? "band_pass" : filter_type == high_pass ? "high_pass" : "low_pass";
}

bool is_empty(const WideRootSet& set) { return set.count == 0 && set.multiplier == 0; }

}  // namespace

Json spec_part(const FilterSpec& spec) {
    if (spec.title.is_blank()) return {};
    Json part;
    fields_of(spec, [&](const char* name, const auto&... field) { part[name] = json_of(field...); });
    return part;
}

Json transfer_part(const TransferFunction& transfer) {
    if (transfer.poleCount == 0) return {};
    return {{"zeros", roots(transfer.ZEROS_RE, transfer.ZEROS_IM, transfer.zeroCount)},
            {"poles", roots(transfer.POLES_RE, transfer.POLES_IM, transfer.poleCount)},
            {"multiplier", transfer.multiplier},
            {"norm_frequency", transfer.normFrequency},
            {"gain_constant", transfer.gainConstant},
            {"zeros_at_zero", transfer.zerosAtZero},
            {"zeros_at_infinity", transfer.zerosAtInfinity},
            {"degree", transfer.poleCount}};
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
    if (is_empty(x_plane.es) && is_empty(x_plane.os)) return {};
    return {{"es", root_set(x_plane.es)},
            {"os", root_set(x_plane.os)},
            {"ed", root_set(x_plane.ed)},
            {"od", root_set(x_plane.od)}};
}

// Of a circuit the ratios R2/R1; before there is one the larger resistance over the smaller. The loss at frequency zero
// (high-pass: infinity) bounds it. A band-pass has none there that counts, and a matching network is made for its
// ratio.
Json terminations_part(const FilterSpec& worked, const XPlane& x_plane, const LadderWork& ladder) {
    if (is_empty(x_plane.ES) || worked.sourceResistance == 0.0 || worked.loadResistance == 0.0) return {};
    Json part{{"requested_ratio", static_cast<double>(x_plane.requested_ratio)}};
    if (ladder.outcome == SynthesisOutcome::done) {
        return {{"requested_ratio", ladder.state.requested_ratio}, {"nearest_ratio", ladder.state.available_ratio}};
    }
    const bool bound = worked.filterType != band_pass && !x_plane.matched;
    if (bound) part["nearest_ratio"] = static_cast<double>(x_plane.termRatioLimit);
    return part;
}

}  // namespace kavrel
