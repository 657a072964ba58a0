#include "workbench/analysis_road.h"

#include <memory>
#include <vector>

#include "fir/fir_design.h"
#include "fir/from_outside.h"
#include "passive/passive_segment.h"
#include "workbench/fir_road.h"
#include "workbench/kind_roads.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

FilterSpec given(const FilterAnalysisRequest& r, const FilterKindRow& kind, const UnitSet& units);
PassiveFilter empty_store(const FilterSpec& spec);
Refusal take_data(const FirAnalysisRequest& request, FirFilter& filter);

}  // namespace

void analysis_road(Workbench& bench, FormStart start) {
    FilterAnalysisRequest& request = bench.analysis_request;
    ask_for_design(bench, start, analysis_input, request, [&] {
        if (request.save_analysis && !save_design_input(bench, analysis_input, request)) return;
        const auto from_outside = kind_road(request.analysis_kind).from_outside;
        from_outside == nullptr ? not_implemented(bench) : from_outside(bench);
    });
}

void typed_circuit_road(Workbench& bench) {
    const FilterAnalysisRequest& request = bench.analysis_request;
    const FilterKindRow& kind = *find_kind(kind_road(request.analysis_kind).kind);
    const FilterSpec spec = given(request, kind, bench.session.units);
    bench.passive = empty_store(spec);
    bench.design = DesignOutcome::none;
    bench.discontinued_request.reset();
    bench.filter = {};
    forget(bench.ladder);
    bench.results = {};
    bench.session.TITLE = spec.medium == microwave ? "<New Microwave Filter>" : "<New Passive Filter>";
    bench.session.entry(SegmentId::passive) = passive_entry::analysis;
    bench.session.word(SegmentId::passive) = "show";
    enter_segment(bench, SegmentId::passive);
}

void fir_analysis_road(Workbench& bench, FormStart start) {
    FirAnalysisRequest& request = bench.fir_analysis_request;
    ask_for_design(bench, start, fir_analysis_input, request, [&] {
        if (request.save_analysis_data && !save_design_input(bench, fir_analysis_input, request)) return;
        const auto given = std::make_unique<FirFilter>();
        given->sampling_frequency = request.sampling_freq * bench.session.units.frequency_multiplier;
        if (const Refusal wrong = take_data(request, *given); !wrong.empty()) return bench.reporter.refuse(wrong);
        bench.design = DesignOutcome::none;
        bench.discontinued_request.reset();
        bench.results = {};
        enter_fir(bench, *given, new_fir_title, "show");
    });
}

namespace {

// What the form says of a filter whose circuit is still to come: the edges are those of its type.
FilterSpec given(const FilterAnalysisRequest& r, const FilterKindRow& kind, const UnitSet& units) {
    const double hz = units.frequency_multiplier;
    const bool low = r.analysis_type == AnalysisType::low_pass || r.analysis_type == AnalysisType::delay_equalizer;
    const bool high = r.analysis_type == AnalysisType::high_pass;
    FilterSpec spec;
    spec.filterType = static_cast<FilterType>(r.analysis_type);
    spec.medium = kind.medium;
    spec.implementation = kind.letter;
    spec.lowerPassEdge = low ? 0.0 : r.lower_passband * hz;
    spec.upperPassEdge = high ? 0.0 : r.upper_passband * hz;
    spec.sampleFrequency = kind.medium == microwave ? 2.0 * r.sampling_or_qw * hz : 0.0;
    return spec;
}

PassiveFilter empty_store(const FilterSpec& spec) {
    PassiveFilter filter;
    filter.spec = spec;
    filter.circuit.kind = spec.medium == microwave ? CircuitKind::microwave : CircuitKind::lumped;
    filter.circuit.fa = spec.lowerPassEdge;
    filter.circuit.fb = spec.upperPassEdge;
    filter.circuit.fnorm = spec.filterType == high_pass ? spec.lowerPassEdge : spec.upperPassEdge;
    filter.circuit.fs = spec.sampleFrequency;
    return filter;
}

FirSymmetry symmetry_of(FirSymmetryChoice choice) {
    switch (choice) {
        case FirSymmetryChoice::unchosen:
        case FirSymmetryChoice::even: return FirSymmetry::even;
        case FirSymmetryChoice::odd: return FirSymmetry::odd;
        case FirSymmetryChoice::none: break;
    }
    return FirSymmetry::none;
}

Refusal take_data(const FirAnalysisRequest& request, FirFilter& filter) {
    if (request.filter_data == FirData::quadratics) {
        std::vector<QuadraticRow> rows;
        for (int i = 1; i <= request.FIR_ZEROS.rows; ++i)
            rows.push_back({request.FIR_ZEROS(i, 1), request.FIR_ZEROS(i, 2)});
        return take_quadratics(rows, filter);
    }
    std::vector<double> rows;
    for (int i = 1; i <= request.COEFFICIENTS.rows; ++i) rows.push_back(request.COEFFICIENTS(i, 1));
    return take_coefficients(rows, symmetry_of(request.filter_symmetry), request.filter_length, filter);
}

}  // namespace

}  // namespace kavrel
