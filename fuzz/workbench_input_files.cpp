// Readers of stored input data: whatever the bytes, a file is taken whole or leaves the request as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "workbench/filter_input_file.h"
#include "workbench/fir_input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    kavrel::FirRequest request;
    if (kavrel::read_fir_input(bytes, request)) {
        kavrel::FirRequest again;
        if (!kavrel::read_fir_input(kavrel::fir_input_bytes(request), again)) std::abort();
    }
    kavrel::FilterRequest filter;
    kavrel::UnitSet units;
    if (kavrel::read_filter_input(bytes, filter, units)) {
        const std::string stored = kavrel::filter_input_bytes(filter, units);
        if (!kavrel::read_filter_input(stored, filter, units)) std::abort();
        if (kavrel::filter_input_bytes(filter, units) != stored) std::abort();
    }
    return 0;
}
