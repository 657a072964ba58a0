#include "workbench/fir_road.h"

#include "fir/fir_design.h"
#include "workbench/design_end.h"
#include "workbench/rooms.h"
#include "workbench/shown.h"

namespace kavrel {

namespace {

void design_fir(Workbench& bench);

}  // namespace

void fir_design_road(Workbench& bench, FormStart start) {
    FirRequest& request = bench.fir_request;
    ask_for_design(bench, start, fir_input, request, [&] {
        if (!request.save_design || save_design_input(bench, fir_input, request)) design_fir(bench);
    });
}

namespace {

void design_fir(Workbench& bench) {
    FirDesk desk = fir_desk(bench);
    const FirRequest asked = bench.fir_request;
    switch (remez_design(desk)) {
        case FirDesignVerdict::designed:
            bench.design = DesignOutcome::done;
            bench.session.entry(SegmentId::fir) = 0;
            bench.fir_designed_for = asked;
            bench.discontinued_request.reset();
            enter_segment(bench, SegmentId::fir);
            report_missed(bench, check_of_fir(bench));
            break;
        case FirDesignVerdict::stopped:
        case FirDesignVerdict::refused:
            bench.reporter.report_line(" **** design discontinued ****");
            bench.design = DesignOutcome::discontinued;
            bench.discontinued_request.reset();
            ++bench.discontinued_designs;
            bench.reporter.fail(design_discontinued);
            break;
        case FirDesignVerdict::unbuilt: not_implemented(bench); break;
    }
}

}  // namespace

}  // namespace kavrel
