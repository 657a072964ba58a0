#include "circuit/listing.h"

#include "circuit/branch_kinds.h"
#include "shell/edit.h"

namespace kavrel {

namespace {

constexpr std::size_t values_of_a_line = 3;  // a line of the report holds no more
constexpr int fields_width = 23;

std::string branch_fields(int k, const Branch& branch) {
    Line text = line().i(k, 3);
    for (const int field : {static_cast<int>(branch.id), branch.i1, branch.in, branch.kp, branch.kn})
        text.x(1).i(field, 3);
    return text;
}

void list_values(std::span<const double> values, std::string start, std::vector<std::string>& lines) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0 && i % values_of_a_line == 0) {
            lines.push_back(start);
            start = edit_x(fields_width);
        }
        start += edit_1pd(values[i], 19, 11);
    }
    lines.push_back(start);
}

void list_quadruplet(const Circuit& circuit, const Quadruplet& quadruplet, std::vector<std::string>& lines) {
    lines.push_back(line().a(" klast = ").i(circuit.klast, 3).a(" ilast = ").i(circuit.ilast, 3));
    const auto matrix = [&](std::string_view label, const NodePairs<double>& pairs) {
        for (int i = 1; i <= 3; ++i) {
            Line row = line().a(label).i(i, 1).a(") =");
            for (int j = i + 1; j <= 4; ++j) row.pd(pairs(i, j), 19, 11);
            lines.push_back(row);
        }
    };
    const auto nodes = [&](std::string_view label, const Table<double, 4>& values) {
        for (int i = 2; i <= 3; ++i) lines.push_back(line().a(label).i(i, 1).a(") =").pd(values(i), 19, 11));
    };
    matrix(" xk(", quadruplet.XK);
    matrix(" xc(", quadruplet.XC);
    nodes(" yx(", quadruplet.YK);
    nodes(" yc(", quadruplet.YC);
}

}  // namespace

std::vector<std::string> listCircuit(const Circuit& circuit) {
    std::vector<std::string> lines;
    if (circuit.klast == 0) {
        lines.emplace_back(" no circuit");
        return lines;
    }
    lines.push_back(line().a(" fa    =").pd(circuit.fa, 15, 7));
    lines.push_back(line().a(" fb    =").pd(circuit.fb, 15, 7));
    lines.push_back(line().a(" fnorm =").pd(circuit.fnorm, 15, 7));
    lines.push_back(line().a(" fs    =").pd(circuit.fs, 15, 7));
    lines.emplace_back("  k  id  i1  in  kp  kn   values");
    for (int k = 1; k != 0;) {
        const Branch branch = unpackBranch(circuit, k);
        list_values(branch_values(circuit, branch), branch_fields(k, branch), lines);
        if (branch_kinds[branch.id].structure == Structure::quadruplet)
            list_quadruplet(circuit, circuit.QUADRUPLETS(branch.i1), lines);
        k = branch.kn;
    }
    return lines;
}

}  // namespace kavrel
