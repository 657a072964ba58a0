#include "exchange/spice_netlist.h"

#include <algorithm>
#include <numbers>

#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Kind = NetElement::Kind;

constexpr int largest_count = 99;              // of points, in two digits
constexpr double transformer_reactance = 1e6;  // of the coils that replace an ideal one, relative to the load

// Names are a letter and the two digits of a running counter.
class SpiceText {
public:
    SpiceText(const Circuit& circuit, const ExpandedCircuit& net, const Sweep& sweep, std::vector<std::string>& lines)
        : circuit_(circuit), net_(net), sweep_(sweep), lines_(lines) {}

    void write();

private:
    void element(const NetElement& element);
    std::string two_pole(char letter, int from, int to, double value);
    void coils(const std::array<int, 4>& nodes, double first, double second, double coupling);
    void end();
    std::string next_name(char letter) { return edited<"(A,I0.2)">(letter, ++counter_); }

    const Circuit& circuit_;
    const ExpandedCircuit& net_;
    Sweep sweep_;
    std::vector<std::string>& lines_;
    int counter_ = 0;
};

}  // namespace

TransferVerdict spice_netlist(const TransferInput& input, const TransferRequest& request,
                              std::vector<std::string>& lines) {
    ExpandedCircuit net;
    const ExpansionRequest expansion{.first_node = 2,
                                     .lattice = request.half_lattices ? LatticeText::half : LatticeText::four_arms,
                                     .coupled_coils = true,
                                     .end_on_ground = true};
    if (!expand_circuit(input.circuit, expansion, net)) return TransferVerdict::internal_error;
    SpiceText(input.circuit, net, Sweep(input.frequencies), lines).write();
    return TransferVerdict::written;
}

namespace {

void SpiceText::write() {
    lines_.push_back(" vin    1   0   ac   2.0");
    two_pole('r', 1, net_.first, net_.R1);
    for (const NetBranch& branch : net_.branches) {
        for (const NetElement& e : branch.elements) element(e);
    }
    if (net_.R2 != 0) two_pole('r', net_.last, 0, net_.R2);
    end();
}

void SpiceText::element(const NetElement& e) {
    switch (e.kind) {
        case Kind::resistor: two_pole('r', e.nodes[0], e.nodes[1], e.value); break;
        case Kind::inductor: two_pole('l', e.nodes[0], e.nodes[1], e.value); break;
        case Kind::capacitor: two_pole('c', e.nodes[0], e.nodes[1], e.value); break;
        case Kind::coupled_coils: coils(e.nodes, e.value, e.second, e.third); break;
        case Kind::transformer: {
            const double f = circuit_.fnorm > 0 ? circuit_.fnorm : sweep_.high;
            const double coil = transformer_reactance * net_.R1 / (2 * std::numbers::pi * f);
            std::array<int, 4> nodes = e.nodes;
            if (e.value < 0) std::swap(nodes[2], nodes[3]);
            coils(nodes, coil, coil, 1);
            break;
        }
        default: break;
    }
}

std::string SpiceText::two_pole(char letter, int from, int to, double value) {
    const std::string name = next_name(letter);
    std::string padded = name;
    if (padded.size() < 4) padded.resize(4, ' ');
    lines_.push_back(edited<"(1X,A,2I4,2X,1P,E14.6)">(padded, from, to, value));
    return padded;
}

void SpiceText::coils(const std::array<int, 4>& nodes, double first, double second, double coupling) {
    const std::string l1 = two_pole('l', nodes[0], nodes[1], first);
    const std::string l2 = two_pole('l', nodes[2], nodes[3], second);
    std::string name = next_name('k');
    if (name.size() < 4) name.resize(4, ' ');
    lines_.push_back(edited<"(3(1X,A),2X,1P,E14.6)">(name, l1, l2, coupling));
}

void SpiceText::end() {
    const int count = std::min(sweep_.count, largest_count);
    lines_.push_back(edited<"(' .ac lin ',I2,2X,1P,2(2X,E14.6))">(count, sweep_.low, sweep_.high));
    const bool voltage = net_.R2 != 0;
    const char quantity = voltage ? 'v' : 'i';
    lines_.push_back(
        edited<"(' .print ac ',A,'db(',I2,', 0) ',A,'p(',I2,', 0)')">(quantity, net_.last, quantity, net_.last));
    lines_.emplace_back(" .end");
}

}  // namespace

}  // namespace kavrel
