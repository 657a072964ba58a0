#include "fir/window_design.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "fir/fir_report.h"
#include "fir/fir_task.h"
#include "fir/fir_time_response.h"
#include "fir/window_figures.h"
#include "shell/edited.h"
#include "shell/finite.h"

namespace kavrel {

namespace {

bool passes_half_sampling(FirFilterType type);
bool is_band(FirFilterType type);
void fill_ideal_response(const FirRequest& request, FirFilter& filter);
void weigh(const WindowValues& w, FirFilter& filter);
void invert_spectrum(FirFilter& filter);
void report_window_design(const FirFilter& filter, Reporter& reporter);
void report_retained(const FirFilter& filter, const WindowTask& task, const WindowValues& w, Reporter& reporter);
void report_figures(const FirFilter& filter, Reporter& reporter);

}  // namespace

WindowedEdges windowed_edges(const FirRequest& request) {
    const double f1 = request.lower_frequency, f2 = request.upper_frequency;
    switch (request.filter_type) {
        case FirFilterType::low_pass: return {0, f2};
        case FirFilterType::high_pass: return {f1 != 0 ? f1 : f2, 0};
        case FirFilterType::band_pass:
        case FirFilterType::band_reject: return {std::min(f1, f2), std::max(f1, f2)};
        case FirFilterType::unchosen: break;
    }
    return {};
}

std::vector<std::string> windowed_request_lines(const FirFilter& filter) {
    constexpr std::string_view types[] = {"Lowpass     ", "Highpass    ", "Bandpass    ", "Band-reject "};
    const FirRequest& request = filter.request;
    const double hertz = filter.sampling_frequency / request.sampling_frequency;
    std::vector<std::string> lines = {
        edited<"(4X,'Filter type : ',A)">(types[static_cast<int>(request.filter_type) - 1]),
        edited<"(4X,'Window type : ',A)">(window_row(request.window_type)->report_name)};
    const auto [f1, f2] = windowed_edges(request);
    for (const double f : {f1, f2}) {
        if (f > 0) lines.push_back(edited<"(4X,'Passband edge = ',1P,E15.7,' Hz.')">(f * hertz));
    }
    lines.push_back(edited<"(4X,'Sampling rate = ',1P,E15.7,' Hz.')">(filter.sampling_frequency));
    return lines;
}

FirDesignVerdict window_design(FirDesk& desk, FirFilter& made) {
    const FirRequest& request = desk.request;
    const auto refuse = [&](std::string_view text, std::string_view field = {}) {
        desk.reporter.refuse({text, field});
        return FirDesignVerdict::refused;
    };
    WindowTask task{request.filter_length, parameter_of(request)};
    if (task.length < 3) return refuse("Filter is too short", "filter_length");
    const bool known =
        request.filter_type >= FirFilterType::low_pass && request.filter_type <= FirFilterType::band_reject;
    if (task.length > max_fir_taps || !known || !(request.sampling_frequency > 0)) return refuse(bad_fir_input);
    if (task.length % 2 == 0 && passes_half_sampling(request.filter_type)) {
        ++task.length;
        desk.reporter.report_line(" Length must be odd for highpass or bandreject filters,");
        desk.reporter.report_line(edited<"(' it has been reset to:',I5)">(task.length));
    }

    const auto filter = std::make_unique<FirFilter>();
    filter->NFCNS = task.half();
    filter->NODD = task.length % 2;
    filter->sampling_frequency = request.sampling_frequency * desk.session.frequency_scale;
    filter->origin = FirOrigin::windowed;
    filter->request = request;
    filter->request.parameter = task.parameter;
    filter->WINDOW = desk.state.retained;
    fill_ideal_response(request, *filter);
    WindowValues w;
    switch (compute_window(static_cast<int>(request.window_type) - 1, task, filter->WINDOW, w)) {
        case WindowVerdict::computed: break;
        case WindowVerdict::loss_too_low: return refuse("Loss value too low", "parameter");
        case WindowVerdict::no_such_window: return refuse(bad_fir_input, "window_type");
        case WindowVerdict::out_of_range: return refuse(bad_fir_input, "parameter");
    }
    weigh(w, *filter);
    if (passes_half_sampling(request.filter_type)) invert_spectrum(*filter);
    const std::span<const double> half(filter->COEF.data(), static_cast<std::size_t>(task.half()));
    if (!all_finite(filter->COEF, filter->sampling_frequency) ||
        !add_function(*filter, {.taps = task.length, .asked = true}, half)) {
        return refuse(bad_fir_input);
    }

    made = *filter;
    desk.state.retained = made.WINDOW;
    report_window_design(made, desk.reporter);
    report_retained(made, task, w, desk.reporter);
    report_figures(made, desk.reporter);
    desk.results = {};
    if (task.length <= analysis_points) static_cast<void>(fir_time_response(made, 1, desk.results));
    desk.results.TITLE = new_fir_title;
    return FirDesignVerdict::designed;
}

namespace {

bool passes_half_sampling(FirFilterType type) {
    return type == FirFilterType::high_pass || type == FirFilterType::band_reject;
}
bool is_band(FirFilterType type) { return type == FirFilterType::band_pass || type == FirFilterType::band_reject; }

// Of a low-pass (of a high-pass, its complement) or a band-pass (of a band-reject, its complement), in COEF: with
// x = pi t, and t samples off the middle,
//
//     sin(2 fc x)/x,  fc = f/fs          2 cos((f1 + f2) x/fs) sin(fc x)/x,  fc = (f2 - f1)/fs
//
// and 2 fc in the middle of an odd length.
void fill_ideal_response(const FirRequest& request, FirFilter& filter) {
    const double fs = request.sampling_frequency;
    const auto [f1, f2] = windowed_edges(request);
    const bool band = is_band(request.filter_type);
    const double fc = band ? (f2 - f1) / fs : (f1 + f2) / fs;  // of the two edges a low-pass or high-pass has one
    const int centre = filter.NFCNS;
    const WindowTask task{fir_taps(filter.NFCNS, filter.NODD, filter.NEG)};
    for (int i = 1; i <= centre; ++i) {
        const double x = window_pi * task.t(i);
        filter.COEF(centre + 1 - i) = x == 0 ? 2 * fc
                                      : band ? std::sin(fc * x) / x * 2 * std::cos(x * (f1 + f2) / fs)
                                             : std::sin(2 * fc * x) / x;
    }
}

void weigh(const WindowValues& w, FirFilter& filter) {
    for (int i = 1; i <= filter.NFCNS; ++i) filter.COEF(filter.NFCNS + 1 - i) *= w(i);
}

void invert_spectrum(FirFilter& filter) {
    for (int i = 1; i < filter.NFCNS; ++i) filter.COEF(i) = -filter.COEF(i);
    filter.COEF(filter.NFCNS) = 1 - filter.COEF(filter.NFCNS);
}

void report_window_design(const FirFilter& filter, Reporter& reporter) {
    reporter.report_line(" Windowed linear-phase filter design");
    reporter.report_line(edited<"(1X,A)">(new_fir_title));
    reporter.report_lines(windowed_request_lines(filter));
    report_impulse_response(filter, 1, reporter);
}

// Where an earlier window has left its mark, which one would it be at a fresh start?
void report_retained(const FirFilter& filter, const WindowTask& task, const WindowValues& w, Reporter& reporter) {
    WindowCosines fresh;
    WindowValues unmarked;
    const int index = static_cast<int>(filter.request.window_type) - 1;
    if (compute_window(index, task, fresh, unmarked) != WindowVerdict::computed || unmarked == w) return;
    std::string text = "    Retained from an earlier window:";
    for (int k = 0; k <= 3; ++k) {
        if (filter.WINDOW(k + 1) != fresh(k + 1)) text += edited<"(' a',I1,' = ',F10.7)">(k, filter.WINDOW(k + 1));
    }
    reporter.report_line(text);
}

void report_figures(const FirFilter& filter, Reporter& reporter) {
    if (std::ranges::all_of(stored_coefficients(filter, 1), [](double h) { return h == 0; })) {
        reporter.report_line("    **** All coefficients are 0 ****");
        return;
    }
    const WindowFigures figures = window_figures(filter);
    if (figures.sidelobe) {
        reporter.report_line(edited<"(4X,'Side lobe of the window = ',F8.3,' dB')">(*figures.sidelobe));
    }
    for (const double f : figures.edges_6db) {
        reporter.report_line(edited<"(4X,'6 dB edge = ',1P,E15.7,' Hz.')">(f));
    }
    if (figures.stopband_loss) {
        reporter.report_line(edited<"(4X,'Stopband loss = ',F8.3,' dB')">(*figures.stopband_loss));
    }
}

}  // namespace

}  // namespace kavrel
