// Reader of the delay form's stored input data.
#include <cstddef>
#include <cstdint>

#include "fuzz/input_reader.h"
#include "workbench/delay_input_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kavrel;
    struct Stored {
        DelayRequest request;
        UnitSet units;
    };
    read_and_save<Stored>(
        {reinterpret_cast<const char*>(data), size},
        [](std::string_view bytes, Stored& s) { return read_delay_input(bytes, s.request, s.units); },
        [](const Stored& s) { return delay_input_bytes(s.request, s.units); });
    return 0;
}
