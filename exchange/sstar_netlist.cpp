#include "exchange/sstar_netlist.h"

#include <cmath>
#include <numbers>

#include "circuit/element_formulas.h"
#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edit.h"

namespace kavrel {

namespace {

using Kind = NetElement::Kind;

constexpr double largest_coupling = 0.99995;  // that F5.4 holds

struct Counters {
    int l = 0, c = 0, lc = 0, r = 0, tr = 0;
};

std::string element_line(const Circuit& circuit, const NetBranch& branch, const NetElement& e, Counters& counters);
std::string general(double value);

}  // namespace

TransferVerdict sstar_netlist(const TransferInput& input, const TransferRequest& request,
                              std::vector<std::string>& lines) {
    const Circuit& circuit = input.circuit;
    ExpandedCircuit net;
    const ExpansionRequest expansion{.lattice = request.half_lattices ? LatticeText::half : LatticeText::four_arms,
                                     .pairs = true,
                                     .coupled_coils = true,
                                     .largest_coupling = largest_coupling};
    if (!expand_circuit(circuit, expansion, net)) return TransferVerdict::internal_error;

    lines.emplace_back(" circuit");
    Counters counters;
    for (const NetBranch& branch : net.branches) {
        for (const NetElement& e : branch.elements) lines.push_back(element_line(circuit, branch, e, counters));
    }
    lines.push_back(line().a(" def2p").i(net.first, 4).i(net.last, 4).a(" filter"));
    const Sweep sweep(input.frequencies);
    lines.emplace_back(" freq");
    lines.push_back(line().a(" swp ").g(sweep.low, 12, 6).x(2).g(sweep.high, 12, 6).x(2).i(sweep.count, 3));
    lines.emplace_back(" window");
    lines.push_back(line().a(" filter(").g(sweep.low, 12, 6).a(",").g(sweep.high, 12, 6).a(")"));
    lines.emplace_back(" gph s21 -100 0");
    lines.emplace_back(" gph dly 0 500");
    return TransferVerdict::written;
}

namespace {

std::string element_line(const Circuit& circuit, const NetBranch& branch, const NetElement& e, Counters& counters) {
    const auto head = [&](std::string_view word) { return line().a(word).i(e.nodes[0], 4).i(e.nodes[1], 4); };
    const auto single = [&](Line text, std::string_view comment, int number) {
        return text.x(14).a(comment).i(number, 0, 2).text();
    };
    switch (e.kind) {
        case Kind::resistor: return single(head(" res ").a(" r=").a(general(e.value)), " 'r", ++counters.r);
        case Kind::inductor: return single(head(" ind ").a(" l=").g(e.value, 12, 6), " 'l", ++counters.l);
        case Kind::capacitor: return single(head(" cap ").a(" c=").g(e.value, 12, 6), " 'c", ++counters.c);
        case Kind::series_pair:
        case Kind::parallel_pair: {
            const double f = resonant_frequency(circuit, e.value, e.second);
            if (branch.kind->structure == Structure::lattice && f > 0) {
                return head(" sfc ")
                    .a(" f=")
                    .a(general(f))
                    .a(" c=")
                    .a(general(e.second))
                    .a(" 'lc")
                    .i(++counters.lc, 0, 2);
            }
            const bool series = e.kind == Kind::series_pair;
            return head(series ? " slc " : " plc ")
                .a(" l=")
                .g(e.value, 12, 6)
                .a(" c=")
                .a(general(e.second))
                .a(" 'lc")
                .i(++counters.lc, 0, 2);
        }
        case Kind::coupled_coils:
        case Kind::transformer: break;
        case Kind::line: return not_implemented(branch.k);
    }
    const bool coils = e.kind == Kind::coupled_coils;
    Line text = line().a(coils ? " mui " : " trf ");
    for (const int node : e.nodes) text.i(node, 4);
    if (coils) {
        text.a(" l1=").a(general(e.value)).a(" l2=").a(general(e.second)).a(" k=").f(e.third, 5, 4);
    } else {
        text.a(" o=im p=").f(1, 4, 1).a(" s=").f(e.value, 4, 1);
    }
    return text.a(" 'tr").i(++counters.tr, 0, 2);
}

// G11.6; a negative number with an exponent takes the one place more that it needs.
std::string general(double value) {
    const std::string text = edit_g(value, 11, 6);
    return text.find('*') == std::string::npos ? text : edit_g(value, 12, 6);
}

}  // namespace

}  // namespace kavrel
