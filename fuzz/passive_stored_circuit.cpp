// The reader of stored circuits, records and text, and that of snapshots: whatever the bytes, a circuit is taken whole
// and can be walked, or the filter stays as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "circuit/chain_analysis.h"
#include "circuit/drawing.h"
#include "circuit/listing.h"
#include "passive/circuit_records.h"
#include "passive/circuit_text.h"
#include "passive/stored_circuit.h"

namespace {

using namespace kavrel;

void walk(PassiveFilter& filter) {
    compactValues(filter.circuit);
    (void)showCircuit(filter.circuit, 1, UnitSet{});
    (void)listCircuit(filter.circuit);
    Chain chain;
    ChainPoint point;
    if (prepare_chain(filter.circuit, {}, chain) == ChainVerdict::done) (void)analyze_point(chain, 1.0, point);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PassiveFilter filter;
    FixedText<80> title;
    if (read_stored_circuit(bytes, filter, title)) {
        const std::string stored = stored_circuit_bytes(filter, title);
        PassiveFilter again;
        if (!read_stored_circuit(stored, again, title) || stored_circuit_bytes(again, title) != stored) std::abort();
        walk(filter);
    }
    if (read_circuit_records(bytes, filter, title, CircuitRecords::snapshot)) {
        if (circuit_records(filter, title, CircuitRecords::snapshot) != bytes) std::abort();
        walk(filter);
    }
    return 0;
}
