#include "exchange/pcfilt_list.h"

#include "circuit/branch_elements.h"
#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr double quarter_wave_degrees = 90;

// Codes in a shunt and in a series slot; 0 there is none.
struct CodeRow {
    BranchId first, last;
    int shunt, series;
    bool microwave;  // known of stubs and lines
    bool lumped;
    int per_kind;  // by which the code of the next kind is higher
};

constexpr CodeRow codes[] = {
    {BranchId::resistor, BranchId::resistor, 1, 1, true, true, 0},
    {BranchId::inductor, BranchId::inductor, 16, 17, true, true, 0},
    {BranchId::capacitor, BranchId::capacitor, 18, 19, true, true, 0},
    {BranchId::lc, BranchId::lc, 2, 3, false, true, 0},
    {BranchId::bridged_l, BranchId::twin_t_trap, 4, 5, false, true, 0},
    {BranchId::unit_element, BranchId::unit_element, 23, 23, true, false, 0},
    {BranchId::lcc, BranchId::lcl, 6, 7, false, true, 0},
    {BranchId::triplet_lll, BranchId::triplet_lcl, 8, 8, false, true, 1},
};

int code_of(BranchId id, bool series, bool microwave);
std::string item(double value, char letter, int code);

}  // namespace

TransferVerdict pcfilt_list(const TransferInput& input, const TransferRequest&, std::vector<std::string>& lines) {
    const Circuit& circuit = input.circuit;
    ExpandedCircuit net;
    if (!expand_circuit(circuit, {}, net)) return TransferVerdict::internal_error;
    const bool microwave = circuit.kind != CircuitKind::lumped;

    lines.push_back(item(net.R1, 'R', code_of(BranchId::resistor, false, microwave)));
    for (const NetBranch& branch : net.branches) {
        const int code = code_of(branch.kind->id, branch.series, microwave);
        if (code == 0) {
            lines.push_back(not_implemented(branch.k));
            continue;
        }
        for (std::size_t cell = 0; cell < branch.values.size(); ++cell) {
            const char letter = branch.kind->cells[cell];
            const double value = shown_value(circuit.kind, letter, branch.values[cell]);
            if (microwave && letter != 'R') {
                lines.push_back(item(value, 'Z', code));
                lines.push_back(item(quarter_wave_degrees, 'D', code));
            } else {
                lines.push_back(item(value, letter, code));
            }
        }
    }
    if (net.R2 != 0) lines.push_back(item(net.R2, 'R', code_of(BranchId::resistor, false, microwave)));
    return TransferVerdict::written;
}

namespace {

int code_of(BranchId id, bool series, bool microwave) {
    for (const CodeRow& row : codes) {
        if (id < row.first || id > row.last || !(microwave ? row.microwave : row.lumped)) continue;
        return (series ? row.series : row.shunt) + row.per_kind * (static_cast<int>(id) - static_cast<int>(row.first));
    }
    return 0;
}

std::string item(double value, char letter, int code) { return edited<"(G15.9,1X,A,I3)">(value, letter, code); }

}  // namespace

}  // namespace kavrel
