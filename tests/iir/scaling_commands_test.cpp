#include "iir/scaling_commands.h"

#include "iir/iir_report.h"
#include "iir/noise_gain.h"
#include "shell/edited.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/scaled_cascades.h"
#include "tests/support/golden.h"

namespace kavrel {
namespace {

struct ScalingCommands : testing::Test, IirRoom {
    ScalingCommands() {
        filter = factored_filter(8000, 0.01, {{-1.2, 1}}, {{-1.7, 0.9}, {-1.6, 0.7}, {-1.5, 0.8}});
        filter.FHI = 1000;
    }

    [[nodiscard]] double level() const {
        double product = filter.cascade.CK;
        for (const double factor : filter.cascade.SC) product *= factor;
        return product;
    }
    // Sends a word that changes nothing; what was said.
    std::string refused(std::string_view word) {
        const std::string before = bytes();
        const int levels = state.kept.undoTop;
        send(word);
        EXPECT_EQ(bytes(), before) << word;
        EXPECT_EQ(state.kept.undoTop, levels) << word;
        return boxes() + lines();
    }
    // Rows for the editor of the factors.
    void will_enter(std::vector<double> rows) {
        window.answers = {Answer::yes};
        window.forms = {[rows](FormSheet& sheet) {
            const auto list = static_cast<std::size_t>(find_field(sheet, "SCALE_FACTORS"));
            EXPECT_EQ(*sheet.list(list).rows, 3) << "those in force";
            sheet.clear_rows(list);
            *sheet.list(list).rows = static_cast<int>(rows.size());
            std::ranges::copy(rows, sheet.list(list).cells);
            return true;
        }};
    }
};

TEST_F(ScalingCommands, ScaleReportsAndKeepsTheFunction) {
    const std::string before = bytes();
    send("scal");
    const CascadeForm& c = filter.cascade;
    const double noise = *noiseGain(c);
    EXPECT_EQ(lines(),
              text_of({edited<"(' New multiplier =',1P,E15.6,'       noise gain =',0P,F8.2,' db')">(c.CK, noise),
                       " Scale factors", edited<"(1P,E16.7)">(c.SC(1)), edited<"(1P,E16.7)">(c.SC(2)),
                       edited<"(1P,E16.7)">(c.SC(3)),
                       " The noise is that of the canonical implementation, as 'View/Design' draws it"}));
    EXPECT_EQ(boxes(), "Advice: Do you wish to modify these?");
    EXPECT_TRUE(c.SCALED && c.NNUM == 3 && filter.Modified);
    EXPECT_NEAR(level(), 0.01, 1e-15);
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    EXPECT_EQ(state.words.noise_gain.result, noise);
    EXPECT_EQ(state.words.noise_gain.of, fingerprint(filter));
    const double CK = c.CK;
    command.scaling_method = ScalingMethod::l_infinity;
    send("scal");
    EXPECT_NE(c.CK, CK);
    send("undo");
    EXPECT_EQ(c.CK, CK);
    send("undo");
    EXPECT_EQ(bytes(), before);
}

// Each answer of the questions is that of the form; the cancel of either ends the command.
TEST_F(ScalingCommands, AsksWhereItIsTold) {
    command.scaling_method = ScalingMethod::l_infinity;
    for (int choice = 0; choice < 4; ++choice) {
        const bool separately = choice % 2 == 1, first = choice / 2 == 1;
        command.separately = separately ? ScalingAnswer::yes : ScalingAnswer::no;
        command.denominators_first = first ? ScalingAnswer::yes : ScalingAnswer::no;
        send("scal");
        const auto factors = filter.cascade.SC;
        send("undo");
        command.separately = command.denominators_first = ScalingAnswer::ask;
        window.choices = {separately ? 1 : 2, first ? 1 : 2};
        send("scal");
        EXPECT_EQ(filter.cascade.SC, factors) << choice;
        EXPECT_EQ(boxes(),
                  "Question: Sections to be considered separately? | Question: Do denominators come first? | "
                  "Advice: Do you wish to modify these?");
        send("undo");
    }
    refused("scal");
    window.choices = {1, 0};
    refused("scal");
    EXPECT_TRUE(window.choices.empty());
    command.separately = ScalingAnswer::no;
    EXPECT_EQ(refused("scal"), "Question: Do denominators come first?");
}

TEST_F(ScalingCommands, FactorsAreModified) {
    will_enter({2, -0.5, 4});
    send("scal");
    const CascadeForm& c = filter.cascade;
    EXPECT_TRUE(c.SC(1) == 2 && c.SC(2) == -0.5 && c.SC(3) == 4);
    EXPECT_NEAR(c.CK, -0.0025, 1e-17);
    EXPECT_NEAR(c.C1N(1), -2.4, 1e-15);
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    EXPECT_EQ(window.lines.size(), 12U) << "both factors";
    EXPECT_EQ(state.words.noise_gain.result, *noiseGain(c));
    const CascadeForm as_made = c;
    for (const auto& [rows, why] : std::initializer_list<std::pair<std::vector<double>, std::string>>{
             {{2, 0, 4}, "Zero value not permitted"},
             {{2, NAN, 4}, "Values are out of range"},
             {{2, 3}, "3 factors are needed, one for each section"},
             {{2, 3, 4, 5}, "3 factors are needed, one for each section"},
             {{1e-150, 1e-150, 1e-150}, "Values are out of range"}}) {
        filter.cascade = as_made;
        will_enter(rows);
        send("scal");
        EXPECT_EQ(boxes(), "Advice: Do you wish to modify these? | Error: " + why);
        EXPECT_NEAR(level(), 0.01, 1e-15) << why;
        EXPECT_EQ(window.lines.size(), 6U) << "the factors that were found stay";
    }
}

TEST_F(ScalingCommands, UnstableSectionsAreRefused) {
    const std::string reason = "Error: Scaling could not be performed";
    filter.cascade.C2D(2) = 1;
    for (const auto method : {ScalingMethod::l_two, ScalingMethod::l_infinity}) {
        command.scaling_method = method;
        EXPECT_EQ(refused("scal"), reason);
    }
    EXPECT_EQ(refused("ord "), "Error: A section is not stable, its noise has no bound");
    ScaleFactors SC = ones<iir_section_limit>();
    SC(1) = 0.25;
    rescale(filter.cascade, SC);
    const std::string scaled = bytes();
    send("scal");
    EXPECT_EQ(boxes(), reason);
    EXPECT_TRUE(!filter.cascade.SCALED && filter.cascade.SC(1) == 1);
    send("undo");
    EXPECT_EQ(bytes(), scaled);
    refused("ord ");
    filter.cascade.NDEN = 0;
    for (const auto word : {"scal", "ord "}) EXPECT_EQ(refused(word), "Error: No cascade form, operation illegal");
    filter.cascade = factored_filter(1, 0, {}, {{-1.7, 0.9}}).cascade;
    EXPECT_EQ(refused("scal"), reason) << "a filter that is 0";
}

TEST_F(ScalingCommands, OrderIsReportedAndApplied) {
    command.seed = 5;
    refused("ord ");
    const Lines reported = window.lines;
    const SectionOrder order = state.words.order.result;
    EXPECT_EQ(order.seed, 5U);
    EXPECT_LE(order.noise_gain, order.natural);
    EXPECT_EQ(state.words.order.of, fingerprint(filter));
    EXPECT_EQ(state.words.noise_gain.of, 0U);
    send("scal");
    const std::string scaled = bytes();
    window.stop_at = 2;
    EXPECT_EQ(refused("ord "), " **** Stopped ****\n") << "the scaling, too";
    window.stop_at = -1;
    command.apply = true;
    send("ord ");
    EXPECT_EQ(Lines(window.lines.begin(), window.lines.begin() + 62), reported) << "the same seed";
    EXPECT_FALSE(filter.cascade.SCALED);
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    EXPECT_EQ(state.words.order.result.noise_gain, order.noise_gain);
    EXPECT_EQ(state.words.noise_gain.of, fingerprint(filter));
    constexpr double C1D[] = {-1.7, -1.6, -1.5};
    int k = 0;
    for (const int denominator : order.denominator) EXPECT_EQ(filter.cascade.C1D(++k), C1D[denominator - 1]);
    send("undo");
    EXPECT_EQ(bytes(), scaled);
    command.apply = false;
    command.seed = 0;
    send("ord ");
    EXPECT_TRUE(!filter.cascade.SCALED && state.words.order.result.seed > 0);
    filter.unequalized_count = 2;
    EXPECT_EQ(refused("ord "), "Error: Delay equalized filter may not be ordered");
    filter.unequalized_count = 0, filter.kind = DigitalKind::delay;
    EXPECT_EQ(iir_hindrance(desk, CommandKeyword("ord ")), "Delay equalized filter may not be ordered");
}

}  // namespace
}  // namespace kavrel
