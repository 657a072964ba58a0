#include "exchange/pcfilt_list.h"

#include "circuit/branch_elements.h"
#include "exchange/expanded_circuit.h"
#include "exchange/text_parts.h"
#include "shell/edit.h"

namespace kavrel {

namespace {

constexpr double quarter_wave_degrees = 90;

// Codes in a shunt and in a series slot; 0 there is none.
struct CodeRow {
    int first_id, last_id;
    int shunt, series;
    bool microwave;  // known of stubs and lines
    bool lumped;
    int per_id;  // by which the code of the next id is higher
};

constexpr CodeRow codes[] = {
    {0, 0, 1, 1, true, true, 0},    {1, 1, 16, 17, true, true, 0},  {2, 2, 18, 19, true, true, 0},
    {3, 3, 2, 3, false, true, 0},   {4, 9, 4, 5, false, true, 0},   {10, 10, 23, 23, true, false, 0},
    {13, 14, 6, 7, false, true, 0}, {17, 24, 8, 8, false, true, 1},
};

int code_of(int id, bool series, bool microwave) {
    for (const CodeRow& row : codes) {
        if (id < row.first_id || id > row.last_id || !(microwave ? row.microwave : row.lumped)) continue;
        return (series ? row.series : row.shunt) + row.per_id * (id - row.first_id);
    }
    return 0;
}

// (G15.9,1X,A1,I3)
std::string item(double value, char letter, int code) {
    return line().g(value, 15, 9).x(1).a(std::string(1, letter)).i(code, 3);
}

}  // namespace

bool pcfilt_list(const Circuit& circuit, std::vector<std::string>& lines) {
    ExpandedCircuit net;
    if (!expand_circuit(circuit, {}, net)) return false;
    const bool microwave = circuit.kind != CircuitKind::lumped;

    lines.push_back(item(net.R1, 'R', code_of(0, false, microwave)));
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
    if (net.R2 != 0) lines.push_back(item(net.R2, 'R', code_of(0, false, microwave)));
    return true;
}

}  // namespace kavrel
