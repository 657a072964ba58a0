// The same circuits by their nodes: every element between the nodes it is soldered to. Shares with the chain nothing
// but the store.
#pragma once

#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <string_view>

#include "circuit/chain_analysis.h"
#include "tests/support/nodal_equations.h"

namespace kavrel::testing {

// Where the elements of a branch lie, in cell order: a letter and two nodes, a towards the load, b towards the source,
// 0 ground, others inner ones; further places of the same cell behind commas.
struct Soldering {
    BranchId id;
    std::string_view elements;
    std::string_view shunt{};  // of a slot element in an odd slot
};

inline constexpr Soldering solderings[] = {
    {BranchId::resistor, "Rab", "Ra0"},
    {BranchId::inductor, "Lab", "La0"},
    {BranchId::capacitor, "Cab", "Ca0"},
    {BranchId::lc, "Lab Cab", "Lam Cm0"},
    {BranchId::bridged_l, "Lam Cab Cm0 Lmb"},
    {BranchId::bridged_c, "Cam Lab Lm0 Cmb"},
    {BranchId::bridged_c_trap, "Cam Lab Cab Lm0 Cmb"},
    {BranchId::bridged_l_trap, "Lam Cab Lmn Cn0 Lmb"},
    {BranchId::twin_t, "Lam Can Cm0 Ln0 Cnb Lmb"},
    {BranchId::twin_t_trap, "Lam Can Cm0 Lno Co0 Cnb Lmb"},
    {BranchId::unit_element, "Zab"},
    // Four arms, the far port floating, brought to ground by an ideal transformer.
    {BranchId::lattice_c, "Lam,0n Cmp,nq Cap,0q Lar,0s Crq,sp Caq,0p Tpq"},
    {BranchId::lattice_l, "Lam,0n Cmp,nq Lap,0q Lar,0s Crq,sp Laq,0p Tpq"},
    {BranchId::lcc, "Lam Cmb Cab", "Lam Cam Cm0"},
    {BranchId::lcl, "Lam Cmb Lab", "Lam Cam Lm0"},
    {BranchId::equalizer_a, "Ram,mb Lan Rab Cnb Lo0 Rmo Co0"},
    {BranchId::equalizer_b, "Ram,mb Lab Rab Cab Lmn Rno Co0"},
    {BranchId::triplet_lll, "Lam Lab Lm0 Cm0 Lmb"},
    {BranchId::triplet_llc, "Lam Lab Lm0 Cm0 Cmb"},
    {BranchId::triplet_cll, "Cam Lab Lm0 Cm0 Lmb"},
    {BranchId::triplet_clc, "Cam Lab Lm0 Cm0 Cmb"},
    {BranchId::triplet_ccc, "Cam Cab Lm0 Cm0 Cmb"},
    {BranchId::triplet_lcc, "Lam Cab Lm0 Cm0 Cmb"},
    {BranchId::triplet_ccl, "Cam Cab Lm0 Cm0 Lmb"},
    {BranchId::triplet_lcl, "Lam Cab Lm0 Cm0 Lmb"},
};
static_assert(std::size(solderings) + 1 == branch_kind_count);  // all but the quadruplet

class NodalReference {
public:
    struct Answer {
        LongComplex V, I, H;  // as the chain has them: at the source's end for 1 V at the load
    };

    NodalReference(const Circuit& circuit, const ElementLoss& loss, long double omega)
        : circuit_(circuit), loss_(loss), omega_(omega) {}

    Answer solve() {
        const long double R1 = circuit_.VALUE(unpackBranch(circuit_, 1).i1);
        const int load = new_node();
        net_.admittance(load, 0, 1 / R1);
        const Branch last = unpackBranch(circuit_, circuit_.klast);
        const int end = last.id == BranchId::resistor ? circuit_.klast : 0;
        int node = load;
        for (int k = unpackBranch(circuit_, 1).kn; k != end; k = unpackBranch(circuit_, k).kn) node = place(k, node);

        const bool by_current = end == 0 && circuit_.klast % 2 != 0;
        const long double R2 = end != 0 ? circuit_.VALUE(last.i1) : 0;
        int source = 0;
        if (by_current) {
            net_.current(node, 1);
        } else {
            source = net_.voltage(node, 1, R2);
        }
        auto x = net_.solution();
        const LongComplex V = x[node] / x[load], I = (by_current ? 1.0L : x[source]) / x[load];
        if (end != 0) return {V, I, std::sqrt(R1 / R2) / 2 / x[load]};
        return {V, I, by_current ? R1 * I : V};
    }

private:
    int new_node() { return ++nodes_; }

    // Laws of the elements.
    LongComplex gamma() const {
        const long double theta = omega_ / (2 * static_cast<long double>(circuit_.fs));
        long double alpha = std::fabs(loss_.QL) / 34.7436L;
        if (loss_.QL < 0) alpha *= theta / (std::acos(-1.0L) / 2);
        return {alpha, theta};
    }
    LongComplex immittance(double value, double Q) const {
        const long double x = value;
        if (circuit_.kind == CircuitKind::microwave) return x * std::tanh(gamma());
        const long double omega0 = 2 * std::acos(-1.0L) * static_cast<long double>(circuit_.fnorm);
        if (Q > 0) return {omega_ * x / Q, omega_ * x};
        if (Q < 0) return {std::fabs(omega0 * x / Q), omega_ * x};
        return {0, omega_ * x};
    }

    void element(char letter, int i, int j, double value) {
        const long double x = value;
        if (letter == 'R') net_.admittance(i, j, 1 / x);
        if (letter == 'L' && value == 0) net_.two_port(i, j, 0, 0, 0, 0, 1);  // V1 = 0
        if (letter == 'L' && value != 0) net_.admittance(i, j, 1.0L / immittance(value, loss_.QL));
        if (letter == 'C') net_.admittance(i, j, immittance(value, loss_.QC));
        if (letter == 'Z')
            net_.two_port(i, 0, j, 0, x / std::tanh(gamma()), x / std::sinh(gamma()), x / std::tanh(gamma()));
    }

    // The branch in slot k from `node` on towards the source; the node behind it.
    int place(int k, int node) {
        const Branch branch = unpackBranch(circuit_, k);
        if (branch.id == BranchId::quadruplet) return quadruplet(circuit_.QUADRUPLETS(branch.i1), node);
        const Soldering& row = solderings[static_cast<std::size_t>(branch.id)];
        const bool shunt = !row.shunt.empty() && k % 2 != 0;
        std::map<char, int> nodes{{'0', 0}, {'a', node}};
        const auto number = [&](char name) { return nodes.contains(name) ? nodes[name] : nodes[name] = new_node(); };
        const auto values = branch_values(circuit_, branch);
        std::size_t cell = 0;
        std::istringstream elements{std::string(shunt ? row.shunt : row.elements)};
        for (std::string text; elements >> text; ++cell) {
            for (std::size_t at = 1; at < text.size(); at += 3) {
                const int i = number(text[at]), j = number(text[at + 1]);
                if (text[0] == 'T') {
                    net_.transformer(i, j, number('b'), 0, 1);
                } else if (text[0] != 'L' || values[cell] < 1e30) {  // a triplet leaves out what is as large
                    element(text[0], i, j, values[cell]);
                }
            }
        }
        return shunt ? node : number('b');
    }

    int quadruplet(const Quadruplet& q, int node) {
        const int nodes[] = {0, node, new_node(), new_node(), new_node()};
        for (int i = 1; i <= 4; ++i) {
            for (int j = i + 1; j <= 4; ++j) {
                if (q.M(i, j) != 1) {
                    element('C', nodes[i], nodes[j], q.XC(i, j));
                } else if (q.XK(i, j) != 0) {
                    element('L', nodes[i], nodes[j], 1 / q.XK(i, j));
                }
            }
        }
        for (int i = 2; i <= 3; ++i) {
            if (q.YK(i) != 0) element('L', nodes[i], 0, 1 / q.YK(i));
            element('C', nodes[i], 0, q.YC(i));
        }
        return nodes[4];
    }

    const Circuit& circuit_;
    ElementLoss loss_;
    long double omega_;
    int nodes_ = 0;
    NodalEquations net_;
};

}  // namespace kavrel::testing
