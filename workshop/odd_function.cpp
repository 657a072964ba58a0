#include "workshop/odd_function.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace kavrel {

namespace {

using Nodes = std::vector<int>;

Polynomial times_p(const Polynomial& a);
Polynomial determinant(const std::vector<Polynomial>& m, int nodes, const Nodes& rows, const Nodes& columns);

}  // namespace

Polynomial operator+(const Polynomial& a, const Polynomial& b) {
    Polynomial sum = a;
    sum.resize(std::max(a.size(), b.size()));
    for (std::size_t i = 0; i < b.size(); ++i) sum[i] += b[i];
    return sum;
}

Polynomial operator-(const Polynomial& a, const Polynomial& b) { return a + -1 * b; }

Polynomial operator*(const Polynomial& a, const Polynomial& b) {
    if (a.empty() || b.empty()) return {};
    Polynomial product(a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); ++i) {
        for (std::size_t j = 0; j < b.size(); ++j) product[i + j] += a[i] * b[j];
    }
    return product;
}

Polynomial operator*(long double factor, const Polynomial& a) {
    Polynomial product = a;
    for (long double& coefficient : product) coefficient *= factor;
    return product;
}

OddFunction operator+(const OddFunction& a, const OddFunction& b) {
    return {a.numerator * b.denominator + b.numerator * a.denominator, a.denominator * b.denominator};
}

OddFunction reciprocal(const OddFunction& f) { return {f.denominator, times_p(f.numerator)}; }

OddFunction parallel(const OddFunction& a, const OddFunction& b) {
    return {a.numerator * b.numerator, a.numerator * b.denominator + b.numerator * a.denominator};
}

// s^2 is p. The common denominator is kept at a size of 1.
ReactanceChain operator*(const ReactanceChain& x, const ReactanceChain& y) {
    ReactanceChain product{.a = x.a * y.a + times_p(x.b * y.c),
                           .b = x.a * y.b + x.b * y.d,
                           .c = x.c * y.a + x.d * y.c,
                           .d = times_p(x.c * y.b) + x.d * y.d,
                           .n = x.n * y.n};
    long double largest = 0;
    for (const long double coefficient : product.n) largest = std::max(largest, std::fabs(coefficient));
    for (Polynomial* part : {&product.a, &product.b, &product.c, &product.d, &product.n}) *part = 1 / largest * *part;
    return product;
}

ReactanceChain series_chain(const OddFunction& Z) {
    return {.a = Z.denominator, .b = Z.numerator, .c = {}, .d = Z.denominator, .n = Z.denominator};
}

ReactanceChain shunt_chain(const OddFunction& Z) {
    const OddFunction Y = reciprocal(Z);
    return {.a = Y.denominator, .b = {}, .c = Y.numerator, .d = Y.denominator, .n = Y.denominator};
}

// A = D = (Zb + Za)/(Zb - Za), B = 2 Za Zb/(Zb - Za), C = 2/(Zb - Za).
ReactanceChain lattice_chain(const OddFunction& Za, const OddFunction& Zb) {
    const Polynomial a = Za.numerator * Zb.denominator, b = Zb.numerator * Za.denominator;
    return {.a = times_p(b + a),
            .b = times_p(2 * (Za.numerator * Zb.numerator)),
            .c = 2 * (Za.denominator * Zb.denominator),
            .d = times_p(b + a),
            .n = times_p(b - a)};
}

// With the inner nodes eliminated, y11, y22 and -y12 are minors over that of the inner nodes; the determinant of the
// three is the inner one times that of all.
ReactanceChain network_chain(const std::vector<Polynomial>& m, int nodes) {
    Nodes inner, load{0}, source{1}, all{0, 1};
    for (int i = 2; i < nodes; ++i) {
        for (Nodes* list : {&inner, &load, &source, &all}) list->push_back(i);
    }
    const auto minor = [&](const Nodes& rows, const Nodes& columns) { return determinant(m, nodes, rows, columns); };
    return {.a = times_p(minor(load, load)),
            .b = times_p(minor(inner, inner)),
            .c = minor(all, all),
            .d = times_p(minor(source, source)),
            .n = times_p(-1 * minor(load, source))};
}

namespace {

Polynomial times_p(const Polynomial& a) {
    Polynomial product{0};
    product.insert(product.end(), a.begin(), a.end());
    return product;
}

// By the first row.
Polynomial determinant(const std::vector<Polynomial>& m, int nodes, const Nodes& rows, const Nodes& columns) {
    if (rows.empty()) return {1};
    Polynomial sum;
    const Nodes others(rows.begin() + 1, rows.end());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Polynomial& entry = m[static_cast<std::size_t>(rows[0] * nodes + columns[i])];
        if (entry.empty()) continue;
        Nodes rest = columns;
        rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
        sum = sum + (i % 2 == 0 ? 1.0L : -1.0L) * (entry * determinant(m, nodes, others, rest));
    }
    return sum;
}

}  // namespace

}  // namespace kavrel
