// What tells one filter from another, so that results know what they are of.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace kavrel {

// Of a filter as it is; 0 for none. It holds for this run of the program alone.
using Fingerprint = std::uint64_t;

// Of the bytes that a filter is kept as.
[[nodiscard]] inline Fingerprint fingerprint_of(std::string_view bytes) {
    return static_cast<Fingerprint>(std::hash<std::string_view>{}(bytes)) | 1U;
}

}  // namespace kavrel
