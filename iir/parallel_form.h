// The parallel form: partial fractions of H in powers of z^-1.
#pragma once

#include "iir/iir_filter.h"
#include "shell/refusal.h"

namespace kavrel {

// With x = z^-1, H = AO + sum A_i/(1 - p_i x), two poles to a block: conjugate pairs, then the real poles two by two in
// their order; of an odd number of poles the last block is of first order (DE = BE = 0). Roots at 0 are factors of 1
// and take no part. A zero more than poles adds a block BE z^-1 (GA = DE = 0); where zeros are more than that H has no
// such form, which is refused. A constant has one block of zeros.
//
// Poles that coincide within 1e-10 of their magnitude have no fractions of their own: the later one, a pair as a whole,
// is multiplied by 1.00000001 until it is apart. The list of the filter's poles keeps what it became.
//
// The residue of p_i is ZMULT/PMULT prod(1 - zero/p_i)/prod(1 - p_j/p_i), j other than i, worked out in the wide type.
[[nodiscard]] Refusal makeParallel(IirFilter& filter);

}  // namespace kavrel
