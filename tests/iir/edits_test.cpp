// What edits promise about H, and what they refuse.
#include "iir/edits.h"

#include "iir/cascade_pairing.h"
#include "iir/iir_records.h"
#include "tests/approximation/digital_cases.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

// H behind an edit by H before it, and whether the forms and the request are kept.
TEST(Edits, DoToHWhatTheyPromise) {
    RandomNumbers random(1);
    for (int round = 0; round < 100; ++round) {
        IirFilter before = random_filter(random, random.integer(3, 20));
        if (round % 2 == 1) scale(before, random);
        make_forms(before);
        before.asked = {.count = 1, .rows = {{{{.from = 100, .to = 200, .loss = 1}}}}};
        const CascadeForm& c = before.cascade;
        IirRequest r;
        const auto expect = [&](const auto& edit, bool keeps, const auto& factor) {
            SCOPED_TRACE(testing::Message() << round << ' ' << r.c1 << ' ' << r.deleted << ' ' << r.sequence.trimmed());
            IirFilter after = before;
            Lines lines;
            ASSERT_EQ(edit(after, r, {}, lines).text, "");
            const auto expected = [&](Point x) { return h_of_cascade(before, x) * factor(x); };
            EXPECT_LT(largest_gap(expected, [&](Point x) { return h_of_cascade(after, x); }), 1e-12);
            EXPECT_LT(largest_gap(expected, [&](Point x) { return h_of_roots(after, x); }), 1e-12);
            EXPECT_EQ(after.asked.count, keeps ? 1 : 0);
            EXPECT_EQ(is_there(after.parallel) && is_there(after.direct) && is_there(after.lattice), keeps);
            const std::vector<double> truth = direct_impulse(after.roots, 100);
            for (int form = 1; keeps && form <= 4; ++form)
                EXPECT_LT(deviation(after, Implementation{form}, truth), 1e-12);
        };
        const auto zero = [](FactorCoefficients f) { return [=](Point x) { return quadratic(1, f.c1, f.c2, x); }; };
        const auto pole = [&](FactorCoefficients f) { return [=](Point x) { return 1.0L / zero(f)(x); }; };
        r.loss = 6.5;
        expect(add_flat_loss, true, [](Point) { return std::pow(10.0L, -6.5L / 20); });
        r.c1 = -1.2, r.c2 = 1;
        expect(add_factor, false, zero({r.c1, r.c2}));
        r.c1 = -1e9, r.c2 = 3;
        expect(add_factor, false, zero({r.c1, r.c2}));
        r.c1 = 0.7, r.c2 = 0, r.added_to = FactorPlace::denominator;
        expect(add_factor, false, pole({r.c1, r.c2}));
        r.deleted = (c.NNUM + 1) / 2;
        if (c.NNUM > 0) expect(delete_factor, false, pole(numerator_factor(c, r.deleted)));
        r.deleted = c.NDEN, r.deleted_from = FactorPlace::denominator;
        expect(delete_factor, false, zero({c.C1D(c.NDEN), c.C2D(c.NDEN)}));
        const bool numerators = round % 2 == 1 && c.NNUM > 1;
        r.permuted = numerators ? FactorPlace::numerator : FactorPlace::denominator;
        std::string sequence;
        for (int k = numerators ? c.NNUM : c.NDEN; k >= 1; --k) sequence += std::to_string(k) + " ";
        r.sequence = std::string_view(sequence);
        expect(permute_factors, true, [](Point) { return 1.0L; });
        r.sampling_frequency = 44100;
        expect(resample, true, [](Point) { return 1.0L; });
    }
}

// What the last digits of the coefficients may come to: they matter where the terms of a denominator nearly cancel.
double rounding(const CascadeForm& c) {
    long double sum = 1;
    for (int k = 1; k <= c.NDEN; ++k) {
        long double least = 1;
        largest_gap([&](Point x) { return least = std::min(least, std::abs(quadratic(1, c.C1D(k), c.C2D(k), x))); },
                    [](Point) { return 0.0L; });
        sum += (1 + std::fabs(c.C1D(k)) + std::fabs(c.C2D(k))) / least;
    }
    return static_cast<double>(1e-15L * sum);
}

// A design comes back from its records, and every factor is found among its roots, whatever goes before it.
TEST(Edits, DesignsCanBeTakenApart) {
    using enum SpectralKind;
    RandomNumbers random(4);
    IirRequest request;
    Lines lines;
    const auto take_apart = [&](std::string_view kind, ZTransform transform, SpectralKind spectral, double edge) {
        SCOPED_TRACE(testing::Message() << kind << z_transform_text(transform) << spectral_name(spectral) << edge);
        test::DigitalCase asked = test::low_pass_case(transform, kind, random.integer(2, 12));
        asked.spec.upperPassEdge = edge;
        if (asked.spec.upperStopEdge > 0) asked.spec.upperStopEdge = 1.2 * edge;
        asked.target = {.kind = spectral, .lower = random.spread(5, 2000)};
        asked.target.upper = asked.target.lower * random.between(1.01, 1.9);
        IirFilter filter = factored_filter(8000, 1, {}, {}), read;
        FixedText<80> title;
        take_function(test::designed(asked).function, filter);
        EXPECT_TRUE(read_iir_records(iir_records(filter, ""), read, title));
        const CascadeForm& c = filter.cascade;
        while (section_count(c) > 0) {
            EXPECT_LT(roots_against_cascade(filter), rounding(c));
            const bool numerator = c.NDEN == 0 || (c.NNUM > 0 && random.coin());
            request.deleted_from = numerator ? FactorPlace::numerator : FactorPlace::denominator;
            request.deleted = random.integer(1, numerator ? c.NNUM : c.NDEN);
            ASSERT_EQ(delete_factor(filter, request, {}, lines).text, "");
        }
        EXPECT_EQ(filter.roots.NP, 0);
    };
    for (const std::string_view kind : {"butterworth", "chebyshev", "inverse_chebyshev", "elliptic"}) {
        for (const ZTransform transform : {ZTransform::bilinear, ZTransform::matched, ZTransform::impulse_invariant}) {
            for (const SpectralKind spectral : {none, to_lowpass, to_highpass, to_bandpass, to_bandreject}) {
                for (const double edge : {10.0, 1000.0, 3000.0}) take_apart(kind, transform, spectral, edge);
            }
        }
    }
    // Of roots that nearly coincide a factor has half the digits.
    IirFilter filter = factored_filter(8000, 1, {}, {{-1.8, 0.81}, {-0.9, 0}, {-0.2, 0}});
    filter.roots.QR = {0.9 + 3e-8, 0.9 - 3e-8, 0.9 + 6e-8, 0.2}, filter.roots.PI = {};
    request.deleted = 1, request.deleted_from = FactorPlace::denominator;
    for (int left = 2; left >= 0; --left) {
        EXPECT_TRUE(delete_factor(filter, request, {}, lines).empty() && filter.roots.NP == left);
        EXPECT_LT(roots_against_cascade(filter), 1e-12);
    }
}

TEST(Edits, ResamplingMovesAllFrequencies) {
    IirFilter f = factored_filter(8000, 1, {{1, 0}}, {{-0.5, 0}});
    f.designed = true, f.transfer.poleCount = 1, f.asked.count = 1;
    const auto each = [&](const auto& use) {
        use(f.fs), use(f.FLO), use(f.FHI), use(f.spec.upperPassEdge), use(f.background.request.upperPassEdge);
        use(f.background.worked_upper_edge), use(f.transfer.POLES_RE(1)), use(f.transfer.normFrequency);
        use(f.asked.rows(1).to);
    };
    each([](double& frequency) { frequency = 8000; });
    Lines lines;
    EXPECT_TRUE(resample(f, {.sampling_frequency = 16}, {.frequency_multiplier = 1e3}, lines).empty());
    EXPECT_EQ(f.T, 1.0 / 16000);
    each([](double frequency) { EXPECT_EQ(frequency, 16000); });
}

const struct {
    std::string_view word;
    IirRequest request;
    std::string_view box;
    void (*prepare)(IirFilter& filter) = [](IirFilter&) {};
} refusals[] = {
    {"add ", {.c1 = 1}, "Degree is too high, factor cannot be added", [](auto& f) { f.roots.NZ = 50; }},
    {"add ", {.c1 = 1}, "There is no place for another factor", [](auto& f) { f.cascade.NNUM = 25; }},
    {"del ",
     {.deleted = 1},
     "not found due to truncation",
     [](auto& f) { f.cascade.C1N(1) += 1e-4, f.word.bits = 12; }},
    {"perm", {.permuted = FactorPlace::both, .sequence = "2 1 3"}, "Incorrect permuted sequence"},
    {"perm", {.sequence = "1"}, "Not enough factors to permute", [](auto& f) { f.cascade.NNUM = 1; }},
    {"perm", {.sequence = "1"}, "No cascade form, operation illegal", [](auto& f) { f.cascade = {}; }},
    {"fs  ", {.sampling_frequency = 1e151}, "Sampling frequency is out of range"},
    {"flat", {.loss = -1e5}, "Flat loss is out of range"},
    {"flat", {.loss = 1}, "Data is unavailable", [](auto& f) { f = {}; }},
};

TEST(Edits, ARefusedCommandChangesNothing) {
    for (const auto& [word, request, box, prepare] : refusals) {
        IirRoom room;
        room.filter = factored_filter(8000, 0.1, {{-0.5, 1}, {1, 0}}, {{-0.5, 0.3}, {0.2, 0.5}, {-0.3, 0}});
        make_forms(room.filter);
        prepare(room.filter);
        room.command = request;
        const std::string before = room.bytes();
        room.send(word);
        EXPECT_NE(room.boxes().find(box), std::string::npos) << room.boxes();
        EXPECT_TRUE(room.bytes() == before && room.state.kept.undoTop == 0) << box;
    }
}

}  // namespace
}  // namespace kavrel
