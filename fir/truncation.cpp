#include "fir/truncation.h"

#include <algorithm>

#include "numeric/quantise.h"
#include "shell/edited.h"

namespace kavrel {

void quantise_function(FirFilter& filter, int n, const WordLength& word) {
    for (double& h : stored_coefficients(filter, n)) h = quantise(h, word);
    filter.FUNCTION(n).word = word;
}

Refusal truncate_function(FirFilter& filter, const FirCommandRequest& request, Lines& lines) {
    const int n = request.function_number;
    const WordLength asked = request.truncated_to, held = filter.FUNCTION(n).word;
    if (asked.bits >= held.bits) {
        lines.push_back(held.bits == fir_untruncated
                            ? edited<"(' A word of',I3,' bits changes nothing')">(asked.bits)
                            : edited<"(' Function already truncated to',I3,' bits')">(held.bits));
        return {};
    }
    const auto is_zero = [](double h) { return h == 0; };
    const bool was_zero = std::ranges::all_of(stored_coefficients(filter, n), is_zero);
    quantise_function(filter, n, asked);
    if (!was_zero && std::ranges::all_of(stored_coefficients(filter, n), is_zero)) {
        return {"All coefficients would be 0 in so short a word", "bits"};
    }
    if (filter.factors.function == n) filter.factors.function = 0;
    return {};
}

}  // namespace kavrel
