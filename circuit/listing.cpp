#include "circuit/listing.h"

#include "circuit/branch_kinds.h"
#include "shell/edit.h"
#include "shell/edited.h"

namespace kavrel {

namespace {

constexpr std::size_t values_of_a_line = 3;  // a line of the report holds no more

void list_values(std::span<const double> values, std::string start, std::vector<std::string>& lines);
void list_quadruplet(const Circuit& circuit, const Quadruplet& quadruplet, std::vector<std::string>& lines);

}  // namespace

std::vector<std::string> listCircuit(const Circuit& circuit) {
    if (circuit.klast == 0) return {" no circuit"};
    std::vector<std::string> lines = {edited<"(' fa    =',1P,D15.7)">(circuit.fa),
                                      edited<"(' fb    =',1P,D15.7)">(circuit.fb),
                                      edited<"(' fnorm =',1P,D15.7)">(circuit.fnorm),
                                      edited<"(' fs    =',1P,D15.7)">(circuit.fs), "  k  id  i1  in  kp  kn   values"};
    for (int k = 1; k != 0;) {
        const Branch branch = unpackBranch(circuit, k);
        const int id = static_cast<int>(branch.id);
        list_values(branch_values(circuit, branch),
                    edited<"(I3,5(1X,I3))">(k, id, branch.i1, branch.in, branch.kp, branch.kn), lines);
        if (branch_kinds[branch.id].structure == Structure::quadruplet) {
            list_quadruplet(circuit, circuit.QUADRUPLETS(branch.i1), lines);
        }
        k = branch.kn;
    }
    return lines;
}

namespace {

// Behind the fields of a branch, and below them.
void list_values(std::span<const double> values, std::string start, std::vector<std::string>& lines) {
    const int fields_width = static_cast<int>(start.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i != 0 && i % values_of_a_line == 0) {
            lines.push_back(start);
            start = edit_x(fields_width);
        }
        start += edited<"(1P,D19.11)">(values[i]);
    }
    lines.push_back(start);
}

void list_quadruplet(const Circuit& circuit, const Quadruplet& quadruplet, std::vector<std::string>& lines) {
    lines.push_back(edited<"(' klast = ',I3,' ilast = ',I3)">(circuit.klast, circuit.ilast));
    const auto matrix = [&](std::string_view label, const NodePairs<double>& pairs) {
        for (int i = 1; i <= 3; ++i) {
            std::string row = edited<"(A,I1,') =')">(label, i);
            for (int j = i + 1; j <= 4; ++j) row += edited<"(1P,D19.11)">(pairs(i, j));
            lines.push_back(row);
        }
    };
    const auto nodes = [&](std::string_view label, const Table<double, 4>& values) {
        for (int i = 2; i <= 3; ++i) lines.push_back(edited<"(A,I1,') =',1P,D19.11)">(label, i, values(i)));
    };
    matrix(" xk(", quadruplet.XK);
    matrix(" xc(", quadruplet.XC);
    nodes(" yx(", quadruplet.YK);
    nodes(" yc(", quadruplet.YC);
}

}  // namespace

}  // namespace kavrel
