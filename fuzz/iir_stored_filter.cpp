// The reader of stored IIR filters, and that of snapshots: whatever the bytes, a filter is taken whole and can be
// listed, edited and written again, or the filter stays as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "iir/allpass_form.h"
#include "iir/direct_form.h"
#include "iir/edits.h"
#include "iir/iir_records.h"
#include "iir/lattice_form.h"
#include "iir/parallel_form.h"
#include "iir/pole_zero_text.h"
#include "iir/reverse_frequency.h"
#include "iir/stored_iir.h"

namespace {

using namespace kavrel;

void walk(const IirFilter& filter, const FixedText<80>& title) {
    (void)pole_zero_lines(filter, title.trimmed());
    (void)root_lines(filter);
    (void)switched_capacitor_lines(filter, title.trimmed());
    (void)cascade_lines(filter, DisplayFormat::decimal, {});
    (void)parallel_table(filter.parallel, DisplayFormat::hexadecimal);
    (void)direct_table(filter.direct, DisplayFormat::decimal);
    (void)lattice_table(filter.lattice, DisplayFormat::decimal);
    (void)allpass_table(filter.allpass, DisplayFormat::decimal);
    IirRequest request;
    request.loss = 1;
    request.c1 = 0.5;
    request.deleted = 1;
    request.sequence = "2 1";
    request.sampling_frequency = 1e3;
    Lines lines;
    for (auto* edit : {add_flat_loss, add_factor, delete_factor, permute_factors, resample}) {
        IirFilter edited = filter;
        (void)edit(edited, request, {}, lines);
    }
    IirFilter formed = filter;
    clear_derived_forms(formed);
    formed.allpass = filter.allpass;
    (void)makeParallel(formed);
    (void)makeDirect(formed);
    (void)makeAllpass(formed);
    if (formed.roots.NP <= 8) (void)makeLattice(formed);
    IirFilter turned = filter;
    turn_frequency(turned, {}, lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    IirFilter filter;
    FixedText<80> title;
    if (read_iir_records(bytes, filter, title)) {
        const std::string stored = iir_records(filter, title);
        IirFilter again;
        if (!read_iir_records(stored, again, title) || iir_records(again, title) != stored) std::abort();
        walk(filter, title);
    }
    if (read_iir_snapshot(bytes, filter, title)) {
        if (iir_snapshot(filter, title) != bytes) std::abort();
        walk(filter, title);
    }
    return 0;
}
