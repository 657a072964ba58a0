#include "workbench/delay_road.h"

#include "workbench/delay_input_file.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

bool recall(Workbench& bench) {
    UnitSet units;
    const auto take = [&](std::string_view bytes) { return read_delay_input(bytes, bench.delay_request, units); };
    if (!recall_design_input(bench, take)) return false;
    take_units(units, bench.session);
    return true;
}

bool save(Workbench& bench) {
    const auto is_own = [](std::string_view bytes) {
        DelayRequest request;
        UnitSet units;
        return read_delay_input(bytes, request, units);
    };
    return save_design_input(bench, delay_input_bytes(bench.delay_request, bench.session.units), is_own);
}

}  // namespace

void delay_design_road(Workbench& bench, FormStart start) {
    if (!ask_for_design(bench, start, DELAY_DESIGN_DLG, bench.delay_request, recall)) return;
    bench.session.design_class = "delay";
    if (bench.delay_request.save_design && !save(bench)) return;
    not_implemented(bench);
}

}  // namespace kavrel
