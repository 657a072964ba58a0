// The impulse response of a cosine series.
#pragma once

#include "fir/fir_grid.h"
#include "shell/table.h"

namespace kavrel {

// [j] outer end of the half impulse response at 1, centre at NFCNS (NFCNS + 1 for odd antisymmetric filters, always 0)
using HalfResponse = Table<double, 514>;

// Half impulse response of Q(f) A(f), outer end first:
//
//     NEG 0, odd    H(j) = ALPHA(nz-j) / 2,                         H(NFCNS) = ALPHA(1)
//     NEG 0, even   H(j) = (ALPHA(nz-j) + ALPHA(nz+1-j)) / 4,       H(NFCNS) = ALPHA(1) / 2 + ALPHA(2) / 4
//     NEG 1, odd    H(j) = (ALPHA(nz-j) - ALPHA(nz+2-j)) / 4,       H(NFCNS) = ALPHA(1) / 2 - ALPHA(3) / 4, H(nz) = 0
//     NEG 1, even   H(j) = (ALPHA(nz-j) - ALPHA(nz+1-j)) / 4,       H(NFCNS) = ALPHA(1) / 2 - ALPHA(2) / 4
//
// with nz = NFCNS + 1, j < NFCNS, and ALPHA taken as 0 above NFCNS. `plan` comes from plan_fir. The rest of H is 0.
[[nodiscard]] HalfResponse impulse_response(const FirPlan& plan, const CosineSeries& alpha);

}  // namespace kavrel
