#include "iir/reverse_frequency.h"

#include "iir/iir_request_check.h"
#include "tests/iir/factored_filter.h"
#include "tests/iir/iir_room.h"

namespace kavrel {
namespace {

TEST(ReverseFrequency, TurnsHRound) {
    RandomNumbers random(3);
    for (int round = 0; round < 100; ++round) {
        const IirFilter before = random_cascade(random, random.integer(1, 12));
        IirFilter after = before;
        if (round % 2 == 1) scale(after, random);
        Lines lines;
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
        Point& chain = chains[filter.allpass.LARR(i) == 1 ? 0 : 1];
        if (r.PI(i) == 0) {
            chain *= quadratic(-r.QR(i), 1, 0, x) / quadratic(1, -r.QR(i), 0, x);
        } else {
            const double c1 = -2 * r.QR(i), c2 = r.QR(i) * r.QR(i) + r.PI(i) * r.PI(i);
            chain *= quadratic(c2, c1, 1, x) / quadratic(1, c1, c2, x);
            ++i;
        }
    }
    const bool sum = output_that_is_the_filter(filter.kind) == AllpassOutput::sum;
    return sum ? (chains[0] + chains[1]) / 2.0L : (chains[1] - chains[0]) / 2.0L;
}

IirFilter allpass_pair(DigitalKind kind, int first_degree, int second_degree) {
    IirFilter filter;
    filter.fs = 1;
    filter.kind = kind;
    filter.allpass.ALLPASS_OK = true;
    DigitalRoots& r = filter.roots;
    const auto add = [&](double re, double im, int chain) {
        ++r.NP, r.QR(r.NP) = re, r.PI(r.NP) = im, filter.allpass.LARR(r.NP) = chain;
    };
    for (const int chain : {1, 2}) {
        const int degree = chain == 1 ? first_degree : second_degree;
        for (int i = 1; 2 * i <= degree; ++i) {
            add(0.1 * i * chain, 0.5, chain);
            add(0.1 * i * chain, -0.5, chain);
        }
        if (degree % 2 == 1) add(0.3 * chain, 0, chain);
    }
    return filter;
}

TEST(ReverseFrequency, ChainsAreTheTurnedFilter) {
    struct Row {
        DigitalKind kind;
        int first, second;
        bool kept;
    };
    using enum DigitalKind;
    const Row rows[] = {{low_pass, 3, 2, true},    {low_pass, 2, 3, true},  {high_pass, 3, 2, true},
                        {high_pass, 2, 3, false},  // as a sum it is the negative of the filter
                        {band_pass, 2, 4, true},   {band_pass, 3, 3, true}, {band_reject, 2, 4, true},
                        {band_reject, 3, 3, false}};
    for (const Row& row : rows) {
        const IirFilter before = allpass_pair(row.kind, row.first, row.second);
        IirFilter after = before;
        Lines lines;
        turn_frequency(after, {}, lines);
        ASSERT_EQ(after.allpass.ALLPASS_OK, row.kept) << row.first << row.second;
        if (!row.kept) continue;
        EXPECT_LT(largest_gap([&](Point x) { return allpass_output(before, -x); },
                              [&](Point x) { return allpass_output(after, x); }),
                  1e-14)
            << static_cast<int>(row.kind) << row.first << row.second;
    }
    // Turned back without its kind a low-pass is no difference any more.
    IirFilter filter = allpass_pair(low_pass, 3, 2);
    Lines lines;
    turn_frequency(filter, {}, lines);
    turn_frequency(filter, {}, lines);
    EXPECT_FALSE(filter.allpass.ALLPASS_OK);
}

TEST(ReverseFrequency, TheCheckFindsWhatItFoundBefore) {
    for (const bool sloping : {false, true}) {
        IirFilter filter = factored_filter(8000, 0.3, {{1.2, 1}, {1, 0}}, {{-0.5, 0.3}, {-0.2, 0}});
        filter.asked.count = 2;
        filter.asked.rows(1) = {.from = 300, .to = 1000, .loss = 0.5};
        filter.asked.rows(2) = {.stopband = true, .from = 2000, .to = 4000, .loss = 10};
        filter.asked.sloping = sloping;
        filter.asked.slope = 3;
        Unwatched watcher;
        const RequestCheck before = check_iir(filter, watcher);
        Lines lines;
        turn_frequency(filter, {}, lines);
        const RequestCheck after = check_iir(filter, watcher);
        ASSERT_EQ(before.rows.size(), sloping ? 4U : 3U);
        ASSERT_EQ(after.rows.size(), before.rows.size());
        for (std::size_t i = 0; i < before.rows.size(); ++i) {
            EXPECT_EQ(after.rows[i].what, before.rows[i].what);
            EXPECT_NEAR(after.rows[i].reached, before.rows[i].reached, 1e-9) << before.rows[i].what;
        }
    }
}

TEST(ReverseFrequency, MapsKindEdgesAndRequest) {
    IirRoom room;
    IirFilter& f = room.filter;
    f = factored_filter(8000, 1, {{1.2, 1}, {1, 0}}, {{-0.5, 0.3}, {-0.2, 0}});
    f.kind = DigitalKind::low_pass;
    f.FilterTypeText = "lowpass";
    f.FHI = 1000;
    f.direct.JN = f.direct.JD = f.lattice.JM = f.parallel.NPAR = 1;
    f.lattice.JT = 2;
    f.LastBits = 1;
    f.asked.count = 2;
    f.asked.rows(1) = {.from = 0, .to = 1000, .loss = 0.5};
    f.asked.rows(2) = {.stopband = true, .from = 2000, .to = 4000, .loss = 40};
    const IirFilter before = f;
    room.send("conv");
    EXPECT_EQ(room.boxes(), "");
    EXPECT_TRUE(room.reported("                 Transmission zeros"));
    EXPECT_TRUE(room.reported("              6.000000E-01     -8.000000E-01")) << "of the turned filter";
    EXPECT_TRUE(room.reported("1.180669 KHz")) << "acos 0.6 fs/(2 pi)";
    EXPECT_EQ(f.kind, DigitalKind::high_pass);
    EXPECT_EQ(f.FilterTypeText, std::string_view("highpass"));
    EXPECT_EQ(f.FLO, 3000);
    EXPECT_EQ(f.FHI, 0);
    EXPECT_EQ(f.LastBits, 0);
    EXPECT_FALSE(is_there(f.direct) || is_there(f.lattice) || is_there(f.parallel));
    EXPECT_TRUE(f.converted && f.Modified);
    EXPECT_EQ(f.asked.rows(1).from, 3000);
    EXPECT_EQ(f.asked.rows(1).to, 4000);
    EXPECT_EQ(f.asked.rows(2).from, 0);
    EXPECT_EQ(f.asked.rows(2).to, 2000);

    room.send("conv");
    EXPECT_EQ(room.boxes(), "Warning: Conversion done already");
    EXPECT_FALSE(room.reported("Transmission zeros"));
    EXPECT_EQ(f.cascade.C1N, before.cascade.C1N);
    EXPECT_EQ(f.roots.QR, before.roots.QR);
    EXPECT_EQ(f.kind, DigitalKind::high_pass) << "the signs alone turn back";
    EXPECT_EQ(f.asked.count, 0);
    room.send("undo");
    room.send("undo");
    EXPECT_EQ(room.bytes(), iir_keeping.snapshot.bytes(before, {}));

    f.kind = DigitalKind::high_pass;
    f.FLO = 1000, f.FHI = 0;
    room.send("conv");
    EXPECT_EQ(f.FLO, 1000) << "one test behind the other";
    EXPECT_EQ(f.FHI, 0);
    EXPECT_EQ(f.kind, DigitalKind::low_pass);
}

}  // namespace
}  // namespace kavrel
