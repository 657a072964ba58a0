#include "circuit/element_formulas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "circuit/branch_elements.h"

namespace kavrel {

namespace {

constexpr Wide guard = 1e-15L;  // immittance of an element that has none, and relative distance of a pole
constexpr Wide stub_pole_guard = 1e-5L;
constexpr Wide pi = std::numbers::pi_v<Wide>;

// Admittances between the nodes of a network, with the size of the terms that each was added up from.
class NodeMesh {
public:
    explicit NodeMesh(int nodes) : nodes_(nodes) {}

    void add(int i, int j, const Jet& admittance) { add_sized(i, j, admittance, sum_of_parts(admittance.v)); }
    [[nodiscard]] PointVerdict eliminate_inner_nodes();
    [[nodiscard]] PointVerdict arms(PiArms& arms) const;

private:
    struct Arm {
        Jet y;
        Wide size = 0;
    };

    void add_sized(int i, int j, const Jet& admittance, Wide size);
    static std::size_t place(int i, int j);
    [[nodiscard]] Arm& arm(int i, int j) { return arms_[place(i, j)]; }
    [[nodiscard]] const Arm& arm(int i, int j) const { return arms_[place(i, j)]; }

    int nodes_;  // beside ground
    std::array<Arm, max_network_nodes*(max_network_nodes + 1) / 2> arms_;
};

bool cancels(const Jet& sum, Wide size) { return !(sum_of_parts(sum.v) > guard * size); }
int node_count(std::span<const Connection> connections);
PointVerdict lattice_arms(const BranchKind& kind, std::span<const double> values, const ElementPoint& point,
                          PiArms& arms);
PointVerdict quotient(const Jet& numerator, const Jet& term1, const Jet& term2, Jet& result);
Jet with_loss(const Jet& unit, double value, bool loss_unsigned);

}  // namespace

PointVerdict element_point(const Circuit& circuit, const ElementLoss& loss, Wide omega, ElementPoint& point) {
    point = {};
    if (circuit.kind == CircuitKind::lumped) {
        const Wide omega0 = 2 * pi * static_cast<Wide>(circuit.fnorm);
        const auto unit = [&](double Q) {
            if (Q > 0) return Jet{{omega / Q, omega}, {1 / static_cast<Wide>(Q), 1}};
            if (Q < 0) return Jet{{omega0 / -static_cast<Wide>(Q), omega}, {0, 1}};
            return Jet{{0, omega}, {0, 1}};
        };
        point.inductor = unit(loss.QL);
        point.capacitor = unit(loss.QC);
        point.lossless = loss.QL == 0 && loss.QC == 0;
        point.inductor_loss_unsigned = loss.QL < 0;
        point.capacitor_loss_unsigned = loss.QC < 0;
        return PointVerdict::computed;
    }

    const Wide slope = 1 / (2 * static_cast<Wide>(circuit.fs));  // of theta
    const Wide theta = omega * slope;
    const Wide quarters = 2 * theta / pi;
    const Wide fraction = quarters - std::floor(quarters);
    if (omega != 0 && std::fabs(fraction * (fraction - 1)) <= stub_pole_guard) return PointVerdict::on_pole;

    const Wide attenuation = std::fabs(static_cast<Wide>(loss.QL)) / line_nepers;
    const bool grows = loss.QL < 0;
    const Wide alpha = grows ? attenuation * quarters : attenuation;
    const WideComplex gamma_slope{grows ? attenuation * 2 * slope / pi : 0, slope};
    const WideComplex cosh_gamma{std::cosh(alpha) * std::cos(theta), std::sinh(alpha) * std::sin(theta)};
    const WideComplex sinh_gamma{std::sinh(alpha) * std::cos(theta), std::cosh(alpha) * std::sin(theta)};
    point.cosh_line = {cosh_gamma, sinh_gamma * gamma_slope};
    point.sinh_line = {sinh_gamma, cosh_gamma * gamma_slope};
    point.inductor = point.sinh_line / point.cosh_line;
    point.capacitor = point.inductor;
    point.lossless = loss.QL == 0;
    return PointVerdict::computed;
}

Jet inductor_impedance(const ElementPoint& point, double value) {
    return with_loss(point.inductor, value, point.inductor_loss_unsigned);
}

Jet capacitor_admittance(const ElementPoint& point, double value) {
    return with_loss(point.capacitor, value, point.capacitor_loss_unsigned);
}

Jet element_impedance(const ElementPoint& point, char letter, double value) {
    if (letter == 'L') return inductor_impedance(point, value);
    if (letter == 'C') return reciprocal(capacitor_admittance(point, value));
    return {{value, 0}, {}};
}

Jet element_admittance(const ElementPoint& point, char letter, double value) {
    if (letter == 'C') return capacitor_admittance(point, value);
    return reciprocal(element_impedance(point, letter, value));
}

// L and C of a pair enter as N = ZL YC + 1: in parallel they are ZL/N, in series N/YC.
PointVerdict series_impedance(const BranchKind& kind, std::span<const double> values, const ElementPoint& point,
                              Jet& impedance) {
    if (values.size() == 1) {
        impedance = element_impedance(point, kind.cells[0], values[0]);
        return PointVerdict::computed;
    }
    const Jet ZL = inductor_impedance(point, values[0]);
    const Jet YC = capacitor_admittance(point, values[1]);
    const Jet one{{1, 0}, {}};
    if (values.size() == 2) return quotient(ZL, ZL * YC, one, impedance);
    const Jet N = ZL * YC + one;
    if (kind.cells[2] == 'C') return quotient(N, capacitor_admittance(point, values[2]) * N, YC, impedance);
    const Jet ZX = inductor_impedance(point, values[2]);
    return quotient(ZX * N, ZX * YC, N, impedance);
}

PointVerdict shunt_admittance(const BranchKind& kind, std::span<const double> values, const ElementPoint& point,
                              Jet& admittance) {
    if (values.size() == 1) {
        admittance = element_admittance(point, kind.cells[0], values[0]);
        return PointVerdict::computed;
    }
    const Jet ZL = inductor_impedance(point, values[0]);
    const Jet YC = capacitor_admittance(point, values[1]);
    const Jet one{{1, 0}, {}};
    if (values.size() == 2) return quotient(YC, ZL * YC, one, admittance);
    const Jet N = ZL * YC + one;
    if (kind.cells[2] == 'L') return quotient(N, inductor_impedance(point, values[2]) * N, ZL, admittance);
    const Jet YX = capacitor_admittance(point, values[2]);
    return quotient(YX * N, ZL * YX, N, admittance);
}

PointVerdict network_arms(const BranchKind& kind, std::span<const double> values, const ElementPoint& point,
                          PiArms& arms) {
    if (kind.structure == Structure::lattice) return lattice_arms(kind, values, point, arms);
    NodeMesh mesh(node_count(kind.connections));
    for (const Connection& connection : kind.connections) {
        const auto cell = static_cast<std::size_t>(connection.cell);
        if (!element_present(kind, connection.cell, values[cell])) continue;
        mesh.add(connection.from, connection.to, element_admittance(point, kind.cells[cell], values[cell]));
    }
    if (mesh.eliminate_inner_nodes() != PointVerdict::computed) return PointVerdict::on_pole;
    return mesh.arms(arms);
}

PointVerdict quadruplet_arms(const Quadruplet& quadruplet, const ElementPoint& point, PiArms& arms) {
    const auto connections = branch_kinds[BranchId::quadruplet].connections;
    const BranchElements elements = quadruplet_elements(quadruplet);
    NodeMesh mesh(node_count(connections));
    for (const Connection& connection : connections) {
        const Element& element = elements.cells[static_cast<std::size_t>(connection.cell)];
        if (!element.present) continue;
        mesh.add(connection.from, connection.to, element_admittance(point, element.letter, element.value));
    }
    if (mesh.eliminate_inner_nodes() != PointVerdict::computed) return PointVerdict::on_pole;
    return mesh.arms(arms);
}

// A reactance open at both ends of the band in the variable t = tanh(gamma), with one inner pole pair:
//     Z = (p t^2 + q)/(t (r t^2 + u)),  z1 = Z(1) = (p + q)/(r + u),
//     what remains behind the line z1 is t L + K/t with L = z1^2 r/(z1 u - q), K = z1 q/(z1 u - q),
// which is a line z2 = L + K that ends in the open stub z3 = z2 K/L. The short-circuited kind is its dual.
StubSection stub_section(const BranchKind& kind, std::span<const double> values, bool series) {
    const double a = values[0];
    const double b = 1 / values[1];
    StubSection section;
    if (values.size() == 2) {
        section.open = !series;
        section.z1 = series ? a * b / (a + b) : a + b;
        section.z2 = series ? section.z1 * a / b : section.z1 * b / a;
        return section;
    }
    const double c = kind.cells[2] == 'C' ? 1 / values[2] : values[2];
    section.open = kind.cells[2] == 'C';
    double p, q, r, u;
    if (section.open) {
        p = series ? c * a : a * (b + c);
        q = b * c;
        r = a;
        u = series ? b + c : b;
    } else {  // the admittance
        p = series ? a + c : a;
        q = b;
        r = a * c;
        u = series ? b * c : b * (a + c);
    }
    section.z1 = (p + q) / (r + u);
    section.z2 = section.z1 * (section.z1 * r + q) / (section.z1 * u - q);
    section.z3 = section.z2 * q / (section.z1 * r);
    if (!section.open) {
        section.z1 = 1 / section.z1;
        section.z2 = 1 / section.z2;
        section.z3 = 1 / section.z3;
    }
    return section;
}

// With p = s^2 each element is (c p + g)/s. The way through 1-2 and the way over node 3 cancel where
//     (cB p + gB)(c3 p + g3) + (cA p + gA)(cD p + gD) = 0,  c3 p + g3 the sum at node 3.
int triplet_zeros(const BranchKind& kind, std::span<const double> values, std::array<double, 2>& zeros) {
    std::array<double, 5> c{}, g{};
    for (std::size_t cell = 0; cell < 5; ++cell) {
        if (!element_present(kind, static_cast<int>(cell), values[cell])) continue;
        (kind.cells[cell] == 'L' ? g : c)[cell] = kind.cells[cell] == 'L' ? 1 / values[cell] : values[cell];
    }
    const double c3 = c[0] + c[2] + c[3] + c[4];
    const double g3 = g[0] + g[2] + g[3] + g[4];
    const double q2 = c[1] * c3 + c[0] * c[4];
    const double q1 = c[1] * g3 + g[1] * c3 + c[0] * g[4] + g[0] * c[4];
    const double q0 = g[1] * g3 + g[0] * g[4];

    std::array<double, 2> roots{};  // of q2 p^2 + q1 p + q0, 0 where there is none
    if (q2 == 0) {
        if (q1 != 0) roots[0] = -q0 / q1;
    } else if (const double discriminant = q1 * q1 - 4 * q2 * q0; discriminant >= 0) {
        const double larger = -0.5 * (q1 + std::copysign(std::sqrt(discriminant), q1));
        roots = {larger / q2, larger == 0 ? 0 : q0 / larger};
    }
    int count = 0;
    for (const double p : roots) {
        if (p < 0) zeros[static_cast<std::size_t>(count++)] = std::sqrt(-p) / (2 * std::numbers::pi);
    }
    if (count == 2 && zeros[0] > zeros[1]) std::swap(zeros[0], zeros[1]);
    return count;
}

double resonant_frequency(const Circuit& circuit, double L, double C) {
    constexpr double per_radian = 0.15915494309;
    const double product = L * C;
    if (!(product > 0)) return 0;
    if (circuit.kind == CircuitKind::lumped) return per_radian / std::sqrt(product);
    return 2 * circuit.fs * std::atan(1 / std::sqrt(product)) * per_radian;
}

namespace {

Jet with_loss(const Jet& unit, double value, bool loss_unsigned) {
    Jet element = static_cast<Wide>(value) * unit;
    if (loss_unsigned) element.v.re = std::fabs(element.v.re);
    if (element.v.re == 0 && element.v.im == 0) element.v.im = guard;
    return element;
}

PointVerdict quotient(const Jet& numerator, const Jet& term1, const Jet& term2, Jet& result) {
    const Jet sum = term1 + term2;
    if (cancels(sum, sum_of_parts(term1.v) + sum_of_parts(term2.v))) return PointVerdict::on_pole;
    result = numerator / sum;
    return PointVerdict::computed;
}

// Each arm is X beside L and C in series. With arms Za in series and Zb crossed: YB = (1/Za - 1/Zb)/2, YA = YC = 1/Zb.
PointVerdict lattice_arms(const BranchKind& kind, std::span<const double> values, const ElementPoint& point,
                          PiArms& arms) {
    const auto arm_admittance = [&](std::size_t first, Jet& admittance) {
        const Jet ZL = inductor_impedance(point, values[first]);
        const Jet YC = capacitor_admittance(point, values[first + 1]);
        const auto verdict = quotient(YC, ZL * YC, {{1, 0}, {}}, admittance);
        admittance = admittance + element_admittance(point, kind.cells[first + 2], values[first + 2]);
        return verdict;
    };
    Jet series, crossed;
    if (arm_admittance(0, series) != PointVerdict::computed) return PointVerdict::on_pole;
    if (arm_admittance(3, crossed) != PointVerdict::computed) return PointVerdict::on_pole;
    arms.YA = crossed;
    arms.YC = crossed;
    return quotient({{2, 0}, {}}, series, -1.0L * crossed, arms.ZB);
}

int node_count(std::span<const Connection> connections) {
    int nodes = 2;
    for (const Connection& connection : connections) {
        nodes = std::max(nodes, std::max(connection.from, connection.to));
    }
    return nodes;
}

// Pairs by rising larger node.
std::size_t NodeMesh::place(int i, int j) {
    const auto larger = static_cast<std::size_t>(std::max(i, j));
    return larger * (larger - 1) / 2 + static_cast<std::size_t>(std::min(i, j));
}

void NodeMesh::add_sized(int i, int j, const Jet& admittance, Wide size) {
    Arm& sum = arm(i, j);
    sum.y = sum.y + admittance;
    sum.size += size;
}

PointVerdict NodeMesh::eliminate_inner_nodes() {
    for (int node = nodes_; node > 2; --node) {
        Jet sum;
        Wide size = 0;
        for (int i = 0; i < node; ++i) {
            sum = sum + arm(i, node).y;
            size += arm(i, node).size;
        }
        if (size == 0) continue;  // nothing leads to this node
        if (cancels(sum, size)) return PointVerdict::on_pole;
        const Jet scale = reciprocal(sum);
        const Wide scale_size = sum_of_parts(scale.v);
        for (int i = 0; i < node; ++i) {
            if (arm(i, node).size == 0) continue;
            const Jet share = arm(i, node).y * scale;
            for (int j = i + 1; j < node; ++j) {
                const Arm& other = arm(j, node);
                if (other.size == 0) continue;
                add_sized(i, j, share * other.y, arm(i, node).size * other.size * scale_size);
            }
        }
    }
    return PointVerdict::computed;
}

PointVerdict NodeMesh::arms(PiArms& arms) const {
    const Arm& through = arm(1, 2);
    if (cancels(through.y, through.size)) return PointVerdict::on_pole;
    arms = {arm(0, 1).y, reciprocal(through.y), arm(0, 2).y};
    return PointVerdict::computed;
}

}  // namespace

}  // namespace kavrel
