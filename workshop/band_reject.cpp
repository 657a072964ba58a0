#include "workshop/band_reject.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <string_view>
#include <utility>
#include <vector>

#include "circuit/branch_kinds.h"
#include "workshop/section.h"
#include "workshop/three_elements.h"

namespace kavrel {

namespace {

constexpr int most_values = 50;  // of a low-pass: about twice as many come of it

constexpr std::string_view complex_quad = "Complex quad of zeros, no 'be' transformation";

// p = kappa s/(s^2 + w0^2)
struct Mapping {
    double kappa, w0;
};

using Pieces = std::vector<NewBranch>;  // of a branch, in slots of its parity

double variable(const Circuit& circuit, double hertz);
Refusal mapped(const Mapping& mapping, const NewBranch& branch, Pieces& pieces);
void map_modes(Circuit& circuit, const Mapping& mapping, double former_fnorm);

}  // namespace

Refusal bandReject(Circuit& circuit, double fa, double fb) {
    if (!(fa > 0) || !(fb > 0) || fa == fb) return {"Zero value not permitted", fa > 0 ? "upper" : "lower"};
    if (fa > fb) std::swap(fa, fb);
    if (circuit.kind != CircuitKind::lumped && fb >= circuit.fs / 2)
        return {"Frequency specification incorrect", "upper"};
    constexpr std::string_view no_slots = "Insertion error, circuit destroyed";
    Circuit made = circuit;
    compactValues(made);
    if (made.ilast > most_values) return "Not enough storage, no 'be' transformation";
    const double ta = variable(circuit, fa), tb = variable(circuit, fb);
    const Mapping mapping{.kappa = variable(circuit, circuit.fnorm) * (tb - ta), .w0 = std::sqrt(ta * tb)};

    for (int k = made.klast, next = 0; k != 0; k = next) {
        const BranchId id = unpackBranch(made, k).id;
        next = unpackBranch(made, k).kp;
        if (is_three_element(id) && !exchangeThree(made, k, 0).empty()) return no_slots;
    }
    compactValues(made);
    for (int k = made.klast, next = 0; k != 0; k = next) {
        const Branch branch = unpackBranch(made, k);
        next = branch.kp;
        NewBranch old{.id = branch.id, .shunt = k % 2 != 0};
        const auto cells = branch_values(std::as_const(made), branch);
        std::copy_n(cells.begin(), std::min(cells.size(), old.values.size()), old.values.begin());
        Pieces pieces;
        if (Refusal wrong = mapped(mapping, old, pieces); !wrong.empty()) return wrong;
        if (!pieces.empty() && !replace_section(made, k, k, pieces)) return no_slots;
    }
    made.fa = fa;
    made.fb = fb;
    made.fnorm = std::sqrt(fa * fb);
    map_modes(made, mapping, circuit.fnorm);
    circuit = made;
    return {};
}

namespace {

// rad/s, or the tangent that is 1 at half of the quarter-wave frequency.
double variable(const Circuit& circuit, double hertz) {
    if (circuit.kind == CircuitKind::lumped) return 2 * std::numbers::pi * hertz;
    return std::tan(std::numbers::pi * hertz / circuit.fs);
}

void map_element(const Mapping& mapping, const NewBranch& element, Pieces& pieces);
Refusal map_pair(const Mapping& mapping, const NewBranch& pair, Pieces& pieces);

// A resistor has no pieces.
Refusal mapped(const Mapping& mapping, const NewBranch& branch, Pieces& pieces) {
    switch (branch.id) {
        case BranchId::resistor: return {};
        case BranchId::inductor:
        case BranchId::capacitor: map_element(mapping, branch, pieces); return {};
        case BranchId::lc: return map_pair(mapping, branch, pieces);
        case BranchId::unit_element: return "Unit element, no 'be' transformation";
        default: return complex_quad;
    }
}

// p L is a pair in parallel, p C the admittance of one in series; in the other slot these are two branches.
void map_element(const Mapping& mapping, const NewBranch& element, Pieces& pieces) {
    const auto& [id, shunt, values] = element;
    const double direct = mapping.kappa * values[0] / (mapping.w0 * mapping.w0),
                 inverse = 1 / (mapping.kappa * values[0]);
    const bool inductor = id == BranchId::inductor;
    const double L = inductor ? direct : inverse, C = inductor ? inverse : direct;
    if (inductor != shunt) {
        pieces.push_back({BranchId::lc, shunt, {L, C}});
    } else {
        pieces.push_back({BranchId::inductor, shunt, {L}});
        pieces.push_back({BranchId::capacitor, shunt, {C}});
    }
}

// The resonance p = j/sqrt(L C) comes to w1 and w2, with w1 w2 = w0^2 and w2 - w1 = kappa sqrt(L C) = 2 h. In series
// the impedance p L/(p^2 L C + 1) is the sum of two such, r_i s/(s^2 + w_i^2); across the rails admittances, with C for
// L.
Refusal map_pair(const Mapping& mapping, const NewBranch& pair, Pieces& pieces) {
    const double L = pair.values[0], C = pair.values[1];
    if (!(L * C > 0)) return complex_quad;
    const double h = mapping.kappa * std::sqrt(L * C) / 2, mean = std::hypot(mapping.w0, h);
    const double upper = mean + h, lower = mapping.w0 / upper * mapping.w0;
    for (const double w : {lower, upper}) {
        const double r = mapping.kappa * (pair.shunt ? C : L) * w / (lower + upper);
        const double inverse = 1 / r, direct = r / (w * w);
        pieces.push_back({BranchId::lc, pair.shunt, {pair.shunt ? inverse : direct, pair.shunt ? direct : inverse}});
    }
    return {};
}

// A mode p gives the roots of s^2 - (kappa/p) s + w0^2; modes are held by the normalisation frequency. Beyond what the
// table holds they are not known.
void map_modes(Circuit& circuit, const Mapping& mapping, double former_fnorm) {
    const int count = circuit.mode_count;
    const auto re = circuit.MODE_RE, im = circuit.MODE_IM;
    circuit.mode_count = 0;
    if (2 * count > max_natural_modes || circuit.kind != CircuitKind::lumped) return;
    const double former = variable(circuit, former_fnorm), unit = variable(circuit, circuit.fnorm);
    // Conjugates stay beside each other, in the order of their modes.
    for (int i = 1; i <= count; ++i) {
        const std::complex<double> half = mapping.kappa / (2 * former * std::complex(re(i), im(i)));
        const auto root = std::sqrt(half * half - mapping.w0 * mapping.w0);
        const bool real = im(i) == 0;
        const bool pair = real && half.real() * half.real() < mapping.w0 * mapping.w0;
        for (const double sign : {1.0, -1.0}) {
            std::complex<double> s = half + sign * root;
            if (pair) s = {half.real(), sign * std::fabs(root.imag())};
            circuit.MODE_RE(++circuit.mode_count) = s.real() / unit;
            circuit.MODE_IM(circuit.mode_count) = s.imag() / unit;
        }
    }
}

}  // namespace

}  // namespace kavrel
