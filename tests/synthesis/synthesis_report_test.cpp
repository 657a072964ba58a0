// What is told of a synthesis: the circuit's own values, in the order of extraction; and what the form asks.
#include "synthesis/synthesis_report.h"

#include <algorithm>
#include <regex>
#include <vector>

#include <gtest/gtest.h>

#include "circuit/branch_elements.h"
#include "circuit/branch_kinds.h"
#include "shell/edit.h"
#include "synthesis/synthesis_form.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

std::string trimmed(const std::string& text) { return std::regex_replace(text, std::regex("^ +"), ""); }

struct Row {
    std::string normalised, value;
};

// Rows with a value at either side; "side" and "termination" lines begin and end a side.
std::vector<std::vector<Row>> sides_of(const std::vector<std::string>& lines) {
    const std::regex row("^ +(-?[0-9.]+D[-+][0-9]+)  (.*[^ 0-9]) +(-?[0-9.]+D[-+][0-9]+)( .*)?$");
    std::vector<std::vector<Row>> sides;
    for (const std::string& text : lines) {
        if (text.find("put side") != std::string::npos) sides.emplace_back();
        std::string cut = text.substr(0, text.find("  zero frequency"));
        std::smatch match;
        if (sides.empty() || !std::regex_match(cut, match, row) || cut.find("termination") != std::string::npos)
            continue;
        sides.back().push_back({match[1], match[3]});
    }
    return sides;
}

// Cells between the terminations as they are shown, from the input.
std::vector<Row> rows_of(const Circuit& circuit, bool from_output, double r, double w) {
    std::vector<std::vector<Row>> branches;
    for (int k = unpackBranch(circuit, 1).kn; k != 0; k = unpackBranch(circuit, k).kn) {
        const Branch branch = unpackBranch(circuit, k);
        if (branch.id == BranchId::resistor) break;
        branches.emplace_back();
        const std::string_view cells = branch_kinds[branch.id].cells;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const double value = circuit.VALUE(branch.i1 + static_cast<int>(i));
            const double scale = cells[i] == 'L' ? r / w : cells[i] == 'C' ? 1 / (r * w) : r;
            const auto shown = [&](double v) {
                return trimmed(edit_1pd(shown_value(circuit.kind, cells[i], v), 15, 7));
            };
            branches.back().push_back({shown(value / scale), shown(value)});
        }
    }
    if (from_output) std::reverse(branches.begin(), branches.end());
    std::vector<Row> rows;
    for (const auto& branch : branches) rows.insert(rows.end(), branch.begin(), branch.end());
    return rows;
}

void expect_report_of(const FilterSpec& spec, Direction direction) {
    auto run = std::make_unique<LadderRun>();
    run->request.direction = direction;
    run->run(spec);
    ASSERT_TRUE(run->approximated && run->verdict.good());
    const SynthesisState& state = run->state;
    SCOPED_TRACE(run->words());
    const std::vector<std::string> lines = result_report("a filter", state);
    const auto sides = sides_of(lines);
    ASSERT_EQ(sides.size(), state.two_way ? 2U : 1U);
    const double w =
        state.problem.microwave() ? state.problem.norm_frequency : 2 * std::numbers::pi * state.problem.norm_frequency;
    std::size_t told = 0;
    for (const auto& side : sides) {
        const bool from_output = state.two_way ? &side == &sides.back() : state.ladder.selection.output_side;
        const double own = from_output ? run->circuit.R2 : run->circuit.R1;
        const std::vector<Row> expected = rows_of(run->circuit, from_output, own, w);
        ASSERT_LE(side.size(), expected.size());
        for (std::size_t i = 0; i < side.size(); ++i) {
            EXPECT_EQ(side[i].value, expected[i].value) << i;
            // The last digit may be rounded the other way.
            EXPECT_NEAR(std::stod(std::regex_replace(side[i].normalised, std::regex("D"), "e")) /
                            std::stod(std::regex_replace(expected[i].normalised, std::regex("D"), "e")),
                        1, 2e-7);
        }
        told += side.size();
    }
    EXPECT_EQ(told, rows_of(run->circuit, false, 1, w).size());
    const auto zeros = std::count_if(lines.begin(), lines.end(), [](const std::string& text) {
        return text.find("zero frequency") != std::string::npos;
    });
    EXPECT_EQ(zeros, run->design.xp.zeroCount);
}

TEST(SynthesisReport, TellsTheCircuitsOwnValues) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const Direction direction : {Direction::forward, Direction::reverse, Direction::two_way}) {
            FilterSpec s = with_minima(type, equal_ripple, type == band_pass ? 14 : 13, 1);
            s.loadResistance = 50;
            expect_report_of(s, direction);
            s.loadResistance = 200;  // the dual network: traps across the rails
            expect_report_of(s, direction);
            expect_report_of(all_pole(type, maximally_flat, 6), direction);
        }
        FilterSpec s = all_pole(type, equal_ripple, 4);
        single_terminated(s);
        expect_report_of(s, Direction::automatic);
    }
    FilterSpec lines = all_pole(low_pass, equal_ripple, 3);
    lines.loadResistance = 50;
    lines.medium = microwave;
    lines.implementation = 'M';
    lines.sampleFrequency = 20000;
    lines.unitElements = 2;
    lines.zerosAtInfinity = 3;
    expect_report_of(lines, Direction::forward);
    expect_report_of(lines, Direction::reverse);
}

// A compound branch is drawn as in the circuit, in small letters, with its zero.
TEST(SynthesisReport, CompoundBranchesAreDrawnInSmall) {
    FilterSpec s = all_pole(low_pass, equal_ripple, 8);
    s.loadResistance = 50;
    s.zeroCount = 1;
    s.FZR(1) = 1500, s.FZI(1) = 1000;
    s.zerosAtInfinity = 4;
    auto run = std::make_unique<LadderRun>();
    run->run(s);
    ASSERT_TRUE(run->approximated && run->verdict.good());
    ASSERT_EQ(run->state.ladder.quadruplet_count, 1);
    const BranchKind& kind = branch_kinds[run->state.ladder.QUADS(1).MSICON];
    const std::vector<std::string> lines = result_report("a filter", run->state);
    const auto zero = std::find_if(lines.begin(), lines.end(),
                                   [](const std::string& text) { return text.starts_with(" zero frequency  real"); });
    ASSERT_NE(zero, lines.end());
    EXPECT_EQ(*zero, " zero frequency  real  1.5000000D+03  imaginary  1.0000000D+03");
    auto line = zero - static_cast<long>(kind.shunt.size());
    for (const DrawingRow& row : kind.shunt) {
        std::string drawn(row.text);
        std::replace(drawn.begin(), drawn.end(), 'L', 'l');
        std::replace(drawn.begin(), drawn.end(), 'C', 'c');
        EXPECT_EQ(line->substr(17, drawn.size()), drawn);
        EXPECT_EQ(line->find('D') != std::string::npos, row.cell >= 0) << *line;
        ++line;
    }
}

// A frequency beside a root of a polynomial leads back to that root.
TEST(SynthesisReport, FrequenciesOfThePolynomialsAreTheirRoots) {
    for (const auto type : {low_pass, high_pass, band_pass}) {
        for (const bool lines : {false, true}) {
            FilterSpec s = all_pole(type, equal_ripple, 6);
            s.loadResistance = 50;
            if (lines) s.medium = microwave, s.implementation = 'M', s.sampleFrequency = 20000;
            auto run = std::make_unique<LadderRun>();
            run->run(s);
            ASSERT_TRUE(run->approximated);
            const XPlane& xp = run->design.xp;
            int frequencies = 0;
            for (const std::string& text : polynomial_report("a filter", xp, run->design.spec)) {
                if (text.size() != 57 || text.find("part") != std::string::npos) continue;
                const auto number = [&](std::size_t at) {
                    return std::stod(std::regex_replace(text.substr(at, 19), std::regex("D"), "e"));
                };
                const double norm = static_cast<double>(xp.normFrequency);
                const auto variable = [&](double hz) {
                    return lines ? std::tan(std::numbers::pi * hz / s.sampleFrequency) : hz;
                };
                double w = variable(number(38)) / variable(norm);
                if (type == high_pass) w = 1 / w;
                const double x = (static_cast<double>(xp.a) - w * w) / (1 - w * w);
                EXPECT_NEAR(x / number(0), 1, 1e-5 * std::fmax(1, std::fabs(x))) << text;
                EXPECT_EQ(number(19), 0);
                ++frequencies;
            }
            EXPECT_GT(frequencies, 4) << type;
        }
    }
}

// Input and output keep their places whichever end the extraction began at.
TEST(SynthesisReport, TerminationsAreThoseOfTheCircuit) {
    for (const Direction direction : {Direction::forward, Direction::reverse, Direction::two_way}) {
        auto run = std::make_unique<LadderRun>();
        run->request.direction = direction;
        run->run(all_pole(low_pass, equal_ripple, 12));
        ASSERT_TRUE(run->verdict.good());
        const std::vector<std::string> told = termination_report(run->state);
        EXPECT_EQ(told, termination_report(run->circuit, run->design.spec));
        EXPECT_EQ(told[0], " Input termination                   =  5.0000000D+01");
        EXPECT_EQ(told[2], " Requested termination ratio         =  2.0000000D+00");
        EXPECT_EQ(told[3].substr(38), edit_1pd(run->circuit.R2 / run->circuit.R1, 15, 7));
    }
}

TEST(SynthesisForm, AsksForWhatTheDesignHas) {
    SynthesisForm form;
    const auto on = [&](std::string_view name, int choice = 0) {
        FieldStates states(SYNTHESIS_DLG.fields);
        SYNTHESIS_DLG.rules(&form, states);
        for (std::size_t i = 0; i < SYNTHESIS_DLG.fields.size(); ++i) {
            if (SYNTHESIS_DLG.fields[i].name == name) return choice == 0 ? states.is_on(i) : states.is_on(i, choice);
        }
        ADD_FAILURE() << name;
        return false;
    };
    auto run = std::make_unique<LadderRun>();
    FilterSpec s = all_pole(low_pass, equal_ripple, 5);
    s.loadResistance = 50;
    run->run(s);
    describe_design(run->design.xp, run->design.spec, form);
    // Of a filter with f odd the even sum stands alone.
    EXPECT_EQ(form.existing.trimmed(), "Existing polynomials: es os od");
    EXPECT_TRUE(on("direction") && on("configuration"));
    EXPECT_FALSE(on("numerator") || on("format"));
    form.impedance_selection = AutoChoice::manual;
    EXPECT_TRUE(on("numerator", 1) && on("denominator", 2) && on("this_is_an"));
    EXPECT_FALSE(on("numerator", 2));

    form.direction = DirectionChoice::reverse;
    form.denominator = DenominatorChoice::odd_difference;
    form.this_is_an = ImmittanceChoice::y;
    const SynthesisRequest request = request_of(form);
    EXPECT_EQ(request.direction, Direction::reverse);
    EXPECT_TRUE(request.manual_selection);
    EXPECT_EQ(request.numerator, Part::es);
    EXPECT_EQ(request.denominator, Part::od);
    EXPECT_EQ(request.form, admittance);
    EXPECT_EQ(request_of({}).direction, Direction::automatic);

    form.form = FormChoice::lattice;
    EXPECT_TRUE(on("format"));
    EXPECT_FALSE(on("direction") || on("numerator"));
}

}  // namespace
}  // namespace kavrel::test
