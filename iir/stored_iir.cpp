#include "iir/stored_iir.h"

#include "iir/iir_records.h"

namespace kavrel {

constexpr std::array<StoredForm<IirFilter>, 1> iir_files = {
    {{.slot = ExtSlot::iir_filter, .layout = {.bytes = iir_records, .take = read_iir_records}}}};

constexpr Keeping<IirFilter> iir_keeping{.snapshot = {.bytes = iir_snapshot, .take = read_iir_snapshot},
                                         .forms = iir_files,
                                         .is_empty = [](const IirFilter& filter) { return !has_filter(filter); },
                                         .open_caption = "Open a stored filter text file",
                                         .overwrite_warning = "Current filter will be overwritten!",
                                         .words = {.not_kept = " Data could not be stored",
                                                   .nothing_stored = "Nothing stored\nor error reading data file",
                                                   .not_recalled = "Nothing stored\nor error reading data file"},
                                         .undoes_title = true};

Fingerprint fingerprint(const IirFilter& filter) {
    IirFilter master = filter;
    master.parallel = {};
    master.direct = {};
    master.lattice = {};
    master.allpass = {};
    return fingerprint(iir_keeping.snapshot, master);
}

}  // namespace kavrel
