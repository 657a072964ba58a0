#include "approximation/impulse_invariance.h"

#include <algorithm>
#include <cmath>

#include "numeric/polynomial_roots.h"

namespace kavrel {

namespace {

// One term r/(1 - z^-1 root) of the sum, of a pair with that of its conjugate.
template <class Real>
struct Term {
    Complex<Real> residue;
    Complex<Real> root;
    bool pair = false;
};

template <class Real>
bool numerator(const HalfRoots& zeros, const HalfRoots& poles, double level, Wide edge_angle,
               std::vector<LongReal>& coefficients);

}  // namespace

bool impulseInvariantNumerator(const HalfRoots& zeros, const HalfRoots& poles, double level, Wide edge_angle,
                               HalfRoots& digital_zeros, Wide& multiplier) {
    std::vector<LongReal> coefficients;
    if (!numerator<LongReal>(zeros, poles, level, edge_angle, coefficients) &&
        !numerator<LongestReal>(zeros, poles, level, edge_angle, coefficients)) {
        return false;
    }
    std::vector<Complex<LongReal>> roots;
    if (!polynomial_roots(coefficients, roots)) return false;
    multiplier = rounded(coefficients.front());
    digital_zeros.clear();
    for (const auto& root : roots) digital_zeros.push_back({.root = rounded(root), .pair = root.im != 0});
    return true;
}

namespace {

template <class Real>
std::vector<Complex<Real>> complete(const HalfRoots& halves) {
    std::vector<Complex<Real>> roots;
    for (const HalfRoot& half : halves) {
        roots.push_back({Real(half.root.re), Real(half.root.im)});
        if (half.pair) roots.push_back(conjugate(roots.back()));
    }
    return roots;
}

template <class Real>
Complex<Real> quotient(const Complex<Real>& n, const Complex<Real>& d) {
    const Real square = d.re * d.re + d.im * d.im;
    return {(n.re * d.re + n.im * d.im) / square, (n.im * d.re - n.re * d.im) / square};
}

// Residues at the poles, of a pair at its first member: level prod(pole - zero)/prod(pole - other pole).
template <class Real>
std::vector<Term<Real>> partial_fractions(const HalfRoots& zeros, const HalfRoots& poles, double level,
                                          Wide edge_angle) {
    const auto z = complete<Real>(zeros);
    auto p = complete<Real>(poles);
    for (std::size_t i = 0; i < p.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (p[j] == p[i]) p[i] = Real(1 + Real(1e-30L) * static_cast<int>(i)) * p[i];
        }
    }
    std::vector<Term<Real>> terms;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const bool pair = p[i].im != 0;
        Complex<Real> residue{Real(level), 0};
        for (const auto& zero : z) residue *= p[i] - zero;
        for (std::size_t j = 0; j < p.size(); ++j) {
            if (j != i) residue = quotient(residue, p[i] - p[j]);
        }
        const Real angle = p[i].im * Real(edge_angle);
        const Real radius = exp(p[i].re * Real(edge_angle));
        terms.push_back({.residue = residue, .root = {radius * cos(angle), radius * sin(angle)}, .pair = pair});
        if (pair) ++i;
    }
    return terms;
}

// h(0) to h(last), and below each value the sum of the magnitudes of its terms.
template <class Real>
struct Response {
    std::vector<Real> h;
    std::vector<Real> terms;
};
template <class Real>
Response<Real> impulse_response(std::vector<Term<Real>> terms, const Real& constant, Wide edge_angle, int last) {
    Response<Real> response;
    for (int n = 0; n <= last; ++n) {
        Real sum = 0, magnitudes = 0;
        for (Term<Real>& term : terms) {
            sum += term.pair ? 2 * term.residue.re : term.residue.re;
            magnitudes += 2 * (abs(term.residue.re) + abs(term.residue.im));
            term.residue *= term.root;
        }
        response.h.push_back(sum * Real(edge_angle) + (n == 0 ? constant : Real(0)));
        response.terms.push_back(magnitudes * Real(edge_angle) + abs(constant));
    }
    return response;
}

// Coefficients of prod(1 - root z^-1), ascending powers of z^-1.
template <class Real>
std::vector<Real> denominator(const std::vector<Term<Real>>& terms) {
    std::vector<Real> d{Real(1)};
    for (const Term<Real>& term : terms) {
        const Real c1 = term.pair ? Real(-2 * term.root.re) : Real(-term.root.re);
        const Real c2 = term.pair ? Real(term.root.re * term.root.re + term.root.im * term.root.im) : Real(0);
        d.resize(d.size() + (term.pair ? 2 : 1), Real(0));
        for (std::size_t k = d.size() - 1; k >= 1; --k) {
            d[k] += c1 * d[k - 1];
            if (k >= 2) d[k] += c2 * d[k - 2];
        }
    }
    return d;
}

// The numerator is the response times the denominator. Its ends hang together by sums that nearly vanish: false when
// this type has not the digits for them.
template <class Real>
bool numerator(const HalfRoots& zeros, const HalfRoots& poles, double level, Wide edge_angle,
               std::vector<LongReal>& coefficients) {
    const int zero_count = count_of(zeros), degree = count_of(poles);
    const Real constant = zero_count == degree ? Real(level) : Real(0);
    const auto terms = partial_fractions<Real>(zeros, poles, level, edge_angle);
    const auto d = denominator(terms);
    const int first = zero_count <= degree - 2 ? 1 : 0;
    const int last = zero_count == degree ? degree : degree - 1;
    const auto response = impulse_response(terms, constant, edge_angle, last);

    const Real rounding = 1e20 * pow(Real(10), -std::numeric_limits<Real>::digits10);
    coefficients.clear();
    for (int k = first; k <= last; ++k) {
        Real sum = 0, magnitudes = 0;
        for (int j = 0; j <= k; ++j) {
            const auto a = static_cast<std::size_t>(j), b = static_cast<std::size_t>(k - j);
            sum += d[a] * response.h[b];
            magnitudes += abs(d[a]) * response.terms[b];
        }
        if ((k == first || k == last) && !(abs(sum) > rounding * magnitudes)) return false;
        coefficients.push_back(LongReal(sum));
    }
    return true;
}

}  // namespace

}  // namespace kavrel
