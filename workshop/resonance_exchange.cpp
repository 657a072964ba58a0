#include "workshop/resonance_exchange.h"

#include <algorithm>
#include <cmath>

#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr double equal_share = 1e-10;  // of resonances that are equal
constexpr std::string_view impossible = "Operation not possible";

Refusal refusal(const Circuit& circuit, int k1, int k2);
std::array<NewBranch, 5> exchanged(const Circuit& circuit, int k1, int k2);
bool is_sound(const std::array<NewBranch, 5>& section);

}  // namespace

Refusal exchangeResonant(Circuit& circuit, int k1, int k2) {
    if (k1 > k2) std::swap(k1, k2);
    if (Refusal wrong = refusal(circuit, k1, k2); !wrong.empty()) return wrong;
    const auto section = exchanged(circuit, k1, k2);
    if (!is_sound(section)) return {impossible, "branch1"};
    Circuit edited = circuit;
    if (!replace_section(edited, k1, k2, section)) return {"Storage is full"};
    if (!is_driven_as(circuit, edited)) return {impossible, "branch1"};
    circuit = edited;
    return {};
}

namespace {

Refusal refusal(const Circuit& circuit, int k1, int k2) {
    for (const int k : {k1, k2}) {
        if (k1 == k2 || !branchExists(circuit, k)) return {nothing_to_exchange, "branch1"};
    }
    for (const int k : {k1, k2}) {
        if (unpackBranch(circuit, k).id != BranchId::lc) return {"Branches are not resonant", "branch1"};
    }
    if ((k2 - k1) % 2 != 0) return {impossible, "branch1"};
    const int middle = unpackBranch(circuit, k1).kn;
    if (middle == k2) return {"Use the 'interchange branch' option instead", "branch1"};
    const Branch among = unpackBranch(circuit, middle);
    if (among.kn != k2) return {"Too many branches in between", "branch1"};
    if (!is_plain(among.id)) return {"Take dual first, then repeat", "branch1"};
    if ((middle - k1) % 2 == 0) return {"Use the 'interchange branch' option instead", "branch1"};
    const auto a = branch_values(circuit, unpackBranch(circuit, k1)),
               b = branch_values(circuit, unpackBranch(circuit, k2));
    const double p1 = a[0] * a[1], p2 = b[0] * b[1];
    if (std::fabs(p1 - p2) <= equal_share * std::fabs(p1)) return {"No change", "branch1"};
    return {};
}

// Two branches in series are admittances between the nodes 1, 2, 3, the middle one lies from node 2 to ground; across
// the rails they are impedances between meshes. In both matrices, that of s and that of 1/s, whichever the middle one m
// is in (p) and the other one (o), the inner voltage, or current, becomes alpha v1 + beta v2 + gamma v3, with a sum of
// 1, such that again nothing couples 1 and 3:
//
//     o1/alpha + o2/gamma = o1 + o2,    p1/alpha + p2/gamma = p1 + p2 + m,
//
// which has one solution beside the former circuit. The middle element is parted as 1 is, and the branches change
// places.
std::array<NewBranch, 5> exchanged(const Circuit& circuit, int k1, int k2) {
    const Branch among = unpackBranch(circuit, unpackBranch(circuit, k1).kn);
    const bool shunt = k1 % 2 != 0, admittances = !shunt;
    const BranchId id = among.id;
    const std::size_t cell = id == BranchId::inductor ? 0 : 1;
    const auto values = [&](int k) { return branch_values(circuit, unpackBranch(circuit, k)); };
    const auto part = [&](int k, std::size_t of) {
        return coefficient(of == 0 ? BranchId::inductor : BranchId::capacitor, admittances, values(k)[of]);
    };
    const double p1 = part(k1, cell), o1 = part(k1, 1 - cell), p2 = part(k2, cell), o2 = part(k2, 1 - cell);
    const double m = coefficient(id, admittances, circuit.VALUE(among.i1)) / (o1 * p2 - o2 * p1);
    const double u = o2 * m, v = o1 * m;
    const double alpha = 1 / (1 - u), gamma = 1 / (1 + v), beta = -(1 + u * v) * alpha * gamma;

    const auto resonant = [&](int k, double factor) {
        const auto cells = values(k);
        if (admittances) return NewBranch{BranchId::lc, shunt, {cells[0] / factor, cells[1] * factor}};
        return NewBranch{BranchId::lc, shunt, {cells[0] * factor, cells[1] / factor}};
    };
    const auto element = [&](double share) {
        const double value = circuit.VALUE(among.i1);
        return NewBranch{id, !shunt, {(id == BranchId::capacitor) == admittances ? value * share : value / share}};
    };
    return {element(alpha), resonant(k2, (1 + u * v) * alpha * alpha), element(beta),
            resonant(k1, (1 + u * v) * gamma * gamma), element(gamma)};
}

bool is_sound(const std::array<NewBranch, 5>& section) {
    return std::ranges::all_of(section, [](const NewBranch& branch) {
        const bool pair = branch.id == BranchId::lc;
        return std::isfinite(branch.values[0]) && branch.values[0] != 0 && std::isfinite(branch.values[1]) &&
               (branch.values[1] != 0) == pair;
    });
}

}  // namespace

}  // namespace kavrel
