#include "workbench/delay_road.h"

#include "workbench/rooms.h"

namespace kavrel {

void delay_design_road(Workbench& bench, FormStart start) {
    DelayRequest& request = bench.delay_request;
    ask_for_design(bench, start, delay_input, request, [&] {
        if (!request.save_design || save_design_input(bench, delay_input, request)) not_implemented(bench);
    });
}

}  // namespace kavrel
