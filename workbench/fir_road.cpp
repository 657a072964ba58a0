#include "workbench/fir_road.h"

#include <memory>

#include "fir/command_tools.h"
#include "fir/fir_design.h"
#include "fir/fir_segment.h"
#include "workbench/design_end.h"
#include "workbench/rooms.h"

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

void enter_fir(Workbench& bench, const FirFilter& filter, std::string_view title, std::string_view word) {
    FirDesk desk = fir_desk(bench);
    keep_former(kept(desk));
    bench.session.TITLE = title;
    bench.session.filter_file = "";
    bench.fir = filter;
    bench.session.entry(SegmentId::fir) = fir_entry::first_call;
    bench.session.word(SegmentId::fir) = CommandKeyword(word);
    enter_segment(bench, SegmentId::fir);
}

namespace {

void design_fir(Workbench& bench) {
    FirDesk desk = fir_desk(bench);
    const auto made = std::make_unique<FirFilter>();
    switch (remez_design(desk, *made)) {
        case FirDesignVerdict::designed:
            bench.design = DesignOutcome::done;
            bench.discontinued_request.reset();
            enter_fir(bench, *made, new_fir_title);
            break;
        case FirDesignVerdict::stopped:
        case FirDesignVerdict::refused:
            bench.reporter.report_line(" **** design discontinued ****");
            bench.design = DesignOutcome::discontinued;
            bench.discontinued_request.reset();
            ++bench.discontinued_designs;
            bench.reporter.fail(design_discontinued);
            break;
    }
}

}  // namespace

}  // namespace kavrel
