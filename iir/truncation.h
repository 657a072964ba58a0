// The coefficients of a digital filter in a finite word.
#pragma once

#include "iir/iir_report.h"
#include "iir/iir_request.h"
#include "shell/refusal.h"
#include "shell/units.h"

namespace kavrel {

// Brings the coefficients of one form to a word of 1 to 49 bits. The front-end multiplier of the cascade takes a
// floating word whatever the number form; of the direct form, as many numerators as there are denominators.
void quantise_form(IirFilter& filter, Implementation form, const WordLength& word);

// "trun": all forms that there are; without poles the parallel form alone. Zeros and poles stay, only ZMULT follows CK.
// A word that is not shorter than that of the last truncation changes nothing, which a line says.
[[nodiscard]] Refusal truncateFilter(IirFilter& filter, const IirRequest& request, const UnitSet& units, Lines& lines);

// The same, without lines and questions.
[[nodiscard]] Refusal truncate_to(IirFilter& filter, const WordLength& word);

// Poles and zeros of the cascade's factors as they are: of a truncated filter, those of its truncated coefficients.
[[nodiscard]] DigitalRoots roots_of_factors(const IirFilter& filter);

}  // namespace kavrel
