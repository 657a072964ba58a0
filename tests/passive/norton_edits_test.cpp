// What Norton transformations and lists of branches are refused for, what they ask, and what they make.
#include "passive/norton_edits.h"

#include <iterator>
#include <map>
#include <sstream>

#include "tests/passive/passive_room.h"
#include "tests/support/circuit_literal.h"

namespace kavrel {
namespace {

struct NortonEdits : testing::Test, PassiveRoom {
    std::string branches() {
        std::string text;
        for (int k = filter.circuit.klast == 0 ? 0 : 1; k != 0; k = unpackBranch(filter.circuit, k).kn) {
            const Branch branch = unpackBranch(filter.circuit, k);
            text += fmt::format("{}{}{}", k == 1 ? "" : " ", branch_kinds[branch.id].name, k);
            for (const double value : branch_values(filter.circuit, branch)) text += fmt::format(" {:.6g}", value);
        }
        return text;
    }

    // "simple 3 4 0.25", "lce 3 4 6"
    void command_of(const std::string& line) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        const std::vector<double> numbers{std::istream_iterator<double>(words), {}};
        command.norton = {};
        command.equalised = {.rows = static_cast<int>(numbers.size())};
        std::ranges::copy(numbers, command.equalised.cells);
        if (word == "lce" || word == "ecm") return send(word + ' ');
        const auto at = [&](std::size_t i) { return i < numbers.size() ? static_cast<int>(numbers[i]) : 0; };
        command.norton.branches = {at(0), at(1)};
        if (word == "simple" && numbers.size() > 2) command.norton.ratio = numbers[2];
        if (word == "computed") command.norton = {NortonKind::computed, {at(0), at(1)}, 0, at(2)};
        if (word == "matching") command.norton = {NortonKind::matching, {at(0), at(1)}, 0, 0, at(2), at(3)};
        send("tr  ");
    }
};

TEST_F(NortonEdits, RefuseAskAndTransform) {
    std::map<std::string, std::string> names = {
        {"ladder", "R 1 | L3 1 | L4 3 | C5 1 | C6 1 | C7 2 | R 1"},
        {"lines", "R 1 | L3 1 | L4 3 | LC6 1 2 | C7 1 | L8 2 | L9 2 | C11 1 | R 1"},
        {"full", "R 1 | L3 1 | L4 3"}};
    for (int k = 5; k <= 98; ++k) names["full"] += " | C 1";
    std::istringstream lines(read_text(TEST_DATA "/passive/norton.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#')) continue;
        std::vector<std::string> parts;
        std::istringstream rest(line + ' ');
        for (std::string part; std::getline(rest, part, ';');) parts.emplace_back(trim(part));
        ASSERT_EQ(parts.size(), 5U) << line;
        filter = {};
        state = {};
        filter.circuit = circuit(names.contains(parts[0]) ? names[parts[0]] : parts[0]);
        if (parts[1].starts_with("lce") || parts[1].starts_with("ecm")) filter.circuit.kind = CircuitKind::microwave;
        const Circuit before = filter.circuit;
        window.answers.clear();
        if (!parts[2].empty()) window.answers = {parts[2] == "yes" ? Answer::yes : Answer::no};
        command_of(parts[1]);
        EXPECT_EQ(boxes(), parts[3]) << line;
        EXPECT_EQ(filter.circuit == before, parts[4].empty()) << line;
        EXPECT_TRUE(parts[4].empty() || branches() == parts[4]) << line << branches();
        EXPECT_EQ(state.kept.undoTop, parts[4].empty() ? 0 : 1) << line;
        EXPECT_EQ(state.computed.count, 0) << line;
    }
}

}  // namespace
}  // namespace kavrel
