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

template <int N>
void expect_words(const Table<double, N>& before, const Table<double, N>& after, int first, const WordLength& word) {
    for (int i = 1; i <= N; ++i) EXPECT_EQ(after(i), i <= first ? in_word(before(i), word) : before(i)) << i;
}

TEST(Truncation, BringsEveryFormToTheWordAndLeavesTheRoots) {
    RandomNumbers random(18);
    int round = 0;
    for (const int bits : {1, 5, 12, 30, 47, 48, 49}) {
        for (const auto method : {WordMethod::round, WordMethod::truncate}) {
            for (const auto number_form : {NumberForm::floating_point, NumberForm::fixed_point}) {
                IirRoom room;
                IirFilter& filter = room.filter = random_filter(random, random.integer(3, 12));
                if (++round % 2 == 0 && bits > 4) scale(filter, random);
                make_forms(filter);
                filter.roots.PMULT = 2, filter.direct.JN += 1, filter.direct.ZNUM(filter.direct.JN) = 0.123;
                filter.direct.JD = std::min(filter.direct.JD, filter.direct.JN - 1);
                filter.allpass = {
                    .TA1 = {-0.7, 0.3}, .TA2 = {0.5}, .TB1 = {0.9}, .TB2 = {}, .NTA = 2, .NTB = 1, .LARR = {}};
                const IirFilter before = filter;
                const std::string bytes = room.bytes();
                const WordLength& word = room.command.truncated_to = {bits, method, number_form};
                SCOPED_TRACE(testing::Message() << bits << ' ' << name_of(method) << ' ' << name_of(number_form));
                room.send("trun");

                EXPECT_EQ(room.boxes(), "");
                EXPECT_TRUE(filter.bits == bits && filter.LastBits == bits && filter.Modified);
                const auto &c = before.cascade, &d = filter.cascade;
                EXPECT_EQ(d.CK, in_word(c.CK, {bits, method, NumberForm::floating_point}));
                double level = d.CK * 2;
                for (const double factor : c.SC) level *= factor;
                EXPECT_DOUBLE_EQ(filter.roots.ZMULT, level);
                EXPECT_TRUE(filter.roots.ZR == before.roots.ZR && filter.roots.QR == before.roots.QR);
                for (const auto part : {&CascadeForm::SC, &CascadeForm::C1N, &CascadeForm::C2N})
                    expect_words(c.*part, d.*part, c.NNUM, word);
                for (const auto part : {&CascadeForm::C1D, &CascadeForm::C2D})
                    expect_words(c.*part, d.*part, c.NDEN, word);
                for (const auto part : {&ParallelForm::AL, &ParallelForm::BE, &ParallelForm::GA, &ParallelForm::DE})
                    expect_words(before.parallel.*part, filter.parallel.*part, before.parallel.NPAR, word);
                EXPECT_EQ(filter.parallel.AO, in_word(before.parallel.AO, word));
                for (const auto part : {&DirectForm::ZNUM, &DirectForm::ZDEN})
                    expect_words(before.direct.*part, filter.direct.*part, before.direct.JD, word);
                for (const auto part : {&LatticeForm::GMMUL, &LatticeForm::GMTAP})
                    expect_words(before.lattice.*part, filter.lattice.*part, before.lattice.JT, word);
                for (const auto part : {&AllpassForm::TA1, &AllpassForm::TA2, &AllpassForm::TB1})
                    expect_words(before.allpass.*part, filter.allpass.*part, 13, word);

                const std::string function = fmt::format("{}", fmt::join(root_lines(filter), "\n"));
                IirFilter by_factors = filter;
                by_factors.bits = unquantised_bits;
                rootsFromFactors(by_factors);
                EXPECT_EQ(function, fmt::format("{}", fmt::join(root_lines(by_factors), "\n")));
                room.send("undo");
                EXPECT_EQ(room.bytes(), bytes) << "one level";
                room.send("undo");
                EXPECT_NE(room.boxes(), "");
            }
        }
    }
}

TEST(Truncation, RefusesWordsThatAreNotShorter) {
    IirRoom room;
    RandomNumbers random(3);
    room.filter = random_filter(random, 5);
    const auto expect_unchanged = [&](int bits, std::string_view line, std::string_view box) {
        const std::string bytes = room.bytes();
        const int levels = room.state.kept.undoTop;
        room.command.truncated_to.bits = bits;
        room.send("trun");
        EXPECT_TRUE(room.lines() == line && room.boxes() == box) << bits << room.lines() << room.boxes();
        EXPECT_TRUE(room.bytes() == bytes && room.state.kept.undoTop == levels) << bits;
    };
    for (const int bits : {50, 51, 99}) expect_unchanged(bits, " Function already truncated to 50 bits\n", "");
    expect_unchanged(0, "", "Error: There is no request that a word could meet: enter a number of bits");
    room.command.truncated_to.bits = 12;
    room.send("trun");
    for (const int bits : {12, 13, 49, 50}) expect_unchanged(bits, " Function already truncated to 12 bits\n", "");
    room.filter.cascade.SC(1) = 0.01, room.filter.cascade.SCALED = true;
    room.command.truncated_to.number_form = NumberForm::fixed_point;
    expect_unchanged(3, "", "Error: A scale factor would be 0 in so short a word");
    room.send("conv");
    expect_unchanged(1, " Function already truncated to  0 bits\n", "");
}

// A pole of each form on the circle, or outside by a trifle, beside the same one inside.
TEST(FormPoles, AreJudgedByTheFormsOwnCoefficients) {
    constexpr double trifle = 0x1p-45;
    for (const double beyond : {-trifle, 0.0, trifle}) {
        const bool stable = beyond < 0;
        IirFilter f = factored_filter(8000, 1, {{0, 1}}, {{-1.2, 0.5}, {-1.5, 1 + beyond}});
        EXPECT_EQ(is_stable(f, cascade), stable);
        f.cascade.C1D(2) = -1.25 - beyond, f.cascade.C2D(2) = 0.25;
        EXPECT_EQ(is_stable(f, cascade), stable) << "a real pole";
        f.parallel = {.AL = {1}, .BE = {}, .GA = {1 + beyond}, .DE = {0}, .NPAR = 1};
        EXPECT_EQ(is_stable(f, parallel), stable);
        f.allpass = {.TA1 = {0.5}, .TA2 = {}, .TB1 = {0.3}, .TB2 = {-1 - beyond}, .NTA = 1, .NTB = 1, .LARR = {}};
        f.allpass.TB1(1) = 0;
        EXPECT_EQ(is_stable(f, allpass), stable);
        f.lattice = {.GMMUL = {0.3, -1 - beyond, 0.2}, .GMTAP = {1}, .JM = 3, .JT = 4};
        EXPECT_EQ(is_stable(f, lattice), stable);
        f.direct = {.ZNUM = {1}, .ZDEN = {1, -1.2 - 1 - beyond, 0.5 + 1.2, -0.5 - beyond / 2}, .JN = 1, .JD = 4};
        f.direct.ZDEN(3) += 1.2 * beyond;  // (1 - 1.2 w + 0.5 w^2)(1 - (1 + beyond) w)
        EXPECT_TRUE(beyond == 0 || is_stable(f, direct) == stable);
        EXPECT_NEAR(roots_of_form(f, direct).QR(1), 1 + beyond, 1e-15);

        f.asked = {
            .count = 2,
            .rows = {{{{.from = 0, .to = 1, .loss = 1}, {.stopband = true, .from = 3000, .to = 4000, .loss = 9}}}}};
        f.bits = 49;
        Unwatched watcher;
        const RequestCheck check = check_iir(f, watcher);
        const std::vector<std::string_view> all = {"cascade", "parallel", "lattice", "direct", "allpass"};
        std::vector<std::string_view> of;
        for (const CheckRow& row : check.rows) {
            if (of.empty() || of.back() != row.of) of.push_back(row.of);
        }
        EXPECT_EQ(of, all);
        if (beyond != 0) {
            EXPECT_EQ(check.rows.size(), stable ? 15U : 5U) << "no losses of a form that is not stable";
        }
        const auto lines = fmt::format("{}", fmt::join(missed_lines(check), "\n"));
        EXPECT_EQ(lines.find("*** lattice: stability: 1.00") != std::string::npos, !stable) << lines;
    }
}

}  // namespace
}  // namespace kavrel
