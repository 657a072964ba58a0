// The equations of a network by its nodes, in wide complex numbers: what tests compare analyses with. Shares nothing
// with the product.
//
// Node 0 is ground; others are any numbers that an element names. Sources of voltage, transformers and two-ports have
// currents, which are unknowns, too.
#pragma once

#include <complex>
#include <map>
#include <vector>

#include <Eigen/LU>

namespace kavrel {

using LongComplex = std::complex<long double>;

class NodalEquations {
public:
    void admittance(int i, int j, LongComplex y) { add(i, i, y), add(j, j, y), add(i, j, -y), add(j, i, -y); }

    // A source of this current into node i.
    void current(int i, LongComplex amperes) { rights_[i] += amperes; }

    // A source of this voltage behind a resistor; the number of its current into node i.
    int voltage(int i, LongComplex volts, long double resistance) {
        const int j = branch(0, i);
        add(j, j, -resistance);
        rights_[j] = -volts;
        return j;
    }

    // Ideal: V(c, d) = ratio V(a, b).
    void transformer(int a, int b, int c, int d, long double ratio) {
        const int i = current_unknown();  // into c, out of d
        add(c, i, 1), add(d, i, -1), add(a, i, -ratio), add(b, i, ratio);
        add(i, c, 1), add(i, d, -1), add(i, a, -ratio), add(i, b, ratio);
    }

    // Ports a, b and c, d: V1 = z11 I1 + z12 I2, V2 = z12 I1 + z22 I2.
    void two_port(int a, int b, int c, int d, LongComplex z11, LongComplex z12, LongComplex z22) {
        const int i1 = branch(a, b), i2 = branch(c, d);
        add(i1, i1, -z11), add(i2, i2, -z22), add(i1, i2, -z12), add(i2, i1, -z12);
    }

    // Voltages of nodes and currents of branches, by their numbers.
    std::map<int, LongComplex> solution() const {
        std::map<int, Eigen::Index> places;
        const auto place_of = [&](int unknown) { return places.emplace(unknown, places.size()).first->second; };
        for (const Entry& e : entries_) place_of(e.row), place_of(e.column);
        const auto n = static_cast<Eigen::Index>(places.size());
        Matrix A = Matrix::Zero(n, n);
        for (const Entry& e : entries_) A(places.at(e.row), places.at(e.column)) += e.value;
        Matrix b = Matrix::Zero(n, 1);
        for (const auto& [unknown, value] : rights_) {
            if (places.contains(unknown)) b(places.at(unknown), 0) = value;
        }
        // With both pivots: a part without a tie to ground may lie at any voltage, and lies at 0.
        const Matrix x = Eigen::FullPivLU<Matrix>(A).solve(b);
        std::map<int, LongComplex> found;
        for (const auto& [unknown, place] : places) found[unknown] = x(place, 0);
        return found;
    }

private:
    using Matrix = Eigen::Matrix<LongComplex, Eigen::Dynamic, Eigen::Dynamic>;
    struct Entry {
        int row, column;
        LongComplex value;
    };

    int current_unknown() { return --last_current_; }
    int branch(int i, int j) {
        const int current = current_unknown();
        add(i, current, 1), add(j, current, -1);
        add(current, i, 1), add(current, j, -1);
        return current;
    }
    void add(int row, int column, LongComplex value) {
        if (row != 0 && column != 0) entries_.push_back({row, column, value});
    }

    int last_current_ = 0;  // currents are numbered down from -1
    std::vector<Entry> entries_;
    std::map<int, LongComplex> rights_;
};

}  // namespace kavrel
