#include "workshop/band_reject.h"

#include <cmath>
#include <complex>
#include <numbers>
#include <utility>
#include <vector>

#include "circuit/branch_kinds.h"
#include "workshop/branch_rewriting.h"

namespace kavrel {

namespace {

constexpr int most_values = 50;  // of a low-pass: about twice as many come of it

constexpr std::string_view complex_quad = "Complex quad of zeros, no 'be' transformation";

// p = kappa s/(s^2 + w0^2)
struct Mapping {
    double kappa, w0;
};

// A branch of some kind, of which a slot of the right parity takes the place.
struct Piece {
    BranchId id;
    std::vector<double> values;
};
using Pieces = std::vector<Piece>;

double variable(const Circuit& circuit, double hertz);
Refusal mapped(const Mapping& mapping, const Piece& branch, bool series, Pieces& pieces);
void map_modes(Circuit& circuit, const Mapping& mapping, double former_fnorm);

}  // namespace

Refusal bandReject(Circuit& circuit, double fa, double fb) {
    if (!(fa > 0) || !(fb > 0)) return {"Zero value not permitted", fa > 0 ? "upper" : "lower"};
    if (fa > fb) std::swap(fa, fb);
    if (circuit.kind != CircuitKind::lumped && fb >= circuit.fs / 2)
        return {"Frequency specification incorrect", "upper"};
    Circuit made = circuit;
    compactValues(made);
    if (made.ilast > most_values) return "Not enough storage, no 'be' transformation";
    const double ta = variable(circuit, fa), tb = variable(circuit, fb);
    const Mapping mapping{.kappa = variable(circuit, circuit.fnorm) * (tb - ta), .w0 = std::sqrt(ta * tb)};

    for (int k = made.klast; k != 0; k = unpackBranch(made, k).kp) {
        const Branch branch = unpackBranch(made, k);
        const auto cells = branch_values(std::as_const(made), branch);
        Pieces pieces;
        Refusal wrong = mapped(mapping, {branch.id, {cells.begin(), cells.end()}}, k % 2 == 0, pieces);
        if (!wrong.empty()) return wrong;
        for (std::size_t i = pieces.size(); i-- > 0;) {
            const auto& [id, values] = pieces[i];
            const auto verdict = i == 0 ? replace_branch(made, k, id, values) : insert_behind(made, k, id, values);
            if (verdict != CircuitVerdict::done) return "Insertion error, circuit destroyed";
        }
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

void map_element(const Mapping& mapping, BranchId id, double value, bool series, Pieces& pieces);
Refusal map_pair(const Mapping& mapping, double L, double C, bool series, Pieces& pieces);
std::pair<Piece, Piece> pair_and_element(const Piece& branch, bool series);

Refusal mapped(const Mapping& mapping, const Piece& branch, bool series, Pieces& pieces) {
    const auto& [id, values] = branch;
    switch (id) {
        case BranchId::resistor: pieces.push_back(branch); return {};
        case BranchId::inductor:
        case BranchId::capacitor: map_element(mapping, id, values[0], series, pieces); return {};
        case BranchId::lc: return map_pair(mapping, values[0], values[1], series, pieces);
        case BranchId::lcc:
        case BranchId::lcl: {
            const auto [pair, element] = pair_and_element(branch, series);
            map_element(mapping, element.id, element.values[0], series, pieces);
            return map_pair(mapping, pair.values[0], pair.values[1], series, pieces);
        }
        case BranchId::unit_element: return "Unit element, no 'be' transformation";
        default: return complex_quad;
    }
}

// p L is a pair in parallel, p C the admittance of one in series; in the other slot these are two branches.
void map_element(const Mapping& mapping, BranchId id, double value, bool series, Pieces& pieces) {
    const double direct = mapping.kappa * value / (mapping.w0 * mapping.w0), inverse = 1 / (mapping.kappa * value);
    const bool inductor = id == BranchId::inductor;
    const double L = inductor ? direct : inverse, C = inductor ? inverse : direct;
    if (inductor == series) {
        pieces.push_back({BranchId::lc, {L, C}});
    } else {
        pieces.push_back({BranchId::inductor, {L}});
        pieces.push_back({BranchId::capacitor, {C}});
    }
}

// The resonance p = j/sqrt(L C) comes to w1 and w2, with w1 w2 = w0^2 and w2 - w1 = kappa sqrt(L C) = 2 h. In series
// the impedance p L/(p^2 L C + 1) is the sum of two such, r_i s/(s^2 + w_i^2); across the rails admittances, with C for
// L.
Refusal map_pair(const Mapping& mapping, double L, double C, bool series, Pieces& pieces) {
    if (!(L * C > 0)) return complex_quad;
    const double h = mapping.kappa * std::sqrt(L * C) / 2, mean = std::hypot(mapping.w0, h);
    const double upper = mean + h, lower = mapping.w0 / upper * mapping.w0;
    for (const double w : {lower, upper}) {
        const double r = mapping.kappa * (series ? L : C) * w / (lower + upper);
        const double inverse = 1 / r, direct = r / (w * w);
        pieces.push_back({BranchId::lc, series ? std::vector{direct, inverse} : std::vector{inverse, direct}});
    }
    return {};
}

// A branch of three elements is a pair and an element beside it in a slot of the same parity. With X the element by
// itself, Y its like in the pair and F the other one: where what X and Y have in common is X alone, at the frequency at
// which the pair says nothing, the sum of X and Y is the element.
std::pair<Piece, Piece> pair_and_element(const Piece& branch, bool series) {
    const bool capacitor = branch.id == BranchId::lcc;
    const double X = branch.values[2];
    const double like = branch.values[capacitor ? 1 : 0], other = branch.values[capacitor ? 0 : 1];
    const bool summed = capacitor == series;
    const double element = summed ? like + X : like * X / (X + like);
    const double new_like = summed ? element * X / like : X - element;
    const double share = summed ? element / (element + new_like) : X / new_like;
    const double new_other = other * share * share;
    return {{BranchId::lc, capacitor ? std::vector{new_other, new_like} : std::vector{new_like, new_other}},
            {capacitor ? BranchId::capacitor : BranchId::inductor, {element}}};
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
