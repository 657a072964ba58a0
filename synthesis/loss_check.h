// The circuit against the transfer function: the one test that a synthesis has to pass. A root that came out where it
// should proves nothing.
#pragma once

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"
#include "circuit/circuit.h"

namespace kavrel {

// 10 log10 E/Q in dB at the frequency of s = j w in the variable of the approximation (x = (a - w^2)/(1 - w^2)).
[[nodiscard]] long double design_loss(const XPlane& xp, long double w);

// Largest differences of the circuit's own loss from 10 log10 E/Q, in dB. A singly terminated circuit is driven by a
// source without resistance, whose level the function leaves open: its losses are compared less their difference at one
// frequency of the pass band.
struct LossDifference {
    double passband = 0;           // over the pass band with its edges
    double stopband = 0;           // over both stop bands, wherever the loss is below 120 dB
    double stopband_relative = 0;  // the same, each divided by the loss there
    int points = 0;                // frequencies that were compared

    [[nodiscard]] double largest() const { return passband > stopband ? passband : stopband; }
};

inline constexpr long double deepest_loss = 120.0L;  // dB, beyond which nothing is compared

[[nodiscard]] LossDifference compare_loss(const XPlane& xp, const FilterSpec& spec, const Circuit& circuit);

}  // namespace kavrel
