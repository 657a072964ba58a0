#include "workbench/shown.h"

#include "approximation/loss_rows.h"
#include "fir/fir_rows.h"
#include "iir/iir_request_check.h"
#include "passive/circuit_request_check.h"
#include "shell/analysis_plot.h"
#include "workbench/rooms.h"

namespace kavrel {

namespace {

bool has_function(const Workbench& bench) { return bench.filter.design.transfer.poleCount > 0; }
bool is_kept(const Workbench& bench) { return bench.check && !bench.check->stopped; }

}  // namespace

Shown shown(const Workbench& bench) {
    const auto of_room = room_of(bench.session.segment).shown;
    return of_room == nullptr ? Shown{} : of_room(bench);
}

Shown shown_function(const Workbench& bench) {
    if (!has_function(bench)) return {};
    const FilterDesign& design = bench.filter.design;
    return {.request = &design.request,
            .spec = &bench.filter.found,
            .transfer = &design.transfer,
            .used_q = design.notes.predistortion.used_q,
            .filter = &bench.filter};
}

Shown shown_circuit(const Workbench& bench) {
    const PassiveFilter& passive = bench.passive;
    Shown shown;
    if (passive.designed) {
        shown = {.request = &passive.background.request,
                 .spec = &passive.spec,
                 .transfer = &passive.transfer,
                 .used_q = passive.background.notes.predistortion.used_q};
    }
    if (passive.circuit.klast > 0 && passive.circuit == bench.ladder.circuit) {
        shown.filter = &bench.filter;
        shown.synthesis = &bench.ladder.state;
    }
    return shown;
}

Shown shown_iir(const Workbench& bench) {
    const IirFilter& iir = bench.iir;
    if (!iir.designed) return {};
    Shown shown{.request = &iir.background.request,
                .spec = &iir.spec,
                .transfer = &iir.transfer,
                .used_q = iir.background.notes.predistortion.used_q};
    const TransferFunction& last = bench.filter.design.transfer;
    const bool is_last = last.POLES_RE == iir.transfer.POLES_RE && last.POLES_IM == iir.transfer.POLES_IM &&
                         last.normFrequency == iir.transfer.normFrequency;
    if (is_last) shown.filter = &bench.filter;
    return shown;
}

const RequestCheck& shown_check(Workbench& bench) {
    if (!is_kept(bench)) bench.check = check_of_shown(bench);
    return *bench.check;
}

RequestCheck check_of_shown(const Workbench& bench) {
    if (is_kept(bench)) return *bench.check;
    const auto check = room_of(bench.session.segment).check;
    return check == nullptr ? RequestCheck{} : check(bench);
}

RequestCheck check_of(const DesignedFilter& filter, WindowLayer& window) {
    const FilterDesign& design = filter.design;
    WindowWatcher watcher(window, check_work);
    return check_function(design.request, filter.found, design.transfer, design.notes.predistortion.used_q, watcher);
}

RequestCheck check_of_function(const Workbench& bench) {
    return has_function(bench) ? check_of(bench.filter, bench.window) : RequestCheck{};
}

RequestCheck check_of_circuit(const Workbench& bench) {
    WindowWatcher watcher(bench.window, check_work);
    return check_circuit(bench.passive, watcher);
}

RequestCheck check_of_fir(const Workbench& bench) {
    WindowWatcher watcher(bench.window, check_work);
    return check_fir(bench.fir, shown_function(bench.fir, bench.fir_state), watcher);
}

RequestCheck check_of_iir(const Workbench& bench) {
    WindowWatcher watcher(bench.window, check_work);
    return check_iir(bench.iir, watcher);
}

std::string table_of_results(Workbench& bench) {
    std::string table = write_table_csv(bench.results);
    if (!table.empty() && is_earlier(bench, analysed_filter(bench.results, bench.results.kind)))
        bench.reporter.report_line(earlier_results);
    return table;
}

void report_missed(Workbench& bench, const RequestCheck& check) {
    for (const std::string& line : missed_lines(check)) bench.reporter.report_line(line);
}

}  // namespace kavrel
