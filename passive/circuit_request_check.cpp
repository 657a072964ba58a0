#include "passive/circuit_request_check.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "approximation/loss_rows.h"
#include "circuit/chain_analysis.h"
#include "circuit/element_formulas.h"
#include "synthesis/synthesis_report.h"

namespace kavrel {

namespace {

constexpr double ratio_worth_a_report = 1e-3;

ElementLoss loss_of_elements(const PassiveFilter& filter);
std::vector<double> resonances(const Circuit& circuit);
double requested_ratio(const PassiveFilter& filter);
double available_ratio(const Chain& chain) { return chain.R1 != 0 ? chain.R2 / chain.R1 : 0; }

}  // namespace

RequestCheck check_circuit(const PassiveFilter& filter) {
    RequestCheck check;
    if (!filter.designed) return check;
    Chain chain;
    const bool has_loss = prepare_chain(filter.circuit, loss_of_elements(filter), chain) == ChainVerdict::done;
    const std::vector<double> narrow_places = resonances(filter.circuit);
    add_loss_rows({.loss =
                       [&](double hertz) {
                           ChainPoint point;
                           const Wide omega = 2 * std::numbers::pi_v<Wide> * static_cast<Wide>(hertz);
                           const bool computed =
                               has_loss && analyze_point(chain, omega, point) == PointVerdict::computed;
                           return computed ? static_cast<double>(point.loss) : std::numeric_limits<double>::quiet_NaN();
                       },
                   .request = filter.background.request,
                   .found = filter.spec,
                   .transfer = filter.transfer,
                   .used_q = filter.background.notes.predistortion.used_q,
                   .open_level = chain.R2 == 0,
                   .places = narrow_places},
                  check);
    const double requested = requested_ratio(filter), available = available_ratio(chain);
    if (requested != 0 || available != 0) check.rows.push_back(equal_to("terminations", requested, available));
    return check;
}

std::vector<std::string> missed_request_lines(const PassiveFilter& filter) {
    const RequestCheck check = check_circuit(filter);
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

// The Q that the design allowed for is that of all elements at the normalisation frequency. In a microwave circuit it
// is that of stubs there: tanh(alpha + j theta) has the quality t (1 - m^2)/(m (1 + t^2)), m = tanh alpha, t = tan
// theta.
ElementLoss loss_of_elements(const PassiveFilter& filter) {
    const double q = filter.background.notes.predistortion.used_q;
    if (q == 0) return {};
    if (filter.circuit.kind == CircuitKind::lumped) return {.QL = -q, .QC = -q};
    const double t = std::tan(filter.transfer.normFrequency / 2 / filter.spec.sampleFrequency);
    const double half = q * (1 + t * t) / 2;
    const double m = t / (half + std::hypot(half, t));
    return {.QL = static_cast<double>(line_nepers) * std::atanh(m)};
}

// Where its traps put narrow extremes, wherever they were moved to.
std::vector<double> resonances(const Circuit& circuit) {
    std::vector<double> all;
    for (int k = 1; k <= circuit.klast; ++k) {
        for (const double frequency : branch_resonances(circuit, k)) all.push_back(frequency);
    }
    return all;
}

double requested_ratio(const PassiveFilter& filter) {
    const FilterSpec& request = filter.background.request;
    return request.sourceResistance != 0 ? request.loadResistance / request.sourceResistance : 0;
}

}  // namespace

}  // namespace kavrel
