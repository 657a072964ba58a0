#include "workbench/iir_road.h"

#include "iir/command_tools.h"
#include "iir/digital_design.h"
#include "iir/from_outside.h"
#include "iir/iir_segment.h"
#include "workbench/design_end.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

constexpr std::string_view new_title = "<New IIR Filter>";

void enter(Workbench& bench, const IirFilter& filter, std::string_view title);
IirFilter filter_of(const FilterAnalysisRequest& request, double hertz);
DigitalKind kind_of(AnalysisType type);

}  // namespace

void iir_road(Workbench& bench, std::string_view title) {
    IirFilter filter;
    DesignedFilter& draft = bench.drafted;
    switch (digitalDesign(draft.found, draft.design, bench.iir_command, bench.session.units, bench.reporter, filter)) {
        case DigitalDesignOutcome::done:
            bench.filter = bench.drafted;
            forget(bench.ladder);
            return enter(bench, filter, title);
        case DigitalDesignOutcome::failed: return discontinue(bench);
        case DigitalDesignOutcome::cancelled: return end_with_function(bench, title);
    }
}

void typed_digital_road(Workbench& bench) {
    const IirFilter filter = filter_of(bench.analysis_request, bench.session.units.frequency_multiplier);
    bench.design = DesignOutcome::none;
    bench.discontinued_request.reset();
    bench.results = {};
    enter(bench, filter, new_title);
}

namespace {

// An undo leads back to the filter of before.
void enter(Workbench& bench, const IirFilter& filter, std::string_view title) {
    IirDesk desk = iir_desk(bench);
    keep_former(kept(desk));
    bench.session.TITLE = title;
    bench.session.filter_file = "";
    bench.iir = filter;
    bench.session.entry(SegmentId::iir) = iir_entry::first_call;
    bench.session.word(SegmentId::iir) = "disp";
    enter_segment(bench, SegmentId::iir);
}

// A row of the form's lists is a conjugate pair where it has an imaginary part.
IirFilter filter_of(const FilterAnalysisRequest& request, double hertz) {
    const AnalysisType type = request.analysis_type;
    const bool both = type == AnalysisType::band_pass || type == AnalysisType::band_reject;
    IirFilter filter;
    filter.fs = request.sampling_or_qw * hertz;
    filter.T = 1 / filter.fs;
    filter.kind = kind_of(type);
    if (both || type == AnalysisType::high_pass) filter.FLO = request.lower_passband * hertz;
    if (both || type == AnalysisType::low_pass) filter.FHI = request.upper_passband * hertz;

    const auto roots = [](const auto& list) {
        std::vector<Complex<double>> found;
        for (int i = 1; i <= list.rows; ++i) found.push_back({list(i, 1), list(i, 2)});
        return found;
    };
    const auto factors = [](const auto& list) {
        std::vector<GivenFactor> found;
        for (int i = 1; i <= list.rows; ++i) found.push_back({list(i, 1), list(i, 2), list(i, 3)});
        return found;
    };
    if (request.form == AnalysisForm::factors) {
        take_factors(factors(request.NUMER), factors(request.DENOM), filter);
    } else {
        auto zeros = roots(request.TR_ZEROS);
        zeros.insert(zeros.end(), static_cast<std::size_t>(request.zeros_at_infinity), {-1, 0});
        take_roots(zeros, roots(request.TR_POLES), filter);
    }
    return filter;
}

DigitalKind kind_of(AnalysisType type) {
    switch (type) {
        case AnalysisType::low_pass: return DigitalKind::low_pass;
        case AnalysisType::high_pass: return DigitalKind::high_pass;
        case AnalysisType::band_pass: return DigitalKind::band_pass;
        case AnalysisType::band_reject: return DigitalKind::band_reject;
        case AnalysisType::delay_equalizer: break;
    }
    return DigitalKind::delay;
}

}  // namespace

}  // namespace kavrel
