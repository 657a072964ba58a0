#include "workshop/unit_elements.h"

#include <algorithm>
#include <cmath>

#include "workshop/scaling.h"
#include "workshop/section.h"

namespace kavrel {

namespace {

constexpr std::string_view inappropriate = "Branches are inappropriate";

bool is_line(const Circuit& circuit, int k) { return unpackBranch(circuit, k).id == BranchId::unit_element; }

struct LineAndStub {
    NewBranch line, stub;
    double behind = 1;  // factor of the impedances behind them
};
// A stub between the load and the line, or behind the line. What comes out may hold infinite values.
LineAndStub lowpass_equivalent(double Z, const NewBranch& stub);
LineAndStub same_kind(double Z, const NewBranch& stub, bool stub_first);
bool is_sound(const LineAndStub& made);

}  // namespace

std::optional<KurodaKind> kuroda_kind(const Circuit& circuit, int k1, int k2) {
    if (k1 > k2) std::swap(k1, k2);
    if (!branchExists(circuit, k1) || unpackBranch(circuit, k1).kn != k2) return std::nullopt;
    if (is_line(circuit, k1) == is_line(circuit, k2)) return std::nullopt;
    const int stub = is_line(circuit, k2) ? k1 : k2;
    const BranchId id = unpackBranch(circuit, stub).id;
    if (!is_plain(id)) return std::nullopt;
    const bool lowpass = (id == BranchId::capacitor) == (stub % 2 != 0);
    return lowpass ? KurodaKind::lowpass_equivalent : KurodaKind::same_kind;
}

Refusal kurodaInterchange(Circuit& circuit, int k1, int k2, KurodaKind kind) {
    if (k1 > k2) std::swap(k1, k2);
    for (const int k : {k1, k2}) {
        if (!branchExists(circuit, k)) return {no_branch, "branch1"};
    }
    if (kuroda_kind(circuit, k1, k2) != kind) return {inappropriate, "branch1"};

    const bool stub_first = is_line(circuit, k2);
    const int stub = stub_first ? k1 : k2, line = stub_first ? k2 : k1;
    const auto value = [&](int k) { return circuit.VALUE(unpackBranch(circuit, k).i1); };
    const NewBranch former{unpackBranch(circuit, stub).id, stub % 2 != 0, {value(stub)}};
    const LineAndStub made = kind == KurodaKind::lowpass_equivalent ? lowpass_equivalent(value(line), former)
                                                                    : same_kind(value(line), former, stub_first);
    if (!is_sound(made)) return {inappropriate, "branch1"};
    const std::array section = stub_first ? std::array{made.line, made.stub} : std::array{made.stub, made.line};
    Circuit edited = circuit;
    const auto behind = replace_section(edited, k1, k2, section);
    if (!behind) return {"Storage is full"};
    if (!is_driven_as(circuit, edited)) return {inappropriate, "branch1"};
    if (*behind != 0) scale(edited, made.behind, 1, *behind);
    circuit = edited;
    return {};
}

namespace {

NewBranch line_of(double Z) { return {BranchId::unit_element, false, {Z}}; }

LineAndStub lowpass_equivalent(double Z, const NewBranch& stub) {
    const double x = stub.values[0];
    if (stub.shunt) return {line_of(Z / (1 + x * Z)), {BranchId::inductor, false, {x * Z * Z / (1 + x * Z)}}};
    return {line_of(Z + x), {BranchId::capacitor, true, {x / (Z * (Z + x))}}};
}

// m is the same number before and after: line and stub are divided, or multiplied, by it.
LineAndStub same_kind(double Z, const NewBranch& stub, bool stub_first) {
    const double x = stub.values[0];
    const double m = stub.shunt ? 1 + Z / x : 1 + 1 / (x * Z);
    if (m <= 0) return {line_of(0), stub};  // behind them all would be turned over
    const double factor = stub_first ? m : 1 / m;
    NewBranch made = stub;
    made.values[0] /= factor;
    return stub.shunt ? LineAndStub{line_of(Z / factor), made, 1 / (factor * factor)}
                      : LineAndStub{line_of(Z * factor), made, factor * factor};
}

bool is_sound(const LineAndStub& made) {
    const double line = made.line.values[0], stub = made.stub.values[0];
    return std::isfinite(line) && std::isfinite(stub) && line != 0 && stub != 0;
}

}  // namespace

}  // namespace kavrel
