#include "fir/fir_design.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "fir/best_taps.h"
#include "fir/fir_deviation.h"
#include "fir/fir_report.h"
#include "fir/fir_task.h"
#include "fir/fir_time_response.h"
#include "fir/least_length.h"
#include "fir/window_design.h"
#include "shell/edited.h"
#include "shell/finite.h"
#include "shell/whole_part.h"

namespace kavrel {

namespace {

// All that a design makes before it is handed over.
struct FirDraft {
    FirTask task;
    FirTaps taps;
    FirDesignFigures figures;
};

constexpr const char* incomplete = "Incomplete specification";

bool is_filter(const FirTask& task) { return task.JTYPE == FirType::filter; }

const char* estimate_length(const FirRequest& request, FirDraft& draft, Reporter& reporter);
FirTapsVerdict take_least_length(FirDraft& draft, Watcher& watcher, Reporter& reporter);
void report_failure_to_converge(int iterations, Reporter& reporter);
void fill_figures(FirDraft& draft);

}  // namespace

FirDesignVerdict remez_design(FirDesk& desk, FirFilter& made) {
    FirRequest& request = desk.request;
    const auto refuse = [&](std::string_view text) {
        desk.reporter.message(text, "Error");
        return FirDesignVerdict::refused;
    };
    if (request.design_method == FirMethod::windowed) return window_design(desk, made);
    if (request.design_method != FirMethod::equal_ripple) return refuse("Error in specification");

    const auto draft = std::make_unique<FirDraft>();
    if (const char* wrong = take_task(request, draft->task)) return refuse(wrong);
    WindowWatcher watcher(desk.reporter.window(), "Remez exchange");
    FirTapsVerdict verdict = FirTapsVerdict::impossible;
    if (draft->task.NFILT == 0) {
        if (const char* wrong = estimate_length(request, *draft, desk.reporter)) return refuse(wrong);
        verdict = take_least_length(*draft, watcher, desk.reporter);
    } else {
        verdict = best_taps(draft->task, watcher, draft->taps);
    }
    switch (verdict) {
        case FirTapsVerdict::stopped: return FirDesignVerdict::stopped;
        case FirTapsVerdict::impossible: return refuse(bad_fir_input);
        case FirTapsVerdict::made: break;
    }
    fill_figures(*draft);
    if (!all_finite(draft->taps.filter.X, draft->figures.DEVIAT)) return refuse(bad_fir_input);
    if (!draft->taps.optimal) report_failure_to_converge(draft->taps.iterations, desk.reporter);

    draft->taps.filter.sampling_frequency = sampling_frequency_of(request) * desk.session.frequency_scale;
    made = draft->taps.filter;
    made.origin = FirOrigin::equal_ripple;
    made.request = request;
    request.filter_length = draft->task.NFILT;
    report_fir_design(draft->task, draft->taps, draft->figures, new_fir_title, desk.session.units, desk.reporter);
    desk.results = {};
    if (draft->task.NFILT <= analysis_points) static_cast<void>(fir_time_response(made, 1, desk.results));
    desk.results.TITLE = new_fir_title;
    return FirDesignVerdict::designed;
}

double estimated_fir_length(double passband_ripple_db, double stopband_loss_db, double transition) {
    const double x = std::pow(10.0, passband_ripple_db / 20.0);
    const double L1 = std::log10((x - 1.0) / (x + 1.0));
    const double L2 = -stopband_loss_db / 20.0;
    // Single-precision values of the published constants.
    const double f = 11.01216983795166 + 0.512440025806427 * (L1 - L2);
    const double D = (0.0053090001456439495 * L1 * L1 + 0.07113999873399734 * L1 - 0.47609999775886536) * L2 -
                     (0.0026599999982863665 * L1 * L1 + 0.5940999984741211 * L1 + 0.4277999997138977);
    return D / transition + 1.0 - f * transition;
}

namespace {

// Sets the length of a low pass that its ripples let expect and reports it; what is wrong, or null.
const char* estimate_length(const FirRequest& request, FirDraft& draft, Reporter& reporter) {
    FirTask& task = draft.task;
    const bool applies = is_filter(task) && task.BANDS.NBANDS == 2 && task.BANDS.FX(1) == 1.0 &&
                         request.specification_type == FirSpecification::ripple_in_db;
    if (!applies) return incomplete;
    const double length = estimated_fir_length(request.QUADRUPLETS(1, 4), request.QUADRUPLETS(2, 4),
                                               task.BANDS.EDGE(3) - task.BANDS.EDGE(2));
    if (!std::isfinite(length)) return bad_fir_input;  // no transition band, or a ripple of 0 dB
    if (length < max_fir_taps + 1) {
        task.NFILT = whole_part(std::max(length, 0.0));
        reporter.report_line(edited<"(' Estimated degree = ',I4)">(task.NFILT));
    } else {
        task.NFILT = max_fir_taps;
        const int estimated = whole_part(std::min(length, 1.0e9));
        reporter.report_line(
            edited<"(' Estimated degree: ',I4,' is too high. reset to: ',I4)">(estimated, max_fir_taps));
    }
    draft.figures.length_estimated = true;
    return nullptr;
}

// From the estimate on to the least length that holds the ripples.
FirTapsVerdict take_least_length(FirDraft& draft, Watcher& watcher, Reporter& reporter) {
    const auto least = std::make_unique<LeastLength>();
    const FirTapsVerdict verdict = least_length(draft.task, watcher, *least);
    if (verdict != FirTapsVerdict::made) return verdict;
    draft.task.NFILT = least->length;
    draft.taps = least->taps;
    if (!least->met) reporter.report_line(edited<"(' The ripples are not met with',I4,' taps')">(least->length));
    return verdict;
}

void report_failure_to_converge(int iterations, Reporter& reporter) {
    reporter.report_line(" **** Failure to converge ****");
    reporter.report_line(" Probable cause is machine rounding error");
    reporter.report_line(edited<"(' number of iterations = ',I4)">(iterations));
    reporter.report_line(" If the number of iterations exceeds 3,");
    reporter.report_line(" the impulse response may be correct,");
    reporter.report_line(" check with a frequency response");
}

// What the taps do in each band.
void fill_figures(FirDraft& draft) {
    const BandTable& bands = draft.task.BANDS;
    FirDesignFigures& figures = draft.figures;
    FirFilter& filter = draft.taps.filter;
    for (int j = bands.NBANDS; j >= 1; --j) {
        const double deviation = largest_deviation(draft.task, filter, 1, j).weighted;
        figures.DEVIAT(j) = static_cast<float>(deviation / bands.WTX(j));
        if (!is_filter(draft.task)) continue;
        const float d = figures.DEVIAT(j);
        const float ripple = bands.FX(j) != 0.0 ? (1.0F + d) / (1.0F - d) : d;
        figures.DEVIAT_DB(j) = 20.0F * std::log10(std::abs(ripple));
        // Counting down, the first stopband is the last to be noted.
        if (bands.FX(j) == 0.0) filter.deviation = std::pow(10.0, static_cast<double>(figures.DEVIAT_DB(j)) / 20.0);
    }
}

}  // namespace

}  // namespace kavrel
