// The fields of a design's records in the order in which files hold them: that of their declaration.
//
// `items_of(record, visit)` calls visit(field, field, ...) once. A record that gets another field no longer compiles
// here, so that no file can leave it out.
#pragma once

#include <type_traits>

#include "approximation/filter_spec.h"

namespace kavrel {

// Of a FilterSpec or a TransferFunction, const or not.
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
    } else {
        static_assert(std::is_same_v<std::remove_const_t<Record>, TransferFunction>);
        auto& [zeroCount, poleCount, ZEROS_RE, ZEROS_IM, POLES_RE, POLES_IM, multiplier, normFrequency, gainConstant,
               lossConstant, zerosAtZero, zerosAtInfinity] = record;
        visit(zeroCount, poleCount, ZEROS_RE, ZEROS_IM, POLES_RE, POLES_IM, multiplier, normFrequency, gainConstant,
              lossConstant, zerosAtZero, zerosAtInfinity);
    }
}

}  // namespace kavrel
