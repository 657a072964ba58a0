// A digital filter by its roots in the z plane, as the z step makes it of an analog prototype:
//
//     H(z) = zMultiplier prod(1 - zero z^-1)/prod(1 - pole z^-1)
//
// Zeros may be fewer than poles: H is a ratio in z^-1, so that no delay is added; a zero at z = 0 is none. Roots are
// complete with conjugates, a pair next to each other, the positive imaginary part first.
#pragma once

#include <type_traits>

#include "numeric/root_set.h"
#include "shell/table.h"

namespace kavrel {

// How s became z. Files hold the numbers; the texts of reports follow them.
enum class ZTransform : int {
    impulse_invariant = 1,
    matched = 2,
    bilinear = 3,
    bilinear_of_function = 4,  // of a function that was given, for which nobody asks
    unknown = 5,               // of a filter from outside
};

// What a digital low-pass was turned into. Files hold the numbers.
enum class SpectralKind : int { none = 0, to_lowpass = 1, to_highpass = 2, to_bandpass = 3, to_bandreject = 4 };

struct DigitalFunction {
    int zeroCount = 0;
    int poleCount = 0;
    Table<double, max_degree> ZEROS_RE;
    Table<double, max_degree> ZEROS_IM;
    Table<double, max_degree> POLES_RE;
    Table<double, max_degree> POLES_IM;
    double zMultiplier = 1.0;
    Table<int, max_degree> LARR;  // [i] chain of pole i in a differential allpass: 1 the first, any other the second
    bool allpass_ok = false;      // LARR is set
};

static_assert(std::is_trivially_copyable_v<DigitalFunction>);

}  // namespace kavrel
