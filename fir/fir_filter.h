// The FIR filter of the run: what a design hands over, the functions that commands make of it, and the factors of one.
#pragma once

#include <span>
#include <type_traits>
#include <vector>

#include "fir/fir_request.h"
#include "shell/fingerprint.h"
#include "shell/table.h"
#include "shell/word_length.h"

namespace kavrel {

inline constexpr int fir_function_limit = 5;
inline constexpr int fir_store = 518;       // coefficients of all functions
inline constexpr int fir_untruncated = 48;  // word length of a function that holds all its bits
inline constexpr int fir_factor_limit = 256;

// Of a response about its middle: h(i) = h(L+1-i), h(i) = -h(L+1-i), or neither.
enum class FirSymmetry : int { even = 0, odd = 1, none = 2 };

// Where a filter comes from.
enum class FirOrigin : int { given = 0, equal_ripple = 1, windowed = 2 };

struct FirFunction {
    int taps = 0;  // of the whole response
    FirSymmetry symmetry = FirSymmetry::even;
    WordLength word{.bits = fir_untruncated};
    double gain = 0.0;   // dB by which its level was moved
    bool asked = false;  // the design's request is one of it, at that level
};
template <ListedAs<FirFunction> Record, class Visit>
constexpr void fields_of(Record& function, Visit&& visit) {
    visit("taps", function.taps);
    visit("symmetry", function.symmetry);
    visit("word", function.word);
    visit("gain", function.gain);
    visit("asked", function.asked);
}
static_assert(lists_each_field<FirFunction>);

// multiplier z^-delay times the product of 1 + A1 z^-1 + A2 z^-2; A2 is 0 in a factor of first order.
struct FirFactors {
    int count = 0;                      // 0 when there is no factored form
    Table<double, 273> A1;              // [k] linear coefficients
    Table<double, 273> A2;              // [k] quadratic coefficients
    Table<int, fir_factor_limit> ISER;  // [k] serial numbers, above 0; a factor keeps its own
    int last_serial = 0;                // the highest one given so far
    int function = 0;                   // whose factors they were made as; 0 when that function is another one since
    int delay = 0;                      // taps of 0 before the first one that is not
    int trailing = 0;                   // and behind the last one
    double multiplier = 1.0;
    double gain = 0.0;   // of that function
    bool asked = false;  // the magnitude is that of a function that was asked for
};

struct FirFilter {
    int functions = 0;                                // in use, 0 to 5; 0 when there is no filter
    Table<double, fir_store> X;                       // the store: a symmetric function its half, outer end first
    Table<int, fir_function_limit + 1> IST;           // [n] first cell of function n in X; n + 1 closes function n
    Table<FirFunction, fir_function_limit> FUNCTION;  // [n]; the first one is the design
    Table<double, 258> COEF;                          // the half response as designed
    int NFCNS = 0;                                    // cosine functions of the design
    int NODD = 0;                                     // 1 for odd length
    int NEG = 0;                                      // 1 for an antisymmetric response
    FirFactors factors;
    double sampling_frequency = 0.0;  // Hz
    double deviation = 0.0;           // linear deviation of the first stopband; 0 when the design has none
    FirOrigin origin = FirOrigin::given;
    FirRequest request;       // of the design, if it is one
    Table<double, 4> WINDOW;  // a0 to a3 as a windowed design's window has left them
};

static_assert(std::is_trivially_copyable_v<FirFilter>);

// Taps of a design with these indicators.
[[nodiscard]] constexpr int fir_taps(int nfcns, int nodd, int neg) { return 2 * nfcns + (2 * neg - 1) * nodd; }

// Cells that a response takes in the store: its half, with the middle tap of an even symmetry (of an odd one it is 0),
// or without symmetry the whole.
[[nodiscard]] constexpr int stored_cells(int taps, FirSymmetry symmetry) {
    if (symmetry == FirSymmetry::none) return taps;
    return symmetry == FirSymmetry::even ? (taps + 1) / 2 : taps / 2;
}

// The cells of function n.
[[nodiscard]] std::span<const double> stored_coefficients(const FirFilter& filter, int n);
[[nodiscard]] std::span<double> stored_coefficients(FirFilter& filter, int n);

// Cells of the store that no function has.
[[nodiscard]] int free_cells(const FirFilter& filter);

// Adds a function behind the others, its coefficients as they are stored; false, with the filter as it was, where there
// is no place for it among the five or in the store.
[[nodiscard]] bool add_function(FirFilter& filter, const FirFunction& function, std::span<const double> coefficients);

// Leaves the first `count` functions. Factors of one that goes are those of no function any more.
void keep_functions(FirFilter& filter, int count);

// All taps of function n, first to last.
[[nodiscard]] std::vector<double> full_response(const FirFilter& filter, int n);

// Whether a response is equal to its mirror image (of an odd symmetry to the negative of it) within 1e-12 of the peak;
// the half that stands for it then, the mean of both.
[[nodiscard]] bool is_mirrored(std::span<const double> taps, FirSymmetry symmetry);
[[nodiscard]] std::vector<double> half_of(std::span<const double> taps, FirSymmetry symmetry);

// A response as a function: one equal to its mirror image, or to the negative of it, within 1e-12 of the peak becomes
// its half, the mean of both.
struct FirResponse {
    FirFunction function;
    std::vector<double> coefficients;  // as they are stored
};
[[nodiscard]] FirResponse response_of(std::span<const double> taps);

// Of function n and the sampling frequency.
[[nodiscard]] Fingerprint fingerprint(const FirFilter& filter, int n);

}  // namespace kavrel
