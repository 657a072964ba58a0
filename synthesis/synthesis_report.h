// The report of a synthesis, as lines.
#pragma once

#include <string>
#include <vector>

#include "synthesis/synthesise.h"

namespace kavrel {

// The four immittance polynomials in x: multiplier, then real part, imaginary part and, of a root on the frequency
// axis, the frequency in Hz.
[[nodiscard]] std::vector<std::string> polynomial_report(std::string_view title, const XPlane& xp,
                                                         const FilterSpec& spec);

// The ladder in the order of extraction, normalised to the own end's resistor at the left, in base units at the right
// (of stubs the impedances), of a two-way run from either side up to the join; then remarks on the terminations,
// negative elements and the loss.
[[nodiscard]] std::vector<std::string> result_report(std::string_view title, const SynthesisState& state);

// Terminations: as they are, and their ratio as asked for and as it can be had; of a run, or of a circuit and the
// request of its design.
[[nodiscard]] std::vector<std::string> termination_report(const SynthesisState& state);
[[nodiscard]] std::vector<std::string> termination_report(const Circuit& circuit, const FilterSpec& spec);

// Lines of a failed run: the reason where one is known, then " **** Synthesis failed ****".
[[nodiscard]] std::vector<std::string> failure_report(const SynthesisVerdict& verdict, const SynthesisState& state);

}  // namespace kavrel
