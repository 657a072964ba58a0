// Reader of the filter form's stored input data.
#include "fuzz/input_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return kavrel::read_and_save(kavrel::filter_input, data, size);
}
