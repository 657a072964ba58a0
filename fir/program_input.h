// What a program of an FIR function is written from.
//
// All programs have one delay line, x1, of which the newest sample comes first. A function with a symmetry has one
// product for each pair of taps, of the sum or the difference of their samples, from the outer end inwards; the middle
// tap of an even symmetry comes last. The first call, n = 1, clears the delay line before it takes its sample.
#pragma once

#include <string>
#include <string_view>

#include "fir/fir_filter.h"

namespace kavrel {

struct FirProgramInput {
    const FirFilter& filter;
    int function = 1;  // one that is there
    std::string_view title = {};
    std::string_view name = {};  // of the file, without folder and extension

    [[nodiscard]] const FirFunction& shape() const { return filter.FUNCTION(function); }
    [[nodiscard]] std::span<const double> coefficients() const { return stored_coefficients(filter, function); }
    [[nodiscard]] bool has_symmetry() const { return shape().symmetry != FirSymmetry::none; }
    // Products of pairs; what is left is the middle tap.
    [[nodiscard]] int pairs() const { return has_symmetry() ? shape().taps / 2 : 0; }
    [[nodiscard]] bool has_middle() const { return shape().symmetry == FirSymmetry::even && shape().taps % 2 != 0; }
};

// "FIR filter of 15 taps, even symmetry": in the heads of programs.
[[nodiscard]] std::string function_text(const FirProgramInput& input);

}  // namespace kavrel
