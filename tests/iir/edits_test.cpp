// What edits promise about H, and what they refuse.
#include "iir/edits.h"

#include <cmath>
#include <tuple>

#include "iir/cascade_pairing.h"
#include "iir/command_tools.h"
#include "iir/iir_records.h"
#include "tests/approximation/digital_cases.h"
#include "tests/iir/factored_filter.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

bool reads_again(const IirFilter& filter) {
    IirFilter found;
    FixedText<80> title;
    return read_iir_records(iir_records(filter, ""), found, title);
}

// H behind an edit by H before it.
struct Promise {
    const char* what;
    IirEdit edit;
    void (*ask)(IirRequest& request, const IirFilter& filter);
    Point (*factor)(const IirRequest& request, const IirFilter& before, Point x);
    bool keeps_forms = true;
    bool keeps_request = true;
};

Point whole(const IirRequest&, const IirFilter&, Point) { return 1; }
Point added(const IirRequest& r, const IirFilter&, Point x) { return quadratic(1, r.c1, r.c2, x); }
Point deleted_numerator(const IirRequest& r, const IirFilter& before, Point x) {
    const auto [c1, c2] = numerator_factor(before.cascade, r.deleted);
    return 1.0L / quadratic(1, c1, c2, x);
}
Point deleted_denominator(const IirRequest& r, const IirFilter& before, Point x) {
    return quadratic(1, before.cascade.C1D(r.deleted), before.cascade.C2D(r.deleted), x);
}

const Promise promises[] = {
    {.what = "flat",
     .edit = add_flat_loss,
     .ask = [](IirRequest& r, const IirFilter&) { r.loss = 6.5; },
     .factor = [](const IirRequest&, const IirFilter&, Point) { return Point(std::pow(10.0L, -6.5L / 20)); }},
    {.what = "a pair of zeros",
     .edit = add_factor,
     .ask = [](IirRequest& r, const IirFilter&) { r.c1 = -1.2, r.c2 = 1; },
     .factor = added,
     .keeps_forms = false,
     .keeps_request = false},
    {.what = "real zeros far apart",
     .edit = add_factor,
     .ask = [](IirRequest& r, const IirFilter&) { r.c1 = -1e9, r.c2 = 3; },
     .factor = added,
     .keeps_forms = false,
     .keeps_request = false},
    {.what = "a pole",
     .edit = add_factor,
     .ask = [](IirRequest& r, const IirFilter&) { r.c1 = 0.7, r.c2 = 0, r.added_to = FactorPlace::denominator; },
     .factor = [](const IirRequest& r, const IirFilter& f, Point x) { return 1.0L / added(r, f, x); },
     .keeps_forms = false,
     .keeps_request = false},
    {.what = "numerator deleted",
     .edit = delete_factor,
     .ask = [](IirRequest& r, const IirFilter& f) { r.deleted = (f.cascade.NNUM + 1) / 2; },
     .factor = deleted_numerator,
     .keeps_forms = false,
     .keeps_request = false},
    {.what = "denominator deleted",
     .edit = delete_factor,
     .ask = [](IirRequest& r,
               const IirFilter& f) { r.deleted = f.cascade.NDEN, r.deleted_from = FactorPlace::denominator; },
     .factor = deleted_denominator,
     .keeps_forms = false,
     .keeps_request = false},
    {.what = "denominators turned round",
     .edit = permute_factors,
     .ask =
         [](IirRequest& r, const IirFilter& f) {
             std::string sequence;
             for (int k = f.cascade.NDEN; k >= 1; --k) sequence += std::to_string(k) + " ";
             r.sequence = std::string_view(sequence), r.permuted = FactorPlace::denominator;
         },
     .factor = whole},
    {.what = "resampled",
     .edit = resample,
     .ask = [](IirRequest& r, const IirFilter&) { r.sampling_frequency = 44100; },
     .factor = whole},
};

// Forms of one value each, so that it can be seen whether they are kept.
void mark_forms(IirFilter& filter) {
    filter.parallel.NPAR = 1, filter.parallel.AL(1) = 2, filter.parallel.BE(1) = 3, filter.parallel.AO = 4;
    filter.parallel.GA(1) = 5;
    filter.direct.JN = filter.direct.JD = 1, filter.direct.ZNUM(1) = 6, filter.direct.ZDEN(1) = 1;
    filter.lattice.JM = 1, filter.lattice.JT = 2, filter.lattice.GMMUL(1) = 0.5, filter.lattice.GMTAP(2) = 7;
    filter.asked.count = 1;
    filter.asked.rows(1) = {.from = 100, .to = 200, .loss = 1};
}

TEST(Edits, DoToHWhatTheyPromise) {
    RandomNumbers random(1);
    for (int round = 0; round < 200; ++round) {
        IirFilter before = random_cascade(random, random.integer(2, 10));
        if (round % 2 == 1) scale(before, random);
        mark_forms(before);
        for (const Promise& promise : promises) {
            IirRequest request;
            promise.ask(request, before);
            IirFilter after = before;
            Lines lines;
            const Refusal wrong = promise.edit(after, request, {}, lines);
            const bool no_numerator =
                promise.factor != deleted_denominator && request.deleted == 0 && promise.edit == delete_factor;
            ASSERT_EQ(wrong.text, no_numerator ? "Factor does not exist" : "") << promise.what;
            if (no_numerator) continue;
            const auto expected = [&](Point x) { return h_of_cascade(before, x) * promise.factor(request, before, x); };
            // Off the circle, so that none of its zeros is met.
            const auto inner = [](const auto& h) { return [&h](Point x) { return h(0.9L * x); }; };
            const auto cascade = [&](Point x) { return h_of_cascade(after, x); };
            const auto roots = [&](Point x) { return h_of_roots(after, x); };
            EXPECT_LT(largest_gap(inner(expected), inner(cascade)), 1e-12) << promise.what << ' ' << round;
            EXPECT_LT(largest_gap(inner(expected), inner(roots)), 1e-12) << promise.what << ' ' << round;
            EXPECT_EQ(after.asked.count, promise.keeps_request ? 1 : 0) << promise.what;
            EXPECT_EQ(is_there(after.parallel) && is_there(after.direct) && is_there(after.lattice),
                      promise.keeps_forms)
                << promise.what;
        }
    }
}

// Every factor of a design is found among its roots, whatever goes before it.
TEST(Edits, DesignsCanBeTakenApart) {
    RandomNumbers random(4);
    int deleted = 0;
    for (const std::string_view kind : {"butterworth", "chebyshev", "inverse_chebyshev", "elliptic"}) {
        for (const ZTransform transform : {ZTransform::bilinear, ZTransform::matched, ZTransform::impulse_invariant}) {
            for (const SpectralKind spectral : {SpectralKind::none, SpectralKind::to_lowpass, SpectralKind::to_highpass,
                                                SpectralKind::to_bandpass, SpectralKind::to_bandreject}) {
                for (const double edge : {10.0, 1000.0, 3000.0}) {
                    test::DigitalCase asked{.spec = {}, .transform = transform, .target = {.kind = spectral}};
                    asked.spec.upperPassEdge = edge;
                    asked.spec.bandEdgeLoss = 0.5;
                    if (kind == "elliptic" || kind == "inverse_chebyshev") asked.spec.upperStopEdge = 1.2 * edge;
                    test::take_function(kind, random.integer(2, 12), asked.spec);
                    asked.target.lower = random.spread(5, 2000);
                    asked.target.upper = asked.target.lower * random.between(1.01, 1.9);
                    IirFilter filter = factored_filter(8000, 1, {}, {});
                    take_function(test::designed(asked).function, filter);
                    EXPECT_TRUE(reads_again(filter)) << kind << edge;
                    while (section_count(filter.cascade) > 0) {
                        EXPECT_LT(roots_against_cascade(filter), rounding(filter))
                            << kind << static_cast<int>(transform) << edge;
                        const bool numerator = filter.cascade.NDEN == 0 || (filter.cascade.NNUM > 0 && random.coin());
                        IirRequest request;
                        request.deleted_from = numerator ? FactorPlace::numerator : FactorPlace::denominator;
                        request.deleted = random.integer(1, numerator ? filter.cascade.NNUM : filter.cascade.NDEN);
                        Lines lines;
                        ASSERT_EQ(delete_factor(filter, request, {}, lines).text, "")
                            << kind << static_cast<int>(transform) << static_cast<int>(spectral) << ' ' << edge;
                        ++deleted;
                    }
                    EXPECT_EQ(filter.roots.NP, 0);
                }
            }
        }
    }
    EXPECT_GT(deleted, 1000);
    // Of roots that nearly coincide a factor has half the digits.
    IirFilter filter = factored_filter(8000, 1, {}, {{-1.8, 0.81}, {-0.9, 0}, {-0.2, 0}});
    filter.roots.QR(1) = 0.9 + 3e-8, filter.roots.QR(2) = 0.9 - 3e-8, filter.roots.QR(3) = 0.9 + 6e-8;
    filter.roots.PI = {};
    IirRequest request;
    request.deleted = 1, request.deleted_from = FactorPlace::denominator;
    for (int left = 2; left >= 0; --left) {
        Lines lines;
        EXPECT_TRUE(delete_factor(filter, request, {}, lines).empty());
        EXPECT_LT(roots_against_cascade(filter), 1e-12);
        EXPECT_EQ(filter.roots.NP, left);
    }
}

// Each form has the level in its own places.
TEST(Edits, FlatLossMovesEveryForm) {
    IirFilter filter = factored_filter(8000, 2, {{1, 0}}, {{-0.5, 0}});
    mark_forms(filter);
    filter.allpass.ALLPASS_OK = true, filter.allpass.NTA = filter.allpass.NTB = 1;
    IirRequest request;
    Lines lines;
    request.loss = 0;
    EXPECT_TRUE(add_flat_loss(filter, request, {}, lines).empty());
    EXPECT_TRUE(is_there(filter.allpass) && lines.empty());
    request.loss = 20;
    EXPECT_TRUE(add_flat_loss(filter, request, {}, lines).empty());
    const auto& [p, d, l] = std::tie(filter.parallel, filter.direct, filter.lattice);
    const double found[] = {filter.cascade.CK, filter.roots.ZMULT, p.AL(1), p.BE(1), p.AO, d.ZNUM(1), l.GMTAP(2)};
    const double before[] = {2, 2, 2, 3, 4, 6, 7};
    for (std::size_t i = 0; i < std::size(found); ++i) EXPECT_NEAR(found[i], before[i] / 10, 1e-15) << i;
    EXPECT_EQ(p.GA(1), 5);
    EXPECT_EQ(l.GMMUL(1), 0.5);
    EXPECT_EQ(d.ZDEN(1), 1);
    EXPECT_EQ(filter.asked.flat_loss, 20);
    EXPECT_FALSE(is_there(filter.allpass) || filter.allpass.ALLPASS_OK);
    EXPECT_EQ(lines.size(), 1U);
}

TEST(Edits, ResamplingMovesAllFrequencies) {
    IirFilter filter = factored_filter(8000, 1, {{1, 0}}, {{-0.5, 0}});
    filter.FLO = 500, filter.FHI = 1000;
    filter.designed = true;
    filter.spec.upperPassEdge = filter.background.request.upperPassEdge = 1000;
    filter.background.worked_upper_edge = 1100;
    filter.transfer.poleCount = 1, filter.transfer.POLES_RE(1) = -3, filter.transfer.normFrequency = 7;
    filter.asked.count = 1, filter.asked.rows(1) = {.from = 0, .to = 1000, .loss = 1};
    IirRequest request;
    Lines lines;
    request.sampling_frequency = 16;
    UnitSet units;
    units.frequency_multiplier = 1e3;
    EXPECT_TRUE(resample(filter, request, units, lines).empty());
    EXPECT_EQ(filter.fs, 16000);
    EXPECT_EQ(filter.T, 1.0 / 16000);
    const DesignBackground& background = filter.background;
    const double found[] = {filter.FLO,
                            filter.FHI,
                            filter.spec.upperPassEdge,
                            background.request.upperPassEdge,
                            background.worked_upper_edge,
                            filter.transfer.POLES_RE(1),
                            filter.transfer.normFrequency,
                            filter.asked.rows(1).to};
    const double twice[] = {500, 1000, 1000, 1000, 1100, -3, 7, 1000};
    for (std::size_t i = 0; i < std::size(found); ++i) EXPECT_EQ(found[i], 2 * twice[i]) << i;
}

// A refused command changes nothing, and names the field to be changed.
struct Refused {
    const char* what;
    std::string_view word;
    void (*ask)(IirRequest& request);
    std::string_view box;
    void (*prepare)(IirFilter& filter) = [](IirFilter&) {};
};

const Refused refusals[] = {
    {"no factor", "add ", [](IirRequest&) {}, "Error: Values not permitted"},
    {"one zero too many", "add ", [](IirRequest& r) { r.c1 = 1; },
     "Error:  **** Degree is too high, factor cannot be added ****", [](IirFilter& f) { f.roots.NZ = 50; }},
    {"two poles too many", "add ", [](IirRequest& r) { r.c2 = 1, r.added_to = FactorPlace::denominator; },
     "Error:  **** Degree is too high, factor cannot be added ****", [](IirFilter& f) { f.roots.NP = 49; }},
    {"factor 26", "add ", [](IirRequest& r) { r.c1 = 1; }, "Error: There is no place for another factor",
     [](IirFilter& f) { f.cascade.NNUM = 25; }},
    {"factor 0", "del ", [](IirRequest&) {}, "Error: Factor does not exist"},
    {"factor 3 of 2", "del ", [](IirRequest& r) { r.deleted = 3; }, "Error: Factor does not exist"},
    {"factor -1", "del ", [](IirRequest& r) { r.deleted = -1; }, "Error: Factor does not exist"},
    {"truncated", "del ", [](IirRequest& r) { r.deleted = 1; }, "Error: Sorry, a root was not found due to truncation",
     [](IirFilter& f) { f.cascade.C1N(1) += 1e-4, f.LastBits = 1e-4; }},
    {"sequence with 0", "perm", [](IirRequest& r) { r.sequence = "0 1"; }, "Eror: Incorrect permuted sequence"},
    {"repeated", "perm", [](IirRequest& r) { r.sequence = "2 2"; }, "Eror: Incorrect permuted sequence"},
    {"missing", "perm", [](IirRequest& r) { r.sequence = "2"; }, "Eror: Incorrect permuted sequence"},
    {"one more", "perm", [](IirRequest& r) { r.sequence = "2 1 3"; }, "Eror: Incorrect permuted sequence"},
    {"words", "perm", [](IirRequest& r) { r.sequence = "two, one"; }, "Eror: Incorrect permuted sequence"},
    {"blank", "perm", [](IirRequest&) {}, "Eror: Incorrect permuted sequence"},
    {"both, unlike counts", "perm", [](IirRequest& r) { r.sequence = "2 1 3", r.permuted = FactorPlace::both; },
     "Eror: Incorrect permuted sequence"},
    {"a factor alone", "perm", [](IirRequest& r) { r.sequence = "1"; }, "Error: Not enough factors to permute",
     [](IirFilter& f) { f.cascade.NNUM = 1; }},
    {"sections alone", "perm", [](IirRequest& r) { r.sequence = "1"; }, "Error: Not enough factors to permute",
     [](IirFilter& f) { f.cascade.NNUM = f.cascade.NDEN = 1; }},
    {"no cascade", "perm", [](IirRequest& r) { r.sequence = "1"; }, "Error: No cascade form, operation illegal",
     [](IirFilter& f) { f.cascade.NNUM = f.cascade.NDEN = 0; }},
    {"sampling 0", "fs  ", [](IirRequest&) {}, "Error: Zero value not permitted"},
    {"sampling < 0", "fs  ", [](IirRequest& r) { r.sampling_frequency = -8000; }, "Error: Values must be > 0.0"},
    {"sampling beyond", "fs  ", [](IirRequest& r) { r.sampling_frequency = 1e151; },
     "Error: Sampling frequency is out of range"},
    {"loss beyond", "flat", [](IirRequest& r) { r.loss = 1e5; }, "Error: Flat loss is out of range"},
    {"gain beyond", "flat", [](IirRequest& r) { r.loss = -1e5; }, "Error: Flat loss is out of range"},
    {"no filter", "flat", [](IirRequest& r) { r.loss = 1; }, "Error: Data is unavailable",
     [](IirFilter& f) { f = {}; }},
    {"nothing stored", "rcl ", [](IirRequest&) {}, "Error: Nothing stored\nor error reading data file"},
    {"nothing to undo", "undo", [](IirRequest&) {}, "Error: Nothing to undo"},
    {"nothing to redo", "redo", [](IirRequest&) {}, "Error: Nothing to redo"},
};

TEST(Edits, ARefusedCommandChangesNothing) {
    for (const Refused& row : refusals) {
        IirRoom room;
        room.filter = factored_filter(8000, 2, {{-0.5, 1}, {1, 0}}, {{-0.5, 0.3}, {0.2, 0.5}, {-0.3, 0}});
        mark_forms(room.filter);
        row.prepare(room.filter);
        row.ask(room.command);
        const std::string before = room.bytes();
        room.send(row.word);
        EXPECT_EQ(room.boxes(), row.box) << row.what;
        EXPECT_EQ(room.bytes(), before) << row.what;
        EXPECT_EQ(room.state.kept.undoTop, 0) << row.what;
        const std::string_view hindrance = iir_hindrance(room.desk, CommandKeyword(row.word));
        EXPECT_TRUE(hindrance.empty() || row.box.ends_with(hindrance)) << row.what << hindrance;
    }
}

TEST(Edits, ASequenceMayPermuteBothPlaces) {
    IirRoom room;
    room.filter = factored_filter(8000, 2, {{1, 0.1}, {2, 0.2}, {3, 0.3}}, {{0.1, 0}, {0.2, 0}, {0.3, 0}});
    RandomNumbers random(2);
    scale(room.filter, random);
    const IirFilter before = room.filter;
    room.send("perm", IIR_PERMUTE_DLG, {{"place", "Both"}, {"sequence", "3, 1 2"}});
    EXPECT_EQ(room.boxes(), "");
    const int sequence[] = {3, 1, 2};
    for (int k = 1; k <= 3; ++k) {
        const int from = sequence[k - 1];
        EXPECT_EQ(numerator_factor(room.filter.cascade, k).c1, numerator_factor(before.cascade, from).c1);
        EXPECT_EQ(room.filter.cascade.SC(k), before.cascade.SC(from));
        EXPECT_EQ(room.filter.cascade.C1D(k), before.cascade.C1D(from));
    }
    room.send("perm", IIR_PERMUTE_DLG, {{"sequence", "1 2 3"}});
    EXPECT_EQ(room.state.kept.undoTop, 1) << "what changes nothing is no edit";
}

// Zeros may lie anywhere, poles inside the circle.
TEST(Edits, FactorsOfAnyKindMayBeAdded) {
    IirRoom room;
    room.filter = factored_filter(8000, 1, {}, {{-0.5, 0}});
    for (const auto& [c1, c2] : {std::pair{"0", "1"}, {"-3", "9"}, {"1e150", "1e150"}, {"1e-150", "1e-150"}}) {
        room.send("add ", IIR_ADD_DLG, {{"c1", c1}, {"c2", c2}, {"place", "Numerator"}});
        EXPECT_EQ(room.boxes(), "") << c1;
    }
    EXPECT_EQ(room.filter.roots.NZ, 8);
    EXPECT_LT(roots_against_cascade(room.filter), 1e-12);
    room.send("del ", IIR_DELETE_DLG, {{"number", "3"}, {"place", "Numerator"}});
    EXPECT_EQ(room.boxes(), "");
    EXPECT_EQ(room.filter.roots.NZ, 6);
    for (const auto& [c1, c2] : {std::pair{"0", "1"}, {"0", "-1"}, {"-1.9", "0.9"}, {"1", "0"}, {"2.1", "1.2"}}) {
        room.send("add ", IIR_ADD_DLG, {{"c1", c1}, {"c2", c2}, {"place", "Denominator"}});
        EXPECT_EQ(room.boxes(), "Error: Poles must lie inside the unit circle") << c1;
    }
    EXPECT_EQ(room.filter.roots.NP, 1);
    room.send("add ", IIR_ADD_DLG, {{"c1", "-1.89"}, {"c2", "0.9"}, {"place", "Denominator"}});
    EXPECT_EQ(room.filter.roots.NP, 3);
}

}  // namespace
}  // namespace kavrel
