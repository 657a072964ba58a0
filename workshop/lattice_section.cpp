#include "workshop/lattice_section.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "circuit/branch_elements.h"
#include "circuit/branch_kinds.h"
#include "workshop/odd_function.h"
#include "workshop/scaling.h"

namespace kavrel {

namespace {

constexpr std::string_view inappropriate = "Inappropriate branches specified";
constexpr double equal_neighbours = 1e-6;  // relative difference of two of which nothing is left
constexpr long double rounding = 1e-10L;   // relative size of what is left where terms cancel

// L = 1 and C = 1 in its units are about those of the section.
struct Scale {
    long double inductance = 1, capacitance = 1;
};

struct Arms {
    BranchId id;
    std::array<double, 6> values;
};

bool is_section(const Circuit& circuit, int k1, int k2);
Scale scale_of(const Circuit& circuit, int k1, int k2);
std::optional<ReactanceChain> chain_of(const Circuit& circuit, int k1, int k2, const Scale& scale);
std::optional<long double> constant_quotient(const Polynomial& a, const Polynomial& b);
std::optional<Arms> arms_of(const ReactanceChain& chain, long double n, const Scale& scale);
void include(std::span<double> arm, double x, bool capacitive, bool series);

}  // namespace

// With A/D = n^2 the section is a symmetrical one and, towards the source, a transformer of n.
Refusal toLattice(Circuit& circuit, int k1, int k2, int& k) {
    if (circuit.kind != CircuitKind::lumped) return no_lattice;
    if (k1 > k2) std::swap(k1, k2);
    if (!is_section(circuit, k1, k2)) return {no_lattice_section, "branch1"};
    const Scale scale_of_section = scale_of(circuit, k1, k2);
    const auto chain = chain_of(circuit, k1, k2, scale_of_section);
    if (!chain) return {inappropriate, "branch1"};
    const auto ratio = constant_quotient(chain->a, chain->d);
    if (!ratio || !(*ratio > 0)) return {inappropriate, "branch1"};
    const auto arms = arms_of(*chain, std::sqrt(*ratio), scale_of_section);
    if (!arms) return {inappropriate, "branch1"};

    Circuit made = circuit;
    for (int branch = k1; branch != 0 && branch <= k2;) {
        if (deleteBranch(made, branch) != CircuitVerdict::done) return {inappropriate, "branch1"};
    }
    // At the end of the chain the parity says how the circuit is driven.
    k = k1 + std::abs(k2 - k1) % 2;
    if (const auto verdict = insert_values(made, k, arms->id, arms->values); verdict != CircuitVerdict::done)
        return message_of(verdict);
    if (std::fabs(*ratio - 1) > rounding) scale(made, static_cast<double>(1 / *ratio), 1, k + 1);
    circuit = made;
    return {};
}

Refusal includeIntoLattice(Circuit& circuit, int k) {
    if (!branchExists(circuit, k)) return {no_such_section, "branch"};
    const Branch lattice = unpackBranch(circuit, k);
    if (branch_kinds[lattice.id].structure != Structure::lattice) return {"Section is not a lattice", "branch"};
    const bool capacitive = lattice.id == BranchId::lattice_c;
    const auto fits = [&](int neighbour) {
        return branchExists(circuit, neighbour) &&
               unpackBranch(circuit, neighbour).id == (capacitive ? BranchId::capacitor : BranchId::inductor);
    };
    if (!fits(lattice.kp) || !fits(lattice.kn) || (lattice.kn - lattice.kp) % 2 != 0)
        return {no_such_section, "branch"};

    Circuit made = circuit;
    const auto value = [&](int branch) -> double& { return made.VALUE(unpackBranch(made, branch).i1); };
    const bool series = lattice.kp % 2 == 0;
    const auto common = [&](double x) { return capacitive == series ? 1 / x : x; };  // and back
    const auto [least, other] =
        std::minmax({lattice.kp, lattice.kn}, [&](int a, int b) { return common(value(a)) < common(value(b)); });
    const double x = value(least), rest = common(value(other)) - common(x);
    const auto arms = branch_values(made, lattice);
    for (const auto arm : {arms.first(3), arms.last(3)}) include(arm, x, capacitive, series);
    const bool both = std::fabs(rest) <= equal_neighbours * std::fabs(common(x));
    if (!both) value(other) = common(rest);
    for (int branch : {std::max(least, other), std::min(least, other)}) {
        if ((branch == least || both) && deleteBranch(made, branch) != CircuitVerdict::done)
            return {no_such_section, "branch"};
    }
    circuit = made;
    return {};
}

namespace {

using Coefficients = std::array<long double, 4>;  // (a + b p)/(c + d p)

ReactanceChain branch_chain(const Circuit& circuit, int k, const Scale& scale);
OddFunction slot_impedance(const BranchKind& kind, const BranchElements& elements, bool series, const Scale& scale);
std::optional<Coefficients> reduced(const Polynomial& numerator, const Polynomial& denominator);
Polynomial difference(const Polynomial& a, const Polynomial& b);

// Branches of the chain between the terminations.
bool is_section(const Circuit& circuit, int k1, int k2) {
    if (k1 < 2 || !branchExists(circuit, k1) || !branchExists(circuit, k2)) return false;
    for (int k = k1; k != 0 && k <= k2; k = unpackBranch(circuit, k).kn) {
        if (k == circuit.klast && unpackBranch(circuit, k).id == BranchId::resistor) return false;
    }
    return true;
}

// Geometric means; where there is but one kind, the other is 1 over it.
Scale scale_of(const Circuit& circuit, int k1, int k2) {
    long double sum_l = 0, sum_c = 0;
    int count_l = 0, count_c = 0;
    for (int k = k1; k != 0 && k <= k2; k = unpackBranch(circuit, k).kn) {
        const BranchElements elements = branch_elements(circuit, unpackBranch(circuit, k));
        for (const Element& element : std::span(elements.cells).first(static_cast<std::size_t>(elements.count))) {
            if (!element.present || element.value == 0 || std::fabs(element.value) >= absent_inductor) continue;
            const long double logarithm = std::log(std::fabs(static_cast<long double>(element.value)));
            if (element.letter == 'L') sum_l += logarithm, ++count_l;
            if (element.letter == 'C') sum_c += logarithm, ++count_c;
        }
    }
    const long double L = count_l > 0 ? std::exp(sum_l / count_l) : 0, C = count_c > 0 ? std::exp(sum_c / count_c) : 0;
    return {.inductance = L > 0 ? L : 1 / C, .capacitance = C > 0 ? C : 1 / L};
}

std::optional<ReactanceChain> chain_of(const Circuit& circuit, int k1, int k2, const Scale& scale) {
    ReactanceChain chain;
    for (int k = k1; k != 0 && k <= k2; k = unpackBranch(circuit, k).kn) {
        if (branch_kinds[unpackBranch(circuit, k).id].cells.find_first_of("RZ") != std::string_view::npos)
            return std::nullopt;
        chain = branch_chain(circuit, k, scale) * chain;
    }
    return chain;
}

OddFunction impedance_of(const Element& element, const Scale& scale) {
    const long double value = element.value;
    if (element.letter == 'L') return {{value / scale.inductance}};
    return reciprocal({{value / scale.capacitance}});
}

ReactanceChain branch_chain(const Circuit& circuit, int k, const Scale& scale) {
    const Branch branch = unpackBranch(circuit, k);
    const BranchKind& kind = branch_kinds[branch.id];
    const BranchElements elements = branch_elements(circuit, branch);
    const auto& cells = elements.cells;
    if (kind.slot_element()) {
        const bool series = k % 2 == 0;
        const OddFunction Z = slot_impedance(kind, elements, series, scale);
        return series ? series_chain(Z) : shunt_chain(Z);
    }
    if (kind.structure == Structure::lattice) {
        const auto arm = [&](std::size_t i) {
            const OddFunction pair = impedance_of(cells[i], scale) + impedance_of(cells[i + 1], scale);
            const double X = cells[i + 2].value;
            if (cells[i + 1].value == 0) return impedance_of(cells[i + 2], scale);
            const bool absent = kind.cells[2] == 'C' ? X == 0 : std::fabs(X) >= absent_inductor;
            return absent ? pair : parallel(pair, impedance_of(cells[i + 2], scale));
        };
        return lattice_chain(arm(0), arm(3));
    }
    std::size_t count = 2;
    for (const Connection& place : kind.connections)
        count = std::max({count, static_cast<std::size_t>(place.from), static_cast<std::size_t>(place.to)});
    std::vector<Polynomial> m(count * count);
    for (const auto& [cell, from, to] : kind.connections) {
        const Element& element = cells[static_cast<std::size_t>(cell)];
        if (!element.present) continue;
        const long double value = element.value;
        const Polynomial y =
            element.letter == 'L' ? Polynomial{scale.inductance / value} : Polynomial{0, value / scale.capacitance};
        const auto add = [&](int i, int j, const Polynomial& part) {
            if (i == 0 || j == 0) return;
            Polynomial& entry = m[static_cast<std::size_t>(i - 1) * count + static_cast<std::size_t>(j - 1)];
            entry = entry + part;
        };
        add(from, from, y), add(to, to, y), add(from, to, -1 * y), add(to, from, -1 * y);
    }
    return network_chain(m, static_cast<int>(count));
}

// A pair lies in parallel in a series slot, in series across the rails; with a third element it is the other way round,
// that element in parallel in a series slot.
OddFunction slot_impedance(const BranchKind& kind, const BranchElements& elements, bool series, const Scale& scale) {
    const auto Z = [&](std::size_t i) { return impedance_of(elements.cells[i], scale); };
    if (kind.cells.size() == 1) return Z(0);
    if (kind.cells.size() == 2) return series ? parallel(Z(0), Z(1)) : Z(0) + Z(1);
    return series ? parallel(Z(0) + Z(1), Z(2)) : parallel(Z(0), Z(1)) + Z(2);
}

std::optional<long double> constant_quotient(const Polynomial& a, const Polynomial& b) {
    const auto place = std::ranges::max_element(b, {}, [](long double x) { return std::fabs(x); });
    const auto i = static_cast<std::size_t>(place - b.begin());
    if (b.empty() || *place == 0 || i >= a.size()) return std::nullopt;
    const long double quotient = a[i] / b[i];
    for (const long double rest : difference(a, quotient * b)) {
        if (rest != 0) return std::nullopt;
    }
    return quotient;
}

// a - b, with 0 where the two are equal but for rounding.
Polynomial difference(const Polynomial& a, const Polynomial& b) {
    Polynomial rest = a - b;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const long double size = (i < a.size() ? std::fabs(a[i]) : 0) + (i < b.size() ? std::fabs(b[i]) : 0);
        if (std::fabs(rest[i]) <= rounding * size) rest[i] = 0;
    }
    return rest;
}

std::optional<std::array<long double, 3>> arm_c(const Coefficients& y);
std::optional<std::array<long double, 3>> arm_l(const Coefficients& y);

// 1/Za = (A' + 1)/B' and 1/Zb = (A' - 1)/B' with A' = A/n, B' = B/n of the symmetrical section. Both arms are of one
// kind: what Y/s, or s Y, is a quotient of two first powers.
std::optional<Arms> arms_of(const ReactanceChain& chain, long double n, const Scale& scale) {
    const Polynomial numerators[] = {difference(chain.a, -n * chain.n), difference(chain.a, n * chain.n)};
    for (const BranchId id : {BranchId::lattice_c, BranchId::lattice_l}) {
        const bool capacitive = id == BranchId::lattice_c;
        Arms arms{.id = id, .values = {}};
        bool good = true;
        for (std::size_t arm = 0; good && arm < 2; ++arm) {
            const auto y = reduced(numerators[arm], capacitive ? Polynomial{0, 1} * chain.b : chain.b);
            const auto cells = !y ? std::nullopt : capacitive ? arm_c(*y) : arm_l(*y);
            good = cells.has_value();
            for (std::size_t i = 0; good && i < 3; ++i) {
                const bool inductor = i == 0 || (i == 2 && !capacitive);
                const long double value = (*cells)[i] * (inductor ? scale.inductance : scale.capacitance);
                const bool absent = inductor && (*cells)[i] >= static_cast<long double>(absent_inductor);
                arms.values[3 * arm + i] = absent ? absent_inductor : static_cast<double>(value);
            }
        }
        if (good) return arms;
    }
    return std::nullopt;
}

// The quotient as (a + b p)/(c + d p), with powers as low as they can be: the first of Q, P, p Q, p P that depends on
// those before it says how, for (a + b p) Q = (c + d p) P.
std::optional<Coefficients> reduced(const Polynomial& P, const Polynomial& Q) {
    if (std::ranges::all_of(Q, [](long double x) { return x == 0; })) return std::nullopt;
    if (std::ranges::all_of(P, [](long double x) { return x == 0; })) return Coefficients{0, 0, 1, 0};
    const Polynomial p{0, 1};
    const std::array<Polynomial, 4> columns{Q, P, p * Q, p * P};
    std::array<Polynomial, 4> basis;
    std::array<std::array<long double, 4>, 4> share{};  // of columns in the vectors of the basis
    const std::size_t rows = std::max(P.size(), Q.size()) + 1;
    const auto dot = [](const Polynomial& a, const Polynomial& b) {
        long double sum = 0;
        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) sum += a[i] * b[i];
        return sum;
    };
    for (std::size_t j = 0; j < 4; ++j) {
        Polynomial rest = columns[j];
        rest.resize(rows);
        share[j][j] = 1;
        for (int sweep = 0; sweep < 2; ++sweep) {
            for (std::size_t i = 0; i < j; ++i) {
                const long double part = dot(rest, basis[i]);
                rest = rest - part * basis[i];
                for (std::size_t column = 0; column < 4; ++column) share[j][column] -= part * share[i][column];
            }
        }
        const long double length = std::sqrt(dot(rest, rest));
        if (length <= rounding * std::sqrt(dot(columns[j], columns[j]))) {
            auto& [q, numerator, pq, pp] = share[j];
            return Coefficients{q, pq, -numerator, -pp};
        }
        basis[j] = 1 / length * rest;
        for (long double& part : share[j]) part /= length;
    }
    return std::nullopt;
}

bool vanishes(long double x, const Coefficients& y) {
    long double largest = 0;
    for (const long double coefficient : y) largest = std::max(largest, std::fabs(coefficient));
    return std::fabs(x) <= rounding * largest;
}

// Y/s = X + C/(1 + p L C)
std::optional<std::array<long double, 3>> arm_c(const Coefficients& y) {
    const auto& [a, b, c, d] = y;
    if (vanishes(c, y)) return std::nullopt;
    if (vanishes(d, y)) {
        if (!vanishes(b, y)) return std::nullopt;
        return std::array{0.0L, 0.0L, a / c};
    }
    const long double X = vanishes(b, y) ? 0 : b / d, C = a / c - X;
    return std::array{d / c / C, C, X};
}

// s Y = 1/X + p C/(1 + p L C)
std::optional<std::array<long double, 3>> arm_l(const Coefficients& y) {
    const auto& [a, b, c, d] = y;
    if (vanishes(c, y)) return std::nullopt;
    const long double X = vanishes(a, y) ? static_cast<long double>(absent_inductor) : c / a;
    const long double C = (vanishes(b, y) ? 0 : b / c) - (vanishes(d, y) ? 0 : a * d / (c * c));
    return std::array{vanishes(d, y) ? 0 : d / c / C, C, X};
}

// An element x like X, in parallel with the arm or in series with it: L and C in series and X beside them again.
void include(std::span<double> arm, double x, bool capacitive, bool series) {
    double &L = arm[0], &C = arm[1], &X = arm[2];
    if (!series) {
        X = capacitive ? X + x : X * x / (X + x);
    } else if (capacitive) {
        const double m = X / x + 1;
        L *= m * m;
        C = C / m / (C / x + m);
        X /= m;
    } else {
        const double m = x / X + 1;
        L = m * (x + m * L);
        C /= m * m;
        X *= m;
    }
}

}  // namespace

}  // namespace kavrel
