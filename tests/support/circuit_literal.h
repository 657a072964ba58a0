// A circuit as one literal:
//
//     circuit("R 50 | C3 1n | L4 2u | R 50")
//
// Branches from the load to the source, a bar between them. Each is the name of its kind in the table of branch kinds,
// in capitals or not; the number of the branch, or none for the next one that its kind allows; and the values as the
// store holds them, in cell order, with the suffixes that forms take (4.7k, 10n). Kinds of one name are told apart by
// their cells: "triplet:LLLCL3 1u 2u 1u 0 1u". An equalizer takes its three typed values, too: "eqa 10m 300 20n" is
// branch 2.
//
// A text that makes no such circuit fails the test.
#pragma once

#include <cctype>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "circuit/branch_kinds.h"
#include "circuit/circuit.h"
#include "shell/number_text.h"

namespace kavrel {

// The kind of a name, or of a name and its cells; none when there are several or none of it.
inline const BranchKind* kind_of_literal(std::string_view name) {
    const auto matches = [](std::string_view typed, std::string_view expected) {
        return std::equal(typed.begin(), typed.end(), expected.begin(), expected.end(),
                          [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
    };
    const auto colon = name.find(':');
    const BranchKind* found = nullptr;
    for (const BranchKind& kind : branch_kinds) {
        if (!matches(name.substr(0, colon), kind.name)) continue;
        if (colon != std::string_view::npos && !matches(name.substr(colon + 1), kind.cells)) continue;
        if (found != nullptr) return nullptr;
        found = &kind;
    }
    return found;
}

inline void append_literal(Circuit& circuit, const std::string& branch) {
    std::istringstream words(branch);
    std::string name;
    words >> name;
    const auto digits = name.find_last_not_of("0123456789") + 1;
    const int slot = digits < name.size() ? std::stoi(name.substr(digits)) : 0;
    const BranchKind* kind = kind_of_literal(name.substr(0, digits));
    ASSERT_NE(kind, nullptr) << "no kind: " << branch;
    std::vector<double> values;
    for (std::string word; words >> word;) {
        const auto value = parse_number(word);
        ASSERT_TRUE(value) << "no number: " << branch;
        values.push_back(*value);
    }
    if (kind->equalizer() && values.size() == kind->typed.size()) {
        ASSERT_EQ(insertEqualizer(circuit, values[0], values[1], values[2], kind->id), CircuitVerdict::done) << branch;
        return;
    }
    ASSERT_EQ(values.size(), kind->cells.size()) << branch;
    const auto is_slot_element = [&](int k) { return branch_kinds[unpackBranch(circuit, k).id].slot_element(); };
    const bool apart = circuit.klast != 0 && !(kind->slot_element() && is_slot_element(circuit.klast));
    int k = slot != 0 ? slot : circuit.klast + (apart ? 2 : 1);
    ASSERT_EQ(insert_values(circuit, k, kind->id, values), CircuitVerdict::done) << branch;
    ASSERT_TRUE(slot == 0 || k == slot) << branch << " becomes branch " << k;
}

inline Circuit circuit(std::string_view literal, CircuitKind kind = CircuitKind::lumped) {
    Circuit made;
    made.kind = kind;
    std::istringstream branches{std::string(literal)};
    for (std::string branch; std::getline(branches, branch, '|');) append_literal(made, branch);
    return made;
}

}  // namespace kavrel
