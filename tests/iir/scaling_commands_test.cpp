#include "iir/scaling_commands.h"

#include "iir/iir_report.h"
#include "iir/noise_gain.h"
#include "shell/edited.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/scaled_cascades.h"

namespace kavrel {
namespace {

struct ScalingCommands : testing::Test, IirRoom {
    ScalingCommands() {
        filter = factored_filter(8000, 0.01, {{-1.2, 1}}, {{-1.7, 0.9}, {-1.6, 0.7}, {-1.5, 0.8}});
        filter.FHI = 1000;
    }
    const CascadeForm& c = filter.cascade;

    // Sends a word that changes nothing; what was said.
    std::string refused(std::string_view word) {
        const std::string before = bytes();
        const int levels = state.kept.undoTop;
        send(word);
        EXPECT_TRUE(bytes() == before && state.kept.undoTop == levels) << word;
        return boxes() + lines();
    }
    void scale_with(std::vector<double> rows) {
        window.answers = {Answer::yes};
        window.forms = {[rows](FormSheet& sheet) {
            const ListView list = sheet.list(0);
            EXPECT_EQ(*list.rows, 3) << "those in force";
            *list.rows = static_cast<int>(rows.size());
            std::ranges::copy(rows, list.cells);
            return true;
        }};
        send("scal");
    }
};

TEST_F(ScalingCommands, ScaleKeepsTheFunction) {
    const std::string before = bytes();
    send("scal");
    const double noise = *noiseGain(c), CK = c.CK;
    EXPECT_EQ(window.lines[0], edited<"(' New multiplier =',1P,E15.6,'       noise gain =',0P,F8.2,' db')">(CK, noise));
    EXPECT_TRUE(c.SCALED && c.NNUM == 3 && filter.Modified);
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    IirFilter copy = filter;
    rootsFromFactors(copy);
    EXPECT_EQ(copy.roots.NZ, 2) << "a factor of 1 has no root";
    EXPECT_TRUE(state.words.noise_gain.result == noise && state.words.noise_gain.of == fingerprint(filter));
    command.scaling_method = ScalingMethod::l_infinity, command.separately = ScalingAnswer::yes;
    send("scal");
    const double factor = c.SC(3);
    EXPECT_NE(c.CK, CK);
    command.separately = command.denominators_first = ScalingAnswer::ask;
    window.choices = {1, 2};
    send("scal");
    EXPECT_NEAR(c.SC(3) / factor, 1, 1e-14) << "each answer is that of the form";
    refused("scal");
    for (int level = 0; level < 3; ++level) send("undo");
    EXPECT_EQ(bytes(), before);
}

TEST_F(ScalingCommands, FactorsAreModified) {
    scale_with({2, -0.5, 4});
    EXPECT_TRUE(c.SC(1) == 2 && c.SC(2) == -0.5 && c.SC(3) == 4);
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    EXPECT_EQ(state.words.noise_gain.result, *noiseGain(c));
    send("scal");
    const auto found = c.SC;
    const std::pair<std::vector<double>, std::string> wrong[] = {{{2, 0, 4}, "Zero value not permitted"},
                                                                 {{2, NAN, 4}, "Values are out of range"},
                                                                 {{2, 3}, "3 factors are needed, one for each section"},
                                                                 {{1e-150, 1e-150, 1e-150}, "Values are out of range"}};
    for (const auto& [rows, why] : wrong) {
        scale_with(rows);
        EXPECT_EQ(boxes(), "Advice: Do you wish to modify these? | Error: " + why);
        for (int k = 1; k <= 3; ++k) EXPECT_NEAR(c.SC(k) / found(k), 1, 1e-14) << why;
    }
}

TEST_F(ScalingCommands, UnstableSectionsAreRefused) {
    const std::string reason = "Error: Scaling could not be performed";
    filter.cascade.C2D(2) = 1;
    for (const auto method : {ScalingMethod::l_infinity, ScalingMethod::l_two}) {
        command.scaling_method = method;
        EXPECT_EQ(refused("scal"), reason);
    }
    EXPECT_EQ(refused("ord "), "Error: A section is not stable, its noise has no bound");
    filter.cascade = factored_filter(1, 0, {}, {{-1.7, 0.9}}).cascade;
    EXPECT_EQ(refused("scal"), reason) << "a filter that is 0";
    filter.cascade.NDEN = 0;
    for (const auto word : {"scal", "ord "}) EXPECT_EQ(refused(word), "Error: No cascade form, operation illegal");
}

TEST_F(ScalingCommands, OrderIsReportedAndApplied) {
    command.seed = 5;
    refused("ord ");
    const std::string reported = lines();
    const SectionOrder order = state.words.order.result;
    EXPECT_TRUE(order.seed == 5 && order.noise_gain <= order.natural);
    EXPECT_TRUE(state.words.order.of == fingerprint(filter) && state.words.noise_gain.of == 0);
    send("scal");
    window.stop_at = 2;
    EXPECT_EQ(refused("ord "), " **** Stopped ****\n") << "the scaling, too";
    window.stop_at = -1;
    command.apply = true;
    send("ord ");
    EXPECT_TRUE(lines().starts_with(reported)) << "the same seed";
    EXPECT_LT(roots_against_cascade(filter), 1e-14);
    EXPECT_EQ(state.words.noise_gain.of, fingerprint(filter));
    constexpr double C1D[] = {-1.7, -1.6, -1.5};
    for (int k = 1; k <= 3; ++k) EXPECT_EQ(c.C1D(k), C1D[order.denominator[static_cast<std::size_t>(k) - 1] - 1]);
    EXPECT_TRUE(c.C2N(c.NNUM) == 1 && order.numerator[static_cast<std::size_t>(c.NNUM) - 1] == 1) << "no 1 at the end";
    command.apply = false, command.seed = 0;
    send("ord ");
    EXPECT_TRUE(!c.SCALED && state.words.order.result.seed > 0);
    filter.unequalized_count = 2;
    EXPECT_EQ(refused("ord "), "Error: Delay equalized filter may not be ordered");
}

}  // namespace
}  // namespace kavrel
