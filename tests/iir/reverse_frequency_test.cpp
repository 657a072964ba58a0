#include "iir/reverse_frequency.h"

#include "iir/iir_records.h"
#include "iir/iir_request_check.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

using enum DigitalKind;

TEST(ReverseFrequency, TurnsHRound) {
    RandomNumbers random(3);
    Lines lines;
    for (int round = 0; round < 100; ++round) {
        const IirFilter before = random_filter(random, random.integer(1, 24));
        IirFilter after = before;
        if (round % 2 == 1) scale(after, random);
        EXPECT_FALSE(turn_frequency(after, {}, lines));
        const auto turned = [&](Point x) { return h_of_cascade(before, -x); };
        EXPECT_LT(largest_gap(turned, [&](Point x) { return h_of_cascade(after, x); }), 1e-12) << round;
        EXPECT_LT(largest_gap(turned, [&](Point x) { return h_of_roots(after, x); }), 1e-12) << round;
    }
}

// The output that is the filter, of chains as they are built of the poles.
Point allpass_output(const IirFilter& filter, Point x) {
    Point chains[] = {1, 1};
    const DigitalRoots& r = filter.roots;
    for (int i = 1; i <= r.NP; ++i) {
        const Point pole(r.QR(i), r.PI(i));
        chains[filter.allpass.LARR(i) - 1] *= (x - std::conj(pole)) / (1.0L - pole * x);
    }
    const bool sum = output_that_is_the_filter(filter.kind) == AllpassOutput::sum;
    return (sum ? chains[0] + chains[1] : chains[1] - chains[0]) / 2.0L;
}

IirFilter allpass_pair(DigitalKind kind, int first_degree, int second_degree) {
    RootList poles;
    for (const auto& [chain, degree] : {std::pair{0.1, first_degree}, {0.2, second_degree}}) {
        for (int i = 1; 2 * i <= degree; ++i) poles.push_back({i * chain, 0.5});
        if (degree % 2 == 1) poles.push_back({3 * chain, 0});
    }
    IirFilter filter = filter_of(1, {}, poles);
    filter.kind = kind, filter.allpass.ALLPASS_OK = true;
    for (int i = 1; i <= filter.roots.NP; ++i) filter.allpass.LARR(i) = i <= first_degree ? 1 : 2;
    return filter;
}

TEST(ReverseFrequency, ChainsAreTheTurnedFilter) {
    const struct {
        DigitalKind kind;
        int first, second;
        bool kept = true;  // else as a sum it is the negative of the filter
    } rows[] = {{low_pass, 3, 2},  {low_pass, 2, 3},  {high_pass, 3, 2},   {high_pass, 2, 3, false},
                {band_pass, 2, 4}, {band_pass, 3, 3}, {band_reject, 2, 4}, {band_reject, 3, 3, false}};
    Lines lines;
    for (const auto& [kind, first, second, kept] : rows) {
        const IirFilter before = allpass_pair(kind, first, second);
        IirFilter after = before;
        turn_frequency(after, {}, lines);
        ASSERT_EQ(after.allpass.ALLPASS_OK, kept) << first << second;
        if (!kept) continue;
        const auto turned = [&](Point x) { return allpass_output(before, -x); };
        EXPECT_LT(largest_gap(turned, [&](Point x) { return allpass_output(after, x); }), 1e-14) << first << second;
    }
    IirFilter filter = allpass_pair(low_pass, 3, 2);
    for (int turn = 1; turn <= 2; ++turn) turn_frequency(filter, {}, lines);
    EXPECT_FALSE(filter.allpass.ALLPASS_OK) << "turned back without its kind a low-pass is no difference any more";
}

// What was asked turns too: the check finds what it found before.
TEST(ReverseFrequency, MapsKindEdgesAndRequest) {
    for (const bool sloping : {false, true}) {
        IirRoom room;
        IirFilter& f = room.filter;
        f = factored_filter(8000, 0.3, {{1.2, 1}, {1, 0}}, {{-0.5, 0.3}, {-0.2, 0}});
        f.kind = low_pass, f.FilterTypeText = "lowpass", f.FHI = 1000, f.LastBits = 1;
        f.direct.JN = f.direct.JD = f.lattice.JM = f.parallel.NPAR = 1, f.lattice.JT = 2;
        f.asked.count = 2, f.asked.sloping = sloping, f.asked.slope = 3;
        f.asked.rows = {{{{.from = 300, .to = 1000, .loss = 0.5}, {.stopband = true, .from = 2000, .to = 4000}}}};
        const IirFilter before = f;
        Unwatched watcher;
        const RequestCheck found = check_iir(f, watcher);
        room.send("conv");
        const RequestCheck turned = check_iir(f, watcher);
        ASSERT_EQ(turned.rows.size(), found.rows.size());
        for (std::size_t i = 0; i < turned.rows.size(); ++i) {
            EXPECT_NEAR(turned.rows[i].reached, found.rows[i].reached, 1e-9) << turned.rows[i].what;
        }
        EXPECT_TRUE(room.reported("1.180669 KHz")) << "acos 0.6 fs/(2 pi), of the turned filter";
        EXPECT_TRUE(f.kind == high_pass && f.FilterTypeText == std::string_view("highpass"));
        EXPECT_TRUE(f.FLO == 3000 && f.FHI == 0 && f.LastBits == 0 && f.converted && f.Modified);
        EXPECT_FALSE(is_there(f.direct) || is_there(f.lattice) || is_there(f.parallel));
        EXPECT_TRUE(f.asked.rows(1).from == 3000 && f.asked.rows(1).to == 3700);
        EXPECT_TRUE(f.asked.rows(2).from == 0 && f.asked.rows(2).to == 2000);
        room.send("conv");
        EXPECT_TRUE(f.cascade.C1N == before.cascade.C1N && f.roots.QR == before.roots.QR);
        EXPECT_TRUE(f.kind == high_pass && f.asked.count == 0) << "the signs alone turn back";
        room.send("undo"), room.send("undo");
        EXPECT_EQ(room.bytes(), iir_snapshot(before, ""));
        f.kind = high_pass, f.FLO = 1000, f.FHI = 0;
        room.send("conv");
        EXPECT_TRUE(f.kind == low_pass && f.FLO == 1000 && f.FHI == 0) << "one test behind the other";
    }
}

}  // namespace
}  // namespace kavrel
