// What every reader of stored input data is held to: whatever the bytes, a file is taken whole or leaves the request as
// it was, and what was taken is saved, read and saved again as the same bytes.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "forms/input_forms.h"

namespace kavrel {

template <class Request>
int read_and_save(const InputForm<Request>& input, const std::uint8_t* data, std::size_t size) {
    Request request;
    UnitSet units;
    const auto stored = [&] { return input.bytes(request, units); };
    const std::string fresh = stored();
    if (!input.take({reinterpret_cast<const char*>(data), size}, request, units)) {
        if (stored() != fresh) std::abort();
        return 0;
    }
    const std::string first = stored();
    if (!input.take(first, request, units)) std::abort();
    if (stored() != first) std::abort();
    return 0;
}

}  // namespace kavrel
