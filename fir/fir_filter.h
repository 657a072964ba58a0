// The FIR filter of the run: what a design hands over, and the functions that commands make of it.
#pragma once

#include <type_traits>
#include <vector>

#include "shell/fingerprint.h"
#include "shell/table.h"

namespace kavrel {

inline constexpr int fir_function_limit = 5;
inline constexpr int fir_untruncated = 48;  // word length of a function that holds all its bits

// The coefficients of all functions share one store; the first function is the design.
struct FirFilter {
    int functions = 0;                      // in use, 0 to 5; 0 when there is no filter
    Table<double, 518> X;                   // the store: outer end of a half response first, its centre last
    Table<int, 6> IST;                      // [n] first index of function n in X; element n+1 closes function n
    Table<int, fir_function_limit> LENGTH;  // [n] stored coefficients of function n
    Table<int, fir_function_limit> WORD;    // [n] its bits, or `fir_untruncated`
    Table<double, 258> COEF;                // the half response as designed
    int NFCNS = 0;                          // cosine functions of the design
    int NODD = 0;                           // 1 for odd length
    int NEG = 0;                            // 1 for an antisymmetric response
    int factors = 0;                        // quadratic factors known
    double sampling_frequency = 0.0;        // Hz
    double deviation = 0.0;                 // linear deviation of the first stopband; 0 when the design has none
};

static_assert(std::is_trivially_copyable_v<FirFilter>);

// Taps of a design with these indicators.
[[nodiscard]] constexpr int fir_taps(int nfcns, int nodd, int neg) { return 2 * nfcns + (2 * neg - 1) * nodd; }

// Of all its functions and the sampling frequency.
[[nodiscard]] Fingerprint fingerprint(const FirFilter& filter);

// All taps of function n, first to last, mirrored from its stored half: h(i) = h(L+1-i) or -h(L+1-i), and 0 in the
// middle of an antisymmetric response of odd length.
[[nodiscard]] std::vector<double> full_response(const FirFilter& filter, int function);

}  // namespace kavrel
