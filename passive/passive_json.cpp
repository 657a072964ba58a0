#include "passive/passive_json.h"

#include <nlohmann/json.hpp>

#include "circuit/branch_elements.h"
#include "circuit/branch_kinds.h"
#include "circuit/parts_list.h"
#include "shell/edited.h"

namespace kavrel {

using Json = nlohmann::ordered_json;

namespace {

const char* kind_name(CircuitKind kind);
Json values_of(const Circuit& circuit, const Branch& branch);
const char* unit_of(char letter, bool impedances);

}  // namespace

Json circuit_part(const Circuit& circuit) {
    if (circuit.klast == 0) return {};
    Json branches = Json::array();
    for (int k = 1; k != 0;) {
        const Branch branch = unpackBranch(circuit, k);
        const BranchKind& kind = branch_kinds[branch.id];
        branches.push_back({{"branch", k},
                            {"id", static_cast<int>(branch.id)},
                            {"type", kind.name},
                            {"series", kind.slot_element() && k % 2 == 0},
                            {"values", values_of(circuit, branch)}});
        k = branch.kn;
    }
    return {{"kind", kind_name(circuit.kind)}, {"r1", circuit.R1}, {"r2", circuit.R2},
            {"fnorm", circuit.fnorm},          {"fs", circuit.fs}, {"branches", branches}};
}

Json parts_part(const Circuit& circuit) {
    Json parts;
    for (const CircuitPart& part : list_parts(circuit, false)) {
        parts.push_back({{"name", edited<"(A,I2.2)">(part.letter, part.number)},
                         {"value", part.value},
                         {"unit", unit_of(part.letter, circuit.kind == CircuitKind::microwave)}});
    }
    return parts;
}

namespace {

const char* kind_name(CircuitKind kind) {
    switch (kind) {
        case CircuitKind::lumped: break;
        case CircuitKind::wave_digital: return "wave_digital";
        case CircuitKind::microwave: return "microwave";
    }
    return "lumped";
}

Json values_of(const Circuit& circuit, const Branch& branch) {
    Json values = Json::array();
    const BranchElements elements = branch_elements(circuit, branch);
    for (int i = 0; i < elements.count; ++i) values.push_back(elements.cells[static_cast<std::size_t>(i)].value);
    return values;
}

const char* unit_of(char letter, bool impedances) {
    if (impedances || letter == 'r' || letter == 'z') return "ohm";
    return letter == 'l' ? "H" : "F";
}

}  // namespace

}  // namespace kavrel
