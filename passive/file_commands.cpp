#include "passive/file_commands.h"

#include "circuit/drawing.h"
#include "circuit/parts_list.h"
#include "exchange/pole_zero_text.h"
#include "exchange/transfer_file.h"
#include "passive/command_tools.h"
#include "passive/hindrances.h"
#include "passive/passive_forms.h"

namespace kavrel {

void save_circuit_file(PassiveDesk& desk) {
    if (save(kept(desk))) report_done(desk);
}

void save_circuit_as(PassiveDesk& desk) {
    if (save_as(kept(desk))) report_done(desk);
}

void read_circuit_file(PassiveDesk& desk, bool name_given) {
    if (!read(kept(desk), name_given)) return;
    desk.state.lastBranch = 1;
    show_circuit(desk);
}

void write_text_file(PassiveDesk& desk) {
    std::vector<std::string> lines{desk.session.TITLE.text(), ""};
    const auto add = [&](const std::vector<std::string>& more) { lines.insert(lines.end(), more.begin(), more.end()); };
    add(showCircuit(desk.filter.circuit, 1, desk.session.units));
    lines.emplace_back("");
    add(partsList(desk.filter.circuit, false, desk.session.units));
    if (write_lines(desk, lines, ExtSlot::report)) report_done(desk);
}

void write_transfer(PassiveDesk& desk) {
    const std::vector<double> frequencies = frequencies_in_hertz(desk.state.analysed);
    const TransferInput input{.circuit = desk.filter.circuit,
                              .title = desk.session.TITLE.trimmed(),
                              .transfer = desk.filter.designed ? &desk.filter.transfer : nullptr,
                              .frequencies = frequencies,
                              .loss = {.QL = desk.command.inductor_q, .QC = desk.command.capacitor_q}};
    TransferRequest request{.file_type = desk.command.file_type,
                            .dialect = desk.command.dialect,
                            .variable_block = desk.command.variable_block};
    TransferVerdict verdict = transfer_refusal(input, request);
    if (verdict != TransferVerdict::written) return refuse(desk, message_of(verdict));
    if (has_lattices(desk.filter.circuit)) {
        request.half_lattices =
            desk.reporter.message(half_lattice_question, "Question", Buttons::yes_no) == Answer::yes;
    }
    std::string text;
    verdict = write_transfer_file(input, request, text);
    if (verdict != TransferVerdict::written) return refuse(desk, message_of(verdict));
    const auto name = ask_file(
        desk, {.caption = select_file, .description = "Netlists", .filter = "*.ckt;*.s2p;*.m", .to_write = true});
    if (!name) return;
    if (write_text(desk, *name, transfer_file_name(*name, request), text, file_not_opened)) report_done(desk);
}

void write_pole_zero(PassiveDesk& desk) {
    if (const auto why = needs_design(desk); !why.empty()) return refuse(desk, why);
    if (!wishes_original(desk, "Data")) return;
    const auto name = ask_file(
        desk, {.caption = select_file, .description = "Pole-zero files", .filter = "*.pz; *.dat", .to_write = true});
    if (!name) return;
    const bool is_data = name->ends_with(EXT(static_cast<int>(ExtSlot::factored_data)));
    const auto lines =
        pole_zero_lines(desk.filter.transfer, desk.filter.spec.medium != lumped, desk.session.TITLE.trimmed());
    const std::string file = is_data ? *name : file_name(*name, ExtSlot::pole_zero);
    if (write_text(desk, *name, file, joined_lines(lines))) report_done(desk);
}

}  // namespace kavrel
