// The same circuits by modified nodal analysis: every element between the nodes it is soldered to, one dense system of
// equations, solved with full precision of the long double. Shares with the chain nothing but the store.
#pragma once

#include <cmath>
#include <complex>
#include <cstddef>
#include <utility>
#include <vector>

#include "circuit/chain_analysis.h"

namespace kavrel::testing {

using LongComplex = std::complex<long double>;

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
        impedance(load, 0, R1);
        const Branch last = unpackBranch(circuit_, circuit_.klast);
        const int end = last.id == BranchId::resistor ? circuit_.klast : 0;
        int node = load;
        for (int k = unpackBranch(circuit_, 1).kn; k != end; k = unpackBranch(circuit_, k).kn) node = place(k, node);

        Answer answer;
        if (end != 0) {
            const long double R2 = circuit_.VALUE(last.i1);
            const int source = new_unknown();  // current out of 1 V behind R2
            at(node, source) -= 1;
            at(source, node) += 1;
            at(source, source) += R2;
            right(source) = 1;
            const auto x = solution();
            answer.V = x[index(node)] / x[index(load)];
            answer.I = x[index(source)] / x[index(load)];
            answer.H = std::sqrt(R1 / R2) / 2 / x[index(load)];
        } else if (circuit_.klast % 2 == 0) {
            const int source = new_unknown();
            at(node, source) -= 1;
            at(source, node) += 1;
            right(source) = 1;
            const auto x = solution();
            answer.V = 1.0L / x[index(load)];
            answer.I = x[index(source)] / x[index(load)];
            answer.H = answer.V;
        } else {
            right(node) = 1;
            const auto x = solution();
            answer.V = x[index(node)] / x[index(load)];
            answer.I = 1.0L / x[index(load)];
            answer.H = R1 * answer.I;
        }
        return answer;
    }

private:
    struct Entry {
        int row, column;
        LongComplex value;
    };

    static std::size_t index(int unknown) { return static_cast<std::size_t>(unknown - 1); }
    int new_unknown() { return ++size_; }
    int new_node() { return new_unknown(); }
    LongComplex& at(int row, int column) { return entries_.emplace_back(Entry{row, column, {}}).value; }
    LongComplex& right(int row) { return rights_.emplace_back(Entry{row, 0, {}}).value; }

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

    void admittance(int i, int j, LongComplex y) {
        at(i, i) += y;
        at(j, j) += y;
        at(i, j) -= y;
        at(j, i) -= y;
    }
    void impedance(int i, int j, LongComplex z) {
        const int current = new_unknown();
        at(i, current) += 1;
        at(j, current) -= 1;
        at(current, i) += 1;
        at(current, j) -= 1;
        at(current, current) -= z;
    }
    void R(int i, int j, double value) { impedance(i, j, static_cast<long double>(value)); }
    void L(int i, int j, double value) { impedance(i, j, immittance(value, loss_.QL)); }
    void C(int i, int j, double value) { admittance(i, j, immittance(value, loss_.QC)); }

    // The branch in slot k from `node` on towards the source; the node behind it.
    int place(int k, int node) {
        const Branch branch = unpackBranch(circuit_, k);
        const auto v = branch_values(circuit_, branch);
        if (branch_kinds[branch.id].slot_element()) {
            const bool series = k % 2 == 0;
            const int other = series ? new_node() : 0;
            slot_element(branch.id, v, node, other, series);
            return series ? other : node;
        }
        const int out = new_node();
        const int a = node;
        const int b = out;
        switch (branch.id) {
            case BranchId::bridged_l: {
                const int m = new_node();
                return L(a, m, v[0]), C(a, b, v[1]), C(m, 0, v[2]), L(m, b, v[3]), out;
            }
            case BranchId::bridged_c: {
                const int m = new_node();
                return C(a, m, v[0]), L(a, b, v[1]), L(m, 0, v[2]), C(m, b, v[3]), out;
            }
            case BranchId::bridged_c_trap: {
                const int m = new_node();
                return C(a, m, v[0]), L(a, b, v[1]), C(a, b, v[2]), L(m, 0, v[3]), C(m, b, v[4]), out;
            }
            case BranchId::bridged_l_trap: {
                const int m = new_node(), n = new_node();
                return L(a, m, v[0]), C(a, b, v[1]), L(m, n, v[2]), C(n, 0, v[3]), L(m, b, v[4]), out;
            }
            case BranchId::twin_t: {
                const int m = new_node(), n = new_node();
                L(a, m, v[0]), C(m, 0, v[2]), L(m, b, v[5]);
                return C(a, n, v[1]), L(n, 0, v[3]), C(n, b, v[4]), out;
            }
            case BranchId::twin_t_trap: {
                const int m = new_node(), n = new_node(), o = new_node();
                L(a, m, v[0]), C(m, 0, v[2]), L(m, b, v[6]);
                return C(a, n, v[1]), L(n, o, v[3]), C(o, 0, v[4]), C(n, b, v[5]), out;
            }
            case BranchId::unit_element: {
                const LongComplex z11 = static_cast<long double>(v[0]) / std::tanh(gamma());
                const LongComplex z12 = static_cast<long double>(v[0]) / std::sinh(gamma());
                const int i1 = new_unknown(), i2 = new_unknown();  // into the ports
                at(a, i1) += 1, at(b, i2) += 1;
                at(i1, a) += 1, at(i1, i1) -= z11, at(i1, i2) -= z12;
                at(i2, b) += 1, at(i2, i1) -= z12, at(i2, i2) -= z11;
                return out;
            }
            case BranchId::lattice_c:
            case BranchId::lattice_l: {
                // Four arms, the far port floating, brought to ground by an ideal transformer.
                const int p = new_node(), q = new_node();
                lattice_arm(branch.id, v.first(3), a, p), lattice_arm(branch.id, v.first(3), 0, q);
                lattice_arm(branch.id, v.last(3), a, q), lattice_arm(branch.id, v.last(3), 0, p);
                const int i = new_unknown();
                at(p, i) += 1, at(q, i) -= 1, at(b, i) -= 1;
                at(i, p) += 1, at(i, q) -= 1, at(i, b) -= 1;
                return out;
            }
            case BranchId::equalizer_a: {
                const int m = new_node(), n = new_node(), o = new_node();
                R(a, m, v[0]), R(m, b, v[0]), L(a, n, v[1]), R(a, b, v[2]), C(n, b, v[3]);
                return L(o, 0, v[4]), R(m, o, v[5]), C(o, 0, v[6]), out;
            }
            case BranchId::equalizer_b: {
                const int m = new_node(), n = new_node(), o = new_node();
                R(a, m, v[0]), R(m, b, v[0]), L(a, b, v[1]), R(a, b, v[2]), C(a, b, v[3]);
                return L(m, n, v[4]), R(n, o, v[5]), C(o, 0, v[6]), out;
            }
            case BranchId::quadruplet: {
                const Quadruplet& q = circuit_.QUADRUPLETS(branch.i1);
                const int nodes[] = {0, a, new_node(), new_node(), b};
                for (int i = 1; i <= 4; ++i) {
                    for (int j = i + 1; j <= 4; ++j) {
                        if (q.M(i, j) != 1) {
                            C(nodes[i], nodes[j], q.XC(i, j));
                        } else if (q.XK(i, j) != 0) {
                            L(nodes[i], nodes[j], 1 / q.XK(i, j));
                        }
                    }
                }
                for (int i = 2; i <= 3; ++i) {
                    if (q.YK(i) != 0) L(nodes[i], 0, 1 / q.YK(i));
                    C(nodes[i], 0, q.YC(i));
                }
                return out;
            }
            default: return triplet(branch.id, v, a, b);
        }
    }

    void slot_element(BranchId id, std::span<const double> v, int i, int j, bool series) {
        if (id == BranchId::resistor) return R(i, j, v[0]);
        if (id == BranchId::inductor) return L(i, j, v[0]);
        if (id == BranchId::capacitor) return C(i, j, v[0]);
        const int m = new_node();
        if (id == BranchId::lc) {
            if (series) return L(i, j, v[0]), C(i, j, v[1]), R(m, 0, 1);
            return L(i, m, v[0]), C(m, j, v[1]);
        }
        // L and C in series with X beside them, or side by side with X behind.
        if (series) {
            L(i, m, v[0]), C(m, j, v[1]);
        } else {
            L(i, m, v[0]), C(i, m, v[1]);
        }
        const int x = series ? i : m;
        if (id == BranchId::lcc) return C(x, j, v[2]);
        L(x, j, v[2]);
    }

    void lattice_arm(BranchId id, std::span<const double> v, int i, int j) {
        const int m = new_node();
        L(i, m, v[0]), C(m, j, v[1]);
        if (id == BranchId::lattice_c) return C(i, j, v[2]);
        L(i, j, v[2]);
    }

    int triplet(BranchId id, std::span<const double> v, int a, int b) {
        const int m = new_node();
        const auto couple = [&](bool inductive, int i, int j, double value) {
            if (!inductive) return C(i, j, value);
            if (value < 1e30) L(i, j, value);
        };
        couple(id == BranchId::triplet_lll || id == BranchId::triplet_llc || id == BranchId::triplet_lcc ||
                   id == BranchId::triplet_lcl,
               a, m, v[0]);
        couple(id <= BranchId::triplet_clc, a, b, v[1]);
        couple(true, m, 0, v[2]);
        couple(false, m, 0, v[3]);
        couple(id == BranchId::triplet_lll || id == BranchId::triplet_cll || id == BranchId::triplet_ccl ||
                   id == BranchId::triplet_lcl,
               m, b, v[4]);
        return b;
    }

    // Gaussian elimination by columns with the largest pivot of rows scaled to 1, and two steps of refinement.
    std::vector<LongComplex> solution() const {
        const auto n = static_cast<std::size_t>(size_);
        std::vector<std::vector<LongComplex>> A(n, std::vector<LongComplex>(n));
        std::vector<LongComplex> b(n);
        for (const Entry& e : entries_) {
            if (e.row != 0 && e.column != 0) A[index(e.row)][index(e.column)] += e.value;
        }
        for (const Entry& e : rights_) b[index(e.row)] += e.value;
        std::vector<LongComplex> x(n), rest = b;
        for (int pass = 0; pass < 3; ++pass) {
            const auto step = eliminate(A, rest);
            for (std::size_t i = 0; i < n; ++i) x[i] += step[i];
            for (std::size_t i = 0; i < n; ++i) {
                rest[i] = b[i];
                for (std::size_t j = 0; j < n; ++j) rest[i] -= A[i][j] * x[j];
            }
        }
        return x;
    }
    static std::vector<LongComplex> eliminate(std::vector<std::vector<LongComplex>> A, std::vector<LongComplex> b) {
        const std::size_t n = b.size();
        for (std::size_t i = 0; i < n; ++i) {
            long double largest = 0;
            for (const LongComplex& a : A[i]) largest = std::max(largest, std::abs(a));
            for (LongComplex& a : A[i]) a /= largest;
            b[i] /= largest;
        }
        for (std::size_t k = 0; k < n; ++k) {
            std::size_t best = k;
            for (std::size_t i = k + 1; i < n; ++i) {
                if (std::norm(A[i][k]) > std::norm(A[best][k])) best = i;
            }
            std::swap(A[k], A[best]);
            std::swap(b[k], b[best]);
            for (std::size_t i = k + 1; i < n; ++i) {
                if (A[i][k] == LongComplex{}) continue;
                const LongComplex factor = A[i][k] / A[k][k];
                for (std::size_t j = k + 1; j < n; ++j) A[i][j] -= factor * A[k][j];
                b[i] -= factor * b[k];
            }
        }
        for (std::size_t k = n; k-- > 0;) {
            for (std::size_t j = k + 1; j < n; ++j) b[k] -= A[k][j] * b[j];
            b[k] /= A[k][k];
        }
        return b;
    }

    const Circuit& circuit_;
    ElementLoss loss_;
    long double omega_;
    int size_ = 0;
    std::vector<Entry> entries_;
    std::vector<Entry> rights_;
};

}  // namespace kavrel::testing
