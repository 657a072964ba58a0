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

// H at a point z^-1.
Point h_of_form(const IirFilter& f, Implementation form, Point x) {
    const auto& [p, d, l, a] = std::tie(f.parallel, f.direct, f.lattice, f.allpass);
    const auto chain = [&](const auto& a1, const auto& a2, int count) {
        Point h = 1;
        for (int k = 1; k <= count; ++k) {
            h *= a2(k) == 0 ? quadratic(a1(k), 1, 0, x) : quadratic(a2(k), a1(k), 1, x);
            h /= quadratic(1, a1(k), a2(k), x);
        }
        return h;
    };
    if (form == cascade) return h_of_cascade(f, x);
    if (form == allpass) {
        const Point sign = output_that_is_the_filter(f.kind) == AllpassOutput::sum ? 1 : -1;
        return (chain(a.TA1, a.TA2, a.NTA) + sign * chain(a.TB1, a.TB2, a.NTB)) / Point(2);
    }
    Point numerator = form == parallel ? p.AO : form == direct ? d.ZNUM(1) : l.GMTAP(1), denominator = 1, power = 1;
    if (form == parallel) {
        for (int k = 1; k <= p.NPAR; ++k)
            numerator += quadratic(p.AL(k), p.BE(k), 0, x) / quadratic(1, p.GA(k), p.DE(k), x);
    } else if (form == direct) {
        for (int i = 2; i <= std::max(d.JN, d.JD); ++i) {
            power *= x;
            numerator += power * Point(d.ZNUM(i)), denominator += power * Point(d.ZDEN(i));
        }
    } else {
        for (int i = 1; i <= l.JM; ++i) {
            const Point late = x * power, k = l.GMMUL(i);
            power = k * denominator + late, denominator += k * late;
            numerator += power * Point(l.GMTAP(i + 1));
        }
    }
    return numerator / denominator;
}

struct Extremes {
    double least = HUGE_VAL, most = -HUGE_VAL;
};

// Of the loss in a band: of many samples, and where parabolas through three of them turn.
Extremes extremes_of(const IirFilter& filter, Implementation form, const IirRequestRow& row) {
    constexpr int samples = 60;
    Extremes extremes;
    const auto loss_at = [&](double hertz) {
        const Point x = std::polar(1.0, -2 * std::numbers::pi * hertz / filter.fs);
        const double loss = -10 * std::log10(static_cast<double>(std::norm(h_of_form(filter, form, x))));
        extremes = {std::min(extremes.least, loss), std::max(extremes.most, loss)};
        return loss;
    };
    std::vector<double> at, v;
    for (int i = 0; i <= samples; ++i) {
        at.push_back(row.from + (row.to - row.from) * (1 - std::cos(std::numbers::pi * i / samples)) / 2);
        v.push_back(loss_at(at.back()));
    }
    for (std::size_t i = 1; i + 1 < v.size(); ++i) {
        const double h1 = at[i] - at[i - 1], h2 = at[i + 1] - at[i];
        const double s1 = (v[i] - v[i - 1]) / h1, s2 = (v[i + 1] - v[i]) / h2, bend = (s2 - s1) / (h1 + h2);
        if (std::isfinite(bend) && s1 * s2 < 0) loss_at(at[i] - (s1 + bend * h1) / (2 * bend));
    }
    return extremes;
}

bool meets(const IirFilter& filter, Implementation form) {
    const IirAsked& asked = filter.asked;
    constexpr double trifle = 1e-6;
    for (int i = 1; i <= asked.count; ++i) {
        const IirRequestRow& row = asked.rows(i);
        const auto [least, most] = extremes_of(filter, form, row);
        const double lowest = row.stopband ? row.loss - 1 - trifle * row.loss : -0.1 * row.loss - trifle;
        if (least - asked.flat_loss < lowest) return false;
        if (!row.stopband && most > asked.flat_loss + 1.1 * row.loss + trifle) return false;
    }
    return true;
}

// Asks for what a filter of 1 Hz reaches, in Hz of 8 kHz.
void ask(IirFilter& filter, const std::vector<IirRequestRow>& rows) {
    IirAsked& asked = filter.asked;
    Extremes pass;
    for (const IirRequestRow& row : rows) {
        IirRequestRow& own = asked.rows(++asked.count) = row;
        own.from /= 8000, own.to /= 8000;
        const auto [least, most] = extremes_of(filter, cascade, own);
        own.loss = least;
        if (!row.stopband) pass.least = std::min(pass.least, least), pass.most = std::max(pass.most, most);
    }
    asked.flat_loss = pass.least;
    for (int i = 1; i <= asked.count; ++i)
        asked.rows(i).loss = (asked.rows(i).stopband ? asked.rows(i).loss : pass.most) - pass.least;
}
// Of the bands of designed filters.
const std::vector<IirRequestRow> requests[] = {{{false, 0, 1000, 0}, {true, 2000, 4000, 0}},
                                               {{false, 2500, 4000, 0}, {true, 0, 1700, 0}},
                                               {{false, 900, 1400, 0}, {true, 0, 600, 0}, {true, 2100, 4000, 0}},
                                               {{false, 0, 2600, 0}, {true, 3300, 4000, 0}},
                                               {{false, 1500, 4000, 0}, {true, 0, 900, 0}},
                                               {{false, 1500, 2600, 0}, {true, 0, 1000, 0}, {true, 3300, 4000, 0}},
                                               {{false, 0, 1500, 0}, {false, 2600, 4000, 0}, {true, 1900, 2200, 0}}};

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
                int least = longest_word + 1;
                while (least > 1 && meets(in_words(filter, {least - 1, method, found.word.number_form}), found.form))
                    --least;
                if (least > longest_word) least = 0;
                EXPECT_EQ(found.word.bits, least) << design.function << band << form_name(found.form)
                                                  << name_of(found.word.number_form) << name_of(method);
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
    // Of the cascade 14 in fixed words, were c2 of a pair of zeros on the circle a number next to 1: cut off, none is.
    using Bits = std::vector<int>;  // floating and fixed, form by form; 0: not published
    for (const auto& [method, asked, truncated, published] :
         {std::tuple(WordMethod::round, NumberForm::floating_point, 24, Bits{13, 13, 14, 13, 0, 0, 24, 22, 15, 14}),
          {WordMethod::truncate, NumberForm::fixed_point, 23, Bits{13, 13, 14, 15, 0, 0, 24, 23, 13, 14}}}) {
        IirRoom room;
        room.filter = elliptic_of_seven();
        room.command.truncated_to = {0, method, asked};
        room.command.passband_allowance = 0.01, room.command.stopband_allowance = 1;
        room.send("trun");
        const auto& [words, of] = room.state.words.word_lengths;
        EXPECT_TRUE(words.size() == 10 && of == fingerprint(room.filter) && room.filter.word.bits == truncated);
        for (std::size_t i = 0; i < words.size(); ++i) {
            EXPECT_TRUE(published[i] == 0 || words[i].word.bits == published[i]) << i << name_of(method);
            EXPECT_TRUE(words[i].passband_loss > 0.09 && words[i].passband_loss < 0.110001) << words[i].passband_loss;
            EXPECT_TRUE(words[i].stopband_loss > 58.9999 && words[i].stopband_loss < 60.001) << words[i].stopband_loss;
        }
        EXPECT_TRUE(room.reported("    direct      floating point      24       0.10"));
        room.send("undo");
        EXPECT_EQ(fingerprint(room.filter), fingerprint(elliptic_of_seven())) << "one level";
    }
}

TEST(LeastWords, OfAFilterWithALevelAboveTheRequest) {
    IirFilter filter = elliptic_of_seven();
    filter.asked.flat_loss = 0.3;
    Unwatched watcher;
    for (const LeastWord& least : least_words(filter, WordMethod::round, {0, 1}, watcher)) {
        EXPECT_TRUE(least.word.bits > 9 && least.word.bits < 30) << form_name(least.form) << ' ' << least.word.bits;
    }
}

TEST(LeastWords, LeaveAllAsItWasWhenStoppedOrWithoutAWord) {
    for (const int stop_at : {5, -1}) {
        IirRoom room;
        room.filter = elliptic_of_seven();
        room.filter.asked.rows(2).loss = 80;
        room.command.truncated_to.bits = 0;
        room.window.stop_at = stop_at;
        const std::string bytes = room.bytes();
        room.send("trun");
        EXPECT_EQ(room.bytes(), bytes);
        EXPECT_EQ(room.lines() == std::string(stopped_line) + '\n', stop_at == 5);
        EXPECT_EQ(room.reported("cascade     floating point    none\n"), stop_at == -1);
        EXPECT_EQ(room.reported("    direct  floating point\n"), stop_at == -1);
        EXPECT_EQ(room.state.words.word_lengths.result.size(), stop_at == -1 ? 10U : 0U);
    }
}

}  // namespace
}  // namespace kavrel
