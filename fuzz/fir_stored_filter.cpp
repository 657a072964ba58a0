// The reader of stored FIR filters, and that of snapshots: whatever the bytes, a filter is taken whole and can be
// listed, analysed, judged and written again, or the filter stays as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "fir/design_lines.h"
#include "fir/factors.h"
#include "fir/fir_records.h"
#include "fir/fir_rows.h"
#include "fir/fir_time_response.h"
#include "fir/frequency_response.h"

namespace {

using namespace kavrel;

void walk(const FirFilter& filter, const FixedText<80>& title) {
    (void)design_lines(filter, title.trimmed());
    const double hertz[] = {0, 0.25 * filter.sampling_frequency, 0.3 * filter.sampling_frequency};
    for (int n = 1; n <= filter.functions; ++n) {
        (void)function_lines(filter, n, title.trimmed());
        (void)fir_frequency_response(filter, n, hertz);
        AnalysisResult results;
        (void)fir_time_response(filter, n, results);
        Unwatched watcher;
        (void)check_fir(filter, n, watcher);
        (void)response_of(full_response(filter, n));
    }
    if (filter.factors.count > 0) (void)product_of(filter.factors);
    FirFilter first = filter;
    keep_functions(first, 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    FirFilter filter;
    FixedText<80> title;
    for (auto* read : {read_fir_records, read_fir_snapshot}) {
        if (!read(bytes, filter, title)) continue;
        const std::string stored = fir_records(filter, title);
        FirFilter again;
        if (!read(stored, again, title) || fir_records(again, title) != stored) std::abort();
        if (filter.functions > 0) walk(filter, title);
    }
    return 0;
}
