// The report of a synthesis, against golden texts; and what the form asks.
#include "synthesis/synthesis_report.h"

#include <gtest/gtest.h>

#include "synthesis/synthesis_form.h"
#include "tests/support/golden.h"
#include "tests/synthesis/ladder_cases.h"

namespace kavrel::test {
namespace {

// Ladders from either end and from both, of all kinds of branches and media, and what there is to remark on them.
TEST(SynthesisReport, ReadsAsItShould) {
    struct Case {
        const char* text;
        Direction direction = Direction::automatic;
    };
    const Case cases[] = {
        {"low ripple 5 minima 1 R 50 50", Direction::forward},
        {"low ripple 5 minima 1 R 50 200", Direction::reverse},
        {"high ripple 5 minima 1 R 50 50", Direction::reverse},
        {"high flat 6 R 1 0"},
        {"band ripple 14 minima 1 R 50 200", Direction::two_way},
        {"low flat 13", Direction::two_way},
        {"low ripple quarter 20000 R 50 50 ends 0 3 lines 2", Direction::forward},
        {"high ripple quarter 20000 R 50 100 ends 3 0 lines 2", Direction::reverse},
        {"low ripple R 50 50 ends 0 4 complex 1500 1000"},                // a compound branch of 5 elements
        {"high ripple R 50 50 ends 3 0 complex 900 1500"},                // of 7
        {"low flat R 50 50 ends 0 1 complex 1500 1000 complex 900 900"},  // with negative elements
    };
    std::string text;
    const auto add = [&](const std::vector<std::string>& lines) {
        for (const std::string& line : lines) text += line + "\n";
    };
    for (const Case& c : cases) {
        const Ladder run = run_of(c.text, c.direction);
        ASSERT_TRUE(run->verdict.good()) << c.text;
        add(polynomial_report(c.text, run->design.xp, run->design.spec));
        add(result_report(c.text, run->state));
        add(termination_report(run->state));
        EXPECT_EQ(termination_report(run->state), termination_report(run->circuit, run->design.spec));
    }
    // Remarks that none of these asks for.
    const Ladder run = run_of("low ripple 1");
    run->state.script_verdict.storage_low = true;
    run->state.loss_error = 0.01;
    run->state.available_ratio = 1e4;
    run->state.negative_elements = 1, run->state.searched = true, run->state.search = SearchVerdict::given_up;
    add(result_report("remarks", run->state));
    expect_golden(std::string(TEST_DATA) + "/synthesis/reports.txt", text);
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
    const Ladder run = run_of("low ripple 5 R 50 50");
    describe_design(run->design.xp, run->design.spec, form);
    // Of a filter with f odd the even sum is alone.
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
