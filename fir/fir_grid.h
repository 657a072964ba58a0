// The dense frequency grid of an equal ripple FIR design.
//
// Frequencies are in cycles per sample, 0 to 0.5. The zero-phase response of the filter is Q(f) A(f), where A is a sum
// of NFCNS cosines, A(f) = ALPHA(1) + ALPHA(2) cos(2 pi f) + ... + ALPHA(NFCNS) cos(2 pi (NFCNS-1) f), and Q is fixed
// by symmetry and length:
//
//     NEG 0, odd length   Q = 1               NEG 1, odd length    Q = sin(2 pi f)
//     NEG 0, even length  Q = cos(pi f)       NEG 1, even length   Q = sin(pi f)
//
// WT |DES - Q A| = (WT Q) |DES / Q - A|: with the desired response divided by Q and the weight multiplied by it, every
// type becomes the same task, a best approximation by cosines. The grid is stored in this folded form.
#pragma once

#include <type_traits>

#include "shell/table.h"

namespace kavrel {

inline constexpr int max_fir_bands = 10;
inline constexpr int max_fir_taps = 512;
inline constexpr int max_fir_functions = 257;
inline constexpr int fir_grid_density = 32;  // grid points for each cosine function
inline constexpr int max_fir_grid = fir_grid_density * max_fir_functions;
inline constexpr int max_shape_points = 501;
inline constexpr double least_shape_weighed = 0.001;

// 2 pi and pi as the FIR designs use them.
inline constexpr double fir_two_pi = 6.2831853071796;
inline constexpr double fir_pi = 3.1415926535898;

// What is designed. Files hold the numbers.
enum class FirType : int { unchosen = 0, filter = 1, differentiator = 2, hilbert = 3 };

// [i] coefficient ALPHA(i) of cos(2 pi (i-1) f), i <= NFCNS; 0 above
using CosineSeries = Table<double, max_fir_functions + 1>;

// The bands of a request, lowest first.
struct BandTable {
    int NBANDS = 0;                         // 1 to 10
    Table<double, 2 * max_fir_bands> EDGE;  // [2b-1], [2b] lower and upper edge of band b, ascending, 0 to 0.5
    Table<double, max_fir_bands> FX;        // [b] desired value; for a differentiator the slope
    Table<double, max_fir_bands> WTX;       // [b] weight, above 0
};

// A shaped pass band: the desired response as a polygon, to be multiplied by FX.
struct ShapeTable {
    int count = 0;                             // points, 0 to 501; 0 means that no shape was given
    Table<float, max_shape_points> FIR_FREQ;   // [i] frequency, ascending
    Table<float, max_shape_points> FIR_VALUE;  // [i] value there, linear (not dB)
};

// What a design asks for.
struct FirTask {
    FirType JTYPE = FirType::filter;
    int NFILT = 0;  // taps, 1 to 512
    BandTable BANDS;
    ShapeTable SHAPE;
};

// What type and length make of it.
struct FirPlan {
    int NFCNS = 0;  // number of cosine functions, 1 to 257
    int NODD = 0;   // 1 for odd length
    int NEG = 0;    // 1 for an antisymmetric impulse response (types 2 and 3)
};

// A point of the axis, folded.
struct FirPoint {
    double f = 0;
    double X = 0;    // cos(2 pi f)
    double DES = 0;  // desired response / Q
    double WT = 0;   // weight * Q, above 0
    int band = 0;    // 1 to 10; 0 and below: in the free region above band -band, where 0 is desired with weight 1

    [[nodiscard]] bool free() const { return band <= 0; }
};

// The grid, folded.
struct FirGrid {
    int NGRID = 0;                     // points in use
    double DELF = 0;                   // step inside a band
    Table<double, max_fir_grid> GRID;  // [k] frequency, ascending
    Table<double, max_fir_grid> DES;   // [k] desired response / Q
    Table<double, max_fir_grid> WT;    // [k] weight * Q, above 0
    Table<double, max_fir_grid> X;     // [k] cos(2 pi GRID(k)), kept because the exchange asks for it many times
    Table<int, max_fir_grid> BAND;     // [k] its band

    [[nodiscard]] FirPoint point(int k) const { return {GRID(k), X(k), DES(k), WT(k), BAND(k)}; }
};

static_assert(std::is_trivially_copyable_v<FirTask> && std::is_trivially_copyable_v<FirPlan> &&
              std::is_trivially_copyable_v<FirGrid>);

// Symmetry and number of cosine functions of a design of `nfilt` taps of type `jtype`.
//   nfilt   1 to 512
// False, with `plan` as it was, when the length or the type is none or when the impulse response cannot be read off the
// cosine series: an antisymmetric filter of 1 tap has no function at all, one of 3 taps has a single one where the
// table of H asks for two.
[[nodiscard]] bool plan_fir(FirType jtype, int nfilt, FirPlan& plan);

// Desired response of band `band` at the frequency `f`, not folded.
//   differentiator              f FX
//   no shape, or FX = 0         FX
//   shape                       FX times the polygon; f FX below its first point; its last value, without FX, from its
//                               last point on
[[nodiscard]] double desired(const FirTask& task, double f, int band);

// Weight of band `band` at `f` (above 0 for a differentiator), not folded.
//   differentiator              WTX / f, a constant relative error; WTX when FX is below 0.0001
//   no shape, or FX = 0         WTX
//   shape                       WTX / desired; WTX when that is below least_shape_weighed
[[nodiscard]] double weight(const FirTask& task, double f, int band);

// The point at `f` of a band, or of a free region (0 and below).
[[nodiscard]] FirPoint folded_point(const FirTask& task, const FirPlan& plan, double f, int band);

// Lays out the grid of `task`, 32 points for each cosine function over 0 to 0.5, and folds it.
// Each band begins on its lower edge, goes on in steps of DELF and ends on its upper edge. An end of the grid at which
// Q is zero is left out: with NEG 1 it starts at DELF; with NEG = NODD a last point closer than DELF to 0.5 is dropped.
// False when no design can be made on it: edges that are not ascending within 0 to 0.5, a desired response or weight
// that is not finite, a weight that is not positive, or fewer than NFCNS + 1 points.
[[nodiscard]] bool make_grid(const FirTask& task, const FirPlan& plan, FirGrid& grid);

// Size of the numbers that the weighted errors on the grid are differences of. The mean, since DES / Q grows beyond all
// bounds next to a zero of Q.
[[nodiscard]] double scale_of(const FirGrid& grid);

}  // namespace kavrel
