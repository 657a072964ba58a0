#include <array>
#include <cmath>

#include <fmt/format.h>

#include "exchange/expanded_circuit.h"
#include "exchange/spice_netlist.h"
#include "exchange/text_parts.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Kind = NetElement::Kind;

class NgspiceText {
public:
    NgspiceText(const Circuit& circuit, const ExpandedCircuit& net, std::vector<std::string>& lines)
        : circuit_(circuit), net_(net), lines_(lines) {}

    void source();
    void load();
    void branches();
    void output();

private:
    void element(const NetElement& element);
    void two_pole(char letter, int from, int to, double value);
    void stub(int from, int to, double impedance, bool open);
    void line_between(const std::string& nodes, double impedance);
    void transformer(const std::array<int, 4>& nodes, double ratio);

    [[nodiscard]] bool microwave() const { return circuit_.kind != CircuitKind::lumped; }
    [[nodiscard]] std::string next_name(char letter);
    [[nodiscard]] int far_node() const { return net_.highest + 1; }  // behind R2, or behind vout
    void add(std::string text) { lines_.push_back(std::move(text)); }

    const Circuit& circuit_;
    const ExpandedCircuit& net_;
    std::vector<std::string>& lines_;
    std::array<int, 128> counters_{};  // by letter
    int open_ends_ = 0;
};

}  // namespace

TransferVerdict ngspice_netlist(const TransferInput& input, const TransferRequest& request,
                                std::vector<std::string>& lines) {
    ExpandedCircuit net;
    const ExpansionRequest expansion{.lattice = request.half_lattices ? LatticeText::half : LatticeText::four_arms};
    if (!expand_circuit(input.circuit, expansion, net)) return TransferVerdict::internal_error;

    const std::string words = trimmed_title(input.title);
    lines.push_back(fmt::format("* {}", words.empty() ? "Kavrel circuit" : words.c_str()));
    if (input.loss.QL != 0 || input.loss.QC != 0) {
        lines.push_back(fmt::format("* lossless: the Q of the analysis (inductors {:g}, capacitors {:g}) is left out",
                                    input.loss.QL, input.loss.QC));
    }
    NgspiceText text(input.circuit, net, lines);
    text.load();
    text.branches();
    text.source();
    lines.emplace_back(".options noopac");
    const Sweep sweep(input.frequencies);
    lines.push_back(fmt::format(".ac lin {} {} {}", sweep.count, plain_number(sweep.low), plain_number(sweep.high)));
    text.output();
    for (const char* control : {".control", "set units=degrees", "set numdgt=15", ".endc", ".end"}) {
        lines.emplace_back(control);
    }
    return TransferVerdict::written;
}

namespace {

void NgspiceText::load() {
    if (net_.R2 != 0) return two_pole('r', net_.first, 0, net_.R1);
    add(fmt::format("vout {} {} dc 0", net_.first, far_node()));
    two_pole('r', far_node(), 0, net_.R1);
}

void NgspiceText::branches() {
    for (const NetBranch& branch : net_.branches) {
        add(fmt::format("* branch {}", branch.k));
        for (const NetElement& e : branch.elements) element(e);
    }
}

void NgspiceText::source() {
    if (net_.R2 != 0) {
        two_pole('r', far_node(), net_.last, net_.R2);
        const double matched = 2 * std::sqrt(net_.R2 / net_.R1);
        add(fmt::format("vin {} 0 dc 0 ac {}", far_node(), plain_number(matched)));
    } else if (net_.series_end) {
        add(fmt::format("vin {} 0 dc 0 ac {}", net_.last, plain_number(1)));
    } else {
        add(fmt::format("iin 0 {} dc 0 ac {}", net_.last, plain_number(1)));
    }
}

// A zero, as at frequency 0, has no decibels, and ngspice would give up the whole column for it: so it has 4000.
void NgspiceText::output() {
    const std::string voltage = fmt::format("db(v({0})+1e-200) vp({0})", net_.first);
    const std::string current = "db(i(vout)+1e-200) ph(i(vout))";
    if (net_.R2 != 0) {
        add("* transducer loss in dB is -db(v)");
        add(".print ac " + voltage);
    } else if (net_.series_end) {
        add("* voltage loss in dB is -db(v)");
        add(".print ac " + voltage + " " + current);
    } else {
        add("* current loss in dB is -db(i)");
        add(".print ac " + current + " " + voltage);
    }
}

void NgspiceText::element(const NetElement& e) {
    const int from = e.nodes[0], to = e.nodes[1];
    switch (e.kind) {
        case Kind::resistor: two_pole('r', from, to, e.value); break;
        case Kind::inductor:
            if (microwave()) {
                stub(from, to, e.value, false);
            } else {
                two_pole('l', from, to, e.value);
            }
            break;
        case Kind::capacitor:
            if (microwave()) {
                stub(from, to, e.value, true);
            } else {
                two_pole('c', from, to, e.value);
            }
            break;
        case Kind::line: line_between(fmt::format("{} 0 {} 0", from, to), e.value); break;
        case Kind::transformer: transformer(e.nodes, e.value); break;
        default: break;  // pairs and coupled coils were not asked for
    }
}

void NgspiceText::two_pole(char letter, int from, int to, double value) {
    add(fmt::format("{} {} {} {}", next_name(letter), from, to, plain_number(value)));
}

// The far end has no current against ground, whatever it is tied to: a short-circuited one is ground on both sides.
void NgspiceText::stub(int from, int to, double impedance, bool open) {
    const int far = open ? far_node() + ++open_ends_ : 0;
    line_between(fmt::format("{} {} {} 0", from, to, far), impedance);
}

// A quarter wave at half of fs.
void NgspiceText::line_between(const std::string& nodes, double impedance) {
    add(fmt::format("{} {} z0={} td={}", next_name('t'), nodes, plain_number(impedance),
                    plain_number(1 / (2 * circuit_.fs))));
}

// V(c, d) = ratio V(a, b) from a voltage source, whose current is taken from the other side: no power is lost.
void NgspiceText::transformer(const std::array<int, 4>& nodes, double ratio) {
    const auto [a, b, c, d] = nodes;
    const std::string voltage = next_name('e');
    add(fmt::format("{} {} {} {} {} {}", voltage, c, d, a, b, plain_number(ratio)));
    add(fmt::format("{} {} {} {} {}", next_name('f'), a, b, voltage, plain_number(-ratio)));
}

std::string NgspiceText::next_name(char letter) {
    return edited<"(A,I0.2)">(letter, ++counters_[static_cast<std::size_t>(letter)]);
}

}  // namespace

}  // namespace kavrel
