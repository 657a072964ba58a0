// Immittances of elements and branches at one frequency, each with its derivative by the angular frequency, from which
// the delay comes without differences.
//
// A lumped inductor is L (j w + d), a capacitor C (j w + d). With Q > 0, d = w/Q; with Q < 0 the Q was given at the
// normalisation frequency w0: d = w0/|Q|, and a negative element takes the same resistance as its positive twin; Q = 0
// is lossless. In a microwave circuit j w is replaced by tanh(alpha + j theta), theta being pi/2 at the quarter-wave
// frequency; unit elements are lines of the same alpha and theta. QL is then the loss in dB of a line four quarter
// waves long, alpha = |QL|/34.7436; with QL < 0 it grows with the frequency and has this value at the quarter-wave
// frequency.
#pragma once

#include <array>
#include <span>

#include "circuit/branch_kinds.h"
#include "circuit/circuit.h"
#include "numeric/complex.h"

namespace kavrel {

using Wide = long double;
inline constexpr Wide line_nepers = 34.7436L;  // dB of four quarter waves of one neper each
using WideComplex = Complex<Wide>;

[[nodiscard]] inline Wide squared_magnitude(WideComplex z) { return z.re * z.re + z.im * z.im; }
[[nodiscard]] inline WideComplex reciprocal(WideComplex z) {
    const Wide scale = 1 / squared_magnitude(z);
    return {z.re * scale, -z.im * scale};
}

// A value v and its derivative d by the angular frequency.
struct Jet {
    WideComplex v;
    WideComplex d;

    friend Jet operator+(const Jet& a, const Jet& b) { return {a.v + b.v, a.d + b.d}; }
    friend Jet operator-(const Jet& a, const Jet& b) { return {a.v - b.v, a.d - b.d}; }
    friend Jet operator*(const Jet& a, const Jet& b) { return {a.v * b.v, a.v * b.d + a.d * b.v}; }
    friend Jet operator*(Wide k, const Jet& a) { return {k * a.v, k * a.d}; }
};
[[nodiscard]] inline Jet reciprocal(const Jet& a) {
    const WideComplex v = reciprocal(a.v);
    return {v, -(v * v) * a.d};
}
[[nodiscard]] inline Jet operator/(const Jet& a, const Jet& b) {
    const WideComplex scale = reciprocal(b.v);
    const WideComplex v = a.v * scale;
    return {v, (a.d - v * b.d) * scale};
}

// Quality of the elements: Q of inductors and of capacitors, 0 for lossless ones.
struct ElementLoss {
    double QL = 0;
    double QC = 0;
};

// What all elements of a circuit have in common at one frequency.
struct ElementPoint {
    Jet inductor;                          // impedance of an inductor, or short-circuited stub, of value 1
    Jet capacitor;                         // admittance of a capacitor, or open stub, of value 1
    bool lossless = false;                 // the two are equal and imaginary
    bool inductor_loss_unsigned = false;   // QL < 0: see above
    bool capacitor_loss_unsigned = false;  // QC < 0
    Jet cosh_line{{1, 0}, {}};             // of alpha + j theta, microwave only
    Jet sinh_line;
};

enum class PointVerdict {
    computed,
    on_pole,       // too near a pole of a branch or a stub: nothing is said of this frequency
    beyond_reach,  // too near a pole of the loss: above 500 dB
};

// `omega` in rad/sec, 0 or above; fnorm and fs are those of the circuit. A frequency within 1e-5 of a multiple of the
// quarter-wave frequency, but 0, is a stub pole.
[[nodiscard]] PointVerdict element_point(const Circuit& circuit, const ElementLoss& loss, Wide omega,
                                         ElementPoint& point);

[[nodiscard]] Jet inductor_impedance(const ElementPoint& point, double value);
[[nodiscard]] Jet capacitor_admittance(const ElementPoint& point, double value);
[[nodiscard]] Jet element_impedance(const ElementPoint& point, char letter, double value);
[[nodiscard]] Jet element_admittance(const ElementPoint& point, char letter, double value);

// A slot element: its impedance when it lies in series, its admittance when it lies across the rails. On a pole when
// the asked-for immittance has one there, within 1e-15 of the terms that cancel.
[[nodiscard]] PointVerdict series_impedance(const BranchKind& kind, std::span<const double> values,
                                            const ElementPoint& point, Jet& impedance);
[[nodiscard]] PointVerdict shunt_admittance(const BranchKind& kind, std::span<const double> values,
                                            const ElementPoint& point, Jet& admittance);

// The pi of three arms that a two-port equals: shunt at the load's side, series, shunt at the source's side.
struct PiArms {
    Jet YA;
    Jet ZB;
    Jet YC;
};

// Of a network, a lattice or a quadruplet; of a line use its cosh and sinh. Inner nodes are eliminated by the star-mesh
// transformation: a node with arms yi to its neighbours becomes arms yi yj/(sum of y) between them.
[[nodiscard]] PointVerdict network_arms(const BranchKind& kind, std::span<const double> values,
                                        const ElementPoint& point, PiArms& arms);
[[nodiscard]] PointVerdict quadruplet_arms(const Quadruplet& quadruplet, const ElementPoint& point, PiArms& arms);

// The cascade that a microwave lc (z1, z2), lcc or lcl (z1 to z3) equals: unit elements z1 and z2 (of an lc z1
// alone), and behind them the last impedance as a stub. Richards' extraction: z1 = Z(1), and so on with what remains.
struct StubSection {
    double z1 = 0, z2 = 0, z3 = 0;
    bool open = false;  // the stub is open at its end, else short-circuited
};
[[nodiscard]] StubSection stub_section(const BranchKind& kind, std::span<const double> values, bool series);

// Positive frequencies at which a coupled triplet lets nothing through, ascending, as omega/(2 pi) of the variable that its
// cells are for (Hz, or of stubs tan/(2 pi)); how many there are, 0 to 2.
[[nodiscard]] int triplet_zeros(const BranchKind& kind, std::span<const double> values, std::array<double, 2>& zeros);

// Resonance of L and C in Hz: 1/(2 pi sqrt(L C)), in a microwave circuit of the stub pair; 0 when there is none.
[[nodiscard]] double resonant_frequency(const Circuit& circuit, double L, double C);

}  // namespace kavrel
