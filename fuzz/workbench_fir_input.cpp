// Reader of the FIR form's stored input data.
#include <cstddef>
#include <cstdint>

#include "fuzz/input_reader.h"
#include "workbench/fir_input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    read_and_save<FirRequest>({reinterpret_cast<const char*>(data), size}, read_fir_input, fir_input_bytes);
    return 0;
}
