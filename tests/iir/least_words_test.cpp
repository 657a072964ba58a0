// The least words of designed filters, against published numbers and against all words from 1 to 47 bits tried out.
#include "iir/least_words.h"

#include <fmt/format.h>

#include "iir/allpass_form.h"
#include "tests/iir/designed_filters.h"
#include "tests/iir/filters.h"
#include "tests/iir/iir_room.h"
#include "tests/iir/words.h"

namespace kavrel {
namespace {

using enum Implementation;

// H of a form at z^-1, each coefficient in a word; without one as it is.
struct FormInWord {
    const IirFilter& f;
    Implementation form;
    WordLength word;

    [[nodiscard]] double q(double x) const { return word.quantises() ? in_word(x, word) : x; }
    [[nodiscard]] Point pass(double c0, double c1, double c2, Point x) const {
        return quadratic(q(c0), q(c1), q(c2), x);
    }
    template <int N>
    [[nodiscard]] Point chain(const Table<double, N>& a1, const Table<double, N>& a2, int count, Point x) const {
        Point h = 1;
        for (int k = 1; k <= count; ++k) {
            h /= pass(1, a1(k), a2(k), x);
            h *= a2(k) == 0 ? pass(a1(k), 1, 0, x) : pass(a2(k), a1(k), 1, x);
        }
        return h;
    }
    template <int N>
    [[nodiscard]] Point polynomial(const Table<double, N>& c, int count, Point x) const {
        Point sum = 0;
        for (int i = count; i >= 1; --i) sum = sum * x + Point(q(c(i)));
        return sum;
    }
    [[nodiscard]] Point at(Point x) const {
        const CascadeForm& c = f.cascade;
        const ParallelForm& p = f.parallel;
        const LatticeForm& l = f.lattice;
        const AllpassForm& a = f.allpass;
        Point h = 0;
        if (form == cascade) {
            h = word.quantises() ? in_word(c.CK, {word.bits, word.method, NumberForm::floating_point}) : c.CK;
            for (int k = 1; k <= c.NNUM; ++k) h *= pass(c.SC(k), c.C1N(k), c.C2N(k), x);
            for (int k = 1; k <= c.NDEN; ++k) h /= pass(1, c.C1D(k), c.C2D(k), x);
        } else if (form == parallel) {
            h = q(p.AO);
            for (int k = 1; k <= p.NPAR; ++k) h += pass(p.AL(k), p.BE(k), 0, x) / pass(1, p.GA(k), p.DE(k), x);
        } else if (form == direct) {
            h = polynomial(f.direct.ZNUM, f.direct.JN, x) / polynomial(f.direct.ZDEN, f.direct.JD, x);
        } else if (form == allpass) {
            const double sign = output_that_is_the_filter(f.kind) == AllpassOutput::sum ? 1 : -1;
            h = (chain(a.TA1, a.TA2, a.NTA, x) + Point(sign) * chain(a.TB1, a.TB2, a.NTB, x)) / Point(2);
        } else {
            Point forward = 1, backward = 1;
            h = q(l.GMTAP(1));
            for (int i = 1; i <= l.JM; ++i) {
                const Point late = x * backward, k = q(l.GMMUL(i));
                backward = k * forward + late;
                forward += k * late;
                h += Point(q(l.GMTAP(i + 1))) * backward;
            }
            h /= forward;
        }
        return h;
    }
};

// The highest value of sign times the loss in a band: of many samples, and of parabolas through three of them.
double highest(const FormInWord& form, const IirRequestRow& row, double sign) {
    constexpr int samples = 160;
    const auto value = [&](double hertz) {
        const Point x = std::polar(1.0L, -2 * std::numbers::pi_v<long double> * hertz / form.f.fs);
        return sign * static_cast<double>(-20 * std::log10(std::abs(form.at(x))));
    };
    std::vector<double> at, v;
    for (int i = 0; i <= samples; ++i) {
        at.push_back(row.from + (row.to - row.from) * (1 - std::cos(std::numbers::pi * i / samples)) / 2);
        v.push_back(value(at.back()));
    }
    double most = *std::ranges::max_element(v);
    for (std::size_t i = 1; i + 1 < v.size(); ++i) {
        if (v[i] < v[i - 1] || v[i] < v[i + 1] || std::isinf(v[i])) continue;
        const double h1 = at[i] - at[i - 1], h2 = at[i + 1] - at[i];
        const double s1 = (v[i] - v[i - 1]) / h1, s2 = (v[i + 1] - v[i]) / h2, bend = (s2 - s1) / (h1 + h2);
        if (bend < 0) most = std::max(most, value(at[i] - (s1 + bend * h1) / (2 * bend)));
    }
    return most;
}

bool meets(const FormInWord& form) {
    const IirAsked& asked = form.f.asked;
    constexpr double trifle = 1e-6;
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        if (row.stopband && -highest(form, row, -1) < asked.flat_loss + row.loss - 1 - trifle * row.loss) return false;
        if (row.stopband) continue;
        if (highest(form, row, 1) > asked.flat_loss + 1.1 * row.loss + trifle) return false;
        if (-highest(form, row, -1) < asked.flat_loss - 0.1 * asked.rows(1).loss - trifle) return false;
    }
    return true;
}

// Asks for what a filter of 1 Hz reaches, in Hz of 8 kHz.
void ask(IirFilter& filter, std::initializer_list<IirRequestRow> rows) {
    IirAsked& asked = filter.asked;
    asked.flat_loss = HUGE_VAL;
    double most = -HUGE_VAL;
    for (const auto pass : {true, false}) {
        for (IirRequestRow row : rows) {
            row.from /= 8000, row.to /= 8000;
            const FormInWord exact{filter, cascade, {}};
            if (row.stopband) {
                row.loss = -highest(exact, row, -1) - asked.flat_loss;
                if (!pass) asked.rows(++asked.count) = row;
            } else if (pass) {
                asked.flat_loss = std::min(asked.flat_loss, -highest(exact, row, -1));
                most = std::max(most, highest(exact, row, 1));
                asked.rows(++asked.count) = row;
            }
        }
    }
    for (int i = 1; i <= asked.count && !asked.rows(i).stopband; ++i) asked.rows(i).loss = most - asked.flat_loss;
}
const std::initializer_list<IirRequestRow> requests[] = {
    {{.from = 0, .to = 1000}, {.stopband = true, .from = 2000, .to = 4000}},
    {{.from = 2500, .to = 4000}, {.stopband = true, .from = 0, .to = 1700}},
    {{.from = 900, .to = 1400}, {.stopband = true, .from = 0, .to = 600}, {.stopband = true, .from = 2100, .to = 4000}},
    {{.from = 0, .to = 2600}, {.stopband = true, .from = 3300, .to = 4000}},
    {{.from = 1500, .to = 4000}, {.stopband = true, .from = 0, .to = 900}},
    {{.from = 1500, .to = 2600},
     {.stopband = true, .from = 0, .to = 1000},
     {.stopband = true, .from = 3300, .to = 4000}},
    {{.from = 0, .to = 1500}, {.from = 2600, .to = 4000}, {.stopband = true, .from = 1900, .to = 2200}},
};

void make_all_forms(IirFilter& filter) {
    EXPECT_EQ(makeParallel(filter).text + makeDirect(filter).text, "");
    (void)makeAllpass(filter), (void)makeLattice(filter);
}

TEST(LeastWords, AreThoseFoundByTryingAllWords) {
    constexpr struct {
        ZTransform transform;
        std::string_view function;
        int degree;
    } designs[] = {{ZTransform::bilinear, "elliptic", 5},
                   {ZTransform::matched, "chebyshev", 4},
                   {ZTransform::bilinear, "butterworth", 3}};
    int filters = 0, forms = 0;
    for (std::size_t band = 0; band < std::size(bands); ++band) {
        for (const auto& design : designs) {
            const int degree = bands[band].type == band_pass ? 6 : design.degree;
            IirFilter filter = designed_filter(design.transform, design.function, bands[band], degree);
            make_all_forms(filter);
            ask(filter, requests[band]);
            const auto method = ++filters % 2 == 0 ? WordMethod::round : WordMethod::truncate;
            Unwatched watcher;
            for (const LeastWord& found : least_words(filter, method, {}, watcher)) {
                int least = 0;
                bool all = true;
                for (int bits = longest_word; bits >= 1; --bits) {
                    all = all && meets({filter, found.form, {bits, method, found.word.number_form}});
                    if (all) least = bits;
                }
                EXPECT_EQ(found.word.bits, least) << design.function << ' ' << band << ' ' << form_name(found.form)
                                                  << ' ' << name_of(found.word.number_form) << ' ' << name_of(method);
                ++forms;
            }
        }
    }
    EXPECT_EQ(filters, 21);
    EXPECT_GT(forms, 21 * 7);
}

IirFilter elliptic_of_seven() {
    IirFilter filter = elliptic_low_pass(7, 5151.1705026656);
    make_all_forms(filter);
    return filter;
}

TEST(LeastWords, OfAnEllipticFilterOfDegreeSeven) {
    struct Words {
        Implementation form;
        int bits[2];  // floating, fixed
    };
    const auto expect = [](WordMethod method, std::initializer_list<Words> expected, NumberForm asked, int truncated) {
        IirRoom room;
        room.filter = elliptic_of_seven();
        room.command.truncated_to = {0, method, asked};
        room.command.passband_allowance = 0.01, room.command.stopband_allowance = 1;
        room.send("trun");
        EXPECT_EQ(room.boxes(), "");
        const auto& [words, of] = room.state.words.word_lengths;
        EXPECT_TRUE(words.size() == 10 && of == fingerprint(room.filter) && room.filter.bits == truncated);
        for (const LeastWord& least : words) {
            for (const auto& [form, bits] : expected) {
                const bool fixed = least.word.number_form == NumberForm::fixed_point;
                EXPECT_TRUE(least.form != form || least.word.bits == bits[fixed]) << form_name(form) << fixed;
            }
            EXPECT_TRUE(least.passband_loss > 0.09 && least.passband_loss < 0.110001) << least.passband_loss;
            EXPECT_TRUE(least.stopband_loss > 58.9999 && least.stopband_loss < 60.001) << least.stopband_loss;
        }
        EXPECT_TRUE(room.reported("    direct      floating point      24       0.10"));
        room.send("undo");
        EXPECT_EQ(fingerprint(room.filter), fingerprint(elliptic_of_seven())) << "one level";
    };
    expect(WordMethod::round, {{cascade, {13, 13}}, {parallel, {14, 13}}, {allpass, {15, 14}}, {direct, {24, 22}}},
           NumberForm::floating_point, 24);
    // Of the cascade 14 in fixed words, were c2 of a pair of zeros on the circle a number next to 1: cut off, none is.
    expect(WordMethod::truncate, {{cascade, {13, 13}}, {parallel, {14, 15}}, {allpass, {13, 14}}, {direct, {24, 23}}},
           NumberForm::fixed_point, 23);
}

TEST(LeastWords, LeaveAllAsItWasWhenStoppedOrWithoutAWord) {
    IirRoom room;
    room.filter = elliptic_of_seven();
    room.command.truncated_to.bits = 0;
    const std::string bytes = room.bytes();
    room.window.stop_at = 100;
    room.send("trun");
    EXPECT_EQ(room.lines(), std::string(stopped_line) + '\n');
    EXPECT_TRUE(room.state.words.word_lengths.result.empty() && room.bytes() == bytes);

    room.window.stop_at = -1;
    room.filter.asked.rows(2).loss = 80;
    const std::string asked_more = room.bytes();
    room.send("trun");
    EXPECT_TRUE(room.reported("cascade     floating point    none\n") && room.reported("    direct  floating point\n"));
    EXPECT_EQ(room.bytes(), asked_more);
    EXPECT_EQ(room.state.words.word_lengths.result.size(), 10U);
}

}  // namespace
}  // namespace kavrel
