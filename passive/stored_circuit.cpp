#include "passive/stored_circuit.h"

#include "passive/circuit_records.h"
#include "passive/circuit_text.h"

namespace kavrel {

namespace {

template <CircuitRecords kind>
constexpr Layout<PassiveFilter> records{
    .bytes = [](const PassiveFilter& filter,
                const FixedText<80>& title) { return circuit_records(filter, title, kind); },
    .take = [](std::string_view bytes, PassiveFilter& filter,
               FixedText<80>& title) { return read_circuit_records(bytes, filter, title, kind); }};

}  // namespace

constexpr std::array<StoredForm<PassiveFilter>, 2> circuit_forms = {
    {{.slot = ExtSlot::passive_circuit, .layout = records<CircuitRecords::stored_file>},
     {.slot = ExtSlot::transfer_text, .layout = {.bytes = circuit_text, .take = read_circuit_text}}}};

constexpr Keeping<PassiveFilter> circuit_keeping{
    .snapshot = records<CircuitRecords::snapshot>,
    .forms = circuit_forms,
    .is_empty = [](const PassiveFilter& filter) { return filter.circuit.klast == 0; },
    .open_caption = "Open a stored filter text file",
    .overwrite_warning = "Current network will be overwritten!"};

Fingerprint fingerprint(const PassiveFilter& filter) { return fingerprint(circuit_keeping.snapshot, filter); }

}  // namespace kavrel
