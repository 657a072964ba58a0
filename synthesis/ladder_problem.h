// What a synthesis runs on: the immittance polynomials, the zeros of transmission and how many of each are left to
// realise. It does not change during a run.
#pragma once

#include <string_view>

#include "approximation/filter_spec.h"
#include "approximation/x_plane.h"
#include "synthesis/long_immittance.h"

namespace kavrel {

// A high-pass is held as its low-pass prototype, in the variable that its approximation used, unless it has lines or
// complex zeros: their branches have no prototype, and the functions are turned to the true variable, x -> 1 - x.
struct LadderProblem {
    LongImmittance polynomials;
    bool turned = false;     // such a high-pass: x is 1 - x of the approximation, s is 1/s of it
    bool prototype = false;  // s is 1/s of the filter: lumped high-pass
    bool single_termination = false;
    bool odd_q = false;       // the numerator q of S21 = q/e is odd in the s of the approximation
    WideReal x0;              // a
    WideReal unit_point = 0;  // x of the unit elements
    int zeros_at_zero = 0;
    int zeros_at_infinity = 0;
    int unit_elements = 0;
    int zero_count = 0;                            // finite zeros, conjugates not repeated
    Table<WideReal, finite_zero_limit> zero_x;     // [i] x of zero i, real part
    Table<WideReal, finite_zero_limit> zero_x_im;  // [i] imaginary part; 0: a zero on the frequency axis
    Table<double, finite_zero_limit> zero_hz_re;   // [i] the zero itself, Hz
    Table<double, finite_zero_limit> zero_hz_im;
    double norm_frequency = 0;    // Hz of s = j (lumped), tan of a quarter-wave angle (microwave)
    double quarter_wave = 0;      // fs of a microwave filter, twice the quarter-wave frequency; 0: lumped
    double own_resistance = 0;    // R1
    double other_resistance = 0;  // R2 as asked for, 0: single termination

    [[nodiscard]] bool microwave() const { return quarter_wave > 0; }
    // Off the frequency axis: x complex, or between a and 1, where s is real.
    [[nodiscard]] bool is_complex(int i) const { return zero_x_im(i).sign() != 0 || (zero_x(i) > x0 && zero_x(i) < 1); }
    // Above the band: x > 1; below it x lies in [0, a).
    [[nodiscard]] bool is_high(int i) const { return zero_x(i) > 1; }
};

// From a finished approximation and its normalised request. False when the immittance polynomials are not there; all
// else is.
[[nodiscard]] bool ladder_problem(const XPlane& xp, const FilterSpec& spec, Watcher& watcher, LadderProblem& problem);

// Of a microwave filter tan of the angle of s = j, the edge.
[[nodiscard]] long double edge_tangent(const XPlane& xp, const FilterSpec& spec);

// Hz of s = j w, in units of the edge; microwave: w is that of the warped variable.
[[nodiscard]] double hz_of(const XPlane& xp, const FilterSpec& spec, long double w);

// Numerator and denominator of an immittance, the form that it is taken as, and the end of the network.
enum class Part { es, os, ed, od };
inline constexpr int impedance = -1;
inline constexpr int admittance = 0;

struct Selection {
    Part numerator = Part::es;    // es or ed
    Part denominator = Part::os;  // os or od
    int form = admittance;        // impedance or admittance
    bool output_side = false;     // false "in": branch 1 is the own end's resistor R1; true "out": R2
};

[[nodiscard]] constexpr std::string_view word_of(Part part) {
    switch (part) {
        case Part::es: return "es";
        case Part::os: return "os";
        case Part::ed: return "ed";
        case Part::od: return "od";
    }
    return "";
}

// The working function of a selection: numerator over denominator, in s, with the factor that the parity of the degree
// asks for. False when one of the two does not exist.
[[nodiscard]] bool formWorkingFunction(const LadderProblem& problem, const Selection& selection, WorkingFunction& f);

}  // namespace kavrel
