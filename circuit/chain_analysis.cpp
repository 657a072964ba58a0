#include "circuit/chain_analysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kavrel {

namespace {

constexpr Wide largest_ratio = 1e25L;        // |H| beyond it is no loss
constexpr double largest_stored_loss = 200;  // dB
constexpr Wide pole_guard = 1e-15L;          // of 1 - u^2 L C
constexpr Wide matched_reflection = 1e-5L;
constexpr Wide matched_return_loss = 100;
constexpr Wide dc_step = 1e7L;     // the delay at f = 0 is that at the next frequency divided by this
constexpr Wide past_pole = 2e-5L;  // of the quarter-wave frequency: nearer to 0 a stub counts as on its pole
constexpr Wide degree = 180 / std::numbers::pi_v<Wide>;

struct Waves {
    Jet V, I;
};

PointVerdict walk(const Chain& chain, const ElementPoint& elements, Waves& waves);
PointVerdict pass(const ChainLink& link, const ElementPoint& elements, Waves& waves);
void classify(ChainLink& link);
int walk_reactances(const Chain& chain, int from, const ElementPoint& elements, Waves& waves);
bool are_ascending(std::span<const double> frequencies);
bool has_row_at_zero(const Chain& chain, const AnalysisRequest& request);
Wide least_omega(const Circuit& circuit);
Wide decibels(WideComplex z) { return 10 * std::log10(squared_magnitude(z)); }
Wide return_loss(const Waves& waves, Wide R2);

}  // namespace

std::string_view message_of(ChainVerdict verdict) {
    for (const ChainMessage& row : chain_messages) {
        if (row.verdict == verdict) return row.text;
    }
    return {};
}

ChainVerdict prepare_chain(const Circuit& circuit, const ElementLoss& loss, Chain& chain) {
    if (circuit.klast < 2) return ChainVerdict::no_circuit;
    if (circuit.kind == CircuitKind::wave_digital) return ChainVerdict::wave_digital;
    if (!branchExists(circuit, 1) || unpackBranch(circuit, 1).id != BranchId::resistor)
        return ChainVerdict::not_a_resistor;

    chain = {};
    chain.circuit = &circuit;
    chain.loss = loss;
    chain.R1 = circuit.VALUE(unpackBranch(circuit, 1).i1);
    const Branch last = unpackBranch(circuit, circuit.klast);
    int end = 0;
    if (last.id == BranchId::resistor) {
        chain.R2 = circuit.VALUE(last.i1);
        chain.level = std::sqrt(static_cast<Wide>(chain.R1) / static_cast<Wide>(chain.R2)) / 2;
        end = circuit.klast;
    } else {
        const bool series = circuit.klast % 2 == 0;
        chain.loss_class = series ? LossClass::voltage : LossClass::current;
        chain.admittance = series;
    }
    for (int k = unpackBranch(circuit, 1).kn; k != end;) {
        const Branch branch = unpackBranch(circuit, k);
        ChainLink& link = chain.links(++chain.link_count);
        link.kind = &branch_kinds[branch.id];
        link.values = branch_values(circuit, branch);
        link.series = k % 2 == 0;
        if (link.kind->structure == Structure::quadruplet) link.quadruplet = &circuit.QUADRUPLETS(branch.i1);
        if (!link.kind->simple()) chain.plain = false;
        classify(link);
        k = branch.kn;
    }
    return ChainVerdict::done;
}

PointVerdict analyze_point(const Chain& chain, Wide omega, ChainPoint& point) {
    ElementPoint elements;
    if (element_point(*chain.circuit, chain.loss, omega, elements) != PointVerdict::computed) {
        return PointVerdict::on_pole;
    }
    const Wide R1 = chain.R1;
    const Wide R2 = chain.R2;
    Waves waves{{{1, 0}, {}}, {{1 / R1, 0}, {}}};
    if (walk(chain, elements, waves) != PointVerdict::computed) return PointVerdict::on_pole;

    switch (chain.loss_class) {
        case LossClass::transducer: point.H = chain.level * (waves.V + R2 * waves.I); break;
        case LossClass::voltage: point.H = waves.V; break;
        case LossClass::current: point.H = R1 * waves.I; break;
    }
    const Wide ratio = squared_magnitude(point.H.v);
    if (std::isnan(ratio)) return PointVerdict::on_pole;
    if (ratio > largest_ratio * largest_ratio) return PointVerdict::beyond_reach;

    point.V = waves.V;
    point.I = waves.I;
    point.immittance = chain.admittance ? waves.I.v * reciprocal(waves.V.v) : waves.V.v * reciprocal(waves.I.v);
    point.loss = decibels(point.H.v);
    point.phase = -std::atan2(point.H.v.im, point.H.v.re) * degree;
    point.delay = (point.H.d * reciprocal(point.H.v)).im;
    point.return_loss = chain.loss_class == LossClass::transducer ? return_loss(waves, R2) : 0;
    return PointVerdict::computed;
}

PointVerdict chain_matrix(const Chain& chain, Wide omega, ChainMatrix& matrix) {
    ElementPoint elements;
    if (element_point(*chain.circuit, chain.loss, omega, elements) != PointVerdict::computed) {
        return PointVerdict::on_pole;
    }
    Waves open{{{1, 0}, {}}, {}};
    Waves shorted{{}, {{1, 0}, {}}};
    if (walk(chain, elements, open) != PointVerdict::computed) return PointVerdict::on_pole;
    if (walk(chain, elements, shorted) != PointVerdict::computed) return PointVerdict::on_pole;
    matrix = {open.V.v, shorted.V.v, open.I.v, shorted.I.v};
    return PointVerdict::computed;
}

ChainVerdict analyzeCircuit(const Circuit& circuit, const AnalysisRequest& request, Watcher& watcher,
                            Performance& performance) {
    const auto& frequencies = request.frequencies;
    if (!are_ascending(frequencies)) return ChainVerdict::bad_frequencies;
    Chain chain;
    if (const auto verdict = prepare_chain(circuit, request.loss, chain); verdict != ChainVerdict::done) return verdict;

    performance.loss_class = chain.loss_class;
    performance.doubly_terminated = chain.loss_class == LossClass::transducer;
    performance.admittance = chain.admittance;
    performance.radians = request.radians;
    const auto n = static_cast<double>(frequencies.size());
    performance.step = (frequencies.back() - frequencies.front()) / n / frequencies.back();
    performance.count = 0;
    const Wide per_unit = request.radians ? 1 : 2 * std::numbers::pi_v<Wide>;
    for (const double f : frequencies) {
        if (!watcher.go_on()) return ChainVerdict::stopped;
        if (f == 0 && !has_row_at_zero(chain, request)) continue;
        ChainPoint point;
        if (analyze_point(chain, per_unit * f, point) != PointVerdict::computed) continue;
        if (f == 0 && frequencies.size() > 1) {
            ChainPoint near;
            const Wide omega = std::max(per_unit * frequencies[1] / dc_step, least_omega(circuit));
            if (analyze_point(chain, omega, near) != PointVerdict::computed) continue;
            point.delay = near.delay;
        }
        performance.rows(++performance.count) = {f,
                                                 static_cast<double>(point.loss),
                                                 static_cast<double>(point.phase),
                                                 static_cast<double>(point.delay),
                                                 static_cast<double>(point.immittance.re),
                                                 static_cast<double>(point.immittance.im),
                                                 static_cast<double>(point.return_loss)};
    }
    return ChainVerdict::done;
}

void store_performance(const Performance& performance, AnalysisResult& result) {
    result.kind = AnalysisResult::Kind::frequency;
    result.frequency_count = performance.count;
    result.radians = performance.radians;
    result.admittance = performance.admittance;
    result.has_loss = result.has_phase = result.has_delay = result.has_immittance = true;
    result.has_return_loss = performance.doubly_terminated;
    result.has_complement = false;
    result.structure = "";
    for (int i = 1; i <= performance.count; ++i) {
        const PerformanceRow& row = performance.rows(i);
        result.FREQ(i) = static_cast<float>(row.frequency);
        result.frequency(i) = row.frequency;
        result.LOSS(i) = static_cast<float>(std::min(row.loss, largest_stored_loss));
        result.PHASE(i) = static_cast<float>(row.phase);
        result.DELA(i) = static_cast<float>(row.delay);
        result.RETUR(i) = static_cast<float>(row.return_loss);
        result.AREAL(i) = static_cast<float>(row.real);
        result.IMAG(i) = static_cast<float>(row.imaginary);
    }
}

namespace {

PointVerdict walk(const Chain& chain, const ElementPoint& elements, Waves& waves) {
    const bool in_reals = elements.lossless && elements.inductor.v.im != 0;
    for (int i = 1; i <= chain.link_count; ++i) {
        if (in_reals) i = walk_reactances(chain, i, elements, waves);
        if (i > chain.link_count) break;
        if (pass(chain.links(i), elements, waves) != PointVerdict::computed) return PointVerdict::on_pole;
    }
    return PointVerdict::computed;
}

// Over the reactances from link `from` on; the first link that is none, or is on its pole. Derivatives are taken by
// ln u here, where x = factor u and factor/u have the derivatives x and -x.
int walk_reactances(const Chain& chain, int from, const ElementPoint& elements, Waves& waves) {
    if (chain.links(from).reactance == ChainLink::Reactance::none) return from;
    const Wide u = elements.inductor.v.im;
    const Wide inverse_u = 1 / u;
    const Wide slope = elements.inductor.d.im * inverse_u;  // d ln u/dw
    const Wide per_slope = 1 / slope;
    Jet V{waves.V.v, per_slope * waves.V.d};
    Jet I{waves.I.v, per_slope * waves.I.d};
    const auto add = [](Jet& sum, const Jet& wave, Wide x, Wide derivative) {
        sum.d.re -= x * wave.d.im + derivative * wave.v.im;
        sum.d.im += x * wave.d.re + derivative * wave.v.re;
        sum.v.re -= x * wave.v.im;
        sum.v.im += x * wave.v.re;
    };
    int i = from;
    for (; i <= chain.link_count; ++i) {
        const ChainLink& link = chain.links(i);
        Wide x = 0, derivative = 0;
        if (link.reactance == ChainLink::Reactance::direct) {
            x = derivative = link.factor * u;
        } else if (link.reactance == ChainLink::Reactance::inverse) {
            x = link.factor * inverse_u;
            derivative = -x;
        } else if (link.reactance == ChainLink::Reactance::pair) {
            const Wide product = link.product * (u * u);
            const Wide rest = 1 - product;
            if (!(std::fabs(rest) > pole_guard * (1 + std::fabs(product)))) break;
            const Wide scale = 1 / rest;
            x = link.factor * u * scale;
            derivative = x * (1 + product) * scale;
        } else {
            break;
        }
        if (link.series) {
            add(V, I, x, derivative);
        } else {
            add(I, V, x, derivative);
        }
    }
    waves.V = {V.v, slope * V.d};
    waves.I = {I.v, slope * I.d};
    return i;
}

void classify(ChainLink& link) {
    const std::string_view cells = link.kind->cells;
    if (cells != "L" && cells != "C" && cells != "LC") return;
    if (link.values[0] == 0 || link.values.back() == 0) return;
    const Wide first = link.values[0];
    if (cells == "LC") {
        link.reactance = ChainLink::Reactance::pair;
        link.factor = link.values[link.series ? 0 : 1];
        link.product = first * link.values[1];
    } else {
        const bool direct = (cells == "L") == link.series;
        link.reactance = direct ? ChainLink::Reactance::direct : ChainLink::Reactance::inverse;
        link.factor = direct ? first : -1 / first;
    }
}

PointVerdict pass(const ChainLink& link, const ElementPoint& elements, Waves& waves) {
    if (link.kind->structure == Structure::slot_element) {
        Jet immittance;
        const auto verdict = link.series ? series_impedance(*link.kind, link.values, elements, immittance)
                                         : shunt_admittance(*link.kind, link.values, elements, immittance);
        if (verdict != PointVerdict::computed) return verdict;
        if (link.series) {
            waves.V = waves.V + waves.I * immittance;
        } else {
            waves.I = waves.I + waves.V * immittance;
        }
        return PointVerdict::computed;
    }
    if (link.kind->structure == Structure::line) {
        const Wide Z0 = link.values[0];
        const Jet V = waves.V * elements.cosh_line + Z0 * (waves.I * elements.sinh_line);
        waves.I = waves.I * elements.cosh_line + 1 / Z0 * (waves.V * elements.sinh_line);
        waves.V = V;
        return PointVerdict::computed;
    }
    PiArms arms;
    const auto verdict = link.quadruplet != nullptr ? quadruplet_arms(*link.quadruplet, elements, arms)
                                                    : network_arms(*link.kind, link.values, elements, arms);
    if (verdict != PointVerdict::computed) return verdict;
    waves.I = waves.I + waves.V * arms.YA;
    waves.V = waves.V + waves.I * arms.ZB;
    waves.I = waves.I + waves.V * arms.YC;
    return PointVerdict::computed;
}

// One to 501 of them, from 0 on.
bool are_ascending(std::span<const double> frequencies) {
    if (frequencies.empty() || frequencies.size() > analysis_points) return false;
    double before = 0;
    for (const double f : frequencies) {
        if (!std::isfinite(f) || f < before) return false;
        before = f;
    }
    return true;
}

// At f = 0 the pi of a two-port may be empty, and the loss of what is blocked is no number.
bool has_row_at_zero(const Chain& chain, const AnalysisRequest& request) {
    if (!chain.plain || request.filter_class == 3 || request.zeros_at_zero != 0) return false;
    return !(request.filter_class == 2 && request.zeros_at_infinity != 0);
}

// The least angular frequency above 0 that has a point.
Wide least_omega(const Circuit& circuit) {
    if (circuit.kind != CircuitKind::microwave) return 0;
    return past_pole * std::numbers::pi_v<Wide> * static_cast<Wide>(circuit.fs);
}

Wide return_loss(const Waves& waves, Wide R2) {
    const WideComplex reflected = waves.V.v - R2 * waves.I.v;
    const WideComplex sent = waves.V.v + R2 * waves.I.v;
    const Wide ratio = squared_magnitude(reflected) / squared_magnitude(sent);
    if (!(ratio > matched_reflection * matched_reflection)) return matched_return_loss;
    return -10 * std::log10(ratio);
}

}  // namespace

}  // namespace kavrel
