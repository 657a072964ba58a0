// Readers of stored input data: whatever the bytes, a file is taken whole or leaves the request as it was.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "workbench/fir_input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    kavrel::FirRequest request;
    if (kavrel::read_fir_input(bytes, request)) {
        kavrel::FirRequest again;
        if (!kavrel::read_fir_input(kavrel::fir_input_bytes(request), again)) std::abort();
    }
    return 0;
}
