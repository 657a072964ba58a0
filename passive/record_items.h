// The fields of a design's records in the order in which files hold them: that of their declaration.
//
// `items_of(record, visit)` calls visit(field, field, ...) once. A record that gets another field no longer compiles
// here, so that no file can leave it out.
#pragma once

#include <type_traits>

#include "passive/passive_filter.h"

namespace kavrel {

// Of a FilterSpec, a TransferFunction, or the notes of a DesignBackground, const or not.
template <class Record, class Visit>
void items_of(Record& record, Visit& visit) {
    if constexpr (std::is_same_v<std::remove_const_t<Record>, FilterSpec>) {
        auto& [title, filterType, passbandType, bandpassType, stopbandType, medium, implementation, lowerPassEdge,
               upperPassEdge, lowerStopEdge, upperStopEdge, bandEdgeLoss, stopbandLoss, upperStopLoss, sourceResistance,
               loadResistance, predistortionQ, freal, functionMultiplier, numeratorFactors, denominatorFactors,
               numeratorDegree, denominatorDegree, reflectionInput, flatLoss, sampleFrequency, zerosAtZero,
               zerosAtInfinity, unitElements, zeroCount, FZR, FZI, degree, degreeParity, symmetryFlag, runFlag,
               designError, centerFrequency, odd_parametric] = record;
        visit(title, filterType, passbandType, bandpassType, stopbandType, medium, implementation, lowerPassEdge,
              upperPassEdge, lowerStopEdge, upperStopEdge, bandEdgeLoss, stopbandLoss, upperStopLoss, sourceResistance,
              loadResistance, predistortionQ, freal, functionMultiplier, numeratorFactors, denominatorFactors,
              numeratorDegree, denominatorDegree, reflectionInput, flatLoss, sampleFrequency, zerosAtZero,
              zerosAtInfinity, unitElements, zeroCount, FZR, FZI, degree, degreeParity, symmetryFlag, runFlag,
              designError, centerFrequency, odd_parametric);
    } else if constexpr (std::is_same_v<std::remove_const_t<Record>, ApproximationNotes>) {
        auto& [front, predistortion, has_pole_chains] = record;
        auto& [preshifted, freal_modified, reset_to_parametric, zeros_shifted, rescaled, degree_estimated, zeros_found,
               lower_loss_reached, upper_loss_reached] = front;
        visit(preshifted, freal_modified, reset_to_parametric, zeros_shifted, rescaled, degree_estimated, zeros_found,
              lower_loss_reached, upper_loss_reached);
        auto& [requested, not_possible, requested_q, minimum_q, used_q] = predistortion;
        visit(requested, not_possible, requested_q, minimum_q, used_q, has_pole_chains);
    } else {
        static_assert(std::is_same_v<std::remove_const_t<Record>, TransferFunction>);
        auto& [zeroCount, poleCount, ZEROS_RE, ZEROS_IM, POLES_RE, POLES_IM, multiplier, normFrequency, gainConstant,
               lossConstant, zerosAtZero, zerosAtInfinity] = record;
        visit(zeroCount, poleCount, ZEROS_RE, ZEROS_IM, POLES_RE, POLES_IM, multiplier, normFrequency, gainConstant,
              lossConstant, zerosAtZero, zerosAtInfinity);
    }
}

}  // namespace kavrel
