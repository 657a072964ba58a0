// Reader of the analysis form's stored input data.
#include <cstddef>
#include <cstdint>

#include "fuzz/input_reader.h"
#include "workbench/analysis_input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    read_and_save<FilterAnalysisRequest>({reinterpret_cast<const char*>(data), size}, read_analysis_input,
                                         analysis_input_bytes);
    return 0;
}
