#include "workbench/filter_json.h"

namespace kavrel {

namespace {

using Json = nlohmann::ordered_json;

// The first `count` cells of a table.
template <class T, int N>
Json cells(const Table<T, N>& table, int count) {
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

bool is_empty(const WideRootSet& set) { return set.count == 0 && set.multiplier == 0; }

}  // namespace

Json spec_part(const FilterSpec& spec) {
    if (spec.title.is_blank()) return {};
    return {{"title", spec.title.text()},
            {"filterType", spec.filterType},
            {"passbandType", spec.passbandType},
            {"bandpassType", spec.bandpassType},
            {"stopbandType", spec.stopbandType},
            {"medium", spec.medium},
            {"implementation", std::string(1, spec.implementation)},
            {"lowerPassEdge", spec.lowerPassEdge},
            {"upperPassEdge", spec.upperPassEdge},
            {"lowerStopEdge", spec.lowerStopEdge},
            {"upperStopEdge", spec.upperStopEdge},
            {"bandEdgeLoss", spec.bandEdgeLoss},
            {"stopbandLoss", spec.stopbandLoss},
            {"upperStopLoss", spec.upperStopLoss},
            {"sourceResistance", spec.sourceResistance},
            {"loadResistance", spec.loadResistance},
            {"predistortionQ", spec.predistortionQ},
            {"freal", spec.freal},
            {"functionMultiplier", spec.functionMultiplier},
            {"numeratorFactors", cells(spec.numeratorFactors, spec.numeratorDegree)},
            {"denominatorFactors", cells(spec.denominatorFactors, spec.denominatorDegree)},
            {"numeratorDegree", spec.numeratorDegree},
            {"denominatorDegree", spec.denominatorDegree},
            {"reflectionInput", spec.reflectionInput},
            {"flatLoss", spec.flatLoss},
            {"sampleFrequency", spec.sampleFrequency},
            {"zerosAtZero", spec.zerosAtZero},
            {"zerosAtInfinity", spec.zerosAtInfinity},
            {"unitElements", spec.unitElements},
            {"zeroCount", spec.zeroCount},
            {"FZR", cells(spec.FZR, spec.zeroCount)},
            {"FZI", cells(spec.FZI, spec.zeroCount)},
            {"degree", spec.degree},
            {"degreeParity", spec.degreeParity},
            {"symmetryFlag", spec.symmetryFlag},
            {"runFlag", spec.runFlag},
            {"designError", spec.designError},
            {"centerFrequency", spec.centerFrequency},
            {"odd_parametric", spec.odd_parametric}};
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

Json x_plane_part(const XPlane& x_plane) {
    if (is_empty(x_plane.ES)) return {};
    return {{"a", static_cast<double>(x_plane.a)},
            {"E", root_set(x_plane.ES)},
            {"F", root_set(x_plane.FS)},
            {"Q", root_set(x_plane.QS)}};
}

Json immittance_part(const XPlane& x_plane) {
    if (is_empty(x_plane.es) && is_empty(x_plane.os)) return {};
    return {{"es", root_set(x_plane.es)},
            {"os", root_set(x_plane.os)},
            {"ed", root_set(x_plane.ed)},
            {"od", root_set(x_plane.od)}};
}

Json terminations_part(const FilterSpec& spec, const XPlane& x_plane) {
    if (is_empty(x_plane.ES) || spec.sourceResistance == 0.0 || spec.loadResistance == 0.0) return {};
    return {{"requested_ratio", static_cast<double>(x_plane.requested_ratio)},
            {"nearest_ratio", static_cast<double>(x_plane.termRatioLimit)}};
}

}  // namespace kavrel
