#include "passive/circuit_request_check.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <span>

#include "approximation/loss_rows.h"
#include "approximation/predistortion.h"
#include "approximation/s_plane.h"
#include "circuit/branch_kinds.h"
#include "circuit/chain_analysis.h"
#include "circuit/element_formulas.h"
#include "synthesis/synthesis_report.h"

namespace kavrel {

namespace {

constexpr double ratio_worth_a_report = 1e-3;

ElementLoss loss_of_elements(const PassiveFilter& filter);
std::vector<double> traps(const Circuit& circuit);
std::vector<double> narrow_places(const PassiveFilter& filter, const Chain& chain, Watcher& watcher);
PointVerdict analyze_hertz(const Chain& chain, double hertz, ChainPoint& point);
std::optional<ChainPoint> point_at(const Chain& chain, double hertz);
double loss_of_chain(const Chain& chain, double hertz);
double requested_ratio(const PassiveFilter& filter);
double available_ratio(const Chain& chain) { return chain.R1 != 0 ? chain.R2 / chain.R1 : 0; }

}  // namespace

RequestCheck check_circuit(const PassiveFilter& filter, Watcher& watcher) {
    RequestCheck check;
    if (!filter.designed) return check;
    Chain chain;
    const bool has_loss = prepare_chain(filter.circuit, loss_of_elements(filter), chain) == ChainVerdict::done;
    const std::vector<double> places = has_loss ? narrow_places(filter, chain, watcher) : std::vector<double>{};
    add_loss_rows({.loss =
                       [&](double hertz) {
                           return has_loss ? loss_of_chain(chain, hertz) : std::numeric_limits<double>::quiet_NaN();
                       },
                   .request = filter.background.request,
                   .found = filter.spec,
                   .transfer = filter.transfer,
                   .watcher = watcher,
                   .used_q = filter.background.notes.predistortion.used_q,
                   .open_level = chain.R2 == 0,
                   .places = places},
                  check);
    if (watcher.stopped()) return {.stopped = true};
    const double requested = requested_ratio(filter), available = available_ratio(chain);
    if (requested != 0 || available != 0) check.rows.push_back(equal_to("terminations", requested, available));
    return check;
}

std::vector<std::string> missed_request_lines(const PassiveFilter& filter, Watcher& watcher) {
    const RequestCheck check = check_circuit(filter, watcher);
    std::vector<std::string> lines = missed_lines(check);
    for (const CheckRow& row : check.rows) {
        if (row.what != "terminations" || std::fabs(row.margin) <= ratio_worth_a_report * std::fabs(row.asked))
            continue;
        for (std::string& line : termination_report(filter.circuit, filter.background.request)) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

namespace {

// The Q that the design allowed for is that of all elements at the normalisation frequency, in a microwave circuit that
// of stubs.
ElementLoss loss_of_elements(const PassiveFilter& filter) {
    const double q = filter.background.notes.predistortion.used_q;
    if (q == 0) return {};
    if (filter.circuit.kind == CircuitKind::lumped) return {.QL = -q, .QC = -q};
    const double t = edge_tangent(filter.spec, filter.transfer);
    return {.QL = static_cast<double>(line_nepers * std::atanh(attenuation_of_lines(q, t)))};
}

// Frequencies between which the phase turns as the delays at both ends let expect. A resonance that lies hidden between
// two of them turns it by 180 degrees more, however narrow it is; there the interval is halved.
class PhaseWalk {
public:
    // Either side of a trap is walked for itself: its zero turns the phase back that a resonance close by has turned.
    PhaseWalk(const Chain& chain, double from, double to, std::span<const double> traps, Watcher& watcher)
        : chain_(chain), watcher_(watcher) {
        constexpr int steps = 150;
        constexpr double beside = 1e-7;
        std::vector<double> nodes;
        for (int i = 0; i <= steps; ++i) nodes.push_back(from * std::pow(to / from, static_cast<double>(i) / steps));
        for (const double trap : traps) {
            if (trap > from && trap < to) nodes.insert(nodes.end(), {trap * (1 - beside), trap * (1 + beside)});
        }
        std::ranges::sort(nodes);
        auto first = point_at(chain_, nodes.front());
        for (std::size_t i = 1; i < nodes.size() && watcher.go_on(); ++i) {
            const auto last = point_at(chain_, nodes[i]);
            halve(nodes[i - 1], first, nodes[i], last, 0);
            first = last;
        }
    }
    std::vector<double> places;  // Hz, where intervals were halved

private:
    void halve(double from, const std::optional<ChainPoint>& first, double to, const std::optional<ChainPoint>& last,
               int depth) {
        constexpr double narrowest = 1e-7;  // of the frequency: a Q of ten million
        constexpr std::size_t most_places = 4000;
        if (depth > 0) places.push_back(from);
        if (!watcher_.go_on() || !first || !last || to - from < narrowest * to || places.size() > most_places) return;
        if (std::fabs(hidden_phase(from, *first, to, *last)) < 30) return;
        double middle = (from + to) / 2;
        auto here = point_at(chain_, middle);
        if (!here) here = point_at(chain_, middle = 0.49 * from + 0.51 * to);  // beside a pole
        halve(from, first, middle, here, depth + 1);
        halve(middle, here, to, last, depth + 1);
    }
    // Degrees, within half a turn.
    static double hidden_phase(double from, const ChainPoint& first, double to, const ChainPoint& last) {
        const Wide expected = -180 * (to - from) * (first.delay + last.delay);
        return static_cast<double>(std::remainder(last.phase - first.phase - expected, Wide{360}));
    }

    const Chain& chain_;
    Watcher& watcher_;
};

// Where a branch may have a resonance: each inductor, and all of them in series or in parallel, with each capacitor,
// and all of them.
std::vector<double> traps(const Circuit& circuit) {
    std::vector<double> found;
    for (int k = 1; k <= circuit.klast; ++k) {
        if (!branchExists(circuit, k)) continue;
        const Branch branch = unpackBranch(circuit, k);
        const BranchKind& kind = branch_kinds[branch.id];
        if (kind.structure == Structure::quadruplet) continue;
        const auto values = branch_values(circuit, branch);
        const auto combined = [&](char letter) {
            std::vector<double> each;
            double sum = 0, inverse = 0;
            for (std::size_t i = 0; i < values.size(); ++i) {
                if (kind.cells[i] != letter) continue;
                each.push_back(values[i]);
                sum += values[i];
                inverse += 1 / values[i];
            }
            if (each.size() > 1) each.insert(each.end(), {sum, 1 / inverse});
            return each;
        };
        for (const double L : combined('L')) {
            for (const double C : combined('C')) found.push_back(resonant_frequency(circuit, L, C));
        }
    }
    return found;
}

// Where the loss may have extremes that the places of the design do not show: at its traps, wherever they were moved
// to, and at the resonances that came with an edit.
std::vector<double> narrow_places(const PassiveFilter& filter, const Chain& chain, Watcher& watcher) {
    constexpr double beyond = 1e4;            // times the edges
    constexpr double beside_pole = 1 - 2e-5;  // of the quarter-wave frequency
    const Circuit& circuit = filter.circuit;
    std::vector<double> places = traps(circuit);
    const FilterSpec& asked = filter.background.request;
    const double highest = std::max({asked.lowerPassEdge, asked.upperPassEdge, asked.upperStopEdge});
    const double lowest = asked.lowerStopEdge > 0 ? asked.lowerStopEdge : highest;
    const double to = circuit.kind == CircuitKind::lumped ? highest * beyond : circuit.fs / 2 * beside_pole;
    if (lowest > 0) {
        const PhaseWalk walk(chain, lowest / beyond, to, places, watcher);
        places.insert(places.end(), walk.places.begin(), walk.places.end());
    }
    return places;
}

PointVerdict analyze_hertz(const Chain& chain, double hertz, ChainPoint& point) {
    return analyze_point(chain, 2 * std::numbers::pi_v<Wide> * static_cast<Wide>(hertz), point);
}

std::optional<ChainPoint> point_at(const Chain& chain, double hertz) {
    ChainPoint point;
    if (analyze_hertz(chain, hertz, point) != PointVerdict::computed) return std::nullopt;
    return point;
}

// Infinite where it is beyond the reach of an analysis.
double loss_of_chain(const Chain& chain, double hertz) {
    ChainPoint point;
    switch (analyze_hertz(chain, hertz, point)) {
        case PointVerdict::computed: return static_cast<double>(point.loss);
        case PointVerdict::beyond_reach: return std::numeric_limits<double>::infinity();
        case PointVerdict::on_pole: break;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

double requested_ratio(const PassiveFilter& filter) {
    const FilterSpec& request = filter.background.request;
    return request.sourceResistance != 0 ? request.loadResistance / request.sourceResistance : 0;
}

}  // namespace

}  // namespace kavrel
