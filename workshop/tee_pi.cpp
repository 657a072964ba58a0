#include "workshop/tee_pi.h"

#include <cmath>
#include <vector>

#include "workshop/scaling.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr std::string_view no_tee_or_pi = "There is no appropriate tee or pi at indicated location";
constexpr double vanishes = 1e-8;  // relative to the element that it takes the place of

struct Three {
    int first = 0, middle = 0, last = 0;
    BranchId id{};  // of the ends
    bool pi = false;
    bool resonant = false;
};
struct Written {
    std::vector<NewBranch> branches;  // none: there is no such circuit
    double behind = 1;                // factor of the impedances behind them
};
bool find_three(const Circuit& circuit, int k, Three& three);
Written turned(const Circuit& circuit, const Three& three);
Written moved(const Circuit& circuit, const Three& three, TeePiEnd end);

}  // namespace

bool has_resonant_middle(const Circuit& circuit, int k) {
    Three three;
    return find_three(circuit, k, three) && three.resonant;
}

Refusal teePi(Circuit& circuit, int& k, TeePiEnd end) {
    if (!branchExists(circuit, k) || k == 1 || k == circuit.klast)
        return {message_of(CircuitVerdict::no_branch), "branch"};
    Three three;
    if (!find_three(circuit, k, three)) return {no_tee_or_pi, "branch"};
    const Written made = three.resonant ? moved(circuit, three, end) : turned(circuit, three);
    if (made.branches.empty()) return {no_tee_or_pi, "branch"};
    Circuit edited = circuit;
    const auto behind = replace_section(edited, three.first, three.last, made.branches);
    if (!behind) return {"Storage is full"};
    if (!is_driven_as(circuit, edited)) return {no_tee_or_pi, "branch"};
    if (*behind != 0) scale(edited, made.behind, 1, *behind);
    k = unpackBranch(edited, unpackBranch(circuit, three.first).kp).kn;
    circuit = edited;
    return {};
}

namespace {

bool find_three(const Circuit& circuit, int k, Three& three) {
    if (!branchExists(circuit, k)) return false;
    const int middle = unpackBranch(circuit, k).kn;
    const int last = middle == 0 ? 0 : unpackBranch(circuit, middle).kn;
    if (last == 0 || (middle - k) % 2 == 0 || (last - k) % 2 != 0) return false;
    const BranchId id = unpackBranch(circuit, k).id, among = unpackBranch(circuit, middle).id;
    three = {k, middle, last, id, k % 2 != 0, among == BranchId::lc};
    return is_plain(id) && unpackBranch(circuit, last).id == id && (among == id || three.resonant);
}

double value_of(const Circuit& circuit, int k, std::size_t cell = 0) {
    return branch_values(circuit, unpackBranch(circuit, k))[cell];
}

// By the impedances at s of the three, or at 1/s of capacitors.
Written turned(const Circuit& circuit, const Three& three) {
    const auto impedance = [&](int k) { return coefficient(three.id, false, value_of(circuit, k)); };
    const double a = impedance(three.first), c = impedance(three.middle), b = impedance(three.last);
    std::vector<NewBranch> branches;
    // Too small an impedance in series is left out, and too small an admittance across the rails.
    const auto write = [&](bool shunt, double of, double reference) {
        const double share = shunt ? reference / of : of / reference;
        if (std::fabs(share) > vanishes) branches.push_back({three.id, shunt, {coefficient(three.id, false, of)}});
    };
    if (three.pi) {
        const double s = a + b + c;
        if (!(std::fabs(s) > vanishes * std::fabs(a))) return {};
        write(false, a * c / s, c);
        write(true, a * b / s, a);
        write(false, b * c / s, c);
    } else {
        const double s = a * b / c + a + b;
        if (!(std::fabs(s) > vanishes * std::fabs(a))) return {};
        write(true, s * c / b, c);
        write(false, s, a);
        write(true, s * c / a, c);
    }
    return {branches};
}

// By the coefficients of the node matrix of a pi, or of the mesh matrix of a tee, those of the ends' kind and that of
// the other one: port 2 gets n times its voltage, or current.
Written moved(const Circuit& circuit, const Three& three, TeePiEnd end) {
    const BranchId id = three.id, other = opposite(id);
    const bool inductive = id == BranchId::inductor;
    const double a = coefficient(id, three.pi, value_of(circuit, three.first));
    const double b = coefficient(id, three.pi, value_of(circuit, three.last));
    const double c = coefficient(id, three.pi, value_of(circuit, three.middle, inductive ? 0 : 1));
    const double o = coefficient(other, three.pi, value_of(circuit, three.middle, inductive ? 1 : 0));
    const double n = end == TeePiEnd::load ? 1 + a / c : c / (b + c);
    if (!(n > 0) || !std::isfinite(n)) return {};  // behind them all would be turned over

    std::vector<NewBranch> branches;
    const auto write = [&](BranchId kind, double of, double reference) {
        if (std::fabs(of) > vanishes * std::fabs(reference))
            branches.push_back({kind, three.pi, {coefficient(kind, three.pi, of)}});
    };
    if (end == TeePiEnd::source) write(id, a + (1 - n) * c, a);
    write(other, (1 - n) * o, 0);
    const double same_part = coefficient(id, three.pi, n * c), other_part = coefficient(other, three.pi, n * o);
    branches.push_back(
        {BranchId::lc, !three.pi, {inductive ? same_part : other_part, inductive ? other_part : same_part}});
    if (end == TeePiEnd::load) write(id, n * (n * b + a), b);  // (n - 1) c = a
    write(other, n * (n - 1) * o, 0);
    return {branches, three.pi ? 1 / (n * n) : n * n};
}

}  // namespace

}  // namespace kavrel
