#include "workbench/fir_road.h"

#include "fir/fir_design.h"
#include "workbench/fir_form.h"
#include "workbench/fir_input_file.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

bool recall(Workbench& bench) {
    const auto take = [&](std::string_view bytes) { return read_fir_input(bytes, bench.fir_request); };
    return recall_design_input(bench, take);
}

void design_fir(Workbench& bench) {
    FirDesk desk = fir_desk(bench);
    switch (remez_design(desk)) {
        case FirDesignVerdict::designed:
            bench.design = DesignOutcome::done;
            bench.session.entry(SegmentId::fir) = 0;
            enter_segment(bench, SegmentId::fir);
            break;
        case FirDesignVerdict::stopped: bench.reporter.report_line(" **** design discontinued ****"); [[fallthrough]];
        case FirDesignVerdict::refused:
            bench.design = DesignOutcome::discontinued;
            ++bench.discontinued_designs;
            break;
        case FirDesignVerdict::unbuilt: not_implemented(bench); break;
    }
}

}  // namespace

void fir_design_road(Workbench& bench, FormStart start) {
    if (!ask_for_design(bench, start, FIR_DESIGN_DLG, bench.fir_request, recall)) return;
    bench.session.design_class = "filter";
    const auto is_own = [](std::string_view bytes) {
        FirRequest request;
        return read_fir_input(bytes, request);
    };
    if (bench.fir_request.save_design && !save_design_input(bench, fir_input_bytes(bench.fir_request), is_own)) return;
    design_fir(bench);
}

}  // namespace kavrel
