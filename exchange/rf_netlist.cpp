#include "exchange/rf_netlist.h"

#include <algorithm>
#include <array>

#include "circuit/parts_list.h"
#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

using Kind = NetElement::Kind;

enum class Program { scompact, touchstone };

enum Keyword { res, ind, cap, slc, plc, trl, sst, ost, trf };

struct Words {
    std::array<std::string_view, 9> elements;
    std::string_view comment;
    std::string_view assign;      // of a variable
    std::string_view length, at;  // electrical length and its frequency, by their variables
    std::string_view block;       // opens the circuit
};

constexpr Words scompact_words = {
    {"res ", "ind ", "cap ", "slc ", "plc ", "trl ", "sst ", "ost ", "trf "}, "*  ", ":", "e=el", "f=f1", " blk"};
constexpr Words touchstone_words = {
    {"res ", "ind ", "cap ", "slc ", "plc ", "tlin", "tlsc", "tloc", "xfer"}, "! ", "=", "e^el", "f^f1", " ckt"};
constexpr std::array<std::string_view, 9> value_keys = {"r=", "l=", "c=", "", "", "z =", "z =", "z =", ""};

constexpr double quarter_wave_degrees = 90;
constexpr double range_steps = 10;  // of the plot's axis
constexpr double open_end = 1e30;   // ohm: what a circuit driven by a current ends in

class RfText {
public:
    RfText(Program program, const TransferInput& input, const TransferRequest& request, std::vector<std::string>& lines)
        : circuit_(input.circuit),
          request_(request),
          title_(input.title),
          sweep_(input.frequencies),
          touchstone_(program == Program::touchstone),
          words_(touchstone_ ? touchstone_words : scompact_words),
          microwave_(circuit_.kind != CircuitKind::lumped),
          parts_(list_parts(circuit_, request.half_lattices)),
          lines_(lines) {}

    [[nodiscard]] TransferVerdict write();

private:
    void header();
    void variables();
    void lattice_arms(const NetBranch& branch, int arm);
    void branch(const NetBranch& branch);
    void lattice_four_port(const NetBranch& branch, int number);
    void circuit_end();
    void touchstone_tail();
    void scompact_tail();

    void add(std::string_view text) { lines_.emplace_back(text); }
    [[nodiscard]] Keyword keyword(Kind kind) const;
    [[nodiscard]] std::string_view word(Keyword keyword) const { return words_.elements[keyword]; }
    [[nodiscard]] static std::string_view key(Keyword keyword) { return value_keys[keyword]; }
    [[nodiscard]] std::string part_names(int k) const;

    const Circuit& circuit_;
    const TransferRequest& request_;
    std::string_view title_;
    Sweep sweep_;
    bool touchstone_;
    const Words& words_;
    bool microwave_;
    std::vector<CircuitPart> parts_;
    ExpandedCircuit net_;
    std::vector<std::string>& lines_;
};

bool is_lattice(const NetBranch& branch) { return branch.kind->structure == Structure::lattice; }

}  // namespace

TransferVerdict scompact_netlist(const TransferInput& input, const TransferRequest& request,
                                 std::vector<std::string>& lines) {
    return RfText(Program::scompact, input, request, lines).write();
}

TransferVerdict touchstone_netlist(const TransferInput& input, const TransferRequest& request,
                                   std::vector<std::string>& lines) {
    return RfText(Program::touchstone, input, request, lines).write();
}

namespace {

TransferVerdict RfText::write() {
    const ExpansionRequest expansion{
        .lattice = request_.half_lattices ? LatticeText::half_paired : LatticeText::isolated, .pairs = !microwave_};
    if (!expand_circuit(circuit_, expansion, net_)) return TransferVerdict::internal_error;
    const bool numbered = !request_.half_lattices && !microwave_;
    if (numbered && std::ranges::count_if(net_.branches, is_lattice) > max_numbered_lattices) {
        return TransferVerdict::too_many_lattices;
    }

    header();
    variables();
    if (touchstone_) add(words_.block);
    int arms = 0;
    for (const NetBranch& b : net_.branches) {
        if (numbered && is_lattice(b)) lattice_arms(b, arms += 2);
    }
    if (!touchstone_) add(words_.block);
    int lattices = 0;
    for (const NetBranch& b : net_.branches) {
        if (is_lattice(b) && microwave_) {
            add(not_implemented(b.k));
        } else if (numbered && is_lattice(b)) {
            lattice_four_port(b, ++lattices);
        } else {
            branch(b);
        }
    }
    circuit_end();
    if (touchstone_) {
        touchstone_tail();
    } else {
        scompact_tail();
    }
    return TransferVerdict::written;
}

void RfText::header() {
    if (microwave_ || !trim(title_).empty()) add(std::string(words_.comment) + title_words(title_));
}

void RfText::variables() {
    if (request_.variable_block || (touchstone_ && microwave_)) add(" var");
    if (microwave_) {
        add(edited<"(' el',A3,F8.2)">(words_.assign, quarter_wave_degrees));
        add(edited<"(' f1',A3,1P,E14.7)">(words_.assign, circuit_.fs / 2));
    }
    if (!request_.variable_block) return;
    for (const NetBranch& b : net_.branches) {
        if (!b.kind->slot_element() || !b.kind->simple()) continue;
        for (const NetElement& e : b.elements) {
            const Keyword w = keyword(e.kind);
            const bool pair = e.kind == Kind::series_pair || e.kind == Kind::parallel_pair;
            std::string text = edited<"(3X,A,2I4,3X,A3,1P,E14.7,2X)">(word(w), e.nodes[0], e.nodes[1],
                                                                      pair ? key(ind) : key(w), e.value);
            if (pair) text += edited<"(A3,1P,E14.7,2X)">(key(cap), e.second);
            add(edited<"(A,1X,A)">(text, part_names(b.k)));
        }
    }
}

void RfText::branch(const NetBranch& b) {
    for (const NetElement& e : b.elements) {
        const Keyword w = keyword(e.kind);
        const int from = e.nodes[0], to = e.nodes[1];
        switch (e.kind) {
            case Kind::series_pair:
            case Kind::parallel_pair:
                add(edited<"(3X,A,2(2X,I2),3X,'l=',1P,E15.7,2X,'c=',E15.7)">(word(w), from, to, e.value, e.second));
                break;
            case Kind::transformer:
                add(edited<"(3X,A,2(2X,I2),'  0  0  n=',A)">(word(trf), from, e.nodes[2],
                                                             e.value < 0 ? "-1.0" : "1.0"));
                break;
            default:
                if (microwave_ && w != res) {
                    add(edited<"(3X,A,2I4,3X,A3,1P,E14.7,2(2X,A))">(word(w), from, to, key(w), e.value, words_.length,
                                                                    words_.at));
                } else if (b.kind->slot_element() && b.values.size() == 1) {
                    add(edited<"(3X,A,2I4,3X,A3,1P,E14.7,3X,A)">(word(w), from, to, key(w), e.value, part_names(b.k)));
                } else if (b.kind->slot_element() || is_lattice(b)) {
                    add(edited<"(3X,A,2(2X,I2),3X,A3,1P,E14.7)">(word(w), from, to, key(w), e.value));
                } else {
                    add(edited<"(3X,A,2I4,3X,A3,1P,E14.7)">(word(w), from, to, key(w), e.value));
                }
        }
    }
}

// The arms in series are odd, the crossed ones even; `second` is the number of the latter.
void RfText::lattice_arms(const NetBranch& b, int second) {
    for (int arm = 0; arm < 2; ++arm) {
        const int number = second - 1 + arm;
        const double* v = b.values.data() + 3 * arm;
        const Keyword x = b.kind->cells[2] == 'C' ? cap : ind;
        if (touchstone_) {
            add(edited<"('   slc   1   2   l=',1P,E15.7,2X,'c=',E15.7)">(v[0], v[1]));
            add(edited<"(3X,A,'  1   2   ',A3,1P,E14.7)">(word(x), key(x), v[2]));
            add(edited<"(' def2p   1   2   z',I1)">(number));
        } else {
            add(" lad");
            add(edited<"('   slc   1   l= ',1P,E14.7,2X,'c= ',E14.7)">(v[0], v[1]));
            add(edited<"(3X,A,'  1   ',A3,1P,E14.7)">(word(x), key(x), v[2]));
            add(edited<"(' z',I1,': 1por 1')">(number));
            add(" end");
            add(" *");
        }
    }
    if (!touchstone_) return;
    const auto place = [&](int number, std::string_view nodes) { add(edited<"(3X,'z',I1,A)">(number, nodes)); };
    place(second - 1, "   1   2");
    place(second - 1, "   3   4");
    place(second, "   1   4");
    place(second, "   3   2");
    add(edited<"(' def4p   1   2   3   4   sec',I1)">(second / 2));
}

// A four-port between two transformers: its upper rail leads from node a to c, its lower one from b to d.
void RfText::lattice_four_port(const NetBranch& b, int number) {
    const auto& before = b.elements[0].nodes;
    const auto& behind = b.elements[1].nodes;
    const int a_ = before[2], b_ = before[3], c_ = behind[2], d_ = behind[3];
    const auto transformer = [&](const std::array<int, 4>& nodes) {
        add(edited<"(3X,A,2(2X,I2),'   0  ',I2,'   n=1.0')">(trim_right(word(trf)), nodes[0], nodes[2], nodes[3]));
    };
    transformer(before);
    if (touchstone_) {
        add(edited<"(3X,'sec',I1,4(2X,I2))">(number, a_, c_, b_, d_));
    } else {
        const auto arm = [&](int z, int from, int to) { add(edited<"(3X,'z',I1,3X,I2,2X,I2)">(z, from, to)); };
        arm(2 * number - 1, a_, c_);
        arm(2 * number - 1, b_, d_);
        arm(2 * number, a_, d_);
        arm(2 * number, b_, c_);
    }
    transformer(behind);
}

void RfText::circuit_end() {
    const std::string ports = edited<"(2(1X,I3))">(net_.first, net_.last);
    add(touchstone_ ? " def2p " + ports + "   a" : " a: 2por" + ports);
    add("   end");
}

void RfText::touchstone_tail() {
    add("   freq");
    add(std::string(words_.comment) + "put frequencies here");
    add(edited<"(5X,'sweep ',1P,3E16.7)">(sweep_.low, sweep_.high, sweep_.step()));
    add("   out");
    add("     a db[s21] gr1");
    add("   grid");
    add(std::string(words_.comment) + "put plot info here");
    const double division = (sweep_.high - sweep_.low) / range_steps;
    add(edited<"(5X,'range ',1P,3E16.7)">(sweep_.low, sweep_.high, division));
    add("     gr1 -4.0 1.0 1.0");
    add("   dim");
    add("     freq hz");
    add("     ind h");
    add("     cap f");
    add("   term");
    add(edited<"(4X,' a ',1P,E14.7)">(net_.R1));
}

void RfText::scompact_tail() {
    add("   freq");
    add(std::string(words_.comment) + "put frequencies here");
    add(edited<"(5X,'step ',1P,3E16.7)">(sweep_.low, sweep_.high, sweep_.step()));
    add("   end");
    add(" *");
    add("   out");
    const double r2 = net_.R2 != 0 || net_.series_end ? net_.R2 : open_end;
    add(edited<"(4X,'pri a r1 = ',1P,E14.7,' r2 = ',E14.7,' s')">(net_.R1, r2));
    add("   end");
}

Keyword RfText::keyword(Kind kind) const {
    switch (kind) {
        case Kind::resistor: return res;
        case Kind::inductor: return microwave_ ? sst : ind;
        case Kind::capacitor: return microwave_ ? ost : cap;
        case Kind::series_pair: return slc;
        case Kind::parallel_pair: return plc;
        case Kind::line: return trl;
        default: return trf;
    }
}

// A10: the names of the branch's parts, as a comment.
std::string RfText::part_names(int k) const {
    std::string names(words_.comment);
    for (const CircuitPart& part : parts_) {
        if (part.branch == k) names += edited<"(A,I0.2,1X)">(part.letter, part.number);
    }
    names.resize(10, ' ');
    return names;
}

}  // namespace

}  // namespace kavrel
