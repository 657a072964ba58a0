// A digital filter by its roots in the z plane, as the z step makes it of an analog prototype:
//
//     H(z) = zMultiplier prod(1 - zero z^-1)/prod(1 - pole z^-1)
//
// Zeros may be fewer than poles: H is a ratio in z^-1, so that no delay is added; a zero at z = 0 is none. Roots are
// complete with conjugates, a pair next to each other, the positive imaginary part first.
#pragma once

#include <string_view>
#include <type_traits>
#include <vector>

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

// Why poles that somebody gives are refused.
inline constexpr std::string_view pole_outside = "Poles must lie inside the unit circle";

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

// A real root, or a conjugate pair by its member with the positive imaginary part.
struct HalfRoot {
    Complex<Wide> root;
    bool pair = false;
    int chain = 0;  // of a pole

    [[nodiscard]] int size() const { return pair ? 2 : 1; }
};
using HalfRoots = std::vector<HalfRoot>;
[[nodiscard]] int count_of(const HalfRoots& roots);  // of all, with the conjugates

// The first `count` roots of a list, be they of s or of z: two of opposite imaginary parts that follow each other are a
// pair.
template <class List>
[[nodiscard]] HalfRoots half_roots(const List& re, const List& im, int count) {
    HalfRoots roots;
    for (int i = 1; i <= count; ++i) {
        const bool pair = im(i) != 0 && i < count;
        roots.push_back({.root = {re(i), pair ? std::fabs(im(i)) : 0}, .pair = pair});
        if (pair) ++i;
    }
    return roots;
}
[[nodiscard]] HalfRoots zeros_of(const DigitalFunction& function);
[[nodiscard]] HalfRoots poles_of(const DigitalFunction& function);  // with their chains

// The lists of a function; a zero at 0 is none. The chains come with the poles.
void set_zeros(const HalfRoots& zeros, DigitalFunction& function);
void set_poles(const HalfRoots& poles, DigitalFunction& function);

// H at a z.
[[nodiscard]] Complex<Wide> value_at(const DigitalFunction& function, Complex<Wide> z);

// Each chain is an allpass that is 1 at z = 1. Of a high-pass and a band-pass half the difference, second chain less
// first, is the filter: takes the chains for one another where it is -H at z, a place in the pass band.
void order_chains(Complex<Wide> z, DigitalFunction& function);

// Whether all numbers are in the range of double, and the filter is not 0.
[[nodiscard]] bool is_usable(const DigitalFunction& function);

}  // namespace kavrel
