// The reader of stored circuits, records and text, and that of snapshots: whatever the bytes, a circuit is taken whole
// and can be walked and handed over to other programs, or the filter stays as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "circuit/chain_analysis.h"
#include "circuit/drawing.h"
#include "circuit/listing.h"
#include "circuit/parts_list.h"
#include "exchange/pole_zero_text.h"
#include "exchange/transfer_file.h"
#include "passive/circuit_records.h"
#include "passive/circuit_text.h"
#include "passive/stored_circuit.h"

namespace {

using namespace kavrel;

void hand_over(const PassiveFilter& filter, std::string_view title) {
    constexpr double frequencies[] = {0.0, 1.0, 1e9};
    const TransferInput input{
        .circuit = filter.circuit, .title = title, .transfer = &filter.transfer, .frequencies = frequencies};
    std::string text;
    for (const TransferTypeRow& type : transfer_types) {
        for (const TransferText& written : type.texts) {
            for (const bool half : {false, true}) {
                if (written.write == nullptr || (half && !has_lattices(filter.circuit))) continue;
                (void)write_transfer_file(
                    input, {.file_type = type.file_type, .dialect = written.dialect, .half_lattices = half}, text);
            }
        }
    }
    (void)pole_zero_lines(filter.transfer, filter.spec.medium != lumped, title);
}

void walk(PassiveFilter& filter, const FixedText<80>& title) {
    compactValues(filter.circuit);
    (void)showCircuit(filter.circuit, 1, UnitSet{});
    (void)listCircuit(filter.circuit);
    (void)partsList(filter.circuit, false, UnitSet{});
    hand_over(filter, title.trimmed());
    Chain chain;
    ChainPoint point;
    if (prepare_chain(filter.circuit, {}, chain) == ChainVerdict::done) (void)analyze_point(chain, 1.0, point);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PassiveFilter filter;
    FixedText<80> title;
    if (take_form(circuit_forms, bytes, filter, title)) {
        const std::string stored = circuit_forms[0].layout.bytes(filter, title);
        PassiveFilter again;
        if (!take_form(circuit_forms, stored, again, title) || circuit_forms[0].layout.bytes(again, title) != stored)
            std::abort();
        walk(filter, title);
    }
    if (read_circuit_records(bytes, filter, title, CircuitRecords::snapshot)) {
        if (circuit_records(filter, title, CircuitRecords::snapshot) != bytes) std::abort();
        walk(filter, title);
    }
    return 0;
}
