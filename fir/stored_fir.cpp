#include "fir/stored_fir.h"

#include "fir/fir_records.h"

namespace kavrel {

constexpr std::array<StoredForm<FirFilter>, 1> fir_files = {
    {{.slot = ExtSlot::fir_filter, .layout = {.bytes = fir_records, .take = read_fir_records}}}};

constexpr Keeping<FirFilter> fir_keeping{.snapshot = {.bytes = fir_records, .take = read_fir_snapshot},
                                         .forms = fir_files,
                                         .is_empty = [](const FirFilter& filter) { return filter.functions == 0; },
                                         .open_caption = "Open a stored filter file",
                                         .overwrite_warning = "Current filter will be overwritten!",
                                         .words = {.damaged = "File could not be read"},
                                         .undoes_title = true};

Fingerprint fingerprint(const FirFilter& filter) { return fingerprint(fir_keeping.snapshot, filter); }

}  // namespace kavrel
