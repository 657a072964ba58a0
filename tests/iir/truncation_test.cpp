// Truncated coefficients, what is refused, and the check of each form by its own coefficients.
#include "iir/truncation.h"

#include "iir/form_poles.h"
#include "iir/iir_request_check.h"
#include "iir/pole_zero_text.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/words.h"

namespace kavrel {
namespace {

using enum Implementation;

TEST(Truncation, BringsEveryFormToTheWordAndLeavesTheRoots) {
    RandomNumbers random(18);
    for (int round = 0; round < 28; ++round) {
        constexpr int bits[] = {1, 5, 12, 30, 47, 48, 49};
        const WordLength word{bits[round / 4], WordMethod{1 + round % 2}, NumberForm{1 + round / 2 % 2}};
        SCOPED_TRACE(testing::Message() << word.bits << name_of(word.method) << name_of(word.number_form));
        IirRoom room;
        IirFilter& filter = room.filter = random_filter(random, random.integer(3, 12));
        if (round > 3 && round % 3 == 0) scale(filter, random);
        make_forms(filter);
        filter.roots.PMULT = 2;
        filter.direct.JN = filter.direct.JD + 1, filter.direct.ZNUM(filter.direct.JN) = 0.123;
        filter.allpass = {.TA1 = {-0.7, 0.3}, .TA2 = {0.5}, .TB1 = {0.9}, .TB2 = {}, .NTA = 2, .NTB = 1, .LARR = {}};
        const std::string bytes = room.bytes();
        IirFilter expected = in_words(filter, word);
        expected.direct.ZNUM(filter.direct.JN) = 0.123;  // beyond the denominators
        expected.roots.ZMULT = expected.cascade.CK * 2;
        for (const double factor : filter.cascade.SC) expected.roots.ZMULT *= factor;
        expected.word = word, expected.LastBits = word.bits, expected.Modified = true;
        room.command.truncated_to = word;
        room.send("trun");
        EXPECT_EQ(room.boxes(), "");
        EXPECT_EQ(iir_keeping.snapshot.bytes(expected, {}), room.bytes());
        const Lines listed = root_lines(filter);
        room.send("undo");
        EXPECT_EQ(room.bytes(), bytes) << "one level";
        rootsFromFactors(expected);
        expected.word.bits = unquantised_bits;
        EXPECT_EQ(listed, root_lines(expected));
    }
}

TEST(Truncation, RefusesWordsThatAreNotShorter) {
    IirRoom room;
    RandomNumbers random(3);
    room.filter = random_filter(random, 5);
    room.filter.cascade.SC(1) = 0.01, room.filter.cascade.SCALED = true;
    room.command.truncated_to.number_form = NumberForm::fixed_point;
    for (const auto& [bits, answer] : {std::pair(50, " Function already truncated to 50 bits\n"),
                                       {0, "Error: There is no request that a word could meet: enter a number of bits"},
                                       {3, "Error: A scale factor would be 0 in so short a word"},
                                       {12, ""},
                                       {12, " Function already truncated to 12 bits\n"},
                                       {49, " Function already truncated to 12 bits\n"}}) {
        const std::string bytes = room.bytes();
        room.command.truncated_to.bits = bits;
        room.send("trun");
        EXPECT_TRUE(*answer == 0 || room.lines() + room.boxes() == answer) << bits << room.lines();
        EXPECT_EQ(room.bytes() != bytes, *answer == 0) << bits;
    }
}

// A pole of each form on the circle, or beside it by a trifle.
TEST(FormPoles, AreJudgedByTheFormsOwnCoefficients) {
    for (const double beyond : {-0x1p-45, 0.0, 0x1p-45}) {
        const bool stable = beyond < 0;
        IirFilter f = factored_filter(8000, 1, {{0, 1}}, {{-1.2, 0.5}, {-1.5, 1 + beyond}});
        EXPECT_EQ(is_stable(f, cascade), stable);
        f.cascade.C1D(2) = -1.25 - beyond, f.cascade.C2D(2) = 0.25;
        f.parallel = {.AL = {1}, .BE = {}, .GA = {1 + beyond}, .DE = {0}, .NPAR = 1};
        f.allpass = {.TA1 = {0.5}, .TA2 = {}, .TB1 = {0}, .TB2 = {-1 - beyond}, .NTA = 1, .NTB = 1, .LARR = {}};
        f.lattice = {.GMMUL = {0.3, -1 - beyond, 0.2}, .GMTAP = {1}, .JM = 3, .JT = 4};
        // (1 - 1.25 w + 0.5 w^2)(1 - (1 + beyond) w)
        const double d[] = {-2.25 - beyond, 1.75 + 1.25 * beyond, -0.5 - 0.5 * beyond};
        f.direct = {.ZNUM = {1}, .ZDEN = {9, d[0], d[1], d[2]}, .JN = 1, .JD = 4};
        for (const auto form : forms_with_coefficients) EXPECT_EQ(is_stable(f, form), stable) << form_name(form);
        EXPECT_NEAR(roots_of_form(f, direct).QR(1), 1 + beyond, 1e-15);

        f.word.bits = 49, f.asked.count = 1;
        f.asked.rows(1) = {.from = 0, .to = 1, .loss = 1};
        Unwatched watcher;
        const RequestCheck check = check_iir(f, watcher);
        EXPECT_EQ(check.rows.size(), stable ? 10U : 5U) << "no losses of a form that is not stable";
        EXPECT_EQ(check.rows.back().of, "allpass");
        EXPECT_EQ(check.missed() >= 5, !stable);
    }
}

}  // namespace
}  // namespace kavrel
