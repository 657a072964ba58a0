// The whole road: form, design, ladder, analysis, netlist; a simulator agrees with what was shown.
#include <cmath>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "shell/stored_files.h"
#include "tests/exchange/exchange_helpers.h"
#include "tests/support/fake_window.h"
#include "tests/support/scratch_folder.h"
#include "workbench/events.h"
#include "workbench/start_up.h"

namespace kavrel {
namespace {

using namespace testing;

constexpr int new_item = 166;
constexpr int frequency_item = 343;
constexpr int transfer_item = 334;
constexpr int display_item = 336;
constexpr int points = 200;
constexpr double decibel_bar = 1e-4;
constexpr double degree_bar = 1e-3;

struct Design {
    std::string name;
    double last;  // Hz, end of the analysis
    void (*ask)(FilterRequest& request);
};

void low_pass(FilterRequest& r, PassbandChoice passband, double edge, double ripple, double stop, double loss,
              StopbandChoice stopband) {
    r.filter_type = TypeChoice::low_pass;
    r.passband_type = passband;
    r.upper_passband = edge;
    r.band_edge_loss = ripple;
    r.upper_stopband = stop;
    r.upper_stop_loss = loss;
    r.stopband_type = stopband;
}
void high_pass(FilterRequest& r, PassbandChoice passband, double edge, double ripple, double stop, double loss,
               StopbandChoice stopband) {
    low_pass(r, passband, 0, ripple, 0, 0, stopband);
    r.filter_type = TypeChoice::high_pass;
    r.lower_passband = edge;
    r.lower_stopband = stop;
    r.lower_stop_loss = loss;
}
void band_pass(FilterRequest& r, PassbandChoice passband, double low, double high, double ripple, double loss,
               StopbandChoice stopband) {
    low_pass(r, passband, high, ripple, high * 1.3, loss, stopband);
    r.filter_type = TypeChoice::band_pass;
    r.lower_passband = low;
    r.lower_stopband = low / 1.3;
    r.lower_stop_loss = loss;
}
void zeros(FilterRequest& r, std::initializer_list<std::pair<double, double>> list) {
    r.stopband_type = StopbandChoice::specified;
    for (const auto& [re, im] : list) {
        ++r.TR_ZEROS.rows;
        r.TR_ZEROS(r.TR_ZEROS.rows, 1) = re;
        r.TR_ZEROS(r.TR_ZEROS.rows, 2) = im;
    }
}

constexpr auto flat = PassbandChoice::max_flat;
constexpr auto ripple = PassbandChoice::equal_ripple;
constexpr auto monotonic = StopbandChoice::monotonic;
constexpr auto minima = StopbandChoice::equal_min;

const Design designs[] = {
    {"Butterworth 3", 4e3, [](FilterRequest& r) { low_pass(r, flat, 1e3, 3.0103, 4e3, 35, monotonic); }},
    {"Butterworth 30", 1.6e3, [](FilterRequest& r) { low_pass(r, flat, 1e3, 3.0103, 1.5e3, 105, monotonic); }},
    {"Chebyshev 5", 3e6, [](FilterRequest& r) { low_pass(r, ripple, 1e6, 0.1, 2e6, 40, monotonic); }},
    {"Chebyshev 30", 1.15e6, [](FilterRequest& r) { low_pass(r, ripple, 1e6, 0.1, 1.1e6, 95, monotonic); }},
    {"even Chebyshev", 3e6,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e6, 0.5, 2e6, 30, monotonic);
         r.zs_parameter = -1;
     }},
    {"inverse Chebyshev", 3e3, [](FilterRequest& r) { low_pass(r, flat, 1e3, 1, 1.5e3, 50, minima); }},
    {"elliptic", 3e3, [](FilterRequest& r) { low_pass(r, ripple, 1e3, 0.1, 1.2e3, 60, minima); }},
    {"elliptic, driven by one end", 3e3,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e3, 0.1, 1.4e3, 60, minima);
         r.r2 = 0;
     }},
    {"Butterworth, driven by one end", 3e3,
     [](FilterRequest& r) {
         low_pass(r, flat, 1e3, 3.0103, 3e3, 40, monotonic);
         r.r2 = 0;
     }},
    {"unequal terminations", 3e3,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e3, 1, 2e3, 40, monotonic);
         r.r2 = 150;
         r.zs_parameter = -1;
     }},
    {"zeros as given", 3e3,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e3, 0.1, 0, 0, monotonic);
         zeros(r, {{0, 1.3e3}, {0, 2e3}});
         r.zeros_at_infinity = 3;
     }},
    {"quadruplet", 3e3,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e3, 0.1, 0, 0, monotonic);
         zeros(r, {{0.7e3, 0.8e3}});
         r.zeros_at_infinity = 3;
     }},
    {"quadruplet and zero", 3.1e3,
     [](FilterRequest& r) {
         low_pass(r, ripple, 1e3, 0.05, 0, 0, monotonic);
         zeros(r, {{0.9e3, 0.6e3}, {0, 1.5e3}});
         r.zeros_at_infinity = 3;
     }},
    {"high-pass", 5e6, [](FilterRequest& r) { high_pass(r, ripple, 1e6, 0.1, 5e5, 50, monotonic); }},
    {"elliptic high-pass", 5e6, [](FilterRequest& r) { high_pass(r, ripple, 1e6, 0.1, 8e5, 60, minima); }},
    {"flat high-pass", 5e6, [](FilterRequest& r) { high_pass(r, flat, 1e6, 1, 3e5, 40, monotonic); }},
    {"band-pass", 3e5, [](FilterRequest& r) { band_pass(r, ripple, 9e4, 1.1e5, 0.1, 50, monotonic); }},
    {"flat band-pass", 3e5, [](FilterRequest& r) { band_pass(r, flat, 9e4, 1.3e5, 1, 40, monotonic); }},
    {"elliptic band-pass", 3e5, [](FilterRequest& r) { band_pass(r, ripple, 9e4, 1.1e5, 0.1, 60, minima); }},
    {"parametric band-pass", 3e5,
     [](FilterRequest& r) {
         band_pass(r, ripple, 9e4, 1.3e5, 0.1, 40, monotonic);
         r.bandpass_form = BandpassChoice::parametric;
     }},
    {"band-pass, zeros as given", 3.1e5,
     [](FilterRequest& r) {
         band_pass(r, ripple, 9e4, 1.2e5, 0.1, 0, monotonic);
         zeros(r, {{0, 7e4}, {0, 1.5e5}});
         r.zeros_at_zero = r.zeros_at_infinity = 2;
     }},
    {"band-pass, quadruplet", 3e5,
     [](FilterRequest& r) {
         band_pass(r, ripple, 9e4, 1.3e5, 0.1, 0, monotonic);
         zeros(r, {{2e4, 1.05e5}});
         r.zeros_at_zero = r.zeros_at_infinity = 2;
     }},
    {"sloping band-pass", 3e5,
     [](FilterRequest& r) {
         band_pass(r, PassbandChoice::sloping, 8e4, 1.2e5, 0.5, 0, monotonic);
         r.stopband_type = StopbandChoice::specified;
         r.loss_slope = 6;
         r.zeros_at_zero = 4;
         r.zeros_at_infinity = 6;
     }},
};

struct HandOver : ::testing::Test {
    ScratchFolder folder;
    FakeWindow window;
    Workbench bench{window};

    HandOver() { main_program(bench, "", "x"); }

    static bool accept(FormSheet&) { return true; }
    void run(const Design& design) {
        bench.filter_request = {};
        bench.filter_request.filter_kind = FilterKind::lc;
        bench.filter_request.r1 = bench.filter_request.r2 = 600;
        design.ask(bench.filter_request);
        window.forms = {accept, accept};
        dispatch_event(bench, new_item);
        ASSERT_TRUE(window.boxes.empty()) << design.name << window.boxes.front();
        ASSERT_EQ(bench.ladder.outcome, SynthesisOutcome::done) << design.name << window.lines.back();
        ASSERT_EQ(bench.session.segment, SegmentId::passive) << design.name << window.lines.back();
        FrequencyRequest& grid = bench.passive_command.frequency;
        grid = {.start = design.last / points, .end = design.last, .increment = 0, .count = points};
        window.forms = {accept};
        dispatch_event(bench, frequency_item);
        window.boxes.clear();
    }
    std::string transfer(TransferFileType type, TransferDialect dialect, const std::string& stem) {
        bench.passive_command.file_type = type;
        bench.passive_command.dialect = dialect;
        window.forms = {accept};
        window.files = {stem};
        dispatch_event(bench, transfer_item);
        window.boxes.clear();
        TransferRequest request;
        request.file_type = type;
        request.dialect = dialect;
        return transfer_file_name(stem, request);
    }
};

// The report of the design again, and the terminations.
TEST_F(HandOver, DisplayTellsWhatTheDesignTold) {
    for (const Design& design : designs) {
        window.lines.clear();
        run(design);
        const std::vector<std::string> told = window.lines;
        window.lines.clear();
        dispatch_event(bench, display_item);
        constexpr std::size_t terminations = 4;
        ASSERT_GT(window.lines.size(), 10 + terminations) << design.name;
        EXPECT_TRUE(window.lines[window.lines.size() - terminations].starts_with(" Input termination")) << design.name;
        for (std::size_t i = 0; i + terminations < window.lines.size(); ++i) {
            EXPECT_EQ(window.lines[i], told[i]) << design.name;
        }
    }
}

TEST_F(HandOver, NgspiceAgreesWithTheAnalysis) {
    if (!has_program("ngspice")) GTEST_SKIP() << "ngspice is not installed";
    for (const Design& design : designs) {
        run(design);
        if (HasFatalFailure()) return;
        const std::string file = transfer(TransferFileType::spice, TransferDialect::ngspice, "net");
        const ProgramRun simulated = run_program("ngspice -b " + file);
        const auto rows = printed_rows(simulated.output);
        const AnalysisResult& shown = bench.results;
        ASSERT_EQ(static_cast<int>(rows.size()), points) << design.name << simulated.output;
        int compared = 0;
        for (int i = 1, row = 0; i <= shown.frequency_count; ++i) {
            while (rows[static_cast<std::size_t>(row)].f < 0.999 * static_cast<double>(shown.FREQ(i))) ++row;
            const PrintedRow& spice = rows[static_cast<std::size_t>(row)];
            const double loss = static_cast<double>(shown.LOSS(i));
            if (loss > 150) continue;  // below what a simulator's doubles resolve
            EXPECT_NEAR(-spice.decibels, loss, decibel_bar) << design.name << " at " << spice.f;
            EXPECT_NEAR(turned(spice.degrees - static_cast<double>(shown.PHASE(i))), 0.0, degree_bar)
                << design.name << " at " << spice.f;
            ++compared;
        }
        EXPECT_GT(compared, points / 3) << design.name;
    }
}

// The polynomials in s/(2 pi fnorm): loss and phase, level and sign.
TEST_F(HandOver, OctaveAgreesWithTheAnalysis) {
    if (!has_program("octave-cli")) GTEST_SKIP() << "Octave is not installed";
    std::string script = "out = fopen('out.txt', 'w');\n";
    int number = 0;
    std::vector<std::vector<std::pair<double, double>>> shown;
    for (const Design& design : {designs[0], designs[6], designs[14], designs[18], designs[21], designs[22]}) {
        run(design);
        if (HasFatalFailure()) return;
        const std::string file =
            transfer(TransferFileType::matlab, TransferDialect::classic, fmt::format("h{}", ++number));
        script +=
            fmt::format("source('{}'); s = 1i*linspace({}, {}, {})/fnorm; h = polyval(num, s)./polyval(denom, s);\n",
                        file, design.last / points, design.last, points);
        script +=
            "fprintf(out, '%.12e %.12e\\n', [-20*log10(abs(h(:)))'; arg(h(:))'*180/pi]); fprintf(out, 'end\\n');\n";
        auto& list = shown.emplace_back();
        for (int i = 1; i <= bench.results.frequency_count; ++i) {
            list.emplace_back(static_cast<double>(bench.results.LOSS(i)), static_cast<double>(bench.results.PHASE(i)));
        }
        ASSERT_EQ(bench.results.frequency_count, points) << design.name;
    }
    ASSERT_TRUE(write_whole("check.m", script));
    const ProgramRun octave = run_program("octave-cli --quiet check.m");
    std::ifstream in("out.txt");
    for (const auto& list : shown) {
        for (const auto& [loss, phase] : list) {
            double decibels = 0;
            double degrees = 0;
            ASSERT_TRUE(in >> decibels >> degrees) << octave.output.substr(0, 500);
            if (loss > 150) continue;
            EXPECT_NEAR(decibels, loss, 1e-5 * std::fmax(1, loss));
            EXPECT_NEAR(turned(degrees - phase), 0.0, 1e-2);
        }
        std::string end;
        ASSERT_TRUE(in >> end);
        EXPECT_EQ(end, "end");
    }
}

}  // namespace
}  // namespace kavrel
