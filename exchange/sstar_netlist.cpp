#include "exchange/sstar_netlist.h"

#include <cmath>
#include <numbers>

#include "circuit/element_formulas.h"
#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edit.h"
#include "shell/edited.h"

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
    lines.push_back(edited<"(' def2p',2I4,' filter')">(net.first, net.last));
    const Sweep sweep(input.frequencies);
    lines.emplace_back(" freq");
    lines.push_back(edited<"(' swp ',2(G12.6,2X),I3)">(sweep.low, sweep.high, sweep.count));
    lines.emplace_back(" window");
    lines.push_back(edited<"(' filter(',G12.6,',',G12.6,')')">(sweep.low, sweep.high));
    lines.emplace_back(" gph s21 -100 0");
    lines.emplace_back(" gph dly 0 500");
    return TransferVerdict::written;
}

namespace {

std::string element_line(const Circuit& circuit, const NetBranch& branch, const NetElement& e, Counters& counters) {
    const auto [from, to, third, fourth] = e.nodes;
    switch (e.kind) {
        case Kind::resistor:
            return edited<"(' res ',2I4,' r=',A,14X,' ''r',I0.2)">(from, to, general(e.value), ++counters.r);
        case Kind::inductor:
            return edited<"(' ind ',2I4,' l=',G12.6,14X,' ''l',I0.2)">(from, to, e.value, ++counters.l);
        case Kind::capacitor:
            return edited<"(' cap ',2I4,' c=',G12.6,14X,' ''c',I0.2)">(from, to, e.value, ++counters.c);
        case Kind::series_pair:
        case Kind::parallel_pair: {
            const double f = resonant_frequency(circuit, e.value, e.second);
            if (branch.kind->structure == Structure::lattice && f > 0) {
                return edited<"(' sfc ',2I4,' f=',A,' c=',A,' ''lc',I0.2)">(from, to, general(f), general(e.second),
                                                                            ++counters.lc);
            }
            const std::string_view word = e.kind == Kind::series_pair ? " slc " : " plc ";
            return edited<"(A,2I4,' l=',G12.6,' c=',A,' ''lc',I0.2)">(word, from, to, e.value, general(e.second),
                                                                      ++counters.lc);
        }
        case Kind::coupled_coils:
            return edited<"(' mui ',4I4,' l1=',A,' l2=',A,' k=',F5.4,' ''tr',I0.2)">(
                from, to, third, fourth, general(e.value), general(e.second), e.third, ++counters.tr);
        case Kind::transformer:
            return edited<"(' trf ',4I4,' o=im p= 1.0 s=',F4.1,' ''tr',I0.2)">(from, to, third, fourth, e.value,
                                                                               ++counters.tr);
        case Kind::line: break;
    }
    return not_implemented(branch.k);
}

// G11.6; a negative number with an exponent takes the one place more that it needs.
std::string general(double value) {
    const std::string text = edit_g(value, 11, 6);
    return text.find('*') == std::string::npos ? text : edit_g(value, 12, 6);
}

}  // namespace

}  // namespace kavrel
